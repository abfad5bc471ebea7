#include <QtTest>

#include <QGraphicsItem>
#include <QImage>
#include <QPainter>

#include "forms/FormDefinitions.h"
#include "preflight/FindingWords.h"
#include "render/page/BlankItem.h"
#include "render/page/PageRows.h"
#include "support/CheckedPage.h"

#ifdef Q_OS_LINUX
#include <sys/stat.h>
#endif

namespace {

using Kind = Finding::Kind;
using Side = Finding::Side;
using Severity = Finding::Severity;

constexpr double tolerance = 0.3;       // millimetres
constexpr double unit = 297.0 / 1122.0; // of the fixture's blank, millimetres

const QString longText = "ВЫПИСКА ИЗ ПРОТОКОЛА ЗАСЕДАНИЯ АТТЕСТАЦИОННОЙ КОМИССИИ ЛИЦЕЯ ПРИ "
                         "УНИВЕРСИТЕТЕ О ПРИСВОЕНИИ КВАЛИФИКАЦИИ";

/// The findings of a kind.
QVector<Finding> ofKind(const QVector<Finding>& findings, Kind kind)
{
    QVector<Finding> found;
    for (const Finding& finding : findings) {
        if (finding.kind == kind) {
            found << finding;
        }
    }
    return found;
}

QString wordsOf(const QVector<Finding>& findings)
{
    QStringList words;
    for (const Finding& finding : findings) {
        words << FindingWords().sentence(finding);
    }
    return words.join('\n');
}

#define COMPARE_MM(actual, expected)                                                               \
    QVERIFY2(qAbs((actual) - (expected)) <= tolerance,                                             \
             qPrintable(QString("%1 mm instead of %2 mm").arg(actual).arg(expected)))

#define VERIFY_NONE(findings) QVERIFY2((findings).isEmpty(), qPrintable(wordsOf(findings)))

QJsonObject textItem(const QString& text, const QRectF& frame, const QJsonObject& more = {})
{
    return blankItem(0, text, frame, more);
}

} // namespace

Q_DECLARE_METATYPE(Finding::Side)

/// What the check of a page finds, held against the ink on the printed page.
class tst_PageCheck : public QObject
{
    Q_OBJECT

private slots:
    void cleanPage();
    void textCutAtTheBottom_data();
    void textCutAtTheBottom();
    void linesBeyondTheFrame();
    void wordBeyondTheFrame_data();
    void wordBeyondTheFrame();
    void wordCutWithStroke();
    void tableRowsCut();
    void tableRowsLeftOut();
    void tableCellTooWide();
    void tableCellTooHigh_data();
    void tableCellTooHigh();
    void brokenLinesKeepTheirBlanks();
    void tableColumnOutsideFrame();
    void tableBeyondItsFrame();
    void itemOutsidePage_data();
    void itemOutsidePage();
    void emptyPartOutsidePage();
    void emptyPartBelowPage_data();
    void emptyPartBelowPage();
    void printersMargins();
    void slantedLetterInTheMargin();
    void slantedLetterAtTheEdge();
    void marginsThatMeet();
    void marginEndsAtThePage();
    void inkThatIsClippedAway();
    void hiddenItemsLeaveNoInk();
    void oneLineOfWords();
    void markupOpensNoPipe();
    void textsThatAreNotWhole_data();
    void textsThatAreNotWhole();
    void lengthsBeyondAllPaper();
    void symbolAtTheEdge();
    void tags();
    void loneSign();
    void tableTags();
    void markup_data();
    void markup();
    void fonts();
    void smallSymbol();
    void refusedSymbol_data();
    void refusedSymbol();
    void symbolWithZeroCharacter();
    void background();
    void backgroundOutside_data();
    void backgroundOutside();
    void endlessFontNames();
    void unknownPaper();
    void pageLargerThanPaper();
    void pageWithoutArea_data();
    void pageWithoutArea();
    void emptyValues();
    void fieldNamedLikeTheOrganisations();
    void whatCannotBeRead();
    void oddItems();
    void blankWithoutFrames_data();
    void blankWithoutFrames();
};

void tst_PageCheck::cleanPage()
{
    CheckedPage sheet;
    const QVector<Finding> findings = sheet.check(
        {textItem("#LNAME #FNAME", QRectF(100, 100, 400, 40)),
         textItem("", QRectF(100, 200, 400, 40)), textItem("", QRectF()),
         blankItem(1, "#BLANK_NO", QRectF(700, 100, 98, 98)),
         blankItem(2, "#GRADES", QRectF(100, 300, 400, 200), {{"columns_width", QJsonArray{250}}})},
        {{"OFFSET_X", 3}}, {{"#GRADES", tableEntry({{"Физика", "5"}, {"Химия", "4"}})}},
        {{"MNAME", ""}});
    VERIFY_NONE(findings);
    QCOMPARE(sheet.pageCheck.sheetSize(), QSizeF(297, 210));
    QCOMPARE(sheet.pageCheck.frames().size(), 5);
    COMPARE_MM(sheet.pageCheck.frames()[0].left(), (100 - 11) * unit);
    COMPARE_MM(sheet.pageCheck.frames()[0].bottom(), 140 * unit);
    COMPARE_MM(sheet.pageCheck.frames()[3].width(), 73 * unit); // of the symbol, not of its frame
}

void tst_PageCheck::textCutAtTheBottom_data()
{
    QTest::addColumn<QVariantMap>("blank");
    QTest::addColumn<QJsonObject>("more");
    QTest::addColumn<double>("unitLength");
    QTest::newRow("full size") << QVariantMap() << QJsonObject() << unit;
    QTest::newRow("scaled to a smaller sheet")
        << QVariantMap{{"PAPER_FORMAT", 1}} << QJsonObject() << 148.0 / 793;
    QTest::newRow("moved") << QVariantMap{{"OFFSET_X", 5}, {"OFFSET_Y", -7}} << QJsonObject()
                           << unit;
    QTest::newRow("other spacing") << QVariantMap() << QJsonObject{{"line_spacing", "1,5"}} << unit;
}

void tst_PageCheck::textCutAtTheBottom()
{
    QFETCH(QVariantMap, blank);
    QFETCH(QJsonObject, more);
    QFETCH(double, unitLength);
    more["v_align"] = 0;
    constexpr double height = 60; // its end cuts through the letters of a line
    CheckedPage sheet;
    const auto framed = [&](double frameHeight) {
        return QJsonArray{textItem(longText, QRectF(100, 100, 200, frameHeight), more)};
    };
    VERIFY_NONE(sheet.check(framed(400), blank));
    const QRectF whole = sheet.print().ink();

    const QVector<Finding> findings = sheet.check(framed(height), blank);
    QCOMPARE(findings.size(), 1);
    const Finding& finding = findings[0];
    QCOMPARE(finding.kind, Kind::TextTooHigh);
    QCOMPARE(finding.severity, Severity::Error);
    QCOMPARE(finding.side, Side::Bottom);
    QCOMPARE(finding.item, 1);
    QCOMPARE(finding.itemText, longText);
    const double lost = whole.bottom() - sheet.print().ink().bottom();
    QVERIFY(lost > 10);
    COMPARE_MM(finding.amount, lost);
    QCOMPARE(finding.lostInk, finding.amount);

    // What the finding says is missing is what the frame has to be given.
    const double missing = lost / unitLength;
    VERIFY_NONE(sheet.check(framed(height + missing + tolerance / unitLength), blank));
    QCOMPARE(sheet.check(framed(height + missing - tolerance / unitLength), blank).size(), 1);
}

