#include "tools/UserLanguage.h"

#include <QLocale>

QString inUserLanguage(const QString& russian, const QString& english)
{
    return QLocale::system().language() == QLocale::Russian ? russian : english;
}
