#pragma once

#include <QString>

/// A text for a frame of a page, bounded so that it is laid out in a moment whoever wrote it.
struct BoundedMarkup
{
    QString text;
    bool isWhole = true; ///< else the end or the markup is left out
};

/// What a frame shows of a text. One that a page can show comes back as it is. The rest of a longer
/// one would lie beyond any paper and is left out; one whose markup costs more time than any that
/// a page can show is shown without it. Decides by what is laid out, never by the clock.
BoundedMarkup boundedMarkup(const QString& markup);

/// Whether a text has tags beside those that a frame puts around its text; without, it can load
/// nothing.
bool hasElements(const QString& markup);

/// The tag by which a frame opens the paragraph of its text, exactly as it does that, so that no
/// value can pass for it; empty if the text does not begin with it.
QString openedParagraph(const QString& markup);

/// How many rules all style sheets may have that a text loads beside its own.
int mostStyleRules(const QString& markup);

/// A text of a table's cell, which holds no markup, bounded likewise.
QString boundedPlainText(const QString& text);
