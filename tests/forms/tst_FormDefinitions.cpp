#include <QtTest>

#include <QJsonArray>
#include <QJsonDocument>

#include "forms/FormDefinitions.h"
#include "store/DataBase.h"
#include "support/Process.h"
#include "support/TempApplication.h"

namespace {

/// A certificate's form with a string, a list, a date and a table field.
const char* const certificateFields = R"({
    "fields": [
        {"tag": "#SPECIALTY", "name": "Специальность", "type": 0},
        {"tag": "#QUALIFICATION", "name": "Квалификация", "type": 1, "list": 7},
        {"tag": "#PROTOCOL_DATE", "name": "Дата протокола", "type": 3, "format": "dd.MM.yyyy"},
        {"tag": "#GRADES", "name": "Оценки", "type": 4, "content": [
            {"name": "Предмет", "typeID": "0"},
            {"name": "Оценка", "typeID": "1", "edtColumnW": "60", "listID": "7"}]}
    ]
})";

QJsonObject objectFrom(const QByteArray& json)
{
    return QJsonDocument::fromJson(json).object();
}

/// What python3 finds in the column of the only row: storage class and parsed text, in one line.
QByteArray storedColumn(const TempApplication& app, const QString& table, const QString& column)
{
    const ProcessResult result =
        runPython("import json, sqlite3, sys\n"
                  "db = sqlite3.connect(sys.argv[1])\n"
                  "value, kind = db.execute('SELECT %s, typeof(%s) FROM %s' % (sys.argv[3], "
                  "sys.argv[3], sys.argv[2])).fetchone()\n"
                  "text = value.decode() if kind == 'blob' else value\n"
                  "print(kind, json.dumps(json.loads(text), ensure_ascii=False, sort_keys=True))",
                  {app.path("docs.db"), table, column});
    return result.exitCode == 0 ? result.out.trimmed() : result.err;
}

} // namespace

/// Reading and rewriting of forms and lists.
class tst_FormDefinitions : public QObject
{
    Q_OBJECT

private slots:
    void fieldTypesAreInOrder();
    void newRowTexts();
    void readsTextAndBlob_data();
    void readsTextAndBlob();
    void readsListsAlike();
    void readsAnEmptyForm();
    void whatIsNoObjectIsRefused_data();
    void whatIsNoObjectIsRefused();
    void missingRowIsNoObject();
    void failedSelectGivesTheDriversText();
    void rewritesIndentedBytes();
    void rewritesLists();
    void failedUpdateGivesTheDriversText();
    void updateOfAMissingRowChangesNothing();
    void oneRowIsRewritten();
};

void tst_FormDefinitions::fieldTypesAreInOrder()
{
    QCOMPARE(fieldTypeNames.keys(), (QList<int>{0, 1, 2, 3, 4, 5}));
    QCOMPARE(fieldTypeNames.values(),
             (QList<QString>{"Строка", "Список", "Счетчик", "Дата", "Таблица", "Текст"}));
    QVERIFY(docTypeNames.isEmpty());
}

void tst_FormDefinitions::newRowTexts()
{
    QCOMPARE(emptyFormFields, QString("{\n\t\"fields\":\n\t\t[\n\t\t]\n}"));
    QCOMPARE(emptyListItems, QString("{\n\t\"items\":\n\t\t[\n\t\t]\n}"));
}

void tst_FormDefinitions::readsTextAndBlob_data()
{
    QTest::addColumn<bool>("asBytes");
    QTest::newRow("text") << false;
    QTest::newRow("blob") << true;
}

void tst_FormDefinitions::readsTextAndBlob()
{
    QFETCH(bool, asBytes);
    TempApplication app;
    const QVariant stored = asBytes ? QVariant(QByteArray(certificateFields))
                                    : QVariant(QString::fromUtf8(certificateFields));
    const QVariant id = app.exec("INSERT INTO forms (FIELDS) VALUES (?)", {stored});
    QCOMPARE(app.value("SELECT typeof(FIELDS) FROM forms").toString(),
             QString(asBytes ? "blob" : "text"));

    const JsonColumn column = readFormFields(id);
    QCOMPARE(column.status, JsonColumn::Status::Ok);
    const QJsonArray fields = column.object["fields"].toArray();
    QCOMPARE(fields.size(), 4);
    QCOMPARE(fields[0].toObject()["name"].toString(), QString("Специальность"));
    QCOMPARE(fields[1].toObject()["list"].toInt(), 7);
    QCOMPARE(fields[2].toObject()["format"].toString(), QString("dd.MM.yyyy"));
    const QJsonArray columns = fields[3].toObject()["content"].toArray();
    QCOMPARE(columns.size(), 2);
    QCOMPARE(columns[1].toObject()["edtColumnW"].toString(), QString("60"));
}

