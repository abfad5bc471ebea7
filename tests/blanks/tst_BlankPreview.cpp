#include <QtTest>

#include <QGraphicsProxyWidget>
#include <QGraphicsScene>
#include <QPainter>
#include <QPushButton>
#include <QToolBar>
#include <QTreeWidget>

#include <memory>

#include "blanks/BlankRows.h"
#include "blanks/BlankWindow.h"
#include "blanks/Canvas.h"
#include "blanks/ZelvoraView.h"
#include "render/PrinPreviewDialog.h"
#include "support/ModalDriver.h"
#include "support/TempApplication.h"

/// A page that was laid out by mouse in the editor stands at the same places in the preview.
class tst_BlankPreview : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void framesStandWhereTheyWereDragged_data();
    void framesStandWhereTheyWereDragged();
    void centredTextHasItsInkAtTheSamePlace();

private:
    void openEditor(int zoom);
    void pressAction(const char* action);
    void doubleClickLeaf(int group, int leaf);
    void dragNewest(const QPointF& grab, const QPointF& to);
    QRectF newestPlace() const;
    void accept();
    void preview(const std::function<void(QGraphicsScene*)>& look);

    std::unique_ptr<TempApplication> m_app;
    std::unique_ptr<BlankWindow> m_editor;
    ZelvoraView* m_view = nullptr;
    int m_blankId = 0;
    int m_docId = 0;
};

namespace {

// What is dark within a part of the page.
QRect inkOf(QGraphicsScene* scene, const QRectF& part)
{
    QImage image(part.size().toSize(), QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    scene->render(&painter, image.rect(), part);
    painter.end();
    QRect ink;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qGray(image.pixel(x, y)) < 128) {
                ink |= QRect(x, y, 1, 1);
            }
        }
    }
    return ink;
}

// The items of the page in the order in which they were added.
QList<QGraphicsItem*> pageItems(const QGraphicsScene* scene)
{
    QList<QGraphicsItem*> top;
    const QList<QGraphicsItem*> items = scene->items(Qt::AscendingOrder);
    for (QGraphicsItem* item : items) {
        if (!item->parentItem()) {
            top << item;
        }
    }
    return top;
}

} // namespace

