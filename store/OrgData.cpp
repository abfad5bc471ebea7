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

bool isOrgDataSound()
{
    QFile file(orgDataPath);
    return !file.exists() ||
           (file.open(QIODevice::ReadOnly) && QJsonDocument::fromJson(file.readAll()).isObject());
}

bool loadOrgData()
{
    QFile file(orgDataPath);
    if (!file.exists()) {
        return false;
    }
    if (!file.open(QIODevice::ReadOnly)) {
        return true;
    }
    const QJsonObject data = QJsonDocument::fromJson(file.readAll()).object();
    file.close();
    orgNameFormat1 = data["nameFormat1"].toString();
    orgNameFormat2 = data["nameFormat2"].toString();
    orgRegion = data["region"].toString();
    orgLocality = data["locality"].toString();
    orgDirector = data["director"].toString();
    return true;
}
