#include <QtTest>

#include <QCryptographicHash>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>
#include <QProcess>
#include <QRandomGenerator>

#include "WorkedDocument.h"
#include "documents/DocumentFixture.h"
#include "support/Process.h"
#include "support/TempApplication.h"

/// Number of the content that each document may hold: the one it was told to have, and after it
/// perhaps the one that was being written.
using Expected = QMap<int, QList<int>>;

/// The application killed at any moment of a working day: what it said is stored is stored.
class tst_KilledWork : public QObject
{
    Q_OBJECT

private slots:
    void killedAtAnyMoment();

private:
    void checkDatabase(const QString& file, const Expected& expected, int unreported);
    void checkReport(const QString& directory, const QStringList& lines);
};

namespace {

constexpr int operations = 8;

/// How many processes are killed; ZELVORA_KILLS in the environment says it otherwise.
int killCount()
{
    constexpr int usual = 100;
    return qEnvironmentVariableIsSet("ZELVORA_KILLS")
               ? qEnvironmentVariableIntValue("ZELVORA_KILLS")
               : usual;
}

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Puts the directory back to the state before the work.
void reset(const QString& directory, const QByteArray& database)
{
    QFile::remove(directory + "/docs.db-journal");
    QDir(directory + "/storage").removeRecursively();
    QVERIFY(QDir(directory).mkdir("storage"));
    QFile file(directory + "/docs.db");
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(database), qint64(database.size()));
}

/// A worker at the directory's desk.
class Worker
{
public:
    Worker(const QString& directory, int seed)
    {
        m_process.start(QString(ZELVORA_BIN_DIR) + "/tests/app/desk_worker",
                        {directory, QString::number(seed), QString::number(operations)});
    }

    /// Waits until it has said so many lines, or has ended.
    void waitForLines(int count)
    {
        while (m_said.count('\n') < count && m_process.waitForReadyRead()) {
            m_said += m_process.readAllStandardOutput();
        }
    }

    void waitForEnd() { m_process.waitForFinished(); }

    void kill()
    {
        m_process.kill();
        m_process.waitForFinished();
    }

    /// All that it said, whole lines only.
    QStringList lines()
    {
        m_said += m_process.readAllStandardOutput();
        QStringList lines = QString::fromUtf8(m_said).split('\n');
        lines.removeLast(); // the one that was cut off, or nothing
        return lines;
    }

private:
    QProcess m_process;
    QByteArray m_said;
};

// Number of a stored document, or 0 if what it holds belongs to no one number.
int numberOf(const QStringList& columns)
{
    const WorkedDocument document{columns.value(3).toInt()};
    const QJsonObject content =
        QJsonDocument::fromJson(QByteArray::fromHex(columns.value(4).toLatin1())).object();
    const bool whole = columns.value(1) == document.lname() &&
                       columns.value(2) == document.series() &&
                       content["#NO"].toObject()["value"].toInt() == document.number &&
                       content["#TEXT"].toObject()["value"].toString() == document.text();
    return whole ? document.number : 0;
}

} // namespace

// The sqlite3 program rolls back first what a killed process left open, as the next start does.
void tst_KilledWork::checkDatabase(const QString& file, const Expected& expected, int unreported)
{
    const ProcessResult read = runProcess(
        "sqlite3", {file, "PRAGMA integrity_check; "
                          "SELECT ID, LNAME, BLANK_SER, BLANK_NO, hex(CONTENT) FROM docs"});
    QCOMPARE(read.exitCode, 0);
    QStringList rows = QString::fromUtf8(read.out).split('\n', Qt::SkipEmptyParts);
    QCOMPARE(rows.takeFirst(), QString("ok"));
    QMap<int, int> stored;
    for (const QString& row : qAsConst(rows)) {
        const QStringList columns = row.split('|');
        stored[columns.value(0).toInt()] = numberOf(columns);
    }
    for (auto it = expected.begin(); it != expected.end(); ++it) {
        QVERIFY2(it.value().contains(stored.value(it.key(), -1)),
                 qPrintable(QString("document %1 holds %2").arg(it.key()).arg(stored[it.key()])));
    }
    QVERIFY(!stored.values().contains(0));
    QVERIFY(stored.size() <= expected.size() + unreported);
}

void tst_KilledWork::checkReport(const QString& directory, const QStringList& lines)
{
    QCOMPARE(lines.value(0), QString("begin"));
    Expected expected;
    for (const QString& line : lines) {
        const QStringList words = line.split(' ');
        QVERIFY2(words.at(0) != "failed", qPrintable(line));
        if (words.at(0) == "trying") {
            expected[words.at(1).toInt()] << words.at(2).toInt();
        } else if (words.at(0) == "stored") {
            expected[words.at(1).toInt()] = {words.at(2).toInt()};
        } else if (words.at(0) == "archived") {
            const QByteArray hash =
                QCryptographicHash::hash(contentOf(words.at(1)), QCryptographicHash::Sha1);
            QCOMPARE(QString(hash.toHex()), words.at(2));
            checkDatabase(words.at(1), expected, 0);
        }
    }
    checkDatabase(directory + "/docs.db", expected, 1);
}

void tst_KilledWork::killedAtAnyMoment()
{
    TempApplication app;
    addForm(app, "Работа", {formField("#NO", "Номер", 2), formField("#TEXT", "Текст", 5)});
    const QString directory = app.path();
    const QByteArray database = contentOf(app.path("docs.db"));

    reset(directory, database);
    Worker whole(directory, 0);
    whole.waitForLines(1);
    QElapsedTimer clock;
    clock.start();
    whole.waitForEnd();
    const int operationUs = static_cast<int>(clock.nsecsElapsed() / 1000) / operations;
    QCOMPARE(whole.lines().constLast(), QString("end"));
    checkReport(directory, whole.lines());

    const int kills = killCount();
    QRandomGenerator random(20261121);
    int interrupted = 0;
    int archives = 0;
    for (int i = 0; i < kills; ++i) {
        reset(directory, database);
        Worker worker(directory, i);
        worker.waitForLines(1 + random.bounded(operations));
        QThread::usleep(random.bounded(static_cast<unsigned>(operationUs)));
        worker.kill();
        const QStringList lines = worker.lines();
        checkReport(directory, lines);
        if (QTest::currentTestFailed()) {
            return;
        }
        interrupted += lines.contains("end") ? 0 : 1;
        archives += lines.filter("archived").size();
    }
    // The kills must have hit the work, not only what comes before or after it.
    QVERIFY2(interrupted > kills / 2, qPrintable(QString("only %1 hit").arg(interrupted)));
    QVERIFY(archives > 0);
    qInfo("%d kills, %d of them amid the work, %d archives", kills, interrupted, archives);
}

QTEST_GUILESS_MAIN(tst_KilledWork)
#include "tst_KilledWork.moc"
