#include "sample/SampleDocuments.h"

#include <QDate>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSet>
#include <QVector>

#include <algorithm>
#include <random>

#include "documents/DocumentContent.h"
#include "forms/FormDefinitions.h"
#include "sample/SampleData.h"

namespace {

/// Numbers that are the same on every platform, unlike those of the library's distributions.
class Dice
{
public:
    explicit Dice(unsigned seed)
        : m_engine(seed)
    {
    }

    int below(int count) { return static_cast<int>(m_engine() % static_cast<unsigned>(count)); }
    int between(int lowest, int highest) { return lowest + below(highest - lowest + 1); }
    QJsonValue oneOf(const QJsonArray& values) { return values[below(values.size())]; }

private:
    std::mt19937 m_engine;
};

// Texts that are not known are empty, never NULL, as the dialogs store them.
struct Person
{
    QString surname = "";
    QString givenName = "";
    QString patronymic = "";
    int diligence = 0; // 0 for the best marks, 2 for the worst
};

struct Document
{
    QString profile;
    QString group;
    QDate issued;
    QDate edited;
    QDate born;
    Person person;
    QString series = "";
    QString number = "";
    int form = 0;
    bool duplicate = false;
    QString templateName = ""; // of a document template; empty in a document
    QJsonObject content;
};

class Generator
{
public:
    explicit Generator(const QHash<int, QJsonArray>& formFields);

    QVector<Document> documents();
    QVector<Document> templates();

private:
    QVector<Document> classDocuments(const QJsonObject& schoolClass);
    QVector<Document> duplicates(const QVector<Document>& originals);
    Document newDocument(const QString& profileName, const Person& person, const QString& group,
                         const QDate& issued);
    void number(Document& document);
    Person person();
    QJsonObject content(const Document& document, const QJsonObject& values);
    QJsonObject entry(const Document& document, const QJsonObject& field, const QJsonValue& rule);
    QJsonValue value(const Document& document, const QJsonValue& rule, const QString& dateFormat);
    QJsonArray rows(const Document& document, const QJsonObject& rule);
    QString mark(const Document& document, const QJsonArray& marks);
    QString filledIn(const Document& document, QString text) const;

