#include <QtTest>

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QGraphicsItem>
#include <QGraphicsScene>
#include <QLineEdit>
#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>
#include <QPushButton>
#include <QStyle>
#include <QTableWidget>

#include "forms/FormDefinitions.h"
#include "render/PrinPreviewDialog.h"
#include "support/LogCatcher.h"
#include "support/ModalDriver.h"
#include "support/PdfMeasure.h"
#include "support/PrintFixture.h"
#include "support/Process.h"

namespace {

constexpr double markTolerance = 0.3; // millimetres
constexpr double pageTolerance = 0.5; // millimetres

/// Side of a version 12 symbol without its quiet zone, and the width of that zone: modules, of
/// one scene unit each.
constexpr int symbolSide = 65;
constexpr int quietZone = 4;

/// What the toolkit's layouts leave free on each side of a frame, in scene units.
int layoutMargin()
{
    return QApplication::style()->pixelMetric(QStyle::PM_LayoutLeftMargin);
}

/// A document on a blank, printed to a PDF file without a window.
class Sheet : public PrintFixture
{
public:
    void build(const QJsonArray& items, const QVariantMap& blank = {},
               const QJsonObject& content = {})
    {
        const QVariant docId = addDocument(content);
        const QVariant blankId = addBlank(items, blank);
        dialog = std::make_unique<PrinPreviewDialog>(docId);
        if (!dialog->buildScene(dialog->pageScene(), docId, blankId)) {
            QTest::qFail("the page could not be built", __FILE__, __LINE__);
        }
    }

    QString file() const { return path("page.pdf"); }

    bool print()
    {
        QPrinter printer(QPrinter::HighResolution);
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(file());
        return dialog->printTo(printer);
    }

    std::unique_ptr<PrinPreviewDialog> dialog;
};

/// A QR item with its quiet zone's corner at x, y.
QJsonObject qrItem(double x, double y)
{
    return blankItem(1, "#BLANK_NO", QRectF(x, y, 98, 98));
}

/// How far a rectangle is off another one, at its worst edge.
double distance(const QRectF& a, const QRectF& b)
{
    return qMax(qMax(qAbs(a.left() - b.left()), qAbs(a.right() - b.right())),
                qMax(qAbs(a.top() - b.top()), qAbs(a.bottom() - b.bottom())));
}

QByteArray describe(const QRectF& actual, const QRectF& expected)
{
    const auto text = [](const QRectF& box) {
        return QString("%1..%2 x %3..%4 mm")
            .arg(box.left())
            .arg(box.right())
            .arg(box.top())
            .arg(box.bottom());
    };
    return (text(actual) + " instead of " + text(expected)).toUtf8();
}

QRectF scaled(const QRectF& units, double millimetresPerUnit)
{
    return {units.topLeft() * millimetresPerUnit, units.size() * millimetresPerUnit};
}

/// A white picture with a black square of 100 by 100 at 200, 300.
bool writeBackground(const QString& path, const QSize& size)
{
    QImage picture(size, QImage::Format_RGB32);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    painter.fillRect(200, 300, 100, 100, Qt::black);
    painter.end();
    return picture.save(path);
}

} // namespace

/// Paper, measured in millimetres. Expected places come from the chain scene unit, print offset,
/// scale: a mark at scene position p lies at (p - offset) * millimetres per unit, and the unit is
/// the smaller of page width by scene width and page height by scene height. The scenes' sizes and
/// the offsets in units are written down as numbers, worked out by hand.
class tst_Printing : public QObject
{
    Q_OBJECT

private slots:
    void marks_data();
    void marks();
    void unknownFormat();
    void strangePaper_data();
    void strangePaper();
    void cutAtTheScenesEdge();
    void cutAtTheScenesFarEdge();
    void background_data();
    void background();
    void noBackgroundAfterChangingTheBlank();
    void qrSymbolCanBeRead();
    void textIsText();
    void tableColumnsAndRows();
    void alignments();
    void inkIsBlackUnderADarkDesktop();

