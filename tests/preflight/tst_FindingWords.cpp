#include <QtTest>

#include <QJsonDocument>

#include "preflight/CheckSummary.h"
#include "preflight/FindingWords.h"

namespace {

using Kind = Finding::Kind;
using Side = Finding::Side;

const FindingWords english{QLocale(QLocale::English, QLocale::UnitedKingdom)};
const FindingWords russian{QLocale(QLocale::Russian, QLocale::Russia)};

Finding finding(Kind kind)
{
    Finding found;
    found.kind = kind;
    found.severity = Finding::Severity::Warning;
    found.blank = {3, "Диплом"};
    return found;
}

Finding measured(Kind kind, Side side, double amount, double lostInk = 0)
{
    Finding found = finding(kind);
    found.side = side;
    found.amount = amount;
    found.lostInk = lostInk;
    return found;
}

Finding named(Kind kind, const QString& tag, const QString& text = QString())
{
    Finding found = finding(kind);
    found.tag = tag;
    found.text = text;
    return found;
}

Finding rowsCut(const QVector<int>& whole, const QVector<int>& part, double lostInk)
{
    Finding found = measured(Kind::TableRowsCut, Side::Bottom, 0, lostInk);
    found.rows = whole;
    found.partRows = part;
    return found;
}

Finding cell(int row, int column, Side side, const QString& printed)
{
    Finding found = measured(Kind::TableCellCut, side, 2.5);
    found.rows = {row};
    found.column = column;
    found.text = "Физика";
    found.printed = printed;
    return found;
}

Finding ofRows(Kind kind, const QVector<int>& rows, int column = 0)
{
    Finding found = finding(kind);
    found.rows = rows;
    found.column = column;
    return found;
}

/// What every finding of these has in JSON, and `more`.
QJsonObject jsonOf(const char* kind, const char* more)
{
    QJsonObject json = QJsonDocument::fromJson(more).object();
    json["kind"] = kind;
    json["severity"] = "warning";
    json["blank"] = QJsonObject{{"id", 3}, {"name", "Диплом"}};
    return json;
}

} // namespace

Q_DECLARE_METATYPE(Finding)
Q_DECLARE_METATYPE(Finding::Kind)

/// Every finding in both languages and in JSON.
class tst_FindingWords : public QObject
{
    Q_OBJECT

private slots:
    void everyKind_data();
    void everyKind();
    void captions_data();
    void captions();
    void everyKindIsHere();
    void joinedRows_data();
    void joinedRows();
    void whereItIs();
    void jsonOfAnItem();
    void ofOneBlankOnce();
    void countsOfKinds();

private:
    void text(const char* name, const Finding& finding, const char* english, const char* russian,
              const char* kind, const char* json);
};

void tst_FindingWords::text(const char* name, const Finding& finding, const char* englishWords,
                            const char* russianWords, const char* kind, const char* json)
{
    QTest::newRow(name) << finding << QString(englishWords) << QString(russianWords)
                        << jsonOf(kind, json);
}

