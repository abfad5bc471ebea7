#include "forms/FieldEditDlg.h"

#include <QComboBox>
#include <QHeaderView>
#include <QMessageBox>
#include <QPushButton>
#include <QSqlQuery>

#include "app/AppStyle.h"
#include "app/widgets/ClickGuard.h"
#include "app/widgets/LineStart.h"
#include "app/widgets/LongItems.h"
#include "app/widgets/WheelGuard.h"
#include "forms/FormDefinitions.h"
#include "forms/TableColumFormDialog.h"
#include "store/SqlLog.h"
#include "ui_FieldEditDlg.h"

namespace {

// Columns of the widget that lists the columns of a table field.
constexpr int nameCell = 0;
constexpr int typeCell = 1;
constexpr int optionsCell = 2;

const char* const columnProperty = "columnDataJs";

QComboBox* makeTypeCombo()
{
    auto* combo = new QComboBox;
    combo->setProperty("inTable", true);
    WheelGuard::install(combo);
    for (int type : {FieldType::string, FieldType::date, FieldType::counter, FieldType::list}) {
        combo->addItem(fieldTypeNames.value(type), type);
    }
    return combo;
}

QPushButton* makeOptionsButton(const QJsonObject& column)
{
    auto* button = new QPushButton("...");
    button->setFixedWidth(35);
    button->setToolTip("Доп.настройки");
    button->setProperty(columnProperty, column);
    return button;
}

} // namespace

FieldEditDlg::FieldEditDlg(QWidget* parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::FieldEditDlg>())
{
    ui->setupUi(this);
    applyBaseStyle(this);
    LineStart::installAll(this);
    for (QComboBox* combo : {ui->typeCombo, ui->listCombo}) {
        WheelGuard::install(combo);
    }
    ClickGuard::install(ui->buttonRemoveTableRow);
    LongItems::install(ui->listCombo);
    for (auto type = fieldTypeNames.begin(); type != fieldTypeNames.end(); ++type) {
        ui->typeCombo->addItem(type.value(), type.key());
    }
    connect(this, &QDialog::accepted, this, &FieldEditDlg::onDone);
    connect(ui->typeCombo, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &FieldEditDlg::onChange);
    ui->typeStack->hide();
    fitRows(ui->tableFieldsWidget);
    ui->tableFieldsWidget->setColumnWidth(nameCell, 270);
    ui->tableFieldsWidget->horizontalHeader()->setStretchLastSection(true);
    fillLists();
}

FieldEditDlg::~FieldEditDlg() = default;

void FieldEditDlg::setField(const QJsonObject& field)
{
    m_field = field;
    const int type = field["type"].toInt();
    ui->tagEdit->setText(field["tag"].toString());
    ui->nameEdit->setText(field["name"].toString());
    ui->typeCombo->setCurrentIndex(type);
    if (type == FieldType::list) {
        ui->listCombo->setCurrentIndex(ui->listCombo->findData(field["list"].toInt()));
    } else if (type == FieldType::date) {
        ui->formatEdit->setText(field["format"].toString());
    } else if (type == FieldType::table) {
        ui->tableFieldsWidget->setRowCount(0);
        const QJsonArray content = field["content"].toArray();
        for (int row = 0; row < content.size(); ++row) {
            const QJsonObject column = content[row].toObject();
            insertColumn(row, column["name"].toString(), column["typeID"].toString().toInt(),
                         column);
        }
    }
    onChange(type);
}

void FieldEditDlg::onDone()
{
    const QString tag = ui->tagEdit->text();
    // kept: a warning only. The dialog is accepted already, and the field is stored with its tag.
    if (!tag.startsWith('#')) {
        QMessageBox::about(this, "Предупреждение", "Не правильно указана метка поля");
    }
    const int type = ui->typeCombo->currentIndex();
    m_field["type"] = type;
    m_field["name"] = ui->nameEdit->text();
    m_field["tag"] = tag.toUpper();
    if (type == FieldType::list) {
        m_field["list"] = ui->listCombo->currentData().toInt();
    } else if (type == FieldType::date) {
        m_field["format"] = ui->formatEdit->text();
    } else if (type == FieldType::table) {
        m_field["content"] = columns();
    }
}

