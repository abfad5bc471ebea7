#include <QtTest>

#include <QJsonArray>
#include <QJsonDocument>
#include <QRandomGenerator>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QSqlRecord>

#include <xlsxdocument.h>

#include "exchange/CellName.h"
#include "exchange/DocumentExport.h"
#include "render/RowTags.h"
#include "render/TagExpansion.h"
#include "sample/SampleDirectory.h"
#include "store/DataBase.h"
#include "store/JsonColumn.h"
#include "store/OrgData.h"
#include "support/TempApplication.h"

/// The two ways to a cell's value: from the row that the query stands on, and by a statement that
/// reads the document a second time. Both must give the same workbook.
class tst_DocumentExport : public QObject
{
    Q_OBJECT

private slots:
    void wholeRows_data();
    void wholeRows();
    void rowIsNotReadAgain();
    void sampleEitherWay();
    void randomDocumentsEitherWay();
};

namespace {

const char* const wholeQuery = "SELECT * FROM docs WHERE docs.TEMPLATE = 0;";
/// One column more than the table has: documents are read again, as if columns were missing.
const char* const otherQuery = "SELECT *, 1 AS ANOTHER FROM docs WHERE docs.TEMPLATE = 0;";

QVector<ExchangeItem> itemsOf(const QStringList& tags)
{
    QVector<ExchangeItem> items;
    for (const QString& tag : tags) {
        const int column = items.size() + 1;
        QString name = QXlsx::CellReference(1, column).toString();
        name.chop(1);
        items.append({name, tag});
    }
    return items;
}

/// Every column's tag, every form tag of any document, and texts around them.
QStringList allTags()
{
    QSet<QString> tags = {"#DOC_NAME", "#ORG_DIRECTOR", "#ORG_DIRECTOR_SHORT", "#UNKNOWN", "#", ""};
    const QSqlRecord columns = QSqlDatabase::database().record("docs");
    for (int i = 0; i < columns.count(); ++i) {
        tags << '#' + columns.fieldName(i);
    }
    QSqlQuery query("SELECT CONTENT FROM docs;");
    while (query.next()) {
        const QStringList keys = parseJsonColumn(query.value(0)).keys();
        tags += QSet<QString>(keys.cbegin(), keys.cend());
    }
    QStringList all(tags.cbegin(), tags.cend());
    for (const QString& tag : tags) {
        all << tag + "^ (" + tag.toLower() + ") #LNAME" << tag + "x\\n#DUPLICATE,";
    }
    all.sort();
    return all;
}

std::unique_ptr<QXlsx::Document> exported(const QString& statement, const QStringList& tags)
{
    auto workbook = std::make_unique<QXlsx::Document>();
    QSqlQuery query;
    query.setForwardOnly(true);
    if (!query.exec(statement)) {
        qFatal("no documents");
    }
    DocumentExport(*workbook, itemsOf(tags), "dd.MM.yy").writeDocuments(query, 2);
    return workbook;
}

/// Compares cell by cell what the two ways give for every document and every tag.
void compareBothWays()
{
    const QStringList tags = allTags();
    const auto whole = exported(wholeQuery, tags);
    const auto other = exported(otherQuery, tags);
    QSqlQuery count("SELECT count(*) FROM docs WHERE docs.TEMPLATE = 0;");
    QVERIFY(count.next());
    const int last = 1 + count.value(0).toInt();
    QVERIFY(last > 1);
    QCOMPARE(whole->dimension().lastRow(), last);
    QCOMPARE(other->dimension(), whole->dimension());
    for (int row = 2; row <= last; ++row) {
        for (int column = 1; column <= tags.size(); ++column) {
            const QXlsx::Cell* one = whole->cellAt(row, column);
            const QXlsx::Cell* two = other->cellAt(row, column);
            QVERIFY(one && two);
            QCOMPARE(one->cellType(), two->cellType());
            if (one->value() != two->value()) {
                QFAIL(qPrintable(QString("%1 on row %2: '%3' is not '%4'")
                                     .arg(tags[column - 1])
                                     .arg(row)
                                     .arg(one->value().toString(), two->value().toString())));
            }
        }
    }
}

/// One of the kinds of values that a column may hold, whatever its type.
QVariant randomValue(QRandomGenerator& random)
{
    const QVariantList values = {QVariant(),
                                 "",
                                 "Иванова",
                                 "О'Нил \"мл.\"",
                                 "'; DROP TABLE docs; --",
                                 "2019-06-25",
                                 "2019-02-30",
                                 "a^b\\nc\nd",
                                 "#FNAME",
                                 "=1+1",
                                 "https://example.org",
                                 "  ",
                                 QByteArray("\xff\xfe\0\x41", 4),
                                 QByteArray("bytes"),
                                 0,
                                 1,
                                 -7,
                                 2.5,
                                 1e20,
                                 9007199254740993LL};
    return values.at(random.bounded(values.size()));
}

QVariant randomContent(QRandomGenerator& random)
{
    QJsonObject content;
    for (int type = -1; type < 7; ++type) {
        const QJsonArray values = {"",          "О'Нил^",      7,
                                   2.5,         true,          QJsonValue(),
                                   "#LNAME\\n", QJsonArray{1}, QJsonObject{{"a", 1}}};
        content["#F" + QString::number(type + 1)] =
            QJsonObject{{"type", type}, {"value", values.at(random.bounded(values.size()))}};
    }
    content["#LNAME"] = QJsonObject{{"type", 0}, {"value", "shadowed"}};
    content["#NO_OBJECT"] = "text";
    const QByteArray json = QJsonDocument(content).toJson();
    const QVariantList values = {QString(json),
                                 json,
                                 json.left(json.size() / 2),
                                 QVariant(),
                                 "",
                                 "[1]",
                                 QByteArray("{\"#F1\": \xff}"),
                                 42,
                                 "{\"#F1\":{\"type\":2,\"value\":\"\xD1\"}}"};
    // Half of them can be read.
    return random.bounded(2) ? values.first() : values.at(random.bounded(values.size()));
}

void addRandomDocument(TempApplication& app, QRandomGenerator& random)
{
    QStringList names;
    QVariantList values;
    const QSqlRecord columns = QSqlDatabase::database().record("docs");
    for (int i = 0; i < columns.count(); ++i) {
        const QString name = columns.fieldName(i);
        if (name == "ID") {
            continue;
        }
        names << '"' + name + '"';
        values << (name == "TEMPLATE"  ? QVariant(0)
                   : name == "CONTENT" ? randomContent(random)
                                       : randomValue(random));
    }
    const QString places = QStringList(QVector<QString>(names.size(), "?").toList()).join(", ");
    app.exec("INSERT INTO docs (" + names.join(", ") + ") VALUES (" + places + ")", values);
}

} // namespace

