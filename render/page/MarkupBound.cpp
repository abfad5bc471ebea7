#include "render/page/MarkupBound.h"

#include <QTextBlock>
#include <QTextFrame>
#include <QTextTable>

#include <algorithm>

#include "render/page/MarkupDocument.h"

namespace {

// The largest page, 500 by 500 mm, holds some 31,000 characters in a new blank's font of 11 points;
// a page of 210 by 297 mm some 15,000 in the smallest one of a blank, 8 points.
constexpr int mostCharacters = 1 << 15;

// The same page is 1,889 units high; a line is hardly lower than one.
constexpr int mostLines = 1 << 12;

constexpr int mostMarkup = 1 << 16;     // characters in tags and comments, but for...
constexpr int mostMarkupData = 1 << 20; // ...data: URLs, together with them
constexpr int mostElements = 1 << 11;   // each is compared with all that it stands in
constexpr qint64 mostCellsRead = 100'000;
constexpr qint64 mostRuleSteps = 20'000'000;

// A layout measures the cells of a table four times, and those of a table in it four times each.
constexpr int mostCellsLaidOut = 1 << 10;
constexpr int layoutsOfCell = 4;
constexpr int mostFloats = 48; // each is placed anew with every line beside it

bool isLineEnd(QChar c)
{
    return c == '\n' || c == QChar::LineSeparator || c == QChar::ParagraphSeparator;
}

int lineEndsIn(const QString& markup)
{
    const auto ends = std::count_if(markup.cbegin(), markup.cend(), isLineEnd);
    return static_cast<int>(ends) + markup.count("<br", Qt::CaseInsensitive);
}

/// Tags and comments of a text, counted so that whatever the toolkit makes of them is no more.
struct MarkupCounts
{
    int elements = 0; // but for line breaks, which hold nothing
    int rows = 0;
    int cells = 0;
    int largestSpan = 1; // of columns
    int rules = 0;       // of style sheets in the text
    int outside = 0;     // characters
    int inTags = 0;      // characters, but for data: URLs
    bool isOutside = true;
};

/// A text with its character references in digits resolved, which can spell a tag's name.
QString withoutReferences(const QString& text)
{
    QString result;
    result.reserve(text.size());
    for (int i = 0; i < text.size(); ++i) {
        constexpr int longest = 12;
        const QStringRef begin = text.midRef(i, longest);
        const int length = begin.startsWith(QLatin1String("&#")) ? begin.indexOf(';') : -1;
        if (length < 0) {
            result += text[i];
            continue;
        }
        const int sign = begin.at(2).toLower() == 'x' ? 3 : 2; // and its length
        const QStringRef digits = begin.mid(sign, length - sign);
        bool isNumber = false;
        const uint code = digits.toUInt(&isNumber, sign == 3 ? 16 : 10);
        result +=
            isNumber && code < 0x80 ? QString(QChar(code)) : begin.left(length + 1).toString();
        i += length;
    }
    return result;
}

bool standsAt(const QString& text, int position, const char* word)
{
    return text.midRef(position, static_cast<int>(qstrlen(word)))
               .compare(QLatin1String(word), Qt::CaseInsensitive) == 0;
}

bool isLineBreak(const QString& text, int name)
{
    constexpr int length = 2;
    const QChar end = name + length < text.size() ? text[name + length] : QChar('>');
    return standsAt(text, name, "br") && (end == '>' || end == '/' || end.isSpace());
}

void countTag(MarkupCounts& counts, const QString& text, int begin)
{
    int name = begin + 1;
    while (name < text.size() && (text[name].isSpace() || text[name] == '"' || text[name] == '\''))
    {
        ++name;
    }
    if (isLineBreak(text, name)) {
        return;
    }
    ++counts.elements;
    counts.rows += standsAt(text, name, "tr") ? 1 : 0;
    counts.cells += standsAt(text, name, "td") || standsAt(text, name, "th") ? 1 : 0;
}

/// The largest number that may be a span of columns: the first after each such word.
int largestSpanIn(const QString& text)
{
    constexpr int digits = 6;
    int largest = 1;
    int position = text.indexOf("colspan", 0, Qt::CaseInsensitive);
    while (position >= 0) {
        while (position < text.size() && (text[position] < '0' || text[position] > '9')) {
            ++position;
        }
        while (position < text.size() && text[position] == '0') {
            ++position;
        }
        int end = position;
        while (end < text.size() && text[end] >= '0' && text[end] <= '9') {
            ++end;
        }
        largest = qMax(largest, text.midRef(position, qMin(end - position, digits)).toInt());
        position = text.indexOf("colspan", end, Qt::CaseInsensitive);
    }
    return largest;
}

/// Length of a data: URL that begins there, for a tag may be as long as the picture in it.
int dataLength(const QString& text, int begin)
{
    if (!standsAt(text, begin, "data:")) {
        return 0;
    }
    int end = begin;
    while (end < text.size() && text[end] != '"' && text[end] != '\'' && text[end] != '>' &&
           !text[end].isSpace())
    {
        ++end;
    }
    return end - begin;
}

void countCharacters(MarkupCounts& counts, const QString& text)
{
    for (int i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (const int data = counts.isOutside ? 0 : dataLength(text, i)) {
            i += data - 1;
            continue;
        }
        counts.isOutside = counts.isOutside && c != '<';
        ++(counts.isOutside ? counts.outside : counts.inTags);
        counts.isOutside = counts.isOutside || c == '>';
    }
}

MarkupCounts countsOf(const QString& markup)
{
    MarkupCounts counts;
    const QString text = withoutReferences(markup);
    for (int tag = text.indexOf('<'); tag >= 0; tag = text.indexOf('<', tag + 1)) {
        if (!standsAt(text, tag, "</")) {
            countTag(counts, text, tag);
        }
    }
    counts.largestSpan = largestSpanIn(text);
    const int braces = text.count('{');
    counts.rules = braces == 0 ? 0 : braces + text.count(',');
    countCharacters(counts, markup);
    return counts;
}

/// Whether the text can be read in a moment; nothing of it is laid out then.
bool isQuicklyRead(const MarkupCounts& counts)
{
    const qint64 rows = counts.rows + 1;
    const qint64 cubed = qint64(counts.elements) * counts.elements * counts.elements;
    return counts.inTags <= mostMarkup && counts.outside <= mostCharacters &&
           counts.elements <= mostElements &&
           rows * counts.cells * counts.largestSpan <= mostCellsRead &&
           cubed / 2 * counts.rules <= mostRuleSteps;
}

/// Cells of all tables in a frame, each as often as it is measured.
qint64 cellsLaidOut(const QTextFrame* frame, qint64 times)
{
    qint64 cells = 0;
    for (const QTextFrame* child : frame->childFrames()) {
        const auto* table = qobject_cast<const QTextTable*>(child);
        const qint64 inner = times * layoutsOfCell;
        cells += times * (table ? qint64(table->rows()) * table->columns() : 1);
        if (cells > mostCellsLaidOut || inner > qint64(mostCellsLaidOut) * layoutsOfCell) {
            return qint64(mostCellsLaidOut) + 1;
        }
        cells += cellsLaidOut(child, inner);
    }
    return cells;
}

bool isFloat(const QTextFormat& format)
{
    return format.intProperty(QTextFormat::CssFloat) != QTextFrameFormat::InFlow;
}

int floatsIn(const QTextFrame* frame)
{
    const QList<QTextFrame*> children = frame->childFrames();
    int floats = isFloat(frame->frameFormat()) ? 1 : 0;
    for (const QTextFrame* child : children) {
        floats += floatsIn(child);
    }
    return floats;
}

int floatingPictures(const QTextDocument& document)
{
    int pictures = 0;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment part = it.fragment();
            const bool isPicture = part.charFormat().isImageFormat();
            pictures += isPicture && isFloat(part.charFormat()) ? part.length() : 0;
        }
    }
    return pictures;
}

