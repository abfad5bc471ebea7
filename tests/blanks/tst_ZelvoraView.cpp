#include <QtTest>

#include <QGraphicsScene>
#include <QSignalSpy>

#include <cmath>
#include <memory>

#include "blanks/Canvas.h"
#include "blanks/ResizeLimits.h"
#include "blanks/ZelvoraView.h"

/// The view of the blank editor: zoom, reset and the rules of its keyboard, by real events.
class tst_ZelvoraView : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void settings();

    void wheelStepsZoom();
    void wheelWithoutATurnZoomsOut();
    void sidewaysWheelZooms();
    void zoomHasNoBounds();
    void zoomKeepsThePointUnderTheMouse();
    void rightDoubleClickResets();
    void resetOverAnEdgeKeepsTheFrame_data();
    void resetOverAnEdgeKeepsTheFrame();
    void leftDoubleClickDoesNotReset();
    void everyReleaseEndsADrag();
    void dragBesideTheFramesPans();

    void shiftMoves_data();
    void shiftMoves();
    void shiftMovesTheChildWithNothingSelected();
    void shiftMovesTheBackgroundOfAnEmptyPage();
    void deleteRemovesTheSelectedFrame();
    void deleteWithShiftRemovesToo();
    void deleteWithNothingSelectedRemovesNothing();
    void walksGoRound_data();
    void walksGoRound();
    void walkBackNeverStopsOnTheTopmostItem();
    void walkWithOneFrameKeepsIt();
    void walkWithoutFramesDoesNothing_data();
    void walkWithoutFramesDoesNothing();
    void keysOnAnEmptySceneDoNothing();
    void otherKeysAreSwallowed();

private:
    QGraphicsRectItem* addFrame(const QRectF& place)
    {
        return Canvas::addFrame(m_scene.get(), place, &m_limits);
    }
    double scale() const { return m_view->transform().m11(); }

    std::unique_ptr<QGraphicsScene> m_scene;
    std::unique_ptr<ZelvoraView> m_view;
    ResizeLimits m_limits{15.0, QSizeF(30.0, 30.0)};
    QGraphicsRectItem* m_page = nullptr;
    QGraphicsPixmapItem* m_background = nullptr;
};

void tst_ZelvoraView::init()
{
    m_scene = std::make_unique<QGraphicsScene>(0, 0, 1122, 793);
    m_page = m_scene->addRect(m_scene->sceneRect(), QPen(Qt::black), QBrush(Qt::white));
    QPixmap picture(500, 300);
    picture.fill(Qt::lightGray);
    m_background = m_scene->addPixmap(picture);
    m_view = std::make_unique<ZelvoraView>(nullptr);
    m_view->setScene(m_scene.get());
    m_view->resize(500, 400);
    m_view->show();
    m_view->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_view.get()));
}

void tst_ZelvoraView::cleanup()
{
    m_view.reset();
    m_scene.reset();
}

void tst_ZelvoraView::settings()
{
    QCOMPARE(m_view->alignment(), Qt::AlignHCenter | Qt::AlignVCenter);
    QCOMPARE(m_view->sizePolicy().horizontalPolicy(), QSizePolicy::Expanding);
    QCOMPARE(m_view->sizePolicy().verticalPolicy(), QSizePolicy::Expanding);
    QCOMPARE(m_view->minimumSize(), QSize(100, 100));
    QCOMPARE(m_view->transformationAnchor(), QGraphicsView::AnchorUnderMouse);
    QCOMPARE(m_view->dragMode(), QGraphicsView::ScrollHandDrag);
    QCOMPARE(m_view->backgroundBrush(), QBrush(QColor("#B9E5FF")));
    QCOMPARE(m_view->viewport()->cursor().shape(), Qt::ArrowCursor);
}