void tst_FormDefinitions::readsListsAlike()
{
    TempApplication app;
    const QByteArray json = "{\"items\": [\"отлично\", \"хорошо\", \"хорошо\", \"\"]}";
    const QVariant asBytes = app.exec("INSERT INTO lists (LIST_ITEMS) VALUES (?)", {json});
    const QVariant asText =
        app.exec("INSERT INTO lists (LIST_ITEMS) VALUES (?)", {QString::fromUtf8(json)});
    for (const QVariant& id : {asBytes, asText}) {
        const JsonColumn column = readListItems(id);
        QCOMPARE(column.status, JsonColumn::Status::Ok);
        QCOMPARE(column.object["items"].toArray(), (QJsonArray{"отлично", "хорошо", "хорошо", ""}));
    }
}

void tst_FormDefinitions::readsAnEmptyForm()
{
    TempApplication app;
    const QVariant id = app.exec("INSERT INTO forms (FIELDS) VALUES (?)", {emptyFormFields});
    const JsonColumn column = readFormFields(id);
    QCOMPARE(column.status, JsonColumn::Status::Ok);
    QCOMPARE(column.object.keys(), QStringList{"fields"});
    QCOMPARE(column.object["fields"].toArray().size(), 0);
}

void tst_FormDefinitions::whatIsNoObjectIsRefused_data()
{
    QTest::addColumn<QVariant>("stored");
    QTest::newRow("NULL") << QVariant(QVariant::String);
    QTest::newRow("empty text") << QVariant("");
    QTest::newRow("no JSON") << QVariant("поля");
    QTest::newRow("cut off") << QVariant("{\"fields\": [{\"tag\": \"#A\"");
    QTest::newRow("text behind") << QVariant("{\"fields\": []} {}");
    QTest::newRow("an array") << QVariant("[{\"tag\": \"#A\"}]");
    QTest::newRow("a number") << QVariant(5);
    QTest::newRow("Windows-1251") << QVariant(QByteArray("{\"fields\": \"\xcf\xee\xeb\xe5\"}"));
    QTest::newRow("UTF-16") << QVariant(QByteArray("\xff\xfe{\0}\0", 6));
}

void tst_FormDefinitions::whatIsNoObjectIsRefused()
{
    QFETCH(QVariant, stored);
    TempApplication app;
    const QVariant form = app.exec("INSERT INTO forms (FIELDS) VALUES (?)", {stored});
    const QVariant list = app.exec("INSERT INTO lists (LIST_ITEMS) VALUES (?)", {stored});
    const QByteArray before = app.dump();
    for (const JsonColumn& column : {readFormFields(form), readListItems(list)}) {
        QCOMPARE(column.status, JsonColumn::Status::NotAnObject);
        QVERIFY(column.object.isEmpty());
    }
    QCOMPARE(app.dump(), before);
}

void tst_FormDefinitions::missingRowIsNoObject()
{
    TempApplication app;
    QCOMPARE(readFormFields(28).status, JsonColumn::Status::NotAnObject);
    QCOMPARE(readListItems("7").status, JsonColumn::Status::NotAnObject);
}

void tst_FormDefinitions::failedSelectGivesTheDriversText()
{
    TempApplication app;
    app.exec("DROP TABLE forms");
    const JsonColumn column = readFormFields(1);
    QCOMPARE(column.status, JsonColumn::Status::QueryFailed);
    QVERIFY2(column.error.contains("no such table: forms"), qPrintable(column.error));

    // No id at all leaves the statement incomplete.
    const JsonColumn incomplete = readListItems(QVariant());
    QCOMPARE(incomplete.status, JsonColumn::Status::QueryFailed);
    QVERIFY2(incomplete.error.contains("syntax error"), qPrintable(incomplete.error));
}

