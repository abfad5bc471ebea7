#include <QtTest>

#include <QGraphicsScene>

#include <cmath>
#include <memory>

#include "blanks/Canvas.h"
#include "blanks/ResizeLimits.h"
#include "blanks/ZelvoraView.h"

/// A frame under a real mouse: the expected places are worked out by hand from the rules of the
/// grip (8 units), of the limits (30 to 1000) and of the origin that follows the grabbed edge.
class tst_ResizableRectItem : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void limitsTakeTheExtentForAnEmptySize();

    void dragsByEachPart_data();
    void dragsByEachPart();
    void gripIsEightUnitsWide_data();
    void gripIsEightUnitsWide();
    void stopsAtTheLimits_data();
    void stopsAtTheLimits();
    void narrowFrameIsAllEdge();
    void clickOnAnEdgeChangesNothing();
    void clickOnAnEdgeEnlargesATooSmallFrame();
    void releaseRightAfterAMoveDoesNotResizeTwice();
    void releaseElsewhereResizesOnceMore();
    void pressSelectsThisFrameAlone();
    void cursorTellsTheDirection_data();
    void cursorTellsTheDirection();
    void turnedFrameFollowsItsEdge();

private:
    QGraphicsRectItem* addFrame(const QRectF& place)
    {
        return Canvas::addFrame(m_scene.get(), place, m_limits.get());
    }
    QPoint pixelAt(const QPointF& scenePoint) const { return m_view->mapFromScene(scenePoint); }

    std::unique_ptr<QGraphicsScene> m_scene;
    std::unique_ptr<ZelvoraView> m_view;
    std::unique_ptr<ResizeLimits> m_limits;
};

namespace {

bool isNear(double a, double b, double tolerance)
{
    return std::abs(a - b) <= tolerance;
}

bool isNear(const QRectF& a, const QRectF& b, double tolerance)
{
    return isNear(a.x(), b.x(), tolerance) && isNear(a.y(), b.y(), tolerance) &&
           isNear(a.width(), b.width(), tolerance) && isNear(a.height(), b.height(), tolerance);
}

QByteArray text(const QRectF& rect)
{
    return QString("%1, %2, %3 x %4")
        .arg(rect.x())
        .arg(rect.y())
        .arg(rect.width())
        .arg(rect.height())
        .toUtf8();
}

// The frame on the page: its rectangle must keep its origin at 0, 0.
QRectF placeOf(const QGraphicsRectItem* frame)
{
    return QRectF(frame->pos() + frame->rect().topLeft(), frame->rect().size());
}

} // namespace

void tst_ResizableRectItem::init()
{
    m_limits = std::make_unique<ResizeLimits>(15.0, QSizeF(30.0, 30.0));
    m_scene = std::make_unique<QGraphicsScene>(0, 0, 3000, 3000);
    m_scene->addRect(m_scene->sceneRect());
    m_view = std::make_unique<ZelvoraView>(nullptr);
    m_view->setScene(m_scene.get());
    m_view->resize(900, 700);
    m_view->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_view.get()));
    m_view->centerOn(400, 300);
}

void tst_ResizableRectItem::cleanup()
{
    m_view.reset();
    m_scene.reset();
    m_limits.reset();
}

void tst_ResizableRectItem::limitsTakeTheExtentForAnEmptySize()
{
    QCOMPARE(ResizeLimits(15.0, QSizeF(30.0, 40.0)).minimumSize, QSizeF(30.0, 40.0));
    QCOMPARE(ResizeLimits(15.0, QSizeF()).minimumSize, QSizeF(15.0, 15.0));
    QCOMPARE(ResizeLimits(15.0, QSizeF(0.0, 40.0)).minimumSize, QSizeF(15.0, 15.0));
    QCOMPARE(ResizeLimits(15.0, QSizeF(30.0, 40.0)).defaultExtent, 15.0);
}

