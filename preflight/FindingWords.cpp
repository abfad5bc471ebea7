#include "preflight/FindingWords.h"

#include <QStringList>

#include "app/TerminalText.h"
#include "preflight/LengthText.h"

namespace {

struct KindCaption
{
    Finding::Kind kind;
    const char* russian;
    const char* english;
};

constexpr KindCaption kindCaptions[] = {
    {Finding::Kind::TextTooHigh, "текст выше рамки", "text higher than its frame"},
    {Finding::Kind::TextTooWide, "текст шире рамки", "text wider than its frame"},
    {Finding::Kind::TableRowsCut, "строки таблицы обрезаны", "table rows cut off"},
    {Finding::Kind::TableRowsLeftOut, "строки таблицы не печатаются", "table rows not printed"},
    {Finding::Kind::TableCellCut, "текст не помещается в ячейку", "text does not fit its cell"},
    {Finding::Kind::TableColumnCut, "столбец таблицы не печатается", "table column not printed"},
    {Finding::Kind::TableOutsideFrame, "таблица больше рамки", "table larger than its frame"},
    {Finding::Kind::OutsidePage, "за краем листа", "beyond the page"},
    {Finding::Kind::OutsidePrintable, "на полях принтера", "in the printer's margin"},
    {Finding::Kind::TagNotExpanded, "метка не заменена", "tag not replaced"},
    {Finding::Kind::DateMissing, "нет даты", "no date"},
    {Finding::Kind::TagEmpty, "метка без значения", "tag without a value"},
    {Finding::Kind::TailDropped, "последний знак не печатается", "last character not printed"},
    {Finding::Kind::ValueReadAsMarkup, "значение прочитано как разметка", "value read as markup"},
    {Finding::Kind::TextNotWhole, "текст слишком велик для рамки", "text too large for any frame"},
    {Finding::Kind::FontReplaced, "шрифт заменён", "font replaced"},
    {Finding::Kind::QrModuleTooSmall, "QR-код слишком мелкий", "QR code too small"},
    {Finding::Kind::QrRefused, "QR-код не напечатается", "no QR code"},
    {Finding::Kind::QrTextCut, "текст QR-кода обрезан", "text of QR code cut"},
    {Finding::Kind::BackgroundMissing, "нет фона", "no background"},
    {Finding::Kind::BackgroundOutside, "фон не в папке программы", "background elsewhere"},
    {Finding::Kind::PaperUnknown, "неизвестный формат бумаги", "unknown paper format"},
    {Finding::Kind::PageTooLarge, "лист слишком велик", "page too large"},
    {Finding::Kind::PageWithoutArea, "лист без размера", "page without a size"},
    {Finding::Kind::PageWithoutFrames, "бланк без рамок", "blank without frames"},
};

QString inLanguageOf(const QLocale& locale, const QString& russian, const QString& english)
{
    return locale.language() == QLocale::Russian ? russian : english;
}

/// Millimetres with one decimal; what there is never reads as nothing.
QString length(const QLocale& locale, double millimetres)
{
    constexpr double smallest = 0.1;
    return lengthText(qMax(millimetres, smallest), 1, locale) + inLanguageOf(locale, " мм", " mm");
}

QString coordinates(const QLocale& locale, const QPointF& point)
{
    return lengthText(point.x(), 1, locale) + "; " + lengthText(point.y(), 1, locale);
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
QString quoted(const QLocale& locale, const QString& text)
{
    return inLanguageOf(locale, QString::fromUtf8("«%1»"), QString::fromUtf8("“%1”"))
        .arg(shortened(text));
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

QString sideName(const QLocale& locale, Finding::Side side)
{
    switch (side) {
    case Finding::Side::Left:
        return inLanguageOf(locale, "слева", "on the left");
    case Finding::Side::Top:
        return inLanguageOf(locale, "сверху", "at the top");
    case Finding::Side::Right:
        return inLanguageOf(locale, "справа", "on the right");
    case Finding::Side::Bottom:
        return inLanguageOf(locale, "снизу", "at the bottom");
    case Finding::Side::None:
        break;
    }
    return QString();
}

QString textWords(const QLocale& locale, const Finding& finding)
{
    const bool isHeight = finding.kind == Finding::Kind::TextTooHigh;
    if (finding.lostInk > 0) {
        return (isHeight ? inLanguageOf(locale, "текст не помещается по высоте: %1 обрезано %2",
                                        "the text is too high: %2 %1 of it are cut off")
                         : inLanguageOf(locale, "текст не помещается по ширине: %1 обрезано %2",
                                        "the text is too wide: %2 %1 of it are cut off"))
            .arg(length(locale, finding.amount), sideName(locale, finding.side));
    }
    return (isHeight
                ? inLanguageOf(locale, "текст выше рамки: выходит за неё %2 на %1, но печатается",
                               "the text is higher than its frame: %2 it goes %1 beyond "
                               "it, and is printed")
                : inLanguageOf(locale, "текст шире рамки: выходит за неё %2 на %1, но печатается",
                               "the text is wider than its frame: %2 it goes %1 beyond it, "
                               "and is printed"))
        .arg(length(locale, finding.amount), sideName(locale, finding.side));
}

QString rowsWords(const QLocale& locale, const Finding& finding)
{
    QStringList parts;
    if (!finding.partRows.isEmpty()) {
        parts << inLanguageOf(locale, "строка таблицы %1 обрезана снизу на %2",
                              "row %1 of the table loses %2 at the bottom")
                     .arg(ranges(finding.partRows), length(locale, finding.lostInk));
    }
    if (!finding.rows.isEmpty()) {
        parts << inLanguageOf(locale, "не поместились в рамку строки таблицы: %1",
                              "rows of the table that do not fit into the frame: %1")
                     .arg(ranges(finding.rows));
    }
    return parts.join("; ");
}

QString cellWords(const QLocale& locale, const Finding& finding)
{
    const QString cell =
        inLanguageOf(locale, "строка таблицы %1, столбец %2: ", "row %1, column %2 of the table: ")
            .arg(ranges(finding.rows))
            .arg(finding.column);
    const QString excess = (finding.side == Finding::Side::Bottom
                                ? inLanguageOf(locale, "текст %1 выше ячейки на %2",
                                               "the text %1 is %2 higher than its cell")
                                : inLanguageOf(locale, "текст %1 шире ячейки на %2",
                                               "the text %1 is %2 wider than its cell"))
                               .arg(quoted(locale, finding.text), length(locale, finding.amount));
    const QString result = finding.printed.isEmpty()
                               ? inLanguageOf(locale, ", край обрезан", ", its edge is cut off")
                               : inLanguageOf(locale, ", напечатается %1", ", %1 is printed")
                                     .arg(quoted(locale, finding.printed));
    return cell + excess + result;
}

QString edgeWords(const QLocale& locale, const Finding& finding)
{
    const bool isPage = finding.kind == Finding::Kind::OutsidePage;
    const QString beyond = (isPage ? inLanguageOf(locale, "выходит за край листа %2 на %1",
                                                  "goes %1 beyond the edge of the page %2")
                                   : inLanguageOf(locale, "заходит на поле принтера %2 на %1",
                                                  "goes %1 into the printer's margin %2"))
                               .arg(length(locale, finding.amount), sideName(locale, finding.side));
    if (finding.lostInk > 0) {
        return beyond +
               inLanguageOf(locale, ", теряется %1 напечатанного", ", %1 of the print are lost")
                   .arg(length(locale, finding.lostInk));
    }
    return beyond + inLanguageOf(locale, ", но только пустой частью", ", with its empty part only");
}

/// A finding without amounts: its kind, and the names that go with it.
QString plainWords(const QLocale& locale, const Finding& finding)
{
    switch (finding.kind) {
    case Finding::Kind::TableRowsLeftOut:
        return inLanguageOf(locale, "ни одна рамка бланка не печатает строки таблицы: %1",
                            "rows of the table that no frame of the blank prints: %1")
            .arg(ranges(finding.rows));
    case Finding::Kind::TableColumnCut:
        return inLanguageOf(locale, "столбец %1 таблицы не поместился в рамку",
                            "column %1 of the table does not fit into the frame")
            .arg(finding.column);
    case Finding::Kind::TagNotExpanded:
        return inLanguageOf(locale, "метка %1 напечатается как есть",
                            "the tag %1 prints as it stands")
            .arg(quoted(locale, finding.tag));
    case Finding::Kind::DateMissing:
        return inLanguageOf(locale, "у метки %1 нет даты: напечатается %2",
                            "the tag %1 has no date: %2 is printed")
            .arg(finding.tag, quoted(locale, finding.text));
    case Finding::Kind::TagEmpty:
        return inLanguageOf(locale, "у метки %1 нет значения: ничего не напечатается",
                            "the tag %1 has no value: nothing is printed")
            .arg(finding.tag);
    case Finding::Kind::TailDropped:
        return inLanguageOf(locale, "последний знак %1 не печатается",
                            "the last character %1 is not printed")
            .arg(quoted(locale, finding.tag));
    case Finding::Kind::ValueReadAsMarkup:
        return inLanguageOf(locale, "значение метки %1 напечатается не так, как записано: %2",
                            "the value of the tag %1 does not print as it stands: %2")
            .arg(finding.tag, quoted(locale, finding.text));
    case Finding::Kind::TextNotWhole:
        return inLanguageOf(locale,
                            "текст слишком длинный или в нём слишком много разметки: он "
                            "напечатается без разметки и не дальше конца листа",
                            "the text is too long or has too much markup: it prints without "
                            "markup, and as far as it fits a page");
    case Finding::Kind::FontReplaced:
        return inLanguageOf(locale, "нет шрифта %1, вместо него %2",
                            "there is no font %1, %2 takes its place")
            .arg(quoted(locale, finding.tag), quoted(locale, finding.text));
    case Finding::Kind::QrRefused:
        return finding.text.isEmpty()
                   ? inLanguageOf(locale, "QR-код не напечатается: текст пуст",
                                  "no QR code is printed: the text is empty")
                   : inLanguageOf(locale, "QR-код не напечатается: текст слишком длинный",
                                  "no QR code is printed: the text is too long");
    case Finding::Kind::QrTextCut:
        return inLanguageOf(locale, "QR-код содержит только начало текста, до нулевого знака",
                            "the QR code holds the text only as far as its zero character");
    case Finding::Kind::BackgroundMissing:
        return inLanguageOf(locale, "фон не загружается: %1", "the background can't be loaded: %1")
            .arg(finding.text);
    case Finding::Kind::BackgroundOutside:
        return inLanguageOf(locale, "фон лежит вне папки программы: %1",
                            "the background lies outside the application directory: %1")
            .arg(finding.text);
    case Finding::Kind::PaperUnknown:
        return inLanguageOf(locale,
                            "нет формата бумаги с кодом %1: лист напечатается на бумаге, которая "
                            "выбрана в принтере",
                            "there is no paper format with the code %1: the page prints on "
                            "whatever paper the printer has")
            .arg(shortened(finding.text));
    case Finding::Kind::PageTooLarge:
        return inLanguageOf(locale, "лист %1 мм больше любой бумаги: фон не загружается",
                            "the page of %1 mm is larger than any paper: no background is loaded")
            .arg(shortened(finding.text));
    case Finding::Kind::PageWithoutArea:
        return finding.text.isEmpty()
                   ? inLanguageOf(locale, "ширина или высота листа 0: ничего не напечатается",
                                  "the width or height of the page is 0: nothing is printed")
                   : inLanguageOf(locale, "размера листа %1 мм не бывает: ничего не напечатается",
                                  "a page can't have the size %1 mm: nothing is printed")
                         .arg(shortened(finding.text));
    case Finding::Kind::PageWithoutFrames:
        return inLanguageOf(locale, "на бланке нет ни одной рамки: значения не напечатаются",
                            "there is no frame on the blank: no value is printed");
    default:
        return QString();
    }
}

QString documentWords(const QLocale& locale, const Finding::Document& document)
{
    QStringList parts = {inLanguageOf(locale, "документ ", "document ") + document.id.toString()};
    const QString person = QString(document.surname + ' ' + document.name).trimmed();
    if (!person.isEmpty()) {
        parts << shortened(person);
    }
    const QString number = QString(document.blankSeries + ' ' + document.blankNumber).trimmed();
    if (!number.isEmpty()) {
        parts << inLanguageOf(locale, "бланк № ", "form no. ") + shortened(number);
    }
    return parts.join(", ");
}

} // namespace

FindingWords::FindingWords(const QLocale& locale)
    : m_locale(locale)
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
        return textWords(m_locale, finding);
    case Finding::Kind::TableRowsCut:
        return rowsWords(m_locale, finding);
    case Finding::Kind::TableCellCut:
        return cellWords(m_locale, finding);
    case Finding::Kind::TableOutsideFrame:
        return inLanguageOf(m_locale, "таблица выходит за рамку %2 на %1, но печатается",
                            "the table goes %1 beyond its frame %2, and is printed")
            .arg(length(m_locale, finding.amount), sideName(m_locale, finding.side));
    case Finding::Kind::OutsidePage:
    case Finding::Kind::OutsidePrintable:
        return edgeWords(m_locale, finding);
    case Finding::Kind::QrModuleTooSmall:
        return inLanguageOf(m_locale, "клетка QR-кода всего %1 мм, нужно не меньше %2 мм",
                            "a module of the QR code is only %1 mm, it takes at least %2 mm")
            .arg(lengthText(finding.amount, 3, m_locale),
                 lengthText(smallestQrModule, 2, m_locale));
    default:
        return plainWords(m_locale, finding);
    }
}

