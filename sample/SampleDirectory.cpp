#include "sample/SampleDirectory.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

#include "sample/NewFile.h"
#include "sample/SampleBlanks.h"
#include "sample/SampleData.h"
#include "sample/SampleDocuments.h"
#include "sample/SampleExchange.h"
#include "sample/StandardContent.h"
#include "store/Schema.h"
#include "tools/UserLanguage.h"

namespace {

bool refuse(const QString& reason, QString* error)
{
    if (error) {
        *error = reason;
    }
    return false;
}

bool makeFolders(const QString& directory, QString* error)
{
    for (const char* name : {"blanks", "exports", "imports", "storage", "templates"}) {
        const QString path = directory + "/" + name;
        if (!QDir().mkpath(path)) {
            return refuse(
                inUserLanguage("не удалось создать каталог ", "cannot make the directory ") + path,
                error);
        }
    }
    return true;
}

} // namespace

bool createSampleDirectory(const QString& directory, QString* error)
{
    const QString root = QDir(directory).absolutePath();
    const QString database = root + "/docs.db";
    if (QFileInfo::exists(database)) {
        return refuse(
            inUserLanguage("файл уже существует: ", "the file exists already: ") + database, error);
    }
    const auto organisation = [] { return QJsonDocument(sampleData("organisation")).toJson(); };
    if (!makeFolders(root, error) ||
        !writeNewFile(root + "/data/Zelvora/orgData.json", organisation, error) ||
        !drawSampleBackgrounds(root, error) || !writeSampleWorkbooks(root, error))
    {
        return false;
    }
    // Last: where there is a database, the sample is complete.
    return createDatabaseFile(database, error, [&root](QSqlDatabase& target, QString* reason) {
        return insertStandardContent(target, reason) && insertSampleDocuments(target, reason) &&
               insertSampleBlanks(target, reason) && insertSampleExchange(target, root, reason);
    });
}