void tst_PageCheck::linesBeyondTheFrame()
{
    // Line feeds make the label larger than the frame: nothing is cut.
    CheckedPage sheet;
    const QString text = "ОДИН\\nДВА\\nТРИ\\nЧЕТЫРЕ";
    const QVector<Finding> findings = sheet.check({textItem(text, QRectF(100, 100, 200, 50))});
    QCOMPARE(findings.size(), 1);
    QCOMPARE(findings[0].kind, Kind::TextTooHigh);
    QCOMPARE(findings[0].severity, Severity::Warning);
    QCOMPARE(findings[0].side, Side::Bottom);
    QCOMPARE(findings[0].lostInk, 0.0);
    const PdfMeasure paper = sheet.print();
    QCOMPARE(paper.text(), QString("ОДИН ДВА ТРИ ЧЕТЫРЕ"));
    COMPARE_MM(findings[0].amount, paper.ink().bottom() - 150 * unit);

    const double missing = findings[0].amount / unit;
    VERIFY_NONE(sheet.check({textItem(text, QRectF(100, 100, 200, 50 + missing + 1))}));
}

void tst_PageCheck::wordBeyondTheFrame_data()
{
    QTest::addColumn<int>("alignment");
    QTest::newRow("left") << 0;
    QTest::newRow("right") << 1;
    QTest::newRow("centre") << 2;
}

void tst_PageCheck::wordBeyondTheFrame()
{
    QFETCH(int, alignment);
    const QString word = "НЕДЕЛИМОЕДЛИННОЕСЛОВО";
    const QJsonObject more = {{"h_align", alignment}};
    CheckedPage sheet;
    const QVector<Finding> findings =
        sheet.check({textItem(word, QRectF(100, 100, 120, 50), more)});
    QCOMPARE(findings.size(), 1);
    QCOMPARE(findings[0].kind, Kind::TextTooWide);
    QCOMPARE(findings[0].severity, Severity::Warning);
    QCOMPARE(findings[0].side, Side::Right);
    const QRectF ink = sheet.print().ink();
    COMPARE_MM(findings[0].amount, ink.right() - 220 * unit);

    const double width = 120 + findings[0].amount / unit;
    VERIFY_NONE(sheet.check({textItem(word, QRectF(100, 100, width + 1, 50), more)}));
    QCOMPARE(sheet.check({textItem(word, QRectF(100, 100, width - 1, 50), more)}).size(), 1);
}

void tst_PageCheck::wordCutWithStroke()
{
    // The stroke fixes the label's width, so that a word without room is cut.
    const QString text = "НЕДЕЛИМОЕДЛИННОЕСЛОВО И ЕЩЁ";
    const QJsonObject more = {{"f_cut", 1}, {"h_align", 0}};
    CheckedPage sheet;
    const QVector<Finding> findings =
        sheet.check({textItem(text, QRectF(100, 100, 120, 90), more)});
    QCOMPARE(findings.size(), 1);
    QCOMPARE(findings[0].kind, Kind::TextTooWide);
    QCOMPARE(findings[0].severity, Severity::Error);
    QCOMPARE(findings[0].side, Side::Right);
    const double visible = sheet.print().ink(QRectF(0, 0, 297, 34)).right(); // above the stroke
    VERIFY_NONE(sheet.check({textItem(text, QRectF(100, 100, 400, 90), more)}));
    const double whole = sheet.print().word("НЕДЕЛИМОЕДЛИННОЕСЛОВО").box.right();
    COMPARE_MM(findings[0].amount, whole - visible);
}

void tst_PageCheck::tableRowsCut()
{
    QVector<QStringList> rows;
    for (int i = 1; i <= 9; ++i) {
        rows << QStringList{QString("ПРЕДМЕТ%1").arg(i), "5"};
    }
    rows << QStringList{"", ""}; // nothing of it can be lost
    const QJsonObject content = {{"#GRADES", tableEntry(rows)}};
    const QJsonObject more = {{"row_from", 2}, {"columns_width", QJsonArray{250}}};
    const auto framed = [&](double height) {
        return QJsonArray{textItem("#GRADES", QRectF(100, 100, 400, height), more),
                          textItem("#GRADES", QRectF(600, 100, 400, 60), {{"row_to", 1}})};
    };
    CheckedPage sheet;
    VERIFY_NONE(sheet.check(framed(300), {}, content));
    const PdfMeasure whole = sheet.print();
    const QRectF region(0, 0, 150, 210); // without the second frame
    const double bottomOfLast = whole.ink(region).bottom();
    const QRectF lastRow = whole.word("ПРЕДМЕТ9").box;
    const double rowHeight = lastRow.top() - whole.word("ПРЕДМЕТ8").box.top();

    const QVector<Finding> findings = sheet.check(framed(120), {}, content);
    QCOMPARE(findings.size(), 1);
    const Finding& finding = findings[0];
    QCOMPARE(finding.kind, Kind::TableRowsCut);
    QCOMPARE(finding.severity, Severity::Error);
    const PdfMeasure cut = sheet.print();
    QVector<int> missing;
    for (int row = 2; row <= 9; ++row) {
        if (cut.word(rows[row - 1][0]).text.isEmpty()) {
            missing << row;
        }
    }
    QVERIFY(!missing.isEmpty());
    QCOMPARE(finding.rows, missing);
    QCOMPARE(finding.partRows, QVector<int>{missing.first() - 1});
    const double wholeBottom = bottomOfLast - missing.size() * rowHeight;
    COMPARE_MM(finding.lostInk, wholeBottom - cut.ink(region).bottom());
    QCOMPARE(finding.side, Side::Bottom);
    // The frame needs as much as is lost of the last row.
    const double needed = 120 + (bottomOfLast - cut.ink(region).bottom()) / unit;
    VERIFY_NONE(sheet.check(framed(needed + 1), {}, content));
    QCOMPARE(sheet.check(framed(needed - 2), {}, content)[0].partRows, QVector<int>{9});
}

void tst_PageCheck::tableRowsLeftOut()
{
    QVector<QStringList> rows;
    for (int i = 1; i <= 7; ++i) {
        rows << QStringList{QString::number(i)};
    }
    rows[4] = QStringList{" "};
    const QJsonObject content = {{"#GRADES", tableEntry(rows)}};
    const QRectF frame(100, 100, 300, 300);
    CheckedPage sheet;
    const QVector<Finding> findings =
        sheet.check({blankItem(2, "#GRADES", frame, {{"row_from", 1}, {"row_to", 2}}),
                     blankItem(2, "#GRADES", frame, {{"row_from", 4}, {"row_to", 4}})},
                    {}, content);
    QCOMPARE(findings.size(), 1);
    QCOMPARE(findings[0].kind, Kind::TableRowsLeftOut);
    QCOMPARE(findings[0].severity, Severity::Warning);
    QCOMPARE(findings[0].rows, (QVector<int>{3, 6, 7}));
    QCOMPARE(findings[0].item, 2);
    VERIFY_NONE(sheet.check({blankItem(2, "#GRADES", frame, {{"row_from", 0}, {"row_to", 3}}),
                             blankItem(2, "#GRADES", frame, {{"row_from", 4}, {"row_to", 70}})},
                            {}, content));
}