    void withoutAPage();
    void acceptsWhileThePainterIsOpen();
    void printerThatFails();
    void severalPages();
    void dialogCancelled();
    void dialogAccepted();
};

void tst_Printing::marks_data()
{
    QTest::addColumn<int>("format");
    QTest::addColumn<int>("orientation");
    QTest::addColumn<QSize>("size");        // of the blank, millimetres
    QTest::addColumn<QPoint>("offset");     // of the blank, millimetres
    QTest::addColumn<QSizeF>("page");       // on paper, millimetres
    QTest::addColumn<double>("unit");       // millimetres per scene unit
    QTest::addColumn<QPoint>("unitOffset"); // scene units

    const QPoint none(0, 0);
    // 297 mm are 1122 units, 210 mm 793, 148 mm 559: times 3.7795, cut off.
    QTest::newRow("A4 landscape") << 0 << 0 << QSize(297, 210) << none << QSizeF(297, 210)
                                  << 210.0 / 793 << none;
    QTest::newRow("A4 portrait") << 0 << 1 << QSize(210, 297) << none << QSizeF(210, 297)
                                 << 297.0 / 1122 << none;
    QTest::newRow("A5 landscape") << 1 << 0 << QSize(210, 148) << none << QSizeF(210, 148)
                                  << 148.0 / 559 << none;
    QTest::newRow("A5 portrait") << 1 << 1 << QSize(148, 210) << none << QSizeF(148, 210)
                                 << 148.0 / 559 << none;
    QTest::newRow("custom landscape")
        << 42 << 0 << QSize(297, 210) << none << QSizeF(297, 210) << 210.0 / 793 << none;
    // 250 mm are 944 units, 171 mm 646; 171/646 is the smaller ratio (250/944 = 0.26483).
    QTest::newRow("custom landscape, no named size")
        << 42 << 0 << QSize(250, 171) << none << QSizeF(250, 171) << 171.0 / 646 << none;
    // 296 mm are 1118 units, 209 mm 789: a millimetre less than A4, and not to be taken for it.
    QTest::newRow("custom landscape, nearly A4")
        << 42 << 0 << QSize(296, 209) << none << QSizeF(296, 209) << 296.0 / 1118 << none;
    // The sides reach the printer exchanged: 190 mm (718 units) wide and 270 mm (1020) high become
    // a sheet 270 wide and 190 high, on which the scene shrinks to the height.
    QTest::newRow("custom portrait")
        << 42 << 1 << QSize(190, 270) << none << QSizeF(270, 190) << 190.0 / 1020 << none;
    QTest::newRow("upright scene on landscape A4")
        << 0 << 0 << QSize(210, 297) << none << QSizeF(297, 210) << 210.0 / 1122 << none;
    QTest::newRow("A5 scene on A4")
        << 0 << 1 << QSize(148, 210) << none << QSizeF(210, 297) << 297.0 / 793 << none;
    // 2 mm are 7 units (7.559), -3 mm are -11 (-11.3385), 10 mm 37, 4 mm 15 (15.118).
    QTest::newRow("offset 2, -3") << 0 << 0 << QSize(297, 210) << QPoint(2, -3) << QSizeF(297, 210)
                                  << 210.0 / 793 << QPoint(7, -11);
    QTest::newRow("offset -3, 2") << 0 << 1 << QSize(210, 297) << QPoint(-3, 2) << QSizeF(210, 297)
                                  << 297.0 / 1122 << QPoint(-11, 7);
    QTest::newRow("offset -10, -4") << 42 << 0 << QSize(297, 210) << QPoint(-10, -4)
                                    << QSizeF(297, 210) << 210.0 / 793 << QPoint(-37, -15);
}

