#include "documents/ContentPane.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QSqlQuery>
#include <QTableWidget>

#include "documents/DocumentContent.h"
#include "documents/ZelvoraTableButton.h"
#include "documents/ZelvoraTextButton.h"
#include "forms/FormDefinitions.h"
#include "store/JsonColumn.h"

namespace {

constexpr int captionColumn = 0;
constexpr int valueColumn = 1;

int appendRow(QTableWidget* pane, const QString& caption)
{
    const int row = pane->rowCount();
    pane->insertRow(row);
    pane->setItem(row, captionColumn, new QTableWidgetItem(caption));
    return row;
}

void appendText(QTableWidget* pane, const QString& caption, const QString& value)
{
    const int row = appendRow(pane, caption);
    pane->setItem(row, valueColumn, new QTableWidgetItem(value));
}

void appendButton(QTableWidget* pane, const QString& caption, QPushButton* button)
{
    button->setText("Просмотр");
    pane->setCellWidget(appendRow(pane, caption), valueColumn, button);
}

QPushButton* makeTextButton(QTableWidget* pane, const QJsonObject& entry,
                            const ValueButtonSlots& buttonSlots)
{
    auto* button = new ZelvoraTextButton(pane);
    button->setValue(entry["value"].toString());
    buttonSlots.connectText(button);
    return button;
}

QPushButton* makeTableButton(QTableWidget* pane, const QJsonObject& entry,
                             const ValueButtonSlots& buttonSlots)
{
    auto* button = new ZelvoraTableButton(pane);
    button->columns = entry["columns"].toArray();
    button->value = entry["value"].toArray();
    buttonSlots.connectTable(button);
    return button;
}

void appendContent(QTableWidget* pane, const QJsonObject& content,
                   const ValueButtonSlots& buttonSlots)
{
    for (auto it = content.begin(); it != content.end(); ++it) {
        const QJsonObject entry = it.value().toObject();
        const QString caption = entry["name"].toString();
        switch (entry["type"].toInt()) {
        case FieldType::counter:
            appendText(pane, caption, QString::number(entry["value"].toInt()));
            break;
        case FieldType::text:
            appendButton(pane, caption, makeTextButton(pane, entry, buttonSlots));
            break;
        case FieldType::table:
            appendButton(pane, caption, makeTableButton(pane, entry, buttonSlots));
            // kept: existing forms put their table last.
            return; // a table is the last entry shown, whatever stands behind it
        default:
            appendText(pane, caption, entry["value"].toString());
            break;
        }
    }
}

} // namespace

void showContentPane(QTableWidget* pane, const QSqlQuery& document,
                     const ValueButtonSlots& buttonSlots)
{
    pane->setRowCount(0);
    appendText(pane, "Серия", document.value("BLANK_SER").toString());
    appendText(pane, "Номер", document.value("BLANK_NO").toString());
    appendText(pane, "Дата изменения", document.value("EDIT_DATE").toString());
    appendText(pane, "Дата рождения", document.value("BIRTH_DATE").toString());
    appendContent(pane, parseJsonColumn(document.value("CONTENT")), buttonSlots);
}
