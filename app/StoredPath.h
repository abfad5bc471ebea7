#pragma once

#include <QString>

/// Path of a file below a folder, as a database names it: the folder, "/" and `stored`. Where
/// nothing stands there, the same with "\" taken for "/" and in whatever case its names are
/// written, if that is there: on Windows these make no difference, and a database may come from
/// there.
QString storedFilePath(const QString& folder, const QString& stored);