void tst_ResizableRectItem::dragsByEachPart_data()
{
    // A frame of 200 by 100 at 300, 200 is grabbed at a point of its own coordinates and dragged by
    // 40 to the right and 20 down, at three zooms.
    QTest::addColumn<int>("zoom");
    QTest::addColumn<QPointF>("grab");
    QTest::addColumn<QRectF>("edges"); // factors of the shift: left, top, width, height

    struct Part
    {
        const char* name = nullptr;
        QPointF grab;
        QRectF edges;
    };
    const Part parts[] = {
        {"inside", {100, 50}, {1, 1, 0, 0}},       {"left", {3, 50}, {1, 0, -1, 0}},
        {"right", {197, 50}, {0, 0, 1, 0}},        {"top", {100, 3}, {0, 1, 0, -1}},
        {"bottom", {100, 97}, {0, 0, 0, 1}},       {"top left", {3, 3}, {1, 1, -1, -1}},
        {"top right", {197, 3}, {0, 1, 1, -1}},    {"bottom left", {3, 97}, {1, 0, -1, 1}},
        {"bottom right", {197, 97}, {0, 0, 1, 1}},
    };
    for (const int zoom : {0, 3, -3}) {
        for (const Part& part : parts) {
            QTest::addRow("%s, zoom %d", part.name, zoom) << zoom << part.grab << part.edges;
        }
    }
}

void tst_ResizableRectItem::dragsByEachPart()
{
    QFETCH(int, zoom);
    QFETCH(QPointF, grab);
    QFETCH(QRectF, edges);
    QGraphicsRectItem* frame = addFrame(QRectF(300, 200, 200, 100));
    Canvas::zoom(m_view.get(), zoom);
    const double scale = std::pow(1.15, zoom);
    QVERIFY(isNear(m_view->transform().m11(), scale, 1e-9));

    // A pixel is 1 / scale units: the real shift is that of whole pixels.
    const QPoint from = pixelAt(QPointF(300, 200) + grab);
    const QPoint pixels(qRound(40 * scale), qRound(20 * scale));
    Canvas::drag(m_view.get(), from, from + pixels);

    const double dx = pixels.x() / scale;
    const double dy = pixels.y() / scale;
    const QRectF expected(300 + edges.x() * dx, 200 + edges.y() * dy, 200 + edges.width() * dx,
                          100 + edges.height() * dy);
    QVERIFY2(isNear(placeOf(frame), expected, 1e-6), text(placeOf(frame)));
    QCOMPARE(frame->rect().topLeft(), QPointF(0, 0));
}

void tst_ResizableRectItem::gripIsEightUnitsWide_data()
{
    QTest::addColumn<int>("x"); // of the press, from the left edge of a frame 200 wide
    QTest::addColumn<bool>("resizes");
    QTest::newRow("7") << 7 << true;
    QTest::newRow("8") << 8 << false;
    QTest::newRow("192") << 192 << false;
    QTest::newRow("193") << 193 << true;
}

void tst_ResizableRectItem::gripIsEightUnitsWide()
{
    QFETCH(int, x);
    QFETCH(bool, resizes);
    QGraphicsRectItem* frame = addFrame(QRectF(300, 200, 200, 100));
    const QPoint from = pixelAt(QPointF(300 + x, 250));
    QCOMPARE(m_view->mapToScene(from), QPointF(300 + x, 250)); // no pixel beside the border
    Canvas::drag(m_view.get(), from, from + QPoint(10, 0));
    QCOMPARE(!qFuzzyCompare(frame->rect().width(), 200.0), resizes);
}

