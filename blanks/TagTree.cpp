#include "blanks/TagTree.h"

#include <QJsonArray>
#include <QJsonValue>
#include <QTreeWidget>

#include "app/AppHelpers.h"

namespace {

struct Tag
{
    const char* caption;
    const char* tag;
};

const Tag organisationTags[] = {
    // kept: so written.
    {"Название огранизации ВП", "#ORG_NAME_1"},
    {"Название организации ПП", "#ORG_NAME_2"},
    {"Регион (область)", "#ORG_REGION"},
    {"Населённый пункт", "#ORG_LOCALITY"},
    {"Полное имя директора", "#ORG_DIRECTOR"},
    {"Сокращенное имя директора", "#ORG_DIRECTOR_SHORT"},
};

const Tag fixedFieldTags[] = {
    {"Фамилия", "#LNAME"},          {"Имя", "#FNAME"},
    {"Отчество", "#MNAME"},         {"Дата рождения", "#BIRTH_DATE"},
    {"Дата выдачи", "#ISSUE_DATE"}, {"Дата изменения", "#EDIT_DATE"},
    {"Серия бланка", "#BLANK_SER"}, {"Номер бланка", "#BLANK_NO"},
    {"Дубликат", "#DUPLICATE"},
};

QTreeWidgetItem* addGroup(QTreeWidget* tree, const QString& caption)
{
    return new QTreeWidgetItem(tree, {caption});
}

void addLeaf(QTreeWidgetItem* group, const QString& caption, const QString& tag)
{
    auto* leaf = new QTreeWidgetItem(group, {caption});
    leaf->setToolTip(0, plainMessage(caption)); // the tree is narrow
    leaf->setData(tagColumn, Qt::UserRole, tag);
}

template <std::size_t count>
void addLeaves(QTreeWidgetItem* group, const Tag (&tags)[count])
{
    for (const Tag& tag : tags) {
        addLeaf(group, tag.caption, tag.tag);
    }
}

} // namespace

void addOrganisationTags(QTreeWidget* tree)
{
    addLeaves(addGroup(tree, "Организация"), organisationTags);
}

void addFixedFieldTags(QTreeWidget* tree)
{
    addLeaves(addGroup(tree, "Основные поля"), fixedFieldTags);
}

void addFormFieldTags(QTreeWidget* tree, const QJsonArray& fields)
{
    QTreeWidgetItem* group = addGroup(tree, "Дополнительные поля");
    for (const QJsonValue& field : fields) {
        addLeaf(group, field["name"].toString(),
                field["tag"].toString() + "," + QString::number(field["type"].toInt()));
    }
}