    const QJsonObject m_plan;
    const QJsonObject m_profiles;
    const QJsonObject m_people;
    const QHash<int, QJsonArray> m_formFields;
    Dice m_dice;
    QHash<QString, int> m_issued; // documents so far by profile
    QSet<QString> m_namesTaken;
};

// Dates inside a table are always kept in this form.
const char* const tableDateFormat = "dd.MM.yyyy";

Generator::Generator(const QHash<int, QJsonArray>& formFields)
    : m_plan(sampleData("documents"))
    , m_profiles(m_plan["profiles"].toObject())
    , m_people(sampleData("people"))
    , m_formFields(formFields)
    , m_dice(static_cast<unsigned>(m_plan["seed"].toInt()))
{
}

QVector<Document> Generator::documents()
{
    QVector<Document> all;
    const QJsonArray classes = m_plan["classes"].toArray();
    for (const QJsonValue& schoolClass : classes) {
        all += classDocuments(schoolClass.toObject());
    }
    return all + duplicates(all);
}

QVector<Document> Generator::classDocuments(const QJsonObject& schoolClass)
{
    QVector<Person> people;
    for (int i = 0; i < schoolClass["count"].toInt(); i++) {
        people << person();
    }
    // A class is entered from its list, in the order of the alphabet. Code points would put "Ё"
    // out of its place; collation would differ from system to system.
    const auto key = [](const Person& someone) {
        return QString(someone.surname + ' ' + someone.givenName).replace("ё", "е");
    };
    std::sort(people.begin(), people.end(),
              [&key](const Person& left, const Person& right) { return key(left) < key(right); });
    QVector<Document> documents;
    for (const Person& graduate : qAsConst(people)) {
        documents << newDocument(
            schoolClass["profile"].toString(), graduate, schoolClass["group"].toString(),
            QDate::fromString(schoolClass["issueDate"].toString(), Qt::ISODate));
    }
    return documents;
}

QVector<Document> Generator::duplicates(const QVector<Document>& originals)
{
    QVector<Document> copies;
    QSet<int> taken;
    while (copies.size() < m_plan["duplicates"].toInt()) {
        const int index = m_dice.below(originals.size());
        if (taken.contains(index) || originals[index].series.isEmpty()) {
            continue; // one duplicate a document, and none of a paper without a series
        }
        taken << index;
        Document copy = originals[index];
        copy.duplicate = true;
        copy.issued = copy.issued.addDays(m_dice.between(60, 300));
        copy.edited = copy.issued;
        number(copy);
        copies << copy;
    }
    return copies;
}

QVector<Document> Generator::templates()
{
    QVector<Document> all;
    const QJsonArray templates = m_plan["templates"].toArray();
    for (const QJsonValue& plan : templates) {
        Document document;
        document.profile = plan["profile"].toString();
        document.templateName = plan["name"].toString();
        document.group = plan["group"].toString();
        document.issued = QDate::fromString(plan["issueDate"].toString(), Qt::ISODate);
        document.edited = document.issued.addDays(-14);
        document.born = document.edited.addYears(-20);
        document.form = m_profiles[document.profile]["form"].toInt();
        QJsonObject values = m_profiles[document.profile]["values"].toObject();
        const QJsonArray personal = plan["without"].toArray();
        for (const QJsonValue& tag : personal) {
            values.remove(tag.toString());
        }
        document.content = content(document, values);
        all << document;
    }
    return all;
}

Document Generator::newDocument(const QString& profileName, const Person& person,
                                const QString& group, const QDate& issued)
{
    const QJsonObject profile = m_profiles[profileName].toObject();
    const QJsonArray age = profile["age"].toArray();
    Document document;
    document.profile = profileName;
    document.group = group;
    document.issued = issued;
    document.edited = issued.addDays(-m_dice.between(1, 12));
    document.born = issued.addYears(-m_dice.between(age[0].toInt(), age[1].toInt()))
                        .addDays(-m_dice.between(1, 364));
    document.person = person;
    document.form = profile["form"].toInt();
    document.series = profile["series"].toString();
    number(document);
    document.content = content(document, profile["values"].toObject());
    return document;
}

void Generator::number(Document& document)
{
    const QJsonValue rule = m_profiles[document.profile]["number"];
    const int count = m_issued[document.profile]++;
    document.number =
        QString::number(rule["from"].toInt() + count).rightJustified(rule["digits"].toInt(), '0');
}

Person Generator::person()
{
    const bool female = m_dice.below(2) == 1;
    const QJsonObject names = m_people[female ? "female" : "male"].toObject();
    Person person;
    do {
        person.surname = m_dice.oneOf(m_people["surnames"].toArray())[female ? 1 : 0].toString();
        person.givenName = m_dice.oneOf(names["given"].toArray()).toString();
        person.patronymic = m_dice.oneOf(names["patronymics"].toArray()).toString();
    } while (m_namesTaken.contains(person.surname + person.givenName));
    m_namesTaken << person.surname + person.givenName;
    person.diligence = m_dice.below(5) / 2;
    return person;
}

QJsonObject Generator::content(const Document& document, const QJsonObject& values)
{
    QJsonObject content;
    const QJsonArray fields = m_formFields.value(document.form);
    for (const QJsonValue& field : fields) {
        const QString tag = field["tag"].toString();
        content[tag] = entry(document, field.toObject(), values[tag]);
    }
    return content;
}

// What the document dialogs store for a field of the form once they were accepted.
QJsonObject Generator::entry(const Document& document, const QJsonObject& field,
                             const QJsonValue& rule)
{
    QJsonObject entry = contentEntry(field);
    switch (entry["type"].toInt()) {
    case FieldType::counter:
        entry["value"] = value(document, rule, QString()).toVariant().toInt();
        break;
    case FieldType::date: {
        const QString format = entry["format"].toString();
        const QString date = value(document, rule, format).toString();
        entry["value"] = date.isEmpty() ? document.issued.toString(format) : date;
        break;
    }
    case FieldType::table:
        entry["value"] = rows(document, rule.toObject());
        break;
    default:
        entry["value"] = value(document, rule, QString()).toString();
        break;
    }
    return entry;
}

QJsonValue Generator::value(const Document& document, const QJsonValue& rule,
                            const QString& dateFormat)
{
    if (rule.isString()) {
        return filledIn(document, rule.toString());
    }
    const QJsonObject object = rule.toObject();
    if (object.contains("oneOf")) {
        return value(document, m_dice.oneOf(object["oneOf"].toArray()), dateFormat);
    }
    if (object.contains("sometimes")) {
        const bool now = m_dice.below(100) < object["sometimes"].toInt();
        return now ? value(document, object["value"], dateFormat) : QJsonValue(QString());
    }
    if (object.contains("number")) {
        return m_dice.between(object["number"][0].toInt(), object["number"][1].toInt());
    }
    if (object.contains("mark")) {
        return mark(document, object["mark"].toArray());
    }
    if (object.contains("daysBeforeIssue")) {
        const QJsonArray days = object["daysBeforeIssue"].toArray();
        return document.issued.addDays(-m_dice.between(days[0].toInt(), days[1].toInt()))
            .toString(dateFormat);
    }
    return rule;
}

QJsonArray Generator::rows(const Document& document, const QJsonObject& rule)
{
    QJsonArray rows;
    const QJsonArray rules = rule["rows"].toArray();
    const QJsonArray lastCells = rule["andThen"].toArray();
    for (const QJsonValue& rowRule : rules) {
        QJsonArray cellRules = rowRule.toArray();
        for (const QJsonValue& cell : lastCells) {
            cellRules.append(cell);
        }
        QJsonArray row;
        for (const QJsonValue& cell : qAsConst(cellRules)) {
            row.append(value(document, cell, tableDateFormat).toVariant().toString());
        }
        rows.append(row);
    }
    return rows;
}

// Marks of one person lie close together. A template holds the middle one.
QString Generator::mark(const Document& document, const QJsonArray& marks)
{
    if (!document.templateName.isEmpty()) {
        return marks[marks.size() / 2].toString();
    }
    const int luck = m_dice.below(5);
    const int drift = luck == 0 ? 1 : (luck == 1 ? -1 : 0);
    return marks[qBound(0, document.person.diligence + drift, marks.size() - 1)].toString();
}

// "{year}" and "{year-4}" stand for the year of issue and one that many years before, "{n:4}" for
// the document's running number with at least four digits.
QString Generator::filledIn(const Document& document, QString text) const
{
    static const QRegularExpression year("\\{year(-\\d+)?\\}");
    const QRegularExpressionMatch yearMatch = year.match(text);
    if (yearMatch.hasMatch()) {
        text.replace(year, QString::number(document.issued.year() + yearMatch.captured(1).toInt()));
    }
    static const QRegularExpression running("\\{n:(\\d+)\\}");
    const QRegularExpressionMatch runningMatch = running.match(text);
    if (runningMatch.hasMatch()) {
        const QString count = QString::number(m_issued.value(document.profile));
        text.replace(running, count.rightJustified(runningMatch.captured(1).toInt(), '0'));
    }
    return text;
}

bool insertDocument(QSqlQuery& query, const Document& document, QString* error)
{
    const QString json = QString::fromUtf8(QJsonDocument(document.content).toJson());
    return runStatement(
        query,
        "INSERT INTO docs (BLANK_SER, BLANK_NO, FNAME, LNAME, MNAME, BIRTH_DATE, DOC_TYPE, "
        "DOC_GROUP, ISSUE_DATE, EDIT_DATE, DUPLICATE, TEMPLATE, TEMPLATE_NAME, CONTENT) VALUES "
        "(?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
        {document.series, document.number, document.person.givenName, document.person.surname,
         document.person.patronymic, document.born.toString(Qt::ISODate), document.form,
         document.group, document.issued.toString(Qt::ISODate),
         document.edited.toString(Qt::ISODate), document.duplicate ? 1 : 0,
         document.templateName.isEmpty() ? 0 : 1, document.templateName, json},
        error);
}

bool readFormFields(QSqlDatabase& database, QHash<int, QJsonArray>& formFields, QString* error)
{
    QSqlQuery query(database);
    if (!runStatement(query, "SELECT ID, FIELDS FROM forms", {}, error)) {
        return false;
    }
    while (query.next()) {
        formFields.insert(query.value(0).toInt(),
                          parseJsonColumn(query.value(1))["fields"].toArray());
    }
    return true;
}

} // namespace

bool insertSampleDocuments(QSqlDatabase& database, QString* error)
{
    QHash<int, QJsonArray> formFields;
    if (!readFormFields(database, formFields, error)) {
        return false;
    }
    Generator generator(formFields);
    const QVector<Document> all = generator.documents() + generator.templates();
    QSqlQuery query(database);
    return std::all_of(all.begin(), all.end(), [&](const Document& document) {
        return insertDocument(query, document, error);
    });
}
