#include "documents/DocumentFields.h"

#include <QJsonDocument>

const QString storedDateFormat = QStringLiteral("yyyy-MM-dd");

QString insertDocumentSql(const DocumentFields& fields, int templateFlag,
                          const QString& templateName)
{
    const QString content = QJsonDocument(fields.content()).toJson();
    return "INSERT INTO docs (BLANK_SER, BLANK_NO, FNAME, LNAME, MNAME,BIRTH_DATE, DOC_TYPE, "
           "DOC_GROUP, ISSUE_DATE, EDIT_DATE, DUPLICATE,TEMPLATE, TEMPLATE_NAME, CONTENT) VALUES "
           "('" +
           fields.series() + "', '" + fields.number() + "', '" + fields.fname() + "', '" +
           fields.lname() + "', '" + fields.mname() + "', '" + fields.birthDate() + "', " +
           QString::number(fields.docType()) + ", '" + fields.docGroup() + "', '" +
           fields.issueDate() + "', '" + fields.editDate() + "', " +
           QString::number(fields.duplicate()) + ", " + QString::number(templateFlag) + " , '" +
           templateName + "', '" + content + "');";
}
