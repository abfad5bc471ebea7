#include <QtTest>

#include <QElapsedTimer>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include "DeskDirectory.h"
#include "FaultRun.h"

/// The application killed at any moment of a restore or of a save of the organisation's data.
/// ZELVORA_KILLS in the environment: how many times each.
class tst_Kills : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void restore();
    void organisation();

private:
    QStringList linesOfKilled(const QString& operation, int times);
    void measure(const QString& operation);
    QString path(const QString& file) const { return m_directory.filePath(file); }

    QTemporaryDir m_directory{fastFolder() + "/zelvora-kills-XXXXXX"};
    QRandomGenerator m_random{20261121};
    Files m_desk;
    int m_operationUs = 0;
};

namespace {

constexpr int operations = 20; // of a worker that is not killed

int kills()
{
    constexpr int usual = 40;
    return qEnvironmentVariableIsSet("ZELVORA_KILLS")
               ? qEnvironmentVariableIntValue("ZELVORA_KILLS")
               : usual;
}

void startWorker(QProcess& worker, const QString& operation, const QString& directory)
{
    worker.start(QString(ZELVORA_BIN_DIR) + "/tests/faults/fault_worker",
                 {operation, directory, QString::number(operations)});
}

/// Adds what it has said to `said` until that holds so many lines, or it has ended.
void waitForLines(QProcess& worker, QByteArray& said, int count)
{
    while (said.count('\n') < count && worker.waitForReadyRead()) {
        said += worker.readAllStandardOutput();
    }
}

} // namespace

void tst_Kills::initTestCase()
{
    m_desk = deskFiles();
    m_desk["storage/other.zlv"] = m_desk["docs_backup.db"];
}

// How long one operation takes, since kills shall come in all of its moments.
void tst_Kills::measure(const QString& operation)
{
    putFiles(m_directory.path(), m_desk);
    QProcess worker;
    startWorker(worker, operation, m_directory.path());
    QByteArray said;
    waitForLines(worker, said, 1);
    QElapsedTimer clock;
    clock.start();
    QVERIFY(worker.waitForFinished());
    QCOMPARE(worker.exitCode(), 0);
    m_operationUs = static_cast<int>(clock.nsecsElapsed() / 1000) / operations;
}

/// The whole lines that a worker said until it was killed, in its first so many operations.
QStringList tst_Kills::linesOfKilled(const QString& operation, int times)
{
    putFiles(m_directory.path(), m_desk);
    QProcess worker;
    startWorker(worker, operation, m_directory.path());
    QByteArray said;
    waitForLines(worker, said, 1 + m_random.bounded(times));
    QThread::usleep(m_random.bounded(static_cast<unsigned>(m_operationUs)));
    worker.kill();
    worker.waitForFinished();
    said += worker.readAllStandardOutput();
    QStringList lines = QString::fromUtf8(said).split('\n');
    lines.removeLast(); // the one that was cut off, or nothing
    return lines;
}

// Each restore takes the other archive: the database before it or the one after it is whole, and
// what was live is not lost.
void tst_Kills::restore()
{
    measure("restores");
    int amid = 0;
    for (int i = 0; i < kills(); ++i) {
        const QStringList lines = linesOfKilled("restores", operations);
        QCOMPARE(lines.value(0), QString("begin"));
        QCOMPARE(lines.filter("box ").size(), 0);
        const int done = lines.filter("done ").size();
        const QByteArray archives[] = {m_desk["storage/archive.zlv"], m_desk["storage/other.zlv"]};
        const QByteArray before = done == 0 ? m_desk["docs.db"] : archives[(done - 1) % 2];
        const QByteArray after = archives[done % 2];
        const Files left = filesIn(m_directory.path());
        const bool isStarted = lines.filter("trying ").size() > done;
        QVERIFY(left["docs.db"] == before ||
                (isStarted && left["docs_backup.db"] == before &&
                 (!left.contains("docs.db") || left["docs.db"] == after)));
        amid += isStarted ? 1 : 0;
    }
    QVERIFY2(amid > kills() / 3, qPrintable(QString("only %1 hit").arg(amid)));
    qInfo("%d kills, %d of them in a restore", kills(), amid);
}

// Each save has its number in all its texts.
void tst_Kills::organisation()
{
    measure("organisations");
    int amid = 0;
    for (int i = 0; i < kills(); ++i) {
        const QStringList lines = linesOfKilled("organisations", operations);
        QCOMPARE(lines.value(0), QString("begin"));
        const int done = lines.filter("done ").size();
        const bool isStarted = lines.filter("trying ").size() > done;
        const QByteArray stored = filesIn(m_directory.path())["data/orgData.json"];
        const auto holds = [&](int number) {
            if (number == 0) {
                return stored == m_desk["data/orgData.json"];
            }
            const QByteArray text = "\"Лицей " + QByteArray::number(number) + "\"";
            const QByteArray director = "\"Директор " + QByteArray::number(number) + "\"";
            return stored.endsWith("}\n") && stored.contains(text) && stored.contains(director);
        };
        QVERIFY2(holds(done) || (isStarted && holds(done + 1)), stored.constData());
        amid += isStarted ? 1 : 0;
    }
    QVERIFY2(amid > kills() / 3, qPrintable(QString("only %1 hit").arg(amid)));
    qInfo("%d kills, %d of them in a save", kills(), amid);
}

QTEST_GUILESS_MAIN(tst_Kills)
#include "tst_Kills.moc"
