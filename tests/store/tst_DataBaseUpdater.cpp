#include <QtTest>

#include <QBuffer>
#include <QDataStream>
#include <QFile>
#include <QJsonDocument>
#include <QPushButton>
#include <QSqlQuery>

#include "app/AppStyle.h"
#include "store/DataBaseUpdater.h"
#include "store/UpdateFixture.h"
#include "support/LogCatcher.h"
#include "support/ModalDriver.h"

/// Update packages applied to an open database.
class tst_DataBaseUpdater : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void newerVersion_data();
    void newerVersion();
    void readsAndWritesTheStamp();
    void stampFailures();

    void unopenableDevice();
    void unreadablePackage();
    void unreadableStamp();
    void brokenHeaderIsNoUpdate_data();
    void brokenHeaderIsNoUpdate();
    void equalVersionIsNoUpdate();
    void headerAloneSetsTheStamp();
    void appliesDuePartsInFileOrder();
    void partAboveThePackageIsApplied();
    void partWithoutTypeIsSql();
    void brokenPartIsSkipped();
    void firstStringIsOfNoUse();
    void failingStatementRollsBack();
    void ignoredFailureGoesOn();
    void lastErrorOutlivesSuccess();
    void endedTransactionStops_data();
    void endedTransactionStops();
    void endedTransactionIsShown();
    void unknownFunction();
    void unknownTypeIsNeverIgnored();
    void failingStampRollsBack();
    void failingCommitLeavesNoTransaction();
    void cutOffAnywhere();
    void stringOfOddLength_data();
    void stringOfOddLength();
    void stringOfOddLengthShowsTheBox();

    void listByName();
    void migrationWithoutTheForm();
    void migrationAddsFields();
    void migrationReplacesEveryPlaceholder();
    void migrationOfAnyContent_data();
    void migrationOfAnyContent();
    void migrationWithoutAList();
    void migrationOfBrokenFields();
    void migrationWithBrokenArgument();
    void migrationWithApostrophe();
    void migrationSurvivesRefusedDocuments();
    void migrationOfThousands();
    void existDocumentsFailure();
    void migrationWithoutTheTableOfForms();
    void completeDocumentStaysAsItIs();

    void successRemovesThePackage();
    void notNeededRemovesThePackage();
    void failureKeepsThePackage();
    void failureRemovesThePackage();
    void closedBoxKeepsThePackage();
    void longStatementIsCut();
    void markupIsShownAsText();

    void allOrNothing();

private:
    bool run(const QByteArray& package);
    bool run(const QString& version, const QList<TestPart>& parts)
    {
        return run(packPackage(headerFor(version), parts));
    }
    QString stamp() { return m_app->value("SELECT DB_VERSION FROM zvsys").toString(); }
    QStringList names();

    std::unique_ptr<TempApplication> m_app;
    DataBaseUpdater m_updater;
};

namespace {

QString insertName(const QString& name)
{
    return "INSERT INTO lists (LIST_NAME) VALUES ('" + name + "')";
}

/// A package whose second part has a string with one byte too few by its length: which of the two
/// strings is told by `payload`. A third part follows.
QByteArray oddPackage(bool payload, bool ignoreErrors)
{
    const QList<TestPart> parts{sqlPart("1.2.0.0", insertName("a")),
                                sqlPart("1.2.0.0", insertName("b"), ignoreErrors),
                                sqlPart("1.2.0.0", insertName("c"))};
    QByteArray package = packPackage(headerFor("1.2.0.0"), parts);
    int end = packPackage(headerFor("1.2.0.0"), parts.mid(0, 2)).size();
    const int payloadSize = 2 * insertName("b").size();
    if (!payload) {
        // The empty first string becomes one of 1 byte.
        const int length = end - payloadSize - 8;
        package.replace(length, 4, QByteArray("\0\0\0\1", 4));
        package.insert(length + 4, 'x');
        return package;
    }
    package[end - payloadSize - 1] = static_cast<char>(payloadSize - 1);
    package.remove(end - 1, 1);
    return package;
}

QJsonObject contentOf(TempApplication& app, int id)
{
    return QJsonDocument::fromJson(
               app.value("SELECT CONTENT FROM docs WHERE ID = ?", {id}).toByteArray())
        .object();
}

} // namespace

void tst_DataBaseUpdater::init()
{
    m_app = std::make_unique<TempApplication>();
    m_updater = DataBaseUpdater();
    m_app->exec("INSERT INTO zvsys (DB_VERSION) VALUES ('1.0.0.0')");
}

void tst_DataBaseUpdater::cleanup()
{
    m_app.reset();
}

bool tst_DataBaseUpdater::run(const QByteArray& package)
{
    QBuffer device;
    device.setData(package);
    return m_updater.runUpdate(&device);
}

QStringList tst_DataBaseUpdater::names()
{
    return m_app->value("SELECT group_concat(LIST_NAME) FROM (SELECT * FROM lists ORDER BY ID)")
        .toString()
        .split(',', Qt::SkipEmptyParts);
}

