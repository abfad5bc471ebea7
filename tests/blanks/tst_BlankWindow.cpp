#include <QtTest>

#include <QAbstractTextDocumentLayout>
#include <QAction>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QFontComboBox>
#include <QFontDatabase>
#include <QGraphicsPixmapItem>
#include <QGraphicsScene>
#include <QGraphicsTextItem>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QSplitter>
#include <QStyleOptionComboBox>
#include <QTableWidget>
#include <QTextDocument>
#include <QToolBar>
#include <QToolButton>
#include <QTreeWidget>

#include <memory>

#include "blanks/BlankRows.h"
#include "blanks/BlankWindow.h"
#include "blanks/Canvas.h"
#include "blanks/TableLayoutDialog.h"
#include "blanks/ZelvoraView.h"
#include "support/LogCatcher.h"
#include "support/ModalDriver.h"
#include "support/TempApplication.h"
#include "support/Widgets.h"

/// The blank editor, driven by its buttons, its tree, its properties table and the mouse.
class tst_BlankWindow : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void window();
    void canvasCoversWhatIsBehind();
    void panesOpenAsToldAndCanBeDragged();
    void propertiesFitTheirPane();
    void treeRowsAndToolTips();
    void toolTipOfANameWithMarkup();
    void pageSize_data();
    void pageSize();
    void pageOfNoWidth();
    void backgroundIsScaledIntoTheSize();
    void backgroundNamedAsOnWindows();
    void backgroundThatIsTooLarge();
    void missingBackgroundIsNoError();
    void contentWithoutItems_data();
    void contentWithoutItems();
    void contentAsTextAndAsBytes();
    void failedLoadIsLogged();

    void loadsATextItem();
    void textIsAsOnPaper();
    void loadsAQrItem();
    void loadsAnItemWithoutKeys();
    void loadsAnItemOfAnUnknownKind();
    void hugeItemsDoNoHarm();

    void addsAText();
    void addsAQr();
    void addsATable();
    void createItemTakesASize();
    void newItemsLandNearTheCorner();

    void treeOfTags();
    void treeLeafAddsItsItem_data();
    void treeLeafAddsItsItem();
    void treeGroupAddsNothing();
    void failedTreeIsLogged();

    void alignChild_data();
    void alignChild();

    void propertyRows();
    void propertyRowsOfEachKind();
    void noSelectionNoRows();
    void typedValuesReachTheItem();
    void typedNonsenseIsZero();
    void typedQrKeepsOneUnit();
    void openCellEditorIsTakenByAnAddButton();
    void changedPropertiesReachTheItem();
    void qrTextChangesByItsCellOnly();
    void zStrokeIsWrittenAsANumber();
    void fontThatIsNotInstalledStays();
    void fontSizeZeroIsAccepted();
    void newLineSpacingStaysUntilChanged();
    void wheelOverAPropertyChangesNothing();
    void typedPropertiesReplaceTheOnesReachedByTab();
    void enterGoesThroughTheProperties();
    void keysOnAClosedText();

    void dragUpdatesTheTable_data();
    void dragUpdatesTheTable();
    void dragKeepsFractions();
    void resizeKeepsTheChildAligned();
    void clickRemakesTheQr();
    void keyboardMoveUpdatesTheTable();
    void deleteEmptiesTheTable();

    void tableEditAccepted();
    void tableEditCancelled();
    void tableEditCancelledAddsNoKeys();

    void saveWritesTopmostFirst();
    void saveAfterTypingAndAfterDragging();
    void frameBelowTheNewSizeReloads();
    void apostropheIsSaved();
    void acceptSavesAndCloses();
    void rejectAndCloseLoseTheChanges();
    void failedSaveIsShownAndCloses();
    void unreadBlankIsNotReplaced();

private:
    BlankWindow& open(const BlankRow& row);
    BlankWindow& openWith(const QJsonArray& fields);
    template <class Widget>
    Widget* find(const char* name) const
    {
        return named<Widget>(m_editor.get(), name);
    }
    QTableWidget* table() const { return find<QTableWidget>("propertiesWidget"); }
    template <class Editor>
    Editor* cell(int row) const
    {
        return qobject_cast<Editor*>(table()->cellWidget(row, 1));
    }
    QStringList typedRows() const;
    void type(int row, const QString& text);
    void pressAction(const char* action);
    QGraphicsScene* scene() const { return m_view->scene(); }
    QList<QGraphicsRectItem*> frames() const { return Canvas::frames(scene()); }
    QGraphicsRectItem* onlyFrame() const;
    QJsonObject itemData(const QGraphicsItem* frame) const;

    std::unique_ptr<TempApplication> m_app;
    std::unique_ptr<BlankWindow> m_editor;
    ZelvoraView* m_view = nullptr;
    int m_blankId = 0;
};

namespace {

const QJsonObject textItem{{"type", 0},
                           {"value", "#LNAME"},
                           {"pos_x", 100.5},
                           {"pos_y", 80.25},
                           {"size_w", 240},
                           {"size_h", 60},
                           {"h_align", 2},
                           {"v_align", 2},
                           {"font_size", 12},
                           {"f_cut", 1},
                           {"font", "Liberation Sans"},
                           {"line_spacing", "1,5"},
                           {"vendor", "kept"}};
const QJsonObject qrItem{{"type", 1},     {"value", "#LNAME #BLANK_NO"},
                         {"pos_x", 400},  {"pos_y", 200},
                         {"size_w", 140}, {"size_h", 120}};
const QJsonObject tableItem{{"type", 2},
                            {"value", "#GRADES"},
                            {"pos_x", 20},
                            {"pos_y", 300},
                            {"size_w", 300},
                            {"size_h", 150},
                            {"h_align", 0},
                            {"v_align", 0},
                            {"font", "Liberation Serif"},
                            {"font_size", 11},
                            {"line_spacing", "1,15"},
                            {"row_from", 2},
                            {"row_to", 8},
                            {"columns_width", QJsonArray{180, 60}},
                            {"columns_align", QJsonArray{0, 2}}};

QGraphicsTextItem* textOf(const QGraphicsItem* frame)
{
    return qgraphicsitem_cast<QGraphicsTextItem*>(frame->childItems().first());
}

QGraphicsPixmapItem* pictureOf(const QGraphicsItem* frame)
{
    return qgraphicsitem_cast<QGraphicsPixmapItem*>(frame->childItems().first());
}

// The place of a child that is centred, whole units toward zero.
QPointF centred(const QGraphicsRectItem* frame)
{
    const QSizeF child = frame->childItems().first()->boundingRect().size();
    return QPointF(int((frame->rect().width() - child.width()) / 2),
                   int((frame->rect().height() - child.height()) / 2));
}

} // namespace