void FieldEditDlg::onChange(int type)
{
    switch (type) {
    case FieldType::list:
        ui->typeStack->setCurrentWidget(ui->listPage);
        break;
    case FieldType::date:
        ui->typeStack->setCurrentWidget(ui->datePage);
        break;
    case FieldType::table:
        ui->typeStack->setCurrentWidget(ui->tablePage);
        ui->tableFieldsWidget->setMinimumHeight(150);
        ui->tableFieldsWidget->setColumnWidth(typeCell, 140);
        ui->tableFieldsWidget->setColumnWidth(optionsCell, 35);
        break;
    default:
        ui->typeStack->hide();
        return;
    }
    ui->typeStack->show();
}

void FieldEditDlg::on_buttonAddTableRow_clicked()
{
    const QList<QTableWidgetItem*> selected = ui->tableFieldsWidget->selectedItems();
    const int row =
        selected.isEmpty() ? ui->tableFieldsWidget->rowCount() : selected.first()->row() + 1;
    insertColumn(row, "column_name", FieldType::string, QJsonObject());
}

void FieldEditDlg::on_buttonRemoveTableRow_clicked()
{
    if (ui->tableFieldsWidget->rowCount() == 0) {
        return;
    }
    const QList<QTableWidgetItem*> selected = ui->tableFieldsWidget->selectedItems();
    ui->tableFieldsWidget->removeRow(selected.isEmpty() ? ui->tableFieldsWidget->rowCount() - 1
                                                        : selected.first()->row());
}

void FieldEditDlg::onTableAdOptionsClicked()
{
    QObject* button = sender();
    TableColumFormDialog dialog(button->property(columnProperty).toJsonObject(), this);
    if (dialog.exec() == QDialog::Accepted) {
        button->setProperty(columnProperty, dialog.column());
    }
}

void FieldEditDlg::fillLists()
{
    QSqlQuery query;
    query.setForwardOnly(true);
    if (!query.exec("SELECT * FROM lists;")) {
        logSqlFailure("Unable to execute select query", query);
        return;
    }
    while (query.next()) {
        ui->listCombo->addItem(query.value("LIST_NAME").toString(), query.value("ID"));
    }
}

void FieldEditDlg::insertColumn(int row, const QString& name, int typeId, const QJsonObject& column)
{
    ui->tableFieldsWidget->insertRow(row);
    ui->tableFieldsWidget->setItem(row, nameCell, new QTableWidgetItem(name));
    QComboBox* combo = makeTypeCombo();
    ui->tableFieldsWidget->setCellWidget(row, typeCell, combo);
    combo->setCurrentText(fieldTypeNames.value(typeId));
    QPushButton* button = makeOptionsButton(column);
    ui->tableFieldsWidget->setCellWidget(row, optionsCell, button);
    connect(button, &QPushButton::clicked, this, &FieldEditDlg::onTableAdOptionsClicked);
}

QJsonArray FieldEditDlg::columns() const
{
    QJsonArray content;
    for (int row = 0; row < ui->tableFieldsWidget->rowCount(); ++row) {
        const QTableWidgetItem* name = ui->tableFieldsWidget->item(row, nameCell);
        const auto* type =
            qobject_cast<QComboBox*>(ui->tableFieldsWidget->cellWidget(row, typeCell));
        const QWidget* options = ui->tableFieldsWidget->cellWidget(row, optionsCell);
        QJsonObject column = options->property(columnProperty).toJsonObject();
        column["name"] = name ? name->text() : QString();
        column["typeID"] = type->currentData().toString();
        content.append(column);
    }
    return content;
}