/// Whether what the text has been read as can be laid out in a moment.
bool isQuicklyLaidOut(const QString& markup)
{
    constexpr qint64 noPixels = 0; // pictures make nothing slower that is counted here
    MarkupResources resources(mostStyleRules(markup), noPixels);
    MarkupDocument document(&resources);
    document.setHtml(markup);
    return document.characterCount() <= mostCharacters && document.blockCount() <= mostLines &&
           cellsLaidOut(document.rootFrame(), 1) <= mostCellsLaidOut &&
           floatsIn(document.rootFrame()) + floatingPictures(document) <= mostFloats;
}

/// Where a text is cut so that this many characters are left: not within a character.
int cutOf(const QString& text, int characters)
{
    int end = qMin(characters, text.size());
    if (end < text.size() && end > 0 && text[end - 1].isHighSurrogate()) {
        --end;
    }
    constexpr int longestReference = 10;
    const int reference = end < text.size() ? text.lastIndexOf('&', end - 1) : -1;
    const bool isSplit = reference >= 0 && end - reference < longestReference &&
                         !text.midRef(reference, end - reference).contains(';');
    return isSplit ? reference : end;
}

/// Where the last line ends that a page can show.
int endOfLines(const QString& text)
{
    int lines = 0;
    const auto isLast = [&lines](QChar c) { return isLineEnd(c) && ++lines == mostLines; };
    return static_cast<int>(std::find_if(text.cbegin(), text.cend(), isLast) - text.cbegin());
}