// NOLINTNEXTLINE(readability-function-size): a table
void tst_FindingWords::everyKind_data()
{
    QTest::addColumn<Finding>("found");
    QTest::addColumn<QString>("inEnglish");
    QTest::addColumn<QString>("inRussian");
    QTest::addColumn<QJsonObject>("json");

    text("too high, cut", measured(Kind::TextTooHigh, Side::Bottom, 2.5, 2.5),
         "the text is too high: at the bottom 2.5 mm of it are cut off",
         "текст не помещается по высоте: 2,5 мм обрезано снизу", "text-too-high",
         R"({"side": "bottom", "amount": 2.5, "lostInk": 2.5})");
    text("too high, printed", measured(Kind::TextTooHigh, Side::Top, 1.5),
         "the text is higher than its frame: at the top it goes 1.5 mm beyond it, and is printed",
         "текст выше рамки: выходит за неё сверху на 1,5 мм, но печатается", "text-too-high",
         R"({"side": "top", "amount": 1.5})");
    text("too wide, cut", measured(Kind::TextTooWide, Side::Left, 12, 12),
         "the text is too wide: on the left 12.0 mm of it are cut off",
         "текст не помещается по ширине: 12,0 мм обрезано слева", "text-too-wide",
         R"({"side": "left", "amount": 12, "lostInk": 12})");
    text("too wide, printed", measured(Kind::TextTooWide, Side::Right, 0.04),
         "the text is wider than its frame: on the right it goes 0.1 mm beyond it, and is printed",
         "текст шире рамки: выходит за неё справа на 0,1 мм, но печатается", "text-too-wide",
         R"({"side": "right", "amount": 0.04})");
    text("rows left out and one cut", rowsCut({8, 9, 10}, {7}, 1.5),
         "row 7 of the table loses 1.5 mm at the bottom; rows of the table that do not fit into "
         "the frame: 8–10",
         "строка таблицы 7 обрезана снизу на 1,5 мм; не поместились в рамку строки таблицы: 8–10",
         "table-rows-cut",
         R"({"side": "bottom", "lostInk": 1.5, "rows": [8, 9, 10], "partRows": [7]})");
    text("a row cut", rowsCut({}, {7}, 1.5), "row 7 of the table loses 1.5 mm at the bottom",
         "строка таблицы 7 обрезана снизу на 1,5 мм", "table-rows-cut",
         R"({"side": "bottom", "lostInk": 1.5, "partRows": [7]})");
    text("a row left out", rowsCut({8}, {}, 0),
         "rows of the table that do not fit into the frame: 8",
         "не поместились в рамку строки таблицы: 8", "table-rows-cut",
         R"({"side": "bottom", "rows": [8]})");
    text("rows no frame prints", ofRows(Kind::TableRowsLeftOut, {3, 7, 8, 9}),
         "rows of the table that no frame of the blank prints: 3, 7–9",
         "ни одна рамка бланка не печатает строки таблицы: 3, 7–9", "table-rows-left-out",
         R"({"rows": [3, 7, 8, 9]})");
    text("cell too narrow", cell(5, 2, Side::Right, "Физ…"),
         "row 5, column 2 of the table: the text “Физика” is 2.5 mm wider than its cell, “Физ…” is "
         "printed",
         "строка таблицы 5, столбец 2: текст «Физика» шире ячейки на 2,5 мм, напечатается «Физ…»",
         "table-cell-cut",
         R"({"side": "right", "amount": 2.5, "rows": [5], "column": 2, "text": "Физика",
             "printed": "Физ…"})");
    text("cell too low", cell(5, 2, Side::Bottom, QString()),
         "row 5, column 2 of the table: the text “Физика” is 2.5 mm higher than its cell, its edge "
         "is cut off",
         "строка таблицы 5, столбец 2: текст «Физика» выше ячейки на 2,5 мм, край обрезан",
         "table-cell-cut",
         R"({"side": "bottom", "amount": 2.5, "rows": [5], "column": 2, "text": "Физика"})");
    text("column", ofRows(Kind::TableColumnCut, {1, 2}, 4),
         "column 4 of the table does not fit into the frame",
         "столбец 4 таблицы не поместился в рамку", "table-column-cut",
         R"({"rows": [1, 2], "column": 4})");
    text("table beyond its frame", measured(Kind::TableOutsideFrame, Side::Bottom, 2.5),
         "the table goes 2.5 mm beyond its frame at the bottom, and is printed",
         "таблица выходит за рамку снизу на 2,5 мм, но печатается", "table-outside-frame",
         R"({"side": "bottom", "amount": 2.5})");
    text("beyond the page, ink", measured(Kind::OutsidePage, Side::Right, 5, 2.5),
         "goes 5.0 mm beyond the edge of the page on the right, 2.5 mm of the print are lost",
         "выходит за край листа справа на 5,0 мм, теряется 2,5 мм напечатанного", "outside-page",
         R"({"side": "right", "amount": 5, "lostInk": 2.5})");
    text("beyond the page, empty", measured(Kind::OutsidePage, Side::Left, 5),
         "goes 5.0 mm beyond the edge of the page on the left, with its empty part only",
         "выходит за край листа слева на 5,0 мм, но только пустой частью", "outside-page",
         R"({"side": "left", "amount": 5})");
    text("in the margin, ink", measured(Kind::OutsidePrintable, Side::Top, 5, 2.5),
         "goes 5.0 mm into the printer's margin at the top, 2.5 mm of the print are lost",
         "заходит на поле принтера сверху на 5,0 мм, теряется 2,5 мм напечатанного",
         "outside-printable-area", R"({"side": "top", "amount": 5, "lostInk": 2.5})");
    text("in the margin, empty", measured(Kind::OutsidePrintable, Side::Bottom, 5),
         "goes 5.0 mm into the printer's margin at the bottom, with its empty part only",
         "заходит на поле принтера снизу на 5,0 мм, но только пустой частью",
         "outside-printable-area", R"({"side": "bottom", "amount": 5})");
    text("tag", named(Kind::TagNotExpanded, "#CITY"), "the tag “#CITY” prints as it stands",
         "метка «#CITY» напечатается как есть", "tag-not-expanded", R"({"tag": "#CITY"})");
    text("date", named(Kind::DateMissing, "#BIRTH_DATE", "0  0"),
         "the tag #BIRTH_DATE has no date: “0  0” is printed",
         "у метки #BIRTH_DATE нет даты: напечатается «0  0»", "date-missing",
         R"({"tag": "#BIRTH_DATE", "text": "0  0"})");
    text("empty tag", named(Kind::TagEmpty, "#ORG_REGION"),
         "the tag #ORG_REGION has no value: nothing is printed",
         "у метки #ORG_REGION нет значения: ничего не напечатается", "tag-empty",
         R"({"tag": "#ORG_REGION"})");
    text("tail", named(Kind::TailDropped, "."), "the last character “.” is not printed",
         "последний знак «.» не печатается", "tail-dropped", R"({"tag": "."})");
    text(
        "not whole", finding(Kind::TextNotWhole),
        "the text is too long or has too much markup: it prints without markup, and as far as it "
        "fits a page",
        "текст слишком длинный или в нём слишком много разметки: он напечатается без разметки и не "
        "дальше конца листа",
        "text-not-whole", "{}");
    text("markup", named(Kind::ValueReadAsMarkup, "#LNAME", "A&amp;B"),
         "the value of the tag #LNAME does not print as it stands: “A&amp;B”",
         "значение метки #LNAME напечатается не так, как записано: «A&amp;B»",
         "value-read-as-markup", R"({"tag": "#LNAME", "text": "A&amp;B"})");
    text("font", named(Kind::FontReplaced, "Times New Roman", "Liberation Serif"),
         "there is no font “Times New Roman”, “Liberation Serif” takes its place",
         "нет шрифта «Times New Roman», вместо него «Liberation Serif»", "font-replaced",
         R"({"tag": "Times New Roman", "text": "Liberation Serif"})");
    text("small symbol", measured(Kind::QrModuleTooSmall, Side::None, 0.2),
         "a module of the QR code is only 0.200 mm, it takes at least 0.25 mm",
         "клетка QR-кода всего 0,200 мм, нужно не меньше 0,25 мм", "qr-module-too-small",
         R"({"amount": 0.2})");
    text("no symbol, empty text", named(Kind::QrRefused, QString()),
         "no QR code is printed: the text is empty", "QR-код не напечатается: текст пуст",
         "qr-refused", "{}");
    text("no symbol, long text", named(Kind::QrRefused, QString(), "ааа"),
         "no QR code is printed: the text is too long",
         "QR-код не напечатается: текст слишком длинный", "qr-refused", R"({"text": "ааа"})");
    text("text of a symbol", named(Kind::QrTextCut, QString(), "ааа"),
         "the QR code holds the text only as far as its zero character",
         "QR-код содержит только начало текста, до нулевого знака", "qr-text-cut",
         R"({"text": "ааа"})");
    text("background", named(Kind::BackgroundMissing, QString(), "нет.png"),
         "the background can't be loaded: нет.png", "фон не загружается: нет.png",
         "background-missing", R"({"text": "нет.png"})");
    text("background elsewhere", named(Kind::BackgroundOutside, QString(), "../a.png"),
         "the background lies outside the application directory: ../a.png",
         "фон лежит вне папки программы: ../a.png", "background-outside",
         R"({"text": "../a.png"})");
    text("paper", named(Kind::PaperUnknown, QString(), "7"),
         "there is no paper format with the code 7: the page prints on whatever paper the printer "
         "has",
         "нет формата бумаги с кодом 7: лист напечатается на бумаге, которая выбрана в принтере",
         "paper-unknown", R"({"text": "7"})");
    text("too large", named(Kind::PageTooLarge, QString(), "9000 × 210"),
         "the page of 9000 × 210 mm is larger than any paper: no background is loaded",
         "лист 9000 × 210 мм больше любой бумаги: фон не загружается", "page-too-large",
         R"({"text": "9000 × 210"})");
    text("impossible size", named(Kind::PageWithoutArea, QString(), "-5 × 210"),
         "a page can't have the size -5 × 210 mm: nothing is printed",
         "размера листа -5 × 210 мм не бывает: ничего не напечатается", "page-without-area",
         R"({"text": "-5 × 210"})");
    text("no size", finding(Kind::PageWithoutArea),
         "the width or height of the page is 0: nothing is printed",
         "ширина или высота листа 0: ничего не напечатается", "page-without-area", "{}");
    text("no frames", finding(Kind::PageWithoutFrames),
         "there is no frame on the blank: no value is printed",
         "на бланке нет ни одной рамки: значения не напечатаются", "page-without-frames", "{}");
}

void tst_FindingWords::everyKind()
{
    QFETCH(Finding, found);
    QTEST(english.what(found), "inEnglish");
    QTEST(russian.what(found), "inRussian");
    QTEST(found.toJson(), "json");
    QCOMPARE(english.sentence(found), "Blank “Диплом”: " + english.what(found));
    QCOMPARE(russian.sentence(found), "Бланк «Диплом»: " + russian.what(found));
}

void tst_FindingWords::captions_data()
{
    QTest::addColumn<Kind>("kind");
    QTest::addColumn<QString>("inEnglish");
    QTest::addColumn<QString>("inRussian");
    const auto row = [](Kind kind, const char* inEnglish, const char* inRussian) {
        QTest::newRow(inEnglish) << kind << QString(inEnglish) << QString(inRussian);
    };
    row(Kind::TextTooHigh, "text higher than its frame", "текст выше рамки");
    row(Kind::TextTooWide, "text wider than its frame", "текст шире рамки");
    row(Kind::TableRowsCut, "table rows cut off", "строки таблицы обрезаны");
    row(Kind::TableRowsLeftOut, "table rows not printed", "строки таблицы не печатаются");
    row(Kind::TableCellCut, "text does not fit its cell", "текст не помещается в ячейку");
    row(Kind::TableColumnCut, "table column not printed", "столбец таблицы не печатается");
    row(Kind::TableOutsideFrame, "table larger than its frame", "таблица больше рамки");
    row(Kind::OutsidePage, "beyond the page", "за краем листа");
    row(Kind::OutsidePrintable, "in the printer's margin", "на полях принтера");
    row(Kind::TagNotExpanded, "tag not replaced", "метка не заменена");
    row(Kind::DateMissing, "no date", "нет даты");
    row(Kind::TagEmpty, "tag without a value", "метка без значения");
    row(Kind::TailDropped, "last character not printed", "последний знак не печатается");
    row(Kind::ValueReadAsMarkup, "value read as markup", "значение прочитано как разметка");
    row(Kind::TextNotWhole, "text too large for any frame", "текст слишком велик для рамки");
    row(Kind::FontReplaced, "font replaced", "шрифт заменён");
    row(Kind::QrModuleTooSmall, "QR code too small", "QR-код слишком мелкий");
    row(Kind::QrRefused, "no QR code", "QR-код не напечатается");
    row(Kind::QrTextCut, "text of QR code cut", "текст QR-кода обрезан");
    row(Kind::BackgroundMissing, "no background", "нет фона");
    row(Kind::BackgroundOutside, "background elsewhere", "фон не в папке программы");
    row(Kind::PaperUnknown, "unknown paper format", "неизвестный формат бумаги");
    row(Kind::PageTooLarge, "page too large", "лист слишком велик");
    row(Kind::PageWithoutArea, "page without a size", "лист без размера");
    row(Kind::PageWithoutFrames, "blank without frames", "бланк без рамок");
}

void tst_FindingWords::captions()
{
    QFETCH(Kind, kind);
    QTEST(english.caption(kind), "inEnglish");
    QTEST(russian.caption(kind), "inRussian");
}

// A kind that is added has its words, its caption and its name.
void tst_FindingWords::everyKindIsHere()
{
    QSet<QString> names;
    const int last = static_cast<int>(Kind::PageWithoutFrames);
    for (int number = 0; number <= last; ++number) {
        const auto kind = static_cast<Kind>(number);
        Finding found = measured(kind, Side::Left, 1, 1);
        found.rows = {1};
        QVERIFY2(!english.what(found).isEmpty(), qPrintable(QString::number(number)));
        QVERIFY2(!russian.what(found).isEmpty(), qPrintable(QString::number(number)));
        QVERIFY2(!english.caption(kind).isEmpty(), qPrintable(QString::number(number)));
        names << Finding::kindName(kind);
    }
    QCOMPARE(names.size(), last + 1);
    QVERIFY(!names.contains(QString()));
}

void tst_FindingWords::joinedRows_data()
{
    QTest::addColumn<QVector<int>>("rows");
    QTest::addColumn<QString>("words");
    QTest::newRow("one") << QVector<int>{4} << "4";
    QTest::newRow("two neighbours") << QVector<int>{4, 5} << "4, 5";
    QTest::newRow("three neighbours") << QVector<int>{4, 5, 6} << "4–6";
    QTest::newRow("apart") << QVector<int>{4, 6, 8} << "4, 6, 8";
    QTest::newRow("all kinds") << QVector<int>{1, 3, 4, 7, 8, 9, 10, 12} << "1, 3, 4, 7–10, 12";
}

void tst_FindingWords::joinedRows()
{
    QFETCH(QVector<int>, rows);
    QFETCH(QString, words);
    QCOMPARE(english.what(ofRows(Kind::TableRowsLeftOut, rows)),
             "rows of the table that no frame of the blank prints: " + words);
}

void tst_FindingWords::whereItIs()
{
    Finding found = finding(Kind::PageWithoutFrames);
    found.document = {17, "Иванов", "Иван", "ВГ", "000123"};
    found.item = 2;
    found.itemText = "#LNAME";
    found.place = QRectF(26.46, 52.94, 100, 20);
    QCOMPARE(english.where(found),
             QString("Document 17, Иванов Иван, form no. ВГ 000123; blank “Диплом”; frame 2 "
                     "“#LNAME” (26.5; 52.9 mm)"));
    QCOMPARE(russian.where(found),
             QString("Документ 17, Иванов Иван, бланк № ВГ 000123; бланк «Диплом»; рамка 2 "
                     "«#LNAME» (26,5; 52,9 мм)"));
    QCOMPARE(russian.item(found), QString("рамка 2 «#LNAME»"));
    found.document = {17, "", "", "", ""};
    found.item = 0;
    QCOMPARE(russian.where(found), QString("Документ 17; бланк «Диплом»"));
    QCOMPARE(russian.item(found), QString());
    QCOMPARE(english.page(Finding::Document(), found.blank), QString("blank “Диплом”"));
    found.document = {17, QString(100, 'x'), "", "", ""};
    QCOMPARE(russian.where(found), "Документ 17, " + QString(59, 'x') + "…; бланк «Диплом»");
    QCOMPARE(english.more(7), QString("and 7 more"));
    QCOMPARE(russian.more(7), QString("и ещё замечаний: 7"));
}

void tst_FindingWords::jsonOfAnItem()
{
    Finding found = finding(Kind::PageWithoutFrames);
    found.severity = Finding::Severity::Error;
    found.document = {17, "Иванов", "Иван", "ВГ", "000123"};
    found.item = 2;
    found.itemText = "#LNAME";
    found.place = QRectF(26.46012, 52.94, 100, 20);
    const QByteArray expected = R"({"kind": "page-without-frames", "severity": "error",
        "blank": {"id": 3, "name": "Диплом"},
        "document": {"id": 17, "surname": "Иванов", "name": "Иван", "blankSeries": "ВГ",
                     "blankNumber": "000123"},
        "item": {"number": 2, "text": "#LNAME", "x": 26.46, "y": 52.94, "width": 100,
                 "height": 20}})";
    QCOMPARE(found.toJson(), QJsonDocument::fromJson(expected).object());
}

void tst_FindingWords::ofOneBlankOnce()
{
    CheckSummary summary;
    const Finding ofBlank = finding(Kind::PageWithoutFrames);
    Finding ofDocument = named(Kind::TagNotExpanded, "#CITY");
    ofDocument.document.id = 1;
    QCOMPARE(summary.add({ofBlank, ofDocument}).size(), 2);
    QCOMPARE(summary.add({ofBlank, ofDocument}).size(), 1);
    Finding ofAnother = ofBlank;
    ofAnother.blank.id = 4;
    QCOMPARE(summary.add({ofAnother}).size(), 1);
    QCOMPARE(summary.documents(), 3);
    QCOMPARE(summary.findings(), 4);
}

void tst_FindingWords::countsOfKinds()
{
    CheckSummary summary;
    Finding tag = named(Kind::TagNotExpanded, "#CITY");
    tag.document.id = 1;
    summary.add({tag, tag, finding(Kind::PageWithoutFrames)});
    const QMap<Kind, int> expected = {{Kind::TagNotExpanded, 2}, {Kind::PageWithoutFrames, 1}};
    QCOMPARE(summary.kinds(), expected);
}

QTEST_MAIN(tst_FindingWords)
#include "tst_FindingWords.moc"