void tst_Printing::marks()
{
    QFETCH(int, format);
    QFETCH(int, orientation);
    QFETCH(QSize, size);
    QFETCH(QPoint, offset);
    QFETCH(QSizeF, page);
    QFETCH(double, unit);
    QFETCH(QPoint, unitOffset);

    const QVector<QPointF> symbols = {{20, 20},     {210.5, 20}, {420, 24.25},
                                      {20, 400.75}, {210, 400},  {450.5, 440}};
    const QRectF leftText(20, 130, 180, 60);
    const QRectF rightText(220, 130, 230, 60);
    const QVector<QRectF> strokes = {{20, 220, 200, 120}, {260, 230.5, 180, 140}};

    QJsonArray items;
    for (const QPointF& symbol : symbols) {
        items.append(qrItem(symbol.x(), symbol.y()));
    }
    items.append(blankItem(0, "Левый", leftText, {{"h_align", 0}}));
    items.append(blankItem(0, "Правый", rightText, {{"h_align", 1}}));
    for (const QRectF& stroke : strokes) {
        items.append(blankItem(0, "Росчерк", stroke, {{"f_cut", 1}}));
    }
    QVERIFY(items.size() >= 10);
    Sheet sheet;
    sheet.build(items, {{"PAPER_FORMAT", format},
                        {"PAPER_ORIENTATION", orientation},
                        {"SIZE_WIDTH", size.width()},
                        {"SIZE_HEIGHT", size.height()},
                        {"OFFSET_X", offset.x()},
                        {"OFFSET_Y", offset.y()}});
    QVERIFY(sheet.print());
    const PdfMeasure pdf(sheet.file());

    QCOMPARE(pdf.pageCount(), 1);
    QVERIFY(qAbs(pdf.pageSize().width() - page.width()) < pageTolerance);
    QVERIFY(qAbs(pdf.pageSize().height() - page.height()) < pageTolerance);

    // The outer modules of the three finder patterns are dark on all four sides of a symbol.
    for (const QPointF& symbol : symbols) {
        const QPointF corner = symbol + QPointF(quietZone, quietZone) - unitOffset;
        const QRectF expected = scaled(QRectF(corner, QSizeF(symbolSide, symbolSide)), unit);
        const QRectF found = pdf.ink(expected.adjusted(-1, -1, 1, 1));
        QVERIFY2(distance(found, expected) < markTolerance, describe(found, expected));
    }

    // A label has no margin of its own: text begins and ends at the layout's margin.
    const int margin = layoutMargin();
    const double left = (leftText.left() + margin - unitOffset.x()) * unit;
    QVERIFY(qAbs(pdf.word("Левый").box.left() - left) < markTolerance);
    const double right = (rightText.right() - margin - unitOffset.x()) * unit;
    QVERIFY(qAbs(pdf.word("Правый").box.right() - right) < markTolerance);

    // The stroke is as wide as the frame and begins at the margin. The centre of its lower bar,
    // which is one unit thick, lies one unit above the margin at the bottom.
    for (const QRectF& stroke : strokes) {
        const QRectF bar(stroke.left() + margin - unitOffset.x(),
                         stroke.bottom() - margin - 1.5 - unitOffset.y(), stroke.width(), 1);
        const QRectF expected = scaled(bar, unit);
        const QRectF region(expected.left() - 2, expected.top() - 0.4, expected.width() + 4,
                            expected.height() + 3);
        const QRectF found = pdf.ink(region);
        QVERIFY2(qAbs(found.left() - expected.left()) < markTolerance, describe(found, expected));
        QVERIFY2(qAbs(found.right() - expected.right()) < markTolerance, describe(found, expected));
        QVERIFY2(qAbs(found.bottom() - expected.bottom()) < markTolerance,
                 describe(found, expected));
    }
}

void tst_Printing::unknownFormat()
{
    Sheet sheet;
    sheet.build({qrItem(100, 100)}, {{"PAPER_FORMAT", 7}, {"PAPER_ORIENTATION", 1}});
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(sheet.file());
    printer.setPageSize(QPageSize(QPageSize::B5));
    LogCatcher log;
    QVERIFY(sheet.dialog->printTo(printer));
    QCOMPARE(log.count("PrinPreviewDialog Error: Unknown page format"), 1);

    // The paper stays the one of the print dialog, 176 by 250 mm, and 1122 units fit its width.
    const PdfMeasure pdf(sheet.file());
    QVERIFY(qAbs(pdf.pageSize().width() - 176) < pageTolerance);
    QVERIFY(qAbs(pdf.pageSize().height() - 250) < pageTolerance);
    const QRectF expected = scaled(QRectF(104, 104, 65, 65), 176.0 / 1122);
    QVERIFY(distance(pdf.ink(), expected) < markTolerance);
}

