#include "documents/Archive.h"

#include <QDateTime>
#include <QFile>

#include "app/AppHelpers.h"
#include "store/DataBase.h"

const QString archiveFileFilter = QStringLiteral("Zelvora Files (*.zlv)");

namespace {

QString livePath()
{
    return appFilePath("docs.db");
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
    return QFile::copy(livePath(), target);
}

bool replaceDatabase(const QString& archive)
{
    const QString backup = appFilePath("docs_backup.db");
    dataBase.close();
    QFile::remove(backup);
    QFile::rename(livePath(), backup);
    if (!QFile::copy(archive, livePath())) {
        return false;
    }
    // The copy of an archive that must not be written would not let itself be written either.
    QFile::setPermissions(livePath(), QFile::permissions(livePath()) | QFileDevice::ReadOwner |
                                          QFileDevice::WriteOwner);
    return true;
}