void tst_ResizableRectItem::stopsAtTheLimits_data()
{
    QTest::addColumn<QRectF>("start");
    QTest::addColumn<QPointF>("grab");
    QTest::addColumn<QPoint>("shift");
    QTest::addColumn<QRectF>("expected");

    const QRectF start(300, 200, 200, 100);
    QTest::newRow("left past right")
        << start << QPointF(2, 50) << QPoint(350, 0) << QRectF(470, 200, 30, 100);
    QTest::newRow("right past left")
        << start << QPointF(198, 50) << QPoint(-250, 0) << QRectF(300, 200, 30, 100);
    QTest::newRow("top past bottom")
        << start << QPointF(100, 2) << QPoint(0, 150) << QRectF(300, 270, 200, 30);
    QTest::newRow("bottom past top")
        << start << QPointF(100, 98) << QPoint(0, -150) << QRectF(300, 200, 200, 30);
    QTest::newRow("corner past corner")
        << start << QPointF(2, 2) << QPoint(350, 250) << QRectF(470, 270, 30, 30);
    const QRectF large(300, 200, 900, 800);
    QTest::newRow("right too far")
        << large << QPointF(898, 400) << QPoint(250, 0) << QRectF(300, 200, 1000, 800);
    QTest::newRow("left too far") << large << QPointF(2, 400) << QPoint(-250, 0)
                                  << QRectF(200, 200, 1000, 800);
    QTest::newRow("bottom too far")
        << large << QPointF(450, 798) << QPoint(0, 300) << QRectF(300, 200, 900, 1000);
    QTest::newRow("top too far") << large << QPointF(450, 2) << QPoint(0, -300)
                                 << QRectF(300, 0, 900, 1000);
}

void tst_ResizableRectItem::stopsAtTheLimits()
{
    QFETCH(QRectF, start);
    QFETCH(QPointF, grab);
    QFETCH(QPoint, shift);
    QFETCH(QRectF, expected);
    QGraphicsRectItem* frame = addFrame(start);
    m_view->centerOn(start.topLeft() + grab);
    const QPoint from = pixelAt(start.topLeft() + grab);
    QVERIFY(m_view->viewport()->rect().contains(from));
    Canvas::drag(m_view.get(), from, from + shift);
    QVERIFY2(isNear(placeOf(frame), expected, 1e-6), text(placeOf(frame)));
    QCOMPARE(frame->rect().topLeft(), QPointF(0, 0));
}

void tst_ResizableRectItem::narrowFrameIsAllEdge()
{
    // 12 wide: the inner rectangle would go from 8 to 4, so that the middle is left of it.
    QGraphicsRectItem* frame = addFrame(QRectF(300, 200, 12, 100));
    const QPoint from = pixelAt(QPointF(306, 250));
    Canvas::drag(m_view.get(), from, from + QPoint(-60, 0));
    QVERIFY2(isNear(placeOf(frame), QRectF(240, 200, 72, 100), 1e-6), text(placeOf(frame)));
}

void tst_ResizableRectItem::clickOnAnEdgeChangesNothing()
{
    QGraphicsRectItem* frame = addFrame(QRectF(300.25, 200.5, 200.125, 100));
    const QPoint at = pixelAt(QPointF(303, 250));
    Canvas::press(m_view.get(), at);
    Canvas::release(m_view.get(), at);
    QVERIFY(isNear(placeOf(frame), QRectF(300.25, 200.5, 200.125, 100), 1e-9));
}

void tst_ResizableRectItem::clickOnAnEdgeEnlargesATooSmallFrame()
{
    // The limits hold for every drag, also for one of no length.
    QGraphicsRectItem* frame = addFrame(QRectF(300, 200, 200, 20));
    const QPoint at = pixelAt(QPointF(400, 217));
    Canvas::press(m_view.get(), at);
    Canvas::release(m_view.get(), at);
    QVERIFY2(isNear(placeOf(frame), QRectF(300, 200, 200, 30), 1e-6), text(placeOf(frame)));
}

void tst_ResizableRectItem::releaseRightAfterAMoveDoesNotResizeTwice()
{
    // No repaint between the move and the release at the same place.
    QGraphicsRectItem* frame = addFrame(QRectF(300, 200, 200, 100));
    const QPoint from = pixelAt(QPointF(303, 203));
    Canvas::press(m_view.get(), from);
    Canvas::move(m_view.get(), from + QPoint(50, 30));
    Canvas::release(m_view.get(), from + QPoint(50, 30));
    QVERIFY2(isNear(placeOf(frame), QRectF(350, 230, 150, 70), 1e-6), text(placeOf(frame)));
}