void tst_ZelvoraView::wheelStepsZoom()
{
    Canvas::zoom(m_view.get(), 1);
    QCOMPARE(scale(), 1.15);
    Canvas::zoom(m_view.get(), 1);
    QCOMPARE(scale(), 1.3225);
    Canvas::zoom(m_view.get(), -2);
    QCOMPARE(scale(), 1.0);
    Canvas::zoom(m_view.get(), -1);
    QCOMPARE(scale(), 0.8695652173913044);
    QCOMPARE(m_view->transform().m22(), 0.8695652173913044);

    // A delta of 1 is a step like any other.
    Canvas::wheel(m_view.get(), QPoint(0, 1));
    QCOMPARE(scale(), 1.0);
}

void tst_ZelvoraView::wheelWithoutATurnZoomsOut()
{
    Canvas::wheel(m_view.get(), QPoint(0, 0));
    QCOMPARE(scale(), 0.8695652173913044);
}

void tst_ZelvoraView::sidewaysWheelZooms()
{
    Canvas::wheel(m_view.get(), QPoint(120, 0));
    QCOMPARE(scale(), 1.15);
}

void tst_ZelvoraView::zoomHasNoBounds()
{
    Canvas::zoom(m_view.get(), 60);
    QVERIFY(qAbs(scale() / std::pow(1.15, 60) - 1.0) < 1e-9);
    Canvas::zoom(m_view.get(), -120);
    QVERIFY(qAbs(scale() * std::pow(1.15, 60) - 1.0) < 1e-9);
}

void tst_ZelvoraView::zoomKeepsThePointUnderTheMouse()
{
    const QPoint pixel(320, 150);
    // From elsewhere: a cursor that is there already tells the view nothing.
    for (const QPoint& stop : {QPoint(10, 10), pixel}) {
        const QPoint onScreen = m_view->viewport()->mapToGlobal(stop);
        QCursor::setPos(onScreen);
        QApplication::processEvents();
        QMouseEvent move(QEvent::MouseMove, stop, onScreen, Qt::NoButton, Qt::NoButton,
                         Qt::NoModifier);
        QApplication::sendEvent(m_view->viewport(), &move);
    }
    QTRY_VERIFY(m_view->underMouse());
    const QPointF before = m_view->mapToScene(pixel);
    Canvas::zoom(m_view.get(), 3);
    // The view scrolls by whole pixels at each step. About its middle the point would move by 24.
    const double drift = QLineF(before, m_view->mapToScene(pixel)).length();
    QVERIFY2(drift < 8.0, qPrintable(QString::number(drift)));
}

void tst_ZelvoraView::rightDoubleClickResets()
{
    Canvas::zoom(m_view.get(), 4);
    m_view->horizontalScrollBar()->setValue(300);
    m_view->verticalScrollBar()->setValue(200);
    QTest::mouseDClick(m_view->viewport(), Qt::RightButton, Qt::NoModifier, QPoint(100, 100));
    QVERIFY(m_view->transform().isIdentity());
    QCOMPARE(m_view->horizontalScrollBar()->value(), 0);
    QCOMPARE(m_view->verticalScrollBar()->value(), 0);
}

void tst_ZelvoraView::resetOverAnEdgeKeepsTheFrame_data()
{
    QTest::addColumn<QPointF>("place"); // in the frame, which is 200 by 100
    QTest::newRow("left edge") << QPointF(3, 50);
    QTest::newRow("right edge") << QPointF(197, 50);
    QTest::newRow("bottom edge") << QPointF(100, 97);
    QTest::newRow("inside") << QPointF(100, 50);
}

