#pragma once

#include <QString>

/// One of two wordings of a message: the Russian one if the user's locale is Russian, the English
/// one otherwise.
QString inUserLanguage(const QString& russian, const QString& english);
