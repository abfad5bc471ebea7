#include <QtTest>

#include <QPainter>
#include <QPrinter>
#include <QTemporaryDir>

#include <algorithm>
#include <memory>

#include "blanks/BlankRecord.h"
#include "printing/calibration/CalibrationSheet.h"
#include "support/PdfMeasure.h"

namespace {

constexpr double tolerance = 0.1; // millimetres
constexpr int resolution = 600;
constexpr double dotsPerMillimetre = resolution / 25.4;
constexpr int dark = 128;

/// A dark stretch of a line across the page, in millimetres.
struct Run
{
    double centre;
    double width;
};

/// A line across the page at `at`, down it if `isColumn`; from `from` to `to`.
QVector<Run> darkRuns(const QImage& page, bool isColumn, double at, double from, double to)
{
    const int line = static_cast<int>(at * dotsPerMillimetre);
    const int end =
        qMin(isColumn ? page.height() : page.width(), static_cast<int>(to * dotsPerMillimetre));
    QVector<Run> runs;
    int start = -1;
    for (int i = static_cast<int>(from * dotsPerMillimetre); i <= end; ++i) {
        const bool isDark =
            i < end && qGray(isColumn ? page.pixel(line, i) : page.pixel(i, line)) < dark;
        if (isDark && start < 0) {
            start = i;
        } else if (!isDark && start >= 0) {
            runs.append({(start + i) / 2.0 / dotsPerMillimetre, (i - start) / dotsPerMillimetre});
            start = -1;
        }
    }
    return runs;
}

/// The places of the marks along an edge of this length: every `step` millimetres from both ends to
/// the middle, beginning with the tenth.
QVector<double> places(double length, int step)
{
    QVector<double> all;
    for (int mark = 10; 2 * mark <= length; mark += step) {
        all << mark;
        if (2 * mark < length) {
            all << length - mark;
        }
    }
    std::sort(all.begin(), all.end());
    return all;
}

bool isAt(const QVector<Run>& runs, const QVector<double>& expected)
{
    if (runs.size() != expected.size()) {
        qWarning() << runs.size() << "marks instead of" << expected.size();
        return false;
    }
    for (int i = 0; i < runs.size(); ++i) {
        if (qAbs(runs[i].centre - expected[i]) > tolerance || runs[i].width > 0.3) {
            qWarning() << "a mark of" << runs[i].width << "at" << runs[i].centre << "for"
                       << expected[i];
            return false;
        }
    }
    return true;
}

/// Whether a number stands with its middle at the place, inside the base line of the edge, which
/// runs across the page or down it.
bool stands(const QVector<PdfMeasure::Word>& words, double mark, const QPointF& place,
            bool isAcross)
{
    return std::any_of(words.begin(), words.end(), [&](const PdfMeasure::Word& word) {
        const QPointF away = word.box.center() - place;
        const double along = isAcross ? away.x() : away.y();
        const double inward = isAcross ? away.y() : away.x();
        return word.text == QString::number(mark) && qAbs(along) < 0.4 && qAbs(inward) < 3.5;
    });
}

} // namespace

/// The test sheet on paper, measured in the printed file.
class tst_CalibrationSheet : public QObject
{
    Q_OBJECT

private slots:
    void sheets_data();
    void sheets();
    void textInFull();
    void commandInOnePiece();
    void textOnTheSmallestPaper();
    void longNameIsCut();
    void paperTooSmall();
    void printerThatCannotPrint();

private:
    PdfMeasure print(const BlankPaper& paper, const QString& name = "Диплом, титул");
    void checkTicks(const PdfMeasure& pdf, const QSizeF& sheet);
    void checkFrame(const PdfMeasure& pdf, const QSizeF& sheet);
    void checkNumbers(const PdfMeasure& pdf, const QSizeF& sheet);
    void checkNothingOverlaps(const PdfMeasure& pdf, const QSizeF& sheet);

    QTemporaryDir m_dir;
};

