#include <QtTest>

#include <QGraphicsPixmapItem>
#include <QGraphicsScene>
#include <QGraphicsView>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QSpinBox>
#include <QTableWidget>
#include <QToolButton>

#include <memory>

#include "blanks/BlankDlg.h"
#include "blanks/BlankFormatDialog.h"
#include "blanks/BlankRows.h"
#include "blanks/BlankWindow.h"
#include "support/LogCatcher.h"
#include "support/ModalDriver.h"
#include "support/TempApplication.h"
#include "support/Widgets.h"

/// The list of blanks and the way to a blank's settings and to its editor.
class tst_BlankDlg : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void listErrorIsShownOnce();

    void window();
    void listsTheBlanks();
    void detailsOfTheSelectedBlank();
    void detailsOfOddValues();
    void detailsStayWithoutASelection();
    void failedDetailsAreLogged();
    void backgroundFitsTheView();
    void backgroundNamedAsOnWindows();
    void previewOfTooManyPixels();

    void addBlank();
    void addSelectsTheNewBlank();
    void refusedAddKeepsTheSelection();
    void addCancelledChangesNothing();
    void addWithoutFormsFails();
    void addWithAnApostropheFails();
    void failedFormsAreLogged();

    void editFormatShowsTheRow();
    void editFormatWritesTheRow();
    void renameLeavesTheListStale();
    void editCancelledChangesNothing();
    void editOfAMissingBlank();
    void failedEditIsShown();
    void failedUpdateIsShown();
    void literals();

    void deleteBlank();
    void deleteSelectsTheNeighbour_data();
    void deleteSelectsTheNeighbour();
    void deleteDenied();
    void deleteWithoutASelection();
    void failedDeleteIsShown();

    void editorOpensAndReturns();
    void editorStandsOverTheList();
    void editorNeedsACurrentRow();
    void editorNeedsASelection();
    void editorsLeaveNothingBehind();

private:
    void openList() { m_dialog = std::make_unique<BlankDlg>(); }
    template <class Widget>
    Widget* find(const char* name) const
    {
        return named<Widget>(m_dialog.get(), name);
    }
    QTableWidget* list() const { return find<QTableWidget>("blanksWidget"); }
    QString text(const char* edit) const { return find<QLineEdit>(edit)->text(); }
    QString names() const { return columnTexts(list(), 0).join("|"); }
    void click(const char* button) { QTest::mouseClick(find<QToolButton>(button), Qt::LeftButton); }
    void doubleClick(int row) { doubleClickRow(list(), row); }
    QGraphicsPixmapItem* picture() const;

    std::unique_ptr<TempApplication> m_app;
    std::unique_ptr<BlankDlg> m_dialog;
};

void tst_BlankDlg::init()
{
    m_app = std::make_unique<TempApplication>();
    m_app->exec(
        "INSERT INTO forms (ID, FORM_NAME, FIELDS) VALUES (7, 'Диплом', '{\"fields\":[]}')");
    m_app->exec("INSERT INTO forms (ID, FORM_NAME, FIELDS) VALUES (9, 'Аттестат', '')");
}

void tst_BlankDlg::cleanup()
{
    m_dialog.reset();
    m_app.reset();
}

QGraphicsPixmapItem* tst_BlankDlg::picture() const
{
    const QList<QGraphicsItem*> items = find<QGraphicsView>("backgroundView")->scene()->items();
    return items.size() == 1 ? qgraphicsitem_cast<QGraphicsPixmapItem*>(items.first()) : nullptr;
}

// Stands first: the message comes once per run of the program.
void tst_BlankDlg::listErrorIsShownOnce()
{
    m_app->exec("DROP TABLE blanks");
    LogCatcher log;
    ModalDriver driver;
    driver.expectMessage("Ошибка", "Ошибка удаления бланка: SQL Error");
    openList();
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(log.count("sqlError: no such table: blanks"), 1);
    QVERIFY(!m_dialog->refreshList());
    openList();
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(log.count("sqlError: no such table: blanks"), 3);
}

