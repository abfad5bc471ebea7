#include "translations/Translation.h"

#include <QCoreApplication>
#include <QTranslator>

namespace {

/// What was compiled in for a language. Loaded at its first use, and kept.
class Catalogue : public QTranslator
{
public:
    explicit Catalogue(const QString& language)
    {
        if (!load(":/translations/zelvora_" + language + ".qm")) {
            qWarning("No texts in the language %s", qPrintable(language));
        }
    }
};

} // namespace

Translation::Translation(const QLocale& locale)
    : m_locale(locale)
{
}

QString Translation::translate(const char* context, const char* text, const char* comment,
                               int n) const
{
    QString translated = translator().translate(context, text, comment, n);
    if (translated.isEmpty()) {
        translated = QString::fromUtf8(text);
    }
    return n < 0 ? translated : translated.replace("%n", QString::number(n));
}

void Translation::install() const
{
    QCoreApplication::installTranslator(&translator());
}

QTranslator& Translation::translator() const
{
    static Catalogue russian("ru");
    static Catalogue english("en");
    return m_locale.language() == QLocale::Russian ? russian : english;
}
