#include "tools/DatabaseBackup.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <sqlite3.h>

#include <memory>

#include "app/TargetFile.h"
#include "app/UnfinishedFile.h"
#include "store/Schema.h"
#include "tools/Interruption.h"
#include "tools/SettledDatabase.h"

namespace {

/// A connection of its own, beside the toolkit's driver: only here the backup interface is in
/// reach.
class Connection
{
public:
    Connection(const QString& path, int flags)
    {
        constexpr int instructions = 1000;
        m_result = sqlite3_open_v2(path.toUtf8().constData(), &m_handle, flags, nullptr);
        sqlite3_busy_handler(m_handle, waitsOn, nullptr);
        sqlite3_progress_handler(m_handle, instructions, endsIfInterrupted, nullptr);
    }
    ~Connection() { sqlite3_close(m_handle); }
    Q_DISABLE_COPY(Connection)

    sqlite3* handle() const { return m_handle; }
    bool isOpen() const { return m_result == SQLITE_OK; }
    QString message() const { return QString::fromUtf8(sqlite3_errmsg(m_handle)); }

    /// Runs a statement; the first column of its rows. False if it failed.
    bool run(const QString& statement, QStringList& rows)
    {
        rows.clear();
        const auto keep = [](void* list, int, char** values, char**) {
            *static_cast<QStringList*>(list) << QString::fromUtf8(values[0]);
            return 0;
        };
        return sqlite3_exec(m_handle, statement.toUtf8().constData(), keep, &rows, nullptr) ==
               SQLITE_OK;
    }

private:
    /// While another program writes.
    static int waitsOn(void* /*unused*/, int timesWaited)
    {
        constexpr int pause = 50;       // milliseconds
        constexpr int mostPauses = 300; // 15 seconds
        if (timesWaited >= mostPauses || isInterrupted()) {
            return 0;
        }
        sqlite3_sleep(pause);
        return 1;
    }

    static int endsIfInterrupted(void* /*unused*/) { return isInterrupted() ? 1 : 0; }

    sqlite3* m_handle = nullptr;
    int m_result = SQLITE_ERROR;
};

bool hasSameContent(const QString& path, const QString& otherPath)
{
    constexpr qint64 blockSize = 1 << 20;
    QFile file(path);
    QFile other(otherPath);
    if (!file.open(QIODevice::ReadOnly) || !other.open(QIODevice::ReadOnly) ||
        file.size() != other.size())
    {
        return false;
    }
    while (!file.atEnd()) {
        const QByteArray block = file.read(blockSize);
        if (block.isEmpty() || block != other.read(blockSize)) {
            return false;
        }
    }
    return true;
}

/// The name of an archive up to its date.
QString namePrefix(const QString& database)
{
    return QFileInfo(database).completeBaseName() + "_auto_";
}

} // namespace

DatabaseBackup::DatabaseBackup(const QString& database, const QString& folder)
    : m_database(database)
    , m_folder(folder)
{
}

DatabaseBackup::Result DatabaseBackup::make()
{
    if (!QFileInfo(m_database).isFile()) {
        return fail(tr("no such file: %1").arg(m_database));
    }
    // Not made here: where a disk is not there today, its folder must not arise on another one.
    if (!QFileInfo(m_folder).isDir()) {
        return fail(tr("no such folder: %1").arg(m_folder));
    }
    removeLeftovers(m_folder);
    const QString part = unfinishedPath(m_folder, "zlv");
    const UnfinishedFile unfinished(part);
    Result result = copyTo(part);
    if (result == Result::Made) {
        result = check(part);
    }
    if (result == Result::Made) {
        result = giveName(part);
    }
    for (const char* suffix : {"", "-journal", "-wal", "-shm"}) {
        QFile::remove(part + suffix);
    }
    return result;
}

bool DatabaseBackup::removeBeyond(int number)
{
    QStringList names = archives();
    // The one at hand stays, even if the clock went back since the others were made.
    names.removeOne(QFileInfo(m_archive).fileName());
    for (int i = 0; i <= names.size() - number; ++i) {
        const QString path = QDir(m_folder).filePath(names[i]);
        if (!QFile::remove(path)) {
            m_error = tr("cannot remove the old archive %1").arg(path);
            return false;
        }
        m_removed << path;
    }
    return true;
}