void tst_BlankDlg::window()
{
    openList();
    QCOMPARE(m_dialog->windowTitle(), QString("Zelvora - Список бланков"));
    QCOMPARE(m_dialog->size(), QSize(989, 785));
    QVERIFY(!m_dialog->windowFlags().testFlag(Qt::WindowContextHelpButtonHint));
    QCOMPARE(list()->columnCount(), 1);
    QCOMPARE(list()->horizontalHeaderItem(0)->text(), QString("Бланки"));
    QVERIFY(list()->horizontalHeader()->stretchLastSection());
    QCOMPARE(list()->editTriggers(), QAbstractItemView::NoEditTriggers);
    QCOMPARE(list()->selectionMode(), QAbstractItemView::SingleSelection);
    QCOMPARE(list()->selectionBehavior(), QAbstractItemView::SelectRows);
    const auto edits = {"pagesEdit",      "formatEdit", "formEdit", "fontEdit",
                        "backgroundEdit", "heightEdit", "widthEdit"};
    for (const char* edit : edits) {
        QVERIFY(find<QLineEdit>(edit)->isReadOnly());
        QVERIFY(text(edit).isEmpty());
    }
    QVERIFY(!find<QRadioButton>("portraitButton")->isEnabled());
    QVERIFY(!find<QRadioButton>("landscapeButton")->isEnabled());
    QVERIFY(find<QRadioButton>("portraitButton")->isChecked());
    const QList<QPair<const char*, QString>> tools = {{"blankAddBtn", "Добавить бланк"},
                                                      {"blankDeleteBtn", "Удалить выбранный бланк"},
                                                      {"blankEditBtn", "Редактировать бланк"}};
    for (const auto& [name, tip] : tools) {
        const auto* button = find<QToolButton>(name);
        QCOMPARE(button->toolTip(), tip);
        QCOMPARE(button->text(), QString("..."));
        QVERIFY(!button->icon().isNull());
        QCOMPARE(button->property("btnRole1").toString(), QString("whiteButton"));
    }
    QVERIFY(picture());
    QVERIFY(picture()->pixmap().isNull());
    m_dialog->show();
    QVERIFY(!find<QPushButton>("buttonReject")->isVisible());
    QCOMPARE(find<QPushButton>("buttonReject")->text(), QString("Отмена"));
    QCOMPARE(find<QPushButton>("buttonAccept")->text(), QString("ОК"));
    clickButton(m_dialog.get(), "buttonAccept");
    QCOMPARE(m_dialog->result(), int(QDialog::Accepted));
}

void tst_BlankDlg::listsTheBlanks()
{
    BlankRow row;
    row.name = "Яблоко";
    insertBlank(*m_app, row);
    row.name = "";
    const int unnamed = insertBlank(*m_app, row);
    row.name = "Абрикос";
    insertBlank(*m_app, row);
    m_app->exec("INSERT INTO blanks (NAME) VALUES (NULL)");
    openList();
    QCOMPARE(names(), QString("Яблоко|Бланк 2|Абрикос|Бланк 4"));
    QCOMPARE(list()->item(1, 0)->data(256).toInt(), unnamed);
    QVERIFY(list()->selectedItems().isEmpty());
    QCOMPARE(list()->horizontalHeaderItem(0)->text(), QString("Бланки"));
    QVERIFY(m_dialog->refreshList());
    QCOMPARE(list()->rowCount(), 4);
    QCOMPARE(list()->horizontalHeaderItem(0)->text(), QString("Бланки"));
}

