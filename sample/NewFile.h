#pragma once

#include <QByteArray>
#include <QString>

#include <functional>

/// Writes a file that is not there yet, whole or not at all; its folder is made if need be. A file
/// that exists stays as it is, which is success, and `content` is not asked for. On failure returns
/// false and puts the path and the system's reason into `error` (may be null).
bool writeNewFile(const QString& path, const std::function<QByteArray()>& content, QString* error);
