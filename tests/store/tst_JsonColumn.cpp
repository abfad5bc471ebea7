#include <QtTest>

#include <QJsonArray>
#include <QJsonDocument>

#include "store/JsonColumn.h"
#include "support/LogCatcher.h"
#include "support/TempApplication.h"

namespace {

const JsonLogLines lines = {"not selected", "no object", "not written"};

/// The items of a list, as the window of the lists reads and writes them.
JsonArrayColumn listItems(const QString& table = "lists")
{
    return {"items",
            [](const QVariant& id) {
                return readJsonColumn("SELECT LIST_ITEMS FROM lists WHERE ID = " + id.toString());
            },
            [table](const QVariant& id, const QJsonObject& object, QString* error) {
                return writeJsonColumn("UPDATE " + table +
                                           " SET LIST_ITEMS = :Items WHERE ID = :Id",
                                       ":Items", QJsonDocument(object).toJson(), id, error);
            }};
}

bool addItem(QJsonArray& array)
{
    array.append("новый");
    return true;
}

} // namespace

/// Changes of the array in a JSON column.
class tst_JsonColumn : public QObject
{
    Q_OBJECT

private slots:
    void elementsAreReplacedAndRemoved();
    void noElementBeyondTheEnds();
    void restOfTheObjectStays();
    void whatIsNoObjectStays_data();
    void whatIsNoObjectStays();
    void failuresAreLogged();
    void unchangedIsNotWritten();
};

void tst_JsonColumn::elementsAreReplacedAndRemoved()
{
    QJsonArray array = {1, 2, 3};
    QVERIFY(replaceElement(array, 2, 4));
    QCOMPARE(array, (QJsonArray{1, 2, 4}));
    QVERIFY(removeElement(array, 0));
    QCOMPARE(array, (QJsonArray{2, 4}));
}

void tst_JsonColumn::noElementBeyondTheEnds()
{
    QJsonArray array = {1, 2};
    for (const int position : {-1, 2, 3}) {
        QVERIFY(!replaceElement(array, position, 4));
        QVERIFY(!removeElement(array, position));
    }
    QCOMPARE(array, (QJsonArray{1, 2}));
}

void tst_JsonColumn::restOfTheObjectStays()
{
    TempApplication app;
    app.exec("INSERT INTO lists (LIST_ITEMS) VALUES (?)", {R"({"items": ["a"], "other": 5})"});
    QJsonObject object;
    QVERIFY(changeJsonArray(listItems(), 1, lines, addItem, object));
    const QJsonObject expected = {{"items", QJsonArray{"a", "новый"}}, {"other", 5}};
    QCOMPARE(object, expected);
    QCOMPARE(parseJsonColumn(app.value("SELECT LIST_ITEMS FROM lists")), expected);
}

void tst_JsonColumn::whatIsNoObjectStays_data()
{
    QTest::addColumn<QVariant>("stored");
    QTest::newRow("array") << QVariant("[1]");
    QTest::newRow("cut off") << QVariant(R"({"items": [)");
    QTest::newRow("empty") << QVariant("");
    QTest::newRow("NULL") << QVariant(QVariant::String);
}

void tst_JsonColumn::whatIsNoObjectStays()
{
    QFETCH(QVariant, stored);
    TempApplication app;
    app.exec("INSERT INTO lists (LIST_ITEMS) VALUES (?)", {stored});
    LogCatcher log;
    QJsonObject object = {{"old", 1}};
    QVERIFY(!changeJsonArray(listItems(), 1, lines, addItem, object));
    QVERIFY(!changeJsonArray(listItems(), 77, lines, addItem, object)); // there is no such row
    QCOMPARE(log.count("no object"), 2);
    QCOMPARE(object, (QJsonObject{{"old", 1}}));
    QCOMPARE(app.value("SELECT LIST_ITEMS FROM lists"), stored);
}

void tst_JsonColumn::failuresAreLogged()
{
    TempApplication app;
    app.exec("INSERT INTO lists (LIST_ITEMS) VALUES ('{}')");
    QJsonObject object;
    LogCatcher log;
    QVERIFY(!changeJsonArray(listItems("nowhere"), 1, lines, addItem, object));
    QVERIFY(log.contains("not written") && log.contains("no such table: nowhere"));
    QVERIFY(!writeJsonColumn("UPDATE nowhere SET A = :A", ":A", "{}", 1, nullptr));
    app.exec("DROP TABLE lists");
    QVERIFY(!changeJsonArray(listItems(), 1, lines, addItem, object));
    QVERIFY(log.contains("not selected") && log.contains("no such table: lists"));
    QVERIFY(object.isEmpty());
}

void tst_JsonColumn::unchangedIsNotWritten()
{
    TempApplication app;
    const QString spaced = R"({ "items" : [ ] })";
    app.exec("INSERT INTO lists (LIST_ITEMS) VALUES (?)", {spaced});
    QJsonObject object;
    const auto removeFirst = [](QJsonArray& array) { return removeElement(array, 0); };
    QVERIFY(!changeJsonArray(listItems(), 1, lines, removeFirst, object));
    QCOMPARE(app.value("SELECT LIST_ITEMS FROM lists").toString(), spaced);
}

QTEST_GUILESS_MAIN(tst_JsonColumn)
#include "tst_JsonColumn.moc"
