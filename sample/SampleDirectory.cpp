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

namespace {

SampleResult refuse(SampleResult result, const QString& reason, QString* detail)
{
    if (detail) {
        *detail = reason;
    }
    return result;
}

/// Makes the folders that the dialogs start in; the path of the first that can't be made, if any.
QString folderNotMade(const QString& directory)
{
    for (const char* name : {"blanks", "exports", "imports", "storage", "templates"}) {
        QString path = directory + "/" + name;
        if (!QDir().mkpath(path)) {
            return path;
        }
    }
    return QString();
}

} // namespace

SampleResult createSampleDirectory(const QString& directory, QString* detail)
{
    const QString root = QDir(directory).absolutePath();
    const QString database = root + "/docs.db";
    if (QFileInfo::exists(database)) {
        return refuse(SampleResult::DatabaseExists, database, detail);
    }
    const QString refused = folderNotMade(root);
    if (!refused.isEmpty()) {
        return refuse(SampleResult::FolderRefused, refused, detail);
    }
    const auto organisation = [] { return QJsonDocument(sampleData("organisation")).toJson(); };
    if (!writeNewFile(root + "/data/Zelvora/orgData.json", organisation, detail) ||
        !drawSampleBackgrounds(root, detail) || !writeSampleWorkbooks(root, detail))
    {
        return SampleResult::FileRefused;
    }
    // Last: where there is a database, the sample is complete.
    const bool isFilled =
        createDatabaseFile(database, detail, [&root](QSqlDatabase& target, QString* reason) {
            return insertStandardContent(target, reason) && insertSampleDocuments(target, reason) &&
                   insertSampleBlanks(target, reason) && insertSampleExchange(target, root, reason);
        });
    return isFilled ? SampleResult::Done : SampleResult::DatabaseNotFilled;
}