void tst_FormDefinitions::rewritesIndentedBytes()
{
    TempApplication app;
    const QVariant id = app.exec("INSERT INTO forms (FIELDS) VALUES (?)", {emptyFormFields});
    QString error;
    QVERIFY2(writeFormFields(id, objectFrom(certificateFields), &error), qPrintable(error));
    QCOMPARE(storedColumn(app, "forms", "FIELDS"),
             QByteArray("blob {\"fields\": ["
                        "{\"name\": \"Специальность\", \"tag\": \"#SPECIALTY\", \"type\": 0}, "
                        "{\"list\": 7, \"name\": \"Квалификация\", \"tag\": \"#QUALIFICATION\", "
                        "\"type\": 1}, "
                        "{\"format\": \"dd.MM.yyyy\", \"name\": \"Дата протокола\", \"tag\": "
                        "\"#PROTOCOL_DATE\", \"type\": 3}, "
                        "{\"content\": [{\"name\": \"Предмет\", \"typeID\": \"0\"}, "
                        "{\"edtColumnW\": \"60\", \"listID\": \"7\", \"name\": \"Оценка\", "
                        "\"typeID\": \"1\"}], "
                        "\"name\": \"Оценки\", \"tag\": \"#GRADES\", \"type\": 4}]}"));
    QVERIFY(app.value("SELECT FIELDS FROM forms")
                .toByteArray()
                .startsWith("{\n    \"fields\": [\n        {\n            \"name\": "));
    QCOMPARE(readFormFields(id).object, objectFrom(certificateFields));
}

void tst_FormDefinitions::rewritesLists()
{
    TempApplication app;
    const QVariant id = app.exec("INSERT INTO lists (LIST_ITEMS) VALUES (?)", {emptyListItems});
    QVERIFY(writeListItems(id, objectFrom("{\"items\": [\"да\", \"нет\"]}")));
    QCOMPARE(storedColumn(app, "lists", "LIST_ITEMS"),
             QByteArray("blob {\"items\": [\"да\", \"нет\"]}"));
    QCOMPARE(app.value("SELECT LIST_ITEMS FROM lists").toByteArray(),
             QByteArray("{\n    \"items\": [\n        \"да\",\n        \"нет\"\n    ]\n}\n"));
}

void tst_FormDefinitions::failedUpdateGivesTheDriversText()
{
    TempApplication app;
    const QVariant id = app.exec("INSERT INTO forms (FIELDS) VALUES (?)", {emptyFormFields});
    app.exec("CREATE TRIGGER refuse BEFORE UPDATE ON forms BEGIN SELECT RAISE(ABORT, 'kept'); END");
    QString error;
    QVERIFY(!writeFormFields(id, objectFrom(certificateFields), &error));
    QVERIFY2(error.contains("kept"), qPrintable(error));
    QVERIFY(!writeFormFields(id, objectFrom(certificateFields)));
    QCOMPARE(app.value("SELECT FIELDS FROM forms").toString(), emptyFormFields);

    app.exec("DROP TABLE lists");
    QVERIFY(!writeListItems(id, QJsonObject(), &error));
    QVERIFY(!error.isEmpty());
}

void tst_FormDefinitions::updateOfAMissingRowChangesNothing()
{
    TempApplication app;
    app.exec("INSERT INTO forms (FIELDS) VALUES (?)", {emptyFormFields});
    const QByteArray before = app.dump();
    QVERIFY(writeFormFields(99, objectFrom(certificateFields)));
    QCOMPARE(app.dump(), before);
}

void tst_FormDefinitions::oneRowIsRewritten()
{
    TempApplication app;
    const QVariant first = app.exec("INSERT INTO lists (LIST_ITEMS) VALUES (?)", {emptyListItems});
    const QVariant second = app.exec("INSERT INTO lists (LIST_ITEMS) VALUES (?)", {emptyListItems});
    QVERIFY(writeListItems(second, objectFrom("{\"items\": [\"да\"]}")));
    QCOMPARE(app.value("SELECT LIST_ITEMS FROM lists WHERE ID = ?", {first}).toString(),
             emptyListItems);
    QCOMPARE(readListItems(second).object["items"].toArray(), QJsonArray{"да"});
}

QTEST_MAIN(tst_FormDefinitions)
#include "tst_FormDefinitions.moc"
