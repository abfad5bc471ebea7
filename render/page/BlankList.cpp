#include "render/page/BlankList.h"

#include <QSqlQuery>

#include "render/page/SqlFailure.h"

BlankList blanksOfDocument(const QVariant& document, QString* error)
{
    QSqlQuery query;
    query.setForwardOnly(true);
    if (!query.exec("SELECT DOC_TYPE FROM docs WHERE ID = " + document.toString() + ";") ||
        !query.next())
    {
        tellSqlFailure("docs", query, error);
        return {};
    }
    return blanksOfForm(query.value("DOC_TYPE"), error);
}

BlankList blanksOfForm(const QVariant& formId, QString* error)
{
    QSqlQuery query;
    query.setForwardOnly(true);
    if (!query.exec("SELECT ID, NAME FROM blanks WHERE FORM_ID = " + formId.toString())) {
        tellSqlFailure("blanks", query, error);
        return {};
    }
    BlankList blanks;
    while (query.next()) {
        blanks.append({query.value("NAME").toString(), query.value("ID")});
    }
    return blanks;
}
