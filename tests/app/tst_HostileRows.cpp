#include <QtTest>

#include <QAction>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTableWidget>
#include <QToolButton>

#include <memory>

#include "DeskFixture.h"
#include "Visitor.h"
#include "app/AppStyle.h"
#include "documents/DocumentFixture.h"
#include "documents/MainWindow.h"
#include "forms/FormDefinitions.h"
#include "store/Schema.h"
#include "support/ModalDriver.h"
#include "support/PrintFixture.h"
#include "support/Process.h"

namespace {

const QStringList jsonColumns = {"docs.CONTENT", "forms.FIELDS", "lists.LIST_ITEMS",
                                 "blanks.CONTENT", "export.FIELDS"};

/// Statements that give the columns of a type a value, in every table.
QStringList setColumns(const QString& type, const QString& value, const QStringList& except)
{
    QStringList statements;
    for (const TableDefinition& table : schemaTables()) {
        for (const ColumnDefinition& column : table.columns) {
            const QString name = table.name + "." + column.name;
            if (column.type == type && !except.contains(name)) {
                statements << QString("UPDATE %1 SET %2 = %3").arg(table.name, column.name, value);
            }
        }
    }
    return statements;
}

/// All texts but those that are JSON.
QStringList setTexts(const QString& value)
{
    return setColumns("TEXT", value, jsonColumns);
}

/// All numbers but those that decide whether a row is reached at all.
QStringList setNumbers(const QString& value)
{
    return setColumns("INTEGER", value, {"docs.TEMPLATE", "docs.DOC_TYPE", "blanks.FORM_ID"});
}

QStringList setJson(const QString& value)
{
    QStringList statements;
    for (const QString& column : jsonColumns) {
        statements << QString("UPDATE %1 SET %2 = %3")
                          .arg(column.section('.', 0, 0), column.section('.', 1), value);
    }
    return statements;
}

/// Values one in the other, as deep as a JSON text can be read.
QJsonValue deep(bool asObject)
{
    constexpr int depth = 1000;
    QJsonValue value = "x";
    for (int i = 0; i < depth; ++i) {
        value =
            asObject ? QJsonValue(QJsonObject{{"value", value}}) : QJsonValue(QJsonArray{value});
    }
    return value;
}

QString quoted(const QJsonObject& object)
{
    return "'" +
           QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact))
               .replace("'", "''") +
           "'";
}

QString repeatedJson(const char* key, const QString& element, int count)
{
    return QString("'{\"%1\": [' || substr(replace(hex(zeroblob(%2)), '00', ',%3'), 2) || ']}'")
        .arg(key)
        .arg(count)
        .arg(element);
}

} // namespace

/// Rows that somebody wrote to do harm: the application shows what it can, and neither dies nor
/// keeps its user waiting.
class tst_HostileRows : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();

    void everywhere_data();
    void everywhere();
    void manyRows_data();
    void manyRows();

private:
    void fill();
    void pressAll();
    QTableWidget* list() const { return named<QTableWidget>(m_window.get(), "docsWidget"); }

    std::unique_ptr<PrintFixture> m_app;
    std::unique_ptr<MainWindow> m_window;
    std::unique_ptr<Visitor> m_visitor;
};

void tst_HostileRows::initTestCase()
{
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    loadBaseStyle();
}

void tst_HostileRows::cleanup()
{
    m_visitor.reset();
    m_window.reset();
    m_app.reset();
}

/// One row of everything, two of documents.
void tst_HostileRows::fill()
{
    m_app = std::make_unique<PrintFixture>();
    const int marks = addList(*m_app, {"хорошо", "отлично"});
    addForm(*m_app, "Диплом",
            {formField("#S", "Строка", FieldType::string),
             formField("#L", "Список", FieldType::list, {{"list", marks}}),
             formField("#T", "Таблица", FieldType::table,
                       {{"content", QJsonArray{tableColumn("Предмет", "0")}}})});
    m_app->addDocument({{"#S", valueEntry(FieldType::string, "строка")},
                        {"#X", valueEntry(FieldType::text, "текст")},
                        {"#T", tableEntry({{"Алгебра", "5"}})}});
    m_app->addDocument({}, {{"TEMPLATE", 1}, {"TEMPLATE_NAME", "Шаблон"}});
    m_app->addBlank({blankItem(0, "Для #LNAME #S #X", QRectF(10, 10, 300, 60)),
                     blankItem(1, "#BLANK_NO", QRectF(400, 10, 98, 98)),
                     blankItem(2, "#T", QRectF(10, 100, 300, 200))});
    m_app->exec("INSERT INTO export (NAME, FIELDS, TYPE, TEMPLATE, FROM_ROW, TO_ROW, DATE_FORMAT) "
                "VALUES ('Реестр', '{\"items\": [{\"col\": \"A\", \"tag\": \"#LNAME\"}]}', 0, "
                "'none.xlsx', 2, 9, 'dd.MM.yyyy')");
}