void tst_ZelvoraView::resetOverAnEdgeKeepsTheFrame()
{
    QFETCH(QPointF, place);
    const QRectF geometry(60, 40, 200, 100);
    const QGraphicsRectItem* frame = addFrame(geometry);
    Canvas::zoom(m_view.get(), 3);
    m_view->centerOn(frame);
    const QPoint pixel = m_view->mapFromScene(frame->mapToScene(place));
    QVERIFY(m_view->viewport()->rect().contains(pixel));

    // As a mouse does it: the second press comes as a double click, and the hand shakes.
    Canvas::press(m_view.get(), pixel, Qt::RightButton);
    Canvas::release(m_view.get(), pixel, Qt::RightButton);
    QTest::mouseDClick(m_view->viewport(), Qt::RightButton, Qt::NoModifier, pixel);
    Canvas::move(m_view.get(), pixel + QPoint(1, 1), Qt::RightButton);
    Canvas::release(m_view.get(), pixel + QPoint(1, 1), Qt::RightButton);

    QVERIFY(m_view->transform().isIdentity());
    QVERIFY(!m_scene->mouseGrabberItem());
    QCOMPARE(QRectF(frame->pos(), frame->rect().size()), geometry);
}

void tst_ZelvoraView::leftDoubleClickDoesNotReset()
{
    Canvas::zoom(m_view.get(), 4);
    QTest::mouseDClick(m_view->viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(100, 100));
    QVERIFY(qAbs(scale() - std::pow(1.15, 4)) < 1e-9);
}

void tst_ZelvoraView::everyReleaseEndsADrag()
{
    addFrame(QRectF(100, 100, 200, 100));
    QSignalSpy spy(m_view.get(), &ZelvoraView::endDrag);
    for (const QPointF& at : {QPointF(200, 150), QPointF(102, 150), QPointF(20, 20)}) {
        const QPoint pixel = m_view->mapFromScene(at);
        Canvas::press(m_view.get(), pixel);
        QCOMPARE(spy.count(), 0);
        Canvas::release(m_view.get(), pixel);
        QCOMPARE(spy.count(), 1);
        QCOMPARE(m_view->viewport()->cursor().shape(), Qt::ArrowCursor);
        spy.clear();
    }
}

void tst_ZelvoraView::dragBesideTheFramesPans()
{
    QGraphicsRectItem* frame = addFrame(QRectF(100, 100, 200, 100));
    m_view->horizontalScrollBar()->setValue(300);
    Canvas::drag(m_view.get(), QPoint(200, 300), QPoint(160, 300));
    QCOMPARE(m_view->horizontalScrollBar()->value(), 340);
    QCOMPARE(frame->pos(), QPointF(100, 100));
    QCOMPARE(m_view->viewport()->cursor().shape(), Qt::ArrowCursor);
}

void tst_ZelvoraView::shiftMoves_data()
{
    QTest::addColumn<int>("zoom");
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<QPointF>("shift");
    for (const int zoom : {0, 3}) {
        QTest::addRow("right, zoom %d", zoom) << zoom << Qt::Key_Right << QPointF(1, 0);
        QTest::addRow("left, zoom %d", zoom) << zoom << Qt::Key_Left << QPointF(-1, 0);
        QTest::addRow("up, zoom %d", zoom) << zoom << Qt::Key_Up << QPointF(0, -1);
        QTest::addRow("down, zoom %d", zoom) << zoom << Qt::Key_Down << QPointF(0, 1);
    }
}

void tst_ZelvoraView::shiftMoves()
{
    QFETCH(int, zoom);
    QFETCH(Qt::Key, key);
    QFETCH(QPointF, shift);
    QGraphicsRectItem* frame = addFrame(QRectF(100.5, 100, 200, 100));
    addFrame(QRectF(300, 300, 200, 100));
    frame->setSelected(true);
    Canvas::zoom(m_view.get(), zoom);
    QSignalSpy spy(m_view.get(), &ZelvoraView::endDrag);
    Canvas::key(m_view.get(), key, Qt::ShiftModifier);
    Canvas::key(m_view.get(), key, Qt::ShiftModifier);
    QCOMPARE(frame->pos(), QPointF(100.5, 100) + 2 * shift);
    QCOMPARE(spy.count(), 2);
    QCOMPARE(m_scene->selectedItems(), QList<QGraphicsItem*>{frame});
}