void tst_PageCheck::tableCellTooWide()
{
    const QString word = "НЕДЕЛИМОЕДЛИННОЕСЛОВО";
    const QJsonObject content = {{"#GRADES", tableEntry({{"A", "5"}, {word, "4"}})}};
    const auto columns = [&](int width) {
        return QJsonArray{blankItem(2, "#GRADES", QRectF(100, 100, 600, 100),
                                    {{"columns_width", QJsonArray{width}}})};
    };
    CheckedPage sheet;
    const QVector<Finding> findings = sheet.check(columns(150), {}, content);
    QCOMPARE(findings.size(), 1);
    const Finding& finding = findings[0];
    QCOMPARE(finding.kind, Kind::TableCellCut);
    QCOMPARE(finding.severity, Severity::Error);
    QCOMPARE(finding.rows, QVector<int>{2});
    QCOMPARE(finding.column, 1);
    QCOMPARE(finding.text, word);
    QCOMPARE(finding.side, Side::Right);
    QVERIFY(sheet.print().word(word).text.isEmpty());

    const double needed = 150 + finding.amount / unit;
    VERIFY_NONE(sheet.check(columns(qRound(needed) + 1), {}, content));
    QCOMPARE(sheet.print().word(word).text, word);
    QCOMPARE(sheet.check(columns(qRound(needed) - 1), {}, content).size(), 1);
    QVERIFY(sheet.print().word(word).text.isEmpty());
}

void tst_PageCheck::tableCellTooHigh_data()
{
    QTest::addColumn<int>("fontSize");
    QTest::addColumn<int>("width");
    for (const int fontSize : {11, 12, 14}) {
        for (const int width : {110, 135, 138, 146, 150, 160}) {
            QTest::addRow("%d points in %d units", fontSize, width) << fontSize << width;
        }
    }
}

void tst_PageCheck::tableCellTooHigh()
{
    // A row is made for its texts in the whole width of the columns, but a cell keeps a margin and
    // lays lines out a little higher: a text that wraps may find no room for its last line.
    QFETCH(int, fontSize);
    QFETCH(int, width);
    const QJsonObject content = {{"#GRADES", tableEntry({{"ФИЗИКА И ХИМИЯ", ""}})}};
    CheckedPage sheet;
    const QVector<Finding> findings =
        sheet.check({blankItem(2, "#GRADES", QRectF(100, 100, 600, 100),
                               {{"columns_width", QJsonArray{width}}})},
                    {{"FONT_SIZE", fontSize}}, content);
    const QString text = sheet.print().text();
    QCOMPARE(findings.isEmpty(), text == "ФИЗИКА И ХИМИЯ");
    if (!findings.isEmpty()) {
        QCOMPARE(findings[0].kind, Kind::TableCellCut);
        QCOMPARE(findings[0].side, Side::Bottom);
        QCOMPARE(findings[0].printed, text);
        QVERIFY(findings[0].amount > 0);
    }
}

void tst_PageCheck::brokenLinesKeepTheirBlanks()
{
    // The last word does not fit and is shortened; those before it stand on lines of their own,
    // one of them broken at its hyphen.
    const QString words = "Исследования научно-исследовательской";
    const QString text = words + " Электроэнергетикаиэлектротехникаиэлектроника";
    const QJsonObject content = {{"#GRADES", tableEntry({{text, ""}})}};
    CheckedPage sheet;
    const QVector<Finding> findings = sheet.check(
        {blankItem(2, "#GRADES", QRectF(100, 100, 600, 300), {{"columns_width", QJsonArray{150}}})},
        {{"FONT_SIZE", 12}}, content);
    QCOMPARE(findings.size(), 1);
    QCOMPARE(findings[0].kind, Kind::TableCellCut);
    QVERIFY2(findings[0].printed.startsWith(words), qPrintable(findings[0].printed));
    QVERIFY(FindingWords().sentence(findings[0]).contains(", “" + words));
}

void tst_PageCheck::tableColumnOutsideFrame()
{
    const QJsonObject content = {
        {"#GRADES", tableEntry({{"Физика", "отлично", "да"}, {"Химия", "хорошо", ""}})}};
    const auto columns = [&](int first, int second) {
        return QJsonArray{blankItem(2, "#GRADES", QRectF(100, 100, 400, 100),
                                    {{"columns_width", QJsonArray{first, second}}})};
    };
    CheckedPage sheet;
    const QVector<Finding> outside = sheet.check(columns(250, 200), {}, content);
    QCOMPARE(outside.size(), 1);
    QCOMPARE(outside[0].kind, Kind::TableColumnCut);
    QCOMPARE(outside[0].column, 3);
    QCOMPARE(outside[0].rows, QVector<int>{1});
    QVERIFY(sheet.print().word("да").text.isEmpty());

    const QVector<Finding> partly = sheet.check(columns(340, 200), {}, content);
    QCOMPARE(ofKind(partly, Kind::TableCellCut).size(), 2);
    const Finding cell = ofKind(partly, Kind::TableCellCut)[0];
    const PdfMeasure paper = sheet.print();
    QCOMPARE(cell.column, 2);
    const double visible = paper.ink(paper.word("отлично").box).right();
    COMPARE_MM(cell.lostInk, paper.word("отлично").box.right() - visible);

    VERIFY_NONE(sheet.check(columns(200, 100), {}, content));
}

void tst_PageCheck::tableBeyondItsFrame()
{
    // The toolkit's tables have a least height, whatever the frame's is.
    const QJsonObject content = {{"#GRADES", tableEntry({{"А", "5"}, {"Б", "4"}, {"В", "3"}})}};
    CheckedPage sheet;
    const QVector<Finding> findings =
        sheet.check({blankItem(2, "#GRADES", QRectF(100, 100, 400, 30))}, {}, content);
    QCOMPARE(findings.size(), 1);
    QCOMPARE(findings[0].kind, Kind::TableOutsideFrame);
    QCOMPARE(findings[0].severity, Severity::Warning);
    QCOMPARE(findings[0].side, Side::Bottom);
    const QRectF ink = sheet.print().ink();
    COMPARE_MM(findings[0].amount, ink.bottom() - 130 * unit);
    const double needed = 30 + findings[0].amount / unit;
    VERIFY_NONE(
        sheet.check({blankItem(2, "#GRADES", QRectF(100, 100, 400, needed + 1))}, {}, content));
}

void tst_PageCheck::itemOutsidePage_data()
{
    QTest::addColumn<QPointF>("position");
    QTest::addColumn<QVariantMap>("blank");
    QTest::addColumn<Finding::Side>("side");
    QTest::addColumn<double>("unitLength");
    QTest::newRow("left") << QPointF(-40, 300) << QVariantMap() << Side::Left << unit;
    QTest::newRow("top") << QPointF(300, -20) << QVariantMap() << Side::Top << unit;
    QTest::newRow("right") << QPointF(1122 - 60, 300) << QVariantMap() << Side::Right << unit;
    QTest::newRow("bottom") << QPointF(300, 793 - 20) << QVariantMap() << Side::Bottom << unit;
    QTest::newRow("offset to the left")
        << QPointF(20, 300) << QVariantMap{{"OFFSET_X", 15}} << Side::Left << unit;
    QTest::newRow("offset downward")
        << QPointF(300, 760) << QVariantMap{{"OFFSET_Y", -4}} << Side::Bottom << unit;
    QTest::newRow("page smaller than the sheet")
        << QPointF(793 - 60, 300)
        << QVariantMap{{"PAPER_FORMAT", 0}, {"SIZE_WIDTH", 210}, {"SIZE_HEIGHT", 297}}
        << Side::Right << 210.0 / 1122;
}