void tst_BlankPreview::init()
{
    m_app = std::make_unique<TempApplication>();
    m_app->exec("INSERT INTO forms (ID, FORM_NAME, FIELDS) VALUES (1, 'Диплом', ?)",
                {R"({"fields":[{"tag":"#GRADES","name":"Оценки","type":4}]})"});
    m_docId =
        m_app
            ->exec("INSERT INTO docs (LNAME, FNAME, MNAME, DOC_TYPE, TEMPLATE, CONTENT) VALUES "
                   "('HHH', 'Иван', 'Иванович', 1, 0, ?)",
                   {R"({"#GRADES":{"type":4,"columns":[{"name":"Предмет","typeID":"0"}],)"
                    R"("value":[["Химия"],["Физика"]]}})"})
            .toInt();
}

void tst_BlankPreview::cleanup()
{
    m_editor.reset();
    m_app.reset();
}

void tst_BlankPreview::openEditor(int zoom)
{
    m_blankId = insertBlank(*m_app, {});
    m_editor = std::make_unique<BlankWindow>();
    m_editor->setBlankId(m_blankId);
    m_editor->loadBlank();
    m_editor->loadBlankTree();
    m_editor->resize(1700, 1000); // the whole page is in view
    m_editor->show();
    m_view = m_editor->findChild<ZelvoraView*>();
    QVERIFY(QTest::qWaitForWindowExposed(m_editor.get()));
    Canvas::zoom(m_view, zoom);
}

void tst_BlankPreview::pressAction(const char* action)
{
    auto* bar = m_editor->findChild<QToolBar*>("toolBarTop");
    QTest::mouseClick(bar->widgetForAction(m_editor->findChild<QAction*>(action)), Qt::LeftButton);
}

void tst_BlankPreview::doubleClickLeaf(int group, int leaf)
{
    auto* tree = m_editor->findChild<QTreeWidget*>("blankTree");
    tree->expandAll();
    const QPoint at = tree->visualItemRect(tree->topLevelItem(group)->child(leaf)).center();
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, Qt::NoModifier, at);
    QTest::mouseDClick(tree->viewport(), Qt::LeftButton, Qt::NoModifier, at);
}

// Drags the newest frame, grabbed at a point of its own, to a point of the page.
void tst_BlankPreview::dragNewest(const QPointF& grab, const QPointF& to)
{
    const QGraphicsRectItem* frame = Canvas::frames(m_view->scene()).first();
    Canvas::drag(m_view, m_view->mapFromScene(frame->mapToScene(grab)), m_view->mapFromScene(to));
}

QRectF tst_BlankPreview::newestPlace() const
{
    const QGraphicsRectItem* frame = Canvas::frames(m_view->scene()).first();
    return QRectF(frame->pos(), frame->rect().size());
}

void tst_BlankPreview::accept()
{
    QTest::mouseClick(m_editor->findChild<QPushButton*>("buttonAccept"), Qt::LeftButton);
}

void tst_BlankPreview::preview(const std::function<void(QGraphicsScene*)>& look)
{
    ModalDriver driver;
    driver.expect<PrinPreviewDialog>([look](PrinPreviewDialog* dialog) {
        look(dialog->findChild<QGraphicsView*>("documentView")->scene());
        QTest::mouseClick(dialog->findChild<QPushButton*>("buttonReject"), Qt::LeftButton);
    });
    PrinPreviewDialog dialog(m_docId);
    dialog.exec();
    QVERIFY2(driver.finished(), driver.failures());
}

void tst_BlankPreview::framesStandWhereTheyWereDragged_data()
{
    QTest::addColumn<int>("zoom");
    QTest::newRow("zoom 1") << 0;
    QTest::newRow("zoom out") << -2;
}

void tst_BlankPreview::framesStandWhereTheyWereDragged()
{
    QFETCH(int, zoom);
    openEditor(zoom);
    const double pixel = 1.0 / m_view->transform().m11(); // scene units

    // Each frame is dragged by its middle, then by its lower right corner.
    pressAction("actionAddText");
    dragNewest(QPointF(100, 25), QPointF(500, 125));
    dragNewest(QPointF(197, 47), QPointF(747, 197));
    const QRectF text = newestPlace();
    QVERIFY(QLineF(text.topLeft(), QPointF(400, 100)).length() < 4 * pixel);
    QVERIFY(QLineF(text.bottomRight(), QPointF(750, 200)).length() < 8 * pixel);

    doubleClickLeaf(2, 0);
    dragNewest(QPointF(100, 25), QPointF(200, 425));
    dragNewest(QPointF(197, 47), QPointF(497, 697));
    const QRectF table = newestPlace();
    QVERIFY(QLineF(table.topLeft(), QPointF(100, 400)).length() < 4 * pixel);

    pressAction("actionAddQR");
    dragNewest(QPointF(49, 49), QPointF(949, 549));
    const QRectF qr = newestPlace();
    QVERIFY(QLineF(qr.topLeft(), QPointF(900, 500)).length() < 4 * pixel);
    accept();

    preview([&](QGraphicsScene* scene) {
        QCOMPARE(scene->sceneRect(), QRectF(0, 0, 1122, 793));
        const QList<QGraphicsItem*> items = pageItems(scene);
        QCOMPARE(items.size(), 3); // topmost first: the newest was saved first
        QCOMPARE(items[0]->pos(), qr.topLeft());
        QVERIFY(qgraphicsitem_cast<QGraphicsPixmapItem*>(items[0]));
        const auto geometry = [&](int index) {
            auto* frame = static_cast<QGraphicsWidget*>(items[index]->toGraphicsObject());
            return frame->geometry();
        };
        QCOMPARE(geometry(1), table);
        QCOMPARE(geometry(2), text);
    });
}

void tst_BlankPreview::centredTextHasItsInkAtTheSamePlace()
{
    openEditor(0);
    m_editor->createItem(QRectF(200, 300, 320, 90), "HHH", 0);
    const QRectF inside = newestPlace().adjusted(2, 2, -2, -2); // without the frame's outline
    m_view->scene()->clearSelection();
    const QRect shown = inkOf(m_view->scene(), inside);
    QVERIFY(!shown.isEmpty());
    Canvas::frames(m_view->scene()).first()->setSelected(true);
    accept();
    preview([&](QGraphicsScene* scene) {
        const QRect printed = inkOf(scene, inside);
        QVERIFY(qAbs(printed.width() - shown.width()) <= 1);
        QVERIFY(qAbs(printed.height() - shown.height()) <= 1);
        const QPoint apart = printed.center() - shown.center();
        QVERIFY2(apart.manhattanLength() <= 2,
                 qPrintable(QString("%1, %2").arg(apart.x()).arg(apart.y())));
    });
}

QTEST_MAIN(tst_BlankPreview)
#include "tst_BlankPreview.moc"