void tst_Printing::strangePaper_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("no width") << QSize(0, 210);
    QTest::newRow("no height") << QSize(297, 0);
    QTest::newRow("nothing") << QSize(0, 0);
    QTest::newRow("negative") << QSize(-5, -5);
}

void tst_Printing::strangePaper()
{
    QFETCH(QSize, size);
    Sheet sheet;
    sheet.build({qrItem(10, 10), blankItem(0, "Текст", QRectF(100, 100, 200, 50))},
                {{"SIZE_WIDTH", size.width()}, {"SIZE_HEIGHT", size.height()}});
    QVERIFY(sheet.print());
    QCOMPARE(PdfMeasure(sheet.file()).pageCount(), 1);
}

void tst_Printing::cutAtTheScenesEdge()
{
    Sheet sheet;
    // 10 mm are 37 units: of the symbol's 65 dark columns from -33 on, 32 are left on the page.
    sheet.build({qrItem(0, 100), qrItem(300, 0)}, {{"OFFSET_X", 10}, {"OFFSET_Y", 10}});
    QVERIFY(sheet.print());
    const PdfMeasure pdf(sheet.file());
    const double unit = 210.0 / 793;
    const QRectF left = pdf.ink(QRectF(0, 10, 40, 60));
    QVERIFY(left.left() < 1.1 * unit);
    QVERIFY(qAbs(left.right() - 32 * unit) < markTolerance);
    const QRectF top = pdf.ink(QRectF(60, 0, 60, 15));
    QVERIFY(top.top() < 1.1 * unit);
    QVERIFY(qAbs(top.bottom() - 32 * unit) < markTolerance);
}

void tst_Printing::cutAtTheScenesFarEdge()
{
    Sheet sheet;
    // An upright scene on landscape A4: the paper goes on to the right, the scene does not.
    sheet.build({qrItem(750, 100), blankItem(0, "Длинный текст", QRectF(700, 300, 400, 60))},
                {{"PAPER_FORMAT", 0}, {"SIZE_WIDTH", 210}, {"SIZE_HEIGHT", 297}});
    QVERIFY(sheet.print());
    const PdfMeasure pdf(sheet.file());
    const double unit = 210.0 / 1122;
    const QRectF ink = pdf.ink();
    QVERIFY(qAbs(ink.left() - 754 * unit) < markTolerance);
    QVERIFY(qAbs(ink.right() - 793 * unit) < markTolerance);
}

void tst_Printing::background_data()
{
    QTest::addColumn<bool>("checked");
    QTest::addColumn<QPoint>("offset"); // millimetres
    QTest::addColumn<QPoint>("unitOffset");
    QTest::newRow("absent") << false << QPoint(0, 0) << QPoint(0, 0);
    QTest::newRow("absent, offset") << false << QPoint(5, 5) << QPoint(18, 18);
    QTest::newRow("printed") << true << QPoint(0, 0) << QPoint(0, 0);
    QTest::newRow("printed and moved") << true << QPoint(10, -4) << QPoint(37, -15);
}