void tst_PageCheck::itemOutsidePage()
{
    QFETCH(QPointF, position);
    QFETCH(QVariantMap, blank);
    QFETCH(Finding::Side, side);
    QFETCH(double, unitLength);
    const QSizeF size(100, 40);
    CheckedPage sheet;
    // The text well inside, to know its ink in its frame.
    VERIFY_NONE(sheet.check({textItem("ОГОГОГО", QRectF(QPointF(300, 300), size))}));
    const QRectF ink = sheet.print().ink().translated(-300 * unit, -300 * unit);
    const double scale = unitLength / unit;

    const QVector<Finding> findings =
        sheet.check({textItem("ОГОГОГО", QRectF(position, size))}, blank);
    QCOMPARE(findings.size(), 1);
    const Finding& finding = findings[0];
    QCOMPARE(finding.kind, Kind::OutsidePage);
    QCOMPARE(finding.severity, Severity::Error);
    QCOMPARE(finding.side, side);
    QVERIFY(!finding.isOfBlank());
    const QRectF visible = sheet.print().ink();
    const bool isSideways = side == Side::Left || side == Side::Right;
    const double inkSize = (isSideways ? ink.width() : ink.height()) * scale;
    const double visibleSize = isSideways ? visible.width() : visible.height();
    QVERIFY(visibleSize > 0 && visibleSize < inkSize - 1);
    COMPARE_MM(finding.lostInk, inkSize - visibleSize);
    // The frame stands further out than the ink.
    QVERIFY(finding.amount > finding.lostInk);
    const QPointF offset(int(blank["OFFSET_X"].toInt() * 3.7795),
                         int(blank["OFFSET_Y"].toInt() * 3.7795));
    const QPointF place = (position - offset) * unitLength;
    COMPARE_MM(finding.place.x(), place.x());
    COMPARE_MM(finding.place.y(), place.y());
}

void tst_PageCheck::emptyPartOutsidePage()
{
    CheckedPage sheet;
    const QVector<Finding> findings = sheet.check(
        {textItem("АБВ", QRectF(-40, 300, 400, 40), {{"h_align", 1}})}, {{"NAME", "Край"}});
    QCOMPARE(findings.size(), 1);
    QCOMPARE(findings[0].kind, Kind::OutsidePage);
    QCOMPARE(findings[0].severity, Severity::Warning);
    QCOMPARE(findings[0].side, Side::Left);
    QCOMPARE(findings[0].lostInk, 0.0);
    COMPARE_MM(findings[0].amount, 40 * unit);
    QVERIFY(findings[0].isOfBlank());
    QCOMPARE(findings[0].blank.name, QString("Край"));
    // It is said once: what is beyond the page is beyond the printable too.
    sheet.pageCheck.setMargins(QMarginsF(5, 0, 5, 0));
    QCOMPARE(sheet.check({textItem("АБВ", QRectF(-40, 300, 400, 40), {{"h_align", 1}})}).size(), 1);
    sheet.pageCheck.setMargins(QMarginsF());
    VERIFY_NONE(sheet.check({textItem("АБВ", QRectF(0, 300, 1122, 40))}));
}

void tst_PageCheck::emptyPartBelowPage_data()
{
    QTest::addColumn<int>("alignment");
    QTest::addColumn<bool>("isPrinted");
    QTest::newRow("top") << 0 << true;
    QTest::newRow("centre") << 2 << true;
    QTest::newRow("bottom") << 1 << false;
}

// Half a frame lies below the page. Where the text stands in it decides.
void tst_PageCheck::emptyPartBelowPage()
{
    QFETCH(int, alignment);
    QFETCH(bool, isPrinted);
    CheckedPage sheet;
    const QVector<Finding> findings =
        sheet.check({textItem("АБВ", QRectF(100, 793 - 160, 400, 240), {{"v_align", alignment}})});
    QCOMPARE(findings.size(), 1);
    QCOMPARE(findings[0].kind, Kind::OutsidePage);
    QCOMPARE(findings[0].side, Side::Bottom);
    COMPARE_MM(findings[0].amount, 80 * unit);
    QCOMPARE(sheet.print().ink().isNull(), !isPrinted);
    QCOMPARE(findings[0].severity, isPrinted ? Severity::Warning : Severity::Error);
    QCOMPARE(findings[0].lostInk > 0, !isPrinted);
}

void tst_PageCheck::printersMargins()
{
    CheckedPage sheet;
    const QJsonArray items = {textItem("ОГОГОГО", QRectF(10, 300, 400, 40), {{"h_align", 0}})};
    VERIFY_NONE(sheet.check(items));
    const QRectF ink = sheet.print().ink();

    sheet.pageCheck.setMargins(QMarginsF(ink.left() + 1, 0, 0, 0));
    const QVector<Finding> lost = sheet.check(items);
    QCOMPARE(lost.size(), 1);
    QCOMPARE(lost[0].kind, Kind::OutsidePrintable);
    QCOMPARE(lost[0].severity, Severity::Error);
    QCOMPARE(lost[0].side, Side::Left);
    COMPARE_MM(lost[0].lostInk, 1.0);
    COMPARE_MM(lost[0].amount, ink.left() + 1 - 10 * unit);

    sheet.pageCheck.setMargins(QMarginsF(ink.left() - 0.5, 4, 4, 4));
    const QVector<Finding> empty = sheet.check(items);
    QCOMPARE(empty.size(), 1);
    QCOMPARE(empty[0].kind, Kind::OutsidePrintable);
    QCOMPARE(empty[0].severity, Severity::Warning);

    sheet.pageCheck.setMargins(QMarginsF(10 * unit, 4, 4, 4));
    VERIFY_NONE(sheet.check(items));
}

// Such a letter leans out of the box that its font has for it, on both sides.
void tst_PageCheck::slantedLetterInTheMargin()
{
    constexpr double cut = 0.5; // millimetres of the letter
    const QJsonArray items = {textItem("<i>f</i>", QRectF(100, 300, 400, 150), {{"h_align", 0}})};
    const QVariantMap blank = {{"FONT_SIZE", 60}};
    CheckedPage sheet;
    VERIFY_NONE(sheet.check(items, blank));
    sheet.pageCheck.setMargins(QMarginsF(sheet.print().ink().left() + cut, 0, 0, 0));
    const QVector<Finding> findings = sheet.check(items, blank);
    QCOMPARE(findings.size(), 1);
    QCOMPARE(findings[0].kind, Kind::OutsidePrintable);
    QCOMPARE(findings[0].severity, Severity::Error);
    QCOMPARE(findings[0].side, Side::Left);
    COMPARE_MM(findings[0].lostInk, cut);
}

