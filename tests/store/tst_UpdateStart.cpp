#include <QtTest>

#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QSqlDatabase>

#include "store/UpdateFixture.h"
#include "support/Process.h"
#include "support/TempApplication.h"

/// Updates from outside: through the real start of the application, and with the process killed.
class tst_UpdateStart : public QObject
{
    Q_OBJECT

private slots:
    void startAppliesThePackage();
    void startTellsOfAFailure_data();
    void startTellsOfAFailure();
    void killedAtAnyMoment();
};

namespace {

QString helper(const char* name)
{
    return QString(ZELVORA_BIN_DIR) + "/tests/store/" + name;
}

/// A database that an update takes noticeable time to change.
QList<TestPart> longUpdate()
{
    QList<TestPart> parts;
    for (int i = 0; i < 40; ++i) {
        parts << sqlPart("1.2.0.0", "INSERT INTO lists (LIST_NAME, LIST_ITEMS) SELECT LNAME, "
                                    "CONTENT FROM docs WHERE ID % 40 = " +
                                        QString::number(i));
    }
    parts << functionPart("1.2.0.0", migrationArgument());
    return parts;
}

/// Puts the directory back to the state before the update.
void reset(const QString& directory, const QByteArray& database, const QByteArray& package)
{
    QFile::remove(directory + "/docs.db-journal");
    for (const auto& file :
         {qMakePair(QString("/docs.db"), database), qMakePair(QString("/dbUpdate.bin"), package)})
    {
        QFile out(directory + file.first);
        QVERIFY(out.open(QIODevice::WriteOnly));
        QCOMPARE(out.write(file.second), qint64(file.second.size()));
    }
}

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// The dump of a database file by the sqlite3 program, which also rolls back what was left open.
QByteArray dumpOf(const QString& directory)
{
    return runProcess("sqlite3", {directory + "/docs.db", "PRAGMA integrity_check", ".dump"}).out;
}

/// Lets the worker run and kills it after a while, counted from the begin of its update.
void runAndKill(const QString& directory, int microseconds)
{
    QProcess worker;
    worker.start(helper("update_worker"), {directory});
    QVERIFY(worker.waitForReadyRead());
    QElapsedTimer clock;
    clock.start();
    while (clock.nsecsElapsed() < qint64(microseconds) * 1000) {
    }
    worker.kill();
    worker.waitForFinished();
}

} // namespace

void tst_UpdateStart::startAppliesThePackage()
{
    TempApplication app;
    placePackage(app, packPackage(headerFor("1.2.0.0"),
                                  {sqlPart("1.2.0.0", "INSERT INTO forms (FORM_NAME, FIELDS) "
                                                      "VALUES ('Справка', '{}')")}));
    const ProcessResult result = runProcess(helper("update_start"), {app.path(), "никакая"});
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.out, QByteArray("main window\n"));
    QVERIFY(!QFile::exists(app.path("dbUpdate.bin")));
    QCOMPARE(app.value("SELECT FORM_NAME FROM forms").toString(), QString("Справка"));
    QCOMPARE(app.value("SELECT DB_VERSION FROM zvsys").toString(), QString("1.2.0.0"));
}

void tst_UpdateStart::startTellsOfAFailure_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<bool>("kept");
    QTest::newRow("go on") << "Продолжить" << true;
    QTest::newRow("remove") << "Удалить файл обн." << false;
}

void tst_UpdateStart::startTellsOfAFailure()
{
    QFETCH(QString, button);
    QFETCH(bool, kept);
    TempApplication app;
    app.exec("INSERT INTO zvsys (DB_VERSION) VALUES ('1.0.0.0')");
    placePackage(app,
                 packPackage(headerFor("1.2.0.0"), {sqlPart("1.2.0.0", "DELETE FROM forms"),
                                                    sqlPart("1.2.0.0", "DELETE FROM nowhere")}));
    app.exec("INSERT INTO forms (FORM_NAME) VALUES ('Справка')");
    const QByteArray before = app.dump();
    const ProcessResult result = runProcess(helper("update_start"), {app.path(), button});
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(QString::fromUtf8(result.out), QString("box: Ошибка обновления БД\nmain window\n"));
    QCOMPARE(QFile::exists(app.path("dbUpdate.bin")), kept);
    QCOMPARE(app.dump(), before);
}

void tst_UpdateStart::killedAtAnyMoment()
{
    const int kills = qEnvironmentVariableIsSet("ZELVORA_KILLS")
                          ? qEnvironmentVariableIntValue("ZELVORA_KILLS")
                          : 100;
    TempApplication app;
    app.exec("INSERT INTO zvsys (DB_VERSION) VALUES ('1.0.0.0')");
    makeForm28(app, 1500);
    const QString directory = app.path();
    const QByteArray package = packPackage(headerFor("1.2.0.0"), longUpdate());
    const QByteArray database = contentOf(directory + "/docs.db");
    const QByteArray oldState = dumpOf(directory);

    reset(directory, database, package);
    QElapsedTimer clock;
    clock.start();
    QCOMPARE(runProcess(helper("update_worker"), {directory}).exitCode, 0);
    const int wholeRun = static_cast<int>(clock.nsecsElapsed() / 1000);
    const QByteArray newState = dumpOf(directory);
    QVERIFY(newState != oldState);
    QVERIFY(!QFile::exists(directory + "/dbUpdate.bin"));

    QRandomGenerator random(20261121);
    int old = 0;
    for (int i = 0; i < kills; ++i) {
        reset(directory, database, package);
        runAndKill(directory, random.bounded(wholeRun));
        const QByteArray state = dumpOf(directory);
        QVERIFY(state == oldState || state == newState);
        old += state == oldState ? 1 : 0;
        QVERIFY(QFile::exists(directory + "/dbUpdate.bin") || state == newState);

        QCOMPARE(runProcess(helper("update_worker"), {directory}).exitCode, 0);
        QCOMPARE(dumpOf(directory), newState);
        QVERIFY(!QFile::exists(directory + "/dbUpdate.bin"));
    }
    // The kills must have hit the update, not only what comes before or after it.
    QVERIFY2(old > kills / 10, qPrintable(QString("only %1 hit the update").arg(old)));
    qInfo("%d kills, %d of them before the update was stored", kills, old);
}

QTEST_MAIN(tst_UpdateStart)
#include "tst_UpdateStart.moc"