void tst_Printing::background()
{
    QFETCH(bool, checked);
    QFETCH(QPoint, offset);
    QFETCH(QPoint, unitOffset);
    Sheet sheet;
    QVERIFY(writeBackground(sheet.path("back.png"), QSize(2244, 1586)));
    sheet.build(
        {qrItem(600, 400)},
        {{"BACKGROUND_IMG", "back.png"}, {"OFFSET_X", offset.x()}, {"OFFSET_Y", offset.y()}});
    auto* check = sheet.dialog->findChild<QCheckBox*>("checkPrintBG");
    QVERIFY(!check->isChecked());
    check->setChecked(checked);
    QVERIFY(sheet.print());

    const PdfMeasure pdf(sheet.file());
    const double unit = 210.0 / 793;
    const QRectF symbol = scaled(QRectF(QPointF(604, 404) - unitOffset, QSizeF(65, 65)), unit);
    const QRectF foundSymbol = pdf.ink(QRectF(120, 80, 100, 100));
    QVERIFY2(distance(foundSymbol, symbol) < markTolerance, describe(foundSymbol, symbol));
    const QRectF found = pdf.ink(QRectF(0, 0, 100, 100));
    if (!checked) {
        QVERIFY(found.isNull());
        return;
    }
    // The picture is twice as large as the scene: its square stands at 100, 150, with sides of 50.
    const QRectF square = scaled(QRectF(QPointF(100, 150) - unitOffset, QSizeF(50, 50)), unit);
    QVERIFY2(distance(found, square) < markTolerance, describe(found, square));
}

void tst_Printing::noBackgroundAfterChangingTheBlank()
{
    PrintFixture app;
    QVERIFY(writeBackground(app.path("back.png"), QSize(1122, 793)));
    const QVariant with = app.addBlank({qrItem(10, 10)}, {{"BACKGROUND_IMG", "back.png"}});
    const QVariant without = app.addBlank({qrItem(500, 300)});
    const QVariant doc = app.addDocument();
    PrinPreviewDialog dialog(doc);
    QVERIFY(dialog.buildScene(dialog.pageScene(), doc, with));
    QVERIFY(dialog.buildScene(dialog.pageScene(), doc, without));
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(app.path("page.pdf"));
    QVERIFY(dialog.printTo(printer));
    const PdfMeasure pdf(app.path("page.pdf"));
    QVERIFY(distance(pdf.ink(), scaled(QRectF(504, 304, 65, 65), 210.0 / 793)) < markTolerance);
}

void tst_Printing::qrSymbolCanBeRead()
{
    Sheet sheet;
    QVERIFY(writeBackground(sheet.path("back.png"), QSize(1122, 793)));
    // Over the dark square of a printed background as well: the light modules are white, not clear.
    sheet.build({blankItem(1, "https://example.org/#BLANK_NO", QRectF(210, 310, 98, 98))},
                {{"BACKGROUND_IMG", "back.png"}});
    sheet.dialog->findChild<QCheckBox*>("checkPrintBG")->setChecked(true);
    QVERIFY(sheet.print());
    const PdfMeasure pdf(sheet.file());
    QVERIFY(pdf.image().save(sheet.path("page.png")));
    const ProcessResult read = runProcess(
        "zbarimg", {"-q", "--raw", "-Sdisable", "-Sqrcode.enable", sheet.path("page.png")});
    QCOMPARE(QString::fromUtf8(read.out).trimmed(), QString("https://example.org/000123"));

    // Sharp: at 600 dots per inch a module is six dots wide, and no dot is a shade of grey but
    // those that a module's edge crosses. Smoothing would leave no pure dot at all.
    const QRectF middle = scaled(QRectF(240, 330, 40, 40), 210.0 / 793);
    const double dots = 600 / 25.4;
    const QImage part = PdfMeasure(sheet.file(), 600)
                            .image()
                            .copy(QRectF(middle.topLeft() * dots, middle.size() * dots).toRect());
    int pure = 0;
    for (int y = 0; y < part.height(); ++y) {
        for (int x = 0; x < part.width(); ++x) {
            const int shade = qGray(part.pixel(x, y));
            pure += shade < 8 || shade > 247 ? 1 : 0;
        }
    }
    QVERIFY(pure > part.width() * part.height() * 6 / 10);
}

