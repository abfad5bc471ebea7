#include <QtTest>

#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QGraphicsLinearLayout>
#include <QGraphicsPixmapItem>
#include <QGraphicsProxyWidget>
#include <QGraphicsScene>
#include <QGraphicsView>
#include <QHeaderView>
#include <QLabel>
#include <QMessageBox>
#include <QPainter>
#include <QPushButton>
#include <QScreen>
#include <QTableWidget>

#include "app/AppStyle.h"
#include "blanks/GraphicsZItem.h"
#include "forms/FormDefinitions.h"
#include "render/PrinPreviewDialog.h"
#include "render/QrPixmap.h"
#include "store/OrgData.h"
#include "support/LogCatcher.h"
#include "support/ModalDriver.h"
#include "support/PrintFixture.h"

namespace {

/// A document on a blank, built without showing the dialog.
class Page : public PrintFixture
{
public:
    void build(const QJsonArray& items, const QJsonObject& content = {},
               const QVariantMap& blank = {}, const QVariantMap& document = {})
    {
        docId = addDocument(content, document);
        blankId = addBlank(items, blank);
        dialog = std::make_unique<PrinPreviewDialog>(docId);
        built = dialog->buildScene(dialog->pageScene(), docId, blankId);
    }

    /// The items of the page itself, in the order in which they were added.
    QList<QGraphicsItem*> items() const
    {
        QList<QGraphicsItem*> top;
        for (QGraphicsItem* item : dialog->pageScene()->items(Qt::AscendingOrder)) {
            if (!item->parentItem()) {
                top << item;
            }
        }
        return top;
    }

    QGraphicsProxyWidget* frame(int index = 0) const
    {
        return dynamic_cast<QGraphicsProxyWidget*>(items().value(index));
    }

    QGraphicsLinearLayout* layout(int index = 0) const
    {
        return dynamic_cast<QGraphicsLinearLayout*>(frame(index)->layout());
    }

    /// The proxy at a place of a frame's layout.
    QGraphicsProxyWidget* proxy(int index = 0, int place = 0) const
    {
        return dynamic_cast<QGraphicsProxyWidget*>(layout(index)->itemAt(place)->graphicsItem());
    }

    QLabel* label(int index = 0) const { return qobject_cast<QLabel*>(proxy(index)->widget()); }

    QTableWidget* table(int index = 0) const
    {
        return qobject_cast<QTableWidget*>(proxy(index)->widget());
    }

    QVariant docId;
    QVariant blankId;
    std::unique_ptr<PrinPreviewDialog> dialog;
    bool built = false;
};

/// Left margin that the toolkit gives a layout.
int layoutMargin()
{
    return QApplication::style()->pixelMetric(QStyle::PM_LayoutLeftMargin);
}

QJsonObject textItem(const QString& value, const QJsonObject& more = {})
{
    return blankItem(0, value, QRectF(100, 50, 300, 80), more);
}

QJsonObject tableItem(const QString& tag, const QJsonObject& more = {})
{
    return blankItem(2, tag, QRectF(100, 50, 400, 300), more);
}

QVector<QStringList> numberedRows(int count)
{
    QVector<QStringList> rows;
    for (int i = 1; i <= count; ++i) {
        rows << QStringList{QString("Предмет %1").arg(i), QString::number(i)};
    }
    return rows;
}

/// The list of a combo as it pops up.
QImage listOf(QComboBox* combo)
{
    combo->showPopup();
    const QImage list = combo->view()->grab().toImage();
    combo->hidePopup();
    return list;
}

bool writePicture(const QString& path, const QSize& size, const QColor& color)
{
    QImage picture(size, QImage::Format_RGB32);
    picture.fill(color);
    return picture.save(path);
}

} // namespace

Q_DECLARE_METATYPE(Qt::Alignment)

/// The preview of a document on a blank: the dialog and the page that it builds.
class tst_PrinPreviewDialog : public QObject
{
    Q_OBJECT

private slots:
    void documentWithoutBlanks_data();
    void documentWithoutBlanks();
    void messageStandsOverTheMainWindow();
    void window();
    void blanksOfTheForm();
    void unnamedBlankIsShownByItsNumber();
    void choosingAnotherBlank();
    void slotDoesNothingBeforeTheFirstRun();
    void rejectButton();

    void sceneRectangle_data();
    void sceneRectangle();
    void viewIsNotZoomed();
    void missingRows_data();
    void missingRows();
    void failedRebuildEmptiesThePage();
    void pageOfAnotherOwner();

    void frameOfAText();
    void markup_data();
    void markup();
    void lineSpacing_data();
    void lineSpacing();
    void alignment_data();
    void alignment();
    void font_data();
    void font();
    void fontsAreThoseOfPaper();
    void tagsAreExpanded();
    void absentKeys();
    void strangeNumbers();

    void strokeUnderAText();
    void strokeWithoutRoom();
    void strokeUnderATable();

    void qrSymbol();
    void refusedQrText();

    void tableLook();
    void columnWidths_data();
    void columnWidths();
    void tableRows_data();
    void tableRows();
    void rowHeights();
    void smallLineSpacing();
    void wrappedCellEnlargesItsRow();
    void tableWithoutColumns();
    void cellsThatAreNoStrings();
    void tableTextsAreNotExpanded();
    void documentDecidesBetweenTableAndText();
    void pageCannotBeTouched();

    void background_data();
    void background();
    void backgroundNamedAsOnWindows_data();
    void backgroundNamedAsOnWindows();
    void backgroundThatCannotBeLoaded_data();
    void backgroundThatCannotBeLoaded();
    void backgroundOfAnEndlessPage();
    void checkBoxDoesNotHideThePreviewsBackground();
    void edgeOfAPageWithoutAScan();

    void rowsOfNulls();
    void brokenBlankContent_data();
    void brokenBlankContent();
    void brokenDocumentContent_data();
    void brokenDocumentContent();
    void hugeDocumentContent();
};

void tst_PrinPreviewDialog::documentWithoutBlanks_data()
{
    QTest::addColumn<QVariant>("docType");
    QTest::addColumn<bool>("stored");
    QTest::addColumn<QString>("log");
    QTest::newRow("form without blanks") << QVariant(2) << true << "";
    QTest::newRow("no form") << QVariant() << true << "SQL Error (blanks): ";
    QTest::newRow("document gone") << QVariant(1) << false << "SQL Error (docs): ";
}

void tst_PrinPreviewDialog::documentWithoutBlanks()
{
    QFETCH(QVariant, docType);
    QFETCH(bool, stored);
    QFETCH(QString, log);
    PrintFixture app;
    app.addBlank({});
    const QVariant id = stored ? app.addDocument({}, {{"DOC_TYPE", docType}}) : QVariant(4711);
    PrinPreviewDialog dialog(id);
    ModalDriver driver;
    LogCatcher catcher;
    driver.expectMessage("Ошибка", "Для документа нет доступных бланков");
    QCOMPARE(dialog.exec(), 0);
    QVERIFY2(driver.finished(), driver.failures());
    QVERIFY(!dialog.isVisible());
    QCOMPARE(catcher.contains("SQL Error"), !log.isEmpty());
    QVERIFY(log.isEmpty() || catcher.contains(log));
}