QString FindingWords::where(const Finding& finding) const
{
    QStringList parts = {page(finding.document, finding.blank)};
    if (finding.item > 0) {
        parts << item(finding) + " (" + coordinates(m_locale, finding.place.topLeft()) +
                     inLanguageOf(m_locale, " мм)", " mm)");
    }
    QString result = parts.join("; ");
    result[0] = result[0].toUpper();
    return result;
}

QString FindingWords::page(const Finding::Document& document, const Finding::Blank& blank) const
{
    QStringList parts;
    if (!document.id.isNull()) {
        parts << documentWords(m_locale, document);
    }
    parts << inLanguageOf(m_locale, "бланк ", "blank ") + quoted(m_locale, blank.name);
    return parts.join("; ");
}

QString FindingWords::item(const Finding& finding) const
{
    return finding.item > 0
               ? inLanguageOf(m_locale, "рамка %1 %2", "frame %1 %2")
                     .arg(QString::number(finding.item), quoted(m_locale, finding.itemText))
               : QString();
}

QString FindingWords::caption(Finding::Kind kind) const
{
    for (const KindCaption& caption : kindCaptions) {
        if (caption.kind == kind) {
            return inLanguageOf(m_locale, caption.russian, caption.english);
        }
    }
    return QString();
}

QString FindingWords::more(int findings) const
{
    return inLanguageOf(m_locale, "и ещё замечаний: %1", "and %1 more").arg(findings);
}
