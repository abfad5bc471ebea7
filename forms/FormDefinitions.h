#pragma once

#include <QJsonObject>
#include <QMap>
#include <QString>
#include <QVariant>

#include "store/JsonColumn.h"

/// Types of a form's field: what `type` in a field object and in a document's entry may hold.
namespace FieldType {
constexpr int string = 0;
constexpr int list = 1;
constexpr int counter = 2;
constexpr int date = 3;
constexpr int table = 4;
constexpr int text = 5;
} // namespace FieldType

/// Captions of the field types by type id, in the order in which combos show them. A combo filled
/// from it has an index equal to the type id.
extern const QMap<int, QString> fieldTypeNames;

/// Names of the document types by form id: a cache of the table `forms`, as fresh as the last
/// reload by the main window.
extern QMap<int, QString> docTypeNames;

/// `FIELDS` of a form without fields, as a new row gets it.
extern const QString emptyFormFields;

/// `LIST_ITEMS` of a list without items, as a new row gets it.
extern const QString emptyListItems;

/// Reads the field definitions of a form.
JsonColumn readFormFields(const QVariant& formId);

/// Replaces the field definitions of a form by the object's indented text. On failure returns
/// false and puts the driver's text into `error` (may be null).
bool writeFormFields(const QVariant& formId, const QJsonObject& fields, QString* error = nullptr);

/// Reads the items of a value list.
JsonColumn readListItems(const QVariant& listId);

/// Replaces the items of a value list by the object's indented text. On failure returns false and
/// puts the driver's text into `error` (may be null).
bool writeListItems(const QVariant& listId, const QJsonObject& items, QString* error = nullptr);
