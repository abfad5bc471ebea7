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
    return QFile::copy(archive, livePath());
}
