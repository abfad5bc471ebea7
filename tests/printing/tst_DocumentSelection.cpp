#include <QtTest>

#include <QSqlQuery>

#include "printing/DocumentSelection.h"
#include "support/PrintFixture.h"
#include "support/PrintProgram.h"
#include "tools/PrintOptions.h"
#include "tools/PrintWords.h"

namespace {

/// The IDs of the documents that the options choose from the open database.
QString chosen(const QStringList& options, DocumentSelection& selection)
{
    PrintOptions parsed;
    if (!parsed.parse(QStringList("--check") + options)) {
        return parsed.error();
    }
    if (!selection.load(parsed.selection())) {
        return inWords(selection.problem());
    }
    QStringList ids;
    for (const PrintDocument& document : selection.documents()) {
        ids << document.id.toString();
    }
    return ids.join(' ');
}

QString chosen(const QStringList& options)
{
    DocumentSelection selection;
    return chosen(options, selection);
}

} // namespace

/// Which documents a command line chooses.
class tst_DocumentSelection : public QObject
{
    Q_OBJECT

private slots:
    void namesOfADocument();
    void whatAListShowsOfADocument();
    void idsInTheirOrder();
    void unknownIdsAreTold();
    void filters_data();
    void filters();
    void formByName();
    void formNamedByANumber();
    void conditions_data();
    void conditions();
    void badConditions_data();
    void badConditions();
    void whyAConditionIsBad_data();
    void whyAConditionIsBad();
    void conditionChangesNothing();
    void databaseWithoutDocuments_data();
    void databaseWithoutDocuments();
    void aFailureOnTheWayLeavesNothing_data();
    void aFailureOnTheWayLeavesNothing();
};

void tst_DocumentSelection::namesOfADocument()
{
    const PrintDirectory directory;
    DocumentSelection selection;
    QCOMPARE(chosen({"--id", "4"}, selection), QString("4"));
    QCOMPARE(selection.documents().first().surname, QString("О'Нил"));
    QCOMPARE(selection.documents().first().name, QString("Иван"));
}

void tst_DocumentSelection::whatAListShowsOfADocument()
{
    PrintFixture directory;
    directory.addDocument({}, {{"DOC_TYPE", 7}, {"DOC_GROUP", "11Б"}, {"BLANK_NO", "000777"}});
    DocumentSelection selection;
    QVERIFY(selection.load({}));
    const PrintDocument& document = selection.documents().first();
    QCOMPARE(document.patronymic, QString("Петрович"));
    QCOMPARE(document.group, QString("11Б"));
    QCOMPARE(document.formId.toInt(), 7);
    QCOMPARE(document.issueDate, QString("2021-06-25"));
    QCOMPARE(document.blankSeries, QString("АБ"));
    QCOMPARE(document.blankNumber, QString("000777"));
}

void tst_DocumentSelection::idsInTheirOrder()
{
    const PrintDirectory directory;
    QCOMPARE(chosen({"--id", "3"}), QString("3"));
    QCOMPARE(chosen({"--id", "4,1,2"}), QString("4 1 2"));
    QCOMPARE(chosen({"--id", "3,1-9223372036854775807"}), QString("3 1 2 4")); // each once
    QCOMPARE(chosen({"--id", "2-3"}), QString("2 3"));
}

void tst_DocumentSelection::unknownIdsAreTold()
{
    const PrintDirectory directory;
    DocumentSelection selection;
    // 5 is a template; of a range, those that exist are meant.
    QCOMPARE(chosen({"--id", "77,2,5,4-6,100-200"}, selection), QString("2 4"));
    QCOMPARE(selection.unknownIds(), (QVector<qint64>{77, 5}));
    QCOMPARE(chosen({"--all"}, selection), QString("1 2 3 4"));
    QVERIFY(selection.unknownIds().isEmpty());
}

