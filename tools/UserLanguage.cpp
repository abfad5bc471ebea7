#include "tools/UserLanguage.h"

#include <QCoreApplication>
#include <QLocale>
#include <QTextStream>

#include <cerrno>

#include "tools/Interruption.h"
#include "translations/Translation.h"

namespace {

/// What this file says, in the language of the user.
class Text
{
    Q_DECLARE_TR_FUNCTIONS(UserLanguage)
};

} // namespace

void useUserLanguage()
{
    Translation(QLocale::system()).install();
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
        *error = Text::tr("can't write to the standard output");
    }
    return false;
}
