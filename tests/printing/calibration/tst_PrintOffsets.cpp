#include <QtTest>

#include <cmath>

#include "printing/calibration/PrintOffsets.h"

namespace {

constexpr double a4Landscape = 297.0 / 1122; // millimetres a scene unit
constexpr double noise = 1e-6;

} // namespace

/// Which offsets to enter for what was read off the test sheet.
class tst_PrintOffsets : public QObject
{
    Q_OBJECT

private slots:
    void offsets_data();
    void offsets();
    void noOtherOffsetLeavesLess();
    void millimetres_data();
    void millimetres();
};

void tst_PrintOffsets::offsets_data()
{
    QTest::addColumn<double>("unit");
    QTest::addColumn<double>("readOff");
    QTest::addColumn<int>("value");
    QTest::addColumn<double>("moved");
    QTest::addColumn<double>("remaining");
    const auto add = [](const char* name, double unit, double readOff, int value, double moved,
                        double remaining) {
        QTest::newRow(name) << unit << readOff << value << moved << remaining;
    };
    add("nothing to mend", a4Landscape, 0, 0, 0, 0);
    // 1 mm is 3 units, 3 * 297 / 1122 = 0.794; half of it is 0.397.
    add("too little to mend", a4Landscape, 0.39, 0, 0, 0.39);
    add("just enough to mend", a4Landscape, 0.4, 1, -0.794118, -0.394118);
    add("just enough, other side", a4Landscape, -0.4, -1, 0.794118, 0.394118);
    // 2 mm is 7 units, 1.853 on paper; 3 mm is 11, 2.912.
    add("to the right", a4Landscape, 2, 2, -1.852941, 0.147059);
    add("to the left", a4Landscape, -2, -2, 1.852941, -0.147059);
    add("between two", a4Landscape, 2.5, 3, -2.911765, -0.411765);
    add("1 leaves more than 2", a4Landscape, -1.5, -2, 1.852941, 0.352941);
    add("37 units", a4Landscape, 10, 10, -9.794118, 0.205882);
    add("A5 portrait", 210.0 / 793, 2, 2, -1.853720, 0.146280);
    // A page that is shrunk to its sheet moves less: 3 mm is 11 units of 210 / 1122.
    add("shrunk page", 210.0 / 1122, 2, 3, -2.058824, -0.058824);
    add("shrunk page, other side", 210.0 / 1122, -5, -7, 4.866310, -0.133690);
    // Units of a quarter: 0 leaves 0.375, as does 1 with 3 units; 1 and 2 leave 0.5 of 1.25.
    add("equal, nearer zero", 0.25, 0.375, 0, 0, 0.375);
    add("equal, nearer zero, other side", 0.25, -0.375, 0, 0, -0.375);
    add("equal, 1 and 2", 0.25, 1.25, 1, -0.75, 0.5);
    // 999 mm is 3775 units.
    add("beyond the highest", a4Landscape, 1000, 999, -999.264706, 0.735294);
    add("beyond the lowest", a4Landscape, -1000, -999, 999.264706, -0.735294);
}

void tst_PrintOffsets::offsets()
{
    QFETCH(double, unit);
    QFETCH(double, readOff);
    QFETCH(double, moved);
    QFETCH(double, remaining);
    const PrintOffsets::Offset offset = PrintOffsets(unit).offsetFor(readOff);
    QTEST(offset.value, "value");
    QVERIFY(qAbs(offset.moved - moved) < noise);
    QVERIFY(qAbs(offset.remaining - remaining) < noise);
}

void tst_PrintOffsets::noOtherOffsetLeavesLess()
{
    const PrintOffsets offsets(a4Landscape);
    for (int tenths = -300; tenths <= 300; ++tenths) {
        const double readOff = tenths / 10.0;
        const double remaining = std::abs(offsets.offsetFor(readOff).remaining);
        QVERIFY(remaining < 0.53); // half of 4 units, the longest step
        for (int value = -40; value <= 40; ++value) {
            const double moved = std::trunc(value * 3.7795) * a4Landscape;
            QVERIFY(remaining <= std::abs(readOff - moved) + noise);
        }
    }
}

void tst_PrintOffsets::millimetres_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isNumber");
    QTest::addColumn<double>("value");
    QTest::newRow("whole") << "2" << true << 2.0;
    QTest::newRow("comma") << "1,5" << true << 1.5;
    QTest::newRow("point") << "1.5" << true << 1.5;
    QTest::newRow("minus") << "-1,5" << true << -1.5;
    QTest::newRow("typeset minus") << "−1,5" << true << -1.5;
    QTest::newRow("plus") << "+0.25" << true << 0.25;
    QTest::newRow("no whole part") << "-,5" << true << -0.5;
    QTest::newRow("no decimals") << "3," << true << 3.0;
    QTest::newRow("blanks") << " 2 " << true << 2.0;
    for (const char* text : {"", " ", "-", ",", "two", "1,5,2", "1.000,5", "1e3", "nan", "inf",
                             "0x10", "2 мм", "--2", "1 2"})
    {
        QTest::newRow(text) << QString(text) << false << 0.0;
    }
}

void tst_PrintOffsets::millimetres()
{
    QFETCH(QString, text);
    QFETCH(bool, isNumber);
    const std::optional<double> read = PrintOffsets::millimetres(text);
    QCOMPARE(read.has_value(), isNumber);
    QTEST(read.value_or(0), "value");
}

QTEST_MAIN(tst_PrintOffsets)
#include "tst_PrintOffsets.moc"
