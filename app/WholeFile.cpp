#include "app/WholeFile.h"

#include <QSaveFile>

bool commitWhole(QSaveFile& file)
{
    return file.flush() && file.commit();
}

bool writeWholeFile(const QString& path, const QByteArray& content, QString* error)
{
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.write(content) == content.size() &&
        commitWhole(file)) {
        return true;
    }
    if (error) {
        *error = file.errorString();
    }
    return false;
}
