#include "FaultRun.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include "support/Process.h"

namespace {

constexpr int exitedByShim = 86;
constexpr int longestRunMs = 60000;

QProcessEnvironment environmentFor(const QString& directory, const Fault& fault, const QString& log,
                                   bool waits)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("LD_PRELOAD", FAULT_SHIM);
    environment.insert("ZELVORA_FAULT_BELOW", directory);
    environment.insert("ZELVORA_FAULT_AT", QString::number(fault.at));
    environment.insert("ZELVORA_FAULT_HOW", fault.mode);
    environment.insert("ZELVORA_FAULT_LOG", log);
    if (waits) {
        environment.insert("ZELVORA_FAULT_WAIT", "1");
    }
    return environment;
}

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

const QStringList& faultModes()
{
    static const QStringList modes = {"enospc", "eio",  "eacces", "half",
                                      "full",   "gone", "exit",   "kill"};
    return modes;
}

bool FaultRun::says(const QString& start) const
{
    for (const QString& line : out) {
        if (line.startsWith(start)) {
            return true;
        }
    }
    return false;
}

FaultRun runWithFault(const QString& program, const QStringList& arguments,
                      const QString& directory, const Fault& fault, bool waits)
{
    static const QTemporaryDir logs;
    const QString log = logs.filePath("struck");
    QFile::remove(log);
    QProcess process;
    process.setProcessEnvironment(environmentFor(directory, fault, log, waits));
    process.start(program, arguments);
    FaultRun run;
    const bool isFinished = process.waitForFinished(longestRunMs);
    if (!isFinished) {
        process.kill();
        process.waitForFinished();
    }
    run.struck = QString::fromLatin1(contentOf(log)).trimmed();
    run.isEnded = isFinished && process.exitStatus() == QProcess::NormalExit;
    run.exitCode = run.isEnded ? process.exitCode() : -1;
    run.out = QString::fromUtf8(process.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts);
    run.err = process.readAllStandardError();
    if (!run.struck.isEmpty() && fault.mode == "kill") {
        run.isPlanned = isFinished && !run.isEnded;
    } else if (!run.struck.isEmpty() && fault.mode == "exit") {
        run.isPlanned = run.exitCode == exitedByShim;
        run.isEnded = false;
    } else {
        run.isPlanned = run.isEnded && run.exitCode != exitedByShim;
    }
    return run;
}

Files filesIn(const QString& directory)
{
    Files files;
    QDirIterator entry(directory, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (entry.hasNext()) {
        const QString path = entry.next();
        files[path.mid(directory.size() + 1)] = contentOf(path);
    }
    return files;
}

void putFiles(const QString& directory, const Files& files)
{
    const Files present = filesIn(directory);
    for (auto it = present.begin(); it != present.end(); ++it) {
        if (!files.contains(it.key())) {
            QVERIFY(QFile::remove(directory + "/" + it.key()));
        }
    }
    for (auto it = files.begin(); it != files.end(); ++it) {
        if (present.value(it.key()) == it.value() && present.contains(it.key())) {
            continue;
        }
        QFile file(directory + "/" + it.key());
        QVERIFY(QDir().mkpath(QFileInfo(file).path()));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(it.value()), qint64(it.value().size()));
    }
}

QByteArray rowsOf(const QString& database, bool withoutLast)
{
    if (!QFile::exists(database)) {
        return QByteArray("no such file");
    }
    QStringList arguments = {database, "PRAGMA integrity_check", ".mode insert"};
    for (const char* table : {"docs", "forms", "lists", "blanks", "export", "zvsys"}) {
        const bool isCut = withoutLast && qstrcmp(table, "docs") == 0;
        arguments << QString("SELECT '%1', * FROM %1%2")
                         .arg(table, isCut ? " WHERE LNAME IS NOT 'Документ 77'" : "");
    }
    const ProcessResult read = runProcess("sqlite3", arguments);
    return read.out + read.err;
}

QString fastFolder()
{
    const QString memory = "/dev/shm";
    return QFileInfo(memory).isWritable() ? memory : QDir::tempPath();
}
