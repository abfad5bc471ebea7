#include <QtTest>

#include <QLabel>
#include <QRandomGenerator>

#include "render/page/FrameLabel.h"
#include "render/page/MarkupBound.h"
#include "render/page/PageWidget.h"

namespace {

constexpr int characters = 32768; // that a text may have

QString paragraph(const QString& markup)
{
    return "<p style=\"line-height: 100%;\">" + markup + "</p>";
}

QString times(int count, const char* text)
{
    return QString(text).repeated(count);
}

QString word(QRandomGenerator& random)
{
    QString text;
    const int length = random.bounded(1, 14);
    for (int i = 0; i < length; ++i) {
        text += QChar(0x430 + random.bounded(32));
    }
    return text;
}

/// Words, line feeds, signs, and whole elements, as somebody would write them who knows markup.
QString randomText(QRandomGenerator& random, int size, bool hasMarkup)
{
    static const QStringList tags = {"b", "i", "u", "small", "sub", "center", "div", "font size=2"};
    QString text;
    while (text.size() < size) {
        const int kind = random.bounded(hasMarkup ? 14 : 10);
        if (kind > 9) {
            const QString tag = tags[random.bounded(tags.size())];
            text += '<' + tag + '>' + randomText(random, random.bounded(60), kind > 12) + "</" +
                    tag.section(' ', 0, 0) + '>';
        } else {
            text += kind == 0 ? "\n" : kind == 1 ? "&amp;" : word(random) + ' ';
        }
    }
    return text;
}

/// What a page of 210 by 297 mm shows of a label with the text, in the smallest font of a blank.
template <class Label>
QImage paintedPage(const QString& text, const QSize& frame)
{
    Label label{QString()};
    label.setFont(QFont("Liberation Serif", 8));
    label.setWordWrap(true);
    label.setText(paragraph(text).replace('\n', "<br>"));
    label.setAlignment(Qt::AlignHCenter | Qt::AlignVCenter);
    label.setStyleSheet("background: transparent; border: 0;");
    // A frame grows with the least size of what stands in it.
    label.resize(frame.expandedTo(label.minimumSizeHint()));
    QImage page(793, 1122, QImage::Format_RGB32);
    page.fill(Qt::white);
    label.render(&page, QPoint(), QRegion(), QWidget::DrawChildren);
    return page;
}

} // namespace

/// The bound of what a frame lays out: nothing that a page shows changes, and nothing that anybody
/// writes takes long. A text that would is caught by the time that all tests have.
class tst_MarkupBound : public QObject
{
    Q_OBJECT

private slots:
    void whatAPageShowsStays();
    void longTextsShowTheSame();
    void wholeTextsStay_data();
    void wholeTextsStay();
    void costlyTextsLoseTheirMarkup_data();
    void costlyTextsLoseTheirMarkup();
    void textsAreCutBetweenCharacters_data();
    void textsAreCutBetweenCharacters();
    void cellsAreBounded();
    void anySoupIsLaidOut();
};

void tst_MarkupBound::whatAPageShowsStays()
{
    QRandomGenerator random(20261121);
    for (int i = 0; i < 300; ++i) {
        const QString text = paragraph(randomText(random, random.bounded(9000), true));
        const BoundedMarkup bounded = boundedMarkup(text);
        QVERIFY2(bounded.isWhole && bounded.text == text, qPrintable(text));
    }
}

void tst_MarkupBound::longTextsShowTheSame()
{
    QRandomGenerator random(14);
    for (const QSize& frame : {QSize(793, 1122), QSize(300, 100), QSize(60, 20)}) {
        for (int i = 0; i < 2; ++i) {
            const QString text = randomText(random, characters + random.bounded(20000), false);
            QVERIFY(!boundedMarkup(paragraph(text).replace('\n', "<br>")).isWhole);
            QCOMPARE(paintedPage<FrameLabel>(text, frame),
                     paintedPage<PageWidget<QLabel>>(text, frame));
        }
    }
}