void tst_DataBaseUpdater::newerVersion_data()
{
    QTest::addColumn<QString>("current");
    QTest::addColumn<QString>("candidate");
    QTest::addColumn<bool>("newer");
    QTest::newRow("equal") << "1.2.0.0"
                           << "1.2.0.0" << false;
    QTest::newRow("higher") << "1.2.0.0"
                            << "1.2.0.1" << true;
    QTest::newRow("lower") << "1.2.0.1"
                           << "1.2.0.0" << false;
    QTest::newRow("short is equal") << "1.2"
                                    << "1.2.0.0" << false;
    QTest::newRow("long is equal") << "1.2.0.0"
                                   << "1.2" << false;
    QTest::newRow("longer is higher") << "1.2"
                                      << "1.2.0.1" << true;
    QTest::newRow("as numbers") << "1.9.0.0"
                                << "1.10.0.0" << true;
    QTest::newRow("not as text") << "1.10.0.0"
                                 << "1.9.0.0" << false;
    QTest::newRow("first difference decides") << "2.0.0.0"
                                              << "1.9.9.9" << false;
    QTest::newRow("empty candidate") << "0.0.0.0"
                                     << "" << false;
    QTest::newRow("empty current") << ""
                                   << "0.0.0.1" << true;
    QTest::newRow("no number counts 0") << "1.x.0.0"
                                        << "1.0.0.0" << false;
    QTest::newRow("no number below") << "1.x.0.0"
                                     << "1.1.0.0" << true;
    QTest::newRow("negative counts 0") << "1.0.0.0"
                                       << "1.-5.0.0" << false;
    QTest::newRow("empty component") << "1..3"
                                     << "1.0.4" << true;
}

void tst_DataBaseUpdater::newerVersion()
{
    QFETCH(QString, current);
    QFETCH(QString, candidate);
    QFETCH(bool, newer);
    QCOMPARE(m_updater.isNewerVersion(current, candidate), newer);
}

void tst_DataBaseUpdater::readsAndWritesTheStamp()
{
    QString version;
    QVERIFY(m_updater.readDbVersion(version, false));
    QCOMPARE(version, QString("1.0.0.0"));
    QVERIFY(m_updater.writeDbVersion("3.4.5.6"));
    QVERIFY(m_updater.readDbVersion(version, true));
    QCOMPARE(version, QString("3.4.5.6"));

    m_app->exec("DELETE FROM zvsys");
    QVERIFY(!m_updater.readDbVersion(version, false));
    QCOMPARE(version, QString("0.0.0.0"));
    QVERIFY(
        m_updater.lastError().startsWith("Не удалось получить/создать DB_VERSION;\nSqlError: "));
    QVERIFY(m_updater.readDbVersion(version, true));
    QCOMPARE(version, QString("0.0.0.0"));
    QCOMPARE(stamp(), QString("0.0.0.0"));

    m_app->exec("DROP TABLE zvsys");
    QVERIFY(m_updater.readDbVersion(version, true));
    QCOMPARE(stamp(), QString("0.0.0.0"));
    QCOMPARE(m_app->value("SELECT sql FROM sqlite_master WHERE name = 'zvsys'").toString(),
             QString("CREATE TABLE zvsys (DB_VERSION TEXT)"));
}

void tst_DataBaseUpdater::stampFailures()
{
    QString version;
    m_app->exec("DROP TABLE zvsys");
    m_app->exec("CREATE VIEW zvsys AS SELECT 1 AS OTHER");
    QVERIFY(!m_updater.writeDbVersion("2.0.0.0"));
    QVERIFY(m_updater.lastError().startsWith("Ошибка установки версии базы данных;\nSqlError: "));
    QCOMPARE(m_updater.lastQuery(), QString("UPDATE zvsys SET DB_VERSION = '2.0.0.0';"));
    QVERIFY(!m_updater.readDbVersion(version, true));
    QVERIFY(
        m_updater.lastError().startsWith("Не удалось получить/создать DB_VERSION;\nSqlError: "));
    QCOMPARE(m_updater.lastQuery(), QString("INSERT INTO zvsys (DB_VERSION) VALUES ('0.0.0.0');"));

    m_app->exec("DROP VIEW zvsys");
    m_app->exec("PRAGMA query_only = 1");
    QVERIFY(!m_updater.readDbVersion(version, true));
    QVERIFY(m_updater.lastError().startsWith("Не удалось создать таблицу zvsys;\nSqlError: "));
    QCOMPARE(m_updater.lastQuery(), QString("CREATE TABLE IF NOT EXISTS zvsys (DB_VERSION TEXT);"));
}

void tst_DataBaseUpdater::unopenableDevice()
{
    QFile missing(m_app->path("dbUpdate.bin"));
    LogCatcher log;
    QVERIFY(!m_updater.runUpdate(&missing));
    QVERIFY(log.contains("Запуск обновления базы данных..."));
    QCOMPARE(m_updater.lastError(), QString("Не удалось открыть файл с обновлением БД"));
    QCOMPARE(m_updater.lastQuery(), QString());
}

// Opened, it can't be read: that is no empty package, which would be removed.
void tst_DataBaseUpdater::unreadablePackage()
{
#ifdef Q_OS_LINUX
    QFile memory("/proc/self/mem"); // nothing stands at its beginning
    const QByteArray before = m_app->dump();
    QVERIFY(!m_updater.runUpdate(&memory));
    QCOMPARE(m_updater.lastError(), QString("Не удалось открыть файл с обновлением БД"));
    QVERIFY(!memory.isOpen());
    QCOMPARE(m_app->dump(), before);
#else
    QSKIP("no file here that can't be read");
#endif
}

void tst_DataBaseUpdater::unreadableStamp()
{
    m_app->exec("DROP TABLE zvsys");
    m_app->exec("CREATE VIEW zvsys AS SELECT 1 AS OTHER");
    const QByteArray before = m_app->dump();
    QVERIFY(!run("1.2.0.0", {sqlPart("1.2.0.0", insertName("a"))}));
    QVERIFY(
        m_updater.lastError().startsWith("Не удалось получить/создать DB_VERSION;\nSqlError: "));
    QCOMPARE(m_app->dump(), before);
}

