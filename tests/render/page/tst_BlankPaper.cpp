#include <QtTest>

#include <QPrinter>

#include "blanks/BlankRecord.h"
#include "render/page/BlankPaper.h"
#include "support/LogCatcher.h"

/// Which sheet a blank asks for, and how large its page comes out on it.
class tst_BlankPaper : public QObject
{
    Q_OBJECT

private slots:
    void sheet_data();
    void sheet();
    void unknownFormatIsLogged();
    void pageWithoutAreaHasNoScale();
};

void tst_BlankPaper::sheet_data()
{
    QTest::addColumn<int>("orientation");
    QTest::addColumn<int>("format");
    QTest::addColumn<QSizeF>("size");
    QTest::addColumn<QSizeF>("sheet");
    QTest::addColumn<double>("unit");

    using namespace PaperOrientation;
    using namespace PaperFormat;
    QTest::newRow("A4 landscape") << landscape << a4 << QSizeF(297, 210) << QSizeF(297, 210)
                                  << 297.0 / 1122;
    QTest::newRow("A4 portrait") << portrait << a4 << QSizeF(210, 297) << QSizeF(210, 297)
                                 << 297.0 / 1122;
    QTest::newRow("A5 portrait") << portrait << a5 << QSizeF(148, 210) << QSizeF(148, 210)
                                 << 210.0 / 793;
    QTest::newRow("upright page on landscape A4")
        << landscape << a4 << QSizeF(210, 297) << QSizeF(297, 210) << 210.0 / 1122;
    QTest::newRow("A4 page on A5")
        << landscape << a5 << QSizeF(297, 210) << QSizeF(210, 148) << 148.0 / 793;
    QTest::newRow("custom landscape")
        << landscape << customMm << QSizeF(297, 200) << QSizeF(297, 200) << 297.0 / 1122;
    QTest::newRow("custom portrait is exchanged")
        << portrait << customMm << QSizeF(148, 210) << QSizeF(210, 148) << 148.0 / 793;
    QTest::newRow("unknown format")
        << landscape << 7 << QSizeF(297, 210) << QSizeF(297, 210) << 297.0 / 1122;
}

void tst_BlankPaper::sheet()
{
    QFETCH(int, orientation);
    QFETCH(int, format);
    QFETCH(QSizeF, size);
    QFETCH(QSizeF, sheet);
    QFETCH(double, unit);
    constexpr double tolerance = 0.2; // named sizes are kept in points

    const BlankPaper paper(orientation, format, size);
    QVERIFY(qAbs(paper.sheetSize().width() - sheet.width()) < tolerance);
    QVERIFY(qAbs(paper.sheetSize().height() - sheet.height()) < tolerance);
    QVERIFY(qAbs(paper.unitLength() - unit) < 1e-3 * unit);

    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    paper.setOn(printer);
    const QSizeF printed = printer.pageLayout().fullRect(QPageLayout::Millimeter).size();
    QVERIFY(qAbs(printed.width() - sheet.width()) < tolerance);
    QVERIFY(qAbs(printed.height() - sheet.height()) < tolerance);
}

void tst_BlankPaper::unknownFormatIsLogged()
{
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    const LogCatcher log;
    BlankPaper(PaperOrientation::landscape, 7, QSizeF(297, 210)).setOn(printer);
    QVERIFY(log.contains("PrinPreviewDialog Error: Unknown page format"));
}

void tst_BlankPaper::pageWithoutAreaHasNoScale()
{
    QCOMPARE(BlankPaper(PaperOrientation::portrait, PaperFormat::a4, QSizeF(0, 0)).unitLength(),
             0.0);
}

QTEST_MAIN(tst_BlankPaper)
#include "tst_BlankPaper.moc"