void tst_PrinPreviewDialog::messageStandsOverTheMainWindow()
{
    PrintFixture app;
    QWidget desk;
    desk.setGeometry(200, 150, 500, 400);
    desk.show();
    PrinPreviewDialog dialog(app.addDocument(), &desk);
    ModalDriver driver;
    driver.expect<QMessageBox>([&desk](QMessageBox* box) {
        QCOMPARE(box->text(), QString("Для документа нет доступных бланков"));
        QVERIFY(desk.geometry().contains(box->geometry().center()));
        QCOMPARE(box->parentWidget(), &desk);
        box->accept();
    });
    QCOMPARE(dialog.exec(), 0);
    QVERIFY2(driver.finished(), driver.failures());
}

void tst_PrinPreviewDialog::window()
{
    PrintFixture app;
    baseStyleSheet = "QDialog { background: #FFFFFF; }";
    PrinPreviewDialog dialog(app.addDocument());
    baseStyleSheet.clear();
    QCOMPARE(dialog.windowTitle(), QString("Zelvora - Предпросмотр"));
    QCOMPARE(dialog.size(), QSize(1150, 900));
    QVERIFY(!(dialog.windowFlags() & Qt::WindowContextHelpButtonHint));
    QCOMPARE(dialog.styleSheet(), QString("QDialog { background: #FFFFFF; }\r\n"));

    QCOMPARE(dialog.findChild<QLabel*>("label")->text(), QString("Бланк"));
    QCOMPARE(dialog.findChild<QComboBox*>("comboBoxBlank")->minimumWidth(), 180);
    const auto* background = dialog.findChild<QCheckBox*>("checkPrintBG");
    QCOMPARE(background->text(), QString("Печатать фон"));
    QVERIFY(!background->isChecked());
    QVERIFY(dialog.findChild<QGraphicsView*>("documentView"));
    const auto* print = dialog.findChild<QPushButton*>("buttonPrint");
    QCOMPARE(print->text(), QString("Печать"));
    QCOMPARE(print->property("btnRole1").toString(), QString("accept"));
    QCOMPARE(print->focusPolicy(), Qt::ClickFocus);
    const auto* reject = dialog.findChild<QPushButton*>("buttonReject");
    QCOMPARE(reject->text(), QString("Отмена"));
    QCOMPARE(reject->property("btnRole1").toString(), QString("reject"));
    QCOMPARE(reject->focusPolicy(), Qt::ClickFocus);
}

void tst_PrinPreviewDialog::blanksOfTheForm()
{
    PrintFixture app;
    const QVariant first = app.addBlank({}, {{"NAME", "Первый"}});
    app.addBlank({}, {{"NAME", "Чужой"}, {"FORM_ID", 2}});
    const QVariant second = app.addBlank({}, {{"NAME", ""}});
    const QVariant docId = app.addDocument();
    PrinPreviewDialog dialog(docId);
    const PrinPreviewDialog::BlankList expected = {{"Первый", first}, {"", second}};
    QCOMPARE(dialog.loadBlanksForDoc(docId), expected);
    QCOMPARE(dialog.loadBlanksForForm(1), expected);
    QCOMPARE(dialog.loadBlanksForForm(3), PrinPreviewDialog::BlankList());
}

void tst_PrinPreviewDialog::unnamedBlankIsShownByItsNumber()
{
    PrintFixture app;
    const QString id = app.addBlank({}, {{"NAME", ""}}).toString();
    PrinPreviewDialog dialog(app.addDocument());
    ModalDriver driver;
    driver.expect<PrinPreviewDialog>([id](PrinPreviewDialog* shown) {
        auto* combo = shown->findChild<QComboBox*>("comboBoxBlank");
        QCOMPARE(combo->itemText(0), QString()); // the blank's name as it is
        const QImage unnamed = combo->grab().toImage();
        combo->setItemText(0, "Бланк " + id);
        QCOMPARE(unnamed, combo->grab().toImage());
        const QImage named = listOf(combo);
        combo->setItemText(0, QString());
        QCOMPARE(listOf(combo), named);
        shown->reject();
    });
    QCOMPARE(dialog.exec(), 0);
    QVERIFY2(driver.finished(), driver.failures());
}

void tst_PrinPreviewDialog::choosingAnotherBlank()
{
    PrintFixture app;
    app.addBlank({textItem("Первый")}, {{"NAME", "A4"}, {"SIZE_WIDTH", 210}, {"SIZE_HEIGHT", 297}});
    app.addBlank({textItem("Второй", {{"font_size", 0}}), textItem("Третий")},
                 {{"NAME", "A5"},
                  {"SIZE_WIDTH", 148},
                  {"SIZE_HEIGHT", 210},
                  {"FONT", "DejaVu Sans"},
                  {"FONT_SIZE", 20}});
    PrinPreviewDialog dialog(app.addDocument());
    ModalDriver driver;
    driver.expect<PrinPreviewDialog>([](PrinPreviewDialog* shown) {
        auto* combo = shown->findChild<QComboBox*>("comboBoxBlank");
        auto* view = shown->findChild<QGraphicsView*>("documentView");
        QVERIFY(shown->isModal());
        QCOMPARE(combo->count(), 2);
        QCOMPARE(combo->currentText(), QString("A4"));
        QCOMPARE(view->alignment(), Qt::AlignHCenter | Qt::AlignVCenter);
        QCOMPARE(view->scene()->sceneRect(), QRectF(0, 0, 793, 1122));
        QCOMPARE(view->scene()->items().size(), 2); // frame and label

        QTest::keyClick(combo, Qt::Key_Down);
        QCOMPARE(view->scene()->sceneRect(), QRectF(0, 0, 559, 793));
        QCOMPARE(view->scene()->items().size(), 4);
        const auto* proxy = dynamic_cast<QGraphicsProxyWidget*>(view->scene()->items().first());
        QCOMPARE(proxy->widget()->font().family(), QString("DejaVu Sans"));
        QCOMPARE(proxy->widget()->font().pointSize(), 20);
        shown->reject();
    });
    QCOMPARE(dialog.exec(), 0);
    QVERIFY2(driver.finished(), driver.failures());
}

void tst_PrinPreviewDialog::slotDoesNothingBeforeTheFirstRun()
{
    PrintFixture app;
    app.addBlank({textItem("Текст")});
    PrinPreviewDialog dialog(app.addDocument());
    dialog.on_comboBoxBlank_currentIndexChanged(0);
    QVERIFY(!dialog.findChild<QGraphicsView*>("documentView")->scene());
}