void tst_Printing::textIsText()
{
    Sheet sheet;
    QJsonArray items;
    for (int i = 0; i < 20; ++i) {
        const int column = i % 2;
        const int row = i / 2;
        items.append(blankItem(0, "Аттестат выдан: #LNAME #FNAME, ё «№»",
                               QRectF(20 + column * 500, 20 + row * 70, 450, 60)));
    }
    items.append(blankItem(2, "#T", QRectF(20, 700, 500, 90)));
    sheet.build(items, {}, {{"#T", tableEntry({{"Математика", "отлично"}})}});
    QVERIFY(sheet.print());
    const PdfMeasure pdf(sheet.file());
    QCOMPARE(pdf.text().count("Аттестат выдан: Иванов Иван, ё «№»"), 20);
    QVERIFY(!pdf.word("Математика").box.isNull());
    QVERIFY(!pdf.word("отлично").box.isNull());
    QVERIFY(QFileInfo(sheet.file()).size() < 60000);
    QCOMPARE(runProcess("pdfimages", {"-list", sheet.file()}).out.count('\n'), 2); // the heading
}

void tst_Printing::tableColumnsAndRows()
{
    Sheet sheet;
    const QVector<QStringList> rows = {
        {"Алгебра", "5", "пять"}, {"Физика", "4", "четыре"}, {"Химия", "3", "три"}};
    sheet.build({blankItem(2, "#T", QRectF(100, 100, 600, 300),
                           {{"columns_width", QJsonArray{250, 90}}, {"line_spacing", "2,0"}})},
                {}, {{"#T", tableEntry(rows)}});
    QVERIFY(sheet.print());
    const PdfMeasure pdf(sheet.file());
    const double unit = 210.0 / 793;

    // Cells begin with the same inset, so that the words of two columns are a column width apart.
    const double first = pdf.word("Алгебра").box.left();
    const double inset = first - (100 + layoutMargin()) * unit;
    QVERIFY(inset >= 0 && inset < 5 * unit);
    QVERIFY(qAbs(pdf.word("5").box.left() - first - 250 * unit) < markTolerance);
    QVERIFY(qAbs(pdf.word("пять").box.left() - first - 340 * unit) < markTolerance);
    QVERIFY(qAbs(pdf.word("Химия").box.left() - first) < markTolerance);

    const int rowHeight = 2 * QFontMetrics(QFont("Liberation Serif", 12)).height();
    const double firstRow = pdf.word("Алгебра").box.top();
    QVERIFY(qAbs(pdf.word("Физика").box.top() - firstRow - rowHeight * unit) < markTolerance);
    QVERIFY(qAbs(pdf.word("Химия").box.top() - firstRow - 2 * rowHeight * unit) < markTolerance);
    // The text stands in the middle of the first row's height.
    const double middle = (100 + layoutMargin() + rowHeight / 2.0) * unit;
    QVERIFY(qAbs(pdf.word("Алгебра").box.center().y() - middle) < 2 * unit);
}

void tst_Printing::alignments()
{
    Sheet sheet;
    QJsonArray items;
    for (int horizontal = 0; horizontal < 3; ++horizontal) {
        for (int vertical = 0; vertical < 3; ++vertical) {
            items.append(blankItem(0, QString("х%1у%2").arg(horizontal).arg(vertical),
                                   QRectF(50 + 300 * horizontal, 50 + 200 * vertical, 280, 180),
                                   {{"h_align", horizontal}, {"v_align", vertical}}));
        }
    }
    sheet.build(items);
    QVERIFY(sheet.print());
    const PdfMeasure pdf(sheet.file());
    const double unit = 210.0 / 793;
    const int margin = layoutMargin();
    for (int horizontal = 0; horizontal < 3; ++horizontal) {
        for (int vertical = 0; vertical < 3; ++vertical) {
            const QRectF room = scaled(QRectF(50 + 300 * horizontal, 50 + 200 * vertical, 280, 180)
                                           .adjusted(margin, margin, -margin, -margin),
                                       unit);
            const QRectF word = pdf.word(QString("х%1у%2").arg(horizontal).arg(vertical)).box;
            QVERIFY(!word.isNull());
            const double x[] = {word.left() - room.left(), word.right() - room.right(),
                                word.center().x() - room.center().x()};
            QVERIFY(qAbs(x[horizontal]) < markTolerance);
            // The font's box of poppler is a little lower than the line of Qt.
            const double y[] = {word.top() - room.top(), word.bottom() - room.bottom(),
                                word.center().y() - room.center().y()};
            QVERIFY2(qAbs(y[vertical]) < 1.0, QByteArray::number(y[vertical]));
        }
    }
}

