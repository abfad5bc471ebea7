#include <QtTest>

#include <QElapsedTimer>
#include <QFile>
#include <QProcess>

#include "support/Process.h"
#include "support/TempApplication.h"

namespace {

constexpr qint64 splashFloorMs = 1900; // a coarse timer may fire 5 % early
constexpr int patienceMs = 30000;

/// The built program in a directory of its own, running.
class Program
{
public:
    explicit Program(const QString& directory, const QStringList& arguments = QStringList())
    {
        m_process.setWorkingDirectory(QDir::rootPath());
        m_process.setProcessChannelMode(QProcess::MergedChannels);
        m_clock.start();
        m_process.start(directory + "/zelvora", arguments);
    }
    ~Program()
    {
        m_process.kill();
        m_process.waitForFinished();
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    /// Waits until the log holds the text; milliseconds since the start, -1 if it never came.
    qint64 waitForLog(const QByteArray& text)
    {
        while (!m_log.contains(text)) {
            if (m_clock.elapsed() > patienceMs || !m_process.waitForReadyRead(patienceMs)) {
                return -1;
            }
            m_log += m_process.readAll();
        }
        return m_clock.elapsed();
    }

    bool isRunning() const { return m_process.state() == QProcess::Running; }

    QByteArray log() const { return m_log; }

private:
    QProcess m_process;
    QElapsedTimer m_clock;
    QByteArray m_log;
};

} // namespace

/// The built program itself, in a copy of its directory, seen from outside.
class tst_Program : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void version_data();
    void version();
    void splashHoldsTheWindow_data();
    void splashHoldsTheWindow();
    void findsTheDatabaseBesideItself();
    void survivesTextFileAsDatabase();

private:
    std::unique_ptr<TempApplication> m_app;
};

void tst_Program::init()
{
    m_app = std::make_unique<TempApplication>(TempApplication::Database::None);
    QVERIFY(QFile::copy(ZELVORA_PROGRAM, m_app->path("zelvora")));
}

void tst_Program::cleanup()
{
    m_app.reset();
}

void tst_Program::version_data()
{
    QTest::addColumn<QStringList>("arguments");

    QTest::newRow("lower case") << QStringList{"--v"};
    QTest::newRow("upper case") << QStringList{"--V"};
    QTest::newRow("behind others") << QStringList{"--after-update", "document.txt", "--V"};
    QTest::newRow("behind an option of Qt") << QStringList{"-platform", "offscreen", "--v"};
}

void tst_Program::version()
{
    QFETCH(QStringList, arguments);
    const ProcessResult result = runProcess(m_app->path("zelvora"), arguments);
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.out, QByteArray("1.1.0.9\n"));
    QVERIFY(!result.err.contains("Database not found!"));
}

void tst_Program::splashHoldsTheWindow_data()
{
    QTest::addColumn<QStringList>("arguments");

    QTest::newRow("plain") << QStringList();
    QTest::newRow("after an update") << QStringList{"--After-Update"};
    QTest::newRow("anything else") << QStringList{"--help", "x"};
}

void tst_Program::splashHoldsTheWindow()
{
    QFETCH(QStringList, arguments);
    Program program(m_app->path(), arguments);
    const qint64 opened = program.waitForLog("Database not found!");
    QVERIFY(opened >= 0);
    const qint64 window = program.waitForLog("Unable to select from docs query");
    QVERIFY(window >= splashFloorMs);
    QVERIFY(program.isRunning());
    QVERIFY(!QFile::exists(m_app->path("docs.db")));
}

void tst_Program::findsTheDatabaseBesideItself()
{
    // Only the forms are there: the list's failure shows that the file was opened and read.
    const ProcessResult made = runProcess(
        "sqlite3", {m_app->path("docs.db"), "CREATE TABLE forms (ID INTEGER, FORM_NAME TEXT);"});
    QCOMPARE(made.exitCode, 0);
    Program program(m_app->path());
    QVERIFY(program.waitForLog("no such table: docs") >= 0);
    QVERIFY(!program.log().contains("Database not found!"));
    QVERIFY(!program.log().contains("Unable to select from forms query"));
}

void tst_Program::survivesTextFileAsDatabase()
{
    QFile file(m_app->path("docs.db"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    const QByteArray text = QByteArray("no database at all\n").repeated(200);
    file.write(text);
    file.close();
    Program program(m_app->path());
    QVERIFY(program.waitForLog("Unable to select from docs query") >= 0);
    QVERIFY(program.isRunning());
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), text);
}

QTEST_GUILESS_MAIN(tst_Program)
#include "tst_Program.moc"