void tst_BlankDlg::detailsOfTheSelectedBlank()
{
    BlankRow row;
    row.formId = 9;
    row.paperFormat = 1;
    row.background = "blanks/a.png";
    row.width = 148;
    insertBlank(*m_app, row);
    row.formId = 7;
    row.orientation = 1;
    insertBlank(*m_app, row);
    openList();
    list()->selectRow(0);
    QCOMPARE(text("formEdit"), QString("Аттестат"));
    QCOMPARE(text("fontEdit"), QString("Liberation Serif (14 sp)"));
    QCOMPARE(text("formatEdit"), QString("A5"));
    QCOMPARE(text("pagesEdit"), QString("1"));
    QCOMPARE(text("backgroundEdit"), QString("blanks/a.png"));
    QCOMPARE(text("widthEdit"), QString("148 мм"));
    QCOMPARE(text("heightEdit"), QString("210 мм"));
    QVERIFY(find<QRadioButton>("landscapeButton")->isChecked());
    list()->selectRow(1);
    QCOMPARE(text("formEdit"), QString("Диплом"));
    QVERIFY(find<QRadioButton>("portraitButton")->isChecked());
}

void tst_BlankDlg::detailsOfOddValues()
{
    BlankRow row;
    row.formId = 77;
    row.paperFormat = 5;
    row.orientation = 3;
    insertBlank(*m_app, row);
    row.formId = QVariant();
    insertBlank(*m_app, row);
    openList();
    list()->selectRow(0);
    QCOMPARE(text("formEdit"), QString("Unknown"));
    QCOMPARE(text("formatEdit"), QString("Unknown"));
    QVERIFY(find<QRadioButton>("portraitButton")->isChecked());
    list()->selectRow(1);
    QCOMPARE(text("formEdit"), QString("Unknown"));
}

void tst_BlankDlg::detailsStayWithoutASelection()
{
    insertBlank(*m_app, {});
    openList();
    list()->selectRow(0);
    list()->clearSelection();
    QCOMPARE(text("widthEdit"), QString("297 мм"));
}

void tst_BlankDlg::failedDetailsAreLogged()
{
    insertBlank(*m_app, {});
    insertBlank(*m_app, {});
    openList();
    list()->selectRow(0);
    m_app->exec("DROP TABLE blanks");
    LogCatcher log;
    list()->selectRow(1);
    QCOMPARE(log.count("sqlError: no such table: blanks"), 1);
    QCOMPARE(text("widthEdit"), QString("297 мм"));
}

void tst_BlankDlg::backgroundFitsTheView()
{
    QVERIFY(QImage(300, 100, QImage::Format_RGB32).save(m_app->path("wide.png")));
    QVERIFY(QImage(100, 400, QImage::Format_RGB32).save(m_app->path("high.png")));
    BlankRow row;
    for (const char* file : {"wide.png", "high.png", "absent.png"}) {
        row.background = file;
        insertBlank(*m_app, row);
    }
    openList();
    m_dialog->show();
    const auto* view = find<QGraphicsView>("backgroundView");
    list()->selectRow(0);
    QCOMPARE(picture()->pixmap().width(), view->width());
    QCOMPARE(picture()->pixmap().height(), int(view->width() * 100.0 / 300));
    list()->selectRow(1);
    QCOMPARE(picture()->pixmap().height(), view->height());
    QCOMPARE(picture()->pixmap().width(), int(view->height() * 100.0 / 400));
    // A small picture after a large one still stands in the middle.
    const int middle = view->mapFromScene(picture()->boundingRect().center()).x();
    QVERIFY(qAbs(middle - view->width() / 2) <= 1);
    list()->selectRow(2);
    QVERIFY(picture()->pixmap().isNull());
}

void tst_BlankDlg::backgroundNamedAsOnWindows()
{
    QVERIFY(QDir(m_app->path()).mkpath("blanks"));
    QVERIFY(QImage(300, 100, QImage::Format_RGB32).save(m_app->path("blanks/a.png")));
    BlankRow row;
    row.background = "Blanks\\A.PNG";
    insertBlank(*m_app, row);
    openList();
    list()->selectRow(0);
    QVERIFY(!picture()->pixmap().isNull());
    QCOMPARE(text("backgroundEdit"), QString("Blanks\\A.PNG")); // shown as it is stored
}

