#include "render/TagExpansion.h"

#include <QDate>
#include <QJsonValue>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QStringList>
#include <QVariant>

#include "forms/FormDefinitions.h"
#include "render/DocumentTags.h"
#include "store/JsonColumn.h"
#include "store/OrgData.h"
#include "store/StoredDate.h"

namespace {

bool isTagCharacter(QChar c)
{
    return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == '#';
}

bool expandOrganisationTag(QString& tag)
{
    if (!tag.startsWith(QLatin1String("#ORG_"))) {
        return false;
    }
    if (tag == QLatin1String("#ORG_NAME_1")) {
        tag = orgNameFormat1;
    } else if (tag == QLatin1String("#ORG_NAME_2")) {
        tag = orgNameFormat2;
    } else if (tag == QLatin1String("#ORG_REGION")) {
        tag = orgRegion;
    } else if (tag == QLatin1String("#ORG_LOCALITY")) {
        tag = orgLocality;
    } else if (tag == QLatin1String("#ORG_DIRECTOR")) {
        tag = orgDirector;
    } else if (tag == QLatin1String("#ORG_DIRECTOR_SHORT")) {
        tag = shortPersonName(orgDirector);
    } else {
        return false;
    }
    return true;
}

bool expandFormTag(QString& tag, const QJsonObject& docContent)
{
    const auto found = docContent.constFind(tag);
    if (found == docContent.constEnd()) {
        return false;
    }
    const QJsonObject entry = found.value().toObject();
    const QJsonValue value = entry.value(QLatin1String("value"));
    switch (entry.value(QLatin1String("type")).toInt()) {
    case FieldType::table:
        return false;
    case FieldType::counter:
        tag = QString::number(value.toInt());
        return true;
    default:
        tag = value.toString();
        return true;
    }
}

} // namespace

QString dateToWords(const QDate& date)
{
    static const QStringList months = {"",        "января", "февраля", "марта",   "апреля",
                                       "мая",     "июня",   "июля",    "августа", "сентября",
                                       "октября", "ноября", "декабря"};
    return QString::number(date.day()) + ' ' + months.value(date.month()) + ' ' +
           QString::number(date.year());
}

QString shortPersonName(const QString& fullName)
{
    const QStringList parts = fullName.split(' ');
    // kept: with a blank at the end, also of a surname alone.
    QString result = parts.first() + ' ';
    for (int i = 1; i < qMin(parts.size(), 3); ++i) {
        result += parts[i].leftRef(1) + ". ";
    }
    return result;
}

int tagEnd(const QString& text, int tagBegin)
{
    int end = tagBegin + 1;
    while (end < text.size() && isTagCharacter(text[end])) {
        ++end;
    }
    return end;
}

bool isDateTag(const QString& tag)
{
    return tag == QLatin1String("#ISSUE_DATE") || tag == QLatin1String("#EDIT_DATE") ||
           tag == QLatin1String("#BIRTH_DATE");
}

bool expandTag(QString& tag, const QJsonObject& docValues, const QJsonObject& docContent)
{
    if (expandOrganisationTag(tag)) {
        return true;
    }
    const auto column = docValues.constFind(tag);
    const bool isColumn = column != docValues.constEnd();
    const QString text = isColumn ? column.value().toString() : QString();
    if (tag == QLatin1String("#DUPLICATE")) {
        tag = text.toInt() != 0 ? QStringLiteral("ДУБЛИКАТ") : QString();
        return true;
    }
    if (isDateTag(tag)) {
        tag = dateToWords(dateFromStored(text));
        return true;
    }
    if (isColumn) {
        tag = text;
        return true;
    }
    return expandFormTag(tag, docContent);
}

QString expandTags(const QString& text, const QJsonObject& docValues, const QJsonObject& docContent)
{
    QString result;
    int cursor = 0;
    for (int begin = text.indexOf('#'); begin >= 0; begin = text.indexOf('#', cursor)) {
        const int end = tagEnd(text, begin);
        QString tag = text.mid(begin, end - begin);
        expandTag(tag, docValues, docContent);
        result += text.midRef(cursor, begin - cursor);
        result += tag;
        cursor = end;
    }
    // kept: a single character behind the last tag is not printed. Layouts rely on this bound.
    if (cursor < text.size() - 1) {
        result += text.midRef(cursor);
    }
    if (result.isEmpty()) {
        return result;
    }
    result.remove('^');
    result.replace(QLatin1String("\\n"), QLatin1String("\n"));
    return result;
}

QString expandTagsForDoc(const QString& text, const QVariant& docId, QString* error)
{
    return DocumentTags(docId).expand(text, error);
}

QJsonObject documentTagValues(const QSqlQuery& row)
{
    QJsonObject values;
    const QSqlRecord record = row.record();
    for (int i = 0; i < record.count(); ++i) {
        const QString tag = documentColumnTag(record.fieldName(i));
        if (!tag.isEmpty()) {
            values.insert(tag, record.value(i).toString());
        }
    }
    return values;
}

QJsonObject documentTagContent(const QSqlQuery& row)
{
    return documentTagContent(row.value("CONTENT"));
}

QJsonObject documentTagContent(const QVariant& content)
{
    // By way of text: bytes that are no UTF-8 spoil a character, not the whole document.
    return parseJsonColumn(content.toString());
}

QString documentColumnTag(const QString& column)
{
    return column == QLatin1String("CONTENT") ? QString() : '#' + column;
}
