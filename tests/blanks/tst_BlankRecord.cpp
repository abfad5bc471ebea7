#include <QtTest>

#include <limits>

#include "blanks/BlankRecord.h"

/// Units and codes of the blank's row.
class tst_BlankRecord : public QObject
{
    Q_OBJECT

private slots:
    void millimetresToSceneUnits_data();
    void millimetresToSceneUnits();
    void wholeUnits_data();
    void wholeUnits();
    void paperFormatNames_data();
    void paperFormatNames();
    void codesOfTheRow();
    void codesOfTheItems();
};

void tst_BlankRecord::millimetresToSceneUnits_data()
{
    QTest::addColumn<int>("millimetres");
    QTest::addColumn<int>("units");
    // Times 3.7795, truncated toward zero.
    QTest::newRow("nothing") << 0 << 0;
    QTest::newRow("1 mm") << 1 << 3;
    QTest::newRow("2 mm") << 2 << 7;
    QTest::newRow("10 mm") << 10 << 37;
    QTest::newRow("A5 width") << 148 << 559;
    QTest::newRow("A4 width") << 210 << 793;
    QTest::newRow("A4 height") << 297 << 1122; // 1122.5115, not rounded
    QTest::newRow("largest page") << 500 << 1889;
    QTest::newRow("largest offset") << 999 << 3775;
    QTest::newRow("-1 mm") << -1 << -3;
    QTest::newRow("-3 mm") << -3 << -11;
    QTest::newRow("lowest offset") << -999 << -3775;
    QTest::newRow("beyond the range")
        << std::numeric_limits<int>::max() << std::numeric_limits<int>::max();
    QTest::newRow("below the range")
        << std::numeric_limits<int>::min() << std::numeric_limits<int>::min();
}

void tst_BlankRecord::millimetresToSceneUnits()
{
    QFETCH(int, millimetres);
    QFETCH(int, units);
    QCOMPARE(mmToPixels(millimetres), units);
}

void tst_BlankRecord::wholeUnits_data()
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    constexpr int lowest = std::numeric_limits<int>::min();
    constexpr int highest = std::numeric_limits<int>::max();
    QTest::addColumn<double>("length");
    QTest::addColumn<int>("units");
    QTest::newRow("nothing") << 0.0 << 0;
    QTest::newRow("whole") << 12.0 << 12;
    QTest::newRow("just below") << 12.999 << 12;
    QTest::newRow("negative") << -12.999 << -12;
    QTest::newRow("between 0 and -1") << -0.5 << 0;
    QTest::newRow("highest") << 2147483647.0 << highest;
    QTest::newRow("beyond the range") << 1e300 << highest;
    QTest::newRow("below the range") << -1e300 << lowest;
    QTest::newRow("infinite") << infinity << highest;
    QTest::newRow("infinite below") << -infinity << lowest;
    QTest::newRow("no number") << std::numeric_limits<double>::quiet_NaN() << lowest;
}

void tst_BlankRecord::wholeUnits()
{
    QFETCH(double, length);
    QFETCH(int, units);
    QCOMPARE(truncated(length), units);
}

void tst_BlankRecord::paperFormatNames_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("name");
    QTest::newRow("0") << 0 << "A4";
    QTest::newRow("1") << 1 << "A5";
    QTest::newRow("42") << 42 << "CustomMM";
    QTest::newRow("2") << 2 << "Unknown";
    QTest::newRow("-1") << -1 << "Unknown";
}

void tst_BlankRecord::paperFormatNames()
{
    QFETCH(int, code);
    QFETCH(QString, name);
    QCOMPARE(paperFormatName(code), name);
}

void tst_BlankRecord::codesOfTheRow()
{
    QCOMPARE(PaperFormat::a4, 0);
    QCOMPARE(PaperFormat::a5, 1);
    QCOMPARE(PaperFormat::customMm, 42);
    QCOMPARE(PaperOrientation::portrait, 1);
    QCOMPARE(PaperOrientation::landscape, 0);
}

void tst_BlankRecord::codesOfTheItems()
{
    QCOMPARE(BlankItemKind::text, 0);
    QCOMPARE(BlankItemKind::qr, 1);
    QCOMPARE(BlankItemKind::table, 2);
    QCOMPARE(HorizontalAlign::left, 0);
    QCOMPARE(HorizontalAlign::right, 1);
    QCOMPARE(HorizontalAlign::center, 2);
    QCOMPARE(VerticalAlign::top, 0);
    QCOMPARE(VerticalAlign::bottom, 1);
    QCOMPARE(VerticalAlign::center, 2);
}

QTEST_APPLESS_MAIN(tst_BlankRecord)
#include "tst_BlankRecord.moc"