void tst_DataBaseUpdater::brokenHeaderIsNoUpdate_data()
{
    QTest::addColumn<QByteArray>("header");
    QTest::newRow("no JSON") << QByteArray("{\"update_version\":");
    QTest::newRow("an array") << QByteArray("[\"2.0.0.0\"]");
    QTest::newRow("no version") << QByteArray("{}");
    QTest::newRow("a number") << QByteArray("{\"update_version\":2}");
    QTest::newRow("empty") << QByteArray();
}

void tst_DataBaseUpdater::brokenHeaderIsNoUpdate()
{
    QFETCH(QByteArray, header);
    const QByteArray before = m_app->dump();
    LogCatcher log;
    QVERIFY(run(packPackage(header, {sqlPart("2.0.0.0", insertName("никогда"))})));
    QVERIFY(log.contains("Обновление базы не требуется"));
    QCOMPARE(m_app->dump(), before);
}

void tst_DataBaseUpdater::equalVersionIsNoUpdate()
{
    const QByteArray before = m_app->dump();
    LogCatcher log;
    QVERIFY(run("1.0.0.0", {sqlPart("2.0.0.0", insertName("никогда"))}));
    QVERIFY(log.contains("Текущая версия БД: "));
    QVERIFY(log.contains("Версия обновления БД: "));
    QVERIFY(log.contains("Обновление базы не требуется"));
    QCOMPARE(m_app->dump(), before);
}

void tst_DataBaseUpdater::headerAloneSetsTheStamp()
{
    QVERIFY(run("1.2.0.0", {}));
    QCOMPARE(stamp(), QString("1.2.0.0"));
}

void tst_DataBaseUpdater::appliesDuePartsInFileOrder()
{
    QVERIFY(
        run("1.2.0.0", {sqlPart("1.0.0.0", insertName("a")), sqlPart("1.2.0.0", insertName("b")),
                        sqlPart("1.1.0.0", insertName("c")), sqlPart("1.2.0.0", insertName("d"))}));
    QCOMPARE(names(), (QStringList{"b", "c", "d"}));
    QCOMPARE(stamp(), QString("1.2.0.0"));
}

void tst_DataBaseUpdater::partAboveThePackageIsApplied()
{
    QVERIFY(run("1.2.0.0", {sqlPart("7.0.0.0", insertName("a"))}));
    QCOMPARE(names(), QStringList{"a"});
    QCOMPARE(stamp(), QString("1.2.0.0"));
}

void tst_DataBaseUpdater::partWithoutTypeIsSql()
{
    QVERIFY(run("1.2.0.0", {{"{\"version\":\"1.2.0.0\"}", insertName("a")},
                            {"{\"version\":\"1.2.0.0\",\"type\":\"\"}", insertName("b")},
                            {"{\"version\":\"1.2.0.0\",\"type\":5}", insertName("c")}}));
    QCOMPARE(names(), (QStringList{"a", "b", "c"}));
}

void tst_DataBaseUpdater::brokenPartIsSkipped()
{
    QVERIFY(run("1.2.0.0", {{"{\"version\":\"1.2.0.0\"", insertName("a")},
                            {"{\"version\":12}", insertName("b")},
                            {"", QString()},
                            sqlPart("1.2.0.0", insertName("c"))}));
    QCOMPARE(names(), QStringList{"c"});
    QCOMPARE(stamp(), QString("1.2.0.0"));
}

void tst_DataBaseUpdater::firstStringIsOfNoUse()
{
    TestPart part = sqlPart("1.2.0.0", insertName("a"));
    part.unused = "DROP TABLE lists";
    QVERIFY(run("1.2.0.0", {part}));
    QCOMPARE(names(), QStringList{"a"});
}

void tst_DataBaseUpdater::failingStatementRollsBack()
{
    const QByteArray before = m_app->dump();
    LogCatcher log;
    QVERIFY(!run("1.2.0.0", {sqlPart("1.2.0.0", insertName("a")),
                             sqlPart("1.2.0.0", "INSERT INTO nowhere VALUES (1)"),
                             sqlPart("1.2.0.0", insertName("b"))}));
    QCOMPARE(m_app->dump(), before);
    QVERIFY(m_updater.lastError().startsWith("Ошибка выполнения запроса;\nSqlError: "));
    QVERIFY(m_updater.lastError().contains("no such table: nowhere"));
    QCOMPARE(m_updater.lastQuery(), QString("INSERT INTO nowhere VALUES (1)"));
    QCOMPARE(log.count("(DataBaseUpdater) SqlError:"), 1);
    QVERIFY(log.contains(";  SqlQuery:"));
}

void tst_DataBaseUpdater::ignoredFailureGoesOn()
{
    QVERIFY(run("1.2.0.0", {sqlPart("1.2.0.0", insertName("a")),
                            sqlPart("1.2.0.0", "INSERT INTO nowhere VALUES (1)", true),
                            sqlPart("1.2.0.0", insertName("b"))}));
    QCOMPARE(names(), (QStringList{"a", "b"}));
    QCOMPARE(stamp(), QString("1.2.0.0"));
}

void tst_DataBaseUpdater::lastErrorOutlivesSuccess()
{
    QVERIFY(run("1.2.0.0", {sqlPart("1.2.0.0", "bad", true)}));
    QVERIFY(!m_updater.lastError().isEmpty());
    QVERIFY(run("1.3.0.0", {}));
    QCOMPARE(m_updater.lastError(), QString());
    QCOMPARE(m_updater.lastQuery(), QString());
}