void tst_PrinPreviewDialog::rejectButton()
{
    PrintFixture app;
    app.addBlank({});
    PrinPreviewDialog dialog(app.addDocument());
    ModalDriver driver;
    driver.expect<PrinPreviewDialog>([](PrinPreviewDialog* shown) {
        QTest::mouseClick(shown->findChild<QPushButton*>("buttonReject"), Qt::LeftButton);
    });
    QCOMPARE(dialog.exec(), int(QDialog::Rejected));
    QVERIFY2(driver.finished(), driver.failures());
}

void tst_PrinPreviewDialog::sceneRectangle_data()
{
    QTest::addColumn<int>("format");
    QTest::addColumn<int>("orientation");
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");
    QTest::addColumn<QRectF>("rectangle");
    QTest::newRow("A4") << 0 << 1 << 210 << 297 << QRectF(0, 0, 793, 1122);
    QTest::newRow("landscape does not turn it") << 0 << 0 << 210 << 297 << QRectF(0, 0, 793, 1122);
    QTest::newRow("format does not set it") << 1 << 1 << 210 << 297 << QRectF(0, 0, 793, 1122);
    QTest::newRow("custom") << 42 << 0 << 297 << 210 << QRectF(0, 0, 1122, 793);
    QTest::newRow("unknown format") << 7 << 5 << 500 << 1 << QRectF(0, 0, 1889, 3);
    QTest::newRow("no width") << 42 << 0 << 0 << 210 << QRectF(0, 0, 0, 793);
}

void tst_PrinPreviewDialog::sceneRectangle()
{
    QFETCH(int, format);
    QFETCH(int, orientation);
    QFETCH(int, width);
    QFETCH(int, height);
    QFETCH(QRectF, rectangle);
    Page page;
    page.build({textItem("Текст")}, {},
               {{"PAPER_FORMAT", format},
                {"PAPER_ORIENTATION", orientation},
                {"SIZE_WIDTH", width},
                {"SIZE_HEIGHT", height}});
    QVERIFY(page.built);
    QCOMPARE(page.dialog->pageScene()->sceneRect(), rectangle);
    QCOMPARE(page.frame()->pos(), QPointF(100, 50));
}

void tst_PrinPreviewDialog::viewIsNotZoomed()
{
    Page page;
    page.build({});
    auto* view = page.dialog->findChild<QGraphicsView*>("documentView");
    view->scale(3, 3);
    QVERIFY(page.dialog->buildScene(page.dialog->pageScene(), page.docId, page.blankId));
    QVERIFY(view->transform().isIdentity());
}

void tst_PrinPreviewDialog::missingRows_data()
{
    QTest::addColumn<QVariant>("doc");
    QTest::addColumn<QVariant>("blank");
    QTest::addColumn<QString>("error");
    QTest::newRow("no document") << QVariant(77) << QVariant(1) << "SQL Error (docs): ";
    QTest::newRow("document without ID") << QVariant() << QVariant(1) << "SQL Error (docs): ";
    QTest::newRow("no blank") << QVariant(1) << QVariant(77) << "SQL Error (blanks): ";
    QTest::newRow("blank without ID") << QVariant(1) << QVariant() << "SQL Error (blanks): ";
}

void tst_PrinPreviewDialog::missingRows()
{
    QFETCH(QVariant, doc);
    QFETCH(QVariant, blank);
    QFETCH(QString, error);
    Page page;
    page.build({textItem("Текст")});
    QCOMPARE(page.docId.toInt(), 1);
    QCOMPARE(page.blankId.toInt(), 1);
    LogCatcher log;
    QVERIFY(!page.dialog->buildScene(page.dialog->pageScene(), doc, blank));
    QCOMPARE(log.count(error), 1);
    QVERIFY(page.items().isEmpty());
}

void tst_PrinPreviewDialog::failedRebuildEmptiesThePage()
{
    PrintFixture app;
    QVERIFY(writePicture(app.path("back.png"), QSize(100, 100), Qt::red));
    const QVariant first = app.addBlank({textItem("Текст")}, {{"BACKGROUND_IMG", "back.png"}});
    const QVariant second = app.addBlank({}, {{"NAME", "Исчезнет"}});
    PrinPreviewDialog dialog(app.addDocument());
    ModalDriver driver;
    driver.expect<PrinPreviewDialog>([&](PrinPreviewDialog* shown) {
        app.exec("DELETE FROM blanks WHERE ID = ?", {second});
        shown->findChild<QComboBox*>("comboBoxBlank")->setCurrentIndex(1);
        QVERIFY(shown->isVisible());
        QVERIFY(shown->pageScene()->items().isEmpty());
        shown->findChild<QComboBox*>("comboBoxBlank")->setCurrentIndex(0);
        QCOMPARE(shown->pageScene()->items().size(), 3);
        shown->reject();
    });
    dialog.exec();
    QVERIFY2(driver.finished(), driver.failures());
}

void tst_PrinPreviewDialog::pageOfAnotherOwner()
{
    PrintFixture app;
    const QVariant doc = app.addDocument();
    const QVariant blank =
        app.addBlank({textItem("Текст"), blankItem(1, "QR", QRectF(1, 2, 3, 4))});
    PrinPreviewDialog dialog(doc);
    {
        QGraphicsScene scene;
        QVERIFY(dialog.buildScene(&scene, doc, blank));
        QCOMPARE(scene.items().size(), 3);
        QCOMPARE(scene.sceneRect(), QRectF(0, 0, 1122, 793));
    }
    dialog.createBlankFieldItem(textItem("Текст")); // its page is gone: nothing to add to
    QVERIFY(dialog.buildScene(dialog.pageScene(), doc, blank));
    QCOMPARE(dialog.pageScene()->items().size(), 3);
}

void tst_PrinPreviewDialog::frameOfAText()
{
    Page page;
    page.build({blankItem(0, "Текст", QRectF(100.5, 50.25, 301.5, 80))});
    QCOMPARE(page.items().size(), 1);
    QVERIFY(page.frame());
    QVERIFY(!page.frame()->widget());
    QCOMPARE(page.frame()->geometry(), QRectF(100.5, 50.25, 301.5, 80));
    QVERIFY(page.layout());
    QCOMPARE(page.layout()->orientation(), Qt::Vertical);
    QCOMPARE(page.layout()->spacing(), 1.0);
    QCOMPARE(page.layout()->count(), 1);
    const int margin = layoutMargin();
    QVERIFY(margin > 0);
    qreal left = 0;
    qreal top = 0;
    qreal right = 0;
    qreal bottom = 0;
    page.layout()->getContentsMargins(&left, &top, &right, &bottom);
    QCOMPARE(QVector<qreal>({left, top, right, bottom}), QVector<qreal>(4, margin));

    QVERIFY(page.label());
    QVERIFY(page.label()->wordWrap());
    QCOMPARE(page.label()->styleSheet(), QString("background: transparent; border: 0;"));
    QCOMPARE(page.proxy()->geometry(), QRectF(margin, margin, 301.5 - 2 * margin, 80 - 2 * margin));
}

