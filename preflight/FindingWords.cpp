#include "preflight/FindingWords.h"

#include <QCoreApplication>
#include <QStringList>

#include "app/TerminalText.h"
#include "preflight/LengthText.h"

namespace {

struct KindCaption
{
    Finding::Kind kind;
    const char* text;
};

constexpr KindCaption kindCaptions[] = {
    {Finding::Kind::TextTooHigh, QT_TRANSLATE_NOOP("FindingWords", "text higher than its frame")},
    {Finding::Kind::TextTooWide, QT_TRANSLATE_NOOP("FindingWords", "text wider than its frame")},
    {Finding::Kind::TableRowsCut, QT_TRANSLATE_NOOP("FindingWords", "table rows cut off")},
    {Finding::Kind::TableRowsLeftOut, QT_TRANSLATE_NOOP("FindingWords", "table rows not printed")},
    {Finding::Kind::TableCellCut, QT_TRANSLATE_NOOP("FindingWords", "text does not fit its cell")},
    {Finding::Kind::TableColumnCut, QT_TRANSLATE_NOOP("FindingWords", "table column not printed")},
    {Finding::Kind::TableOutsideFrame,
     QT_TRANSLATE_NOOP("FindingWords", "table larger than its frame")},
    {Finding::Kind::OutsidePage, QT_TRANSLATE_NOOP("FindingWords", "beyond the page")},
    {Finding::Kind::OutsidePrintable, QT_TRANSLATE_NOOP("FindingWords", "in the printer's margin")},
    {Finding::Kind::TagNotExpanded, QT_TRANSLATE_NOOP("FindingWords", "tag not replaced")},
    {Finding::Kind::DateMissing, QT_TRANSLATE_NOOP("FindingWords", "no date")},
    {Finding::Kind::TagEmpty, QT_TRANSLATE_NOOP("FindingWords", "tag without a value")},
    {Finding::Kind::TailDropped, QT_TRANSLATE_NOOP("FindingWords", "last character not printed")},
    {Finding::Kind::ValueReadAsMarkup, QT_TRANSLATE_NOOP("FindingWords", "value read as markup")},
    {Finding::Kind::TextNotWhole,
     QT_TRANSLATE_NOOP("FindingWords", "text too large for any frame")},
    {Finding::Kind::FontReplaced, QT_TRANSLATE_NOOP("FindingWords", "font replaced")},
    {Finding::Kind::QrModuleTooSmall, QT_TRANSLATE_NOOP("FindingWords", "QR code too small")},
    {Finding::Kind::QrRefused, QT_TRANSLATE_NOOP("FindingWords", "no QR code")},
    {Finding::Kind::QrTextCut, QT_TRANSLATE_NOOP("FindingWords", "text of QR code cut")},
    {Finding::Kind::BackgroundMissing, QT_TRANSLATE_NOOP("FindingWords", "no background")},
    {Finding::Kind::BackgroundOutside, QT_TRANSLATE_NOOP("FindingWords", "background elsewhere")},
    {Finding::Kind::PaperUnknown, QT_TRANSLATE_NOOP("FindingWords", "unknown paper format")},
    {Finding::Kind::PageTooLarge, QT_TRANSLATE_NOOP("FindingWords", "page too large")},
    {Finding::Kind::PageWithoutArea, QT_TRANSLATE_NOOP("FindingWords", "page without a size")},
    {Finding::Kind::PageWithoutFrames, QT_TRANSLATE_NOOP("FindingWords", "blank without frames")},
};

/// Millimetres with one decimal; what there is never reads as nothing.
QString length(const Translation& in, double millimetres)
{
    constexpr double smallest = 0.1;
    return in.translate("FindingWords", "%1 mm")
        .arg(lengthText(qMax(millimetres, smallest), 1, in.locale()));
}

QString coordinates(const Translation& in, const QPointF& point)
{
    return lengthText(point.x(), 1, in.locale()) + "; " + lengthText(point.y(), 1, in.locale());
}

/// A text on one line and no longer than a line.
QString shortened(const QString& text)
{
    constexpr int longest = 60;
    if (text.size() <= longest) {
        return onOneLine(text);
    }
    const int end = longest - 1;
    return onOneLine(text.left(text.at(end - 1).isHighSurrogate() ? end - 1 : end)) + QChar(0x2026);
}

/// The same in quotes.
QString quoted(const Translation& in, const QString& text)
{
    return in.translate("FindingWords", "“%1”").arg(shortened(text));
}

/// Numbers with neighbours joined: "3, 7–9".
QString ranges(const QVector<int>& numbers)
{
    QStringList parts;
    for (int i = 0; i < numbers.size(); ++i) {
        const int first = numbers[i];
        while (i + 1 < numbers.size() && numbers[i + 1] == numbers[i] + 1) {
            ++i;
        }
        const QString sign = numbers[i] == first + 1 ? ", " : QString::fromUtf8("–");
        parts << (numbers[i] == first
                      ? QString::number(first)
                      : QString::number(first) + sign + QString::number(numbers[i]));
    }
    return parts.join(", ");
}

QString sideName(const Translation& in, Finding::Side side)
{
    switch (side) {
    case Finding::Side::Left:
        return in.translate("FindingWords", "on the left");
    case Finding::Side::Top:
        return in.translate("FindingWords", "at the top");
    case Finding::Side::Right:
        return in.translate("FindingWords", "on the right");
    case Finding::Side::Bottom:
        return in.translate("FindingWords", "at the bottom");
    case Finding::Side::None:
        break;
    }
    return QString();
}

QString textWords(const Translation& in, const Finding& finding)
{
    const bool isHeight = finding.kind == Finding::Kind::TextTooHigh;
    if (finding.lostInk > 0) {
        return (isHeight
                    ? in.translate("FindingWords", "the text is too high: %2 %1 of it are cut off")
                    : in.translate("FindingWords", "the text is too wide: %2 %1 of it are cut off"))
            .arg(length(in, finding.amount), sideName(in, finding.side));
    }
    return (isHeight ? in.translate("FindingWords",
                                    "the text is higher than its frame: %2 it goes %1 beyond "
                                    "it, and is printed")
                     : in.translate("FindingWords",
                                    "the text is wider than its frame: %2 it goes %1 beyond it, "
                                    "and is printed"))
        .arg(length(in, finding.amount), sideName(in, finding.side));
}

QString rowsWords(const Translation& in, const Finding& finding)
{
    QStringList parts;
    if (!finding.partRows.isEmpty()) {
        parts << in.translate("FindingWords", "row %1 of the table loses %2 at the bottom")
                     .arg(ranges(finding.partRows), length(in, finding.lostInk));
    }
    if (!finding.rows.isEmpty()) {
        parts << in.translate("FindingWords",
                              "rows of the table that do not fit into the frame: %1")
                     .arg(ranges(finding.rows));
    }
    return parts.join("; ");
}

QString cellWords(const Translation& in, const Finding& finding)
{
    const QString excess =
        (finding.side == Finding::Side::Bottom
             ? in.translate("FindingWords", "the text %1 is %2 higher than its cell")
             : in.translate("FindingWords", "the text %1 is %2 wider than its cell"))
            .arg(quoted(in, finding.text), length(in, finding.amount));
    const QString result =
        finding.printed.isEmpty()
            ? in.translate("FindingWords", "its edge is cut off")
            : in.translate("FindingWords", "%1 is printed").arg(quoted(in, finding.printed));
    return in.translate("FindingWords", "row %1, column %2 of the table: %3, %4")
        .arg(ranges(finding.rows), QString::number(finding.column), excess, result);
}

QString edgeWords(const Translation& in, const Finding& finding)
{
    const bool isPage = finding.kind == Finding::Kind::OutsidePage;
    const QString beyond =
        (isPage ? in.translate("FindingWords", "goes %1 beyond the edge of the page %2")
                : in.translate("FindingWords", "goes %1 into the printer's margin %2"))
            .arg(length(in, finding.amount), sideName(in, finding.side));
    if (finding.lostInk > 0) {
        return in.translate("FindingWords", "%1, %2 of the print are lost")
            .arg(beyond, length(in, finding.lostInk));
    }
    return in.translate("FindingWords", "%1, with its empty part only").arg(beyond);
}

/// A finding without amounts: its kind, and the names that go with it.
QString plainWords(const Translation& in, const Finding& finding)
{
    switch (finding.kind) {
    case Finding::Kind::TableRowsLeftOut:
        return in
            .translate("FindingWords", "rows of the table that no frame of the blank prints: %1")
            .arg(ranges(finding.rows));
    case Finding::Kind::TableColumnCut:
        return in.translate("FindingWords", "column %1 of the table does not fit into the frame")
            .arg(finding.column);
    case Finding::Kind::TagNotExpanded:
        return in.translate("FindingWords", "the tag %1 prints as it stands")
            .arg(quoted(in, finding.tag));
    case Finding::Kind::DateMissing:
        return in.translate("FindingWords", "the tag %1 has no date: %2 is printed")
            .arg(finding.tag, quoted(in, finding.text));
    case Finding::Kind::TagEmpty:
        return in.translate("FindingWords", "the tag %1 has no value: nothing is printed")
            .arg(finding.tag);
    case Finding::Kind::TailDropped:
        return in.translate("FindingWords", "the last character %1 is not printed")
            .arg(quoted(in, finding.tag));
    case Finding::Kind::ValueReadAsMarkup:
        return in
            .translate("FindingWords", "the value of the tag %1 does not print as it stands: %2")
            .arg(finding.tag, quoted(in, finding.text));
    case Finding::Kind::TextNotWhole:
        return in.translate("FindingWords",
                            "the text is too long or has too much markup: it prints without "
                            "markup, and as far as it fits a page");
    case Finding::Kind::FontReplaced:
        return in.translate("FindingWords", "there is no font %1, %2 takes its place")
            .arg(quoted(in, finding.tag), quoted(in, finding.text));
    case Finding::Kind::QrRefused:
        return finding.text.isEmpty()
                   ? in.translate("FindingWords", "no QR code is printed: the text is empty")
                   : in.translate("FindingWords", "no QR code is printed: the text is too long");
    case Finding::Kind::QrTextCut:
        return in.translate("FindingWords",
                            "the QR code holds the text only as far as its zero character");
    case Finding::Kind::BackgroundMissing:
        return in.translate("FindingWords", "the background can't be loaded: %1").arg(finding.text);
    case Finding::Kind::BackgroundOutside:
        return in
            .translate("FindingWords", "the background lies outside the application directory: %1")
            .arg(finding.text);
    case Finding::Kind::PaperUnknown:
        return in
            .translate("FindingWords",
                       "there is no paper format with the code %1: the page prints on "
                       "whatever paper the printer has")
            .arg(shortened(finding.text));
    case Finding::Kind::PageTooLarge:
        return in
            .translate("FindingWords",
                       "the page of %1 mm is larger than any paper: no background is loaded")
            .arg(shortened(finding.text));
    case Finding::Kind::PageWithoutArea:
        return finding.text.isEmpty()
                   ? in.translate("FindingWords",
                                  "the width or height of the page is 0: nothing is printed")
                   : in.translate("FindingWords",
                                  "a page can't have the size %1 mm: nothing is printed")
                         .arg(shortened(finding.text));
    case Finding::Kind::PageWithoutFrames:
        return in.translate("FindingWords", "there is no frame on the blank: no value is printed");
    default:
        return QString();
    }
}

QString documentWords(const Translation& in, const Finding::Document& document)
{
    QStringList parts = {in.translate("FindingWords", "document %1").arg(document.id.toString())};
    const QString person = QString(document.surname + ' ' + document.name).trimmed();
    if (!person.isEmpty()) {
        parts << shortened(person);
    }
    const QString number = QString(document.blankSeries + ' ' + document.blankNumber).trimmed();
    if (!number.isEmpty()) {
        parts << in.translate("FindingWords", "form no. %1").arg(shortened(number));
    }
    return parts.join(", ");
}

} // namespace

