#include "documents/TableMemoDialog.h"

#include <QComboBox>
#include <QDate>
#include <QDebug>
#include <QJsonObject>
#include <QMessageBox>
#include <QSpinBox>
#include <QSqlError>
#include <QSqlQuery>

#include <algorithm>

#include "app/AppHelpers.h"
#include "app/AppStyle.h"
#include "app/widgets/ClickGuard.h"
#include "app/widgets/RowFitPause.h"
#include "app/widgets/WheelGuard.h"
#include "documents/CellDateEdit.h"
#include "documents/CellListEdit.h"
#include "documents/DocumentContent.h"
#include "forms/FormDefinitions.h"
#include "ui_TableMemoDialog.h"

namespace {

constexpr int rowHeight = 34;         // pixels; an editor of the base style is 30 high
constexpr int smallestSection = 60;   // pixels, unless a column asks for less
constexpr int smallestToldWidth = 10; // pixels; anything below asks for an automatic width
constexpr int counterLimit = 99999;

const char* const cellDateFormat = "dd.MM.yyyy";

bool listErrorNoticeArmed = true;

int toInt(const QJsonValue& value, const QString& fallback = QString())
{
    return value.toString(fallback).toInt();
}

/// An editor that stands where it will be shown: the style need not be applied a second time.
template <class Editor>
Editor* makeEditor(const QTableWidget* table)
{
    auto* editor = new Editor(table->viewport());
    editor->setProperty("inTable", true);
    WheelGuard::install(editor);
    return editor;
}

QDateEdit* makeDateEdit(const QTableWidget* table, const QStringList& cells, int column)
{
    auto* edit = makeEditor<CellDateEdit>(table);
    edit->setDate(cells.isEmpty() ? QDate::currentDate()
                                  : QDate::fromString(cells.value(column), cellDateFormat));
    return edit;
}

QSpinBox* makeSpinBox(const QTableWidget* table, const QString& cell)
{
    auto* spin = makeEditor<QSpinBox>(table);
    spin->setRange(-counterLimit, counterLimit);
    spin->setValue(cell.toInt());
    return spin;
}

QComboBox* makeCombo(const QTableWidget* table, const QString& cell, const QStringList& items)
{
    auto* combo = makeEditor<CellListEdit>(table);
    combo->allowTyping();
    combo->addItems(items);
    if (!cell.isEmpty()) {
        combo->setCurrentText(cell);
    }
    return combo;
}

} // namespace

TableMemoDialog::TableMemoDialog(QWidget* parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::TableMemoDialog>())
{
    ui->setupUi(this);
    fitRows(ui->tableWidget, rowHeight);
    // The last column stretches, but never below the default size.
    ui->tableWidget->horizontalHeader()->setMinimumSectionSize(smallestSection);
    ui->tableWidget->horizontalHeader()->setDefaultSectionSize(smallestSection);
    applyBaseStyle(this);
    ClickGuard::install(ui->buttonRemoveRow);
}

TableMemoDialog::~TableMemoDialog() = default;

bool TableMemoDialog::setData(const QJsonArray& columns, const QJsonArray& rows)
{
    m_columns = columns;
    if (m_columns.isEmpty()) {
        QMessageBox::about(this, "Ошибка", "В таблице нет полей");
        return false;
    }
    loadColumns();
    const RowFitPause pause(ui->tableWidget);
    for (int row = 0; row < rows.size(); ++row) {
        const QJsonArray stored = rows.at(row).toArray();
        QStringList cells;
        for (int column = 0; column < m_columns.size(); ++column) {
            cells << stored.at(column).toString();
        }
        addRow(row, cells);
    }
    return true;
}

QJsonArray TableMemoDialog::tableValue() const
{
    QJsonArray rows;
    for (int row = 0; row < ui->tableWidget->rowCount(); ++row) {
        QJsonArray cells;
        for (int column = 0; column < m_columnTypes.size(); ++column) {
            cells.append(cellText(row, column));
        }
        rows.append(cells);
    }
    return rows;
}

void TableMemoDialog::setReadOnly(bool readOnly)
{
    ui->buttonAccept->setHidden(readOnly);
    ui->buttonAddRow->setHidden(readOnly);
    ui->buttonRemoveRow->setHidden(readOnly);
    if (readOnly) {
        ui->buttonReject->setText("Закрыть");
        ui->label->setText("Просмотр таблицы:");
    }
}

