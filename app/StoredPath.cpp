#include "app/StoredPath.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace {

/// Path of what a folder has under a name in any case; empty if there is nothing.
QString entryOf(const QString& folder, const QString& name)
{
    QString told = folder + "/" + name;
    if (QFileInfo::exists(told)) {
        return told;
    }
    const QStringList entries =
        QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    const auto found = std::find_if(entries.begin(), entries.end(), [&name](const QString& entry) {
        return entry.compare(name, Qt::CaseInsensitive) == 0;
    });
    return found == entries.end() ? QString() : folder + "/" + *found;
}

} // namespace

QString storedFilePath(const QString& folder, const QString& stored)
{
    QString told = folder + "/" + stored;
    if (QFileInfo::exists(told)) {
        return told;
    }
    QString path = folder;
    for (const QString& name : QString(stored).replace('\\', '/').split('/', Qt::SkipEmptyParts)) {
        path = entryOf(path, name);
        if (path.isEmpty()) {
            return told;
        }
    }
    return path;
}
