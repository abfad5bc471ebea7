#include "preflight/LetterBoxes.h"

#include <QFontMetricsF>
#include <QPainterPath>

#include <algorithm>
#include <limits>

namespace {

/// Letters that stand by themselves in any font: Latin but for "f", which joins its neighbours,
/// Cyrillic, digits and common punctuation.
bool isPlain(QChar letter)
{
    const ushort code = letter.unicode();
    const bool isLatin = code >= 0x20 && code < 0x7F && code != 'f';
    const bool isCyrillic = code >= 0x0410 && code <= 0x044F;
    return isLatin || isCyrillic || code == 0x0401 || code == 0x0451 || code == 0x00A0 ||
           code == 0x00AB || code == 0x00BB || code == 0x2116 || code == 0x2014 || code == 0x2013;
}

/// Sides of a box that holds others; adds one faster than QRectF does.
struct Sides
{
    void add(const QRectF& other)
    {
        left = qMin(left, other.left());
        top = qMin(top, other.top());
        right = qMax(right, other.right());
        bottom = qMax(bottom, other.bottom());
    }

    /// Null if none has been added.
    QRectF box() const
    {
        return left > right ? QRectF() : QRectF(QPointF(left, top), QPointF(right, bottom));
    }

    double left = std::numeric_limits<double>::max();
    double top = left;
    double right = -left;
    double bottom = -left;
};

} // namespace

LetterBoxes& LetterBoxes::shared()
{
    static LetterBoxes boxes;
    return boxes;
}

std::optional<QRectF> LetterBoxes::around(const QString& text, const QFont& font, double advance)
{
    Letters& letters = lettersOf(font);
    Sides sides; // of all letters put on one place
    double overhang = 0;
    for (const QChar character : text) {
        auto found = letters.constFind(character);
        if (found == letters.constEnd()) {
            if (!isPlain(character)) {
                return std::nullopt;
            }
            found = letters.insert(character, measure(character, font));
        }
        if (!found->ink.isNull()) {
            sides.add(found->ink);
            overhang = qMax(overhang, found->ink.right() - found->advance);
        }
    }
    QRectF box = sides.box();
    if (box.isNull()) {
        return box;
    }
    box.setLeft(qMin(box.left(), 0.0));
    box.setRight(qMax(box.left(), advance + overhang));
    return box;
}

LetterBoxes::Letters& LetterBoxes::lettersOf(const QFont& font)
{
    constexpr std::size_t mostFonts = 32;
    const auto found = std::find_if(m_fonts.begin(), m_fonts.end(),
                                    [&font](const auto& known) { return known.first == font; });
    if (found != m_fonts.end()) {
        std::rotate(found, found + 1, m_fonts.end());
        return m_fonts.back().second;
    }
    if (m_fonts.size() == mostFonts) {
        m_fonts.erase(m_fonts.begin());
    }
    m_fonts.emplace_back(font, Letters());
    return m_fonts.back().second;
}

LetterBoxes::Letter LetterBoxes::measure(QChar letter, const QFont& font)
{
    QPainterPath path;
    path.addText(QPointF(0, 0), font, QString(letter));
    Letter result;
    result.ink = path.isEmpty() ? QRectF() : path.boundingRect();
    result.advance = QFontMetricsF(font).horizontalAdvance(letter);
    return result;
}