void tst_PrinPreviewDialog::markup_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("text");
    QTest::newRow("plain") << "Выдан"
                           << "Выдан";
    QTest::newRow("line feed of a field") << "#NOTE"
                                          << "первая<br>вторая";
    QTest::newRow("backslash and n") << "один\\nдва"
                                     << "один<br>два";
    QTest::newRow("markup of a value is not escaped") << "#BOLD"
                                                      << "<b>жирно</b> & <i>";
    QTest::newRow("dropped tail") << "#LNAME."
                                  << "Иванов";
    QTest::newRow("empty") << ""
                           << "";
    QTest::newRow("picture") << "<img src=\"blanks/scan.png\">"
                             << "<img src=\"blanks/scan.png\">";
}

void tst_PrinPreviewDialog::markup()
{
    QFETCH(QString, value);
    QFETCH(QString, text);
    Page page;
    page.build({textItem(value)}, {{"#NOTE", valueEntry(FieldType::text, "первая\nвторая")},
                                   {"#BOLD", valueEntry(FieldType::string, "<b>жирно</b> & <i>")}});
    QCOMPARE(page.label()->text(), "<p style=\"line-height: 100%;\">" + text + "</p>");
}

void tst_PrinPreviewDialog::lineSpacing_data()
{
    QTest::addColumn<QJsonValue>("spacing");
    QTest::addColumn<int>("percent");
    QTest::newRow("1,0") << QJsonValue("1,0") << 100;
    QTest::newRow("1,15") << QJsonValue("1,15") << 115;
    QTest::newRow("1.15") << QJsonValue("1.15") << 115;
    QTest::newRow("1,5") << QJsonValue("1,5") << 150;
    QTest::newRow("2,0") << QJsonValue("2,0") << 200;
    QTest::newRow("smallest") << QJsonValue("0,1") << 10;
    QTest::newRow("too small") << QJsonValue("0,09") << 100;
    QTest::newRow("negative") << QJsonValue("-2") << 100;
    QTest::newRow("no number") << QJsonValue("abc") << 100;
    QTest::newRow("not a number") << QJsonValue("nan") << 100;
    QTest::newRow("empty") << QJsonValue("") << 100;
    QTest::newRow("absent") << QJsonValue(QJsonValue::Undefined) << 100;
    QTest::newRow("no string") << QJsonValue(2.0) << 100;
}

void tst_PrinPreviewDialog::lineSpacing()
{
    QFETCH(QJsonValue, spacing);
    QFETCH(int, percent);
    Page page;
    page.build({textItem("Текст", {{"line_spacing", spacing}})});
    QCOMPARE(page.label()->text(),
             QString("<p style=\"line-height: %1%;\">Текст</p>").arg(percent));
}

void tst_PrinPreviewDialog::alignment_data()
{
    QTest::addColumn<QJsonObject>("keys");
    QTest::addColumn<Qt::Alignment>("expected");
    const auto row = [](const char* name, const QJsonObject& keys, Qt::Alignment expected) {
        QTest::newRow(name) << keys << expected;
    };
    const Qt::Alignment middle = Qt::AlignVCenter;
    const Qt::Alignment center = Qt::AlignHCenter;
    row("absent", {}, Qt::AlignCenter);
    row("left", {{"h_align", 0}}, middle | Qt::AlignLeft);
    row("right", {{"h_align", 1}}, middle | Qt::AlignRight);
    row("centre", {{"h_align", 2}}, Qt::AlignCenter);
    row("unknown", {{"h_align", 5}, {"v_align", -1}}, Qt::AlignCenter);
    row("top", {{"v_align", 0}}, center | Qt::AlignTop);
    row("bottom", {{"v_align", 1}}, center | Qt::AlignBottom);
    row("no number", {{"v_align", "0"}, {"h_align", "0"}}, Qt::AlignCenter);
    row("stroke: top", {{"v_align", 2}, {"h_align", 1}, {"f_cut", 1}},
        Qt::AlignRight | Qt::AlignTop);
    row("no stroke", {{"v_align", 1}, {"f_cut", 0}}, center | Qt::AlignBottom);
    row("stroke is 1 alone", {{"v_align", 1}, {"f_cut", 2}}, center | Qt::AlignBottom);
}

void tst_PrinPreviewDialog::alignment()
{
    QFETCH(QJsonObject, keys);
    QFETCH(Qt::Alignment, expected);
    Page page;
    page.build({textItem("Текст", keys)});
    QCOMPARE(page.label()->alignment(), expected);
}

void tst_PrinPreviewDialog::font_data()
{
    QTest::addColumn<QJsonObject>("keys");
    QTest::addColumn<QString>("family");
    QTest::addColumn<int>("size");
    QTest::newRow("the blank's") << QJsonObject() << "Liberation Serif" << 12;
    QTest::newRow("size 6") << QJsonObject{{"font_size", 6}} << "Liberation Serif" << 12;
    QTest::newRow("size 7") << QJsonObject{{"font_size", 7}} << "Liberation Serif" << 7;
    QTest::newRow("negative size") << QJsonObject{{"font_size", -3}} << "Liberation Serif" << 12;
    QTest::newRow("family") << QJsonObject{{"font", "DejaVu Sans"}} << "DejaVu Sans" << 12;
    QTest::newRow("no family") << QJsonObject{{"font", ""}, {"font_size", 30}} << "Liberation Serif"
                               << 30;
    QTest::newRow("not installed") << QJsonObject{{"font", "Нет такого"}} << "Нет такого" << 12;
}

void tst_PrinPreviewDialog::font()
{
    QFETCH(QJsonObject, keys);
    QFETCH(QString, family);
    QFETCH(int, size);
    Page page;
    QJsonObject table = tableItem("#T");
    for (auto it = keys.begin(); it != keys.end(); ++it) {
        table[it.key()] = it.value();
    }
    page.build({textItem("Текст", keys), table}, {{"#T", tableEntry({{"а"}})}});
    QCOMPARE(page.label()->font().family(), family);
    QCOMPARE(page.label()->font().pointSize(), size);
    QCOMPARE(page.table(1)->item(0, 0)->font().family(), family);
    QCOMPARE(page.table(1)->item(0, 0)->font().pointSize(), size);
}

void tst_PrinPreviewDialog::fontsAreThoseOfPaper()
{
    // Not those of the screen: its 100 dots per inch would make 12 points 17 units high.
    QCOMPARE(qRound(QGuiApplication::primaryScreen()->logicalDotsPerInch()), 100);
    Page page;
    page.build({textItem("Текст"), tableItem("#T")}, {{"#T", tableEntry({{"а"}})}});
    QCOMPARE(QFontInfo(page.label()->font()).pixelSize(), 16);
    QCOMPARE(QFontInfo(page.table(1)->item(0, 0)->font()).pixelSize(), 16);
}