void tst_PageCheck::slantedLetterAtTheEdge()
{
    const auto items = [](const QString& text) {
        return QJsonArray{textItem(text, QRectF(100, 300, 400, 150), {{"h_align", 1}})};
    };
    const QVariantMap blank = {{"FONT_SIZE", 60}};
    CheckedPage sheet;
    VERIFY_NONE(sheet.check(items("<i>f</i>&nbsp;"), blank));
    const double whole = sheet.print().ink().width();
    const QVector<Finding> findings = sheet.check(items("<i>f</i>"), blank);
    QCOMPARE(findings.size(), 1);
    QCOMPARE(findings[0].kind, Kind::TextTooWide);
    QCOMPARE(findings[0].severity, Severity::Error);
    QCOMPARE(findings[0].side, Side::Right);
    COMPARE_MM(findings[0].lostInk, whole - sheet.print().ink().width());
}

// What is beyond the page is not in its margin too.
void tst_PageCheck::marginEndsAtThePage()
{
    CheckedPage sheet;
    sheet.pageCheck.setMargins(QMarginsF(5, 0, 0, 0));
    const QVector<Finding> findings =
        sheet.check({textItem("ОГОГОГОГОГО", QRectF(-30, 300, 400, 40), {{"h_align", 0}})});
    QCOMPARE(ofKind(findings, Kind::OutsidePage).size(), 1);
    QVERIFY(ofKind(findings, Kind::OutsidePage)[0].lostInk > 1);
    QCOMPARE(ofKind(findings, Kind::OutsidePrintable).size(), 1);
    COMPARE_MM(ofKind(findings, Kind::OutsidePrintable)[0].lostInk, 5.0);
}

// What lies between the two is in both margins.
void tst_PageCheck::marginsThatMeet()
{
    CheckedPage sheet;
    sheet.pageCheck.setMargins(QMarginsF(0, 140, 0, 140)); // of 210
    const QVector<Finding> findings =
        sheet.check({textItem("ОГОГОГО", QRectF(100, 378, 400, 40))}); // at 100 mm
    QCOMPARE(findings.size(), 2);
    QCOMPARE(findings[0].side, Side::Top);
    QCOMPARE(findings[1].side, Side::Bottom);
    for (const Finding& finding : findings) {
        QCOMPARE(finding.kind, Kind::OutsidePrintable);
        QCOMPARE(finding.severity, Severity::Error);
        QVERIFY(finding.lostInk > 2);
    }
    QVERIFY(!sheet.pageCheck.printableOnSheet().isValid());
}

void tst_PageCheck::inkThatIsClippedAway()
{
    class ClippedText : public QGraphicsItem
    {
    public:
        QRectF boundingRect() const override { return {0, 0, 100, 100}; }
        void paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*) override
        {
            painter->drawText(QPointF(10, 20), "А");
            painter->setClipRect(QRectF(0, 0, 5, 5));
            painter->setClipRect(QRectF(50, 50, 5, 5), Qt::IntersectClip);
            painter->drawText(QPointF(10, 80), "Б");
        }
    };
    ClippedText item;
    InkRecorder recorder;
    QVector<TextMark> marks = recorder.textsOf(&item);
    QCOMPARE(marks.size(), 2);
    const PrintedInk all = {marks, QRectF()};
    QVERIFY(all.bounds().bottom() < 25 && all.roughBounds().bottom() < 40);
    marks.removeFirst();
    const PrintedInk hidden = {marks, QRectF()};
    QVERIFY(hidden.bounds().isNull() && hidden.roughBounds().isNull());
}

void tst_PageCheck::hiddenItemsLeaveNoInk()
{
    QGraphicsSimpleTextItem shown("А");
    auto* hidden = new QGraphicsSimpleTextItem("Б", &shown);
    new QGraphicsSimpleTextItem("В", hidden);
    InkRecorder recorder;
    QCOMPARE(recorder.textsOf(&shown).size(), 3);
    hidden->hide();
    QCOMPARE(recorder.textsOf(&shown).size(), 1);
    QCOMPARE(recorder.textsOf(&shown)[0].text, QString("А"));
}

/// Neither the check nor the print waits for a file that a value names, and both load a picture.
void tst_PageCheck::markupOpensNoPipe()
{
#ifdef Q_OS_LINUX
    CheckedPage sheet;
    QCOMPARE(mkfifo(QFile::encodeName(sheet.path("pipe")).constData(), S_IRUSR | S_IWUSR), 0);
    QImage black(30, 20, QImage::Format_RGB32);
    black.fill(Qt::black);
    QVERIFY(black.save(sheet.path("black.png")));
    const QString outside = "<img src=\"%1\"><table background=\"%1\"><tr><td>&nbsp;</table>"
                            "<link type=\"text/css\" href=\"%1\"/>"
                            "<style>@import url(%1);</style><b style=\"background: url(%1)\"></b>";
    sheet.check(
        {textItem("#A", QRectF(100, 100, 300, 100)), textItem("#B", QRectF(500, 100, 300, 100))},
        {{"BACKGROUND_IMG", "pipe"}},
        {{"#A", valueEntry(FieldType::string, outside.arg(sheet.path("pipe")))},
         {"#B", valueEntry(FieldType::string, "<img src=\"black.png\">")}});
    QCOMPARE(ofKind(sheet.pageCheck.findings(), Kind::BackgroundMissing).size(), 1);
    QCOMPARE(ofKind(sheet.pageCheck.findings(), Kind::ValueReadAsMarkup).size(), 2);
    const QRectF ink = sheet.print().ink();
    COMPARE_MM(ink.width(), 30 * unit);
    COMPARE_MM(ink.height(), 20 * unit);
    QVERIFY(ink.left() > 500 * unit);
#else
    QSKIP("no pipes with names here");
#endif
}

void tst_PageCheck::textsThatAreNotWhole_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<bool>("isWhole");
    QTest::newRow("short") << "<b>Иванов</b>" << true;
    QTest::newRow("long") << QString("слово ").repeated(5000) << true;
    QTest::newRow("too long") << QString("слово ").repeated(6000) << false;
    QTest::newRow("too many elements") << QString("<b>").repeated(10900) + "Иванов" << false;
    QTest::newRow("tables in tables") << QString("<table><tr><td>").repeated(300) + "x" << false;
}

void tst_PageCheck::textsThatAreNotWhole()
{
    QFETCH(QString, value);
    QFETCH(bool, isWhole);
    CheckedPage sheet;
    const QVector<Finding> findings = ofKind(
        sheet.check({textItem("#NOTE", QRectF(100, 100, 400, 40)),
                     textItem("#LNAME", QRectF(100, 300, 400, 40))},
                    {}, {{"#NOTE", valueEntry(FieldType::string, value)}}, {{"LNAME", "Иванов"}}),
        Kind::TextNotWhole);
    QCOMPARE(findings.size(), isWhole ? 0 : 1);
    if (!isWhole) {
        QCOMPARE(findings[0].item, 1);
        QVERIFY(findings[0].severity == Severity::Error && !findings[0].isOfBlank());
        QCOMPARE(findings[0].toJson()["kind"].toString(), QString("text-not-whole"));
        QVERIFY(FindingWords().what(findings[0]).contains("too long or has too much markup"));
    }
}