PdfMeasure tst_CalibrationSheet::print(const BlankPaper& paper, const QString& name)
{
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(m_dir.filePath("sheet.pdf"));
    // What another job has left on the printer is of no effect.
    printer.setPageMargins(QMarginsF(20, 20, 20, 20), QPageLayout::Millimeter);
    QPainter painter;
    const bool printed =
        CalibrationSheet(paper, name).print(printer, painter) == CalibrationSheet::Result::Printed;
    painter.end();
    return PdfMeasure(printed ? m_dir.filePath("sheet.pdf") : QString(), resolution);
}

void tst_CalibrationSheet::sheets_data()
{
    QTest::addColumn<int>("orientation");
    QTest::addColumn<int>("format");
    QTest::addColumn<QSizeF>("size");
    QTest::addColumn<QSizeF>("sheet");
    using namespace PaperOrientation;
    using namespace PaperFormat;
    const auto add = [](const char* name, int orientation, int format, const QSizeF& size,
                        const QSizeF& sheet) {
        QTest::newRow(name) << orientation << format << size << sheet;
    };
    add("A4 landscape", landscape, a4, QSizeF(297, 210), QSizeF(297, 210));
    add("A4 portrait", portrait, a4, QSizeF(210, 297), QSizeF(210, 297));
    add("A5 landscape", landscape, a5, QSizeF(210, 148), QSizeF(210, 148));
    add("A5 portrait", portrait, a5, QSizeF(148, 210), QSizeF(148, 210));
    add("page of another size", landscape, a5, QSizeF(100, 50), QSizeF(210, 148));
    add("custom landscape", landscape, customMm, QSizeF(105, 99), QSizeF(105, 99));
    add("custom upright", landscape, customMm, QSizeF(61, 90), QSizeF(61, 90));
    add("custom portrait is exchanged", portrait, customMm, QSizeF(70, 125), QSizeF(125, 70));
    add("long", landscape, customMm, QSizeF(60, 200), QSizeF(60, 200));
    add("wide", landscape, customMm, QSizeF(330, 61), QSizeF(330, 61));
    add("smallest", landscape, customMm, QSizeF(60, 60), QSizeF(60, 60));
}

void tst_CalibrationSheet::sheets()
{
    QFETCH(int, orientation);
    QFETCH(int, format);
    QFETCH(QSizeF, size);
    QFETCH(QSizeF, sheet);
    const PdfMeasure pdf = print(BlankPaper(orientation, format, size));
    QCOMPARE(pdf.pageCount(), 1);
    // A named size stands in the file in whole points, 0.35 mm.
    QVERIFY(qAbs(pdf.pageSize().width() - sheet.width()) < 0.2);
    QVERIFY(qAbs(pdf.pageSize().height() - sheet.height()) < 0.2);
    checkTicks(pdf, sheet);
    checkFrame(pdf, sheet);
    checkNumbers(pdf, sheet);
    checkNothingOverlaps(pdf, sheet);
}

void tst_CalibrationSheet::checkTicks(const PdfMeasure& pdf, const QSizeF& sheet)
{
    // All ticks reach 9 mm, the fifth ones 8, the tenth ones 6.5.
    const QImage page = pdf.image();
    const QVector<QPair<double, int>> depths = {{9, 1}, {8, 5}, {6.5, 10}};
    for (const auto& [depth, step] : depths) {
        const QVector<double> across = places(sheet.width(), step);
        QVERIFY(isAt(darkRuns(page, false, depth, 0, sheet.width()), across));
        QVERIFY(isAt(darkRuns(page, false, sheet.height() - depth, 0, sheet.width()), across));
        const QVector<double> down = places(sheet.height(), step);
        QVERIFY(isAt(darkRuns(page, true, depth, 0, sheet.height()), down));
        QVERIFY(isAt(darkRuns(page, true, sheet.width() - depth, 0, sheet.height()), down));
    }
}