void tst_BlankDlg::previewOfTooManyPixels()
{
    QImage scan(25000, 25000, QImage::Format_Mono);
    scan.fill(0);
    QVERIFY(scan.save(m_app->path("large.png")));
    BlankRow row;
    row.background = "large.png";
    insertBlank(*m_app, row);
    openList();
    list()->selectRow(0);
    QVERIFY(picture() && picture()->pixmap().isNull());
}

void tst_BlankDlg::addBlank()
{
    openList();
    ModalDriver driver;
    driver.expect<BlankFormatDialog>([](BlankFormatDialog* format) {
        QVERIFY(!format->parent());
        QCOMPARE(format->form(), QVariant(7));
        format->findChild<QLineEdit*>("blankNameEdit")->setText("Новый");
        format->setForm(9);
        format->setOffsets(-3, 4);
        clickButton(format, "buttonAccept");
    });
    click("blankAddBtn");
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(names(), QString("Новый"));
    const QString stored =
        m_app
            ->value("SELECT NAME || '|' || FORM_ID || '|' || PAPER_FORMAT || '|' || "
                    "PAPER_ORIENTATION || '|' || PAGES || '|' || FONT || '|' || FONT_SIZE || '|' "
                    "|| BACKGROUND_IMG || '|' || SIZE_WIDTH || '|' || SIZE_HEIGHT || '|' || "
                    "OFFSET_X || '|' || OFFSET_Y || '|' || typeof(CONTENT) FROM blanks")
            .toString();
    QCOMPARE(stored, QString("Новый|9|42|0|1|Times New Roman|11||297|210|-3|4|null"));
}

void tst_BlankDlg::addSelectsTheNewBlank()
{
    BlankRow row;
    row.name = "Прежний";
    insertBlank(*m_app, row);
    insertBlank(*m_app, row);
    openList();
    m_dialog->show();
    clickRow(list(), 0);
    ModalDriver driver;
    driver.expect<BlankFormatDialog>([](BlankFormatDialog* format) {
        format->findChild<QLineEdit*>("blankNameEdit")->setText("Новый");
        format->setPageSize(123, 45);
        clickButton(format, "buttonAccept");
    });
    click("blankAddBtn");
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(list()->selectedItems(), QList<QTableWidgetItem*>{list()->item(2, 0)});
    QCOMPARE(list()->currentItem()->text(), QString("Новый"));
    QCOMPARE(text("widthEdit"), QString("123 мм"));
}

void tst_BlankDlg::refusedAddKeepsTheSelection()
{
    insertBlank(*m_app, {});
    insertBlank(*m_app, {});
    openList();
    m_dialog->show();
    clickRow(list(), 1);
    ModalDriver driver;
    driver.expect<BlankFormatDialog>([](BlankFormatDialog* format) {
        format->findChild<QLineEdit*>("blankNameEdit")->setText("O'Нил");
        clickButton(format, "buttonAccept");
    });
    driver.expectMessage("Ошибка", "Ошибка cохранения бланка: SQL Error");
    click("blankAddBtn");
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(list()->selectedItems(), QList<QTableWidgetItem*>{list()->item(1, 0)});
}

void tst_BlankDlg::addCancelledChangesNothing()
{
    openList();
    const QByteArray before = m_app->dump();
    ModalDriver driver;
    driver.expect<BlankFormatDialog>(
        [](BlankFormatDialog* format) { clickButton(format, "buttonReject"); });
    click("blankAddBtn");
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(m_app->dump(), before);
}

void tst_BlankDlg::addWithoutFormsFails()
{
    m_app->exec("DELETE FROM forms");
    openList();
    LogCatcher log;
    ModalDriver driver;
    driver.expect<BlankFormatDialog>(
        [](BlankFormatDialog* format) { clickButton(format, "buttonAccept"); });
    driver.expectMessage("Ошибка", "Ошибка cохранения бланка: SQL Error");
    click("blankAddBtn");
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(log.count("sqlError: near"), 1);
    QCOMPARE(list()->rowCount(), 0);
}

