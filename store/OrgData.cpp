#include "store/OrgData.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStandardPaths>

QString orgNameFormat1;
QString orgNameFormat2;
QString orgRegion;
QString orgLocality;
QString orgDirector;

// No application or organisation name is ever set, so the location has no subfolder of Qt's: the
// folder's name comes from this literal alone.
QString orgDataPath =
    QStandardPaths::writableLocation(QStandardPaths::DataLocation) + "/Zelvora" + "/orgData.json";

OrgDataFile readOrgData()
{
    QFile file(orgDataPath);
    if (!file.exists()) {
        return OrgDataFile::Missing;
    }
    if (!file.open(QIODevice::ReadOnly)) {
        return OrgDataFile::Broken;
    }
    constexpr qint64 largest = 16 << 20; // five strings; a device has no end
    const QByteArray content = file.read(largest + 1);
    if (file.error() != QFileDevice::NoError || content.size() > largest) {
        return OrgDataFile::Broken;
    }
    const QJsonDocument document = QJsonDocument::fromJson(content);
    const QJsonObject data = document.object();
    orgNameFormat1 = data["nameFormat1"].toString();
    orgNameFormat2 = data["nameFormat2"].toString();
    orgRegion = data["region"].toString();
    orgLocality = data["locality"].toString();
    orgDirector = data["director"].toString();
    return document.isObject() ? OrgDataFile::Sound : OrgDataFile::Broken;
}

bool loadOrgData()
{
    return readOrgData() != OrgDataFile::Missing;
}
