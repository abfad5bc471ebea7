#include "render/TagExpansion.h"

#include <QDate>
#include <QJsonValue>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QStringList>
#include <QVariant>

#include "forms/FormDefinitions.h"
#include "store/OrgData.h"

namespace {

/// Where the tags of one document find their values.
class TagSource
{
public:
    TagSource() = default;
    virtual ~TagSource() = default;
    Q_DISABLE_COPY(TagSource)

    /// Puts the text of the column that the tag names into `text`; false if there is none.
    virtual bool column(const QString& tag, QString& text) = 0;

    /// Puts the form's entry of the tag into `entry`; false if there is none.
    virtual bool formEntry(const QString& tag, QJsonObject& entry) = 0;
};

bool findEntry(const QJsonObject& content, const QString& tag, QJsonObject& entry)
{
    const auto found = content.constFind(tag);
    if (found == content.constEnd()) {
        return false;
    }
    entry = found.value().toObject();
    return true;
}

class ObjectSource : public TagSource
{
public:
    ObjectSource(const QJsonObject& docValues, const QJsonObject& docContent)
        : m_values(docValues)
        , m_content(docContent)
    {
    }

    bool column(const QString& tag, QString& text) override
    {
        const auto found = m_values.constFind(tag);
        if (found == m_values.constEnd()) {
            return false;
        }
        text = found.value().toString();
        return true;
    }

    bool formEntry(const QString& tag, QJsonObject& entry) override
    {
        return findEntry(m_content, tag, entry);
    }

private:
    const QJsonObject& m_values;
    const QJsonObject& m_content;
};

bool isColumnTag(const QString& column)
{
    return column != QLatin1String("CONTENT");
}

/// Takes from the current row of `docs` what is asked for: an export expands one tag at a time, and
/// parsing the whole content for each would be most of its work.
class RowSource : public TagSource
{
public:
    explicit RowSource(const QSqlQuery& row)
        : m_row(row)
        , m_record(row.record())
    {
    }

    bool column(const QString& tag, QString& text) override
    {
        const QString name = tag.mid(1);
        const int index = m_record.indexOf(name); // passes over the case of letters
        if (index < 0 || m_record.fieldName(index) != name || !isColumnTag(name)) {
            return false;
        }
        text = m_record.value(index).toString();
        return true;
    }

    bool formEntry(const QString& tag, QJsonObject& entry) override
    {
        if (!m_parsed) {
            m_content = documentTagContent(m_row);
            m_parsed = true;
        }
        return findEntry(m_content, tag, entry);
    }

private:
    const QSqlQuery& m_row;
    const QSqlRecord m_record;
    bool m_parsed = false;
    QJsonObject m_content;
};

bool isTagCharacter(QChar c)
{
    return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == '#';
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

bool expandFormTag(QString& tag, TagSource& source)
{
    QJsonObject entry;
    if (!source.formEntry(tag, entry)) {
        return false;
    }
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

bool expandTagFrom(TagSource& source, QString& tag)
{
    if (expandOrganisationTag(tag)) {
        return true;
    }
    QString text;
    const bool isColumn = source.column(tag, text);
    if (tag == QLatin1String("#DUPLICATE")) {
        tag = text.toInt() != 0 ? QStringLiteral("ДУБЛИКАТ") : QString();
        return true;
    }
    if (isDateTag(tag)) {
        tag = dateToWords(QDate::fromString(text, QStringLiteral("yyyy-MM-dd")));
        return true;
    }
    if (isColumn) {
        tag = text;
        return true;
    }
    return expandFormTag(tag, source);
}

QString expandTagsFrom(TagSource& source, const QString& text)
{
    QString result;
    int cursor = 0;
    for (int begin = text.indexOf('#'); begin >= 0; begin = text.indexOf('#', cursor)) {
        const int end = tagEnd(text, begin);
        QString tag = text.mid(begin, end - begin);
        expandTagFrom(source, tag);
        result += text.midRef(cursor, begin - cursor);
        result += tag;
        cursor = end;
    }
    // Layouts rely on this bound: a single character behind the last tag is not printed.
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
    QString result = parts.first() + ' ';
    for (int i = 1; i < qMin(parts.size(), 3); ++i) {
        result += parts[i].leftRef(1) + ". ";
    }
    return result;
}

bool expandTag(QString& tag, const QJsonObject& docValues, const QJsonObject& docContent)
{
    ObjectSource source(docValues, docContent);
    return expandTagFrom(source, tag);
}

QString expandTags(const QString& text, const QJsonObject& docValues, const QJsonObject& docContent)
{
    ObjectSource source(docValues, docContent);
    return expandTagsFrom(source, text);
}

QString expandTagsForDoc(const QString& text, const QVariant& docId, QString* error)
{
    QSqlQuery query;
    query.setForwardOnly(true);
    if (!query.exec("SELECT * FROM docs WHERE ID = " + docId.toString() + ";") || !query.next()) {
        if (error) {
            *error = query.lastError().text();
        }
        return text;
    }
    RowSource source(query);
    return expandTagsFrom(source, text);
}

QJsonObject documentTagValues(const QSqlQuery& row)
{
    QJsonObject values;
    const QSqlRecord record = row.record();
    for (int i = 0; i < record.count(); ++i) {
        const QString name = record.fieldName(i);
        if (isColumnTag(name)) {
            values.insert('#' + name, record.value(i).toString());
        }
    }
    return values;
}

QJsonObject documentTagContent(const QSqlQuery& row)
{
    // By way of text: bytes that are no UTF-8 spoil a character, not the whole document.
    return parseJsonColumn(row.value("CONTENT").toString());
}