void tst_DataBaseUpdater::endedTransactionStops_data()
{
    QTest::addColumn<QString>("statement");
    QTest::addColumn<bool>("ignoreErrors");
    QTest::addColumn<QStringList>("remaining");
    QTest::newRow("COMMIT") << "COMMIT" << false << QStringList{"old", "a"};
    QTest::newRow("END") << "; /* x */ END TRANSACTION;" << true << QStringList{"old", "a"};
    QTest::newRow("ROLLBACK") << "ROLLBACK" << false << QStringList{"old"};
    // Fails, and takes the transaction with it: there is nothing to be ignored any more.
    QTest::newRow("conflict") << "INSERT OR ROLLBACK INTO lists (ID) VALUES (1)" << true
                              << QStringList{"old"};
}

void tst_DataBaseUpdater::endedTransactionStops()
{
    QFETCH(QString, statement);
    QFETCH(bool, ignoreErrors);
    QFETCH(QStringList, remaining);
    m_app->exec("INSERT INTO lists (ID, LIST_NAME) VALUES (1, 'old')");
    QVERIFY(!run("1.2.0.0",
                 {sqlPart("1.2.0.0", insertName("a")), sqlPart("1.2.0.0", statement, ignoreErrors),
                  sqlPart("1.2.0.0", insertName("b"))}));
    QCOMPARE(m_updater.lastError(), QString("Ошибка выполнения запроса;\nSqlError: запрос завершил "
                                            "транзакцию обновления"));
    QCOMPARE(m_updater.lastQuery(), statement);
    QCOMPARE(names(), remaining);
    QCOMPARE(stamp(), QString("1.0.0.0"));
    // No transaction is left open, which would take every later change with it.
    QVERIFY(QSqlDatabase::database().transaction());
    QVERIFY(QSqlDatabase::database().rollback());
}

void tst_DataBaseUpdater::endedTransactionIsShown()
{
    placePackage(*m_app, packPackage(headerFor("1.2.0.0"), {sqlPart("1.2.0.0", "COMMIT")}));
    QFile file(m_app->path("dbUpdate.bin"));
    ModalDriver driver;
    driver.expectMessage("Ошибка обновления БД",
                         "Не удалось обновить базу данных.\n\n-- ERROR --\nОшибка выполнения "
                         "запроса;\nSqlError: запрос завершил транзакцию обновления;\n\n"
                         "-- SQL QUERY --\nCOMMIT",
                         "Продолжить");
    QVERIFY(runDatabaseUpdate(file));
    QVERIFY2(driver.finished(), driver.failures());
    QVERIFY(file.exists());
}

void tst_DataBaseUpdater::unknownFunction()
{
    const QByteArray json = R"({"version":"1.2.0.0","type":"cppFunction","function_name":"no"})";
    const QByteArray ignored =
        R"({"version":"1.2.0.0","type":"cppFunction","function_name":"no","ignore_errors":true})";
    LogCatcher log;
    QVERIFY(!run("1.2.0.0", {{json, "x"}}));
    QCOMPARE(log.count("(DataBaseUpdater) Unknown function_name - no"), 1);
    QCOMPARE(m_updater.lastError(), QString("Unknown function_name - no"));
    QCOMPARE(stamp(), QString("1.0.0.0"));
    QVERIFY(run("1.2.0.0", {{ignored, "x"}}));
    QCOMPARE(stamp(), QString("1.2.0.0"));
}

void tst_DataBaseUpdater::unknownTypeIsNeverIgnored()
{
    QVERIFY(
        !run("1.2.0.0", {{R"({"version":"1.2.0.0","type":"shell","ignore_errors":true})", "x"}}));
    QCOMPARE(m_updater.lastError(), QString("Unknown partType - shell"));
    QCOMPARE(stamp(), QString("1.0.0.0"));
}

void tst_DataBaseUpdater::failingStampRollsBack()
{
    m_app->exec("CREATE TRIGGER refuse BEFORE UPDATE ON zvsys BEGIN "
                "SELECT RAISE(ABORT, 'refused'); END");
    const QByteArray before = m_app->dump();
    QVERIFY(!run("1.2.0.0", {sqlPart("1.2.0.0", insertName("a"))}));
    QVERIFY(m_updater.lastError().startsWith(
        "Ошибка установки версии базы данных;\nSqlError: refused"));
    QCOMPARE(m_app->dump(), before);
}

// kept: nobody is told. But what is stored afterwards is stored.
void tst_DataBaseUpdater::failingCommitLeavesNoTransaction()
{
    m_app->exec("PRAGMA foreign_keys = ON");
    m_app->exec("CREATE TABLE pages (FORM INTEGER REFERENCES forms (ID) DEFERRABLE INITIALLY "
                "DEFERRED)");
    const QByteArray before = m_app->dump();
    QVERIFY(run("1.2.0.0", {sqlPart("1.2.0.0", insertName("a")),
                            sqlPart("1.2.0.0", "INSERT INTO pages VALUES (99)")}));
    QCOMPARE(m_app->dump(), before);
    m_app->exec(insertName("later"));
    QVERIFY(m_app->dump().contains("later")); // as another program reads it
    QCOMPARE(names(), QStringList{"later"});
}