void tst_BlankWindow::init()
{
    m_app = std::make_unique<TempApplication>();
    m_app->exec("INSERT INTO forms (ID, FORM_NAME, FIELDS) VALUES (1, 'Свидетельство', ?)",
                {R"({"fields":[{"tag":"#SPECIALTY","name":"Специальность","type":0},)"
                 R"({"tag":"#GRADES","name":"Оценки","type":4},)"
                 R"({"tag":"#NOTE","name":"Примечание","type":5}]})"});
}

void tst_BlankWindow::cleanup()
{
    m_editor.reset();
    m_app.reset();
}

BlankWindow& tst_BlankWindow::open(const BlankRow& row)
{
    m_blankId = insertBlank(*m_app, row);
    m_editor = std::make_unique<BlankWindow>();
    m_editor->setBlankId(m_blankId);
    m_editor->loadBlank();
    m_editor->loadBlankTree();
    m_editor->show();
    m_editor->activateWindow();
    m_view = m_editor->findChild<ZelvoraView*>();
    if (!QTest::qWaitForWindowActive(m_editor.get())) {
        QTest::qFail("no active window", __FILE__, __LINE__);
    }
    return *m_editor;
}

BlankWindow& tst_BlankWindow::openWith(const QJsonArray& fields)
{
    BlankRow row;
    row.content = contentOf(fields);
    return open(row);
}

QStringList tst_BlankWindow::typedRows() const
{
    QStringList texts;
    for (int row = 0; row < 5; ++row) {
        texts << table()->item(row, 1)->text();
    }
    return texts;
}

void tst_BlankWindow::type(int row, const QString& text)
{
    table()->setCurrentCell(row, 1);
    table()->editItem(table()->item(row, 1));
    auto* line = table()->viewport()->findChild<QLineEdit*>("qt_editing_lineedit");
    if (!line) {
        line = qobject_cast<QLineEdit*>(QApplication::focusWidget());
    }
    line->selectAll();
    for (const QChar character : text) {
        QTest::sendKeyEvent(QTest::Click, line, Qt::Key_unknown, character, Qt::NoModifier);
    }
    QTest::keyClick(line, Qt::Key_Return);
    QApplication::processEvents(); // the table takes the text when the key is done
}

void tst_BlankWindow::pressAction(const char* action)
{
    QWidget* button = find<QToolBar>("toolBarTop")->widgetForAction(find<QAction>(action));
    QTest::mouseClick(button, Qt::LeftButton);
}

QGraphicsRectItem* tst_BlankWindow::onlyFrame() const
{
    const QList<QGraphicsRectItem*> all = frames();
    if (all.size() != 1) {
        QTest::qFail("not exactly one frame", __FILE__, __LINE__);
    }
    return all.value(0);
}

QJsonObject tst_BlankWindow::itemData(const QGraphicsItem* frame) const
{
    return QJsonDocument::fromJson(frame->data(256).toString().toUtf8()).object();
}

void tst_BlankWindow::window()
{
    open({});
    QCOMPARE(m_editor->windowTitle(), QString("Редактирование бланка"));
    QCOMPARE(m_editor->size(), QSize(939, 611));

    auto* bar = find<QToolBar>("toolBarTop");
    QVERIFY(!bar->isMovable());
    QCOMPARE(m_editor->toolBarArea(bar), Qt::TopToolBarArea);
    QCOMPARE(bar->iconSize(), QSize(40, 40));
    QCOMPARE(bar->toolButtonStyle(), Qt::ToolButtonTextBesideIcon);
    QStringList captions;
    const QList<QAction*> actions = bar->actions();
    for (const QAction* action : actions) {
        captions << action->text();
        QVERIFY(!action->icon().isNull());
    }
    QCOMPARE(captions, (QStringList{"ДОБАВИТЬ\nТЕКСТ", "ДОБАВИТЬ\nТАБЛИЦУ", "ДОБАВИТЬ QR"}));

    auto* splitter = m_editor->findChild<QSplitter*>();
    QCOMPARE(splitter->orientation(), Qt::Horizontal);
    QCOMPARE(splitter->widget(0), find<QTreeWidget>("blankTree"));
    QCOMPARE(splitter->widget(1)->layout(), find<QHBoxLayout>("blankViewLayout"));
    QCOMPARE(splitter->widget(2), table());
    QCOMPARE(find<QHBoxLayout>("blankViewLayout")->itemAt(0)->widget(), m_view);
    QCOMPARE(find<QHBoxLayout>("blankViewLayout")->contentsMargins(), QMargins());

    auto* tree = find<QTreeWidget>("blankTree");
    QVERIFY(tree->isHeaderHidden());
    QCOMPARE(tree->editTriggers(), QAbstractItemView::NoEditTriggers);
    QVERIFY(tree->alternatingRowColors());
    QCOMPARE(tree->dragDropMode(), QAbstractItemView::DragOnly);

    QCOMPARE(table()->columnCount(), 2);
    QCOMPARE(table()->rowCount(), 0);
    QCOMPARE(table()->horizontalHeaderItem(0)->text(), QString("Свойство"));
    QCOMPARE(table()->horizontalHeaderItem(1)->text(), QString("Значение"));
    QVERIFY(table()->horizontalHeader()->isHidden());
    QVERIFY(table()->verticalHeader()->isHidden());
    QCOMPARE(table()->horizontalHeader()->defaultSectionSize(), 150);
    QVERIFY(table()->horizontalHeader()->stretchLastSection());
    QCOMPARE(table()->selectionMode(), QAbstractItemView::SingleSelection);

    QCOMPARE(find<QPushButton>("buttonAccept")->text(), QString("Принять"));
    QCOMPARE(find<QPushButton>("buttonAccept")->property("btnRole1").toString(), QString("accept"));
    QCOMPARE(find<QPushButton>("buttonReject")->text(), QString("Отмена"));
    QCOMPARE(find<QPushButton>("buttonReject")->property("btnRole1").toString(), QString("reject"));
}

/// The canvas says that it paints all of itself, and so it does: nothing of another colour is left
/// where it was drawn onto.
void tst_BlankWindow::canvasCoversWhatIsBehind()
{
    open({});
    m_editor->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_editor.get()));
    QVERIFY(m_view->viewport()->testAttribute(Qt::WA_OpaquePaintEvent));
    m_view->scene()->clear();
    QImage picture(m_view->viewport()->size(), QImage::Format_RGB32);
    picture.fill(Qt::red);
    m_view->viewport()->render(&picture, QPoint(), QRegion(), QWidget::RenderFlags());
    QImage expected(picture.size(), picture.format());
    expected.fill(QColor(0xB9, 0xE5, 0xFF));
    QCOMPARE(picture, expected);
}

