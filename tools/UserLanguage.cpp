#include "tools/UserLanguage.h"

#include <QLocale>
#include <QTextCodec>
#include <QTextStream>

#include <cerrno>

#include "tools/Interruption.h"

QString inUserLanguage(const QString& russian, const QString& english)
{
    return QLocale::system().language() == QLocale::Russian ? russian : english;
}

void prepareTerminal(QTextStream& stream)
{
    constexpr ushort cyrillicLetter = 0x0416;
    if (!QTextCodec::codecForLocale()->canEncode(QChar(cyrillicLetter))) {
        stream.setCodec("UTF-8");
    }
}

bool flushOutput(QTextStream& out, QString* error)
{
    const bool tookAll = out.status() == QTextStream::Ok;
    errno = 0;
    out.flush();
    if (out.status() == QTextStream::Ok) {
        return true;
    }
    if (tookAll && errno == EPIPE) {
        noteReaderGone();
    }
    if (error) {
        *error = inUserLanguage("не удалось записать в стандартный вывод",
                                "can't write to the standard output");
    }
    return false;
}