void tst_MarkupBound::wholeTextsStay_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << "";
    QTest::newRow("plain") << "Иванов & сыновья < 5";
    QTest::newRow("as long as may be") << times(characters, "x");
    QTest::newRow("lines") << times(4096, "<br>");
    QTest::newRow("bold words") << times(1300, "<b>слово</b> ");
    QTest::newRow("lists") << times(20, "<ul><li>") + "x";
    QTest::newRow("table") << "<table>" + times(60, "<tr><td>1<td>2<td>3<td>4<td>5<td>6</tr>") +
                                  "</table>";
    QTest::newRow("tables in tables") << times(4, "<table><tr><td>a</td><td>") + "x";
    QTest::newRow("merged cells") << "<table><tr><td colspan=\"12\">x<tr><td>y</table>";
    QTest::newRow("floats") << times(20, "<table style=\"float: left\"><tr><td>x</table>");
    QTest::newRow("style sheet") << "<style>b, i { color: red } u { color: blue }</style>" +
                                        times(50, "<b>x</b>");
    QTest::newRow("large picture")
        << "<img src=\"data:image/png;base64," + times(300000, "A") + "\">";
}

void tst_MarkupBound::wholeTextsStay()
{
    QFETCH(QString, text);
    QVERIFY(boundedMarkup(text).isWhole);
    QCOMPARE(boundedMarkup(text).text, text);
}

void tst_MarkupBound::costlyTextsLoseTheirMarkup_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("end"); // of what is shown
    const auto add = [](const char* name, const QString& text) {
        QTest::newRow(name) << text + "конец"
                            << "конец";
    };
    add("10,900 bold", times(10900, "<b>"));
    add("two million bold", times(2000000, "<b>"));
    add("bold, spelled otherwise", times(10900, "< &#98;>"));
    add("tables in tables", times(7, "<table><tr><td>"));
    add("300 tables in tables", times(300, "<table><tr><td>"));
    add("tables in tables, ends in comments", times(40, "<table><tr><td><!--</table></td>-->"));
    add("tables in tables, ends in quotes",
        times(40, "<table><tr><td title='</td></tr></table></table>'>"));
    add("frames in frames", times(300, "<table style=\"-qt-table-type: frame\"><tr><td>"));
    add("many cells",
        "<table>" + times(100, ("<tr>" + times(40, "<td>x").toUtf8()).constData()) + "</table>");
    add("many cells, spelled otherwise", times(1000, "<\"tr\">") + times(1000, "< 'td'>"));
    add("many columns", "<table><tr><td colspan=\"20000\">x</table>");
    add("many columns of numbers", "<table><tr><td colspan=\"&#50;0000\">x</table>");
    add("many columns, spelled otherwise", "<table><tr><td col&#x73;pan = 020000>x</table>");
    add("many columns and rows", "<table>" + times(900, "<tr><td colspan=\"900\">x") + "</table>");
    add("floats", times(200, "<table style=\"float: left\"><tr><td>x</table>"));
    add("floats of a style sheet",
        "<style>table { float: left }</style>" + times(60, "<table><tr><td>x</table>"));
    add("floats of a loaded style sheet",
        "<link type=\"text/css\" href=\"data:text/css,table{float:left}\"/>" +
            times(60, "<table><tr><td>x</table>"));
    add("floating pictures", times(200, "<img src=\"a.png\" align=\"left\">"));
    add("rules of styles",
        "<style>" + times(4000, "b i{color:red}") + "</style>" + times(300, "<b><i>x</i>"));
    add("a long tag", "<b " + times(5000000, "a") + ">");
    add("a long attribute", "<b title=\"" + times(5000000, "a") + "\">");
    add("many attributes", "<b " + times(1000000, "a=b ") + ">");
    add("a long style", "<b style=\"" + times(100000, "color:red;") + "\">");
    add("a long comment", "<!--" + times(5000000, "a") + "-->");
    add("a very large picture", "<img src=\"data:image/png;base64," + times(5000000, "A") + "\">");
    add("many lines", times(20000, "x<br>"));
    add("many lines of short words", times(20000, "ab\n") + "<b>");
    add("many lines, spelled otherwise", times(20000, "x\u2028"));
    add("many references", times(20000, "&amp;") + "<b>");
}

