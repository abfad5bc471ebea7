#pragma once

#include <QLocale>
#include <QString>

#include "preflight/Finding.h"
#include "translations/Translation.h"

/// Says in words what the check of a page found: in Russian if the locale's language is Russian, in
/// English otherwise, with the numbers as the locale writes them. No words have a line end.
class FindingWords
{
public:
    /// The user's own language by default.
    explicit FindingWords(const QLocale& locale = QLocale::system());

    /// The whole finding in a sentence on one line.
    QString sentence(const Finding& finding) const;

    /// What was found, without where.
    QString what(const Finding& finding) const;

    /// Document, blank, item and place, as far as they are known.
    QString where(const Finding& finding) const;

    /// A document, if it has an ID, on a blank.
    QString page(const Finding::Document& document, const Finding::Blank& blank) const;

    /// Number and text of the item; empty if the finding is of the blank as a whole.
    QString item(const Finding& finding) const;

    /// A kind of finding, for a summary.
    QString caption(Finding::Kind kind) const;

    /// That there are some more findings than those that were told.
    QString more(int findings) const;

private:
    Translation m_translation;
};