void tst_Printing::inkIsBlackUnderADarkDesktop()
{
    const QPalette light = QApplication::palette();
    QPalette dark(QColor(40, 40, 40), QColor(20, 20, 20));
    dark.setColor(QPalette::WindowText, Qt::white);
    dark.setColor(QPalette::Text, Qt::white);
    QApplication::setPalette(dark);
    Sheet sheet;
    sheet.build({blankItem(0, "Текст", QRectF(100, 100, 300, 60)),
                 blankItem(2, "#T", QRectF(100, 300, 300, 90))},
                {}, {{"#T", tableEntry({{"Алгебра", "5"}})}});
    QVERIFY(sheet.print());
    QApplication::setPalette(light);
    const PdfMeasure pdf(sheet.file());
    for (const char* text : {"Текст", "Алгебра", "5"}) {
        const QRectF box = pdf.word(text).box;
        QVERIFY(!box.isNull());
        QVERIFY2(!pdf.ink(box).isNull(), text);
    }
}

void tst_Printing::withoutAPage()
{
    PrintFixture app;
    PrinPreviewDialog dialog(app.addDocument());
    QSignalSpy accepted(&dialog, &QDialog::accepted);
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(app.path("page.pdf"));
    QVERIFY(!dialog.printTo(printer));
    QVERIFY(accepted.isEmpty());
    QVERIFY(!QFileInfo::exists(app.path("page.pdf")));
}

void tst_Printing::acceptsWhileThePainterIsOpen()
{
    Sheet sheet;
    sheet.build({qrItem(10, 10)});
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(sheet.file());
    QVector<QPrinter::PrinterState> states;
    connect(sheet.dialog.get(), &QDialog::accepted, [&] { states << printer.printerState(); });
    QVERIFY(sheet.dialog->printTo(printer));
    QCOMPARE(states, QVector<QPrinter::PrinterState>{QPrinter::Active});
    QCOMPARE(sheet.dialog->result(), int(QDialog::Accepted));
    QCOMPARE(printer.printerState(), QPrinter::Idle);
    QVERIFY(printer.fullPage());
    QCOMPARE(printer.pageLayout().margins(), QMarginsF(0, 0, 0, 0));
}

void tst_Printing::printerThatFails()
{
    Sheet sheet;
    sheet.build({qrItem(10, 10)});
    QSignalSpy accepted(sheet.dialog.get(), &QDialog::accepted);
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(sheet.path("no/such/folder/page.pdf"));
    QVERIFY(sheet.dialog->printTo(printer));
    QCOMPARE(accepted.size(), 1);
}

void tst_Printing::severalPages()
{
    PrintFixture app;
    const QVariant landscape = app.addBlank({qrItem(100, 100)});
    const QVariant portrait = app.addBlank(
        {qrItem(200, 300)},
        {{"PAPER_FORMAT", 1}, {"PAPER_ORIENTATION", 1}, {"SIZE_WIDTH", 148}, {"SIZE_HEIGHT", 210}});
    const QVariant doc = app.addDocument();
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(app.path("pages.pdf"));
    PrinPreviewDialog dialog(doc);
    QPainter painter;
    for (const QVariant& blank : {landscape, portrait, landscape}) {
        QVERIFY(dialog.buildScene(dialog.pageScene(), doc, blank));
        QVERIFY(dialog.printPage(printer, painter));
    }
    painter.end();

    const PdfMeasure pdf(app.path("pages.pdf"));
    QCOMPARE(pdf.pageCount(), 3);
    QVERIFY(qAbs(pdf.pageSize(1).width() - 297) < pageTolerance);
    QVERIFY(qAbs(pdf.pageSize(2).width() - 148) < pageTolerance);
    QVERIFY(qAbs(pdf.pageSize(2).height() - 210) < pageTolerance);
    QVERIFY(qAbs(pdf.pageSize(3).width() - 297) < pageTolerance);
    const QRectF onLandscape = scaled(QRectF(104, 104, 65, 65), 210.0 / 793);
    QVERIFY(distance(pdf.ink(QRectF(), 1), onLandscape) < markTolerance);
    QVERIFY(distance(pdf.ink(QRectF(), 3), onLandscape) < markTolerance);
    const QRectF onPortrait = scaled(QRectF(204, 304, 65, 65), 148.0 / 559);
    QVERIFY(distance(pdf.ink(QRectF(), 2), onPortrait) < markTolerance);
}