void tst_ZelvoraView::shiftMovesTheChildWithNothingSelected()
{
    addFrame(QRectF(100, 100, 200, 100));
    QGraphicsRectItem* topmost = addFrame(QRectF(300, 300, 200, 100));
    Canvas::key(m_view.get(), Qt::Key_Right, Qt::ShiftModifier);
    QCOMPARE(topmost->pos(), QPointF(300, 300));
    QCOMPARE(topmost->childItems().first()->pos(), QPointF(1, 0));
}

void tst_ZelvoraView::shiftMovesTheBackgroundOfAnEmptyPage()
{
    Canvas::key(m_view.get(), Qt::Key_Down, Qt::ShiftModifier);
    QCOMPARE(m_background->pos(), QPointF(0, 1));
    QCOMPARE(m_page->pos(), QPointF(0, 0));
}

void tst_ZelvoraView::deleteRemovesTheSelectedFrame()
{
    QGraphicsRectItem* kept = addFrame(QRectF(100, 100, 200, 100));
    QGraphicsRectItem* removed = addFrame(QRectF(300, 300, 200, 100));
    removed->setSelected(true);
    QSignalSpy spy(m_scene.get(), &QGraphicsScene::selectionChanged);
    Canvas::key(m_view.get(), Qt::Key_Delete);
    QCOMPARE(Canvas::frames(m_scene.get()), QList<QGraphicsRectItem*>{kept});
    QCOMPARE(m_scene->items().size(), 4); // the page, the background, a frame and its child
    QVERIFY(spy.count() > 0);
}

void tst_ZelvoraView::deleteWithShiftRemovesToo()
{
    addFrame(QRectF(300, 300, 200, 100))->setSelected(true);
    Canvas::key(m_view.get(), Qt::Key_Delete, Qt::ShiftModifier);
    QCOMPARE(m_scene->items().size(), 2);
}

void tst_ZelvoraView::deleteWithNothingSelectedRemovesNothing()
{
    addFrame(QRectF(100, 100, 200, 100));
    Canvas::key(m_view.get(), Qt::Key_Delete);
    QCOMPARE(m_scene->items().size(), 4);
}

void tst_ZelvoraView::walksGoRound_data()
{
    // Frames are numbered from the topmost one; -1 stands for no selection at the start.
    QTest::addColumn<int>("zoom");
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<int>("start");
    QTest::addColumn<QList<int>>("walk");
    for (const int zoom : {0, 3}) {
        for (const Qt::Key key : {Qt::Key_Right, Qt::Key_Up}) {
            QTest::addRow("next, key %d, zoom %d", key, zoom)
                << zoom << key << 0 << QList<int>{1, 2, 0, 1};
            QTest::addRow("next from nothing, key %d, zoom %d", key, zoom)
                << zoom << key << -1 << QList<int>{0, 1};
        }
        for (const Qt::Key key : {Qt::Key_Left, Qt::Key_Down}) {
            QTest::addRow("previous, key %d, zoom %d", key, zoom)
                << zoom << key << 2 << QList<int>{1, 0, 2, 1};
            QTest::addRow("previous from nothing, key %d, zoom %d", key, zoom)
                << zoom << key << -1 << QList<int>{2, 1};
        }
    }
}

void tst_ZelvoraView::walksGoRound()
{
    QFETCH(int, zoom);
    QFETCH(Qt::Key, key);
    QFETCH(int, start);
    QFETCH(QList<int>, walk);
    for (int i = 0; i < 3; ++i) {
        addFrame(QRectF(100 + 50 * i, 100 + 60 * i, 200, 100));
    }
    const QList<QGraphicsRectItem*> frames = Canvas::frames(m_scene.get());
    if (start >= 0) {
        frames[start]->setSelected(true);
    }
    Canvas::zoom(m_view.get(), zoom);
    QSignalSpy spy(m_view.get(), &ZelvoraView::endDrag);
    for (const int expected : walk) {
        Canvas::key(m_view.get(), key);
        QCOMPARE(m_scene->selectedItems(), QList<QGraphicsItem*>{frames[expected]});
    }
    QCOMPARE(spy.count(), 0);
}

