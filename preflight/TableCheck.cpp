#include "preflight/TableCheck.h"

#include <QFontMetricsF>
#include <QRegularExpression>
#include <QStyle>
#include <QTableWidget>
#include <QTextLayout>

#include "preflight/Excess.h"
#include "render/page/PageItem.h"

namespace {

/// A text as far as it can leave ink.
QString withoutBlanks(QString text)
{
    static const QRegularExpression blanks("\\s");
    return text.remove(blanks);
}

/// What the toolkit's cells leave free at each side of a text.
int marginOfCells(const QTableWidget& table)
{
    return table.style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, &table) + 1;
}

} // namespace

TableCheck::TableCheck(const PageItem& item, double unitLength, InkRecorder& recorder)
    : m_frame(item.place())
    , m_unitLength(unitLength)
    , m_firstRow(item.blankItem.firstRow)
    , m_table(item.frame.table)
    , m_view(item.frame.content->mapRectToScene(QRectF(m_table->viewport()->geometry())))
{
    m_ink.texts = recorder.textsOf(item.frame.container);
    m_ink.solid = item.frame.strokeInk();
    sortMarks();
}

QVector<Finding> TableCheck::findings() const
{
    QVector<Finding> findings;
    addRows(findings);
    addColumns(findings);
    if (!m_frame.contains(m_ink.roughBounds())) {
        const QRectF ink = PrintedInk{m_ink.texts, QRectF()}.bounds();
        for (const Excess& excess : excessesOf(ink, m_frame, smallestInk / m_unitLength)) {
            Finding finding;
            finding.kind = Finding::Kind::TableOutsideFrame;
            finding.severity = Finding::Severity::Warning;
            finding.side = excess.side;
            finding.amount = excess.length * m_unitLength;
            findings.append(finding);
        }
    }
    return findings;
}

void TableCheck::sortMarks()
{
    m_cells.resize(m_table->rowCount() * m_table->columnCount());
    for (const TextMark& mark : qAsConst(m_ink.texts)) {
        const QPoint place = (mark.box.center() - m_view.topLeft()).toPoint();
        const int row = m_table->rowAt(place.y());
        const int column = m_table->columnAt(place.x());
        if (row >= 0 && column >= 0) {
            m_cells[row * m_table->columnCount() + column].append(mark);
        }
    }
}

const QVector<TextMark>& TableCheck::marksAt(int row, int column) const
{
    return m_cells[row * m_table->columnCount() + column];
}

QString TableCheck::textAt(int row, int column) const
{
    const QTableWidgetItem* cell = m_table->item(row, column);
    return cell ? cell->text() : QString();
}

bool TableCheck::hasText(int row) const
{
    for (int column = 0; column < m_table->columnCount(); ++column) {
        if (!withoutBlanks(textAt(row, column)).isEmpty()) {
            return true;
        }
    }
    return false;
}

QRectF TableCheck::inkOfRow(int row) const
{
    QRectF ink;
    for (int column = 0; column < m_table->columnCount(); ++column) {
        ink |= inkOf(marksAt(row, column));
    }
    return ink;
}

bool TableCheck::isWhollyCut(int row) const
{
    const double top = m_table->rowViewportPosition(row);
    return top >= m_view.height() || inkOfRow(row).top() >= m_view.bottom();
}

void TableCheck::addRows(QVector<Finding>& findings) const
{
    Finding finding;
    finding.kind = Finding::Kind::TableRowsCut;
    finding.side = Finding::Side::Bottom;
    for (int row = 0; row < m_table->rowCount(); ++row) {
        const double bottom = m_table->rowViewportPosition(row) + m_table->rowHeight(row);
        if (bottom <= m_view.height() || !hasText(row)) {
            continue;
        }
        if (isWhollyCut(row)) {
            finding.rows << m_firstRow + row;
            continue;
        }
        const double lost = excessOn(Finding::Side::Bottom, inkOfRow(row), m_view) * m_unitLength;
        if (lost > smallestInk) {
            finding.partRows << m_firstRow + row;
            finding.lostInk = lost;
        }
    }
    if (!finding.rows.isEmpty() || !finding.partRows.isEmpty()) {
        findings.append(finding);
    }
}

void TableCheck::addColumns(QVector<Finding>& findings) const
{
    for (int column = 0; column < m_table->columnCount(); ++column) {
        Finding lost;
        lost.kind = Finding::Kind::TableColumnCut;
        lost.side = Finding::Side::Right;
        lost.column = column + 1;
        const bool isOutside = m_table->columnViewportPosition(column) >= m_view.width();
        for (int row = 0; row < m_table->rowCount(); ++row) {
            if (withoutBlanks(textAt(row, column)).isEmpty() || isWhollyCut(row)) {
                continue;
            }
            if (isOutside) {
                lost.rows << m_firstRow + row;
            } else {
                addCell(findings, row, column);
            }
        }
        if (!lost.rows.isEmpty()) {
            findings.append(lost);
        }
    }
}

void TableCheck::addCell(QVector<Finding>& findings, int row, int column) const
{
    Finding finding;
    finding.kind = Finding::Kind::TableCellCut;
    finding.side = Finding::Side::Right;
    finding.rows << m_firstRow + row;
    finding.column = column + 1;
    finding.text = textAt(row, column);
    for (const TextMark& mark : marksAt(row, column)) {
        finding.printed += mark.text;
    }
    if (withoutBlanks(finding.printed) != withoutBlanks(finding.text)) {
        finding.amount = missingWidth(row, column) * m_unitLength;
        if (finding.amount <= 0) {
            finding.side = Finding::Side::Bottom;
            finding.amount = missingHeight(row, column) * m_unitLength;
        }
        findings.append(finding);
        return;
    }
    const int right = m_table->columnViewportPosition(column) + m_table->columnWidth(column);
    if (right <= m_view.width()) {
        return;
    }
    finding.amount =
        excessOn(Finding::Side::Right, inkOf(marksAt(row, column)), m_view) * m_unitLength;
    if (finding.amount > smallestInk) {
        finding.lostInk = finding.amount;
        finding.printed.clear(); // cut in the middle of a letter
        findings.append(finding);
    }
}

double TableCheck::missingWidth(int row, int column) const
{
    const QFontMetricsF metrics(m_table->item(row, column)->font());
    double widest = 0;
    for (const QString& word : textAt(row, column).simplified().split(' ')) {
        widest = qMax(widest, metrics.horizontalAdvance(word));
    }
    return qMax(widest - roomInColumn(column), 0.0);
}

double TableCheck::missingHeight(int row, int column) const
{
    // As the toolkit's cells lay a text out, which takes a little more room than the metrics that
    // the row's height comes from.
    const QString text = QString(textAt(row, column)).replace('\n', QChar::LineSeparator);
    QTextLayout layout(text, m_table->item(row, column)->font());
    double height = 0;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(roomInColumn(column));
        height += line.height();
    }
    layout.endLayout();
    return qMax(height - m_table->rowHeight(row), 0.0);
}

double TableCheck::roomInColumn(int column) const
{
    return m_table->columnWidth(column) - 2 * marginOfCells(*m_table);
}