void tst_Printing::dialogCancelled()
{
    PrintFixture app;
    app.addBlank({qrItem(100, 100)}, {{"OFFSET_X", 5}});
    PrinPreviewDialog dialog(app.addDocument());
    ModalDriver driver;
    driver.expect<PrinPreviewDialog>([](PrinPreviewDialog* shown) {
        auto* print = shown->findChild<QPushButton*>("buttonPrint");
        QTest::mouseClick(print, Qt::LeftButton);
        QVERIFY(shown->isVisible());
        QVERIFY(print->isEnabled());
        QCOMPARE(shown->pageScene()->items().first()->pos(), QPointF(100, 100));
        shown->reject();
    });
    driver.expect<QPrintDialog>([&dialog](QPrintDialog* shown) {
        QCOMPARE(shown->parentWidget(), &dialog);
        QVERIFY(!dialog.findChild<QPushButton*>("buttonPrint")->isEnabled());
        QTest::mouseClick(shown->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Cancel),
                          Qt::LeftButton);
    });
    QCOMPARE(dialog.exec(), int(QDialog::Rejected));
    QVERIFY2(driver.finished(), driver.failures());
}

void tst_Printing::dialogAccepted()
{
    PrintFixture app;
    app.addBlank(
        {qrItem(100, 100)},
        {{"PAPER_FORMAT", 1}, {"PAPER_ORIENTATION", 1}, {"SIZE_WIDTH", 148}, {"SIZE_HEIGHT", 210}});
    PrinPreviewDialog dialog(app.addDocument());
    ModalDriver driver;
    driver.expect<PrinPreviewDialog>([](PrinPreviewDialog* shown) {
        QTest::mouseClick(shown->findChild<QPushButton*>("buttonPrint"), Qt::LeftButton);
        QVERIFY(!shown->isVisible());
        QVERIFY(shown->findChild<QPushButton*>("buttonPrint")->isEnabled());
    });
    driver.expect<QPrintDialog>([&app](QPrintDialog* shown) {
        QCOMPARE(shown->printer()->resolution(), QPrinter(QPrinter::HighResolution).resolution());
        // What is chosen here is overruled by the blank.
        shown->printer()->setPageSize(QPageSize(QPageSize::A3));
        shown->printer()->setPageOrientation(QPageLayout::Landscape);
        shown->findChild<QLineEdit*>("filename")->setText(app.path("chosen.pdf"));
        QTest::mouseClick(shown->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok),
                          Qt::LeftButton);
    });
    QCOMPARE(dialog.exec(), int(QDialog::Accepted));
    QVERIFY2(driver.finished(), driver.failures());
    const PdfMeasure pdf(app.path("chosen.pdf"));
    QCOMPARE(pdf.pageCount(), 1);
    QVERIFY(qAbs(pdf.pageSize().width() - 148) < pageTolerance);
    QVERIFY(qAbs(pdf.pageSize().height() - 210) < pageTolerance);
    QVERIFY(distance(pdf.ink(), scaled(QRectF(104, 104, 65, 65), 148.0 / 559)) < markTolerance);
}

QTEST_MAIN(tst_Printing)
#include "tst_Printing.moc"
