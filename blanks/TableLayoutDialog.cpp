#include "blanks/TableLayoutDialog.h"

#include <QComboBox>

#include "app/AppStyle.h"
#include "app/widgets/ClickGuard.h"
#include "app/widgets/WheelGuard.h"
#include "ui_TableLayoutDialog.h"

namespace {

constexpr int widthColumn = 0;
constexpr int alignColumn = 1;

} // namespace

TableLayoutDialog::TableLayoutDialog(QWidget* parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::TableLayoutDialog>())
{
    ui->setupUi(this);
    applyBaseStyle(this);
    fitRows(ui->columnsTable);
    ClickGuard::install(ui->buttonRemoveCol);
    setRowFrom(m_rowFrom);
    setRowTo(m_rowTo);
    connect(this, &QDialog::accepted, this, &TableLayoutDialog::onDone);
    connect(ui->buttonAddCol, &QPushButton::clicked, this, &TableLayoutDialog::addColumn);
    connect(ui->buttonRemoveCol, &QPushButton::clicked, this, &TableLayoutDialog::deleteColumn);
}

TableLayoutDialog::~TableLayoutDialog() = default;

void TableLayoutDialog::setColumns(const QJsonArray& widths, const QJsonArray& aligns)
{
    ui->columnsTable->setRowCount(0);
    for (int i = 0; i < widths.size(); ++i) {
        appendRow(QString::number(widths.at(i).toInt()), aligns.at(i).toInt());
    }
    m_columnsWidth = widths;
    m_columnsAlign = aligns;
}

void TableLayoutDialog::setRowFrom(int row)
{
    m_rowFrom = row;
    ui->fromEdit->setText(QString::number(row));
}

void TableLayoutDialog::setRowTo(int row)
{
    m_rowTo = row;
    ui->toEdit->setText(QString::number(row));
}

void TableLayoutDialog::onDone()
{
    QJsonArray widths;
    QJsonArray aligns;
    for (int row = 0; row < ui->columnsTable->rowCount(); ++row) {
        widths.append(ui->columnsTable->item(row, widthColumn)->text().toInt());
        aligns.append(alignCombo(row)->currentIndex());
    }
    m_columnsWidth = widths;
    m_columnsAlign = aligns;
    m_rowFrom = ui->fromEdit->text().toInt();
    m_rowTo = ui->toEdit->text().toInt();
}

void TableLayoutDialog::addColumn()
{
    appendRow(QString(), 0);
}

void TableLayoutDialog::deleteColumn()
{
    const int row = ui->columnsTable->currentRow();
    if (row < 0 || !ui->columnsTable->item(row, widthColumn)) {
        return;
    }
    ui->columnsTable->removeRow(row);
    ui->columnsTable->setCurrentCell(row, widthColumn);
}

void TableLayoutDialog::appendRow(const QString& width, int align)
{
    const int row = ui->columnsTable->rowCount();
    ui->columnsTable->insertRow(row);
    ui->columnsTable->setItem(row, widthColumn, new QTableWidgetItem(width));
    auto* combo = new QComboBox;
    combo->addItems({"Слева", "Справа", "По центру"});
    combo->setStyleSheet("border: none");
    combo->setCurrentIndex(align);
    WheelGuard::install(combo);
    ui->columnsTable->setCellWidget(row, alignColumn, combo);
}

QComboBox* TableLayoutDialog::alignCombo(int row) const
{
    return qobject_cast<QComboBox*>(ui->columnsTable->cellWidget(row, alignColumn));
}