void tst_CalibrationSheet::checkFrame(const PdfMeasure& pdf, const QSizeF& sheet)
{
    const QImage page = pdf.image();
    const double right = sheet.width() - 10;
    const double bottom = sheet.height() - 10;
    // The base lines, beside a tick and beside the numbers; straight, so that both ends are looked
    // at.
    for (const double x : {15.5, sheet.width() - 15.5}) {
        QVERIFY(isAt(darkRuns(page, true, x, 0, 10.5), {10}));
        QVERIFY(isAt(darkRuns(page, true, x, bottom - 0.5, sheet.height()), {bottom}));
    }
    for (const double y : {15.5, sheet.height() - 15.5}) {
        QVERIFY(isAt(darkRuns(page, false, y, 0, 10.5), {10}));
        QVERIFY(isAt(darkRuns(page, false, y, right - 0.5, sheet.width()), {right}));
    }
    // The corner marks reach outward beyond all ticks, but not into the white edge of printers.
    for (const double x : {10.0, right}) {
        QVERIFY(isAt(darkRuns(page, false, 5.8, x - 3, x + 3), {x}));
        QVERIFY(isAt(darkRuns(page, false, sheet.height() - 5.8, x - 3, x + 3), {x}));
    }
    for (const double y : {10.0, bottom}) {
        QVERIFY(isAt(darkRuns(page, true, 5.8, y - 3, y + 3), {y}));
        QVERIFY(isAt(darkRuns(page, true, sheet.width() - 5.8, y - 3, y + 3), {y}));
    }
    const QRectF ink = pdf.ink();
    QVERIFY(ink.left() > 5 && ink.top() > 5);
    QVERIFY(ink.right() < sheet.width() - 5 && ink.bottom() < sheet.height() - 5);
    // The cross, outside the circle that may be around its centre.
    const QPointF centre(sheet.width() / 2, sheet.height() / 2);
    for (const double aside : {-2.8, 2.8}) {
        QVERIFY(isAt(darkRuns(page, false, centre.y() + aside, centre.x() - 2, centre.x() + 2),
                     {centre.x()}));
        QVERIFY(isAt(darkRuns(page, true, centre.x() + aside, centre.y() - 2, centre.y() + 2),
                     {centre.y()}));
    }
}

void tst_CalibrationSheet::checkNumbers(const PdfMeasure& pdf, const QSizeF& sheet)
{
    const QVector<PdfMeasure::Word> words = pdf.words();
    const auto checkEdge = [&](double length, double across, bool isAcross) {
        const QVector<double> tens = places(length, 10);
        for (const double place : tens) {
            const bool isOfTheEnd = 2 * place > length;
            const double mark = isOfTheEnd ? length - place : place;
            if (mark == 10 || (isOfTheEnd && 2 * place - length < 5)) {
                continue; // a corner's, or one that would run into its neighbour
            }
            for (const double depth : {10.0, across - 10}) {
                const QPointF at = isAcross ? QPointF(place, depth) : QPointF(depth, place);
                QVERIFY2(stands(words, mark, at, isAcross),
                         qPrintable(QString("%1 at %2, %3").arg(mark).arg(at.x()).arg(at.y())));
            }
        }
    };
    checkEdge(sheet.width(), sheet.height(), true);
    checkEdge(sheet.height(), sheet.width(), false);

    for (const double x : {10.0, sheet.width() - 10}) {
        for (const double y : {10.0, sheet.height() - 10}) {
            QVERIFY(std::any_of(words.begin(), words.end(), [&](const PdfMeasure::Word& word) {
                const QPointF away = word.box.center() - QPointF(x, y);
                return word.text == "10" && qAbs(away.x()) < 3 && qAbs(away.y()) < 3;
            }));
        }
    }
}