void tst_DataBaseUpdater::cutOffAnywhere()
{
    const QList<TestPart> parts{sqlPart("1.2.0.0", insertName("a")),
                                sqlPart("1.2.0.0", insertName("b"))};
    const QByteArray header = headerFor("1.2.0.0");
    const int afterHeader = packPackage(header, {}).size();
    const int afterFirst = packPackage(header, {parts[0]}).size();
    const QByteArray whole = packPackage(header, parts);
    for (int size = 0; size <= whole.size(); ++size) {
        QVERIFY2(run(whole.left(size)), qPrintable(QString("cut at %1").arg(size)));
        QStringList expected;
        if (size >= afterFirst) {
            expected << "a";
        }
        if (size == whole.size()) {
            expected << "b";
        }
        QCOMPARE(names(), expected);
        QCOMPARE(stamp(), QString(size >= afterHeader ? "1.2.0.0" : "1.0.0.0"));
        QCOMPARE(m_updater.lastError(), QString());
        m_app->exec("DELETE FROM lists");
        m_app->exec("UPDATE zvsys SET DB_VERSION = '1.0.0.0'");
    }
}

void tst_DataBaseUpdater::stringOfOddLength_data()
{
    QTest::addColumn<bool>("payload");
    QTest::addColumn<bool>("ignoreErrors");
    QTest::newRow("payload") << true << false;
    QTest::newRow("payload, errors ignored") << true << true;
    QTest::newRow("string of no use") << false << false;
    QTest::newRow("string of no use, errors ignored") << false << true;
}

void tst_DataBaseUpdater::stringOfOddLength()
{
    QFETCH(bool, payload);
    QFETCH(bool, ignoreErrors);
    const QByteArray before = m_app->dump();
    QVERIFY(!run(oddPackage(payload, ignoreErrors)));
    QVERIFY(m_updater.lastError().startsWith("Ошибка выполнения запроса;\nSqlError: "));
    QCOMPARE(m_app->dump(), before);
}

void tst_DataBaseUpdater::stringOfOddLengthShowsTheBox()
{
    const QByteArray before = m_app->dump();
    placePackage(*m_app, oddPackage(true, false));
    QFile file(m_app->path("dbUpdate.bin"));
    ModalDriver driver;
    driver.expectMessageStarting("Ошибка обновления БД", "Не удалось обновить базу данных.",
                                 "Продолжить");
    QVERIFY(runDatabaseUpdate(file));
    QVERIFY2(driver.finished(), driver.failures());
    QVERIFY(QFile::exists(m_app->path("dbUpdate.bin")));
    QCOMPARE(m_app->dump(), before);
}

void tst_DataBaseUpdater::listByName()
{
    m_app->exec("INSERT INTO lists (ID, LIST_NAME) VALUES (7, 'Пол')");
    QCOMPARE(m_updater.listIdByName("Пол").toInt(), 7);
    LogCatcher log;
    QVERIFY(!m_updater.listIdByName("Нет").isValid());
    QCOMPARE(m_updater.lastError(), QString("Список 'Нет' не найден"));
    QVERIFY(log.contains("Список 'Нет' не найден"));
    QVERIFY(!m_updater.listIdByName("'").isValid());
    QVERIFY(m_updater.lastError().startsWith("Ошибка выполнения запроса;\nSqlError: "));
    QCOMPARE(m_updater.lastQuery(), QString("SELECT ID FROM lists WHERE LIST_NAME = '''"));
}

void tst_DataBaseUpdater::migrationWithoutTheForm()
{
    const QByteArray before = m_app->dump();
    QVERIFY(m_updater.crutchFrdoA({}, "no JSON at all"));
    QCOMPARE(m_app->dump(), before);
}

void tst_DataBaseUpdater::migrationAddsFields()
{
    makeForm28(*m_app, 10);
    m_app->exec("UPDATE docs SET CONTENT = '{\"#SEX\": {\"value\": \"свой\"}}' WHERE ID = 2");
    m_app->exec("INSERT INTO docs (ID, DOC_TYPE, TEMPLATE, CONTENT) VALUES (50, 27, 0, '{}')");
    QVERIFY(run("1.2.0.0", {functionPart("1.2.0.0", migrationArgument())}));

    const QByteArray stored = m_app->value("SELECT FIELDS FROM forms WHERE ID = 28").toByteArray();
    const QJsonObject form = QJsonDocument::fromJson(stored).object();
    QCOMPARE(
        form,
        (QJsonObject{
            {"fields",
             QJsonArray{QJsonObject{{"tag", "#OLD"}, {"name", "Прежнее"}, {"type", 0}},
                        QJsonObject{{"tag", "#SEX"}, {"name", "Пол"}, {"type", 1}, {"list", 106}},
                        QJsonObject{{"tag", "#NOTE"}, {"name", "Примечание"}, {"type", 5}},
                        QJsonObject{{"tag", "#OLD"}, {"name", "Другое"}, {"type", 5}}}}}));
    QCOMPARE(stored, QJsonDocument(form).toJson(QJsonDocument::Compact));
    QCOMPARE(m_app->value("SELECT typeof(FIELDS) FROM forms WHERE ID = 28").toString(),
             QString("text"));

    QCOMPARE(contentOf(*m_app, 1),
             (QJsonObject{
                 {"#OLD", QJsonObject{{"name", "Прежнее"}, {"type", 0}, {"value", "значение 1"}}},
                 {"#SEX", QJsonObject{{"name", "Пол"}, {"type", 1}, {"list", 106}}},
                 {"#NOTE", QJsonObject{{"name", "Примечание"}, {"type", 5}}}}));
    QCOMPARE(m_app->value("SELECT typeof(CONTENT) FROM docs WHERE ID = 1").toString(),
             QString("blob"));
    QCOMPARE(contentOf(*m_app, 2)["#SEX"].toObject(), (QJsonObject{{"value", "свой"}}));
    QCOMPARE(contentOf(*m_app, 2)["#OLD"].toObject(),
             (QJsonObject{{"name", "Прежнее"}, {"type", 0}}));
    QCOMPARE(m_app->value("SELECT CONTENT FROM docs WHERE ID = 10").toString(),
             QString("{ broken 10"));
    QCOMPARE(m_app->value("SELECT CONTENT FROM docs WHERE ID = 50").toString(), QString("{}"));
}

