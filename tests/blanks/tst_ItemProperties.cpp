#include <QtTest>

#include <QCheckBox>
#include <QFontComboBox>
#include <QGraphicsTextItem>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTableWidget>

#include <memory>

#include "app/AppStyle.h"
#include "blanks/BlankRows.h"
#include "blanks/BlankWindow.h"
#include "blanks/Canvas.h"
#include "blanks/TableLayoutDialog.h"
#include "blanks/ZelvoraView.h"
#include "support/ModalDriver.h"
#include "support/TempApplication.h"
#include "support/Widgets.h"

/// The properties table of the blank editor as the user goes from item to item: whatever was shown
/// before, it is as if the item had been the first.
class tst_ItemProperties : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void nextItemIsShownAsTheFirst_data();
    void nextItemIsShownAsTheFirst();
    void itemsStayAsTheyAre();
    void changesReachTheItemThatIsShown();
    void nothingIsLeftBehind();
    void tracesOfTheUserGo();
    void tabGoesThroughTheNextItem();
    void columnsOfTheNextTable();

private:
    std::unique_ptr<BlankWindow> openWith(const QJsonArray& fields);
    void open(const QJsonArray& fields);
    void click(int item);
    QTableWidget* table() const { return named<QTableWidget>(m_editor.get(), "propertiesWidget"); }
    QTableWidget* table(const BlankWindow& editor) const
    {
        return named<QTableWidget>(editor, "propertiesWidget");
    }
    template <class Editor>
    Editor* cell(int row) const
    {
        return qobject_cast<Editor*>(table()->cellWidget(row, 1));
    }
    QGraphicsRectItem* frame(int item) const;
    QJsonObject itemData(int item) const;

    std::unique_ptr<TempApplication> m_app;
    std::unique_ptr<BlankWindow> m_editor;
};

namespace {

QJsonObject itemAt(int x, int y, QJsonObject item)
{
    item["pos_x"] = x;
    item["pos_y"] = y;
    item["size_w"] = 200;
    item["size_h"] = 60;
    return item;
}

const QJsonObject plainText{{"type", 0},    {"value", "#LNAME"},    {"h_align", 2},
                            {"v_align", 0}, {"font_size", 12},      {"font", "Liberation Sans"},
                            {"f_cut", 1},   {"line_spacing", "1,5"}};
const QJsonObject bareText{{"type", 0}, {"value", "#FNAME"}, {"line_spacing", "1"}};
const QJsonObject oddText{{"type", 0},       {"value", "#MNAME"},
                          {"h_align", 7},    {"v_align", -3},
                          {"font_size", -5}, {"font", QString("Nonesuch Serif ").repeated(6)},
                          {"f_cut", 2},      {"line_spacing", "3,0"}};
const QJsonObject qrCode{{"type", 1},
                         {"value", "#BLANK_NO"},
                         {"font_size", 5000},
                         {"font", "Nonesuch Typewriter Regular"}};
const QJsonObject grades{{"type", 2},
                         {"value", "#GRADES"},
                         {"font", "Liberation Serif"},
                         {"font_size", 11},
                         {"line_spacing", "2,0"},
                         {"columns_width", QJsonArray{180, 60}},
                         {"columns_align", QJsonArray{0, 2}},
                         {"row_from", 2},
                         {"row_to", 8}};

// All on one page, each under its index.
const QJsonArray page{itemAt(10, 10, plainText), itemAt(10, 90, bareText), itemAt(10, 170, oddText),
                      itemAt(10, 250, qrCode), itemAt(10, 330, grades)};

QString lineState(const QLineEdit* line)
{
    return QString("%1|%2|%3|%4%5%6")
        .arg(line->text())
        .arg(line->cursorPosition())
        .arg(line->selectedText())
        .arg(line->isUndoAvailable())
        .arg(line->isRedoAvailable())
        .arg(line->isModified());
}

// What a combo, a spin box, a check box or a button shows and holds.
QString valueState(const QWidget* editor)
{
    if (const auto* combo = qobject_cast<const QComboBox*>(editor)) {
        QStringList texts{QString::number(combo->currentIndex()), combo->currentText()};
        for (int i = 0; i < combo->count(); ++i) {
            texts << combo->itemText(i);
        }
        return texts.join(',') + (combo->lineEdit() ? lineState(combo->lineEdit()) : QString());
    }
    if (const auto* spin = qobject_cast<const QSpinBox*>(editor)) {
        return QString("%1|%2..%3|").arg(spin->value()).arg(spin->minimum()).arg(spin->maximum()) +
               lineState(spin->findChild<QLineEdit*>());
    }
    const auto* button = qobject_cast<const QAbstractButton*>(editor);
    return button ? button->text() + QString::number(button->isChecked()) : QString();
}

QString editorState(const QWidget* editor)
{
    if (!editor) {
        return "none";
    }
    const QRect place = editor->geometry();
    return QString("%1 %2,%3 %4x%5 shown %6 enabled %7 focus %8 style '%9' ")
               .arg(editor->metaObject()->className())
               .arg(place.x())
               .arg(place.y())
               .arg(place.width())
               .arg(place.height())
               .arg(editor->isVisible())
               .arg(editor->isEnabled())
               .arg(editor->focusPolicy())
               .arg(editor->styleSheet()) +
           valueState(editor);
}

QStringList tableState(const QTableWidget* table)
{
    QStringList rows;
    for (int row = 0; row < table->rowCount(); ++row) {
        const QTableWidgetItem* caption = table->item(row, 0);
        const QTableWidgetItem* text = table->item(row, 1);
        rows << QString("%1 %2 %3 ")
                        .arg(caption->text())
                        .arg(caption->data(256).toInt())
                        .arg(table->rowHeight(row)) +
                    (text ? text->text() : QString()) + editorState(table->cellWidget(row, 1));
    }
    return rows;
}

// The editors in the order of the window's chain of focus.
QStringList focusOrder(const QTableWidget* table)
{
    QStringList order;
    const QWidget* widget = table;
    do {
        widget = widget->nextInFocusChain();
        for (int row = 0; row < table->rowCount(); ++row) {
            if (table->cellWidget(row, 1) == widget) {
                order << table->item(row, 0)->text();
            }
        }
    } while (widget != table);
    return order;
}

void clickFrame(const BlankWindow& editor, const QGraphicsRectItem* frame)
{
    auto* view = editor.findChild<ZelvoraView*>();
    const QPointF centre = frame->mapToScene(frame->rect().center());
    view->ensureVisible(QRectF(centre, QSizeF(1, 1)));
    QTest::mouseClick(view->viewport(), Qt::LeftButton, Qt::NoModifier, view->mapFromScene(centre));
    QApplication::processEvents();
}

} // namespace