void tst_ResizableRectItem::releaseElsewhereResizesOnceMore()
{
    QGraphicsRectItem* frame = addFrame(QRectF(300, 200, 200, 100));
    const QPoint from = pixelAt(QPointF(303, 250));
    Canvas::press(m_view.get(), from);
    Canvas::move(m_view.get(), from + QPoint(50, 0));
    Canvas::release(m_view.get(), from + QPoint(60, 0));
    QVERIFY2(isNear(placeOf(frame), QRectF(360, 200, 140, 100), 1e-6), text(placeOf(frame)));
}

void tst_ResizableRectItem::pressSelectsThisFrameAlone()
{
    QGraphicsRectItem* first = addFrame(QRectF(100, 200, 150, 100));
    QGraphicsRectItem* second = addFrame(QRectF(400, 200, 150, 100));
    first->setSelected(true);
    for (const QPointF& at : {QPointF(475, 250), QPointF(402, 250)}) {
        first->setSelected(true);
        Canvas::press(m_view.get(), pixelAt(at));
        QCOMPARE(m_scene->selectedItems(), QList<QGraphicsItem*>{second});
        Canvas::release(m_view.get(), pixelAt(at));
        QCOMPARE(m_scene->selectedItems(), QList<QGraphicsItem*>{second});
    }
}

void tst_ResizableRectItem::cursorTellsTheDirection_data()
{
    QTest::addColumn<QPointF>("grab");
    QTest::addColumn<Qt::CursorShape>("shape");
    QTest::newRow("inside") << QPointF(100, 50) << Qt::ArrowCursor;
    QTest::newRow("left") << QPointF(3, 50) << Qt::SizeHorCursor;
    QTest::newRow("right") << QPointF(197, 50) << Qt::SizeHorCursor;
    QTest::newRow("top") << QPointF(100, 3) << Qt::SizeVerCursor;
    QTest::newRow("bottom") << QPointF(100, 97) << Qt::SizeVerCursor;
    QTest::newRow("top left") << QPointF(3, 3) << Qt::SizeFDiagCursor;
    QTest::newRow("bottom right") << QPointF(197, 97) << Qt::SizeFDiagCursor;
    QTest::newRow("top right") << QPointF(197, 3) << Qt::SizeBDiagCursor;
    QTest::newRow("bottom left") << QPointF(3, 97) << Qt::SizeBDiagCursor;
}

void tst_ResizableRectItem::cursorTellsTheDirection()
{
    QFETCH(QPointF, grab);
    QFETCH(Qt::CursorShape, shape);
    QGraphicsRectItem* frame = addFrame(QRectF(300, 200, 200, 100));
    const QPoint at = pixelAt(QPointF(300, 200) + grab);
    Canvas::move(m_view.get(), at, Qt::NoButton);
    QVERIFY(!frame->hasCursor()); // no button held, no change

    Canvas::press(m_view.get(), at);
    Canvas::move(m_view.get(), at + QPoint(1, 1));
    QCOMPARE(frame->cursor().shape(), shape);
    Canvas::release(m_view.get(), at + QPoint(1, 1));
    QCOMPARE(frame->cursor().shape(), Qt::ArrowCursor);
    QCOMPARE(m_view->viewport()->cursor().shape(), Qt::ArrowCursor);
}

void tst_ResizableRectItem::turnedFrameFollowsItsEdge()
{
    // The shift is mapped to the parent: a frame turned by 90 degrees has its left edge on top.
    QGraphicsRectItem* frame = addFrame(QRectF(500, 200, 200, 100));
    frame->setRotation(90.0);
    const QPoint from = pixelAt(QPointF(450, 203));
    Canvas::drag(m_view.get(), from, from + QPoint(0, 40));
    QVERIFY(isNear(frame->y(), 240, 1e-6));
    QVERIFY(isNear(frame->x(), 500, 1e-6));
    QVERIFY(isNear(frame->rect().width(), 160, 1e-6));
}

QTEST_MAIN(tst_ResizableRectItem)
#include "tst_ResizableRectItem.moc"