void tst_DocumentExport::wholeRows_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("statement");
    QTest::addColumn<bool>("isWhole");
    QTest::newRow("all") << ""
                         << "SELECT * FROM docs" << true;
    QTest::newRow("filter") << ""
                            << "SELECT * FROM docs WHERE docs.TEMPLATE = 0 AND LNAME LIKE '%а%'"
                            << true;
    QTest::newRow("with a column of an update") << "ALTER TABLE docs ADD COLUMN REG_NO TEXT"
                                                << "SELECT * FROM docs" << true;
    QTest::newRow("one column less") << ""
                                     << "SELECT ID, LNAME, CONTENT FROM docs" << false;
    QTest::newRow("one more") << "" << otherQuery << false;
    QTest::newRow("twice") << ""
                           << "SELECT * FROM docs, docs AS others" << false;
    QTest::newRow("another table") << ""
                                   << "SELECT * FROM forms" << false;
    QTest::newRow("a view")
        << "ALTER TABLE docs RENAME TO stored; CREATE VIEW docs AS SELECT * FROM stored"
        << "SELECT * FROM docs" << false;
    QTest::newRow("no key") << "ALTER TABLE docs RENAME TO stored; "
                               "CREATE TABLE docs AS SELECT * FROM stored"
                            << "SELECT * FROM docs" << false;
}

void tst_DocumentExport::wholeRows()
{
    QFETCH(QString, before);
    QFETCH(QString, statement);
    QFETCH(bool, isWhole);
    TempApplication app;
    const QStringList statements = before.split("; ", Qt::SkipEmptyParts);
    for (const QString& one : statements) {
        app.exec(one);
    }
    QSqlQuery query(statement);
    QVERIFY(query.isActive());
    QCOMPARE(RowTags(query).isWhole(), isWhole);
}

void tst_DocumentExport::rowIsNotReadAgain()
{
    TempApplication app;
    app.exec("INSERT INTO docs (LNAME, TEMPLATE, CONTENT) VALUES "
             "('Ким', 0, '{\"#CITY\":{\"type\":0,\"value\":\"Тверь\"}}')");
    QSqlQuery query("SELECT * FROM docs;");
    RowTags tags(query);
    QVERIFY(query.next());
    tags.takeRow(query);
    app.exec("DELETE FROM docs");
    QCOMPARE(tags.expand("#LNAME^, #CITY"), QString("Ким, Тверь"));
}

void tst_DocumentExport::sampleEitherWay()
{
    TempApplication app(TempApplication::Database::None);
    QString detail;
    QVERIFY2(createSampleDirectory(app.path(), &detail) == SampleResult::Done, qPrintable(detail));
    QVERIFY(dataBase.open());
    loadOrgData();
    compareBothWays();
}

void tst_DocumentExport::randomDocumentsEitherWay()
{
    TempApplication app;
    orgDirector = "Петров Пётр Петрович";
    // As update packages add columns.
    app.exec("ALTER TABLE docs ADD COLUMN REG_NO TEXT");
    app.exec("ALTER TABLE docs ADD COLUMN MARK REAL");
    app.exec("ALTER TABLE docs ADD COLUMN lower_case");
    QRandomGenerator random(20240615);
    for (int i = 0; i < 300; ++i) {
        addRandomDocument(app, random);
    }
    compareBothWays();
}

QTEST_MAIN(tst_DocumentExport)
#include "tst_DocumentExport.moc"
