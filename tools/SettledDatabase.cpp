#include "tools/SettledDatabase.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QStringList>

#include <algorithm>

namespace {

const char* const connectionName = "settle-database";

QString journalOf(const QString& path)
{
    return path + "-journal";
}

/// Whether the journal holds a change. One that has done its work is gone, empty or zeroed.
bool holdsChange(const QString& journal)
{
    QFile file(journal);
    char first = 0;
    return QFileInfo(journal).isFile() && file.open(QIODevice::ReadOnly) && file.getChar(&first) &&
           first != 0;
}

QString writeAheadLogOf(const QString& path)
{
    return path + "-wal";
}

/// Whether readers of the file make two more beside it, and leave them there if they must not write
/// to it: as it is when the database keeps a log ahead of its writes, and nobody has it open.
bool isLogMadeByReaders(const QString& path)
{
    constexpr qint64 headSize = 20;
    constexpr int versions = 18; // of the format for writing and for reading, a byte each
    QFile file(path);
    const QByteArray head = file.open(QIODevice::ReadOnly) ? file.read(headSize) : QByteArray();
    return head.mid(versions) == QByteArray(2, 2) &&
           !(QFileInfo::exists(writeAheadLogOf(path)) && QFileInfo::exists(path + "-shm"));
}

/// Looks into a database, at which an interrupted change is undone where the options allow that.
/// The driver's error, if any.
QSqlError lookInto(const QString& path, const QString& options)
{
    QSqlError error;
    {
        QSqlDatabase database = QSqlDatabase::addDatabase("QSQLITE", connectionName);
        database.setDatabaseName(path);
        database.setConnectOptions(options);
        if (!database.open()) {
            error = database.lastError();
        } else {
            QSqlQuery query(database);
            query.exec("SELECT COUNT(*) FROM sqlite_master");
            error = query.lastError();
        }
    }
    QSqlDatabase::removeDatabase(connectionName);
    return error;
}

/// The files that hold the database, as far as they are there.
QStringList filesOf(const QString& path)
{
    QStringList files = {path};
    for (const QString& name : {journalOf(path), writeAheadLogOf(path)}) {
        if (QFileInfo(name).isFile()) {
            files << name;
        }
    }
    return files;
}

/// Enough to see that nobody wrote to the files while they were copied.
QString stateOf(const QString& path)
{
    QString state;
    for (const QString& name : filesOf(path)) {
        const QFileInfo file(name);
        state += QString("%1 %2;").arg(file.size()).arg(file.lastModified().toMSecsSinceEpoch());
    }
    return state;
}

} // namespace

SettledDatabase::SettledDatabase(const QString& path)
    : m_path(path)
{
}

bool SettledDatabase::settle()
{
    constexpr int attempts = 5;
    for (int i = 0; i < attempts; ++i) {
        m_hasWaitingChange = isRefused();
        if (!m_hasWaitingChange && !isLogMadeByReaders(m_path)) {
            return true;
        }
        const QString before = stateOf(m_path);
        if (!copyFiles()) {
            m_error = tr("the database cannot be copied with its journal: %1").arg(m_path);
            return false;
        }
        if (stateOf(m_path) == before) {
            lookInto(path(), QString());
            return true;
        }
        m_folder.reset(); // another program is at it
    }
    m_hasWaitingChange = false;
    return true;
}

bool SettledDatabase::copyFiles()
{
    m_folder = std::make_unique<QTemporaryDir>();
    const QStringList files = filesOf(m_path);
    return m_folder->isValid() &&
           std::all_of(files.cbegin(), files.cend(), [this](const auto& file) {
               const QString copy = path() + file.mid(m_path.size());
               // A copy of a file that must not be written would not let itself be written either.
               return QFile::copy(file, copy) &&
                      QFile::setPermissions(copy, QFile::ReadOwner | QFile::WriteOwner);
           });
}

QString SettledDatabase::path() const
{
    return m_folder ? m_folder->filePath("docs.db") : m_path;
}

/// True if a reader that must not change the file cannot read it, because of its journal. Beside a
/// database that is being written to at this moment lies a journal too, but readers may read.
bool SettledDatabase::isRefused() const
{
    constexpr int basicCode = 0xff; // above stand details
    constexpr int busy = 5;         // another program writes: its change is not interrupted
    if (!holdsChange(journalOf(m_path))) {
        return false;
    }
    const QSqlError error = lookInto(m_path, "QSQLITE_OPEN_READONLY");
    return error.isValid() && (error.nativeErrorCode().toInt() & basicCode) != busy;
}