void tst_DocumentSelection::filters_data()
{
    QTest::addColumn<QStringList>("filter");
    QTest::addColumn<QString>("ids");
    QTest::newRow("all") << QStringList{"--all"} << "1 2 3 4";
    QTest::newRow("surname") << QStringList{"--surname", "Иван"} << "1 3";
    QTest::newRow("with all") << QStringList{"--all", "--surname", "Иван"} << "1 3";
    QTest::newRow("middle of a surname") << QStringList{"--surname", "ане"} << "3";
    QTest::newRow("apostrophe") << QStringList{"--surname", "'"} << "4";
    QTest::newRow("class") << QStringList{"--group", "9"} << "1 2 3";
    QTest::newRow("form") << QStringList{"--type", "2"} << "4";
    QTest::newRow("from") << QStringList{"--from", "2023-06-25"} << "3 4";
    QTest::newRow("to") << QStringList{"--to", "2022-06-25"} << "1 2";
    QTest::newRow("one day") << QStringList{"--from", "2022-06-25", "--to", "2022-06-25"} << "2";
    QTest::newRow("all of them") << QStringList{"--surname", "Иван",      "--group", "А",
                                                "--type",    "1",         "--from",  "2022-01-01",
                                                "--to",      "2023-12-31"}
                                 << "3";
    QTest::newRow("with a condition")
        << QStringList{"--surname", "Иван", "--where", "ID = 1 OR ID = 2"} << "1";
    QTest::newRow("a template's") << QStringList{"--surname", "Шаблонов"} << "";
}

void tst_DocumentSelection::filters()
{
    QFETCH(QStringList, filter);
    QFETCH(QString, ids);
    const PrintDirectory directory;
    QCOMPARE(chosen(filter), ids);
}

void tst_DocumentSelection::formByName()
{
    PrintDirectory directory;
    directory.exec("INSERT INTO forms (ID, FORM_NAME) VALUES (1, 'Аттестат'), (2, 'Диплом')");
    QCOMPARE(chosen({"--type", "Диплом"}), QString("4"));
    QCOMPARE(chosen({"--type", "Справка"}), QString("there is no form Справка"));
}

// The ID counts before the name, as it does for blanks.
void tst_DocumentSelection::formNamedByANumber()
{
    PrintDirectory directory;
    directory.exec("INSERT INTO forms (ID, FORM_NAME) VALUES (1, '2'), (2, '2024')");
    QCOMPARE(chosen({"--type", "2"}), QString("4"));
    QCOMPARE(chosen({"--type", "2024"}), QString("4"));
    QCOMPARE(chosen({"--type", "1"}), QString("1 2 3"));
    QCOMPARE(chosen({"--type", "77"}), QString());
}

void tst_DocumentSelection::conditions_data()
{
    QTest::addColumn<QString>("condition");
    QTest::addColumn<QString>("ids");
    QTest::newRow("comparison") << "docs.LNAME >= 'П'"
                                << "2";
    QTest::newRow("or") << "ID = 1 OR ID = 3"
                        << "1 3";
    QTest::newRow("every row") << "1"
                               << "1 2 3 4";
    QTest::newRow("templates asked for") << "TEMPLATE = 1 OR 1"
                                         << "1 2 3 4";
    QTest::newRow("parentheses") << "(ID = 1) OR (ID = 4)"
                                 << "1 4";
    QTest::newRow("parentheses in a text") << "LNAME <> ')' AND ID < 3"
                                           << "1 2";
    QTest::newRow("mark in a text") << "LNAME <> '?' AND LNAME <> ':x' AND ID < 2"
                                    << "1";
    QTest::newRow("subquery") << "ID IN (SELECT max(ID) FROM docs WHERE DOC_TYPE = 1)"
                              << "";
    QTest::newRow("comment") << "ID = 2 -- the second"
                             << "2";
    QTest::newRow("parameter without a value") << "ID = :id"
                                               << "";
    QTest::newRow("nothing") << "0"
                             << "";
}

void tst_DocumentSelection::conditions()
{
    QFETCH(QString, condition);
    QFETCH(QString, ids);
    const PrintDirectory directory;
    QCOMPARE(chosen({"--where", condition}), ids);
}