void tst_ItemProperties::initTestCase()
{
    QVERIFY(loadBaseStyle());
}

void tst_ItemProperties::init()
{
    m_app = std::make_unique<TempApplication>();
}

void tst_ItemProperties::cleanup()
{
    m_editor.reset();
    m_app.reset();
}

std::unique_ptr<BlankWindow> tst_ItemProperties::openWith(const QJsonArray& fields)
{
    BlankRow row;
    row.content = contentOf(fields);
    auto editor = std::make_unique<BlankWindow>();
    editor->setBlankId(insertBlank(*m_app, row));
    editor->loadBlank();
    editor->show();
    editor->activateWindow();
    if (!QTest::qWaitForWindowActive(editor.get())) {
        QTest::qFail("no active window", __FILE__, __LINE__);
    }
    return editor;
}

void tst_ItemProperties::open(const QJsonArray& fields)
{
    m_editor = openWith(fields);
}

QGraphicsRectItem* tst_ItemProperties::frame(int item) const
{
    const auto* view = m_editor->findChild<ZelvoraView*>();
    const QList<QGraphicsRectItem*> topmostFirst = Canvas::frames(view->scene());
    return topmostFirst.at(topmostFirst.size() - 1 - item);
}

void tst_ItemProperties::click(int item)
{
    clickFrame(*m_editor, frame(item));
}

QJsonObject tst_ItemProperties::itemData(int item) const
{
    return QJsonDocument::fromJson(frame(item)->data(256).toString().toUtf8()).object();
}

void tst_ItemProperties::nextItemIsShownAsTheFirst_data()
{
    QTest::addColumn<QVector<int>>("before");
    QTest::addColumn<int>("item");
    for (int item = 0; item < page.size(); ++item) {
        for (int former = 0; former < page.size(); ++former) {
            QTest::addRow("%d after %d", item, former) << QVector<int>{former} << item;
        }
        QTest::addRow("%d after all", item) << QVector<int>{0, 4, 1, 3, 2, 4, 0} << item;
    }
}

void tst_ItemProperties::nextItemIsShownAsTheFirst()
{
    QFETCH(QVector<int>, before);
    QFETCH(int, item);
    open(page);
    for (const int former : before) {
        click(former);
    }
    click(item);
    const QStringList shown = tableState(table());
    const QStringList order = focusOrder(table());
    const QImage picture = table()->grab().toImage();

    m_editor->hide();
    open(page);
    click(item);
    QCOMPARE(shown, tableState(table()));
    QCOMPARE(order, focusOrder(table()));
    QCOMPARE(picture, table()->grab().toImage());
    QCOMPARE(order.size(), item == 4 ? 7 : 6);
}

void tst_ItemProperties::itemsStayAsTheyAre()
{
    open(page);
    for (const int item : {0, 1, 2, 3, 4, 2, 0, 3, 1, 4}) {
        click(item);
    }
    for (int item = 0; item < page.size(); ++item) {
        QCOMPARE(itemData(item), page.at(item).toObject());
    }
}