void tst_PageCheck::oneLineOfWords()
{
    CheckedPage sheet;
    const QVector<Finding> findings =
        sheet.check({textItem("#CITY", QRectF(100, 100, 400, 40))}, {{"NAME", "A\tB"}}, {},
                    {{"LNAME", QString("Ив\r\nа\x1b[2Jнов") + QChar(0x2028)}});
    QCOMPARE(findings.size(), 1);
    const QString words = FindingWords().sentence(findings[0]);
    for (const QChar c : words) {
        QVERIFY(c.category() != QChar::Other_Control && c.category() != QChar::Separator_Line);
    }
    QVERIFY2(words.contains("Ив  а [2Jнов"), qPrintable(words));

    Finding longTag;
    longTag.kind = Kind::TagNotExpanded;
    longTag.tag = QString(58, 'x') + QString::fromUcs4(U"\U0001F600") + "yyy";
    QVERIFY(FindingWords().what(longTag).contains(QString(58, 'x') + QChar(0x2026)));
}

void tst_PageCheck::lengthsBeyondAllPaper()
{
    Finding finding;
    finding.item = 1;
    finding.place = QRectF(0, 0.12345, 1e30, 1e308);
    const QJsonObject item = finding.toJson()["item"].toObject();
    QCOMPARE(item["y"].toDouble(), 0.123);
    QCOMPARE(item["width"].toDouble(), 1e30);
    QCOMPARE(item["height"].toDouble(), 1e308);
}

void tst_PageCheck::symbolAtTheEdge()
{
    CheckedPage sheet;
    const auto symbolAt = [&](double x) {
        return sheet.check({blankItem(1, "#BLANK_NO", QRectF(x, 100, 98, 98))});
    };
    VERIFY_NONE(symbolAt(0));
    const QVector<Finding> quietZone = symbolAt(-3);
    QCOMPARE(quietZone.size(), 1);
    QCOMPARE(quietZone[0].severity, Severity::Warning);
    const QVector<Finding> modules = symbolAt(-10);
    QCOMPARE(modules.size(), 1);
    QCOMPARE(modules[0].severity, Severity::Error);
    COMPARE_MM(modules[0].lostInk, 6 * unit);
    COMPARE_MM(sheet.print().ink().width(), (65 - 6) * unit);
}

void tst_PageCheck::tags()
{
    CheckedPage sheet;
    const QVector<Finding> findings =
        sheet.check({textItem("#LNAME", QRectF(100, 100, 400, 40)),
                     textItem("#LNAME #CITY #lname", QRectF(100, 200, 400, 40)),
                     textItem("Выдан #ISSUE_DATE, #BIRTH_DATE", QRectF(100, 300, 400, 40)),
                     textItem("#LNAME,", QRectF(100, 400, 400, 40)),
                     blankItem(1, "#WHAT", QRectF(700, 400, 98, 98))},
                    {}, {}, {{"ISSUE_DATE", ""}, {"LNAME", "#ТАЙНА"}});
    QCOMPARE(findings.size(), 5);
    QCOMPARE(findings[0].kind, Kind::TagNotExpanded);
    QCOMPARE(findings[0].item, 2);
    QCOMPARE(findings[0].tag, QString("#CITY"));
    COMPARE_MM(findings[0].place.y(), 200 * unit);
    QCOMPARE(findings[1].tag, QString("#lname"));
    QCOMPARE(findings[2].kind, Kind::DateMissing);
    QCOMPARE(findings[2].item, 3);
    QCOMPARE(findings[2].tag, QString("#ISSUE_DATE"));
    QCOMPARE(findings[3].kind, Kind::TailDropped);
    QCOMPARE(findings[3].tag, QString(","));
    QVERIFY(findings[3].isOfBlank());
    QCOMPARE(findings[4].kind, Kind::TagNotExpanded);
    QCOMPARE(findings[4].item, 5);
    const QString text = sheet.print().text();
    QVERIFY(text.contains("#CITY #lname"));
    QVERIFY(text.contains("Выдан 0 0,"));
    QVERIFY(!text.endsWith(','));
}

void tst_PageCheck::loneSign()
{
    CheckedPage sheet;
    const QVector<Finding> findings =
        sheet.check({textItem("Запись # 5", QRectF(100, 100, 400, 40))});
    QCOMPARE(findings.size(), 1);
    QCOMPARE(findings[0].kind, Kind::TagNotExpanded);
    QCOMPARE(findings[0].severity, Severity::Warning); // it may be meant
    QCOMPARE(sheet.print().text(), QString("Запись # 5"));
}

void tst_PageCheck::tableTags()
{
    const QJsonObject content = {{"#GRADES", tableEntry({{"Физика", "5"}})}};
    const QRectF frame(100, 100, 400, 100);
    CheckedPage sheet;
    VERIFY_NONE(sheet.check({textItem("#GRADES", frame)}, {}, content));
    const QVector<Finding> inText = sheet.check({textItem("Оценки: #GRADES", frame)}, {}, content);
    QCOMPARE(inText.size(), 1);
    QCOMPARE(inText[0].tag, QString("#GRADES"));
    const QVector<Finding> unknown = sheet.check({blankItem(2, "#GRADES", frame)});
    QCOMPARE(unknown.size(), 1);
    QCOMPARE(unknown[0].kind, Kind::TagNotExpanded);
    QCOMPARE(sheet.print().text(), QString("#GRADES"));
}

void tst_PageCheck::markup_data()
{
    QTest::addColumn<QString>("value");
    for (const char* value : {"Иванов", "<b>Иванов</b>", "R&amp;D", "<Ромашка>", "A & B", "5 < 6",
                              "5 <6", "a<b", "x > y", "A&B;", "ООО <<Лик>>", "A &copy B"})
    {
        QTest::newRow(value) << QString(value);
    }
}

void tst_PageCheck::markup()
{
    QFETCH(QString, value);
    CheckedPage sheet;
    const QVector<Finding> findings =
        sheet.check({textItem("#LNAME", QRectF(100, 100, 400, 40))}, {}, {}, {{"LNAME", value}});
    const bool printsAsItStands = sheet.print().text() == value;
    QCOMPARE(findings.isEmpty(), printsAsItStands);
    if (!printsAsItStands) {
        QCOMPARE(findings[0].kind, Kind::ValueReadAsMarkup);
        QCOMPARE(findings[0].tag, QString("#LNAME"));
        QCOMPARE(findings[0].text, value);
    }
    // Neither a symbol nor a table reads markup.
    VERIFY_NONE(sheet.check(
        {blankItem(1, "#LNAME", QRectF(100, 100, 98, 98)),
         textItem("#GRADES", QRectF(300, 100, 400, 100), {{"columns_width", QJsonArray{300}}})},
        {}, {{"#GRADES", tableEntry({{value, "5"}})}}, {{"LNAME", value}}));
}

void tst_PageCheck::fonts()
{
    CheckedPage sheet;
    const QString unknown = "Такого Шрифта Нет";
    const QRectF frame(100, 100, 400, 40);
    const QVector<Finding> findings =
        sheet.check({textItem("#LNAME", frame), textItem("#FNAME", frame),
                     textItem("#MNAME", frame, {{"font", "Roboto"}}),
                     textItem("#MNAME", frame, {{"font", "И Этого"}})},
                    {{"FONT", unknown}});
    QCOMPARE(findings.size(), 2);
    QCOMPARE(findings[0].kind, Kind::FontReplaced);
    QCOMPARE(findings[0].tag, unknown);
    QVERIFY(!findings[0].text.isEmpty() && findings[0].text != unknown);
    QVERIFY(findings[0].isOfBlank());
    QCOMPARE(findings[1].tag, QString("И Этого"));
    // A font that prints nothing is none.
    VERIFY_NONE(sheet.check({textItem("#LNAME", frame, {{"font", "liberation serif"}}),
                             blankItem(1, "#LNAME", frame, {{"font", unknown}})},
                            {{"FONT", unknown}}));
}