void tst_BlankDlg::addWithAnApostropheFails()
{
    openList();
    const QByteArray before = m_app->dump();
    ModalDriver driver;
    driver.expect<BlankFormatDialog>([](BlankFormatDialog* format) {
        format->setName("Аттестат об'єднання");
        clickButton(format, "buttonAccept");
    });
    driver.expectMessage("Ошибка", "Ошибка cохранения бланка: SQL Error");
    click("blankAddBtn");
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(m_app->dump(), before);
}

void tst_BlankDlg::failedFormsAreLogged()
{
    m_app->exec("DROP TABLE forms");
    openList();
    LogCatcher log;
    BlankFormatDialog format;
    QVERIFY(!m_dialog->loadForms(&format));
    QCOMPARE(log.count("Не удалось получить список форм: no such table: forms"), 1);
    QVERIFY(!format.form().isValid());
}

void tst_BlankDlg::editFormatShowsTheRow()
{
    m_app->exec("INSERT INTO blanks (NAME, FORM_ID, PAPER_FORMAT, PAPER_ORIENTATION, PAGES, FONT, "
                "FONT_SIZE, BACKGROUND_IMG, SIZE_WIDTH, SIZE_HEIGHT, OFFSET_X, OFFSET_Y) VALUES "
                "('Лист', 9, 1, 1, 2, 'Nonesuch Serif', 20, 'blanks/a.png', 148, 105, -7, 8)");
    openList();
    m_dialog->show();
    ModalDriver driver;
    driver.expect<BlankFormatDialog>([](BlankFormatDialog* format) {
        QVERIFY(!format->parent());
        QCOMPARE(format->windowTitle(), QString("Редактирование бланка: Лист"));
        QCOMPARE(format->name(), QString("Лист"));
        QCOMPARE(format->form(), QVariant(9));
        QCOMPARE(format->paperFormat(), 1);
        QCOMPARE(format->orientation(), 1);
        QCOMPARE(format->pages(), 2);
        QCOMPARE(format->fontFamily(), QString("Nonesuch Serif"));
        QCOMPARE(format->fontSize(), 20);
        QCOMPARE(format->background(), QString("blanks/a.png"));
        QCOMPARE(format->pageWidth(), 148);
        QCOMPARE(format->pageHeight(), 105);
        QCOMPARE(format->offsetX(), -7);
        QCOMPARE(format->offsetY(), 8);
        clickButton(format, "buttonAccept");
    });
    const QByteArray before = m_app->dump();
    doubleClick(0);
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(m_app->dump(), before); // a mere "ОК" changes nothing
}

void tst_BlankDlg::editFormatWritesTheRow()
{
    BlankRow row;
    row.formId = 7;
    row.content = contentOf({QJsonObject{{"value", "kept"}}});
    insertBlank(*m_app, row);
    const int edited = insertBlank(*m_app, row);
    openList();
    m_dialog->show();
    ModalDriver driver;
    driver.expect<BlankFormatDialog>([](BlankFormatDialog* format) {
        format->setForm(9);
        format->setPaperFormat(0);
        format->setOrientation(1);
        format->setFontFamily("Arial");
        format->setFontSize(9);
        format->setBackground("blanks/b.png");
        format->setPageSize(210, 297);
        format->setOffsets(1, -2);
        clickButton(format, "buttonAccept");
    });
    doubleClick(1);
    QVERIFY2(driver.finished(), driver.failures());
    const QString columns = "FORM_ID || '|' || PAPER_FORMAT || '|' || PAPER_ORIENTATION || '|' || "
                            "PAGES || '|' || FONT || '|' || FONT_SIZE || '|' || BACKGROUND_IMG || "
                            "'|' || SIZE_WIDTH || '|' || SIZE_HEIGHT || '|' || OFFSET_X || '|' || "
                            "OFFSET_Y";
    const QString statement = "SELECT " + columns + " FROM blanks WHERE ID = ?";
    QCOMPARE(m_app->value(statement, {edited}).toString(),
             QString("9|0|1|1|Arial|9|blanks/b.png|210|297|1|-2"));
    QCOMPARE(storedFields(*m_app, edited).size(), 1);
    QCOMPARE(m_app->value("SELECT FORM_ID FROM blanks WHERE ID <> ?", {edited}).toInt(), 7);
    // The details show the new state at once.
    QCOMPARE(text("formEdit"), QString("Аттестат"));
    QCOMPARE(text("formatEdit"), QString("A4"));
    QCOMPARE(text("heightEdit"), QString("297 мм"));
    QVERIFY(find<QRadioButton>("portraitButton")->isChecked());
}

