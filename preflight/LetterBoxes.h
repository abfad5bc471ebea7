#pragma once

#include <QFont>
#include <QHash>
#include <QRectF>
#include <QString>

#include <optional>
#include <vector>

/// Remembers the ink of single letters, which is the same on every page: together they tell how far
/// the ink of a text can reach, without shaping it and adding up its outlines.
class LetterBoxes
{
public:
    static LetterBoxes& shared();

    /// Box that holds the ink of a text from the start of its base line, in the font's own units;
    /// `advance` is the width that the text takes. None for a text with characters whose ink may
    /// depend on their neighbours, such as ligatures and marks. Null: no ink.
    std::optional<QRectF> around(const QString& text, const QFont& font, double advance);

private:
    struct Letter
    {
        QRectF ink;         // null: none
        double advance = 0; // of the letter alone
    };

    using Letters = QHash<QChar, Letter>;

    Letters& lettersOf(const QFont& font);
    static Letter measure(QChar letter, const QFont& font);

    std::vector<std::pair<QFont, Letters>> m_fonts; // used last: last
};
