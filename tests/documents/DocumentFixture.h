#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <QTableWidget>
#include <QWidget>

#include "support/TempApplication.h"
#include "support/Widgets.h"

/// A field object of a form.
QJsonObject formField(const QString& tag, const QString& name, int type,
                      const QJsonObject& more = QJsonObject());

/// A column object of a table field.
QJsonObject tableColumn(const QString& name, const QString& typeId,
                        const QJsonObject& more = QJsonObject());

/// A table value of one row. (A list of one array in braces would be a copy of that array.)
QJsonArray oneRow(const QJsonArray& cells);

/// Inserts a form of these fields and makes it known as a document type. Returns its ID.
int addForm(TempApplication& app, const QString& name, const QJsonArray& fields);

/// Inserts a value list. Returns its ID.
int addList(TempApplication& app, const QStringList& items);

/// Row of the content table that shows the entry of this tag; -1 if there is none.
int rowOfTag(const QTableWidget* table, const QString& tag);

/// Editor in the value column of the entry of this tag; null if it is none of this class.
template <class Editor>
Editor* editorOfTag(const QWidget* window, const QString& tag)
{
    const auto* table = named<QTableWidget>(window, "contentTable");
    return qobject_cast<Editor*>(table->cellWidget(rowOfTag(table, tag), 1));
}