DatabaseBackup::Result DatabaseBackup::copyTo(const QString& part)
{
    constexpr int pagesAtOnce = 4096;
    SettledDatabase settled(m_database);
    if (!settled.settle()) {
        return fail(settled.error());
    }
    const Connection from(settled.path(), SQLITE_OPEN_READONLY);
    Connection to(part, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    QStringList rows;
    // The file is thrown away if anything fails: a journal of it would only be left behind.
    if (!from.isOpen() || !to.isOpen() || !to.run("PRAGMA journal_mode = OFF", rows)) {
        return fail(from.isOpen() ? part + ": " + to.message()
                                  : m_database + ": " + from.message());
    }
    sqlite3_backup* backup = sqlite3_backup_init(to.handle(), "main", from.handle(), "main");
    int state = backup ? SQLITE_OK : SQLITE_ERROR;
    while (state == SQLITE_OK && !isInterrupted()) {
        state = sqlite3_backup_step(backup, pagesAtOnce);
    }
    const int outcome = backup ? sqlite3_backup_finish(backup) : state;
    if (isInterrupted()) {
        return Result::Interrupted;
    }
    if (state != SQLITE_DONE || outcome != SQLITE_OK) {
        return fail(m_database + ": " + QString::fromUtf8(sqlite3_errstr(state)));
    }
    // An archive is one file, even of a database that keeps its newest changes in another.
    if (!to.run("PRAGMA journal_mode = DELETE", rows)) {
        return fail(part + ": " + to.message());
    }
    return Result::Made;
}

DatabaseBackup::Result DatabaseBackup::check(const QString& part)
{
    Connection archive(part, SQLITE_OPEN_READONLY);
    QStringList rows;
    const bool isChecked = archive.isOpen() && archive.run("PRAGMA integrity_check", rows);
    if (isInterrupted()) {
        return Result::Interrupted;
    }
    if (!isChecked || rows != QStringList("ok")) {
        constexpr int shownLength = 200;
        const QString firstFault = rows.value(0).simplified().left(shownLength);
        return fail(tr("the database is damaged, no archive was made: %1 (%2)")
                        .arg(m_database, isChecked ? firstFault : archive.message()));
    }
    // An empty file is sound too, but would push the good archives out in the end.
    archive.run("SELECT name FROM sqlite_master WHERE type = 'table'", rows);
    for (const TableDefinition& table : schemaTables()) {
        const bool madeOnDemand = table.name == "zvsys";
        if (!madeOnDemand && !rows.contains(table.name)) {
            return fail(tr("the file has no table %1, no archive was made: %2")
                            .arg(table.name, m_database));
        }
    }
    return Result::Made;
}

DatabaseBackup::Result DatabaseBackup::giveName(const QString& part)
{
    // The clock may have gone back by an hour. What is dated later comes from one that was wrong.
    constexpr int leeway = 2 * 60 * 60; // seconds
    QDateTime time = QDateTime::currentDateTime();
    const QString latest = nameAt(time.addSecs(leeway));
    const QStringList names = archives();
    QString newest;
    for (const QString& name : names) {
        newest = name <= latest ? name : newest;
    }
    if (!newest.isEmpty() && hasSameContent(part, QDir(m_folder).filePath(newest))) {
        m_archive = QDir(m_folder).filePath(newest);
        return Result::Unchanged;
    }
    const auto isTaken = [this](const QString& name) {
        const QFileInfo file(QDir(m_folder).filePath(name));
        return file.exists() || file.isSymLink();
    };
    while (nameAt(time) <= newest || isTaken(nameAt(time))) {
        time = time.addSecs(1);
    }
    m_archive = QDir(m_folder).filePath(nameAt(time));
    if (!QFile::rename(part, m_archive)) {
        return fail(tr("cannot write the file %1").arg(m_archive));
    }
    return Result::Made;
}

DatabaseBackup::Result DatabaseBackup::fail(const QString& reason)
{
    m_error = reason;
    return Result::Failed;
}

QString DatabaseBackup::nameAt(const QDateTime& time) const
{
    return namePrefix(m_database) + time.toString("yyyy-MM-dd_hh-mm-ss") + ".zlv";
}

/// The names of this database's archives, the oldest first.
QStringList DatabaseBackup::archives() const
{
    const QRegularExpression ours("^" + QRegularExpression::escape(namePrefix(m_database)) +
                                  R"(\d{4}-\d\d-\d\d_\d\d-\d\d-\d\d\.zlv$)");
    const QDir::Filters filters = QDir::Files | QDir::Hidden | QDir::NoSymLinks;
    return QDir(m_folder).entryList(filters, QDir::Name).filter(ours);
}