void tst_ItemProperties::changesReachTheItemThatIsShown()
{
    open(page);
    click(0);
    click(1);
    const auto changed = [this] { return itemData(1); };
    QTest::keyClick(cell<QComboBox>(5), Qt::Key_End);
    QCOMPARE(changed()["h_align"].toInt(), 2);
    click(0);
    click(1);
    QTest::keyClick(cell<QComboBox>(6), Qt::Key_Down);
    QCOMPARE(changed()["v_align"].toInt(), 1);
    QTest::keyClick(cell<QSpinBox>(8), Qt::Key_Up);
    QCOMPARE(changed()["font_size"].toInt(), 1);
    QTest::keyClick(cell<QComboBox>(9), Qt::Key_Down);
    QCOMPARE(changed()["line_spacing"].toString(), QString("1,15"));
    QTest::mouseClick(cell<QCheckBox>(10), Qt::LeftButton, Qt::NoModifier, QPoint(10, 15));
    QCOMPARE(changed()["f_cut"].toInt(), 1);
    QCOMPARE(itemData(0), page.at(0).toObject());
}

void tst_ItemProperties::nothingIsLeftBehind()
{
    open(page);
    const auto editors = [this] {
        return table()->viewport()->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    };
    click(4);
    QCOMPARE(editors().size(), 7);
    QTest::mouseClick(cell<QSpinBox>(8), Qt::LeftButton); // will be made anew
    const QPoint text = table()->visualItemRect(table()->item(0, 1)).center();
    QTest::mouseClick(table()->viewport(), Qt::LeftButton, Qt::NoModifier, text);
    QTest::mouseDClick(table()->viewport(), Qt::LeftButton, Qt::NoModifier, text);
    QCOMPARE(editors().size(), 8); // that of the text
    for (const int item : {0, 1}) {
        click(item);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCOMPARE(editors().size(), 6);
    }
    click(4);
    click(0); // has no columns, whose button waits
    QCOMPARE(editors().size(), 7);
    QTest::mouseClick(cell<QSpinBox>(8), Qt::LeftButton);
    click(1);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(editors().size(), 6);
    m_editor->findChild<ZelvoraView*>()->scene()->clearSelection();
    QCOMPARE(table()->rowCount(), 0);
    for (const QWidget* editor : editors()) {
        QVERIFY2(!editor->isVisible(), editor->metaObject()->className());
    }
}

void tst_ItemProperties::tracesOfTheUserGo()
{
    open(page);
    click(2);
    auto* fonts = cell<QFontComboBox>(7);
    QTest::mouseClick(fonts->lineEdit(), Qt::LeftButton);
    QTest::keyClick(fonts, Qt::Key_End);
    QTest::keyClicks(fonts, "x");
    QApplication::processEvents(); // shows the end of a name that is too long
    QTest::keyClick(cell<QSpinBox>(8), Qt::Key_Up);
    click(3);
    const QStringList shown = tableState(table());
    const QStringList order = focusOrder(table());
    const QImage picture = table()->grab().toImage();

    m_editor->hide();
    open(page);
    click(3);
    QCOMPARE(shown, tableState(table()));
    QCOMPARE(order, focusOrder(table()));
    QCOMPARE(picture, table()->grab().toImage());
}

void tst_ItemProperties::tabGoesThroughTheNextItem()
{
    open(page);
    click(0);
    click(4);
    QVERIFY(tabTo(table()));
    QStringList seen;
    for (int row = 0; row < 12; ++row) {
        seen << table()->item(table()->currentRow(), 0)->text();
        const QWidget* editor = table()->cellWidget(table()->currentRow(), 1);
        QVERIFY(row < 5 ? !editor : QApplication::focusWidget() == editor);
        pressKey(Qt::Key_Tab);
    }
    QCOMPARE(seen,
             QStringList({"Текст", "X", "Y", "Ширина", "Высота", "Выравнивание X", "Выравнивание Y",
                          "Шрифт", "Размер шрифта", "Межстрочный интервал", "Росчерк", "Столбцы"}));
    QCOMPARE(QApplication::focusWidget(), named<QPushButton>(m_editor.get(), "buttonAccept"));
}

void tst_ItemProperties::columnsOfTheNextTable()
{
    QJsonObject other = grades;
    other["columns_width"] = QJsonArray{70, 80, 90};
    open({itemAt(10, 10, grades), itemAt(10, 90, other)});
    click(0);
    click(1);
    ModalDriver driver;
    driver.expect<TableLayoutDialog>([](TableLayoutDialog* layout) {
        QCOMPARE(layout->columnsWidth(), QJsonArray({70, 80, 90}));
        clickButton(*layout, "buttonReject");
    });
    QTest::mouseClick(cell<QPushButton>(11), Qt::LeftButton);
    QVERIFY2(driver.finished(), driver.failures());
}

QTEST_MAIN(tst_ItemProperties)
#include "tst_ItemProperties.moc"