void tst_BlankDlg::renameLeavesTheListStale()
{
    BlankRow row;
    row.formId = 7;
    const int id = insertBlank(*m_app, row);
    openList();
    m_dialog->show();
    ModalDriver driver;
    driver.expect<BlankFormatDialog>([](BlankFormatDialog* format) {
        format->setName("Другое имя");
        clickButton(format, "buttonAccept");
    });
    doubleClick(0);
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(names(), QString("Свидетельство"));
    QCOMPARE(m_app->value("SELECT NAME FROM blanks WHERE ID = ?", {id}).toString(),
             QString("Другое имя"));
    m_dialog->refreshList();
    QCOMPARE(names(), QString("Другое имя"));
}

void tst_BlankDlg::editCancelledChangesNothing()
{
    insertBlank(*m_app, {});
    openList();
    const QByteArray before = m_app->dump();
    ModalDriver driver;
    driver.expect<BlankFormatDialog>([](BlankFormatDialog* format) {
        format->setName("x");
        clickButton(format, "buttonReject");
    });
    m_dialog->editFormat(1);
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(m_app->dump(), before);
}

void tst_BlankDlg::editOfAMissingBlank()
{
    openList();
    ModalDriver driver;
    driver.expectMessage("Ошибка", "Ошибка редактирования бланка: не найден бланк");
    m_dialog->editFormat(33);
    QVERIFY2(driver.finished(), driver.failures());
}

void tst_BlankDlg::failedEditIsShown()
{
    openList();
    m_app->exec("DROP TABLE blanks");
    LogCatcher log;
    ModalDriver driver;
    driver.expectMessage("Ошибка", "Ошибка редактирования бланка: SQL Error");
    m_dialog->editFormat(1);
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(log.count("sqlError: no such table: blanks"), 1);
}

void tst_BlankDlg::failedUpdateIsShown()
{
    BlankRow row;
    row.formId = 7;
    insertBlank(*m_app, row);
    openList();
    const QByteArray before = m_app->dump();
    ModalDriver driver;
    driver.expect<BlankFormatDialog>([](BlankFormatDialog* format) {
        format->setBackground("it's.png");
        clickButton(format, "buttonAccept");
    });
    driver.expectMessage("Ошибка", "Ошибка cохранения бланка: SQL Error");
    m_dialog->editFormat(1);
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(m_app->dump(), before);
}

void tst_BlankDlg::literals()
{
    openList();
    BlankFormatDialog format;
    QCOMPARE(m_dialog->fieldValueLiteral("FORM_ID", &format), QString());
    QVERIFY(m_dialog->loadForms(&format));
    format.setName("it's");
    format.setForm(9);
    format.setPaperFormat(1);
    format.setOffsets(-1, 2);
    const QList<QPair<QString, QString>> expected = {
        {"NAME", "'it's'"},    {"FORM_ID", "9"},
        {"PAPER_FORMAT", "1"}, {"PAPER_ORIENTATION", "0"},
        {"PAGES", "1"},        {"FONT", "'Times New Roman'"},
        {"FONT_SIZE", "11"},   {"BACKGROUND_IMG", "''"},
        {"SIZE_WIDTH", "297"}, {"SIZE_HEIGHT", "210"},
        {"OFFSET_X", "-1"},    {"OFFSET_Y", "2"},
        {"CONTENT", "NULL"},   {"", "NULL"}};
    for (const auto& [column, literal] : expected) {
        QCOMPARE(m_dialog->fieldValueLiteral(column, &format), literal);
    }
}