void tst_PageCheck::smallSymbol()
{
    const QJsonArray items = {blankItem(1, "#BLANK_NO", QRectF(100, 100, 98, 98))};
    CheckedPage sheet;
    // On A4, 297 mm of paper hold the page's longer side.
    const auto modulesAt = [&](int width) {
        return sheet.check(items,
                           {{"PAPER_FORMAT", 0}, {"SIZE_WIDTH", width}, {"SIZE_HEIGHT", 200}});
    };
    // 314 mm are 1186 units: 0.25042 mm each; 315 mm are 1190: 0.24958 mm.
    VERIFY_NONE(modulesAt(314));
    const QVector<Finding> findings = modulesAt(315);
    QCOMPARE(findings.size(), 1);
    QCOMPARE(findings[0].kind, Kind::QrModuleTooSmall);
    QCOMPARE(findings[0].severity, Severity::Error);
    QCOMPARE(findings[0].item, 1);
    QVERIFY(qAbs(findings[0].amount - 297.0 / 1190) < 0.0001);
    COMPARE_MM(sheet.print().ink().width(), 65 * findings[0].amount);
}

void tst_PageCheck::refusedSymbol_data()
{
    QTest::addColumn<QString>("surname");
    QTest::addColumn<bool>("isRefused");
    QTest::newRow("short") << "а" << false;
    QTest::newRow("empty") << "" << true;
    QTest::newRow("longest") << QString(2331, 'a') << false;
    QTest::newRow("too long") << QString(2332, 'a') << true;
    QTest::newRow("too long in two bytes a letter") << QString(1166, QChar(0x43C)) << true;
}

void tst_PageCheck::refusedSymbol()
{
    QFETCH(QString, surname);
    QFETCH(bool, isRefused);
    CheckedPage sheet;
    const QVector<Finding> findings = sheet.check(
        {blankItem(1, "#LNAME", QRectF(100, 100, 98, 98))}, {}, {}, {{"LNAME", surname}});
    QCOMPARE(findings.size(), isRefused ? 1 : 0);
    QCOMPARE(sheet.print().ink().isNull(), isRefused);
    if (isRefused) {
        QCOMPARE(findings[0].kind, Kind::QrRefused);
        QCOMPARE(findings[0].text.isEmpty(), surname.isEmpty());
    }
}

void tst_PageCheck::symbolWithZeroCharacter()
{
    const QString value = QString("АБ") + QChar(0) + "ВГ";
    const QJsonArray items = {blankItem(1, "#NOTE", QRectF(100, 100, 98, 98))};
    CheckedPage sheet;
    const QVector<Finding> cut =
        sheet.check(items, {}, {{"#NOTE", valueEntry(FieldType::text, value)}});
    QCOMPARE(cut.size(), 1);
    QCOMPARE(cut[0].kind, Kind::QrTextCut);
    QCOMPARE(cut[0].text, QString("АБ"));
    const QVector<Finding> empty =
        sheet.check(items, {}, {{"#NOTE", valueEntry(FieldType::text, value.mid(2))}});
    QCOMPARE(empty.size(), 1);
    QCOMPARE(empty[0].kind, Kind::QrRefused);
}

void tst_PageCheck::background()
{
    CheckedPage sheet;
    const QJsonArray items = {textItem("#LNAME", QRectF(100, 100, 400, 40))};
    const QVector<Finding> missing = sheet.check(items, {{"BACKGROUND_IMG", "blanks/no.png"}});
    QCOMPARE(missing.size(), 1);
    QCOMPARE(missing[0].kind, Kind::BackgroundMissing);
    QCOMPARE(missing[0].severity, Severity::Warning);
    QCOMPARE(missing[0].text, QString("blanks/no.png"));
    QCOMPARE(missing[0].item, 0);
    QVERIFY(missing[0].isOfBlank());
    QFile damaged(sheet.path("damaged.png"));
    QVERIFY(damaged.open(QIODevice::WriteOnly) && damaged.write("PNG") == 3);
    damaged.close();
    sheet.pageCheck.setBackgroundPrinted(true);
    const QVector<Finding> unreadable = sheet.check(items, {{"BACKGROUND_IMG", "damaged.png"}});
    QCOMPARE(unreadable.size(), 1);
    QCOMPARE(unreadable[0].severity, Severity::Error);
    QImage picture(100, 50, QImage::Format_RGB32);
    picture.fill(Qt::green);
    QVERIFY(picture.save(sheet.path("scan.png")));
    VERIFY_NONE(sheet.check(items, {{"BACKGROUND_IMG", "scan.png"}}));
    QCOMPARE(sheet.pageCheck.frames().size(), 1);
    VERIFY_NONE(sheet.check(items, {{"BACKGROUND_IMG", ""}}));
}

void tst_PageCheck::backgroundOutside_data()
{
    QTest::addColumn<QString>("background");
    QTest::newRow("a folder up") << "../%1/scan.png";
    QTest::newRow("link to a file") << "link.png";
    QTest::newRow("link to a folder") << "linked/scan.png";
}

// It is loaded, as the path says, but may be anyone's.
void tst_PageCheck::backgroundOutside()
{
    QFETCH(QString, background);
    CheckedPage sheet;
    const QTemporaryDir outside(QFileInfo(sheet.path()).dir().filePath("outside-XXXXXX"));
    QImage picture(100, 50, QImage::Format_RGB32);
    picture.fill(Qt::green);
    QVERIFY(picture.save(outside.filePath("scan.png")));
    QVERIFY(QFile::link(outside.filePath("scan.png"), sheet.path("link.png")));
    QVERIFY(QFile::link(outside.path(), sheet.path("linked")));
    background = background.replace("%1", QFileInfo(outside.path()).fileName());
    const QJsonArray items = {textItem("#LNAME", QRectF(100, 100, 400, 40))};
    const QVector<Finding> findings = sheet.check(items, {{"BACKGROUND_IMG", background}});
    QCOMPARE(findings.size(), 1);
    QCOMPARE(findings[0].kind, Kind::BackgroundOutside);
    QCOMPARE(findings[0].severity, Severity::Warning);
    QCOMPARE(findings[0].text, background);
    QVERIFY(findings[0].isOfBlank());
}

// The system is never asked for them: that takes memory by their length, each time.
void tst_PageCheck::endlessFontNames()
{
    const QString endless(100000, 'F');
    CheckedPage sheet;
    QJsonObject item = textItem("#LNAME", QRectF(100, 100, 400, 40));
    const QVector<Finding> ofBlank = sheet.check({item}, {{"FONT", endless}});
    item["font"] = endless;
    const QVector<Finding> ofItem = sheet.check({item});
    for (const QVector<Finding>& findings : {ofBlank, ofItem}) {
        QCOMPARE(findings.size(), 1);
        QCOMPARE(findings[0].kind, Kind::FontReplaced);
        QCOMPARE(findings[0].tag, endless);
    }
    QVERIFY(BlankItem(item).font(QFont()).family().size() < 1000);
    const std::optional<PageBlank> blank = PageBlank::read(1, PageBlank(), nullptr);
    QVERIFY(blank && blank->fontFamily == endless);
    QVERIFY(blank->font.family().size() < 1000);
}

