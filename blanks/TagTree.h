#pragma once

class QJsonArray;
class QTreeWidget;

// The groups of the blank editor's tree of tags. A leaf shows what a tag stands for, and holds the
// tag in Qt::UserRole of its column `tagColumn`; a group holds nothing there.

constexpr int tagColumn = 1;

/// Adds the group of the organisation's data.
void addOrganisationTags(QTreeWidget* tree);

/// Adds the group of what every document has.
void addFixedFieldTags(QTreeWidget* tree);

/// Adds the group of a form's fields. A leaf holds the field's tag, "," and its type.
void addFormFieldTags(QTreeWidget* tree, const QJsonArray& fields);