QStringList TableMemoDialog::loadListValues(const QString& listId)
{
    if (listId.isEmpty()) {
        qDebug() << "loadListValues Error: listID is empty";
        return {};
    }
    QSqlQuery query;
    if (!query.prepare("SELECT LIST_ITEMS FROM lists WHERE ID = " + listId) || !query.exec()) {
        showListError("SqlError: " + query.lastError().text());
        return {};
    }
    if (!query.first()) {
        showListError("Список не найден, возможно он удалён");
        return {};
    }
    return listItemStrings(query.value(0));
}

void TableMemoDialog::on_buttonAddRow_clicked()
{
    if (m_columnTypes.isEmpty()) {
        return; // a row of no cells would be stored all the same
    }
    QTableWidget* table = ui->tableWidget;
    const QList<QTableWidgetItem*> selected = table->selectedItems();
    const int row = selected.isEmpty() ? table->rowCount() : selected.first()->row() + 1;
    addRow(row, {});
    table->scrollTo(table->model()->index(row, 0));
}

void TableMemoDialog::on_buttonRemoveRow_clicked()
{
    QTableWidget* table = ui->tableWidget;
    if (table->rowCount() == 0) {
        return;
    }
    const QList<QTableWidgetItem*> selected = table->selectedItems();
    table->removeRow(selected.isEmpty() ? table->rowCount() - 1 : selected.first()->row());
}

void TableMemoDialog::loadColumns()
{
    ui->tableWidget->setColumnCount(m_columns.size());
    QStringList headers;
    QList<int> widths;
    for (int i = 0; i < m_columns.size(); ++i) {
        const QJsonObject column = m_columns.at(i).toObject();
        const int type = toInt(column["typeID"]);
        if (type == FieldType::list) {
            m_listValues[i] = loadListValues(column["listID"].toString());
        }
        headers << column["name"].toString();
        m_columnTypes << type;
        widths << toInt(column["edtColumnW"], "0");
    }
    setColumnWidths(headers, widths);
}

// The last column has no width of its own: it stretches.
void TableMemoDialog::setColumnWidths(const QStringList& headers, const QList<int>& widths)
{
    QTableWidget* table = ui->tableWidget;
    QHeaderView* header = table->horizontalHeader();
    table->setHorizontalHeaderLabels(headers);
    for (int column = 0; column < headers.size() - 1; ++column) {
        int width = widths.at(column);
        if (width < smallestToldWidth) {
            width = table->fontMetrics().boundingRect(headers.at(column)).width() + 10;
        }
        header->setMinimumSectionSize(std::min(header->minimumSectionSize(), width));
        table->setColumnWidth(column, width);
    }
}

// No cells at all mean a brand-new row, in contrast to a stored row of empty cells.
void TableMemoDialog::addRow(int row, const QStringList& cells)
{
    ui->tableWidget->insertRow(row);
    for (int column = 0; column < m_columnTypes.size(); ++column) {
        setCell(row, column, cells);
    }
}

void TableMemoDialog::setCell(int row, int column, const QStringList& cells)
{
    QTableWidget* table = ui->tableWidget;
    const QString cell = cells.value(column);
    QWidget* editor = nullptr;
    switch (m_columnTypes.at(column)) {
    case FieldType::list:
        editor = makeCombo(table, cell, m_listValues.value(column));
        break;
    case FieldType::counter:
        editor = makeSpinBox(table, cell);
        break;
    case FieldType::date:
        editor = makeDateEdit(table, cells, column);
        break;
    default:
        table->setItem(row, column, new QTableWidgetItem(cell));
        return;
    }
    table->setCellWidget(row, column, editor);
}

QString TableMemoDialog::cellText(int row, int column) const
{
    const QWidget* editor = ui->tableWidget->cellWidget(row, column);
    if (const auto* combo = qobject_cast<const QComboBox*>(editor)) {
        return combo->currentText();
    }
    if (const auto* spin = qobject_cast<const QSpinBox*>(editor)) {
        return QString::number(spin->value());
    }
    if (const auto* edit = qobject_cast<const QDateEdit*>(editor)) {
        return edit->date().toString(cellDateFormat);
    }
    const QTableWidgetItem* item = ui->tableWidget->item(row, column);
    return item ? item->text() : QString();
}

void TableMemoDialog::showListError(const QString& text)
{
    if (!listErrorNoticeArmed) {
        return;
    }
    listErrorNoticeArmed = false;
    QMessageBox::about(this, "Ошибка получения списка", plainMessage(text));
}

void rearmListErrorNotice()
{
    listErrorNoticeArmed = true;
}