void tst_BlankWindow::panesOpenAsToldAndCanBeDragged()
{
    open({});
    auto* splitter = find<QSplitter>("splitter");
    QCOMPARE(splitter->sizes().value(0), 150);
    QCOMPARE(splitter->sizes().value(2), 150);
    QVERIFY(splitter->sizes().value(1) >= 400);

    // Both handles, to the sides and to the middle.
    const auto drag = [splitter](int handle, int by) {
        QWidget* bar = splitter->handle(handle);
        const QPoint grip = bar->rect().center();
        QTest::mousePress(bar, Qt::LeftButton, {}, grip);
        const QPoint target = grip + QPoint(by, 0);
        QMouseEvent move(QEvent::MouseMove, target, bar->mapToGlobal(target), Qt::NoButton,
                         Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(bar, &move);
        QTest::mouseRelease(bar, Qt::LeftButton);
    };
    drag(1, -30);
    drag(2, 30);
    QCOMPARE(splitter->sizes().value(0), 120);
    QCOMPARE(splitter->sizes().value(2), 120);
    drag(1, 130);
    drag(2, -130);
    QCOMPARE(splitter->sizes().value(0), 250);
    QCOMPARE(splitter->sizes().value(2), 250);
}

void tst_BlankWindow::propertiesFitTheirPane()
{
    open({});
    pressAction("actionAddTable");
    QTRY_COMPARE(table()->horizontalScrollBar()->maximum(), 0);
    const QRect pane = table()->viewport()->rect();
    for (int row = 0; row < table()->rowCount(); ++row) {
        const QTableWidgetItem* caption = table()->item(row, 0);
        QCOMPARE(caption->toolTip(), caption->text());
        if (QWidget* cell = table()->cellWidget(row, 1)) {
            QVERIFY2(pane.contains(cell->geometry()), qPrintable(caption->text()));
        }
    }
    // The longest choice of an alignment stands before the arrow of its list.
    const auto* align = qobject_cast<QComboBox*>(table()->cellWidget(5, 1));
    QStyleOptionComboBox option;
    option.initFrom(align);
    const QRect field = align->style()->subControlRect(QStyle::CC_ComboBox, &option,
                                                       QStyle::SC_ComboBoxEditField, align);
    QVERIFY(align->fontMetrics().horizontalAdvance("По центру") <= field.width());

    // In a wider pane the captions are whole, and no wider than told.
    find<QSplitter>("splitter")->setSizes({150, 400, 360});
    QTRY_COMPARE(table()->columnWidth(0), 150);
    QCOMPARE(table()->columnWidth(0) + table()->columnWidth(1), table()->viewport()->width());
}

void tst_BlankWindow::treeRowsAndToolTips()
{
    open({});
    auto* tree = find<QTreeWidget>("blankTree");
    tree->expandAll();
    const QTreeWidgetItem* leaf = tree->topLevelItem(0)->child(0);
    QCOMPARE(tree->visualItemRect(leaf).height(), 30);
    QCOMPARE(tree->visualItemRect(tree->topLevelItem(0)).height(), 30);
    QCOMPARE(leaf->toolTip(0), leaf->text(0));
}

void tst_BlankWindow::toolTipOfANameWithMarkup()
{
    const QString name = "Оценка <img src='/dev/zero'>";
    const QJsonObject fields = {{"fields", QJsonArray{QJsonObject{{"name", name}}}}};
    m_app->exec("UPDATE forms SET FIELDS = ?", {QJsonDocument(fields).toJson()});
    open({});
    const QTreeWidgetItem* leaf = find<QTreeWidget>("blankTree")->topLevelItem(2)->child(0);
    QCOMPARE(leaf->text(0), name);
    QTextDocument shown;
    shown.setHtml(leaf->toolTip(0));
    QCOMPARE(shown.toPlainText().replace(QChar::Nbsp, ' '), name);
}

void tst_BlankWindow::pageSize_data()
{
    QTest::addColumn<int>("format");
    QTest::addColumn<int>("orientation");
    QTest::addColumn<QSizeF>("size");
    // The columns say 200 by 100 mm: 755 by 377 units.
    QTest::newRow("A4 portrait") << 0 << 1 << QSizeF(793, 1122);
    QTest::newRow("A4 landscape") << 0 << 0 << QSizeF(1122, 793);
    QTest::newRow("A5 portrait") << 1 << 1 << QSizeF(559, 793);
    QTest::newRow("A5 landscape") << 1 << 0 << QSizeF(793, 559);
    QTest::newRow("custom portrait") << 42 << 1 << QSizeF(755, 377);
    QTest::newRow("custom landscape") << 42 << 0 << QSizeF(755, 377);
    QTest::newRow("unknown portrait") << 7 << 1 << QSizeF(755, 377);
    QTest::newRow("unknown landscape") << 7 << 0 << QSizeF(377, 755);
}

void tst_BlankWindow::pageSize()
{
    QFETCH(int, format);
    QFETCH(int, orientation);
    QFETCH(QSizeF, size);
    BlankRow row;
    row.paperFormat = format;
    row.orientation = orientation;
    row.width = 200;
    row.height = 100;
    open(row);
    QCOMPARE(scene()->sceneRect(), QRectF(QPointF(0, 0), size));
    const QList<QGraphicsItem*> items = scene()->items(Qt::AscendingOrder);
    QCOMPARE(items.size(), 2);
    auto* page = qgraphicsitem_cast<QGraphicsRectItem*>(items.first());
    QVERIFY(page);
    QCOMPARE(page->rect(), QRectF(QPointF(0, 0), size));
    QCOMPARE(page->brush(), QBrush(Qt::white));
    QCOMPARE(page->pen().color(), QColor(Qt::black));
    QVERIFY(qgraphicsitem_cast<QGraphicsPixmapItem*>(items.last()));
}

void tst_BlankWindow::pageOfNoWidth()
{
    BlankRow row;
    row.width = 0;
    row.background = "scan.png";
    QVERIFY(QImage(10, 10, QImage::Format_RGB32).save(m_app->path("scan.png")));
    open(row);
    QCOMPARE(scene()->sceneRect(), QRectF(0, 0, 0, 793));
}

void tst_BlankWindow::backgroundIsScaledIntoTheSize()
{
    QImage scan(300, 100, QImage::Format_RGB32);
    scan.fill(Qt::red);
    QVERIFY(scan.save(m_app->path("scan.png")));
    BlankRow row;
    row.paperFormat = 0; // the page follows the format, the background the sizes
    row.orientation = 1;
    row.background = "scan.png";
    open(row);
    auto* background =
        qgraphicsitem_cast<QGraphicsPixmapItem*>(scene()->items(Qt::AscendingOrder).last());
    QCOMPARE(background->pos(), QPointF(0, 0));
    QCOMPARE(background->pixmap().size(), QSize(1122, 374));
    QCOMPARE(background->pixmap().toImage().pixelColor(500, 200), QColor(Qt::red));
}

void tst_BlankWindow::backgroundNamedAsOnWindows()
{
    QVERIFY(QDir(m_app->path()).mkpath("blanks"));
    QVERIFY(QImage(300, 100, QImage::Format_RGB32).save(m_app->path("blanks/a.png")));
    BlankRow row;
    row.background = "Blanks\\A.PNG";
    open(row);
    auto* background =
        qgraphicsitem_cast<QGraphicsPixmapItem*>(scene()->items(Qt::AscendingOrder).last());
    QVERIFY(background && !background->pixmap().isNull());
}

void tst_BlankWindow::backgroundThatIsTooLarge()
{
    QImage scan(25000, 25000, QImage::Format_Mono);
    scan.fill(0);
    QVERIFY(scan.save(m_app->path("large.png")));
    scan = QImage(10, 10, QImage::Format_Mono);
    QVERIFY(scan.save(m_app->path("scan.png")));
    BlankRow pixels;
    pixels.background = "large.png";
    BlankRow page;
    page.width = 100000; // millimetres
    page.height = 100000;
    page.background = "scan.png";
    for (const BlankRow& row : {pixels, page}) {
        open(row);
        const QList<QGraphicsItem*> items = scene()->items(Qt::AscendingOrder);
        QCOMPARE(items.size(), 2);
        auto* background = qgraphicsitem_cast<QGraphicsPixmapItem*>(items.last());
        QVERIFY(background && background->pixmap().isNull());
    }
}

void tst_BlankWindow::missingBackgroundIsNoError()
{
    LogCatcher log;
    BlankRow row;
    row.background = "blanks/absent.png";
    open(row);
    QCOMPARE(scene()->items().size(), 2);
    QVERIFY(!log.contains("QPixmap"));
}

void tst_BlankWindow::contentWithoutItems_data()
{
    QTest::addColumn<QVariant>("content");
    QTest::newRow("null") << QVariant();
    QTest::newRow("empty") << QVariant("");
    QTest::newRow("no JSON") << QVariant("{\"fields\":[{");
    QTest::newRow("an array") << QVariant("[1,2]");
    QTest::newRow("no fields") << QVariant("{\"items\":[]}");
    QTest::newRow("no array") << QVariant("{\"fields\":7}");
    QTest::newRow("no items") << QVariant("{\"fields\":[]}");
}

void tst_BlankWindow::contentWithoutItems()
{
    QFETCH(QVariant, content);
    LogCatcher log;
    BlankRow row;
    row.content = content;
    open(row);
    QVERIFY(frames().isEmpty());
    QCOMPARE(scene()->sceneRect(), QRectF(0, 0, 1122, 793));
    QVERIFY(!log.contains("Unable"));
}

void tst_BlankWindow::contentAsTextAndAsBytes()
{
    const QByteArray bytes = contentOf({textItem});
    for (const QVariant& content : {QVariant(bytes), QVariant(QString::fromUtf8(bytes))}) {
        BlankRow row;
        row.content = content;
        open(row);
        QCOMPARE(itemData(onlyFrame()), textItem);
    }
}

void tst_BlankWindow::failedLoadIsLogged()
{
    m_app->exec("DROP TABLE blanks");
    LogCatcher log;
    m_editor = std::make_unique<BlankWindow>();
    m_editor->setBlankId(1);
    m_editor->loadBlank();
    QCOMPARE(log.count("Unable to execute select from blanks"), 1);
    QVERIFY(log.contains("no such table"));
    QVERIFY(m_editor->findChild<ZelvoraView*>()->scene()->items().isEmpty());
}

void tst_BlankWindow::loadsATextItem()
{
    openWith({textItem});
    QGraphicsRectItem* frame = onlyFrame();
    QCOMPARE(frame->pos(), QPointF(100.5, 80.25));
    QCOMPARE(frame->rect(), QRectF(0, 0, 240, 60));
    const auto movable = QGraphicsItem::ItemIsSelectable | QGraphicsItem::ItemIsFocusable |
                         QGraphicsItem::ItemIsMovable;
    QCOMPARE(frame->flags() & movable, movable);
    QCOMPARE(frame->childItems().size(), 1);
    QCOMPARE(textOf(frame)->toPlainText(), QString("#LNAME"));
    QCOMPARE(textOf(frame)->font().family(), QString("Liberation Sans"));
    QCOMPARE(textOf(frame)->font().pointSize(), 12);
    QCOMPARE(textOf(frame)->pos(), centred(frame));
    QVERIFY(scene()->selectedItems().isEmpty());
}

void tst_BlankWindow::textIsAsOnPaper()
{
    const QPalette desktop = QApplication::palette();
    QPalette dark = desktop;
    dark.setColor(QPalette::Text, Qt::white);
    QApplication::setPalette(dark);
    openWith({textItem});
    find<QAction>("actionAddTable")->trigger();
    QApplication::setPalette(desktop);

    constexpr int dotsPerInch = 96; // of a scene unit, on any screen
    const QList<QGraphicsItem*> items = scene()->items();
    int texts = 0;
    for (QGraphicsItem* item : items) {
        const auto* text = qgraphicsitem_cast<QGraphicsTextItem*>(item);
        if (text) {
            ++texts;
            QCOMPARE(text->defaultTextColor(), QColor(Qt::black));
            const QPaintDevice* paper = text->document()->documentLayout()->paintDevice();
            QVERIFY(paper);
            QCOMPARE(paper->logicalDpiX(), dotsPerInch);
            QCOMPARE(paper->logicalDpiY(), dotsPerInch);
        }
    }
    QCOMPARE(texts, 2);
}

void tst_BlankWindow::loadsAQrItem()
{
    openWith({qrItem});
    QGraphicsRectItem* frame = onlyFrame();
    QCOMPARE(frame->rect(), QRectF(0, 0, 140, 120));
    QCOMPARE(pictureOf(frame)->pixmap().size(), QSize(118, 118)); // the smaller side minus 2
    QCOMPARE(pictureOf(frame)->pos(), QPointF(1, 1));
    QCOMPARE(pictureOf(frame)->scale(), 1.0);
    const QImage picture = pictureOf(frame)->pixmap().toImage();
    QCOMPARE(picture.pixelColor(1, 1), QColor(Qt::white));
    QCOMPARE(picture.pixelColor(7, 7), QColor(Qt::black)); // 4 of 73 modules are the quiet zone
}

void tst_BlankWindow::loadsAnItemWithoutKeys()
{
    openWith({QJsonObject{{"value", "x"}}});
    QGraphicsRectItem* frame = onlyFrame();
    QCOMPARE(frame->pos(), QPointF(0, 0));
    QCOMPARE(frame->rect(), QRectF(0, 0, 0, 0));
    QCOMPARE(textOf(frame)->pos(), QPointF(0, 0)); // absent alignments are 0
    QCOMPARE(textOf(frame)->font().family(), QString("Liberation Serif"));
    QCOMPARE(textOf(frame)->font().pointSize(), 14);
}

void tst_BlankWindow::loadsAnItemOfAnUnknownKind()
{
    QJsonObject item = textItem;
    item["type"] = 9;
    openWith({item});
    QCOMPARE(textOf(onlyFrame())->toPlainText(), QString("#LNAME"));
    QVERIFY(m_editor->saveBlank());
    QCOMPARE(storedFields(*m_app, m_blankId), QJsonArray{item});
}

void tst_BlankWindow::hugeItemsDoNoHarm()
{
    QJsonObject qr = qrItem;
    qr["size_w"] = 1e12;
    qr["size_h"] = 1e9;
    QJsonObject text = textItem;
    text["pos_x"] = 1e300;
    text["size_w"] = -1e300;
    QJsonObject turnedQr = qrItem;
    turnedQr["size_w"] = -1e300;
    openWith({qr, text, turnedQr});
    for (QGraphicsRectItem* frame : frames()) {
        scene()->clearSelection();
        frame->setSelected(true);
        m_editor->invalidateCurrentItem();
    }
    QVERIFY(m_editor->saveBlank());
    QCOMPARE(storedFields(*m_app, m_blankId), (QJsonArray{turnedQr, text, qr}));
}

void tst_BlankWindow::addsAText()
{
    open({});
    pressAction("actionAddText");
    QGraphicsRectItem* frame = onlyFrame();
    QCOMPARE(frame->rect(), QRectF(0, 0, 200, 50)); // the text itself is smaller
    const QJsonObject expected{
        {"type", 0},     {"value", "#LNAME"}, {"pos_x", frame->x()},        {"pos_y", frame->y()},
        {"size_w", 200}, {"size_h", 50},      {"font", "Liberation Serif"}, {"font_size", 14},
        {"h_align", 2},  {"v_align", 2},      {"line_spacing", "1"}};
    QCOMPARE(itemData(frame), expected);
    QCOMPARE(textOf(frame)->font().family(), QString("Liberation Serif"));
    QCOMPARE(textOf(frame)->font().pointSize(), 14);
    QCOMPARE(textOf(frame)->pos(), centred(frame));
    QCOMPARE(scene()->selectedItems(), QList<QGraphicsItem*>{frame});
    QCOMPARE(table()->rowCount(), 11);
}

void tst_BlankWindow::addsAQr()
{
    open({});
    pressAction("actionAddQR");
    QGraphicsRectItem* frame = onlyFrame();
    QCOMPARE(frame->rect(), QRectF(0, 0, 98, 98));
    const QJsonObject expected{{"type", 1},
                               {"value", "#LNAME #FNAME #MNAME"},
                               {"pos_x", frame->x()},
                               {"pos_y", frame->y()},
                               {"size_w", 98},
                               {"size_h", 98},
                               {"font", "Liberation Serif"},
                               {"font_size", 14},
                               {"h_align", 2},
                               {"v_align", 2},
                               {"line_spacing", "1"}};
    QCOMPARE(itemData(frame), expected);
    QCOMPARE(pictureOf(frame)->pixmap().size(), QSize(96, 96));
    QCOMPARE(pictureOf(frame)->pos(), QPointF(1, 1));
}

void tst_BlankWindow::addsATable()
{
    openWith({textItem});
    frames().first()->setSelected(true);
    pressAction("actionAddTable");
    QCOMPARE(frames().size(), 2);
    QGraphicsRectItem* frame = frames().first();
    QCOMPARE(frame->rect(), QRectF(0, 0, 200, 50));
    const QJsonObject expected{{"type", 2},
                               {"value", "#TABLE"},
                               {"pos_x", frame->x()},
                               {"pos_y", frame->y()},
                               {"size_w", 200},
                               {"size_h", 50},
                               {"font", "Liberation Serif"},
                               {"font_size", 14},
                               {"h_align", 0},
                               {"v_align", 0},
                               {"line_spacing", "1"},
                               {"row_from", 1},
                               {"row_to", 10},
                               {"columns_width", QJsonArray{150}},
                               {"columns_align", QJsonArray{0}}};
    QCOMPARE(itemData(frame), expected);
    QCOMPARE(textOf(frame)->pos(), QPointF(0, 0));
    QCOMPARE(scene()->selectedItems(), QList<QGraphicsItem*>{frame});
}

void tst_BlankWindow::createItemTakesASize()
{
    open({});
    m_editor->createItem(QRectF(5.5, 6, 300, 0), "#FNAME", 0);
    QCOMPARE(onlyFrame()->rect(), QRectF(0, 0, 300, 0));
    QCOMPARE(onlyFrame()->pos(), QPointF(5.5, 6));
    delete onlyFrame();

    // A text that is larger than 200 by 50 in the default font keeps its own size.
    const QString value("#LNAME #FNAME #MNAME #BLANK_SER #BLANK_NO #ISSUE_DATE #EDIT_DATE");
    m_editor->createItem(QRectF(5, 6, 1, 1), value, 0);
    QGraphicsTextItem measure(value);
    QVERIFY(measure.boundingRect().width() > 200);
    QCOMPARE(onlyFrame()->rect().width(), measure.boundingRect().width());
    QCOMPARE(onlyFrame()->rect().height(), 50.0);
    delete onlyFrame();

    m_editor->createItem(QRectF(5, 6, 300, 300), "x", 1);
    QCOMPARE(onlyFrame()->rect(), QRectF(0, 0, 98, 98));
}

void tst_BlankWindow::newItemsLandNearTheCorner()
{
    open({});
    Canvas::zoom(m_view, 2);
    QSet<QPair<int, int>> places;
    for (int i = 0; i < 30; ++i) {
        m_editor->addTextItem();
        const QPointF pixel = m_view->viewportTransform().map(frames().first()->pos());
        const QPoint whole(qRound(pixel.x()), qRound(pixel.y()));
        QVERIFY(QRect(10, 10, 50, 50).contains(whole));
        places.insert({whole.x(), whole.y()});
    }
    QVERIFY(places.size() > 10);
}

void tst_BlankWindow::treeOfTags()
{
    open({});
    using Leaves = QList<QPair<QString, QString>>;
    const QList<QPair<QString, Leaves>> expected = {
        {"Организация",
         {{"Название огранизации ВП", "#ORG_NAME_1"},
          {"Название организации ПП", "#ORG_NAME_2"},
          {"Регион (область)", "#ORG_REGION"},
          {"Населённый пункт", "#ORG_LOCALITY"},
          {"Полное имя директора", "#ORG_DIRECTOR"},
          {"Сокращенное имя директора", "#ORG_DIRECTOR_SHORT"}}},
        {"Основные поля",
         {{"Фамилия", "#LNAME"},
          {"Имя", "#FNAME"},
          {"Отчество", "#MNAME"},
          {"Дата рождения", "#BIRTH_DATE"},
          {"Дата выдачи", "#ISSUE_DATE"},
          {"Дата изменения", "#EDIT_DATE"},
          {"Серия бланка", "#BLANK_SER"},
          {"Номер бланка", "#BLANK_NO"},
          {"Дубликат", "#DUPLICATE"}}},
        {"Дополнительные поля",
         {{"Специальность", "#SPECIALTY,0"}, {"Оценки", "#GRADES,4"}, {"Примечание", "#NOTE,5"}}}};

    auto* tree = find<QTreeWidget>("blankTree");
    QList<QPair<QString, Leaves>> shown;
    for (int i = 0; i < tree->topLevelItemCount(); ++i) {
        const QTreeWidgetItem* group = tree->topLevelItem(i);
        QVERIFY(!group->isExpanded());
        QVERIFY(!group->data(1, 256).isValid());
        Leaves leaves;
        for (int j = 0; j < group->childCount(); ++j) {
            const QTreeWidgetItem* leaf = group->child(j);
            leaves << qMakePair(leaf->text(0), leaf->data(1, 256).toString());
        }
        shown << qMakePair(group->text(0), leaves);
    }
    QCOMPARE(shown, expected);
}

void tst_BlankWindow::treeLeafAddsItsItem_data()
{
    QTest::addColumn<int>("group");
    QTest::addColumn<int>("leaf");
    QTest::addColumn<QString>("value");
    QTest::addColumn<int>("kind");
    QTest::newRow("organisation") << 0 << 2 << "#ORG_REGION" << 0;
    QTest::newRow("fixed field") << 1 << 3 << "#BIRTH_DATE" << 0;
    QTest::newRow("string field") << 2 << 0 << "#SPECIALTY" << 0;
    QTest::newRow("table field") << 2 << 1 << "#GRADES" << 2;
    QTest::newRow("text field") << 2 << 2 << "#NOTE" << 0;
}

void tst_BlankWindow::treeLeafAddsItsItem()
{
    QFETCH(int, group);
    QFETCH(int, leaf);
    QFETCH(QString, value);
    QFETCH(int, kind);
    open({});
    auto* tree = find<QTreeWidget>("blankTree");
    tree->expandAll();
    tree->scrollToItem(tree->topLevelItem(group)->child(leaf));
    const QPoint at = tree->visualItemRect(tree->topLevelItem(group)->child(leaf)).center();
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, Qt::NoModifier, at);
    QTest::mouseDClick(tree->viewport(), Qt::LeftButton, Qt::NoModifier, at);
    QCOMPARE(itemData(onlyFrame())["value"].toString(), value);
    QCOMPARE(itemData(onlyFrame())["type"].toInt(), kind);
    QCOMPARE(onlyFrame()->rect(), QRectF(0, 0, 200, 50));
}