void tst_ZelvoraView::walkBackNeverStopsOnTheTopmostItem()
{
    // A child behind its frame leaves the frame itself as the topmost item.
    QGraphicsRectItem* lower = addFrame(QRectF(100, 100, 200, 100));
    QGraphicsRectItem* topmost = addFrame(QRectF(300, 300, 200, 100));
    topmost->childItems().first()->setFlag(QGraphicsItem::ItemStacksBehindParent);
    QCOMPARE(m_scene->items().first(), static_cast<QGraphicsItem*>(topmost));

    lower->setSelected(true);
    Canvas::key(m_view.get(), Qt::Key_Left);
    QCOMPARE(m_scene->selectedItems(), QList<QGraphicsItem*>{lower});
    Canvas::key(m_view.get(), Qt::Key_Right);
    QCOMPARE(m_scene->selectedItems(), QList<QGraphicsItem*>{topmost});
    Canvas::key(m_view.get(), Qt::Key_Down);
    QCOMPARE(m_scene->selectedItems(), QList<QGraphicsItem*>{lower});
}

void tst_ZelvoraView::walkWithOneFrameKeepsIt()
{
    QGraphicsRectItem* frame = addFrame(QRectF(100, 100, 200, 100));
    for (const Qt::Key key : {Qt::Key_Right, Qt::Key_Left, Qt::Key_Up, Qt::Key_Down}) {
        Canvas::key(m_view.get(), key);
        QCOMPARE(m_scene->selectedItems(), QList<QGraphicsItem*>{frame});
    }
}

void tst_ZelvoraView::walkWithoutFramesDoesNothing_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("right") << Qt::Key_Right;
    QTest::newRow("left") << Qt::Key_Left;
    QTest::newRow("up") << Qt::Key_Up;
    QTest::newRow("down") << Qt::Key_Down;
}

void tst_ZelvoraView::walkWithoutFramesDoesNothing()
{
    QFETCH(Qt::Key, key);
    const int scrolled = m_view->horizontalScrollBar()->value();
    Canvas::key(m_view.get(), key);
    QVERIFY(m_scene->selectedItems().isEmpty());
    QCOMPARE(m_background->pos(), QPointF(0, 0));
    QCOMPARE(m_view->horizontalScrollBar()->value(), scrolled);

    delete m_background;
    Canvas::key(m_view.get(), key);
    QCOMPARE(m_scene->items().size(), 1);
}

void tst_ZelvoraView::keysOnAnEmptySceneDoNothing()
{
    m_scene->clear();
    for (const Qt::Key key : {Qt::Key_Right, Qt::Key_Left, Qt::Key_Delete}) {
        Canvas::key(m_view.get(), key);
        Canvas::key(m_view.get(), key, Qt::ShiftModifier);
    }
    QVERIFY(m_scene->items().isEmpty());
    m_view->setScene(nullptr);
    Canvas::key(m_view.get(), Qt::Key_Right);
}

void tst_ZelvoraView::otherKeysAreSwallowed()
{
    QWidget window;
    m_view->setParent(&window);
    Canvas::zoom(m_view.get(), 4);
    m_view->verticalScrollBar()->setValue(0);
    for (const Qt::Key key : {Qt::Key_PageDown, Qt::Key_End, Qt::Key_A}) {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
        event.ignore();
        event.accept();
        QApplication::sendEvent(m_view.get(), &event);
        QVERIFY(event.isAccepted());
    }
    QCOMPARE(m_view->verticalScrollBar()->value(), 0);
    m_view->setParent(nullptr);
}

QTEST_MAIN(tst_ZelvoraView)
#include "tst_ZelvoraView.moc"