void tst_PrinPreviewDialog::tagsAreExpanded()
{
    Page page;
    orgDirector = "Петров Пётр Петрович";
    page.build({textItem("#LNAME^ #ORG_DIRECTOR_SHORT^ #CITY #ISSUE_DATE #NOBODY")},
               {{"#CITY", valueEntry(FieldType::string, "Тверь")}});
    QCOMPARE(page.label()->text(), QString("<p style=\"line-height: 100%;\">Иванов Петров П. П.  "
                                           "Тверь 25 июня 2021 #NOBODY</p>"));
}

void tst_PrinPreviewDialog::absentKeys()
{
    Page page;
    page.build({QJsonObject(), QJsonValue(5), QJsonValue("строка"), QJsonValue()});
    QVERIFY(page.built);
    QCOMPARE(page.items().size(), 4);
    for (int i = 0; i < 4; ++i) {
        QVERIFY(page.label(i));
        QCOMPARE(page.frame(i)->pos(), QPointF(0, 0));
        QCOMPARE(page.label(i)->text(), QString("<p style=\"line-height: 100%;\"></p>"));
    }
}

void tst_PrinPreviewDialog::strangeNumbers()
{
    Page page;
    page.build({blankItem(0, "Текст", QRectF(-1e300, 1e300, -5, 1e300), {{"f_cut", 1}}),
                blankItem(1, "QR", QRectF(1e12, -1e12, 0, 0)),
                blankItem(2, "#T", QRectF(10, 10, 300, 200),
                          {{"columns_width", QJsonArray{1e9, -4, "x", 7}},
                           {"row_from", -2147483648.0},
                           {"row_to", 2147483647.0},
                           {"line_spacing", "1e30"},
                           {"f_cut", 1}}),
                textItem("Текст", {{"line_spacing", "inf"}})},
               {{"#T", tableEntry({{"а", "б"}})}});
    QVERIFY(page.built);
    QCOMPARE(page.items().size(), 4);
    QCOMPARE(page.table(2)->rowCount(), 1);
}

void tst_PrinPreviewDialog::strokeUnderAText()
{
    Page page;
    page.build({blankItem(0, "Текст", QRectF(100, 50, 300.75, 160), {{"f_cut", 1}})});
    QCOMPARE(page.layout()->count(), 2);
    QCOMPARE(page.label()->minimumWidth(), 300);
    QCOMPARE(page.label()->maximumWidth(), 300);
    QCOMPARE(page.label()->sizePolicy(), QSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding));
    const QGraphicsProxyWidget* stroke = page.proxy(0, 1);
    QVERIFY(qobject_cast<GraphicsZItem*>(stroke->widget()));
    QCOMPARE(page.layout()->stretchFactor(page.layout()->itemAt(1)), 100);

    // Content at the top, one unit of spacing, and the stroke down to the frame's lower margin.
    const int margin = layoutMargin();
    const QRectF label = page.proxy()->geometry();
    QCOMPARE(label.topLeft(), QPointF(margin, margin));
    QCOMPARE(stroke->geometry().top(), label.bottom() + 1.0);
    QCOMPARE(stroke->geometry().bottom(), 160.0 - margin);
    QCOMPARE(stroke->geometry().width(), 300.0);
    QVERIFY2(stroke->geometry().height() > label.height(), "the rest goes to the stroke");
}

void tst_PrinPreviewDialog::strokeWithoutRoom()
{
    Page page;
    page.build(
        {blankItem(0, QString("слово ").repeated(20), QRectF(0, 0, 100, 60), {{"f_cut", 1}})});
    QVERIFY(page.proxy(0, 1)->widget()->height() < 4);
}

void tst_PrinPreviewDialog::strokeUnderATable()
{
    Page page;
    page.build({tableItem("#T", {{"f_cut", 1}})}, {{"#T", tableEntry(numberedRows(3))}});
    int rows = 0;
    for (int row = 0; row < 3; ++row) {
        rows += page.table()->rowHeight(row);
    }
    QCOMPARE(page.table()->minimumHeight(), rows);
    QCOMPARE(page.table()->maximumHeight(), rows);
    QCOMPARE(page.layout()->count(), 2);
    const QGraphicsProxyWidget* stroke = page.proxy(0, 1);
    QVERIFY(qobject_cast<GraphicsZItem*>(stroke->widget()));
    QCOMPARE(page.layout()->stretchFactor(page.layout()->itemAt(1)), 100);
    const int margin = layoutMargin();
    QCOMPARE(stroke->geometry(),
             QRectF(QPointF(margin, margin + rows + 1), QPointF(400 - margin, 300 - margin)));
}

void tst_PrinPreviewDialog::qrSymbol()
{
    Page page;
    page.build({blankItem(1, "#LNAME #BLANK_NO", QRectF(120.5, 33, 500, 7))});
    QCOMPARE(page.items().size(), 1);
    const auto* item = dynamic_cast<QGraphicsPixmapItem*>(page.items().first());
    QVERIFY(item);
    QCOMPARE(item->pos(), QPointF(120.5, 33));
    QCOMPARE(item->transform(), QTransform());
    QCOMPARE(item->scale(), 1.0);
    QCOMPARE(item->pixmap().size(), QSize(73, 73)); // version 12: 65 modules and twice 4
    QPixmap expected;
    makeQrPixmap("Иванов 000123", expected);
    QCOMPARE(item->pixmap().toImage(), expected.toImage());
}

void tst_PrinPreviewDialog::refusedQrText()
{
    Page page;
    page.build({blankItem(1, "#MNAME", QRectF(1, 2, 98, 98))}, {}, {}, {{"MNAME", ""}});
    const auto* item = dynamic_cast<QGraphicsPixmapItem*>(page.items().value(0));
    QVERIFY(item);
    QCOMPARE(item->pixmap().size(), QSize(8, 8));
}

