#include "forms/TableColumFormDialog.h"

#include <QMessageBox>
#include <QSqlError>
#include <QSqlQuery>

#include "app/AppHelpers.h"
#include "app/AppStyle.h"
#include "app/widgets/LongItems.h"
#include "ui_TableColumFormDialog.h"

TableColumFormDialog::TableColumFormDialog(const QJsonObject& column, QWidget* parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::TableColumFormDialog>())
    , m_column(column)
{
    ui->setupUi(this);
    applyBaseStyle(this);
    LongItems::install(ui->comboBoxList);
    fillLists();
    ui->spinBoxWidthInEditor->setValue(m_column.value("edtColumnW").toString("-1").toInt());
    selectList(m_column.value("listID").toString());
}

TableColumFormDialog::~TableColumFormDialog() = default;

void TableColumFormDialog::accept()
{
    m_column["edtColumnW"] = QString::number(ui->spinBoxWidthInEditor->value());
    const QVariant listId = ui->comboBoxList->currentData();
    if (listId.isNull()) {
        m_column.remove("listID");
    } else {
        m_column["listID"] = listId.toString();
    }
    QDialog::accept();
}

void TableColumFormDialog::fillLists()
{
    ui->comboBoxList->addItem("Нет");
    QSqlQuery query;
    query.setForwardOnly(true);
    if (!query.exec("SELECT ID, LIST_NAME FROM lists")) {
        QMessageBox::about(this, "Ошибка",
                           plainMessage("Ошибка SQL (lists): " + query.lastError().text()));
        return;
    }
    while (query.next()) {
        ui->comboBoxList->addItem(query.value("LIST_NAME").toString(), query.value("ID"));
    }
}

void TableColumFormDialog::selectList(const QString& listId)
{
    for (int i = 0; i < ui->comboBoxList->count(); ++i) {
        if (ui->comboBoxList->itemData(i).toString() == listId) {
            ui->comboBoxList->setCurrentIndex(i);
            return;
        }
    }
}
