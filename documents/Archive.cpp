#include "documents/Archive.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QSqlQuery>

#include "app/AppHelpers.h"
#include "store/DataBase.h"

const QString archiveFileFilter = QStringLiteral("Zelvora Files (*.zlv)");

namespace {

QString livePath()
{
    return appFilePath("docs.db");
}

QString journalOf(const QString& database)
{
    return database + "-journal";
}

/// True if the live file alone is the database. A change that failed may have left a journal beside
/// it: then the file is half of the truth, and the journal would spoil any other database in its
/// place. The next read undoes the change; only a disk that still fails keeps the journal.
bool isSettled()
{
    QFile journal(journalOf(livePath()));
    if (!journal.exists()) {
        return true;
    }
    QSqlQuery().exec("SELECT COUNT(*) FROM sqlite_master");
    char first = 0; // of a journal that has done its work, if it is kept at all
    return !journal.exists() ||
           (journal.open(QIODevice::ReadOnly) && (!journal.getChar(&first) || first == 0));
}

/// Moves the live database to the backup's place, for a copy of the archive to come. Without a live
/// file, as a restore that failed leaves it, the backup holds the only data and stays. False if
/// what would follow could only destroy something.
bool makeRoom(const QString& archive)
{
    const QString backup = appFilePath("docs_backup.db");
    if (!QFile::exists(livePath())) {
        const QString journal = journalOf(livePath()); // belongs to nothing
        return !QFile::exists(journal) || QFile::remove(journal);
    }
    const QString canonicalBackup = QFileInfo(backup).canonicalFilePath();
    const bool isBackup = QFileInfo(archive).canonicalFilePath() == canonicalBackup;
    if ((isBackup && !canonicalBackup.isEmpty()) || !isSettled()) {
        return false;
    }
    dataBase.close();
    QFile::remove(backup);
    QFile::remove(journalOf(backup));
    QFile::rename(livePath(), backup);
    return true;
}

} // namespace

QString archiveFolder()
{
    return appFilePath("storage/");
}

QString newArchivePath()
{
    const QString now = QDateTime::currentDateTime().toString("dd-MM-yy hh-mm");
    return archiveFolder() + "docs_" + now + ".zlv";
}

bool saveArchive(const QString& target)
{
    return isSettled() && QFile::copy(livePath(), target);
}

bool replaceDatabase(const QString& archive)
{
    if (!makeRoom(archive) || !QFile::copy(archive, livePath())) {
        return false;
    }
    // The copy of an archive that must not be written would not let itself be written either.
    QFile::setPermissions(livePath(), QFile::permissions(livePath()) | QFileDevice::ReadOwner |
                                          QFileDevice::WriteOwner);
    return true;
}
