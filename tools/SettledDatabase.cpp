#include "tools/SettledDatabase.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>

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

/// Enough to see that nobody wrote to the two files while they were copied.
QString stateOf(const QString& path)
{
    QString state;
    for (const QString& name : {path, journalOf(path)}) {
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
    for (int i = 0; i < attempts && isRefused(); ++i) {
        m_folder = std::make_unique<QTemporaryDir>();
        const QString before = stateOf(m_path);
        if (!m_folder->isValid() || !QFile::copy(m_path, path()) ||
            !QFile::copy(journalOf(m_path), journalOf(path())))
        {
            m_error = tr("the database cannot be copied with its journal: %1").arg(m_path);
            return false;
        }
        if (stateOf(m_path) == before) {
            // A copy of files that must not be written would not let itself be written either.
            for (const QString& name : {path(), journalOf(path())}) {
                QFile::setPermissions(name, QFile::ReadOwner | QFile::WriteOwner);
            }
            lookInto(path(), QString());
            return true;
        }
        m_folder.reset(); // another program is at it
    }
    return true;
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
