#pragma once

#include <QLocale>
#include <QString>

class QTranslator;

/// The texts of the companion programs in the language of a locale: Russian if that is its
/// language, English otherwise. The English texts stand in the sources, where a translator
/// (lupdate) finds them; what they are in Russian, and their English plurals, stand in the .ts
/// files beside this class.
class Translation
{
public:
    explicit Translation(const QLocale& locale);

    const QLocale& locale() const { return m_locale; }

    /// A text of the sources in this language; as it stands there if it has no translation. Called
    /// like QCoreApplication::translate, and found by translators as that is. `n` is put in the
    /// place of "%n", and chooses the plural.
    QString translate(const char* context, const char* text, const char* comment = nullptr,
                      int n = -1) const;

    /// Makes this the language of tr() and QCoreApplication::translate in the whole program, for
    /// the rest of its run.
    void install() const;

private:
    QTranslator& translator() const;

    QLocale m_locale;
};
