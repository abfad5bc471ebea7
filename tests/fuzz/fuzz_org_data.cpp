// Bytes taken as the file of the organisation's data: the five strings, and the tags that print
// them.

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include "fuzz/FuzzSupport.h"
#include "render/TagExpansion.h"
#include "store/OrgData.h"

namespace {

const QStringList tags = {"#ORG_NAME_1", "#ORG_NAME_2",   "#ORG_REGION",        "#ORG_LOCALITY",
                          "#ORG_CITY",   "#ORG_DIRECTOR", "#ORG_DIRECTOR_SHORT"};

QString stringOf(const QJsonObject& data, const char* key)
{
    return data[QLatin1String(key)].toString();
}

} // namespace

void tryInput(const QByteArray& input)
{
    static auto* folder = new QTemporaryDir; // in TMPDIR
    orgDataPath = folder->filePath("orgData.json");
    QFile file(orgDataPath);
    require(file.open(QIODevice::WriteOnly) && file.write(input) == input.size(),
            "the file can be written");
    file.close();
    require(loadOrgData(), "a file that is there is told so");

    const QJsonObject data = QJsonDocument::fromJson(input).object();
    require(orgNameFormat1 == stringOf(data, "nameFormat1") &&
                orgNameFormat2 == stringOf(data, "nameFormat2") &&
                orgRegion == stringOf(data, "region") &&
                orgLocality == stringOf(data, "locality") &&
                orgDirector == stringOf(data, "director"),
            "each string is the file's, or empty");
    for (const QString& tag : tags) {
        expandTags(tag + ' ' + tag, {}, {});
    }
    shortPersonName(orgDirector);
}