QString withoutTags(const QString& markup)
{
    QString result;
    int position = 0;
    while (position < markup.size()) {
        const int tag = markup.indexOf('<', position);
        result += markup.midRef(position, tag < 0 ? -1 : tag - position);
        if (tag < 0) {
            break;
        }
        result += isLineBreak(markup, tag + 1) ? "\n" : "";
        const int end = markup.indexOf('>', tag);
        position = end < 0 ? markup.size() : end + 1;
    }
    return result;
}

BoundedMarkup plainBounded(const QString& markup)
{
    const QString text = withoutTags(markup);
    const QString whole = text.left(qMin(cutOf(text, mostCharacters), endOfLines(text)));
    return {openedParagraph(markup) + QString(whole).replace('\n', "<br>"), false};
}

} // namespace

QString openedParagraph(const QString& markup)
{
    const QString begin = "<p style=\"line-height: ";
    int end = begin.size();
    while (end < markup.size() && markup[end] >= '0' && markup[end] <= '9') {
        ++end;
    }
    const QString rest = "%;\">";
    const bool isThere = markup.startsWith(begin) && markup.midRef(end, rest.size()) == rest;
    return isThere ? markup.left(end + rest.size()) : QString();
}

bool hasElements(const QString& markup)
{
    for (int tag = markup.indexOf('<', openedParagraph(markup).size()); tag >= 0;
         tag = markup.indexOf('<', tag + 1))
    {
        if (!standsAt(markup, tag, "<br>") && !standsAt(markup, tag, "</p>")) {
            return true;
        }
    }
    return false;
}

BoundedMarkup boundedMarkup(const QString& markup)
{
    const bool hasFewLines = markup.size() <= mostLines || lineEndsIn(markup) <= mostLines;
    if (!hasElements(markup)) {
        const bool isShort =
            markup.size() <= mostCharacters || withoutTags(markup).size() <= mostCharacters;
        return isShort && hasFewLines ? BoundedMarkup{markup} : plainBounded(markup);
    }
    if (hasFewLines && markup.size() <= mostMarkupData && isQuicklyRead(countsOf(markup)) &&
        isQuicklyLaidOut(markup))
    {
        return {markup};
    }
    return plainBounded(markup);
}

int mostStyleRules(const QString& markup)
{
    const MarkupCounts counts = countsOf(markup);
    const qint64 elements = qMax(counts.elements, 1);
    const qint64 most = mostRuleSteps * 2 / (elements * elements * elements) - counts.rules;
    return static_cast<int>(qBound<qint64>(0, most, mostMarkup));
}

QString boundedPlainText(const QString& text)
{
    return text.left(cutOf(text, mostCharacters));
}