void tst_BlankDlg::deleteBlank()
{
    BlankRow row;
    row.name = "Первый";
    row.background = "scan.png";
    insertBlank(*m_app, row);
    row.name = "Второй";
    insertBlank(*m_app, row);
    m_app->exec("INSERT INTO docs (LNAME, DOC_TYPE, TEMPLATE) VALUES ('Иванов', 1, 0)");
    QVERIFY(QImage(2, 2, QImage::Format_RGB32).save(m_app->path("scan.png")));
    openList();
    list()->selectRow(0);
    ModalDriver driver;
    driver.expectMessage("Zelvora", "Удалить бланк?", "Да");
    click("blankDeleteBtn");
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(names(), QString("Второй"));
    QCOMPARE(m_app->value("SELECT COUNT(*) FROM blanks").toInt(), 1);
    QCOMPARE(m_app->value("SELECT COUNT(*) FROM docs").toInt(), 1);
    QVERIFY(QFile::exists(m_app->path("scan.png")));
}

void tst_BlankDlg::deleteSelectsTheNeighbour_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("selected");
    QTest::newRow("first") << 0 << "Второй";
    QTest::newRow("middle") << 1 << "Третий";
    QTest::newRow("last") << 2 << "Второй";
}

void tst_BlankDlg::deleteSelectsTheNeighbour()
{
    QFETCH(int, row);
    QFETCH(QString, selected);
    int width = 100;
    for (const char* name : {"Первый", "Второй", "Третий"}) {
        BlankRow blank;
        blank.name = name;
        blank.width = width++;
        insertBlank(*m_app, blank);
    }
    openList();
    m_dialog->show();
    clickRow(list(), row);
    ModalDriver driver;
    driver.expectMessage("Zelvora", "Удалить бланк?", "Да");
    click("blankDeleteBtn");
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(list()->selectedItems().size(), 1);
    QCOMPARE(list()->selectedItems().first()->text(), selected);
    QCOMPARE(list()->currentItem(), list()->selectedItems().first());
    QCOMPARE(text("widthEdit"),
             m_app->value("SELECT SIZE_WIDTH || ' мм' FROM blanks WHERE NAME = ?", {selected})
                 .toString());
}

void tst_BlankDlg::deleteDenied()
{
    insertBlank(*m_app, {});
    openList();
    list()->selectRow(0);
    ModalDriver driver;
    driver.expectMessage("Zelvora", "Удалить бланк?", "Нет");
    click("blankDeleteBtn");
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(m_app->value("SELECT COUNT(*) FROM blanks").toInt(), 1);
}

void tst_BlankDlg::deleteWithoutASelection()
{
    insertBlank(*m_app, {});
    openList();
    ModalDriver driver; // no question may come
    click("blankDeleteBtn");
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(m_app->value("SELECT COUNT(*) FROM blanks").toInt(), 1);
}

void tst_BlankDlg::failedDeleteIsShown()
{
    insertBlank(*m_app, {});
    m_app->exec(
        "CREATE TRIGGER keep BEFORE DELETE ON blanks BEGIN SELECT RAISE(ABORT, 'kept'); END");
    openList();
    m_app->exec("UPDATE blanks SET NAME = 'Новое имя'");
    list()->selectRow(0);
    LogCatcher log;
    ModalDriver driver;
    driver.expectMessage("Zelvora", "Удалить бланк?", "Да");
    driver.expectMessage("Ошибка", "Ошибка удаления бланка: SQL Error");
    click("blankDeleteBtn");
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(log.count("sqlError: kept"), 1);
    QCOMPARE(names(), QString("Новое имя")); // filled anew all the same
    QCOMPARE(list()->selectedItems().size(), 1);
}