FindingWords::FindingWords(const QLocale& locale)
    : m_translation(locale)
{
}

QString FindingWords::sentence(const Finding& finding) const
{
    return onOneLine(where(finding) + ": " + what(finding));
}

QString FindingWords::what(const Finding& finding) const
{
    switch (finding.kind) {
    case Finding::Kind::TextTooHigh:
    case Finding::Kind::TextTooWide:
        return textWords(m_translation, finding);
    case Finding::Kind::TableRowsCut:
        return rowsWords(m_translation, finding);
    case Finding::Kind::TableCellCut:
        return cellWords(m_translation, finding);
    case Finding::Kind::TableOutsideFrame:
        return m_translation
            .translate("FindingWords", "the table goes %1 beyond its frame %2, and is printed")
            .arg(length(m_translation, finding.amount), sideName(m_translation, finding.side));
    case Finding::Kind::OutsidePage:
    case Finding::Kind::OutsidePrintable:
        return edgeWords(m_translation, finding);
    case Finding::Kind::QrModuleTooSmall:
        return m_translation
            .translate("FindingWords",
                       "a module of the QR code is only %1 mm, it takes at least %2 mm")
            .arg(lengthText(finding.amount, 3, m_translation.locale()),
                 lengthText(smallestQrModule, 2, m_translation.locale()));
    default:
        return plainWords(m_translation, finding);
    }
}