void tst_DataBaseUpdater::migrationReplacesEveryPlaceholder()
{
    makeForm28(*m_app, 0);
    QVERIFY(m_updater.crutchFrdoA({}, R"([{"tag": "#A", "all": [IDL_DOC_FULL_NAME, IDL_YES_NO,
        IDL_EDUC_LVL, IDL_CITIZEN, IDL_EDUC_FORM, IDL_SEX, IDL_FIN_SOURCE, IDL_STUDY_FORM,
        IDL_SEX], "case": "idl_sex"}])"));
    const QJsonObject form =
        QJsonDocument::fromJson(m_app->value("SELECT FIELDS FROM forms").toByteArray()).object();
    const QJsonObject added = form["fields"].toArray()[1].toObject();
    QCOMPARE(added["all"].toArray(), (QJsonArray{101, 102, 103, 104, 105, 106, 107, 108, 106}));
    QCOMPARE(added["case"].toString(), QString("idl_sex"));
}

void tst_DataBaseUpdater::migrationOfAnyContent_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<bool>("migrated");
    QTest::newRow("empty object") << "{}" << true;
    QTest::newRow("empty array") << "[]" << true;
    QTest::newRow("array") << "[{\"#SEX\": 1}, 2]" << true;
    QTest::newRow("number") << "17" << false;
    QTest::newRow("empty text") << "" << false;
    QTest::newRow("cut off") << "[1, 2" << false;
}

void tst_DataBaseUpdater::migrationOfAnyContent()
{
    QFETCH(QString, stored);
    QFETCH(bool, migrated);
    makeForm28(*m_app, 1);
    m_app->exec("UPDATE docs SET CONTENT = ? WHERE ID = 1", {stored});
    QVERIFY(run("1.2.0.0", {functionPart("1.2.0.0", migrationArgument())}));
    if (!migrated) {
        QCOMPARE(m_app->value("SELECT CONTENT FROM docs WHERE ID = 1").toString(), stored);
        return;
    }
    QCOMPARE(contentOf(*m_app, 1),
             (QJsonObject{{"#OLD", QJsonObject{{"name", "Прежнее"}, {"type", 0}}},
                          {"#SEX", QJsonObject{{"name", "Пол"}, {"type", 1}, {"list", 106}}},
                          {"#NOTE", QJsonObject{{"name", "Примечание"}, {"type", 5}}}}));
}