void tst_BlankDlg::editorOpensAndReturns()
{
    insertBlank(*m_app, {});
    const int id = insertBlank(*m_app, {});
    openList();
    m_dialog->show();
    list()->setCurrentCell(1, 0);
    ModalDriver driver;
    driver.expect<BlankWindow>([this](BlankWindow* editor) {
        QCOMPARE(editor->parent(), static_cast<QObject*>(m_dialog.get()));
        QCOMPARE(editor->windowModality(), Qt::ApplicationModal);
        editor->addTextItem();
        QTest::mouseClick(editor->findChild<QPushButton*>("buttonAccept"), Qt::LeftButton);
    });
    click("blankEditBtn");
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(storedFields(*m_app, id).size(), 1);
    QVERIFY(m_dialog->isVisible());
}

void tst_BlankDlg::editorNeedsACurrentRow()
{
    openList();
    ModalDriver driver;
    click("blankEditBtn");
    QVERIFY2(driver.finished(), driver.failures());
}

void tst_BlankDlg::editorStandsOverTheList()
{
    insertBlank(*m_app, {});
    openList();
    m_dialog->resize(400, 300);
    m_dialog->move(380, 450);
    m_dialog->show();
    list()->setCurrentCell(0, 0);
    const QRect screen = m_dialog->screen()->availableGeometry();
    ModalDriver driver;
    driver.expect<BlankWindow>([this, &screen](BlankWindow* editor) {
        // In the middle of the list, as far as the screen goes.
        const QPoint middle = m_dialog->geometry().center();
        const int left = qBound(screen.left(), middle.x() - editor->width() / 2,
                                qMax(screen.left(), screen.right() + 1 - editor->width()));
        const int top = qBound(screen.top(), middle.y() - editor->height() / 2,
                               qMax(screen.top(), screen.bottom() + 1 - editor->height()));
        QVERIFY2(qAbs(editor->x() - left) <= 1 && qAbs(editor->y() - top) <= 1,
                 qPrintable(QString("%1 %2").arg(editor->x()).arg(editor->y())));
        editor->close();
    });
    click("blankEditBtn");
    QVERIFY2(driver.finished(), driver.failures());
}

void tst_BlankDlg::editorNeedsASelection()
{
    insertBlank(*m_app, {});
    openList();
    list()->setCurrentCell(0, 0, QItemSelectionModel::NoUpdate);
    QCOMPARE(list()->currentRow(), 0);
    ModalDriver driver; // no window may come
    click("blankEditBtn");
    QVERIFY2(driver.finished(), driver.failures());
}

void tst_BlankDlg::editorsLeaveNothingBehind()
{
    BlankRow row;
    row.content =
        contentOf({QJsonObject{{"type", 0}, {"value", "#LNAME"}, {"size_w", 200}, {"size_h", 50}},
                   QJsonObject{{"type", 1}, {"value", "1"}, {"size_w", 98}, {"size_h", 98}}});
    insertBlank(*m_app, row);
    openList();
    m_dialog->show();
    list()->setCurrentCell(0, 0);
    const auto ends = {"buttonAccept", "buttonReject", ""};
    for (const char* end : ends) {
        ModalDriver driver;
        driver.expect<BlankWindow>([end](BlankWindow* editor) {
            editor->addTableItem(); // left selected
            if (*end) {
                QTest::mouseClick(editor->findChild<QPushButton*>(end), Qt::LeftButton);
            } else {
                editor->close();
            }
        });
        click("blankEditBtn");
        QVERIFY2(driver.finished(), driver.failures());
        QVERIFY(!m_dialog->findChild<BlankWindow*>());
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (const QWidget* window : windows) {
        QVERIFY(!qobject_cast<const BlankWindow*>(window));
    }
}

QTEST_MAIN(tst_BlankDlg)
#include "tst_BlankDlg.moc"
