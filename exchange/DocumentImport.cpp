#include "exchange/DocumentImport.h"

#include <QDate>
#include <QJsonArray>
#include <QJsonDocument>
#include <QVariant>

#include "exchange/CellName.h"
#include "exchange/WorkbookFile.h"
#include "forms/FormDefinitions.h"
#include "store/StoredDate.h"

DocumentImport::DocumentImport(const QXlsx::Document& workbook, const QVector<ExchangeItem>& items,
                               const QJsonObject& formFields, int formId, const QString& dateFormat)
    : m_workbook(workbook)
    , m_items(items)
    , m_formId(formId)
    , m_dateFormat(dateFormat)
{
    const QJsonArray fields = formFields["fields"].toArray();
    for (const QJsonValue& value : fields) {
        addField(value.toObject());
    }
}

QString DocumentImport::readRow(int row)
{
    m_tagValues.clear();
    m_content = m_emptyContent;
    for (const ExchangeItem& item : qAsConst(m_items)) {
        QString name = item.cellName(row);
        const QVariant cell = readCell(m_workbook, cellFromName(name));
        if (!cell.isValid()) {
            return name;
        }
        const QVariant value = convert(item.tag, cell);
        m_tagValues[item.tag] = value.toString();
        fillEntry(item.tag, value);
    }
    return QString();
}

QString DocumentImport::insertStatement() const
{
    // kept: pasted in as they are. A value with an apostrophe stops the import at its row.
    const QString content = QString::fromUtf8(QJsonDocument(m_content).toJson());
    return "INSERT INTO docs (BLANK_SER, BLANK_NO, FNAME, LNAME, MNAME,BIRTH_DATE, DOC_TYPE, "
           "DOC_GROUP, ISSUE_DATE, EDIT_DATE, DUPLICATE,TEMPLATE, TEMPLATE_NAME, CONTENT) "
           "VALUES ('" +
           m_tagValues["#BLANK_SER"] + "', '" + m_tagValues["#BLANK_NO"] + "', '" +
           m_tagValues["#FNAME"] + "', '" + m_tagValues["#LNAME"] + "', '" + m_tagValues["#MNAME"] +
           "', '" + m_tagValues["#BIRTH_DATE"] + "', " + QString::number(m_formId) + ", '" +
           m_tagValues["#DOC_GROUP"] + "', '" + m_tagValues["#ISSUE_DATE"] + "', '" +
           m_tagValues["#EDIT_DATE"] + "', " + m_tagValues["#DUPLICATE"] + ", 0 , '', '" + content +
           "');";
}

void DocumentImport::addField(const QJsonObject& field)
{
    const QString tag = field["tag"].toString();
    const int type = field["type"].toInt();
    QJsonObject entry;
    entry["type"] = type;
    entry["name"] = field["name"].toString();
    if (type == FieldType::list) {
        entry["list"] = field["list"];
    }
    // Of fields with one tag the last one makes the entry and the first one says how it is filled.
    m_emptyContent[tag] = entry;
    if (!m_fieldByTag.contains(tag)) {
        m_fieldByTag.insert(tag, {type, field["format"].toString()});
    }
}

QVariant DocumentImport::convert(const QString& tag, const QVariant& cell) const
{
    // kept: "#EDIT_DATE" is taken as the cell has it.
    if (tag == QLatin1String("#BIRTH_DATE") || tag == QLatin1String("#ISSUE_DATE")) {
        return storedDate(cell.toString());
    }
    if (tag == QLatin1String("#DUPLICATE")) {
        return cell.toString().toLower() == QStringLiteral("дубликат") ? 1 : 0;
    }
    return cell;
}

void DocumentImport::fillEntry(const QString& tag, const QVariant& value)
{
    const auto field = m_fieldByTag.constFind(tag);
    if (field == m_fieldByTag.constEnd()) {
        return;
    }
    QJsonObject entry = m_content.take(tag).toObject();
    switch (field->type) {
    case FieldType::counter:
        entry["value"] = value.toInt();
        break;
    case FieldType::date:
        entry["format"] = field->format;
        entry["value"] = storedDate(value.toString());
        break;
    default:
        entry["value"] = value.toString();
    }
    m_content[tag] = entry;
}

QString DocumentImport::storedDate(const QString& text) const
{
    return QDate::fromString(text, m_dateFormat).toString(storedDateFormat);
}