void tst_MarkupBound::costlyTextsLoseTheirMarkup()
{
    QFETCH(QString, text);
    QFETCH(QString, end);
    for (const QString& markup : {text, paragraph(text)}) {
        const BoundedMarkup bounded = boundedMarkup(markup);
        QVERIFY(!bounded.isWhole);
        QVERIFY(!hasElements(bounded.text));
        QVERIFY(bounded.text.size() <= 2 * characters);
        // Bounded once, it is laid out as it is, as often as it takes.
        QVERIFY(boundedMarkup(bounded.text).isWhole);
        FrameLabel label(markup);
        label.setWordWrap(true);
        QVERIFY(label.minimumSizeHint().isValid());
        QVERIFY(!label.isWhole());
        QCOMPARE(label.text(), bounded.text);
        QVERIFY(bounded.text.endsWith(end) || bounded.text.size() >= characters - 9 ||
                bounded.text.count("<br>") == 4095 || bounded.text.count(QChar(0x2028)) == 4095);
    }
}

void tst_MarkupBound::textsAreCutBetweenCharacters_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("length");
    QTest::newRow("letters") << times(characters + 9, "x") << characters;
    QTest::newRow("pair") << times(characters - 1, "x") + times(9, "🙂") << characters - 1;
    QTest::newRow("reference") << times(characters - 3, "x") + times(9, "&amp;") << characters - 3;
    QTest::newRow("before a reference")
        << times(characters - 5, "x") + times(9, "&amp;") << characters;
}

void tst_MarkupBound::textsAreCutBetweenCharacters()
{
    QFETCH(QString, text);
    QFETCH(int, length);
    QCOMPARE(boundedMarkup(text).text, text.left(length));
    QCOMPARE(boundedMarkup(paragraph(text)).text,
             "<p style=\"line-height: 100%;\">" + text.left(length));
}

void tst_MarkupBound::cellsAreBounded()
{
    QCOMPARE(boundedPlainText("<b> & \n"), QString("<b> & \n"));
    QCOMPARE(boundedPlainText(times(5000000, "x")), times(characters, "x"));
}

/// Elements, attributes, ends and signs in any order, as nobody would write them who means well.
void tst_MarkupBound::anySoupIsLaidOut()
{
    static const QStringList parts = {"<table>",
                                      "<table style='float:left'>",
                                      "<tr>",
                                      "<td>",
                                      "<td colspan=77>",
                                      "<th rowspan=9>",
                                      "</td>",
                                      "</table>",
                                      "<ul>",
                                      "<li>",
                                      "<div>",
                                      "</div>",
                                      "<b>",
                                      "</b>",
                                      "<p align=right>",
                                      "<img src=a.png>",
                                      "<img align=left src='data:,'>",
                                      "<pre>",
                                      "<style>",
                                      "</style>",
                                      "b{",
                                      "}",
                                      "<!--",
                                      "-->",
                                      "<a title='",
                                      "'>",
                                      "\"",
                                      "&#60;",
                                      "&amp;",
                                      "<br>",
                                      "<hr>",
                                      "x ",
                                      "слово",
                                      "<font size=7>",
                                      "<span style='background:url(b.png)'>",
                                      "<center>",
                                      "<sub>"};
    QRandomGenerator random(2026);
    for (int i = 0; i < 400; ++i) {
        const int most = random.bounded(parts.size()) + 1;
        QString text;
        for (int count = random.bounded(400); count > 0; --count) {
            text += parts[random.bounded(most)];
        }
        FrameLabel label(text);
        label.setText(paragraph(text));
        label.setWordWrap(true);
        QVERIFY(label.minimumSizeHint().isValid());
        QImage image(200, 50, QImage::Format_RGB32);
        label.resize(image.size());
        label.render(&image);
    }
}

QTEST_MAIN(tst_MarkupBound)
#include "tst_MarkupBound.moc"