QString FindingWords::where(const Finding& finding) const
{
    QStringList parts = {page(finding.document, finding.blank)};
    if (finding.item > 0) {
        parts << m_translation.translate("FindingWords", "%1 (%2 mm)")
                     .arg(item(finding), coordinates(m_translation, finding.place.topLeft()));
    }
    QString result = parts.join("; ");
    result[0] = result[0].toUpper();
    return result;
}

QString FindingWords::page(const Finding::Document& document, const Finding::Blank& blank) const
{
    QStringList parts;
    if (!document.id.isNull()) {
        parts << documentWords(m_translation, document);
    }
    parts << m_translation.translate("FindingWords", "blank %1")
                 .arg(quoted(m_translation, blank.name));
    return parts.join("; ");
}

QString FindingWords::item(const Finding& finding) const
{
    return finding.item > 0
               ? m_translation.translate("FindingWords", "frame %1 %2")
                     .arg(QString::number(finding.item), quoted(m_translation, finding.itemText))
               : QString();
}

QString FindingWords::caption(Finding::Kind kind) const
{
    for (const KindCaption& caption : kindCaptions) {
        if (caption.kind == kind) {
            return m_translation.translate("FindingWords", caption.text);
        }
    }
    return QString();
}

QString FindingWords::more(int findings) const
{
    return m_translation.translate("FindingWords", "and %n more", nullptr, findings);
}