void tst_DataBaseUpdater::migrationWithoutAList()
{
    makeForm28(*m_app, 0);
    m_app->exec("DELETE FROM lists WHERE ID = 106");
    const QByteArray before = m_app->dump();
    QVERIFY(!m_updater.crutchFrdoA({}, R"([{"tag": "#A", "list": IDL_SEX}])"));
    QVERIFY(m_updater.lastError().startsWith("Function: crutchFrdoA. Json (Append) parse error: "));
    QCOMPARE(m_app->dump(), before);

    QVERIFY(m_updater.crutchFrdoA({}, R"([{"tag": "#A", "name": "IDL_SEX"}])"));
    QVERIFY(m_app->value("SELECT FIELDS FROM forms").toString().contains("\"name\":\"\""));
}

void tst_DataBaseUpdater::migrationOfBrokenFields()
{
    makeForm28(*m_app, 3);
    m_app->exec("UPDATE forms SET FIELDS = '{\"fields\":'");
    const QByteArray before = m_app->dump();
    QVERIFY(!run("1.2.0.0", {functionPart("1.2.0.0", migrationArgument())}));
    QVERIFY(m_updater.lastError().startsWith("Function: crutchFrdoA. Json parse error: "));
    QCOMPARE(m_app->dump(), before);
    QVERIFY(run("1.2.0.0", {functionPart("1.2.0.0", migrationArgument(), true)}));
    QCOMPARE(stamp(), QString("1.2.0.0"));
}

void tst_DataBaseUpdater::migrationWithBrokenArgument()
{
    makeForm28(*m_app, 3);
    const QByteArray before = m_app->dump();
    QVERIFY(!run("1.2.0.0", {functionPart("1.2.0.0", "[{]")}));
    QVERIFY(m_updater.lastError().startsWith("Function: crutchFrdoA. Json (Append) parse error: "));
    QCOMPARE(m_app->dump(), before);
}

void tst_DataBaseUpdater::migrationWithApostrophe()
{
    makeForm28(*m_app, 3);
    const QByteArray before = m_app->dump();
    QVERIFY(!run("1.2.0.0", {functionPart("1.2.0.0", "[{\"tag\": \"#A\", \"name\": \"O'\"}]")}));
    QVERIFY(m_updater.lastError().startsWith("Ошибка выполнения запроса;\nSqlError: "));
    QVERIFY(m_updater.lastQuery().startsWith("UPDATE forms SET FIELDS = '{"));
    QVERIFY(m_updater.lastQuery().endsWith("}' WHERE ID = 28"));
    QCOMPARE(m_app->dump(), before);
}

void tst_DataBaseUpdater::migrationSurvivesRefusedDocuments()
{
    makeForm28(*m_app, 3);
    m_app->exec("CREATE TRIGGER refuse BEFORE UPDATE ON docs WHEN old.ID = 2 BEGIN "
                "SELECT RAISE(ABORT, 'refused'); END");
    LogCatcher log;
    QVERIFY(run("1.2.0.0", {functionPart("1.2.0.0", migrationArgument())}));
    QCOMPARE(m_updater.lastError(), QString("Function: crutchFrdoA. Не удалось обновить поля "
                                            "имеющихся документов"));
    QVERIFY(log.contains("SqlError: refused"));
    QVERIFY(contentOf(*m_app, 1).contains("#SEX"));
    QVERIFY(!contentOf(*m_app, 2).contains("#SEX"));
    QVERIFY(!contentOf(*m_app, 3).contains("#SEX"));
    QCOMPARE(stamp(), QString("1.2.0.0"));
}

void tst_DataBaseUpdater::migrationOfThousands()
{
    constexpr int documents = 5000;
    makeForm28(*m_app, documents);
    LogCatcher log;
    QVERIFY(run("1.2.0.0", {functionPart("1.2.0.0", migrationArgument())}));
    QCOMPARE(log.count("DataBaseUpdater::updateFormExistDocuments(). JsonError: "), documents / 10);
    QCOMPARE(m_app
                 ->value("SELECT COUNT(*) FROM docs WHERE CAST(CONTENT AS TEXT) LIKE "
                         "'%\"#SEX\":{\"list\":106,\"name\":\"Пол\",\"type\":1}%'")
                 .toInt(),
             documents - documents / 10);
    QCOMPARE(m_app->value("SELECT COUNT(*) FROM docs WHERE CONTENT LIKE '{ broken %'").toInt(),
             documents / 10);
}

void tst_DataBaseUpdater::existDocumentsFailure()
{
    QString error;
    QVERIFY(!m_updater.updateFormExistDocuments("", {}, &error));
    QVERIFY(error.startsWith("SqlError: "));
    QVERIFY(!m_updater.updateFormExistDocuments("", {}, nullptr));
}

void tst_DataBaseUpdater::migrationWithoutTheTableOfForms()
{
    m_app->exec("DROP TABLE forms");
    QVERIFY(!run("1.2.0.0", {sqlPart("1.2.0.0", insertName("a")),
                             functionPart("1.2.0.0", migrationArgument())}));
    QVERIFY(m_updater.lastError().contains("no such table: forms"));
    QCOMPARE(m_updater.lastQuery(), QString("SELECT FIELDS FROM forms WHERE ID = 28"));
    QCOMPARE(names(), QStringList());
}

void tst_DataBaseUpdater::completeDocumentStaysAsItIs()
{
    makeForm28(*m_app, 1);
    const QString complete = R"({ "#SEX" : {}, "#NOTE" : {}, "#OLD" : {} })";
    m_app->exec("UPDATE docs SET CONTENT = ? WHERE ID = 1", {complete});
    // A field without a tag has no place in a document.
    QVERIFY(run("1.2.0.0", {functionPart("1.2.0.0", migrationArgument()),
                            functionPart("1.2.0.0", R"([{"name": "Без тега"}])")}));
    QCOMPARE(m_app->value("SELECT CONTENT FROM docs WHERE ID = 1").toString(), complete);
}

void tst_DataBaseUpdater::successRemovesThePackage()
{
    placePackage(*m_app, packPackage(headerFor("1.2.0.0"), {sqlPart("1.2.0.0", insertName("a"))}));
    QFile file(m_app->path("dbUpdate.bin"));
    LogCatcher log;
    ModalDriver driver; // no dialog may come
    QVERIFY(runDatabaseUpdate(file));
    QVERIFY2(driver.finished(), driver.failures());
    QVERIFY(log.contains("Обновление базы данных завершено успешно"));
    QVERIFY(!QFile::exists(m_app->path("dbUpdate.bin")));
    QCOMPARE(names(), QStringList{"a"});
}

void tst_DataBaseUpdater::notNeededRemovesThePackage()
{
    placePackage(*m_app, packPackage(headerFor("0.9.0.0"), {}));
    QFile file(m_app->path("dbUpdate.bin"));
    QVERIFY(runDatabaseUpdate(file));
    QVERIFY(!QFile::exists(m_app->path("dbUpdate.bin")));
}

void tst_DataBaseUpdater::failureKeepsThePackage()
{
    const QByteArray package =
        packPackage(headerFor("1.2.0.0"), {sqlPart("1.2.0.0", "UPDATE nowhere SET A = 1")});
    placePackage(*m_app, package);
    for (int start = 0; start < 2; ++start) {
        QFile file(m_app->path("dbUpdate.bin"));
        LogCatcher log;
        ModalDriver driver;
        loadBaseStyle(); // as before every update at the start
        driver.expect<QMessageBox>([](QMessageBox* box) {
            QCOMPARE(box->windowTitle(), QString("Ошибка обновления БД"));
            QCOMPARE(box->icon(), QMessageBox::NoIcon);
            QVERIFY(!box->parent());
            QVERIFY(!baseStyleSheet.isEmpty() && box->styleSheet().startsWith(baseStyleSheet));
            QVERIFY(box->text().startsWith("Не удалось обновить базу данных.\n\n-- ERROR --\n"
                                           "Ошибка выполнения запроса;\nSqlError: "));
            QVERIFY(box->text().endsWith(";\n\n-- SQL QUERY --\nUPDATE nowhere SET A = 1"));
            QCOMPARE(box->buttons().size(), 2);
            for (QAbstractButton* button : box->buttons()) {
                const bool goOn = box->buttonRole(button) == QMessageBox::AcceptRole;
                QCOMPARE(button->text(), QString(goOn ? "Продолжить" : "Удалить файл обн."));
                if (!goOn) {
                    QCOMPARE(box->buttonRole(button), QMessageBox::DestructiveRole);
                }
            }
            for (QAbstractButton* button : box->buttons()) {
                if (box->buttonRole(button) == QMessageBox::AcceptRole) {
                    QTest::mouseClick(button, Qt::LeftButton);
                    return;
                }
            }
        });
        QVERIFY(runDatabaseUpdate(file));
        QVERIFY2(driver.finished(), driver.failures());
        QVERIFY(log.contains("Обновление базы прервано из-за ошибки: "));
        QFile kept(m_app->path("dbUpdate.bin"));
        QVERIFY(kept.open(QIODevice::ReadOnly));
        QCOMPARE(kept.readAll(), package);
    }
}

void tst_DataBaseUpdater::failureRemovesThePackage()
{
    placePackage(*m_app, packPackage(headerFor("1.2.0.0"), {sqlPart("1.2.0.0", "bad")}));
    QFile file(m_app->path("dbUpdate.bin"));
    ModalDriver driver;
    driver.expectMessageStarting("Ошибка обновления БД", "Не удалось обновить базу данных.",
                                 "Удалить файл обн.");
    QVERIFY(runDatabaseUpdate(file));
    QVERIFY2(driver.finished(), driver.failures());
    QVERIFY(!QFile::exists(m_app->path("dbUpdate.bin")));
    QCOMPARE(stamp(), QString("1.0.0.0"));
}

void tst_DataBaseUpdater::closedBoxKeepsThePackage()
{
    placePackage(*m_app, packPackage(headerFor("1.2.0.0"), {sqlPart("1.2.0.0", "bad")}));
    QFile file(m_app->path("dbUpdate.bin"));
    ModalDriver driver;
    driver.expect<QMessageBox>([](QMessageBox* box) { box->done(0); });
    QVERIFY(runDatabaseUpdate(file));
    QVERIFY2(driver.finished(), driver.failures());
    QVERIFY(QFile::exists(m_app->path("dbUpdate.bin")));
}

void tst_DataBaseUpdater::longStatementIsCut()
{
    const QString statement = "UPDATE nowhere SET A = '" + QString(5000, QChar(0x0416)) + "'";
    placePackage(*m_app, packPackage(headerFor("1.2.0.0"), {sqlPart("1.2.0.0", statement)}));
    QFile file(m_app->path("dbUpdate.bin"));
    ModalDriver driver;
    driver.expect<QMessageBox>([&](QMessageBox* box) {
        const QString shown = box->text().section("-- SQL QUERY --\n", 1);
        QCOMPARE(shown.size(), 1200);
        QVERIFY(statement.startsWith(shown));
        QVERIFY(box->text().contains("no such table: nowhere"));
        box->done(0);
    });
    QVERIFY(runDatabaseUpdate(file));
    QVERIFY2(driver.finished(), driver.failures());
}

void tst_DataBaseUpdater::markupIsShownAsText()
{
    placePackage(*m_app, packPackage(headerFor("1.2.0.0"), {sqlPart("1.2.0.0", "<b>bad</b><br>")}));
    QFile file(m_app->path("dbUpdate.bin"));
    ModalDriver driver;
    driver.expect<QMessageBox>([&](QMessageBox* box) {
        QCOMPARE(box->textFormat(), Qt::PlainText);
        box->done(0);
    });
    QVERIFY(runDatabaseUpdate(file));
    QVERIFY2(driver.finished(), driver.failures());
}

/// Packages of 1 to 20 parts, one of them failing, at each position, ignored and not.
void tst_DataBaseUpdater::allOrNothing()
{
    constexpr int longest = 20;
    QList<QList<TestPart>> packages;
    for (int count = 1; count <= longest; ++count) {
        for (int failing = 0; failing < 2 * count; ++failing) {
            QList<TestPart> parts;
            for (int i = 0; i < count; ++i) {
                const bool fails = i == failing / 2;
                parts << sqlPart("1.2.0.0",
                                 fails ? "INSERT INTO lists (ID, LIST_NAME) VALUES (1, 'x')"
                                       : insertName(QString("n%1").arg(i)),
                                 fails && failing % 2 == 1);
            }
            packages << parts;
        }
    }
    const QList<QByteArray> bytes = packPackages(headerFor("1.2.0.0"), packages);
    QCOMPARE(bytes.size(), packages.size());

    m_app->exec("INSERT INTO lists (ID, LIST_NAME) VALUES (1, 'old')");
    int package = 0;
    for (int count = 1; count <= longest; ++count) {
        for (int failing = 0; failing < 2 * count; ++failing, ++package) {
            const bool ignored = failing % 2 == 1;
            QCOMPARE(run(bytes[package]), ignored);
            QStringList expected{"old"};
            for (int i = 0; ignored && i < count; ++i) {
                if (i != failing / 2) {
                    expected << QString("n%1").arg(i);
                }
            }
            QCOMPARE(names(), expected);
            QCOMPARE(stamp(), QString(ignored ? "1.2.0.0" : "1.0.0.0"));
            m_app->exec("DELETE FROM lists WHERE ID <> 1");
            m_app->exec("UPDATE zvsys SET DB_VERSION = '1.0.0.0'");
        }
    }
}

QTEST_MAIN(tst_DataBaseUpdater)
#include "tst_DataBaseUpdater.moc"