void tst_CalibrationSheet::checkNothingOverlaps(const PdfMeasure& pdf, const QSizeF& sheet)
{
    const QVector<PdfMeasure::Word> words = pdf.words();
    const QRectF frame = QRectF(QPointF(), sheet).adjusted(10.3, 10.3, -10.3, -10.3);
    QRectF cross(0, 0, 6.4, 6.4);
    cross.moveCenter(frame.center());
    // Boxes of words are those of their fonts, with room above and below the letters.
    const auto letters = [](const QRectF& box) {
        const double room = box.height() * 0.2;
        return box.adjusted(0, room, 0, -room);
    };
    for (int i = 0; i < words.size(); ++i) {
        const QRectF box = letters(words[i].box);
        QVERIFY2(frame.contains(box), qPrintable(words[i].text));
        QVERIFY2(!cross.intersects(box), qPrintable(words[i].text));
        for (int j = 0; j < i; ++j) {
            QVERIFY2(!box.intersects(letters(words[j].box)),
                     qPrintable(words[i].text + " and " + words[j].text));
        }
        // 7 to 9 points; the font's own line is a little higher.
        const double points = words[i].box.height() / 25.4 * 72;
        QVERIFY2(points > 7 && points < 11, qPrintable(QString::number(points)));
    }
}

void tst_CalibrationSheet::textInFull()
{
    const QString text =
        print(BlankPaper(PaperOrientation::landscape, PaperFormat::a4, QSizeF(297, 210))).text();
    for (const char* part :
         {"верх листа", "Проверочный лист", "Диплом, титул", "Лист 297 × 210 мм",
          "Между угловыми метками «10» должно быть 277 мм по ширине и 190 мм по высоте",
          "приложите линейку к левому краю листа", "приложите линейку к верхнему краю листа",
          "метка «10» правее десяти миллиметров, столько — X; левее — со знаком минус",
          "метка «10» ниже десяти миллиметров, столько — Y; выше — со знаком минус",
          "Смещение печати самого бланка на этом листе не действует", "zelvora-print --offsets",
          "X =", "Y ="})
    {
        QVERIFY2(text.contains(QString(part), Qt::CaseInsensitive), part);
    }
}

void tst_CalibrationSheet::commandInOnePiece()
{
    const PdfMeasure pdf =
        print(BlankPaper(PaperOrientation::portrait, PaperFormat::a5, QSizeF(148, 210)));
    const PdfMeasure::Word program = pdf.word("zelvora-print");
    const PdfMeasure::Word option = pdf.word("--offsets");
    QVERIFY(!program.box.isEmpty() && !option.box.isEmpty());
    QVERIFY(qAbs(program.box.center().y() - option.box.center().y()) < 0.1);
}

void tst_CalibrationSheet::textOnTheSmallestPaper()
{
    const QString text =
        print(BlankPaper(PaperOrientation::landscape, PaperFormat::customMm, QSizeF(60, 60)))
            .text();
    for (const char* part : {"верх листа", "Проверочный лист", "Лист 60 × 60 мм",
                             "«10» правее 10 мм (+)", "«10» ниже 10 мм (+)", "X =", "Y ="})
    {
        QVERIFY2(text.contains(part), part);
    }
}

void tst_CalibrationSheet::longNameIsCut()
{
    const QSizeF sheet(148, 210);
    const PdfMeasure pdf = print(BlankPaper(PaperOrientation::portrait, PaperFormat::a5, sheet),
                                 "Начало " + QString("слово ").repeated(23) + "конец");
    checkNothingOverlaps(pdf, sheet);
    QVERIFY(!pdf.word("Начало").box.isEmpty());
    QVERIFY(!pdf.word("конец").box.isEmpty());
}

void tst_CalibrationSheet::paperTooSmall()
{
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(m_dir.filePath("small.pdf"));
    QPainter painter;
    const BlankPaper paper(PaperOrientation::landscape, PaperFormat::customMm, QSizeF(200, 59));
    QCOMPARE(CalibrationSheet(paper, "Марка").print(printer, painter),
             CalibrationSheet::Result::PaperTooSmall);
    QVERIFY(!QFile::exists(m_dir.filePath("small.pdf")));
}

void tst_CalibrationSheet::printerThatCannotPrint()
{
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(m_dir.filePath("no/such/folder.pdf"));
    QPainter painter;
    const BlankPaper paper(PaperOrientation::portrait, PaperFormat::a5, QSizeF(148, 210));
    QCOMPARE(CalibrationSheet(paper, "Диплом").print(printer, painter),
             CalibrationSheet::Result::PrinterRefused);
}

QTEST_MAIN(tst_CalibrationSheet)
#include "tst_CalibrationSheet.moc"
