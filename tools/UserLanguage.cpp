#include "tools/UserLanguage.h"

#include <QCoreApplication>
#include <QLocale>
#include <QTextStream>

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
    out.flush();
    if (out.status() == QTextStream::Ok) {
        return true;
    }
    if (error) {
        *error = Text::tr("can't write to the standard output");
    }
    return false;
}