void tst_HostileRows::everywhere_data()
{
    QTest::addColumn<QStringList>("damage");
    const QString huge = "replace(hex(zeroblob(1000000)), '00', 'Ъ')";
    QTest::newRow("a million letters") << setTexts(huge);
    QTest::newRow("a million words") << setTexts("replace(hex(zeroblob(200000)), '00', 'Ъ ъъъъ ')");
    QTest::newRow("ten thousand lines") << setTexts("replace(hex(zeroblob(10000)), '00', 'а\n')");
    QTest::newRow("markup") << setTexts(
        "replace(hex(zeroblob(20000)), '00', '<table><tr><td><b>')");
    QTest::newRow("zero bytes") << setTexts("zeroblob(100000)");
    QTest::newRow("random bytes") << setTexts("randomblob(100000)");
    QTest::newRow("control characters")
        << setTexts("char(0, 7, 8, 27, 91, 50, 74, 8238, 8295, 55296, 65279, 65534, 1114111)");
    QTest::newRow("percent signs") << setTexts("'%1 %2 %99 %n %s &amp; %L1'");
    QTest::newRow("numbers for texts") << setTexts("9223372036854775807");
    QTest::newRow("no texts") << setTexts("NULL");
    QTest::newRow("texts for numbers") << setNumbers("'число'");
    QTest::newRow("largest numbers") << setNumbers("9223372036854775807");
    QTest::newRow("lowest numbers") << setNumbers("-9223372036854775807 - 1");
    QTest::newRow("largest integers") << setNumbers("2147483647");
    QTest::newRow("lowest integers") << setNumbers("-2147483648");
    QTest::newRow("infinite numbers") << setNumbers("9e999");
    QTest::newRow("bytes for numbers") << setNumbers("randomblob(1000)");
    QTest::newRow("broken JSON") << setJson("'{\"fields\": [{\"name\": '");
    QTest::newRow("random JSON") << setJson("randomblob(1000)");
    QTest::newRow("JSON of zero bytes") << setJson("zeroblob(1000000)");
    QTest::newRow("number for JSON") << setJson("1e308");
    QTest::newRow("arrays for JSON") << setJson("'[[[1]]]'");
    QTest::newRow("brackets without end")
        << setJson("replace(hex(zeroblob(1000000)), '00', '[{\"a\":')");
    for (const bool asObject : {false, true}) {
        const QJsonValue value = deep(asObject);
        const QJsonObject field{{"tag", "#S"},      {"name", value},    {"type", 4},
                                {"content", value}, {"columns", value}, {"list", value},
                                {"value", value},   {"col", value},     {"pos_x", value}};
        QTest::newRow(asObject ? "deep objects" : "deep arrays")
            << setJson(quoted({{"fields", QJsonArray{field, value}},
                               {"items", QJsonArray{field, value}},
                               {"#S", field},
                               {"#T", value}}));
    }
    const QJsonObject beyond{{"type", 0},        {"value", "#LNAME"}, {"pos_x", 1e300},
                             {"pos_y", -1e300},  {"size_w", 1e300},   {"size_h", 1e300},
                             {"font_size", 1e9}, {"line_h", -1e300},  {"rotate", 1e300}};
    QJsonObject symbol = beyond;
    symbol["type"] = 1;
    QJsonObject table = beyond;
    table["type"] = 2;
    table["value"] = "#T";
    QTest::newRow("frames beyond any page") << QStringList{
        "UPDATE blanks SET CONTENT = " + quoted({{"fields", QJsonArray{beyond, symbol, table}}})};
    QTest::newRow("twenty thousand items of a list") << QStringList{
        "UPDATE lists SET LIST_ITEMS = " + repeatedJson("items", "\"пункт\"", 20000)};
    QTest::newRow("two thousand fields of a form") << QStringList{
        "UPDATE forms SET FIELDS = " +
        repeatedJson("fields", "{\"tag\": \"#A\", \"name\": \"А\", \"type\": 0}", 2000)};
    QTest::newRow("two thousand frames")
        << QStringList{"UPDATE blanks SET CONTENT = " +
                       repeatedJson("fields",
                                    "{\"type\": 0, \"value\": \"#LNAME\", \"pos_x\": 10, "
                                    "\"pos_y\": 10, \"size_w\": 50, \"size_h\": 20}",
                                    2000)};
    QTest::newRow("documents without a key") << QStringList{
        "ALTER TABLE docs RENAME TO old", "CREATE TABLE docs AS SELECT * FROM old",
        "INSERT INTO docs SELECT * FROM docs", "UPDATE docs SET ID = NULL WHERE rowid = 1",
        "UPDATE docs SET ID = 'текст' WHERE rowid > 2"};
    QTest::newRow("all without a key")
        << QStringList{"ALTER TABLE forms RENAME TO old1",
                       "CREATE TABLE forms AS SELECT * FROM old1",
                       "ALTER TABLE lists RENAME TO old2",
                       "CREATE TABLE lists AS SELECT * FROM old2",
                       "ALTER TABLE blanks RENAME TO old3",
                       "CREATE TABLE blanks AS SELECT * FROM old3",
                       "ALTER TABLE export RENAME TO old4",
                       "CREATE TABLE export AS SELECT * FROM old4",
                       "INSERT INTO forms SELECT NULL, FORM_NAME, FORM_FULLNAME, FIELDS FROM forms",
                       "INSERT INTO lists SELECT 'x', LIST_NAME, LIST_ITEMS FROM lists",
                       "UPDATE blanks SET ID = NULL",
                       "UPDATE export SET ID = '1 OR 1'"};
}

