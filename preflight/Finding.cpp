#include "preflight/Finding.h"

#include <QJsonArray>
#include <QLocale>
#include <QStringList>

#include <cmath>

#include "app/TerminalText.h"
#include "tools/UserLanguage.h"

namespace {

struct KindTexts
{
    Finding::Kind kind;
    const char* name;
    const char* russian;
    const char* english;
};

constexpr KindTexts kindTexts[] = {
    {Finding::Kind::TextTooHigh, "text-too-high", "текст выше рамки", "text higher than its frame"},
    {Finding::Kind::TextTooWide, "text-too-wide", "текст шире рамки", "text wider than its frame"},
    {Finding::Kind::TableRowsCut, "table-rows-cut", "строки таблицы обрезаны",
     "table rows cut off"},
    {Finding::Kind::TableRowsLeftOut, "table-rows-left-out", "строки таблицы не печатаются",
     "table rows not printed"},
    {Finding::Kind::TableCellCut, "table-cell-cut", "текст не помещается в ячейку",
     "text does not fit its cell"},
    {Finding::Kind::TableColumnCut, "table-column-cut", "столбец таблицы не печатается",
     "table column not printed"},
    {Finding::Kind::TableOutsideFrame, "table-outside-frame", "таблица больше рамки",
     "table larger than its frame"},
    {Finding::Kind::OutsidePage, "outside-page", "за краем листа", "beyond the page"},
    {Finding::Kind::OutsidePrintable, "outside-printable-area", "на полях принтера",
     "in the printer's margin"},
    {Finding::Kind::TagNotExpanded, "tag-not-expanded", "метка не заменена", "tag not replaced"},
    {Finding::Kind::DateMissing, "date-missing", "нет даты", "no date"},
    {Finding::Kind::TailDropped, "tail-dropped", "последний знак не печатается",
     "last character not printed"},
    {Finding::Kind::ValueReadAsMarkup, "value-read-as-markup", "значение прочитано как разметка",
     "value read as markup"},
    {Finding::Kind::TextNotWhole, "text-not-whole", "текст слишком велик для рамки",
     "text too large for any frame"},
    {Finding::Kind::FontReplaced, "font-replaced", "шрифт заменён", "font replaced"},
    {Finding::Kind::QrModuleTooSmall, "qr-module-too-small", "QR-код слишком мелкий",
     "QR code too small"},
    {Finding::Kind::QrRefused, "qr-refused", "QR-код не напечатается", "no QR code"},
    {Finding::Kind::QrTextCut, "qr-text-cut", "текст QR-кода обрезан", "text of QR code cut"},
    {Finding::Kind::BackgroundMissing, "background-missing", "нет фона", "no background"},
    {Finding::Kind::PageWithoutArea, "page-without-area", "лист без размера",
     "page without a size"},
    {Finding::Kind::PageWithoutFrames, "page-without-frames", "бланк без рамок",
     "blank without frames"},
};

const KindTexts& textsOf(Finding::Kind kind)
{
    for (const KindTexts& texts : kindTexts) {
        if (texts.kind == kind) {
            return texts;
        }
    }
    return kindTexts[0];
}

/// Millimetres with one decimal; what there is never reads as nothing.
QString length(double millimetres)
{
    constexpr double smallest = 0.1;
    return QLocale::system().toString(qMax(millimetres, smallest), 'f', 1) +
           inUserLanguage(" мм", " mm");
}

QString coordinates(const QPointF& point)
{
    const QLocale locale = QLocale::system();
    return locale.toString(point.x(), 'f', 1) + "; " + locale.toString(point.y(), 'f', 1);
}

/// A text in quotes, on one line and no longer than a line.
QString quoted(const QString& text)
{
    constexpr int longest = 60;
    QString line = onOneLine(text);
    if (line.size() > longest) {
        const int end = longest - 1;
        line = line.left(line.at(end - 1).isHighSurrogate() ? end - 1 : end) + QChar(0x2026);
    }
    return inUserLanguage(QString::fromUtf8("«%1»"), QString::fromUtf8("“%1”")).arg(line);
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

QString sideName(Finding::Side side)
{
    switch (side) {
    case Finding::Side::Left:
        return inUserLanguage("слева", "on the left");
    case Finding::Side::Top:
        return inUserLanguage("сверху", "at the top");
    case Finding::Side::Right:
        return inUserLanguage("справа", "on the right");
    case Finding::Side::Bottom:
        return inUserLanguage("снизу", "at the bottom");
    case Finding::Side::None:
        break;
    }
    return QString();
}

QString sideKey(Finding::Side side)
{
    switch (side) {
    case Finding::Side::Left:
        return "left";
    case Finding::Side::Top:
        return "top";
    case Finding::Side::Right:
        return "right";
    case Finding::Side::Bottom:
        return "bottom";
    case Finding::Side::None:
        break;
    }
    return QString();
}

QString textWords(const Finding& finding)
{
    const bool isHeight = finding.kind == Finding::Kind::TextTooHigh;
    if (finding.lostInk > 0) {
        return (isHeight ? inUserLanguage("текст не помещается по высоте: %1 обрезано %2",
                                          "the text is too high: %2 %1 of it are cut off")
                         : inUserLanguage("текст не помещается по ширине: %1 обрезано %2",
                                          "the text is too wide: %2 %1 of it are cut off"))
            .arg(length(finding.amount), sideName(finding.side));
    }
    return (isHeight ? inUserLanguage("текст выше рамки: выходит за неё %2 на %1, но печатается",
                                      "the text is higher than its frame: %2 it goes %1 beyond "
                                      "it, and is printed")
                     : inUserLanguage("текст шире рамки: выходит за неё %2 на %1, но печатается",
                                      "the text is wider than its frame: %2 it goes %1 beyond it, "
                                      "and is printed"))
        .arg(length(finding.amount), sideName(finding.side));
}

QString rowsWords(const Finding& finding)
{
    QStringList parts;
    if (!finding.partRows.isEmpty()) {
        parts << inUserLanguage("строка таблицы %1 обрезана снизу на %2",
                                "row %1 of the table loses %2 at the bottom")
                     .arg(ranges(finding.partRows), length(finding.lostInk));
    }
    if (!finding.rows.isEmpty()) {
        parts << inUserLanguage("не поместились в рамку строки таблицы: %1",
                                "rows of the table that do not fit into the frame: %1")
                     .arg(ranges(finding.rows));
    }
    return parts.join("; ");
}

QString cellWords(const Finding& finding)
{
    const QString cell =
        inUserLanguage("строка таблицы %1, столбец %2: ", "row %1, column %2 of the table: ")
            .arg(ranges(finding.rows))
            .arg(finding.column);
    const QString excess = (finding.side == Finding::Side::Bottom
                                ? inUserLanguage("текст %1 выше ячейки на %2",
                                                 "the text %1 is %2 higher than its cell")
                                : inUserLanguage("текст %1 шире ячейки на %2",
                                                 "the text %1 is %2 wider than its cell"))
                               .arg(quoted(finding.text), length(finding.amount));
    const QString result =
        finding.printed.isEmpty()
            ? inUserLanguage(", край обрезан", ", its edge is cut off")
            : inUserLanguage(", напечатается %1", ", %1 is printed").arg(quoted(finding.printed));
    return cell + excess + result;
}

QString edgeWords(const Finding& finding)
{
    const bool isPage = finding.kind == Finding::Kind::OutsidePage;
    const QString beyond = (isPage ? inUserLanguage("выходит за край листа %2 на %1",
                                                    "goes %1 beyond the edge of the page %2")
                                   : inUserLanguage("заходит на поле принтера %2 на %1",
                                                    "goes %1 into the printer's margin %2"))
                               .arg(length(finding.amount), sideName(finding.side));
    if (finding.lostInk > 0) {
        return beyond + inUserLanguage(", теряется %1 напечатанного", ", %1 of the print are lost")
                            .arg(length(finding.lostInk));
    }
    return beyond + inUserLanguage(", но только пустой частью", ", with its empty part only");
}

/// A finding without amounts: its kind, and the names that go with it.
QString plainWords(const Finding& finding)
{
    switch (finding.kind) {
    case Finding::Kind::TableRowsLeftOut:
        return inUserLanguage("ни одна рамка бланка не печатает строки таблицы: %1",
                              "rows of the table that no frame of the blank prints: %1")
            .arg(ranges(finding.rows));
    case Finding::Kind::TableColumnCut:
        return inUserLanguage("столбец %1 таблицы не поместился в рамку",
                              "column %1 of the table does not fit into the frame")
            .arg(finding.column);
    case Finding::Kind::TagNotExpanded:
        return inUserLanguage("метка %1 напечатается как есть", "the tag %1 prints as it stands")
            .arg(quoted(finding.tag));
    case Finding::Kind::DateMissing:
        return inUserLanguage("у метки %1 нет даты: напечатается %2",
                              "the tag %1 has no date: %2 is printed")
            .arg(finding.tag, quoted(finding.text));
    case Finding::Kind::TailDropped:
        return inUserLanguage("последний знак %1 не печатается",
                              "the last character %1 is not printed")
            .arg(quoted(finding.tag));
    case Finding::Kind::ValueReadAsMarkup:
        return inUserLanguage("значение метки %1 напечатается не так, как записано: %2",
                              "the value of the tag %1 does not print as it stands: %2")
            .arg(finding.tag, quoted(finding.text));
    case Finding::Kind::TextNotWhole:
        return inUserLanguage("текст слишком длинный или в нём слишком много разметки: он "
                              "напечатается без разметки и не дальше конца листа",
                              "the text is too long or has too much markup: it prints without "
                              "markup, and as far as it fits a page");
    case Finding::Kind::FontReplaced:
        return inUserLanguage("нет шрифта %1, вместо него %2",
                              "there is no font %1, %2 takes its place")
            .arg(quoted(finding.tag), quoted(finding.text));
    case Finding::Kind::QrRefused:
        return finding.text.isEmpty()
                   ? inUserLanguage("QR-код не напечатается: текст пуст",
                                    "no QR code is printed: the text is empty")
                   : inUserLanguage("QR-код не напечатается: текст слишком длинный",
                                    "no QR code is printed: the text is too long");
    case Finding::Kind::QrTextCut:
        return inUserLanguage("QR-код содержит только начало текста, до нулевого знака",
                              "the QR code holds the text only as far as its zero character");
    case Finding::Kind::BackgroundMissing:
        return inUserLanguage("фон не загружается: %1", "the background can't be loaded: %1")
            .arg(finding.text);
    case Finding::Kind::PageWithoutArea:
        return inUserLanguage("ширина или высота листа 0: ничего не напечатается",
                              "the width or height of the page is 0: nothing is printed");
    case Finding::Kind::PageWithoutFrames:
        return inUserLanguage("на бланке нет ни одной рамки: значения не напечатаются",
                              "there is no frame on the blank: no value is printed");
    default:
        return QString();
    }
}

QString documentWords(const Finding::Document& document)
{
    QStringList parts = {inUserLanguage("документ ", "document ") + document.id.toString()};
    const QString person = QString(document.surname + ' ' + document.name).trimmed();
    if (!person.isEmpty()) {
        parts << person;
    }
    const QString number = QString(document.blankSeries + ' ' + document.blankNumber).trimmed();
    if (!number.isEmpty()) {
        parts << inUserLanguage("бланк № ", "form no. ") + number;
    }
    return parts.join(", ");
}

double rounded(double millimetres)
{
    constexpr double steps = 1000; // a millimetre
    const double inSteps = millimetres * steps;
    return std::isfinite(inSteps) ? std::round(inSteps) / steps : millimetres;
}

QJsonArray toArray(const QVector<int>& numbers)
{
    QJsonArray array;
    for (const int number : numbers) {
        array.append(number);
    }
    return array;
}

} // namespace

QString Finding::words() const
{
    return onOneLine(where() + ": " + what());
}

QString Finding::what() const
{
    switch (kind) {
    case Kind::TextTooHigh:
    case Kind::TextTooWide:
        return textWords(*this);
    case Kind::TableRowsCut:
        return rowsWords(*this);
    case Kind::TableCellCut:
        return cellWords(*this);
    case Kind::TableOutsideFrame:
        return inUserLanguage("таблица выходит за рамку %2 на %1, но печатается",
                              "the table goes %1 beyond its frame %2, and is printed")
            .arg(length(amount), sideName(side));
    case Kind::OutsidePage:
    case Kind::OutsidePrintable:
        return edgeWords(*this);
    case Kind::QrModuleTooSmall:
        return inUserLanguage("клетка QR-кода всего %1 мм, нужно не меньше %2 мм",
                              "a module of the QR code is only %1 mm, it takes at least %2 mm")
            .arg(QLocale::system().toString(amount, 'f', 3),
                 QLocale::system().toString(smallestQrModule, 'f', 2));
    default:
        return plainWords(*this);
    }
}

QString Finding::pageWords() const
{
    QStringList parts;
    if (!isOfBlank()) {
        parts << documentWords(document);
    }
    parts << inUserLanguage("бланк ", "blank ") + quoted(blank.name);
    return parts.join("; ");
}

QString Finding::where() const
{
    QStringList parts = {pageWords()};
    if (item > 0) {
        parts << itemWords() + " (" + coordinates(place.topLeft()) + inUserLanguage(" мм)", " mm)");
    }
    QString result = parts.join("; ");
    result[0] = result[0].toUpper();
    return result;
}

QString Finding::itemWords() const
{
    return item > 0 ? inUserLanguage("рамка %1 %2", "frame %1 %2")
                          .arg(QString::number(item), quoted(itemText))
                    : QString();
}

QJsonObject Finding::toJson() const
{
    QJsonObject json = {
        {"kind", kindName(kind)},
        {"severity", severity == Severity::Error ? "error" : "warning"},
        {"blank", QJsonObject{{"id", QJsonValue::fromVariant(blank.id)}, {"name", blank.name}}},
        {"message", what()}};
    if (!isOfBlank()) {
        json["document"] = QJsonObject{{"id", QJsonValue::fromVariant(document.id)},
                                       {"surname", document.surname},
                                       {"name", document.name},
                                       {"blankSeries", document.blankSeries},
                                       {"blankNumber", document.blankNumber}};
    }
    if (item > 0) {
        json["item"] = QJsonObject{{"number", item},
                                   {"text", itemText},
                                   {"x", rounded(place.x())},
                                   {"y", rounded(place.y())},
                                   {"width", rounded(place.width())},
                                   {"height", rounded(place.height())}};
    }
    const auto add = [&json](const char* key, bool isKnown, const QJsonValue& value) {
        if (isKnown) {
            json[QLatin1String(key)] = value;
        }
    };
    add("side", side != Side::None, sideKey(side));
    add("amount", amount > 0, rounded(amount));
    add("lostInk", lostInk > 0, rounded(lostInk));
    add("rows", !rows.isEmpty(), toArray(rows));
    add("partRows", !partRows.isEmpty(), toArray(partRows));
    add("column", column > 0, column);
    add("tag", !tag.isEmpty(), tag);
    add("text", !text.isEmpty(), text);
    add("printed", !printed.isEmpty(), printed);
    return json;
}

QString Finding::kindName(Kind kind)
{
    return QLatin1String(textsOf(kind).name);
}

QString Finding::kindCaption(Kind kind)
{
    return inUserLanguage(QString::fromUtf8(textsOf(kind).russian),
                          QLatin1String(textsOf(kind).english));
}