void tst_BlankWindow::treeGroupAddsNothing()
{
    open({});
    auto* tree = find<QTreeWidget>("blankTree");
    for (int i = 0; i < 3; ++i) {
        m_editor->treeItemDblClick(tree->topLevelItem(i));
    }
    QVERIFY(frames().isEmpty());
}

void tst_BlankWindow::failedTreeIsLogged()
{
    LogCatcher log;
    BlankRow row;
    row.formId = QVariant();
    open(row); // no form: the statement for its fields ends too early
    QCOMPARE(log.count("Unable to execute select items query"), 1);
    auto* tree = find<QTreeWidget>("blankTree");
    QCOMPARE(tree->topLevelItemCount(), 3);
    QCOMPARE(tree->topLevelItem(2)->childCount(), 0);

    log.clear();
    m_app->exec("DROP TABLE blanks");
    m_editor->loadBlankTree();
    QCOMPARE(log.count("Unable to execute select from blanks"), 1);
    QCOMPARE(tree->topLevelItemCount(), 0);
}

void tst_BlankWindow::alignChild_data()
{
    QTest::addColumn<QRectF>("frame");
    QTest::addColumn<int>("hAlign");
    QTest::addColumn<int>("vAlign");
    QTest::addColumn<QPoint>("place");
    const QRectF frame(0, 0, 200, 100); // the child is 50.5 by 20.5
    QTest::newRow("left top") << frame << 0 << 0 << QPoint(0, 0);
    QTest::newRow("right bottom") << frame << 1 << 1 << QPoint(149, 79);
    QTest::newRow("centre") << frame << 2 << 2 << QPoint(74, 39);
    QTest::newRow("left bottom") << frame << 0 << 1 << QPoint(0, 79);
    QTest::newRow("others") << frame << 3 << -1 << QPoint(0, 0);
    QTest::newRow("larger child") << QRectF(0, 0, 40, 10) << 2 << 1 << QPoint(-5, -10);
    QTest::newRow("moved frame") << QRectF(10.9, 20.9, 200, 100) << 0 << 2 << QPoint(10, 60);
}