void tst_PageCheck::unknownPaper()
{
    CheckedPage sheet;
    const QJsonArray items = {textItem("#LNAME", QRectF(100, 100, 400, 40))};
    for (const int format : {7, -1, 2}) {
        const QVector<Finding> findings = sheet.check(items, {{"PAPER_FORMAT", format}});
        QCOMPARE(findings.size(), 1);
        QCOMPARE(findings[0].kind, Kind::PaperUnknown);
        QCOMPARE(findings[0].severity, Severity::Error);
        QCOMPARE(findings[0].text, QString::number(format));
        QVERIFY(findings[0].isOfBlank());
    }
    for (const int format : {0, 42}) {
        VERIFY_NONE(sheet.check(items, {{"PAPER_FORMAT", format}}));
    }
}

// Its background has no memory, which is not the picture's fault.
void tst_PageCheck::pageLargerThanPaper()
{
    CheckedPage sheet;
    QImage picture(100, 50, QImage::Format_RGB32);
    picture.fill(Qt::green);
    QVERIFY(picture.save(sheet.path("scan.png")));
    const QJsonArray items = {textItem("#LNAME", QRectF(100, 100, 400, 40))};
    QVariantMap blank = {{"BACKGROUND_IMG", "scan.png"}, {"SIZE_WIDTH", 5000}};
    for (const QString background : {"scan.png", ""}) {
        blank["BACKGROUND_IMG"] = background;
        const QVector<Finding> findings = sheet.check(items, blank);
        QCOMPARE(findings.size(), 1);
        QCOMPARE(findings[0].kind, Kind::PageTooLarge);
        QCOMPARE(findings[0].severity, Severity::Error);
        QCOMPARE(findings[0].text, QString::fromUtf8("5000 × 210"));
    }
    blank["SIZE_WIDTH"] = 4000; // 15118 of at most 16384 units
    VERIFY_NONE(sheet.check(items, blank));
}

void tst_PageCheck::pageWithoutArea_data()
{
    QTest::addColumn<QVariant>("height");
    QTest::addColumn<QString>("text");
    QTest::newRow("zero") << QVariant(0) << "";
    QTest::newRow("nothing") << QVariant() << "";
    QTest::newRow("negative") << QVariant(-5) << "297 × -5";
    QTest::newRow("beyond any number") << QVariant(Q_INT64_C(99999999999)) << "297 × 99999999999";
    QTest::newRow("no number") << QVariant("A4") << "297 × A4";
}

void tst_PageCheck::pageWithoutArea()
{
    QFETCH(QVariant, height);
    QFETCH(QString, text);
    CheckedPage sheet;
    const QVector<Finding> findings =
        sheet.check({textItem("#LNAME", QRectF(100, 100, 400, 40))}, {{"SIZE_HEIGHT", height}});
    QCOMPARE(findings.size(), 1);
    QCOMPARE(findings[0].kind, Kind::PageWithoutArea);
    QCOMPARE(findings[0].text, text);
    QVERIFY(sheet.print().ink().isNull());
}

void tst_PageCheck::emptyValues()
{
    CheckedPage sheet;
    const QVector<Finding> findings =
        sheet.check({textItem("#LNAME #MNAME", QRectF(100, 100, 400, 40)),
                     textItem("#ORG_REGION,,", QRectF(100, 200, 400, 40)),
                     blankItem(1, "#BLANK_NO;#MNAME", QRectF(700, 100, 98, 98))},
                    {}, {}, {{"MNAME", ""}});
    QCOMPARE(findings.size(), 3);
    for (const Finding& finding : findings) {
        QCOMPARE(finding.kind, Finding::Kind::TagEmpty);
        QCOMPARE(finding.severity, Finding::Severity::Warning);
    }
    QCOMPARE(findings[0].tag, QString("#MNAME"));
    QCOMPARE(findings[0].item, 1);
    QVERIFY(!findings[0].isOfBlank());
    QCOMPARE(findings[1].tag, QString("#ORG_REGION"));
    QVERIFY(findings[1].isOfBlank()); // whatever document it prints
    QCOMPARE(findings[2].item, 3);
    QCOMPARE(FindingWords().sentence(findings[0]).section(": ", 1),
             QString("the tag #MNAME has no value: nothing is printed"));
}

void tst_PageCheck::fieldNamedLikeTheOrganisations()
{
    CheckedPage sheet;
    const QVector<Finding> findings =
        sheet.check({textItem("#ORG_INN", QRectF(100, 100, 400, 40))}, {},
                    {{"#ORG_INN", QJsonObject{{"type", 0}, {"value", ""}}}});
    QCOMPARE(findings.size(), 1);
    QCOMPARE(findings[0].kind, Kind::TagEmpty);
    QVERIFY(!findings[0].isOfBlank()); // another document may have a value there
}

void tst_PageCheck::whatCannotBeRead()
{
    CheckedPage sheet;
    sheet.check({});
    QVERIFY(!sheet.pageCheck.check(77, 1));
    QVERIFY(!sheet.pageCheck.check(1, 77));
    QVERIFY(sheet.pageCheck.check(1, 1));
}

void tst_PageCheck::oddItems()
{
    CheckedPage sheet;
    const QVector<Finding> findings =
        sheet.check({"text", QJsonValue(), 5, QJsonArray(), QJsonObject(),
                     textItem("#CITY", QRectF(100, 100, -400, -40)),
                     textItem("#TOWN", QRectF(1e12, -1e12, 1e12, 1e12)),
                     blankItem(7, "#LNAME", QRectF(100, 500, 200, 40))},
                    {}, {{"#GRADES", 5}});
    QCOMPARE(ofKind(findings, Kind::TagNotExpanded).size(), 2);
    QCOMPARE(ofKind(findings, Kind::TagNotExpanded)[0].item, 6);
    QCOMPARE(ofKind(findings, Kind::OutsidePage)[0].item, 7);
}

// Broken rows of the blank are an empty page, as in printing.
void tst_PageCheck::blankWithoutFrames_data()
{
    QTest::addColumn<QVariantMap>("blank");
    QTest::newRow("nothing on it") << QVariantMap();
    QTest::newRow("broken") << QVariantMap{{"CONTENT", "{\"fields\": [{\"val"}};
    QTest::newRow("NULL") << QVariantMap{{"CONTENT", QVariant()}};
}

void tst_PageCheck::blankWithoutFrames()
{
    QFETCH(QVariantMap, blank);
    CheckedPage sheet;
    const QVector<Finding> findings = sheet.check({}, blank);
    QCOMPARE(findings.size(), 1);
    QCOMPARE(findings[0].kind, Kind::PageWithoutFrames);
    QCOMPARE(findings[0].severity, Severity::Error);
    QVERIFY(findings[0].isOfBlank());
    QVERIFY2(FindingWords()
                 .sentence(findings[0])
                 .endsWith(": there is no frame on the blank: no value is printed"),
             qPrintable(FindingWords().sentence(findings[0])));
}

QTEST_MAIN(tst_PageCheck)
#include "tst_PageCheck.moc"