void tst_HostileRows::pressAll()
{
    for (const char* action :
         {"СОЗДАТЬ ДОКУМЕНТ", "СОЗДАТЬ КОПИЮ\nДОКУМЕНТА", "РЕДАКТИРОВАТЬ\nДОКУМЕНТ", "ПЕЧАТЬ",
          "УДАЛИТЬ ДОКУМЕНТ", "ФОРМЫ", "БЛАНКИ", "ЭКСПОРТ\nИМПОРТ"})
    {
        pressToolBar(m_window.get(), action);
    }
    named<QAction>(m_window.get(), "menuAction_LocalChangeOrgData")->trigger();
    for (const char* button : {"filterApplyBtn", "filterResetBtn"}) {
        QTest::mouseClick(named<QToolButton>(m_window.get(), button), Qt::LeftButton);
    }
    m_window->grab();
}

void tst_HostileRows::everywhere()
{
    QFETCH(QStringList, damage);
    fill();
    for (const QString& statement : damage) {
        m_app->exec(statement);
    }
    const QByteArray before = m_app->dump();
    m_visitor = std::make_unique<Visitor>();
    m_window = std::make_unique<MainWindow>();
    m_window->show();
    QVERIFY(list()->rowCount() > 0);
    for (int row = 0; row < list()->rowCount(); ++row) {
        list()->setCurrentCell(row, 0);
        pressAll();
        openValues(named<QTableWidget>(m_window.get(), "contentWidget"));
    }
    QVERIFY(m_app->dump() == before);
    const ProcessResult printed =
        runProcess(QString(ZELVORA_BIN_DIR) + "/tools/zelvora-print",
                   {"--dir", m_app->path(), "--all", "--output", m_app->path("page.pdf")});
    QVERIFY2(printed.exitCode >= 0, printed.err.left(500));
    const ProcessResult checked = runProcess(QString(ZELVORA_BIN_DIR) + "/tools/zelvora-db",
                                             {"check", m_app->path("docs.db")});
    QVERIFY2(checked.exitCode >= 0, checked.err.left(500));
}

void tst_HostileRows::manyRows_data()
{
    QTest::addColumn<QString>("table");
    QTest::addColumn<QString>("action");
    QTest::newRow("lists") << "lists"
                           << "ФОРМЫ";
    QTest::newRow("blanks of a document") << "blanks"
                                          << "ПЕЧАТЬ";
}

void tst_HostileRows::manyRows()
{
    QFETCH(QString, table);
    QFETCH(QString, action);
    fill();
    QStringList columns;
    for (const TableDefinition& definition : schemaTables()) {
        for (const ColumnDefinition& column : definition.columns) {
            if (definition.name == table && column.name != "ID") {
                columns << column.name;
            }
        }
    }
    m_app->exec(QString("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < "
                        "100000) INSERT INTO %1 (%2) SELECT %2 FROM %1, n WHERE ID = 1")
                    .arg(table, columns.join(", ")));
    m_window = std::make_unique<MainWindow>();
    m_window->show();
    list()->setCurrentCell(0, 0);
    ModalDriver driver;
    driver.expect<QDialog>([](QDialog* dialog) {
        dialog->grab();
        dialog->reject();
    });
    pressToolBar(m_window.get(), action);
    QVERIFY2(driver.finished(), driver.failures());
}

QTEST_MAIN(tst_HostileRows)
#include "tst_HostileRows.moc"