void tst_DocumentSelection::badConditions_data()
{
    QTest::addColumn<QString>("condition");
    for (const char* condition :
         {"1) OR (1", "1) UNION SELECT ID, LNAME, FNAME FROM docs WHERE (1", "(1", "1)", ")(",
          "1; DELETE FROM docs", "1); DELETE FROM docs; --", "1) --", "1 /*", "1 ORDER BY ID",
          "1 LIMIT 1", "1 UNION SELECT 5", "NO_COLUMN = 1", "ID = ?", " ", "'", "no_function(ID)"})
    {
        QTest::newRow(condition) << condition;
    }
}

void tst_DocumentSelection::badConditions()
{
    QFETCH(QString, condition);
    const PrintDirectory directory;
    const QByteArray before = directory.dump();
    DocumentSelection selection;
    const QString error = chosen({"--where", condition}, selection);
    QVERIFY2(error.startsWith("the condition is not understood: ") ||
                 error.startsWith("can't read the documents: "),
             qPrintable(error));
    QVERIFY(selection.documents().isEmpty());
    QCOMPARE(directory.dump(), before);
}

void tst_DocumentSelection::whyAConditionIsBad_data()
{
    QTest::addColumn<QString>("condition");
    QTest::addColumn<QString>("reason");
    QTest::newRow("parenthesis") << "1) OR (1"
                                 << "near \")\": syntax error";
    QTest::newRow("clause") << "1 LIMIT 1"
                            << "near \"LIMIT\": syntax error";
    QTest::newRow("two statements") << "1; DELETE FROM docs"
                                    << "it is no one expression";
    QTest::newRow("column") << "NO_COLUMN = 1"
                            << "no such column: NO_COLUMN";
}

void tst_DocumentSelection::whyAConditionIsBad()
{
    QFETCH(QString, condition);
    QFETCH(QString, reason);
    const PrintDirectory directory;
    QCOMPARE(chosen({"--where", condition}), "the condition is not understood: " + reason);
}

void tst_DocumentSelection::conditionChangesNothing()
{
    const PrintDirectory directory;
    QCOMPARE(chosen({"--all"}), QString("1 2 3 4"));
    QSqlQuery query;
    QVERIFY(!query.exec("DELETE FROM docs"));
}

void tst_DocumentSelection::databaseWithoutDocuments_data()
{
    QTest::addColumn<QStringList>("filter");
    QTest::newRow("ids") << QStringList{"--id", "1"};
    QTest::newRow("all") << QStringList{"--all"};
}

void tst_DocumentSelection::databaseWithoutDocuments()
{
    QFETCH(QStringList, filter);
    PrintDirectory directory;
    directory.exec("DROP TABLE docs");
    QCOMPARE(chosen(filter), QString("can't read the documents: no such table: docs"));
}

void tst_DocumentSelection::aFailureOnTheWayLeavesNothing_data()
{
    QTest::addColumn<QStringList>("filter");
    QTest::newRow("ids") << QStringList{"--id", "1,2-3"};
    QTest::newRow("all") << QStringList{"--all"};
    QTest::newRow("condition") << QStringList{"--where", "ID < 4"};
}

// JSON that is none stops the statement at the second document, when the first has been read.
void tst_DocumentSelection::aFailureOnTheWayLeavesNothing()
{
    QFETCH(QStringList, filter);
    PrintDirectory directory;
    directory.exec("UPDATE docs SET CONTENT = 'x' WHERE ID = 2");
    directory.exec("ALTER TABLE docs RENAME TO stored");
    directory.exec("ALTER TABLE stored RENAME COLUMN DOC_GROUP TO OTHER");
    directory.exec("CREATE VIEW docs AS SELECT json_extract(CONTENT, '$.a') AS DOC_GROUP, * FROM "
                   "stored");
    DocumentSelection selection;
    const QString error = chosen(filter, selection);
    QVERIFY2(error.startsWith("can't read the documents: "), qPrintable(error));
    QVERIFY(selection.documents().isEmpty());
}

QTEST_MAIN(tst_DocumentSelection)
#include "tst_DocumentSelection.moc"
