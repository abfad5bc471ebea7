#include "sample/NewFile.h"

#include <QDir>
#include <QFileInfo>

#include "app/WholeFile.h"

bool writeNewFile(const QString& path, const std::function<QByteArray()>& content, QString* error)
{
    if (QFileInfo::exists(path)) {
        return true;
    }
    QDir().mkpath(QFileInfo(path).path());
    QString reason;
    if (writeWholeFile(path, content(), &reason)) {
        return true;
    }
    if (error) {
        *error = path + " (" + reason + ")";
    }
    return false;
}