void tst_BlankWindow::alignChild()
{
    QFETCH(QRectF, frame);
    QFETCH(int, hAlign);
    QFETCH(int, vAlign);
    QFETCH(QPoint, place);
    QCOMPARE(BlankWindow::alignChild(frame, QRectF(0, 0, 50.5, 20.5), hAlign, vAlign), place);
}

void tst_BlankWindow::propertyRows()
{
    openWith({textItem});
    onlyFrame()->setSelected(true);
    const QList<QPair<QString, int>> captions = {{"Текст", 0},
                                                 {"X", 1},
                                                 {"Y", 2},
                                                 {"Ширина", 3},
                                                 {"Высота", 4},
                                                 {"Выравнивание X", 5},
                                                 {"Выравнивание Y", 6},
                                                 {"Шрифт", 7},
                                                 {"Размер шрифта", 8},
                                                 {"Межстрочный интервал", 11},
                                                 {"Росчерк", 9}};
    QCOMPARE(table()->rowCount(), captions.size());
    for (int row = 0; row < captions.size(); ++row) {
        const QTableWidgetItem* caption = table()->item(row, 0);
        QCOMPARE(caption->text(), captions[row].first);
        QCOMPARE(caption->data(256).toInt(), captions[row].second);
        QVERIFY(!caption->flags().testFlag(Qt::ItemIsEditable));
        if (row > 4) {
            QCOMPARE(table()->cellWidget(row, 1)->styleSheet(), QString("border: none"));
        }
    }
    QCOMPARE(typedRows(), (QStringList{"#LNAME", "100", "80", "240", "60"}));

    const auto entries = [this](int row) {
        QStringList all;
        for (int i = 0; i < cell<QComboBox>(row)->count(); ++i) {
            all << cell<QComboBox>(row)->itemText(i);
        }
        return all;
    };
    QCOMPARE(entries(5), (QStringList{"Слева", "Справа", "По центру"}));
    QCOMPARE(cell<QComboBox>(5)->currentIndex(), 2);
    QCOMPARE(entries(6), (QStringList{"Сверху", "Снизу", "По центру"}));
    QCOMPARE(cell<QComboBox>(6)->currentIndex(), 2);
    QCOMPARE(cell<QFontComboBox>(7)->currentText(), QString("Liberation Sans"));
    QCOMPARE(cell<QSpinBox>(8)->value(), 12);
    QCOMPARE(entries(9), (QStringList{"1,0", "1,15", "1,5", "2,0"}));
    QCOMPARE(cell<QComboBox>(9)->currentText(), QString("1,5"));
    QVERIFY(cell<QCheckBox>(10)->isChecked());

    // Showing the item has changed nothing in it.
    QCOMPARE(itemData(onlyFrame()), textItem);
}

