#include <QtTest>

#include <QGraphicsScene>
#include <QImage>
#include <QPainter>

#include "blanks/GraphicsZItem.h"

namespace {

/// What the widget paints at a size, over white.
QImage painted(int width, int height)
{
    GraphicsZItem item;
    item.resize(width, height);
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    item.render(&painter);
    return image;
}

int inkInRow(const QImage& image, int y)
{
    int ink = 0;
    for (int x = 0; x < image.width(); ++x) {
        ink += image.pixelColor(x, y) == Qt::black ? 1 : 0;
    }
    return ink;
}

int inkOf(const QImage& image)
{
    int ink = 0;
    for (int y = 0; y < image.height(); ++y) {
        ink += inkInRow(image, y);
    }
    return ink;
}

} // namespace

/// The Z stroke of a frame.
class tst_GraphicsZItem : public QObject
{
    Q_OBJECT

private slots:
    void backgroundIsTransparent();
    void drawsNothingInAFlatWidget_data();
    void drawsNothingInAFlatWidget();
    void drawsBarsAndDiagonal();
    void smallestStroke();
};

void tst_GraphicsZItem::backgroundIsTransparent()
{
    const GraphicsZItem item;
    QVERIFY(item.testAttribute(Qt::WA_TranslucentBackground));
    QImage image(40, 20, QImage::Format_RGB32);
    image.fill(Qt::yellow);
    QPainter painter(&image);
    GraphicsZItem stroke;
    stroke.resize(40, 20);
    stroke.render(&painter);
    QCOMPARE(image.pixelColor(3, 5), QColor(Qt::yellow));
}

void tst_GraphicsZItem::drawsNothingInAFlatWidget_data()
{
    QTest::addColumn<int>("height");
    QTest::newRow("1") << 1;
    QTest::newRow("3") << 3;
}

void tst_GraphicsZItem::drawsNothingInAFlatWidget()
{
    QFETCH(int, height);
    QCOMPARE(inkOf(painted(50, height)), 0);
}

void tst_GraphicsZItem::drawsBarsAndDiagonal()
{
    const QImage image = painted(101, 61);
    QCOMPARE(inkInRow(image, 0), 0);
    QCOMPARE(inkInRow(image, 1), 101);
    QCOMPARE(inkInRow(image, 60), 101);
    // From the upper right at row 1 to the lower left at row 60: half way down, half way across.
    for (int y = 2; y < 60; ++y) {
        const int ink = inkInRow(image, y);
        QVERIFY2(ink >= 1 && ink <= 3, qPrintable(QString("row %1: %2").arg(y).arg(ink)));
        const int expected = qRound(101.0 * (60 - y) / 59);
        bool near = false;
        for (int x = qMax(0, expected - 2); x <= qMin(100, expected + 2); ++x) {
            near = near || image.pixelColor(x, y) == Qt::black;
        }
        QVERIFY2(near, qPrintable(QString("row %1").arg(y)));
    }
}

void tst_GraphicsZItem::smallestStroke()
{
    const QImage image = painted(30, 4);
    QCOMPARE(inkInRow(image, 0), 0);
    QCOMPARE(inkInRow(image, 1), 30);
    QVERIFY(inkInRow(image, 2) > 0); // the diagonal alone lies between the bars
    QCOMPARE(inkInRow(image, 3), 30);
}

QTEST_MAIN(tst_GraphicsZItem)
#include "tst_GraphicsZItem.moc"
