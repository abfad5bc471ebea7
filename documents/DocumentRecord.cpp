#include "documents/DocumentRecord.h"

#include <QJsonDocument>
#include <QSqlQuery>

#include "documents/DocDialog.h"
#include "documents/DocumentFields.h"
#include "store/JsonColumn.h"
#include "store/SqlLog.h"

namespace {

QVariant insertRow(const DocumentFields& fields, int templateFlag, const QString& templateName)
{
    const QString content = QJsonDocument(fields.content()).toJson();
    QSqlQuery insert;
    // kept: pasted in as they are. A value with an apostrophe makes the statement fail, and nothing
    // is stored.
    if (!insert.exec(
            "INSERT INTO docs (BLANK_SER, BLANK_NO, FNAME, LNAME, MNAME,BIRTH_DATE, DOC_TYPE, "
            "DOC_GROUP, ISSUE_DATE, EDIT_DATE, DUPLICATE,TEMPLATE, TEMPLATE_NAME, CONTENT) VALUES "
            "('" +
            fields.series() + "', '" + fields.number() + "', '" + fields.fname() + "', '" +
            fields.lname() + "', '" + fields.mname() + "', '" + fields.birthDate() + "', " +
            QString::number(fields.docType()) + ", '" + fields.docGroup() + "', '" +
            fields.issueDate() + "', '" + fields.editDate() + "', " +
            QString::number(fields.duplicate()) + ", " + QString::number(templateFlag) + " , '" +
            templateName + "', '" + content + "');"))
    {
        logSqlFailureWithQuery("error insert into docs ", insert);
        return QVariant();
    }
    return insert.lastInsertId();
}

} // namespace

bool loadDocument(DocDialog& dialog, const QVariant& id)
{
    QSqlQuery document;
    if (!document.exec(
            "SELECT BLANK_SER, BLANK_NO, FNAME, LNAME, MNAME,         BIRTH_DATE, DOC_TYPE, "
            "DOC_GROUP, ISSUE_DATE, EDIT_DATE, DUPLICATE, CONTENT FROM docs WHERE ID = " +
            id.toString() + ";"))
    {
        logSqlFailure("Unable to execute select query", document);
        return false;
    }
    if (!document.first()) {
        return false;
    }
    dialog.setSeries(document.value("BLANK_SER").toString());
    dialog.setNumber(document.value("BLANK_NO").toString());
    dialog.setFname(document.value("FNAME").toString());
    dialog.setLname(document.value("LNAME").toString());
    dialog.setMname(document.value("MNAME").toString());
    dialog.setBirthDate(document.value("BIRTH_DATE").toString());
    dialog.setDocType(document.value("DOC_TYPE").toInt());
    dialog.setDocGroup(document.value("DOC_GROUP").toString());
    dialog.setIssueDate(document.value("ISSUE_DATE").toString());
    dialog.setEditDate(document.value("EDIT_DATE").toString());
    dialog.setDuplicate(document.value("DUPLICATE").toInt());
    dialog.setContent(parseJsonColumn(document.value("CONTENT")));
    return true;
}

QVariant insertDocument(const DocumentFields& fields)
{
    return insertRow(fields, 0, QString());
}

QVariant insertDocumentTemplate(const DocumentFields& fields, const QString& name)
{
    return insertRow(fields, 1, name);
}

void updateDocument(const DocumentFields& fields, const QVariant& id)
{
    const QString content = QJsonDocument(fields.content()).toJson();
    QSqlQuery update;
    if (!update.exec("UPDATE docs SET BLANK_SER = '" + fields.series() + "', BLANK_NO = '" +
                     fields.number() + "', FNAME = '" + fields.fname() + "', LNAME = '" +
                     fields.lname() + "', MNAME = '" + fields.mname() + "', BIRTH_DATE = '" +
                     fields.birthDate() + "', DOC_TYPE = " + QString::number(fields.docType()) +
                     ", DOC_GROUP = '" + fields.docGroup() + "', ISSUE_DATE = '" +
                     fields.issueDate() + "', EDIT_DATE = '" + fields.editDate() +
                     "', DUPLICATE = " + QString::number(fields.duplicate()) + ", CONTENT = '" +
                     content + "' WHERE ID = " + id.toString() + ";"))
    {
        logSqlFailureWithQuery("error update into docs ", update);
    }
}

void deleteDocument(const QVariant& id)
{
    QSqlQuery remove;
    remove.prepare("DELETE FROM docs WHERE ID = :Id");
    remove.bindValue(":Id", id);
    if (!remove.exec()) {
        logSqlFailure("error delete from docs", remove);
    }
}