void tst_BlankWindow::propertyRowsOfEachKind()
{
    openWith({qrItem, tableItem});
    QGraphicsRectItem* qr = frames().last();
    QGraphicsRectItem* grades = frames().first();
    qr->setSelected(true);
    QCOMPARE(table()->rowCount(), 11);
    QCOMPARE(cell<QComboBox>(5)->currentIndex(), 0);
    QCOMPARE(cell<QComboBox>(9)->currentText(), QString("1,0"));
    QVERIFY(!cell<QCheckBox>(10)->isChecked());

    scene()->clearSelection();
    grades->setSelected(true);
    QCOMPARE(table()->rowCount(), 12);
    QCOMPARE(table()->item(11, 0)->text(), QString("Столбцы"));
    QCOMPARE(table()->item(11, 0)->data(256).toInt(), 10);
    QCOMPARE(cell<QPushButton>(11)->text(), QString("Изменить"));
    QCOMPARE(cell<QComboBox>(9)->currentText(), QString("1,15"));
}

void tst_BlankWindow::noSelectionNoRows()
{
    openWith({textItem});
    onlyFrame()->setSelected(true);
    scene()->clearSelection();
    QCOMPARE(table()->rowCount(), 0);
    m_editor->itemPropertyChanged();
    m_editor->itemValueChanged(0, 1);
    m_editor->invalidateCurrentItem();
    m_editor->tableEdit();
    QCOMPARE(itemData(onlyFrame()), textItem);
}

void tst_BlankWindow::typedValuesReachTheItem()
{
    openWith({textItem});
    QGraphicsRectItem* frame = onlyFrame();
    frame->setSelected(true);
    type(0, "№ #BLANK_NO");
    QCOMPARE(textOf(frame)->toPlainText(), QString("№ #BLANK_NO"));
    type(1, "33");
    type(2, "-44");
    type(3, "150");
    type(4, "20");
    QCOMPARE(frame->pos(), QPointF(33, -44));
    QCOMPARE(frame->rect(), QRectF(0, 0, 150, 20)); // no limit of 30 here
    QCOMPARE(textOf(frame)->pos(), centred(frame));
    QJsonObject expected = textItem;
    expected["value"] = "№ #BLANK_NO";
    expected["pos_x"] = 33;
    expected["pos_y"] = -44;
    expected["size_w"] = 150;
    expected["size_h"] = 20;
    QCOMPARE(itemData(frame), expected);
    QVERIFY(!frame->data(256).toString().contains('\n')); // compact
}

void tst_BlankWindow::typedNonsenseIsZero()
{
    openWith({textItem});
    onlyFrame()->setSelected(true);
    type(1, "abc");
    QCOMPARE(onlyFrame()->x(), 0.0);
    type(3, "12.5");
    QCOMPARE(onlyFrame()->rect().width(), 0.0);
    QCOMPARE(itemData(onlyFrame())["pos_x"].toInt(-1), 0);
}

void tst_BlankWindow::typedQrKeepsOneUnit()
{
    openWith({qrItem});
    QGraphicsRectItem* frame = onlyFrame();
    frame->setSelected(true);
    type(3, "100");
    QCOMPARE(pictureOf(frame)->pixmap().size(), QSize(99, 99));
    const QImage before = pictureOf(frame)->pixmap().toImage();
    type(0, "12345");
    QCOMPARE(itemData(frame)["value"].toString(), QString("12345"));
    QCOMPARE(pictureOf(frame)->pixmap().size(), QSize(99, 99));
    QVERIFY(pictureOf(frame)->pixmap().toImage() != before);
    type(4, "0");
    QVERIFY(pictureOf(frame)->pixmap().isNull());
}

void tst_BlankWindow::openCellEditorIsTakenByAnAddButton()
{
    openWith({textItem});
    QGraphicsRectItem* frame = onlyFrame();
    frame->setSelected(true);
    table()->setFocus();
    table()->setCurrentCell(0, 1);
    table()->editItem(table()->item(0, 1));
    auto* line = qobject_cast<QLineEdit*>(QApplication::focusWidget());
    QVERIFY(line);
    line->selectAll();
    QTest::keyClicks(line, "#FNAME");
    pressAction("actionAddText");
    QCOMPARE(frames().size(), 2);
    QCOMPARE(itemData(frame)["value"].toString(), QString("#FNAME"));
    QCOMPARE(itemData(frames().first())["value"].toString(), QString("#LNAME"));
}

void tst_BlankWindow::changedPropertiesReachTheItem()
{
    openWith({textItem});
    QGraphicsRectItem* frame = onlyFrame();
    frame->setSelected(true);
    QTest::keyClick(cell<QComboBox>(5), Qt::Key_Home);
    QCOMPARE(textOf(frame)->pos().x(), 0.0);
    QTest::keyClick(cell<QComboBox>(6), Qt::Key_Up);
    QCOMPARE(textOf(frame)->pos().y(), double(int(60 - textOf(frame)->boundingRect().height())));
    QTest::keyClick(cell<QSpinBox>(8), Qt::Key_Up);
    QCOMPARE(textOf(frame)->font().pointSize(), 13);
    QTest::keyClick(cell<QComboBox>(9), Qt::Key_End);
    cell<QFontComboBox>(7)->setCurrentText("Liberation Mono");
    QTest::keyClick(cell<QFontComboBox>(7)->lineEdit(), Qt::Key_Return);
    QCOMPARE(textOf(frame)->font().family(), QString("Liberation Mono"));

    QJsonObject expected = textItem;
    expected["h_align"] = 0;
    expected["v_align"] = 1;
    expected["font_size"] = 13;
    expected["line_spacing"] = "2,0";
    expected["font"] = "Liberation Mono";
    QCOMPARE(itemData(frame), expected);
    QVERIFY(!frame->data(256).toString().contains('\n'));
}

void tst_BlankWindow::qrTextChangesByItsCellOnly()
{
    openWith({qrItem});
    onlyFrame()->setSelected(true);
    QSignalBlocker blocker(table()); // the text changes without a sign
    table()->item(0, 1)->setText("other");
    QTest::keyClick(cell<QComboBox>(5), Qt::Key_End);
    QCOMPARE(itemData(onlyFrame())["value"].toString(), QString("#LNAME #BLANK_NO"));
    QCOMPARE(itemData(onlyFrame())["h_align"].toInt(), 2);
}

void tst_BlankWindow::zStrokeIsWrittenAsANumber()
{
    QJsonObject item = textItem;
    item.remove("f_cut");
    openWith({item});
    onlyFrame()->setSelected(true);
    QTest::keyClick(cell<QCheckBox>(10), Qt::Key_Space);
    QCOMPARE(itemData(onlyFrame())["f_cut"], QJsonValue(1));
    QTest::keyClick(cell<QCheckBox>(10), Qt::Key_Space);
    QCOMPARE(itemData(onlyFrame())["f_cut"], QJsonValue(0));
}

void tst_BlankWindow::fontThatIsNotInstalledStays()
{
    QJsonObject item = textItem;
    item["font"] = "Nonesuch Serif";
    openWith({item});
    onlyFrame()->setSelected(true);
    auto* combo = cell<QFontComboBox>(7);
    QCOMPARE(combo->currentText(), QString("Nonesuch Serif"));
    QTest::keyClick(cell<QSpinBox>(8), Qt::Key_Up);
    QCOMPARE(itemData(onlyFrame())["font"].toString(), QString("Nonesuch Serif"));

    // It stands over no entry of the list, so that choosing any of them counts as a change.
    QCOMPARE(combo->currentIndex(), -1);
    combo->setCurrentIndex(0);
    QCOMPARE(itemData(onlyFrame())["font"].toString(), combo->itemText(0));
}

