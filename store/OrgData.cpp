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

namespace {

/// Reads all of the file; false if it cannot be read to its end.
bool readWhole(QFile& file, QByteArray& content)
{
    if (!file.open(QIODevice::ReadOnly)) {
        return false;
    }
    content = file.readAll();
    return file.error() == QFileDevice::NoError;
}

} // namespace

bool isOrgDataSound()
{
    QFile file(orgDataPath);
    QByteArray content;
    return !file.exists() ||
           (readWhole(file, content) && QJsonDocument::fromJson(content).isObject());
}

bool loadOrgData()
{
    QFile file(orgDataPath);
    if (!file.exists()) {
        return false;
    }
    QByteArray content;
    if (!readWhole(file, content)) {
        return true;
    }
    const QJsonObject data = QJsonDocument::fromJson(content).object();
    orgNameFormat1 = data["nameFormat1"].toString();
    orgNameFormat2 = data["nameFormat2"].toString();
    orgRegion = data["region"].toString();
    orgLocality = data["locality"].toString();
    orgDirector = data["director"].toString();
    return true;
}
