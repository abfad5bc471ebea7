#include "printing/FileNamePattern.h"

#include <QRegularExpression>
#include <QTextBoundaryFinder>

#include "render/DocumentTags.h"

namespace {

/// The longest name of a file in bytes, on any file system in use, less what is put behind it while
/// a file takes the place of an older one (".XXXXXX").
constexpr int mostBytes = 255 - 7;

bool isForbidden(const QString& text, int index)
{
    const QChar c = text[index];
    if (c.isHighSurrogate()) {
        return index + 1 == text.size() || !text[index + 1].isLowSurrogate();
    }
    if (c.isLowSurrogate()) {
        return index == 0 || !text[index - 1].isHighSurrogate();
    }
    const QChar::Category category = c.category();
    return category == QChar::Other_Control || category == QChar::Separator_Line ||
           category == QChar::Separator_Paragraph || QStringLiteral("\\/:*?\"<>|").contains(c);
}

/// Without what some file system does not take, and without invisible marks, which make two names
/// look the same.
QString withoutForbidden(const QString& text)
{
    QString result;
    for (int i = 0; i < text.size(); ++i) {
        if (isForbidden(text, i)) {
            result += '_';
        } else if (text[i].category() != QChar::Other_Format) {
            result += text[i];
        }
    }
    return result;
}

/// Windows drops dots and blanks at the end.
QString withoutEnd(QString text)
{
    static const QRegularExpression dotsAndBlanks("[.\\s]+$",
                                                  QRegularExpression::UseUnicodePropertiesOption);
    return text.remove(dotsAndBlanks);
}

/// A device of Windows, whatever stands behind a dot.
bool isReserved(const QString& stem)
{
    static const QRegularExpression device("^(?:CON|PRN|AUX|NUL|CONIN\\$|CONOUT\\$|"
                                           "(?:COM|LPT)[0-9\u00B9\u00B2\u00B3])\\s*(?:\\.|$)",
                                           QRegularExpression::CaseInsensitiveOption);
    return device.match(stem).hasMatch();
}

/// How far the text reaches that these bytes hold, in whole characters.
int endInBytes(const QString& text, int bytes)
{
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    int end = 0;
    int used = 0;
    for (int next = finder.toNextBoundary(); next > 0; next = finder.toNextBoundary()) {
        used += text.midRef(end, next - end).toUtf8().size();
        if (used > bytes) {
            break;
        }
        end = next;
    }
    if (end > 0) {
        return end;
    }
    // One letter with more accents than a name has room for.
    end = qMin(text.size(), bytes);
    while (end > 0 &&
           (text[end - 1].isHighSurrogate() || text.leftRef(end).toUtf8().size() > bytes)) {
        --end;
    }
    return end;
}

/// As much of the text as these bytes hold, whole characters.
QString cutToBytes(const QString& text, int bytes)
{
    return text.toUtf8().size() <= bytes ? text : withoutEnd(text.left(endInBytes(text, bytes)));
}

} // namespace

FileNamePattern::FileNamePattern(const QString& pattern, const QString& suffix)
    : m_suffix(suffix)
    , m_isValid(parse(pattern.isEmpty() ? QString("{#ID}_{#LNAME}_{#FNAME}") : pattern))
{
}

bool FileNamePattern::parse(const QString& pattern)
{
    static const QRegularExpression brace("[{}]");
    int begin = 0;
    bool isInside = false;
    for (int at = pattern.indexOf(brace); at >= 0; at = pattern.indexOf(brace, begin)) {
        const bool opens = pattern[at] == '{';
        if (opens == isInside) {
            return false;
        }
        m_pieces.append({pattern.mid(begin, at - begin), isInside});
        isInside = opens;
        begin = at + 1;
    }
    m_pieces.append({pattern.mid(begin), false});
    return !isInside;
}

std::optional<QString> FileNamePattern::nameFor(const PrintDocument& document)
{
    const std::optional<QString> stem = stemFor(document);
    if (!stem) {
        return std::nullopt;
    }
    const QString key = stem->toCaseFolded();
    QString name = cutToBytes(*stem, mostBytes - m_suffix.size()) + m_suffix;
    for (int number = qMax(m_lastNumber.value(key), 1); m_given.contains(name.toCaseFolded());) {
        m_lastNumber[key] = ++number;
        const QString tail = QString(" (%1)").arg(number) + m_suffix;
        name = cutToBytes(*stem, mostBytes - tail.size()) + tail;
    }
    m_given.insert(name.toCaseFolded());
    return name;
}

std::optional<QString> FileNamePattern::stemFor(const PrintDocument& document) const
{
    DocumentTags tags(document.id);
    QString text;
    for (const Piece& piece : m_pieces) {
        const std::optional<QString> part =
            piece.isExpanded ? tags.tryExpand(piece.text, nullptr) : piece.text;
        if (!part) {
            return std::nullopt;
        }
        text += *part;
    }
    // One form for letters that can be written as one character or as two.
    QString stem = withoutForbidden(text.normalized(QString::NormalizationForm_C)).trimmed();
    if (stem.endsWith(m_suffix, Qt::CaseInsensitive)) {
        stem.chop(m_suffix.size());
    }
    stem = withoutEnd(stem);
    if (stem.isEmpty()) {
        stem = document.id.toString();
    }
    // A leading dot hides the file, a leading hyphen makes it an option.
    const bool isSpecial = stem.startsWith('.') || stem.startsWith('-') || isReserved(stem);
    return isSpecial ? '_' + stem : stem;
}