void tst_BlankWindow::fontSizeZeroIsAccepted()
{
    LogCatcher log;
    openWith({textItem});
    onlyFrame()->setSelected(true);
    cell<QSpinBox>(8)->setValue(0);
    QCOMPARE(itemData(onlyFrame())["font_size"], QJsonValue(0));
    QCOMPARE(textOf(onlyFrame())->font().pointSize(), 14); // the blank's, as in the preview
    QVERIFY(!log.contains("setPointSize"));
}

void tst_BlankWindow::newLineSpacingStaysUntilChanged()
{
    open({});
    pressAction("actionAddText");
    QCOMPARE(cell<QComboBox>(9)->currentText(), QString("1,0"));
    type(0, "#FNAME");
    QVERIFY(m_editor->saveBlank());
    QCOMPARE(storedFields(*m_app, m_blankId).at(0)["line_spacing"].toString(), QString("1"));
    QTest::keyClick(cell<QComboBox>(9), Qt::Key_Down);
    QVERIFY(m_editor->saveBlank());
    QCOMPARE(storedFields(*m_app, m_blankId).at(0)["line_spacing"].toString(), QString("1,15"));
}

void tst_BlankWindow::wheelOverAPropertyChangesNothing()
{
    openWith({textItem});
    onlyFrame()->setSelected(true);
    m_view->setFocus();
    for (const int row : {5, 6, 7, 8, 9}) {
        QWidget* widget = table()->cellWidget(row, 1);
        const QPointF center = widget->rect().center();
        QWheelEvent event(center, widget->mapToGlobal(center.toPoint()), QPoint(), QPoint(0, 120),
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(widget, &event);
    }
    QCOMPARE(itemData(onlyFrame()), textItem);
}

void tst_BlankWindow::typedPropertiesReplaceTheOnesReachedByTab()
{
    openWith({textItem});
    onlyFrame()->setSelected(true);
    find<QTreeWidget>("blankTree")->setFocus();
    while (QApplication::focusWidget() != table()) {
        pressKey(Qt::Key_Tab);
    }
    for (const char* text : {"#FNAME", "11", "12", "130", "40"}) {
        typeKeys(text);
        pressKey(Qt::Key_Tab);
    }
    for (int i = 0; i < 3; ++i) {
        pressKey(Qt::Key_Tab); // past both alignments and the font
    }
    QCOMPARE(QApplication::focusWidget(), cell<QSpinBox>(8));
    typeKeys("14");
    QCOMPARE(itemData(onlyFrame())["font_size"], QJsonValue(14));
    QCOMPARE(itemData(onlyFrame())["font"], textItem["font"]);
    QCOMPARE(typedRows(), QStringList({"#FNAME", "11", "12", "130", "40"}));
}

void tst_BlankWindow::enterGoesThroughTheProperties()
{
    QJsonObject item = tableItem;
    item["f_cut"] = 0; // as the first change of any property writes it
    openWith({item});
    onlyFrame()->setSelected(true);
    find<QTreeWidget>("blankTree")->setFocus();
    while (QApplication::focusWidget() != table()) {
        pressKey(Qt::Key_Tab);
    }
    for (int row = 0; row < 11; ++row) {
        QCOMPARE(table()->currentRow(), row);
        pressKey(Qt::Key_Return);
    }
    QVERIFY(m_editor->isVisible());
    QCOMPARE(itemData(onlyFrame()), item);
    ModalDriver driver;
    driver.expect<TableLayoutDialog>(
        [](TableLayoutDialog* layout) { clickButton(*layout, "buttonReject"); });
    pressKey(Qt::Key_Return); // on a button the key presses it
    QVERIFY2(driver.finished(), driver.failures());
}

void tst_BlankWindow::keysOnAClosedText()
{
    openWith({textItem});
    onlyFrame()->setSelected(true);
    clickRow(table(), 0); // a caption
    pressKey(Qt::Key_Right);
    QApplication::clipboard()->setText("#MNAME");
    pressKey(Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(textOf(onlyFrame())->toPlainText(), QString("#MNAME"));
    pressKey(Qt::Key_Delete);
    QCOMPARE(textOf(onlyFrame())->toPlainText(), QString());
    QCOMPARE(itemData(onlyFrame())["value"], QJsonValue(""));
}

void tst_BlankWindow::dragUpdatesTheTable_data()
{
    QTest::addColumn<int>("zoom");
    QTest::newRow("zoom 1") << 0;
    QTest::newRow("zoom in") << 2;
}

void tst_BlankWindow::dragUpdatesTheTable()
{
    QFETCH(int, zoom);
    openWith({textItem});
    QGraphicsRectItem* frame = onlyFrame();
    Canvas::zoom(m_view, zoom);
    m_view->centerOn(frame);
    const QPoint from = m_view->mapFromScene(frame->sceneBoundingRect().center());
    Canvas::drag(m_view, from, from + QPoint(60, 30));
    const double scale = m_view->transform().m11();
    const QPointF place(100.5 + 60 / scale, 80.25 + 30 / scale);
    QVERIFY(QLineF(frame->pos(), place).length() < 1e-6);
    QCOMPARE(typedRows(), (QStringList{"#LNAME", QString::number(int(place.x())),
                                       QString::number(int(place.y())), "240", "60"}));
    QCOMPARE(itemData(frame), textItem); // caught up with at the save only
}

void tst_BlankWindow::dragKeepsFractions()
{
    openWith({textItem});
    QGraphicsRectItem* frame = onlyFrame();
    const QPoint from = m_view->mapFromScene(frame->sceneBoundingRect().center());
    Canvas::drag(m_view, from, from + QPoint(10, 0));
    // The whole numbers that the program wrote into the table are not taken for typed ones.
    QCOMPARE(frame->pos(), QPointF(110.5, 80.25));
}

void tst_BlankWindow::resizeKeepsTheChildAligned()
{
    for (const auto& [hAlign, vAlign] : {qMakePair(0, 0), qMakePair(1, 1), qMakePair(2, 2)}) {
        QJsonObject item = textItem;
        item["h_align"] = hAlign;
        item["v_align"] = vAlign;
        openWith({item});
        QGraphicsRectItem* frame = onlyFrame();
        const QPoint from = m_view->mapFromScene(frame->mapToScene(238, 58));
        Canvas::drag(m_view, from, from + QPoint(30, 40));
        QCOMPARE(frame->rect(), QRectF(0, 0, 270, 100));
        const QSizeF free = frame->rect().size() - textOf(frame)->boundingRect().size();
        const double factor = hAlign == 2 ? 0.5 : hAlign;
        QCOMPARE(textOf(frame)->pos(),
                 QPointF(int(free.width() * factor), int(free.height() * factor)));
        QCOMPARE(typedRows(), (QStringList{"#LNAME", "100", "80", "270", "100"}));
    }
}

void tst_BlankWindow::clickRemakesTheQr()
{
    openWith({qrItem});
    QGraphicsRectItem* frame = onlyFrame();
    QCOMPARE(pictureOf(frame)->pixmap().size(), QSize(118, 118));
    m_view->centerOn(frame);
    const QPoint at = m_view->mapFromScene(frame->sceneBoundingRect().center());
    Canvas::press(m_view, at);
    Canvas::release(m_view, at);
    QCOMPARE(pictureOf(frame)->pixmap().size(), QSize(119, 119));

    const QPoint edge = m_view->mapFromScene(frame->mapToScene(70, 118));
    Canvas::drag(m_view, edge, edge + QPoint(0, -40));
    QCOMPARE(frame->rect(), QRectF(0, 0, 140, 80));
    QCOMPARE(pictureOf(frame)->pixmap().size(), QSize(79, 79));
    QCOMPARE(pictureOf(frame)->pos(), QPointF(1, 1));
}

void tst_BlankWindow::keyboardMoveUpdatesTheTable()
{
    openWith({textItem});
    Canvas::key(m_view, Qt::Key_Right); // selects the frame
    QCOMPARE(typedRows(), (QStringList{"#LNAME", "100", "80", "240", "60"}));
    for (int i = 0; i < 3; ++i) {
        Canvas::key(m_view, Qt::Key_Right, Qt::ShiftModifier);
    }
    Canvas::key(m_view, Qt::Key_Up, Qt::ShiftModifier);
    QCOMPARE(onlyFrame()->pos(), QPointF(103.5, 79.25));
    QCOMPARE(typedRows(), (QStringList{"#LNAME", "103", "79", "240", "60"}));
}

void tst_BlankWindow::deleteEmptiesTheTable()
{
    openWith({textItem, qrItem});
    frames().first()->setSelected(true);
    QCOMPARE(table()->rowCount(), 11);
    Canvas::key(m_view, Qt::Key_Delete);
    QCOMPARE(table()->rowCount(), 0);
    QVERIFY(m_editor->saveBlank());
    QCOMPARE(storedFields(*m_app, m_blankId), QJsonArray{textItem});
}

void tst_BlankWindow::tableEditAccepted()
{
    openWith({tableItem});
    onlyFrame()->setSelected(true);
    ModalDriver driver;
    driver.expect<TableLayoutDialog>([](TableLayoutDialog* dialog) {
        QVERIFY(!dialog->parent());
        QCOMPARE(dialog->columnsWidth(), (QJsonArray{180, 60}));
        QCOMPARE(dialog->columnsAlign(), (QJsonArray{0, 2}));
        QCOMPARE(dialog->rowFrom(), 2);
        QCOMPARE(dialog->rowTo(), 8);
        QTest::mouseClick(dialog->findChild<QPushButton*>("buttonAddCol"), Qt::LeftButton);
        dialog->findChild<QLineEdit*>("toEdit")->setText("30");
        QTest::mouseClick(dialog->findChild<QPushButton*>("buttonAccept"), Qt::LeftButton);
    });
    QTest::mouseClick(cell<QPushButton>(11), Qt::LeftButton);
    QVERIFY2(driver.finished(), driver.failures());
    QJsonObject expected = tableItem;
    expected["columns_width"] = QJsonArray{180, 60, 0};
    expected["columns_align"] = QJsonArray{0, 2, 0};
    expected["row_to"] = 30;
    QCOMPARE(itemData(onlyFrame()), expected);
}

void tst_BlankWindow::tableEditCancelled()
{
    openWith({tableItem});
    onlyFrame()->setSelected(true);
    ModalDriver driver;
    driver.expect<TableLayoutDialog>([](TableLayoutDialog* dialog) {
        dialog->findChild<QLineEdit*>("toEdit")->setText("30");
        QTest::mouseClick(dialog->findChild<QPushButton*>("buttonReject"), Qt::LeftButton);
    });
    QTest::mouseClick(cell<QPushButton>(11), Qt::LeftButton);
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(itemData(onlyFrame()), tableItem);
}

void tst_BlankWindow::tableEditCancelledAddsNoKeys()
{
    // Without row_to all rows print: a look into the dialog must not cut them to ten.
    QJsonObject item = tableItem;
    for (const char* key : {"row_from", "row_to", "columns_width", "columns_align"}) {
        item.remove(QLatin1String(key));
    }
    openWith({item});
    onlyFrame()->setSelected(true);
    ModalDriver driver;
    driver.expect<TableLayoutDialog>([](TableLayoutDialog* dialog) { dialog->reject(); });
    QTest::mouseClick(cell<QPushButton>(11), Qt::LeftButton);
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(itemData(onlyFrame()), item);
}

void tst_BlankWindow::saveWritesTopmostFirst()
{
    openWith({textItem, qrItem, tableItem});
    QVERIFY(m_editor->saveBlank());
    QCOMPARE(storedFields(*m_app, m_blankId), (QJsonArray{tableItem, qrItem, textItem}));
    const QVariant kind =
        m_app->value("SELECT typeof(CONTENT) FROM blanks WHERE ID = ?", {m_blankId});
    QCOMPARE(kind.toString(), QString("blob"));
    const QByteArray bytes =
        m_app->value("SELECT CONTENT FROM blanks WHERE ID = ?", {m_blankId}).toByteArray();
    QVERIFY(bytes.startsWith("{\"fields\":[{") && !bytes.contains('\n'));
}

void tst_BlankWindow::saveAfterTypingAndAfterDragging()
{
    openWith({textItem});
    onlyFrame()->setSelected(true);
    type(1, "50");
    QVERIFY(m_editor->saveBlank());
    QCOMPARE(storedFields(*m_app, m_blankId).at(0)["pos_x"], QJsonValue(50));

    Canvas::zoom(m_view, 1);
    const QPoint from = m_view->mapFromScene(onlyFrame()->sceneBoundingRect().center());
    Canvas::drag(m_view, from, from + QPoint(10, 0));
    QVERIFY(m_editor->saveBlank());
    const double saved = storedFields(*m_app, m_blankId).at(0)["pos_x"].toDouble();
    QVERIFY(qAbs(saved - (50 + 10 / 1.15)) < 1e-6);
}

void tst_BlankWindow::frameBelowTheNewSizeReloads()
{
    open({});
    pressAction("actionAddText");
    type(3, "120");
    type(4, "25");
    QVERIFY(m_editor->saveBlank());
    BlankWindow again;
    again.setBlankId(m_blankId);
    again.loadBlank();
    const auto loaded = Canvas::frames(again.findChild<ZelvoraView*>()->scene());
    QCOMPARE(loaded.size(), 1);
    QCOMPARE(loaded.first()->rect(), QRectF(0, 0, 120, 25));
}

void tst_BlankWindow::apostropheIsSaved()
{
    openWith({textItem});
    onlyFrame()->setSelected(true);
    type(0, "об'єкт \"x\"");
    QVERIFY(m_editor->saveBlank());
    QCOMPARE(storedFields(*m_app, m_blankId).at(0)["value"].toString(), QString("об'єкт \"x\""));
}

void tst_BlankWindow::acceptSavesAndCloses()
{
    open({});
    pressAction("actionAddQR");
    QTest::mouseClick(find<QPushButton>("buttonAccept"), Qt::LeftButton);
    QVERIFY(!m_editor->isVisible());
    QCOMPARE(storedFields(*m_app, m_blankId).size(), 1);
}

void tst_BlankWindow::rejectAndCloseLoseTheChanges()
{
    openWith({textItem});
    const QByteArray before = m_app->dump();
    pressAction("actionAddQR");
    QTest::mouseClick(find<QPushButton>("buttonReject"), Qt::LeftButton);
    QVERIFY(!m_editor->isVisible());
    QCOMPARE(m_app->dump(), before);

    m_editor->show();
    m_editor->close();
    QCOMPARE(m_app->dump(), before);
}

void tst_BlankWindow::failedSaveIsShownAndCloses()
{
    openWith({textItem});
    m_app->exec("ALTER TABLE blanks RENAME TO gone");
    LogCatcher log;
    ModalDriver driver;
    driver.expectMessage("Ошибка", "Ошибка сохранения бланка: SQL Error");
    QTest::mouseClick(find<QPushButton>("buttonAccept"), Qt::LeftButton);
    QVERIFY2(driver.finished(), driver.failures());
    QVERIFY(log.contains("no such table"));
    QVERIFY(!m_editor->isVisible());
    m_app->exec("ALTER TABLE gone RENAME TO blanks");
    QCOMPARE(storedFields(*m_app, m_blankId), QJsonArray{textItem});
}

// The empty page of a blank that could not be read must not take the place of what is stored.
void tst_BlankWindow::unreadBlankIsNotReplaced()
{
    openWith({QJsonObject{{"value", "Текст"}}});
    const QVariant stored = m_app->value("SELECT CONTENT FROM blanks");
    m_app->exec("ALTER TABLE blanks RENAME TO hidden");
    m_editor = std::make_unique<BlankWindow>();
    m_editor->setBlankId(m_blankId);
    m_editor->loadBlank();
    m_app->exec("ALTER TABLE hidden RENAME TO blanks");
    m_editor->show();
    ModalDriver driver;
    driver.expectMessage("Ошибка", "Ошибка сохранения бланка: SQL Error", "OK");
    clickButton(m_editor.get(), "buttonAccept");
    QVERIFY2(driver.finished(), driver.failures());
    QVERIFY(!m_editor->isVisible());
    QCOMPARE(m_app->value("SELECT CONTENT FROM blanks"), stored);
}

QTEST_MAIN(tst_BlankWindow)
#include "tst_BlankWindow.moc"
