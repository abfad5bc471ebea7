#include "sample/NewFile.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>

bool writeNewFile(const QString& path, const std::function<QByteArray()>& content, QString* error)
{
    if (QFileInfo::exists(path)) {
        return true;
    }
    QDir().mkpath(QFileInfo(path).path());
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly)) {
        file.write(content());
        if (file.commit()) {
            return true;
        }
    }
    if (error) {
        *error = path + " (" + file.errorString() + ")";
    }
    return false;
}
