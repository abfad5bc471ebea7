#include "sample/NewFile.h"

#include <QDir>
#include <QFileInfo>

#include "app/TargetFile.h"

bool writeNewFile(const QString& path, const std::function<QByteArray()>& content, QString* error)
{
    if (QFileInfo::exists(path)) {
        return true;
    }
    QDir().mkpath(QFileInfo(path).path());
    TargetFile file(path, TargetFile::Links::Replace);
    if (file.open()) {
        file.device().write(content());
        if (file.commit()) {
            return true;
        }
    }
    if (error) {
        *error = path + " (" + file.errorString() + ")";
    }
    return false;
}
