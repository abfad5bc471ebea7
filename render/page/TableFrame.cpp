#include "render/page/TableFrame.h"

#include <QDebug>
#include <QFontMetrics>
#include <QHeaderView>
#include <QScrollBar>
#include <QTableWidget>
#include <QVector>

#include "render/page/MarkupBound.h"
#include "render/page/PageFont.h"
#include "render/page/PageStyle.h"
#include "render/page/PageWidget.h"

namespace {

constexpr int smallestSection = 5; // scene units, of a column or a row of a table

/// A table that measures as on a screen of 96 dots per inch in all its parts, also those that are
/// never seen: the header gives the columns their widths, the scroll bars the table its least size.
QTableWidget* makeTable(const QFont& font)
{
    auto* table = new PageWidget<QTableWidget>;
    auto* header = new PageWidget<QHeaderView>(Qt::Horizontal);
    auto* horizontalBar = new PageWidget<QScrollBar>(Qt::Horizontal);
    auto* verticalBar = new PageWidget<QScrollBar>(Qt::Vertical);
    table->setStyle(PageStyle::shared());
    header->setStyle(PageStyle::shared());
    table->setHorizontalHeader(header);
    table->setHorizontalScrollBar(horizontalBar);
    table->setVerticalScrollBar(verticalBar);
    table->setGridStyle(Qt::NoPen);
    table->setShowGrid(false);
    table->setSelectionMode(QAbstractItemView::NoSelection);
    header->hide();
    header->setStretchLastSection(true);
    table->verticalHeader()->hide();
    table->setStyleSheet("background: transparent; border: 0px;");
    table->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    table->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->setFocusPolicy(Qt::NoFocus); // or Tab would mark a cell, and the mark be printed
    // Last, since the style sheet sets fonts: only a font that is given has the page's resolution.
    for (QWidget* part : QVector<QWidget*>{table, header, horizontalBar, verticalBar}) {
        part->setFont(font);
    }
    return table;
}

void setColumnWidths(QTableWidget* table, const QJsonArray& widths)
{
    QHeaderView* header = table->horizontalHeader();
    // kept: one width more than there are columns is read, which sets nothing.
    for (int i = 0; i < widths.size() && i <= table->columnCount(); ++i) {
        const int width = widths[i].toInt();
        if (width < smallestSection) {
            continue;
        }
        header->setMinimumSectionSize(qMin(width, header->minimumSectionSize()));
        table->setColumnWidth(i, width);
    }
}

void setRowDefaults(QTableWidget* table, float lineSpacing, const QFont& font)
{
    const auto height = static_cast<float>(QFontMetrics(font).height());
    table->verticalHeader()->setMinimumSectionSize(smallestSection);
    table->verticalHeader()->setDefaultSectionSize(static_cast<int>(height * lineSpacing));
}

void fillCell(QTableWidget* table, int row, int column, const QString& text, const QFont& font)
{
    if (QTableWidgetItem* cell = table->item(row, column)) {
        if (cell->text() != text) {
            cell->setText(text);
        }
        return;
    }
    // kept: without alignment, whatever `columns_align`, `h_align` and `v_align` say.
    auto* cell = new QTableWidgetItem(text);
    cell->setFont(font);
    table->setItem(row, column, cell);
}

/// Fills one row and makes it as high as its highest cell, and at least as high as by default.
void fillRow(const PageFrame& frame, int row, const QJsonArray& cells, const QFont& font)
{
    constexpr int highestCell = 500;
    const QFontMetrics metrics(font);
    int height = frame.table->verticalHeader()->defaultSectionSize();
    for (int column = 0; column < frame.columnWidths.size(); ++column) {
        const QString text = boundedPlainText(cells[column].toString());
        fillCell(frame.table, row, column, text, font);
        const QRect available(0, 0, frame.columnWidths[column], highestCell);
        height = qMax(height, metrics.boundingRect(available, Qt::TextWordWrap, text).height());
    }
    if (height != frame.table->rowHeight(row)) {
        frame.table->setRowHeight(row, height);
    }
}

void fillRows(const PageFrame& frame, const QJsonArray& rows, const BlankItem& item,
              const QFont& font)
{
    const int from = item.firstRow;
    const int to = item.lastRow(rows.size());
    if (from > to) {
        frame.table->setRowCount(0);
        return;
    }
    frame.table->setRowCount(to - from + 1);
    for (int i = from - 1; i < to; ++i) {
        fillRow(frame, i - (from - 1), rows[i].toArray(), font);
    }
}

int heightOfRows(const QTableWidget* table)
{
    int height = 0;
    for (int row = 0; row < table->rowCount(); ++row) {
        height += table->rowHeight(row);
    }
    return height;
}

} // namespace

PageFrame TableFrame::make(const BlankItem& item, const QFont& font, const QJsonObject& docField)
{
    PageFrame frame = PageFrame::make();
    frame.table = makeTable(pageFont(font));
    frame.setContent(frame.table);
    const int columns = docField["columns"].toArray().size();
    if (columns == 0) {
        return frame;
    }
    frame.table->setColumnCount(columns);
    setColumnWidths(frame.table, item.columnWidths);
    for (int column = 0; column < columns; ++column) {
        frame.columnWidths.append(frame.table->columnWidth(column));
    }
    setRowDefaults(frame.table, item.lineSpacing, QFont(pageFont(font), frame.table));
    if (item.hasStroke) {
        frame.addStroke();
    }
    return frame;
}

void TableFrame::fill(const PageFrame& frame, const BlankItem& item, const QFont& font,
                      const QJsonObject& docField)
{
    if (frame.table->columnCount() == 0) {
        qDebug() << "createBlankFieldTableItem error: Table is empty";
        return;
    }
    const QFont cellFont(pageFont(font), frame.table); // in the page's resolution
    fillRows(frame, docField["value"].toArray(), item, cellFont);
    if (item.hasStroke) {
        frame.table->setFixedHeight(heightOfRows(frame.table));
    }
}
