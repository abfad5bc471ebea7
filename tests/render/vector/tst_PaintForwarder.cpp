#include <QtTest>

#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <QPolygonF>

#include <functional>

#include "render/vector/PaintForwarder.h"

namespace {

using Paint = std::function<void(QPainter&)>;

const QSize imageSize(100, 80);
constexpr int dpi = 96;

QImage paper()
{
    QImage image(imageSize, QImage::Format_RGB32);
    image.fill(Qt::white);
    return image;
}

QImage painted(const Paint& paint)
{
    QImage image = paper();
    QPainter painter(&image);
    paint(painter);
    return image;
}

QImage forwarded(const Paint& paint)
{
    QImage image = paper();
    QPainter target(&image);
    PaintForwarder forwarder(&target, imageSize, dpi);
    QPainter painter(&forwarder);
    paint(painter);
    painter.end();
    return image;
}

/// A star of one line, whose middle is inside by its windings and outside by odd and even.
QPolygonF star()
{
    return QPolygonF({{50, 5}, {68, 65}, {15, 28}, {85, 28}, {32, 65}});
}

/// Four squares of four colours.
QImage squares()
{
    QImage image(20, 20, QImage::Format_RGB32);
    image.fill(Qt::red);
    QPainter painter(&image);
    painter.fillRect(10, 0, 10, 10, Qt::green);
    painter.fillRect(0, 10, 10, 10, Qt::blue);
    painter.fillRect(10, 10, 10, 10, Qt::black);
    return image;
}

} // namespace

Q_DECLARE_METATYPE(Paint)

/// Whatever is painted comes through as it is painted directly.
class tst_PaintForwarder : public QObject
{
    Q_OBJECT

private slots:
    void primitives_data();
    void primitives();
    void fillsOfAStar();
    void partsOfAPixmap();
    void placeAndOpacityOfTheTarget();
    void targetKeepsItsState();
};

void tst_PaintForwarder::primitives_data()
{
    QTest::addColumn<Paint>("paint");
    const auto row = [](const char* name, const Paint& paint) { QTest::newRow(name) << paint; };
    row("polyline", [](QPainter& painter) { painter.drawPolyline(star()); });
    row("polygon, windings", [](QPainter& painter) {
        painter.setBrush(Qt::blue);
        painter.drawPolygon(star(), Qt::WindingFill);
    });
    row("polygon, odd and even", [](QPainter& painter) {
        painter.setBrush(Qt::blue);
        painter.drawPolygon(star(), Qt::OddEvenFill);
    });
    row("convex polygon", [](QPainter& painter) {
        painter.setBrush(Qt::red);
        painter.drawConvexPolygon(QPolygonF({{10, 10}, {90, 10}, {50, 70}}));
    });
    row("path", [](QPainter& painter) {
        QPainterPath path;
        path.addEllipse(QRectF(10, 10, 60, 40));
        painter.fillPath(path, Qt::darkGreen);
    });
    row("rectangles", [](QPainter& painter) {
        painter.setBrush(Qt::yellow);
        painter.drawRects(QVector<QRectF>{{5, 5, 20, 20}, {40, 30, 30, 10}});
    });
    row("lines", [](QPainter& painter) {
        painter.setPen(QPen(Qt::red, 3));
        painter.drawLines(QVector<QLineF>{{0, 0, 99, 79}, {0, 79, 99, 0}});
    });
    row("pixmap", [](QPainter& painter) {
        painter.drawPixmap(QRectF(10, 10, 40, 40), QPixmap::fromImage(squares()),
                           QRectF(0, 0, 20, 20));
    });
    row("tiled pixmap", [](QPainter& painter) {
        painter.drawTiledPixmap(QRectF(5, 5, 70, 50), QPixmap::fromImage(squares()), QPointF(3, 4));
    });
    row("image", [](QPainter& painter) { painter.drawImage(QPointF(10, 10), squares()); });
    row("text", [](QPainter& painter) { painter.drawText(QPointF(5, 40), "Ведомость"); });
    row("clipped", [](QPainter& painter) {
        painter.setClipRect(QRect(20, 20, 30, 30));
        painter.fillRect(QRect(0, 0, 100, 80), Qt::red);
        painter.setClipping(false);
        painter.fillRect(QRect(60, 60, 10, 10), Qt::blue);
    });
    row("moved and transparent", [](QPainter& painter) {
        painter.translate(20, 10);
        painter.setOpacity(0.5);
        painter.fillRect(QRect(0, 0, 30, 30), Qt::red);
    });
}

void tst_PaintForwarder::primitives()
{
    QFETCH(Paint, paint);
    const QImage expected = painted(paint);
    QVERIFY(expected != paper()); // something is painted
    QCOMPARE(forwarded(paint), expected);
}

void tst_PaintForwarder::fillsOfAStar()
{
    const auto middleOf = [](Qt::FillRule rule) {
        return forwarded([rule](QPainter& painter) {
                   painter.setBrush(Qt::blue);
                   painter.drawPolygon(star(), rule);
               })
            .pixelColor(50, 40);
    };
    QCOMPARE(middleOf(Qt::WindingFill), QColor(Qt::blue));
    QCOMPARE(middleOf(Qt::OddEvenFill), QColor(Qt::white));
}

void tst_PaintForwarder::partsOfAPixmap()
{
    const QPixmap pixmap = QPixmap::fromImage(squares());
    const QImage part = forwarded([&pixmap](QPainter& painter) {
        painter.drawPixmap(QRectF(30, 20, 10, 10), pixmap, QRectF(10, 0, 10, 10));
    });
    QCOMPARE(part.pixelColor(35, 25), QColor(Qt::green));
    QCOMPARE(part.pixelColor(29, 25), QColor(Qt::white));
    QCOMPARE(part.pixelColor(41, 25), QColor(Qt::white));
    const QImage tiles = forwarded([&pixmap](QPainter& painter) {
        painter.drawTiledPixmap(QRectF(0, 0, 60, 20), pixmap, QPointF(10, 0));
    });
    QCOMPARE(tiles.pixelColor(5, 5), QColor(Qt::green));
    QCOMPARE(tiles.pixelColor(15, 5), QColor(Qt::red));
    QCOMPARE(tiles.pixelColor(55, 15), QColor(Qt::blue));
}

void tst_PaintForwarder::placeAndOpacityOfTheTarget()
{
    QImage image = paper();
    QPainter target(&image);
    target.translate(40, 30);
    target.setOpacity(0.5);
    PaintForwarder forwarder(&target, imageSize, dpi);
    QPainter painter(&forwarder);
    painter.fillRect(QRect(0, 0, 10, 10), Qt::black);
    painter.end();
    QCOMPARE(image.pixelColor(39, 30), QColor(Qt::white));
    QVERIFY(qAbs(image.pixelColor(45, 35).red() - 127) <= 1);
    QCOMPARE(image.pixelColor(50, 40), QColor(Qt::white));
}

void tst_PaintForwarder::targetKeepsItsState()
{
    QImage image = paper();
    QPainter target(&image);
    target.setPen(Qt::green);
    target.translate(7, 0);
    {
        PaintForwarder forwarder(&target, imageSize, dpi);
        QPainter painter(&forwarder);
        painter.setClipRect(QRect(0, 0, 5, 5));
        painter.setPen(Qt::red);
        painter.drawLine(0, 0, 5, 5);
    }
    QCOMPARE(target.pen().color(), QColor(Qt::green));
    QCOMPARE(target.transform().dx(), 7.0);
    QVERIFY(!target.hasClipping());
}

QTEST_MAIN(tst_PaintForwarder)
#include "tst_PaintForwarder.moc"