void tst_PrinPreviewDialog::tableLook()
{
    Page page;
    page.build({tableItem("#T")}, {{"#T", tableEntry(numberedRows(2))}});
    QVERIFY(!page.frame()->widget());
    QCOMPARE(page.layout()->orientation(), Qt::Vertical);
    QCOMPARE(page.layout()->spacing(), 1.0);
    QCOMPARE(page.frame()->geometry(), QRectF(100, 50, 400, 300));
    const QTableWidget* table = page.table();
    QVERIFY(table);
    QVERIFY(!table->showGrid());
    QCOMPARE(table->gridStyle(), Qt::NoPen);
    QCOMPARE(table->selectionMode(), QAbstractItemView::NoSelection);
    QCOMPARE(table->editTriggers(), QAbstractItemView::NoEditTriggers);
    QVERIFY(table->horizontalHeader()->isHidden());
    QVERIFY(table->horizontalHeader()->stretchLastSection());
    QVERIFY(table->verticalHeader()->isHidden());
    QCOMPARE(table->styleSheet(), QString("background: transparent; border: 0px;"));
    QCOMPARE(table->horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    QCOMPARE(table->verticalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    QCOMPARE(table->columnCount(), 2);
    QCOMPARE(table->rowCount(), 2);
    QCOMPARE(table->item(1, 0)->text(), QString("Предмет 2"));
    QCOMPARE(table->item(1, 1)->text(), QString("2"));
    QCOMPARE(table->item(0, 0)->textAlignment(), 0); // the toolkit's own
}

void tst_PrinPreviewDialog::columnWidths_data()
{
    QTest::addColumn<QJsonArray>("widths");
    QTest::addColumn<QVector<int>>("expected"); // of a table 382 wide; 0 stands for the default
    QTest::newRow("none") << QJsonArray() << QVector<int>{0, 0, -1};
    QTest::newRow("all") << QJsonArray{150, 60, 90} << QVector<int>{150, 60, 172};
    QTest::newRow("the last one stretches") << QJsonArray{150, 60} << QVector<int>{150, 60, 172};
    QTest::newRow("too small") << QJsonArray{4, 60, 5} << QVector<int>{0, 60, -1};
    QTest::newRow("5 is enough") << QJsonArray{5, 6} << QVector<int>{5, 6, 371};
    QTest::newRow("too many") << QJsonArray{100, 100, 10, 70, 80, 90}
                              << QVector<int>{100, 100, 182};
    QTest::newRow("no numbers") << QJsonArray{"100", 2.5, 80} << QVector<int>{0, 0, -1};
}

void tst_PrinPreviewDialog::columnWidths()
{
    QFETCH(QJsonArray, widths);
    QFETCH(QVector<int>, expected);
    Page page;
    page.build({tableItem("#T", {{"columns_width", widths}})},
               {{"#T", tableEntry({{"а", "б", "в"}})}});
    const QTableWidget* table = page.table();
    QCOMPARE(table->columnCount(), 3);
    const int viewport = 400 - 2 * layoutMargin();
    QCOMPARE(viewport, 382);
    int before = 0;
    for (int column = 0; column < 2; ++column) {
        const int width = expected[column] == 0 ? table->horizontalHeader()->defaultSectionSize()
                                                : expected[column];
        QCOMPARE(table->columnWidth(column), width);
        before += width;
    }
    const int last = expected[2] == -1 ? viewport - before : expected[2];
    QCOMPARE(table->columnWidth(2), last);
}

void tst_PrinPreviewDialog::tableRows_data()
{
    QTest::addColumn<int>("rows");
    QTest::addColumn<QJsonObject>("keys");
    QTest::addColumn<QString>("printed"); // the numbers of the rows
    QTest::newRow("absent") << 5 << QJsonObject() << "1 2 3 4 5";
    QTest::newRow("from 2 to 4") << 5 << QJsonObject{{"row_from", 2}, {"row_to", 4}} << "2 3 4";
    QTest::newRow("one row") << 5 << QJsonObject{{"row_from", 5}, {"row_to", 5}} << "5";
    QTest::newRow("from 0") << 3 << QJsonObject{{"row_from", 0}} << "1 2 3";
    QTest::newRow("from -7") << 3 << QJsonObject{{"row_from", -7}} << "1 2 3";
    QTest::newRow("to 10") << 4 << QJsonObject{{"row_to", 10}} << "1 2 3 4";
    QTest::newRow("to 0") << 4 << QJsonObject{{"row_to", 0}} << "";
    QTest::newRow("from 3 to 2") << 5 << QJsonObject{{"row_from", 3}, {"row_to", 2}} << "";
    QTest::newRow("from 9 to 2") << 5 << QJsonObject{{"row_from", 9}, {"row_to", 2}} << "";
    QTest::newRow("behind the end") << 2 << QJsonObject{{"row_from", 3}} << "";
    QTest::newRow("negative") << 2 << QJsonObject{{"row_to", -5}} << "";
}

void tst_PrinPreviewDialog::tableRows()
{
    QFETCH(int, rows);
    QFETCH(QJsonObject, keys);
    QFETCH(QString, printed);
    Page page;
    page.build({tableItem("#T", keys)}, {{"#T", tableEntry(numberedRows(rows))}});
    QStringList numbers;
    for (int row = 0; row < page.table()->rowCount(); ++row) {
        QVERIFY(page.table()->item(row, 1));
        numbers << page.table()->item(row, 1)->text();
    }
    QCOMPARE(numbers.join(' '), printed);
}

void tst_PrinPreviewDialog::rowHeights()
{
    Page page;
    page.build({tableItem("#T"), tableItem("#T", {{"line_spacing", "1,5"}}),
                tableItem("#T", {{"font_size", 30}, {"line_spacing", "1,15"}})},
               {{"#T", tableEntry({{"а", "б"}, {"", ""}})}});
    QFont font("Liberation Serif", 12);
    const int height = QFontMetrics(font).height();
    QCOMPARE(page.table(0)->rowHeight(0), height);
    QCOMPARE(page.table(0)->rowHeight(1), height);
    QCOMPARE(page.table(1)->rowHeight(0), int(float(height) * 1.5F));
    font.setPointSize(30);
    QCOMPARE(page.table(2)->rowHeight(1), int(float(QFontMetrics(font).height()) * 1.15F));
}

void tst_PrinPreviewDialog::smallLineSpacing()
{
    Page page;
    page.build({tableItem("#T", {{"line_spacing", "0,5"}})},
               {{"#T", tableEntry({{"а", "б"}, {"", ""}})}});
    const int height = QFontMetrics(QFont("Liberation Serif", 12)).height();
    QCOMPARE(page.table()->rowHeight(0), height); // grown to its text
    QCOMPARE(page.table()->verticalHeader()->defaultSectionSize(), int(float(height) * 0.5F));
    QCOMPARE(page.table()->verticalHeader()->minimumSectionSize(), 5);
}

void tst_PrinPreviewDialog::wrappedCellEnlargesItsRow()
{
    Page page;
    page.build({tableItem("#T", {{"columns_width", QJsonArray{60, 100}}})},
               {{"#T", tableEntry({{"слово слово слово", "5"}, {"слово", "4"}})}});
    const QFontMetrics metrics(QFont("Liberation Serif", 12));
    QVERIFY(metrics.horizontalAdvance("слово") < 60);
    QVERIFY(metrics.horizontalAdvance("слово слово") > 60);
    QCOMPARE(page.table()->rowHeight(0), 2 * metrics.lineSpacing() + metrics.height());
    QCOMPARE(page.table()->rowHeight(1), metrics.height());
}

void tst_PrinPreviewDialog::tableWithoutColumns()
{
    Page page;
    LogCatcher log;
    QJsonObject entry = tableEntry({{"а"}});
    entry["columns"] = QJsonArray();
    page.build({tableItem("#T", {{"f_cut", 1}})}, {{"#T", entry}});
    QCOMPARE(log.count("createBlankFieldTableItem error: Table is empty"), 1);
    QCOMPARE(page.layout()->count(), 1);
    QCOMPARE(page.table()->rowCount(), 0);
    QCOMPARE(page.frame()->geometry(), QRectF(100, 50, 400, 300));
}

void tst_PrinPreviewDialog::cellsThatAreNoStrings()
{
    Page page;
    QJsonObject entry = tableEntry({{"а", "б"}});
    entry["value"] = QJsonArray{QJsonArray{1, QJsonValue()}, QJsonArray{"один"}, "не строка",
                                QJsonArray{"а", "б", "лишняя"}};
    page.build({tableItem("#T")}, {{"#T", entry}});
    const QTableWidget* table = page.table();
    QCOMPARE(table->rowCount(), 4);
    QCOMPARE(table->columnCount(), 2);
    QCOMPARE(table->item(0, 0)->text() + table->item(0, 1)->text(), QString());
    QCOMPARE(table->item(1, 0)->text() + table->item(1, 1)->text(), QString("один"));
    QCOMPARE(table->item(2, 0)->text() + table->item(2, 1)->text(), QString());
    QCOMPARE(table->item(3, 0)->text() + table->item(3, 1)->text(), QString("аб"));
}

void tst_PrinPreviewDialog::tableTextsAreNotExpanded()
{
    Page page;
    page.build({tableItem("#T")}, {{"#T", tableEntry({{"#LNAME^", "a\\nb"}})}});
    QCOMPARE(page.table()->item(0, 0)->text(), QString("#LNAME^"));
    QCOMPARE(page.table()->item(0, 1)->text(), QString("a\\nb"));
}

void tst_PrinPreviewDialog::documentDecidesBetweenTableAndText()
{
    Page page;
    page.build({textItem("#T"), tableItem("#LNAME"), textItem("#T "), tableItem("#NOBODY"),
                textItem("#S"), blankItem(9, "#T", QRectF(0, 0, 200, 200))},
               {{"#T", tableEntry({{"а"}})}, {"#S", valueEntry(FieldType::string, "строка")}});
    QVERIFY(page.table(0)); // a text item with the tag of a table
    QVERIFY(page.label(1)->text().contains(">Иванов<"));
    QVERIFY(page.label(2)->text().contains(">#T<")); // not exactly the tag
    QVERIFY(page.label(3)->text().contains(">#NOBODY<"));
    QVERIFY(page.label(4)->text().contains(">строка<"));
    QVERIFY(page.table(5)); // an unknown kind
}

void tst_PrinPreviewDialog::pageCannotBeTouched()
{
    Page page;
    page.build({blankItem(2, "#T", QRectF(20, 20, 300, 120))},
               {{"#T", tableEntry(numberedRows(40))}}); // far more than the frame holds
    page.dialog->show();
    QVERIFY(QTest::qWaitForWindowActive(page.dialog.get()));
    auto* view = page.dialog->findChild<QGraphicsView*>("documentView");
    const QTableWidget* table = page.table();
    const QPoint place = view->mapFromScene(QPointF(60, 60));
    const QRect rectBefore = table->visualItemRect(table->item(3, 0));

    QWheelEvent wheel(place, view->viewport()->mapToGlobal(place), QPoint(), QPoint(0, -360),
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(view->viewport(), &wheel);
    QTest::mouseClick(view->viewport(), Qt::LeftButton, Qt::NoModifier, place);
    QTest::keyClick(view, Qt::Key_Tab);
    for (const Qt::Key key : {Qt::Key_PageDown, Qt::Key_Down, Qt::Key_End}) {
        QTest::keyClick(page.dialog.get(), key);
        QTest::keyClick(view, key);
    }

    // Otherwise other rows would be printed, or a frame around the current cell.
    QCOMPARE(table->visualItemRect(table->item(3, 0)), rectBefore);
    QVERIFY(!table->currentIndex().isValid());
    QVERIFY(!table->hasFocus());
}

void tst_PrinPreviewDialog::background_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QSize>("picture");
    QTest::addColumn<QSize>("shown"); // on a page of 1122 by 793
    QTest::newRow("same shape") << "back.png" << QSize(2244, 1586) << QSize(1122, 793);
    QTest::newRow("small, in a folder") << "blanks/back.bmp" << QSize(561, 100) << QSize(1122, 200);
    QTest::newRow("upright") << "back.jpg" << QSize(200, 1586) << QSize(100, 793);
}

void tst_PrinPreviewDialog::background()
{
    QFETCH(QString, file);
    QFETCH(QSize, picture);
    QFETCH(QSize, shown);
    Page page;
    QVERIFY(QDir(page.path()).mkpath("blanks"));
    QVERIFY(writePicture(page.path(file), picture, Qt::red));
    page.build({textItem("Текст")}, {}, {{"BACKGROUND_IMG", file}});
    QCOMPARE(page.items().size(), 2);
    const auto* item = dynamic_cast<QGraphicsPixmapItem*>(page.items().first());
    QVERIFY(item);
    QCOMPARE(item->pos(), QPointF(0, 0));
    QCOMPARE(item->pixmap().size(), shown);
    const QColor color = item->pixmap().toImage().pixelColor(shown.width() / 2, 50);
    QVERIFY(color.red() > 250 && color.green() < 5);
}

void tst_PrinPreviewDialog::backgroundNamedAsOnWindows_data()
{
    QTest::addColumn<QString>("stored");
    QTest::newRow("separator") << "blanks\\a.png";
    QTest::newRow("letter case") << "Blanks/A.PNG";
    QTest::newRow("both") << "BLANKS\\a.PNG";
}

void tst_PrinPreviewDialog::backgroundNamedAsOnWindows()
{
    QFETCH(QString, stored);
    Page page;
    QVERIFY(QDir(page.path()).mkpath("blanks"));
    QVERIFY(writePicture(page.path("blanks/a.png"), QSize(1122, 793), Qt::red));
    page.build({textItem("Текст")}, {}, {{"BACKGROUND_IMG", stored}});
    const auto* item = dynamic_cast<QGraphicsPixmapItem*>(page.items().first());
    QVERIFY(item);
    QCOMPARE(item->pixmap().size(), QSize(1122, 793));
}

void tst_PrinPreviewDialog::backgroundThatCannotBeLoaded_data()
{
    QTest::addColumn<QVariant>("file");
    QTest::newRow("NULL") << QVariant();
    QTest::newRow("empty") << QVariant("");
    QTest::newRow("missing") << QVariant("blanks/none.png");
    QTest::newRow("no picture") << QVariant("docs.db");
    QTest::newRow("a number") << QVariant(5);
    QTest::newRow("cut off") << QVariant("cut.png");
}

void tst_PrinPreviewDialog::backgroundThatCannotBeLoaded()
{
    QFETCH(QVariant, file);
    Page page;
    QFile cut(page.path("cut.png"));
    QVERIFY(cut.open(QIODevice::WriteOnly));
    cut.write("\x89PNG\r\n\x1a\n", 8);
    cut.close();
    page.build({textItem("Текст")}, {}, {{"BACKGROUND_IMG", file}});
    QVERIFY(page.built);
    QCOMPARE(page.items().size(), 1);
    QVERIFY(page.label());
}

// No memory holds a picture as large as that page.
void tst_PrinPreviewDialog::backgroundOfAnEndlessPage()
{
    Page page;
    QVERIFY(writePicture(page.path("back.png"), QSize(100, 100), Qt::red));
    page.build(
        {textItem("Текст")}, {},
        {{"BACKGROUND_IMG", "back.png"}, {"SIZE_WIDTH", 2000000000}, {"SIZE_HEIGHT", 2000000000}});
    QVERIFY(page.built);
    QCOMPARE(page.items().size(), 1);
    QVERIFY(page.label());
}

void tst_PrinPreviewDialog::checkBoxDoesNotHideThePreviewsBackground()
{
    Page page;
    QVERIFY(writePicture(page.path("back.png"), QSize(100, 100), Qt::red));
    page.build({}, {}, {{"BACKGROUND_IMG", "back.png"}});
    auto* check = page.dialog->findChild<QCheckBox*>("checkPrintBG");
    QVERIFY(page.items().first()->isVisible());
    check->click();
    QVERIFY(check->isChecked() && page.items().first()->isVisible());
    check->click();
    QVERIFY(!check->isChecked() && page.items().first()->isVisible());
}

void tst_PrinPreviewDialog::edgeOfAPageWithoutAScan()
{
    PrintFixture app;
    app.addBlank({}, {{"SIZE_WIDTH", 100}, {"SIZE_HEIGHT", 60}});
    PrinPreviewDialog dialog(app.addDocument());
    ModalDriver driver;
    driver.expect<PrinPreviewDialog>([](PrinPreviewDialog* shown) {
        auto* view = shown->findChild<QGraphicsView*>("documentView");
        const QImage seen = view->viewport()->grab().toImage();
        const QRect page = view->mapFromScene(view->sceneRect()).boundingRect();
        const QColor edge = seen.pixelColor(page.center().x(), page.top());
        QVERIFY(edge.lightness() < 230);
        QCOMPARE(seen.pixelColor(page.left(), page.center().y()), edge);
        QCOMPARE(seen.pixelColor(page.center()), QColor(Qt::white));

        // What is printed is the scene, and that has no edge.
        QImage paper(377, 226, QImage::Format_RGB32);
        paper.fill(Qt::white);
        const QImage empty = paper;
        QPainter painter(&paper);
        view->scene()->render(&painter);
        painter.end();
        QCOMPARE(paper, empty);
        QVERIFY(view->scene()->items().isEmpty());
        shown->reject();
    });
    QCOMPARE(dialog.exec(), 0);
    QVERIFY2(driver.finished(), driver.failures());
}

void tst_PrinPreviewDialog::rowsOfNulls()
{
    PrintFixture app;
    const QVariant doc = app.exec("INSERT INTO docs (ID) VALUES (NULL)");
    const QVariant blank = app.exec("INSERT INTO blanks (ID) VALUES (NULL)");
    PrinPreviewDialog dialog(doc);
    QVERIFY(dialog.buildScene(dialog.pageScene(), doc, blank));
    QVERIFY(dialog.pageScene()->items().isEmpty());

    app.exec("UPDATE blanks SET CONTENT = ?",
             {jsonText({{"fields", QJsonArray{textItem("#LNAME|#ISSUE_DATE|#DUPLICATE|")}}})});
    QVERIFY(dialog.buildScene(dialog.pageScene(), doc, blank));
    QCOMPARE(dialog.pageScene()->items().size(), 2);
}

void tst_PrinPreviewDialog::brokenBlankContent_data()
{
    QTest::addColumn<QVariant>("content");
    QTest::addColumn<int>("items");
    QTest::newRow("NULL") << QVariant() << 0;
    QTest::newRow("empty") << QVariant("") << 0;
    QTest::newRow("no JSON") << QVariant("{\"fields\": [") << 0;
    QTest::newRow("an array") << QVariant("[{\"type\": 0}]") << 0;
    QTest::newRow("no fields") << QVariant("{\"items\": [{\"type\": 0}]}") << 0;
    QTest::newRow("fields is no array") << QVariant("{\"fields\": {\"type\": 0}}") << 0;
    QTest::newRow("empty array") << QVariant("{\"fields\": []}") << 0;
    QTest::newRow("text") << QVariant("{\"fields\": [{\"type\": 0}]}") << 1;
    QTest::newRow("bytes") << QVariant(QByteArray("{\"fields\": [{\"type\": 0}]}")) << 1;
    QTest::newRow("wrong types")
        << QVariant("{\"fields\": [{\"type\": \"x\", \"value\": 5, \"pos_x\": \"left\", "
                    "\"size_w\": null, \"font\": [], \"font_size\": {}, \"columns_width\": 3}]}")
        << 1;
}

void tst_PrinPreviewDialog::brokenBlankContent()
{
    QFETCH(QVariant, content);
    QFETCH(int, items);
    Page page;
    page.build({}, {}, {{"CONTENT", content}});
    QVERIFY(page.built);
    QCOMPARE(page.items().size(), items);
}

void tst_PrinPreviewDialog::brokenDocumentContent_data()
{
    QTest::addColumn<QVariant>("content");
    QTest::newRow("NULL") << QVariant();
    QTest::newRow("no JSON") << QVariant("просто текст");
    QTest::newRow("an array") << QVariant("[\"#CITY\"]");
    QTest::newRow("entries are no objects") << QVariant("{\"#OTHER\": 5, \"#T\": [4]}");
}

void tst_PrinPreviewDialog::brokenDocumentContent()
{
    QFETCH(QVariant, content);
    Page page;
    page.build({textItem("#LNAME #CITY"), tableItem("#GRADES")}, {}, {}, {{"CONTENT", content}});
    QVERIFY(page.label(0)->text().contains(">Иванов #CITY<"));
    QVERIFY(page.label(1)->text().contains(">#GRADES<"));
}

void tst_PrinPreviewDialog::hugeDocumentContent()
{
    // Ten megabytes, most of them in rows that the frame has no room for.
    QVector<QStringList> rows(20000, QStringList{QString("слово ").repeated(20), "5"});
    QJsonObject content = {{"#T", tableEntry(rows)},
                           {"#NOTE", valueEntry(FieldType::text, QString("и").repeated(2500000))},
                           {"#S", valueEntry(FieldType::string, "строка")}};
    QVERIFY(jsonText(content).toUtf8().size() > 9500000);
    Page page;
    page.build({textItem("#S #LNAME"), tableItem("#T", {{"row_to", 10}}), tableItem("#T")},
               content);
    QVERIFY(page.label(0)->text().contains(">строка Иванов<"));
    QCOMPARE(page.table(1)->rowCount(), 10);
    QCOMPARE(page.table(2)->rowCount(), 20000);
}

QTEST_MAIN(tst_PrinPreviewDialog)
#include "tst_PrinPreviewDialog.moc"
