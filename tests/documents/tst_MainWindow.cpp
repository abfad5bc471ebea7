#include <QtTest>

#include <QAction>
#include <QCalendarWidget>
#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QSet>
#include <QSignalSpy>
#include <QSplitter>
#include <QTableWidget>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>
#include <functional>
#include <memory>

#include "app/AppStyle.h"
#include "documents/MainWindow.h"
#include "forms/FormDefinitions.h"
#include "store/DataBase.h"
#include "support/LogCatcher.h"
#include "support/ModalDriver.h"
#include "support/TempApplication.h"
#include "support/Widgets.h"

namespace {

/// What a list row shows, "|" between the columns, and its identifier in front.
QString rowText(const QTableWidget* table, int row)
{
    QStringList cells;
    cells << table->item(row, 0)->data(Qt::UserRole).toString();
    for (int column = 0; column < table->columnCount(); ++column) {
        cells << table->item(row, column)->text();
    }
    return cells.join("|");
}

QStringList rowTexts(const QTableWidget* table)
{
    QStringList rows;
    for (int row = 0; row < table->rowCount(); ++row) {
        rows << rowText(table, row);
    }
    return rows;
}

QStringList actionTexts(const QWidget* widget)
{
    QStringList texts;
    const auto actions = widget->actions();
    for (const QAction* action : actions) {
        texts << (action->isSeparator() ? QString("-") : action->text());
    }
    return texts;
}

/// The pixels of an icon at the toolbar's size.
QImage pixels(const QIcon& icon)
{
    return icon.pixmap(40, 40).toImage();
}

} // namespace

/// The main window: its widgets, the document list and the filter.
class tst_MainWindow : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void window();
    void layout();
    void filterWidgets();
    void documentTable();
    void contentTable();
    void tablesShareTheirLook();
    void toolBars();
    void toolBarIconsStandOnOneLine();
    void toolTipsTellTheKeys();
    void icons();
    void menu();
    void slotsStandInOrder();
    void listShowsDocuments();
    void listLeavesOutTemplates();
    void unknownTypeShowsEmpty();
    void rowOfNulls();
    void firstRowBecomesCurrent();
    void emptyListHasNoCurrentRow();
    void fillReadsTheContentOnce();
    void rowsStayWholeUnderSorting_data();
    void rowsStayWholeUnderSorting();
    void fillSortsAsTheTableDoes_data();
    void fillSortsAsTheTableDoes();
    void fillIsOneChange();
    void sortsByTextOfAnyColumn();
    void changedCellKeepsItsPlaceInTheOrder();
    void filterQueryIsComposed_data();
    void filterQueryIsComposed();
    void filterSelects_data();
    void filterSelects();
    void filterKeepsTheHeadersOrder();
    void applyAndResetByMouse();
    void resetKeepsDatesAndQuery();
    void apostropheEmptiesTheList();
    void filterWithoutAResultSaysSo();
    void emptyListEmptiesThePane();
    void rowReachedByTabIsNotPicked();
    void severalRowsKeepASelectedCurrentOne();
    void headingKeepsTheSelectedRowInSight();
    void cutCellsHaveTips();
    void elidedHeadingsHaveTips();
    void dateOfIssueIsWhole();
    void dateOfIssueIsWholeAtLargerFonts();
    void typesAreReloaded();
    void failedTypesLeaveMapAndCombo();
    void noDatabase();
    void tableOfAnotherShape();
    void hundredThousandDocuments();

private:
    void filterBy(const QString& name, const QString& group, int type, bool byDates);
    template <class Widget>
    Widget* find(const QString& name) const
    {
        Widget* widget = m_window->findChild<Widget*>(name);
        if (!widget) {
            qFatal("no widget %s", qPrintable(name));
        }
        return widget;
    }
    QTableWidget* list() const { return find<QTableWidget>("docsWidget"); }
    void open() { m_window = std::make_unique<MainWindow>(); }
    int addForm(const QString& name);
    int addDocument(const QString& lname, const QString& group, int type, const QString& issued,
                    int isTemplate = 0);
    void addSample();

    std::unique_ptr<TempApplication> m_app;
    std::unique_ptr<MainWindow> m_window;
};

void tst_MainWindow::init()
{
    loadBaseStyle();
    m_app = std::make_unique<TempApplication>();
}

void tst_MainWindow::cleanup()
{
    m_window.reset();
    m_app.reset();
}

int tst_MainWindow::addForm(const QString& name)
{
    return m_app
        ->exec("INSERT INTO forms (FORM_NAME, FORM_FULLNAME, FIELDS) VALUES (?, '', '')", {name})
        .toInt();
}

int tst_MainWindow::addDocument(const QString& lname, const QString& group, int type,
                                const QString& issued, int isTemplate)
{
    return m_app
        ->exec("INSERT INTO docs (BLANK_SER, BLANK_NO, FNAME, LNAME, MNAME, BIRTH_DATE, DOC_TYPE, "
               "DOC_GROUP, ISSUE_DATE, EDIT_DATE, DUPLICATE, TEMPLATE, TEMPLATE_NAME, CONTENT) "
               "VALUES ('77', '001', 'Анна', ?, 'Ильинична', '2006-01-02', ?, ?, ?, '2024-06-20', "
               "0, ?, '', '{}')",
               {lname, type, group, issued, isTemplate})
        .toInt();
}

void tst_MainWindow::addSample()
{
    m_app->exec("BEGIN");
    addForm("Аттестат");                            // 1
    addForm("Диплом");                              // 2
    addDocument("Петрова", "9А", 1, "2024-06-20");  // 1
    addDocument("Иванова", "11Б", 2, "2023-06-25"); // 2
    addDocument("Смирнова", "9Б", 1, "2024-06-21"); // 3
    addDocument("Smith", "11Б", 2, "2025-01-15");   // 4
    m_app->exec("COMMIT");
}

void tst_MainWindow::window()
{
    open();
    QCOMPARE(m_window->windowTitle(), QString("Zelvora v1.1.0.9 [64 bit]"));
    QCOMPARE(m_window->size(), QSize(1300, 746));
    QCOMPARE(m_window->font().family(), QString("Roboto"));
    QCOMPARE(m_window->font().weight(), 50);
    QVERIFY(!m_window->font().italic());
    QVERIFY(m_window->font().kerning());
    QVERIFY(!baseStyleSheet.isEmpty());
    QCOMPARE(m_window->styleSheet(),
             baseStyleSheet +
                 "\r\nfont-family: Roboto;\nfont-style: normal;\nfont-weight: normal;\n"
                 "font-size: 13px;\nline-height: 150%;\ncolor: #404040;\nbackground: #FFFFFF;");
    QCOMPARE(m_window->currentDocId(), QVariant(-1));
    QCOMPARE(m_window->filterQuery(), QString());
}

void tst_MainWindow::layout()
{
    open();
    const auto* column = qobject_cast<QVBoxLayout*>(m_window->centralWidget()->layout());
    QVERIFY(column);
    QCOMPARE(QVector<int>({column->stretch(0), column->stretch(1), column->stretch(2)}),
             QVector<int>({3, 4, 50}));

    const auto* top = qobject_cast<QHBoxLayout*>(column->itemAt(0)->layout());
    QVERIFY(top);
    QCOMPARE(top->objectName(), QString("topLayout"));
    QCOMPARE(top->sizeConstraint(), QLayout::SetFixedSize);
    QCOMPARE(top->count(), 6);
    QCOMPARE(top->itemAt(0)->widget(), find<QLabel>("logo"));
    QCOMPARE(top->itemAt(1)->widget(), find<QLabel>("separator"));
    QCOMPARE(top->itemAt(2)->widget(), find<QLabel>("logo1"));
    QVERIFY(top->itemAt(3)->spacerItem());
    QCOMPARE(top->itemAt(4)->widget(), find<QToolButton>("filterApplyBtn"));
    QCOMPARE(top->itemAt(5)->widget(), find<QToolButton>("filterResetBtn"));
    QCOMPARE(QVector<int>({top->stretch(2), top->stretch(3), top->stretch(4), top->stretch(5)}),
             QVector<int>({5, 4, 2, 2}));
    QVERIFY(!find<QLabel>("logo")->pixmap(Qt::ReturnByValue).isNull());
    QVERIFY(!find<QLabel>("separator")->pixmap(Qt::ReturnByValue).isNull());
    QCOMPARE(find<QLabel>("logo1")->text(), QString("Автоматическая система\nзаполнения бланков"));
    QCOMPARE(find<QLabel>("logo1")->margin(), 8);

    QCOMPARE(column->itemAt(1)->layout()->objectName(), QString("filterLayout"));
    QCOMPARE(column->itemAt(1)->layout()->itemAt(0)->widget(), find<QFrame>("filterControlFrame"));
    const auto* grid = qobject_cast<QGridLayout*>(find<QFrame>("filterControlFrame")->layout());
    QVERIFY(grid);
    QVector<int> stretches;
    for (int i = 0; i < 6; ++i) {
        stretches << grid->columnStretch(i);
    }
    QCOMPARE(stretches, QVector<int>({10, 7, 5, 1, 3, 3}));
    QCOMPARE(QVector<int>({grid->rowStretch(0), grid->rowStretch(1)}), QVector<int>({3, 5}));
    const QStringList controls = {"filterNameEdit", "filterGroupEdit", "filterTypeCmb",
                                  "dateCheck",      "fromDate",        "toDate"};
    for (int i = 0; i < controls.size(); ++i) {
        QCOMPARE(grid->itemAtPosition(1, i)->widget()->objectName(), controls.at(i));
    }
    const QStringList labels = {"ФИО", "Класс", "Тип документа", "", "С", "По"};
    for (int i = 0; i < labels.size(); ++i) {
        QLayoutItem* item = grid->itemAtPosition(0, i);
        QCOMPARE(item ? qobject_cast<QLabel*>(item->widget())->text() : QString(), labels.at(i));
    }

    const auto* splitter = find<QSplitter>("splitter");
    QCOMPARE(column->itemAt(2)->widget(), splitter);
    QCOMPARE(splitter->orientation(), Qt::Horizontal);
    QVERIFY(!splitter->opaqueResize());
    QCOMPARE(splitter->handleWidth(), 3);
    QCOMPARE(splitter->widget(0), list());
    QCOMPARE(splitter->widget(1), find<QTableWidget>("contentWidget"));
    QCOMPARE(splitter->styleSheet(), QString(" background: #7C99FF;\n"));
    m_window->show();
    const QList<int> sizes = splitter->sizes();
    // 300 to 224, a pixel more or less.
    QVERIFY(qAbs(sizes.at(0) * 224 - sizes.at(1) * 300) <= 300);
}

void tst_MainWindow::filterWidgets()
{
    addSample();
    open();
    for (const char* name : {"filterApplyBtn", "filterResetBtn"}) {
        const auto* button = find<QToolButton>(name);
        QCOMPARE(button->minimumHeight(), 32);
        QCOMPARE(button->maximumHeight(), 32);
        QCOMPARE(button->toolButtonStyle(), Qt::ToolButtonTextUnderIcon);
    }
    QCOMPARE(find<QToolButton>("filterApplyBtn")->text(), QString("ПРИМЕНИТЬ"));
    QCOMPARE(find<QToolButton>("filterApplyBtn")->property("btnRole1").toString(),
             QString("accept"));
    QCOMPARE(find<QToolButton>("filterResetBtn")->text(), QString("СБРОСИТЬ"));
    QCOMPARE(find<QToolButton>("filterResetBtn")->property("btnRole1").toString(),
             QString("clear"));
    QCOMPARE(find<QFrame>("filterControlFrame")->styleSheet(),
             QString("background: #F7F8F9;\ncolor: #404040;"));

    const auto* types = find<QComboBox>("filterTypeCmb");
    QCOMPARE(types->currentIndex(), -1);
    QCOMPARE(types->count(), 2);
    QCOMPARE(types->itemText(1), QString("Диплом"));
    QCOMPARE(types->itemData(1), QVariant(2));

    const auto* check = find<QCheckBox>("dateCheck");
    QCOMPARE(check->text(), QString());
    QVERIFY(!check->isChecked());
    QCOMPARE(check->minimumHeight(), 20);
    QCOMPARE(check->maximumHeight(), 20);

    const QDate today = QDate::currentDate();
    QCOMPARE(find<QDateEdit>("fromDate")->date(), QDate(today.year(), 1, 1));
    QCOMPARE(find<QDateEdit>("toDate")->date(), today);
    for (const char* name : {"fromDate", "toDate"}) {
        const auto* edit = find<QDateEdit>(name);
        QVERIFY(edit->calendarPopup());
        QCOMPARE(edit->displayFormat(), QString("dd-MM-yyyy"));
        QCOMPARE(edit->calendarWidget()->minimumSize(), QSize(400, 300));
    }
}

void tst_MainWindow::documentTable()
{
    open();
    const QTableWidget* table = list();
    QCOMPARE(table->editTriggers(), QAbstractItemView::NoEditTriggers);
    QVERIFY(table->alternatingRowColors());
    QCOMPARE(table->selectionMode(), QAbstractItemView::ExtendedSelection);
    QCOMPARE(table->selectionBehavior(), QAbstractItemView::SelectRows);
    QVERIFY(table->showGrid());
    QVERIFY(table->verticalHeader()->isHidden());
    QVERIFY(table->verticalHeader()->isSortIndicatorShown());
    QCOMPARE(table->frameShape(), QFrame::NoFrame);
    QVERIFY(table->isSortingEnabled());
    QVERIFY(table->horizontalHeader()->isSortIndicatorShown());
    QStringList headers;
    for (int column = 0; column < table->columnCount(); ++column) {
        headers << table->horizontalHeaderItem(column)->text();
    }
    QCOMPARE(headers, QStringList({"ФИО", "Класс", "Тип документа", "Дата выдачи"}));
    QCOMPARE(table->columnWidth(0), 400);
    QCOMPARE(table->columnWidth(1), table->horizontalHeader()->defaultSectionSize());
    QCOMPARE(table->columnWidth(2), 128);
    QVERIFY(table->horizontalHeader()->stretchLastSection());
    m_window->show();
    QCOMPARE(table->columnViewportPosition(3) + table->columnWidth(3), table->viewport()->width());
}

void tst_MainWindow::contentTable()
{
    open();
    const auto* table = find<QTableWidget>("contentWidget");
    QCOMPARE(table->columnCount(), 2);
    QVERIFY(table->horizontalHeader()->isHidden());
    QVERIFY(table->verticalHeader()->isHidden());
    QVERIFY(table->showGrid());
    QCOMPARE(table->selectionMode(), QAbstractItemView::SingleSelection);
    QCOMPARE(table->selectionBehavior(), QAbstractItemView::SelectRows);
    QCOMPARE(table->editTriggers(), QAbstractItemView::NoEditTriggers);
    QVERIFY(table->alternatingRowColors());
    QCOMPARE(table->columnWidth(0), 224);
    QVERIFY(table->horizontalHeader()->stretchLastSection());
}

void tst_MainWindow::tablesShareTheirLook()
{
    open();
    for (const char* name : {"docsWidget", "contentWidget"}) {
        const auto* table = find<QTableWidget>(name);
        QCOMPARE(table->styleSheet(),
                 QString("background: #F7F8F9;\nfont-family: Roboto;\nfont-style: normal;\n"
                         "font-weight: normal;\nfont-size: 12px;"));
        const QPalette palette = table->palette();
        QCOMPARE(palette.color(QPalette::Text), QColor("#404040"));
        QCOMPARE(palette.color(QPalette::Base), QColor("#F7F8F9"));
        QCOMPARE(palette.color(QPalette::Window), QColor("#F7F8F9"));
        QCOMPARE(palette.color(QPalette::AlternateBase), QColor("#FFFFFF"));
        QCOMPARE(palette.color(QPalette::Active, QPalette::Highlight), QColor(124, 153, 255, 170));
        QCOMPARE(palette.color(QPalette::Inactive, QPalette::Highlight),
                 QColor(124, 153, 255, 170));
        QCOMPARE(palette.color(QPalette::Disabled, QPalette::Highlight), QColor(31, 117, 204, 170));
    }
}

void tst_MainWindow::toolBarIconsStandOnOneLine()
{
    open();
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    for (const char* name : {"toolBar", "toolBarTop"}) {
        auto* bar = find<QToolBar>(name);
        QSet<int> tops; // of the icons: they hang from the buttons' upper edges
        QSet<int> heights;
        for (QAction* action : bar->actions()) {
            if (!action->isSeparator()) {
                tops << bar->widgetForAction(action)->y();
                heights << bar->widgetForAction(action)->height();
            }
        }
        QCOMPARE(tops.size(), 1);
        QCOMPARE(heights.size(), 1);
    }
}

void tst_MainWindow::toolTipsTellTheKeys()
{
    open();
    QStringList tips;
    for (const char* name : {"toolBar", "toolBarTop"}) {
        auto* bar = find<QToolBar>(name);
        for (QAction* action : bar->actions()) {
            if (!action->isSeparator()) {
                tips << qobject_cast<QToolButton*>(bar->widgetForAction(action))->toolTip();
            }
        }
    }
    QCOMPARE(tips,
             (QStringList{"Создать документ (Ctrl+N)", "Создать копию документа (Ctrl+Shift+N)",
                          "Редактировать документ (F2)", "Печать (Ctrl+P)",
                          "Удалить выбранные документы (Ctrl+Del)", "Формы и списки (Ctrl+1)",
                          "Бланки (Ctrl+2)", "Экспорт и импорт (Ctrl+3)",
                          "Сохранить в архив (Ctrl+S)", "Загрузить из архива (Ctrl+O)"}));
}

void tst_MainWindow::toolBars()
{
    open();
    const QString style =
        "QToolButton {                  background: #FFFFFF;                  color: #333333;"
        "                  font-family: Roboto;                  font-style: normal;"
        "                  font-weight: normal;                  font-size: 12px;"
        "                  line-height: 12px;              }";
    for (const char* name : {"toolBar", "toolBarTop"}) {
        const auto* bar = find<QToolBar>(name);
        QVERIFY(!bar->isMovable());
        QCOMPARE(bar->orientation(), Qt::Horizontal);
        QCOMPARE(bar->toolButtonStyle(), Qt::ToolButtonTextUnderIcon);
        QCOMPARE(bar->iconSize(), QSize(40, 40));
        QCOMPARE(bar->styleSheet(), style);
        QCOMPARE(bar->allowedAreas(), Qt::ToolBarAreas(Qt::BottomToolBarArea));
    }
    QCOMPARE(m_window->toolBarArea(find<QToolBar>("toolBar")), Qt::BottomToolBarArea);
    QCOMPARE(m_window->toolBarArea(find<QToolBar>("toolBarTop")), Qt::TopToolBarArea);
    QCOMPARE(actionTexts(find<QToolBar>("toolBar")),
             QStringList({"СОЗДАТЬ ДОКУМЕНТ", "СОЗДАТЬ КОПИЮ\nДОКУМЕНТА", "РЕДАКТИРОВАТЬ\nДОКУМЕНТ",
                          "ПЕЧАТЬ", "УДАЛИТЬ ДОКУМЕНТ"}));
    QCOMPARE(actionTexts(find<QToolBar>("toolBarTop")),
             QStringList({"ФОРМЫ", "БЛАНКИ", "ЭКСПОРТ\nИМПОРТ", "-", "СОХРАНИТЬ\nВ АРХИВ",
                          "ЗАГРУЗИТЬ\nИЗ АРХИВА"}));
}

void tst_MainWindow::icons()
{
    open();
    const QMap<QString, QStringList> expected = {
        {"toolBar",
         {":/res/plus.png", ":/res/forms2.png", ":/res/edit1.png", ":/res/printer.png",
          ":/res/trash.png"}},
        // The save action carries the picture named load, and the other way round.
        {"toolBarTop",
         {":/res/forms1.png", ":/res/blanks.png", ":/res/export.png", ":/res/load.png",
          ":/res/save.png"}}};
    for (auto bar = expected.begin(); bar != expected.end(); ++bar) {
        QStringList files = bar.value();
        const auto actions = find<QToolBar>(bar.key())->actions();
        for (const QAction* action : actions) {
            if (action->isSeparator()) {
                continue;
            }
            const QImage picture = pixels(QIcon(files.takeFirst()));
            QVERIFY(!picture.isNull());
            QCOMPARE(pixels(action->icon()), picture);
        }
        QVERIFY(files.isEmpty());
    }
}

void tst_MainWindow::menu()
{
    open();
    QCOMPARE(actionTexts(m_window->menuBar()), QStringList({"Настройки"}));
    QCOMPARE(m_window->menuBar()->actions().first()->menu(), find<QMenu>("menu"));
    QCOMPARE(find<QMenu>("menu")->actions(),
             QList<QAction*>({find<QAction>("menuAction_LocalChangeOrgData")}));
    QCOMPARE(find<QAction>("menuAction_LocalChangeOrgData")->text(),
             QString("Смена данных организации"));
    QCOMPARE(find<QAction>("actionForms")->text(), QString("forms"));
    QCOMPARE(find<QAction>("actionBlanks")->text(), QString("blanks"));
    // No pop-up menu offers to hide a toolbar, from which there would be no way back.
    QCOMPARE(m_window->contextMenuPolicy(), Qt::NoContextMenu);
}

void tst_MainWindow::slotsStandInOrder()
{
    const QStringList expected = {
        "showForms",    "showBlanks", "showExport",  "loadData",
        "saveData",     "onNewDoc",   "onEditDoc",   "onDeleteDoc",
        "onPrintDoc",   "onCopyDoc",  "selChange",   "applyFilters",
        "resetFilters", "onTextView", "onTalbeView", "on_menuAction_LocalChangeOrgData_triggered"};
    QStringList found;
    const QMetaObject& meta = MainWindow::staticMetaObject;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        QCOMPARE(method.methodType(), QMetaMethod::Slot);
        QCOMPARE(method.parameterCount(), 0);
        found << method.name();
    }
    QCOMPARE(found, expected);
}

void tst_MainWindow::listShowsDocuments()
{
    addSample();
    open();
    QCOMPARE(rowTexts(list()), QStringList({"1|Петрова Анна Ильинична|9А|Аттестат|2024-06-20",
                                            "2|Иванова Анна Ильинична|11Б|Диплом|2023-06-25",
                                            "3|Смирнова Анна Ильинична|9Б|Аттестат|2024-06-21",
                                            "4|Smith Анна Ильинична|11Б|Диплом|2025-01-15"}));
    // Only the items of column 0 carry the identifier.
    QVERIFY(list()->item(0, 0)->data(Qt::UserRole).canConvert<int>());
    for (int column = 1; column < 4; ++column) {
        QVERIFY(!list()->item(0, column)->data(Qt::UserRole).isValid());
    }
}

void tst_MainWindow::listLeavesOutTemplates()
{
    addSample();
    addDocument("Шаблон", "", 1, "", 1);
    addDocument("Двойка", "", 1, "", 2);
    open();
    QCOMPARE(list()->rowCount(), 4);
}

void tst_MainWindow::unknownTypeShowsEmpty()
{
    addForm("Аттестат");
    addDocument("Петрова", "9А", 77, "2024-06-20");
    open();
    QCOMPARE(rowText(list(), 0), QString("1|Петрова Анна Ильинична|9А||2024-06-20"));
    QVERIFY(docTypeNames.contains(77));
    QCOMPARE(docTypeNames.value(77, "?"), QString());
    QCOMPARE(find<QComboBox>("filterTypeCmb")->count(), 1);
}

void tst_MainWindow::rowOfNulls()
{
    m_app->exec("INSERT INTO docs (TEMPLATE) VALUES (0)");
    open();
    QCOMPARE(rowTexts(list()), QStringList({"1|  |||"}));
}

void tst_MainWindow::firstRowBecomesCurrent()
{
    addSample();
    open();
    QCOMPARE(list()->currentRow(), 0);
    QCOMPARE(list()->currentColumn(), 0);
    QCOMPARE(list()->selectedItems().size(), 4);
    QCOMPARE(m_window->currentDocId().toInt(), 1);
}

void tst_MainWindow::emptyListHasNoCurrentRow()
{
    open();
    QVERIFY(list()->currentRow() < 0);
    QVERIFY(list()->selectedItems().isEmpty());
}

void tst_MainWindow::fillReadsTheContentOnce()
{
    addSample();
    m_app->exec("BEGIN");
    for (int i = 0; i < 100; ++i) {
        addDocument(QString("Фамилия%1").arg(i * 37 % 100), "9А", 1, "2024-06-20");
    }
    m_app->exec("COMMIT");
    open();
    list()->sortByColumn(0, Qt::AscendingOrder);
    const QSignalSpy changes(list(), &QTableWidget::itemSelectionChanged);
    m_window->updateDocsTable(QString());
    // The old selection goes, the first row comes.
    QCOMPARE(changes.size(), 2);
    QCOMPARE(list()->currentRow(), 0);
    QCOMPARE(list()->selectedItems().size(), 4);
}

void tst_MainWindow::rowsStayWholeUnderSorting_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<Qt::SortOrder>("order");

    for (int column = 0; column < 4; ++column) {
        QTest::addRow("column %d ascending", column) << column << Qt::AscendingOrder;
        QTest::addRow("column %d descending", column) << column << Qt::DescendingOrder;
    }
}

void tst_MainWindow::rowsStayWholeUnderSorting()
{
    QFETCH(int, column);
    QFETCH(Qt::SortOrder, order);
    addForm("Б");
    addForm("А");
    QMap<int, QString> expected;
    m_app->exec("BEGIN");
    for (int i = 0; i < 200; ++i) {
        const int scattered = i * 73 % 200;
        const QString name = QString("Ф%1").arg(scattered, 3, 10, QChar('0'));
        const QString group = QString::number(scattered % 7);
        const int type = 1 + scattered % 2;
        const QString issued = QDate(2020, 1, 1).addDays(scattered % 50).toString("yyyy-MM-dd");
        const int id = addDocument(name, group, type, issued);
        expected[id] = QString("%1|%2 Анна Ильинична|%3|%4|%5")
                           .arg(id)
                           .arg(name, group, type == 1 ? "Б" : "А", issued);
    }
    m_app->exec("COMMIT");
    open();
    list()->sortByColumn(column, order);
    m_window->updateDocsTable(QString()); // sorting stays on, as after a restore

    QVERIFY(list()->isSortingEnabled());
    QCOMPARE(list()->rowCount(), 200);
    QStringList texts;
    for (int row = 0; row < list()->rowCount(); ++row) {
        const int id = list()->item(row, 0)->data(Qt::UserRole).toInt();
        QCOMPARE(rowText(list(), row), expected.take(id));
        texts << list()->item(row, column)->text();
    }
    QVERIFY(expected.isEmpty());
    QVERIFY(order == Qt::AscendingOrder
                ? std::is_sorted(texts.begin(), texts.end())
                : std::is_sorted(texts.begin(), texts.end(), std::greater<QString>()));
}

void tst_MainWindow::fillSortsAsTheTableDoes_data()
{
    QTest::addColumn<Qt::SortOrder>("order");
    QTest::newRow("ascending") << Qt::AscendingOrder;
    QTest::newRow("descending") << Qt::DescendingOrder;
}

/// Texts that begin alike, prefixes of one another, characters outside the first plane and equal
/// ones, whose rows keep the order of the query either way.
void tst_MainWindow::fillSortsAsTheTableDoes()
{
    QFETCH(Qt::SortOrder, order);
    const QStringList groups = {"11",
                                "",
                                "Иванова-Петровская 2",
                                "Иванова-Петр",
                                "Иванова-Петровская 1",
                                "Иванова-Петровская 10",
                                "иванова",
                                "Иванова-Пет",
                                "Я",
                                "Ё",
                                QString::fromUtf8("\xF0\x9F\x98\x80"),
                                QString::fromUtf8("\xEF\xBC\xA1"),
                                "A",
                                "Иванова-Петровская"};
    for (int i = 0; i < 3 * groups.size(); ++i) {
        addDocument("Ким", groups[i % groups.size()], 1, "2024-06-20");
    }
    open();
    list()->sortByColumn(1, order);
    m_window->updateDocsTable(QString()); // sorting stays on, as after a restore

    QStringList expected = groups + groups + groups;
    std::stable_sort(expected.begin(), expected.end(),
                     [order](const QString& left, const QString& right) {
                         return order == Qt::AscendingOrder ? left < right : right < left;
                     });
    const QStringList shown = rowTexts(list());
    for (int row = 0; row < list()->rowCount(); ++row) {
        QCOMPARE(list()->item(row, 1)->text(), expected[row]);
        const bool isSame = row > 0 && expected[row] == expected[row - 1];
        QVERIFY(!isSame || list()->item(row - 1, 0)->data(Qt::UserRole).toInt() <
                               list()->item(row, 0)->data(Qt::UserRole).toInt());
    }
    list()->sortItems(1, order);
    QCOMPARE(rowTexts(list()), shown);
}

void tst_MainWindow::fillIsOneChange()
{
    addSample();
    open();
    for (const bool isSorted : {false, true}) {
        if (isSorted) {
            list()->sortByColumn(0, Qt::AscendingOrder);
        }
        const QSignalSpy changes(list()->model(), &QAbstractItemModel::dataChanged);
        const QSignalSpy sorts(list()->model(), &QAbstractItemModel::layoutChanged);
        const QSignalSpy indicator(list()->horizontalHeader(), &QHeaderView::sortIndicatorChanged);
        m_window->updateDocsTable(QString());
        QCOMPARE(changes.size(), 1);
        QCOMPARE(changes[0][0].toModelIndex(), list()->model()->index(0, 0));
        QCOMPARE(changes[0][1].toModelIndex(), list()->model()->index(3, 3));
        QCOMPARE(sorts.size(), 0);
        QCOMPARE(indicator.size(), 0);
        QVERIFY(list()->isSortingEnabled());
        QVERIFY(list()->horizontalHeader()->isSortIndicatorShown());
    }
}

void tst_MainWindow::sortsByTextOfAnyColumn()
{
    addSample();
    open();
    m_window->show();
    QHeaderView* header = list()->horizontalHeader();
    const QPoint overDates(header->sectionViewportPosition(3) + 10, header->height() / 2);
    QTest::mouseClick(header->viewport(), Qt::LeftButton, Qt::NoModifier, overDates);
    QStringList dates;
    for (int row = 0; row < 4; ++row) {
        dates << list()->item(row, 3)->text();
    }
    QCOMPARE(dates, QStringList({"2023-06-25", "2024-06-20", "2024-06-21", "2025-01-15"}));
    QVERIFY(header->isSortIndicatorShown());
    QCOMPARE(header->sortIndicatorSection(), 3);
}

void tst_MainWindow::changedCellKeepsItsPlaceInTheOrder()
{
    addSample();
    open();
    list()->sortByColumn(0, Qt::AscendingOrder);
    const QSignalSpy changes(list(), &QTableWidget::itemChanged);
    list()->item(0, 0)->setText("Яшина");
    QCOMPARE(changes.size(), 1);
    QCOMPARE(list()->item(3, 0)->text(), QString("Яшина"));
    QCOMPARE(list()->item(3, 0)->data(Qt::UserRole).toInt(), 4);
    QCOMPARE(list()->item(3, 3)->text(), QString("2025-01-15"));
}

/// Fills the filter, the two dates apart, and applies it.
void tst_MainWindow::filterBy(const QString& name, const QString& group, int type, bool byDates)
{
    find<QLineEdit>("filterNameEdit")->setText(name);
    find<QLineEdit>("filterGroupEdit")->setText(group);
    find<QComboBox>("filterTypeCmb")->setCurrentIndex(type);
    find<QCheckBox>("dateCheck")->setChecked(byDates);
    find<QToolButton>("filterApplyBtn")->click();
}

void tst_MainWindow::filterQueryIsComposed_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("group");
    QTest::addColumn<int>("type");
    QTest::addColumn<bool>("dates");
    QTest::addColumn<QString>("query");

    const QString all = "SELECT * FROM docs WHERE docs.TEMPLATE = 0 ";
    QTest::newRow("nothing") << ""
                             << "" << -1 << false << all + ";";
    QTest::newRow("name") << "Ив"
                          << "" << -1 << false << all + " AND docs.LNAME LIKE '%Ив%';";
    QTest::newRow("class") << ""
                           << "9" << -1 << false << all + " AND docs.DOC_GROUP LIKE '%9%';";
    QTest::newRow("type") << ""
                          << "" << 1 << false << all + " AND docs.DOC_TYPE = 2;";
    QTest::newRow("dates") << ""
                           << "" << -1 << true
                           << all + " AND docs.ISSUE_DATE >= '2024-06-01' AND docs.ISSUE_DATE <= "
                                    "'2024-06-20';";
    QTest::newRow("all, as typed") << " о'й%"
                                   << "11 Б" << 0 << true
                                   << all + " AND docs.LNAME LIKE '% о'й%%' AND docs.DOC_GROUP "
                                            "LIKE '%11 Б%' AND docs.DOC_TYPE = 1 AND "
                                            "docs.ISSUE_DATE >= '2024-06-01' AND "
                                            "docs.ISSUE_DATE <= '2024-06-20';";
}

void tst_MainWindow::filterQueryIsComposed()
{
    QFETCH(QString, name);
    QFETCH(QString, group);
    QFETCH(int, type);
    QFETCH(bool, dates);
    addSample();
    open();
    find<QDateEdit>("fromDate")->setDate(QDate(2024, 6, 1));
    find<QDateEdit>("toDate")->setDate(QDate(2024, 6, 20));
    filterBy(name, group, type, dates);
    QTEST(m_window->filterQuery(), "query");
    QVERIFY(list()->isSortingEnabled());
}

void tst_MainWindow::filterSelects_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("group");
    QTest::addColumn<int>("type");
    QTest::addColumn<bool>("dates");
    QTest::addColumn<QString>("ids");

    QTest::newRow("nothing") << ""
                             << "" << -1 << false << "1 2 3 4";
    QTest::newRow("part of the surname") << "рова"
                                         << "" << -1 << false << "1";
    QTest::newRow("given name finds nothing") << "Анна"
                                              << "" << -1 << false << "";
    QTest::newRow("Latin letters of any case") << "sMI"
                                               << "" << -1 << false << "4";
    QTest::newRow("Cyrillic in the stored case only") << "иванова"
                                                      << "" << -1 << false << "";
    QTest::newRow("class") << ""
                           << "Б" << -1 << false << "2 3 4";
    QTest::newRow("type") << ""
                          << "" << 1 << false << "2 4";
    QTest::newRow("both ends of the dates") << ""
                                            << "" << -1 << true << "1 3";
    QTest::newRow("together") << "С"
                              << "9" << 0 << true << "3";
}

void tst_MainWindow::filterSelects()
{
    QFETCH(QString, name);
    QFETCH(QString, group);
    QFETCH(int, type);
    QFETCH(bool, dates);
    addSample();
    open();
    find<QDateEdit>("fromDate")->setDate(QDate(2024, 6, 20));
    find<QDateEdit>("toDate")->setDate(QDate(2024, 6, 21));
    filterBy(name, group, type, dates);
    QStringList ids;
    for (int row = 0; row < list()->rowCount(); ++row) {
        ids << list()->item(row, 0)->data(Qt::UserRole).toString();
    }
    QTEST(ids.join(" "), "ids");
}

void tst_MainWindow::filterKeepsTheHeadersOrder()
{
    addSample();
    open();
    list()->sortByColumn(3, Qt::DescendingOrder);
    find<QLineEdit>("filterGroupEdit")->setText("Б");
    find<QToolButton>("filterApplyBtn")->click();
    QCOMPARE(rowTexts(list()), QStringList({"4|Smith Анна Ильинична|11Б|Диплом|2025-01-15",
                                            "3|Смирнова Анна Ильинична|9Б|Аттестат|2024-06-21",
                                            "2|Иванова Анна Ильинична|11Б|Диплом|2023-06-25"}));
    // The fill ran unsorted: its first document is current, wherever sorting has put it.
    QCOMPARE(m_window->currentDocId().toInt(), 2);
    QCOMPARE(list()->currentRow(), 2);
}

void tst_MainWindow::applyAndResetByMouse()
{
    addSample();
    open();
    m_window->show();
    QTest::keyClicks(find<QLineEdit>("filterNameEdit"), "Smi");
    QTest::mouseClick(find<QToolButton>("filterApplyBtn"), Qt::LeftButton);
    QCOMPARE(rowTexts(list()), QStringList({"4|Smith Анна Ильинична|11Б|Диплом|2025-01-15"}));
    QTest::mouseClick(find<QToolButton>("filterResetBtn"), Qt::LeftButton);
    QCOMPARE(list()->rowCount(), 4);
    QVERIFY(list()->isSortingEnabled());
}

void tst_MainWindow::resetKeepsDatesAndQuery()
{
    addSample();
    open();
    find<QLineEdit>("filterNameEdit")->setText("Smith");
    find<QLineEdit>("filterGroupEdit")->setText("11");
    find<QComboBox>("filterTypeCmb")->setCurrentIndex(1);
    find<QCheckBox>("dateCheck")->setChecked(true);
    find<QDateEdit>("fromDate")->setDate(QDate(2025, 1, 1));
    find<QDateEdit>("toDate")->setDate(QDate(2025, 12, 31));
    find<QToolButton>("filterApplyBtn")->click();
    const QString query = m_window->filterQuery();
    QCOMPARE(list()->rowCount(), 1);

    find<QToolButton>("filterResetBtn")->click();
    QCOMPARE(find<QLineEdit>("filterNameEdit")->text(), QString());
    QCOMPARE(find<QLineEdit>("filterGroupEdit")->text(), QString());
    QCOMPARE(find<QComboBox>("filterTypeCmb")->currentIndex(), -1);
    QVERIFY(!find<QCheckBox>("dateCheck")->isChecked());
    QCOMPARE(find<QDateEdit>("fromDate")->date(), QDate(2025, 1, 1));
    QCOMPARE(find<QDateEdit>("toDate")->date(), QDate(2025, 12, 31));
    QCOMPARE(list()->rowCount(), 4);
    QCOMPARE(m_window->filterQuery(), query);
    QVERIFY(query.contains("Smith"));
}

void tst_MainWindow::apostropheEmptiesTheList()
{
    addSample();
    open();
    const QByteArray before = m_app->dump();
    find<QLineEdit>("filterNameEdit")->setText("О'Нил");
    const LogCatcher log;
    find<QToolButton>("filterApplyBtn")->click();
    QCOMPARE(list()->rowCount(), 0);
    QCOMPARE(find<QTableWidget>("contentWidget")->rowCount(), 0);
    QCOMPARE(log.count("Unable to select from docs query"), 1);
    QVERIFY(log.contains("syntax error"));
    QVERIFY(log.contains(m_window->filterQuery()));
    QCOMPARE(m_app->dump(), before);
    QVERIFY(list()->isSortingEnabled());

    find<QToolButton>("filterResetBtn")->click();
    QCOMPARE(list()->rowCount(), 4);
}

void tst_MainWindow::filterWithoutAResultSaysSo()
{
    addSample();
    open();
    m_window->show();
    // Pixels of the list's area that are neither its ground nor pale.
    const auto ink = [this] {
        const QImage shown = list()->viewport()->grab().toImage();
        int dark = 0;
        for (int y = 0; y < shown.height(); ++y) {
            for (int x = 0; x < shown.width(); ++x) {
                dark += qGray(shown.pixel(x, y)) < 180 ? 1 : 0;
            }
        }
        return dark;
    };
    filterBy("Нет такой", "", -1, false);
    QCOMPARE(list()->rowCount(), 0);
    const QImage shown = list()->viewport()->grab().toImage();
    QVERIFY(ink() > 100);
    QVERIFY(shown.pixelColor(5, 5) == QColor("#F7F8F9"));
    // A filter that finds something, and one that can't be run at all.
    filterBy("Smith", "", -1, false);
    QCOMPARE(list()->rowCount(), 1);
    filterBy("О'Нил", "", -1, false);
    QCOMPARE(ink(), 0);
    filterBy("Нет такой", "", -1, false);
    QVERIFY(ink() > 100);
    m_app->exec("DELETE FROM docs");
    find<QToolButton>("filterResetBtn")->click();
    QCOMPARE(ink(), 0); // nothing was sought
}

void tst_MainWindow::emptyListEmptiesThePane()
{
    addSample();
    open();
    m_window->show();
    auto* pane = find<QTableWidget>("contentWidget");
    for (const char* name : {"Нет такой", "О'Нил"}) {
        filterBy("", "", -1, false);
        QCOMPARE(pane->rowCount(), 4);
        clickRow(list(), 0, Qt::ControlModifier); // takes it out of the selection
        QCOMPARE(list()->selectedItems().size(), 0);
        QCOMPARE(pane->rowCount(), 0);
        pane->setRowCount(2); // as something left it
        filterBy(name, "", -1, false);
        QCOMPARE(list()->rowCount(), 0);
        QCOMPARE(pane->rowCount(), 0);
    }
}

void tst_MainWindow::rowReachedByTabIsNotPicked()
{
    addSample();
    open();
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    clickRow(list(), 0, Qt::ControlModifier);
    QCOMPARE(list()->currentRow(), -1);
    find<QLineEdit>("filterNameEdit")->setFocus();
    QVERIFY(tabTo(list()));
    QCOMPARE(list()->currentRow(), -1);
    const QByteArray before = m_app->dump();
    ModalDriver nothingExpected;
    m_window->onEditDoc();
    m_window->onCopyDoc();
    m_window->onPrintDoc();
    m_window->onDeleteDoc();
    QVERIFY2(nothingExpected.finished(), nothingExpected.failures());
    QCOMPARE(m_app->dump(), before);
    QTest::keyClick(list(), Qt::Key_Down);
    QCOMPARE(list()->currentRow(), 0);
    QCOMPARE(list()->selectedItems().size(), 4);
    QCOMPARE(find<QTableWidget>("contentWidget")->rowCount(), 4);
}

void tst_MainWindow::severalRowsKeepASelectedCurrentOne()
{
    addSample();
    open();
    m_window->show();
    clickRow(list(), 0);
    clickRow(list(), 2, Qt::ControlModifier);
    QCOMPARE(m_window->currentDocId().toInt(), 3);
    clickRow(list(), 2, Qt::ControlModifier); // out again: the other one is the current one
    QCOMPARE(list()->selectedItems().size(), 4);
    QCOMPARE(list()->currentRow(), 0);
    QCOMPARE(m_window->currentDocId().toInt(), 1);
    // The keyboard may stand on a row that is not selected; nothing is done to that row.
    QTest::keyClick(list(), Qt::Key_Down, Qt::ControlModifier);
    ModalDriver nothingExpected;
    m_window->onEditDoc();
    QVERIFY2(nothingExpected.finished(), nothingExpected.failures());
}

void tst_MainWindow::headingKeepsTheSelectedRowInSight()
{
    addForm("Диплом");
    m_app->exec("BEGIN");
    for (int i = 0; i < 200; ++i) {
        addDocument(QString("Ф%1").arg(i, 3, 10, QChar('0')), "9А", 1, "2024-06-20");
    }
    m_app->exec("COMMIT");
    open();
    m_window->show();
    clickRow(list(), 3);
    QHeaderView* header = list()->horizontalHeader();
    const auto isInSight = [this] {
        return list()->viewport()->rect().intersects(list()->visualItemRect(list()->currentItem()));
    };
    for (int click = 0; click < 3; ++click) {
        QTest::mouseClick(header->viewport(), Qt::LeftButton, Qt::NoModifier,
                          QPoint(10, header->height() / 2));
        QCOMPARE(list()->currentItem()->text(), QString("Ф003 Анна Ильинична"));
        QVERIFY(isInSight());
    }
}

void tst_MainWindow::cutCellsHaveTips()
{
    const QString type = "Удостоверение о повышении квалификации";
    addForm(type);
    addDocument("Петрова", "9А", 1, "2024-06-20");
    open();
    m_window->show();
    const auto tip = [this](int column) {
        return toolTipAt(list()->viewport(),
                         list()->visualItemRect(list()->item(0, column)).center());
    };
    QCOMPARE(tip(0), QString());
    QCOMPARE(tip(2), type);
    QCOMPARE(tip(3), QString());
}

void tst_MainWindow::elidedHeadingsHaveTips()
{
    addSample();
    open();
    m_window->show();
    QHeaderView* header = list()->horizontalHeader();
    const auto tip = [&](int section) {
        const int left = header->sectionViewportPosition(section);
        return toolTipAt(header->viewport(), QPoint(left + 5, header->height() / 2));
    };
    for (int section = 0; section < 4; ++section) {
        QCOMPARE(tip(section), QString());
    }
    header->resizeSection(2, 60);
    QCOMPARE(tip(2), QString("Тип документа"));
}

void tst_MainWindow::dateOfIssueIsWhole()
{
    for (int i = 0; i < 10; ++i) {
        addSample(); // enough for a scroll bar
    }
    // A test takes the desktop's fonts for those of 96 dpi, which the program does not.
    QCoreApplication::setAttribute(Qt::AA_Use96Dpi, false);
    open();
    QCoreApplication::setAttribute(Qt::AA_Use96Dpi, true);
    m_window->show();
    const int needed = list()->fontMetrics().horizontalAdvance("2024-06-20");
    constexpr int textMargin = 3; // of a cell, on each side
    const QRect cell = list()->visualItemRect(list()->item(0, 3));
    QVERIFY(cell.width() >= needed + 2 * textMargin);
    QVERIFY(list()->viewport()->rect().contains(cell));
}

// The fonts of the desktop are read once, at the start of a program.
void tst_MainWindow::dateOfIssueIsWholeAtLargerFonts()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("QT_FONT_DPI", "144");
    QProcess larger;
    larger.setProcessEnvironment(environment);
    larger.start(QCoreApplication::applicationFilePath(), {"dateOfIssueIsWhole"});
    QVERIFY(larger.waitForFinished());
    QVERIFY2(larger.exitStatus() == QProcess::NormalExit && larger.exitCode() == 0,
             larger.readAllStandardOutput().constData());
}

void tst_MainWindow::typesAreReloaded()
{
    addSample();
    open();
    QCOMPARE(docTypeNames, (QMap<int, QString>{{1, "Аттестат"}, {2, "Диплом"}}));
    m_app->exec("DELETE FROM forms WHERE ID = 1");
    m_app->exec("UPDATE forms SET FORM_NAME = 'Свидетельство' WHERE ID = 2");
    m_app->exec("INSERT INTO forms (ID, FORM_NAME) VALUES (28, 'Диплом СПО')");
    m_window->loadDocTypes();
    QCOMPARE(docTypeNames, (QMap<int, QString>{{2, "Свидетельство"}, {28, "Диплом СПО"}}));
    const auto* types = find<QComboBox>("filterTypeCmb");
    QCOMPARE(types->count(), 2);
    QCOMPARE(types->itemText(1), QString("Диплом СПО"));
    QCOMPARE(types->itemData(1), QVariant(28));
    QCOMPARE(types->currentIndex(), 0); // the first form, until someone clears it
}

void tst_MainWindow::failedTypesLeaveMapAndCombo()
{
    addSample();
    open();
    m_app->exec("ALTER TABLE forms RENAME TO hidden");
    const LogCatcher log;
    m_window->loadDocTypes();
    QCOMPARE(log.count("Unable to select from forms query"), 1);
    QCOMPARE(docTypeNames, (QMap<int, QString>{{1, "Аттестат"}, {2, "Диплом"}}));
    QCOMPARE(find<QComboBox>("filterTypeCmb")->count(), 2);
}

void tst_MainWindow::noDatabase()
{
    m_app.reset();
    m_app = std::make_unique<TempApplication>(TempApplication::Database::None);
    QVERIFY(!dataBase.open());
    const LogCatcher log;
    open();
    m_window->show();
    QCOMPARE(list()->rowCount(), 0);
    QCOMPARE(log.count("Unable to select from forms query"), 1);
    QCOMPARE(log.count("Unable to select from docs query"), 1);
    find<QToolButton>("filterApplyBtn")->click();
    find<QToolButton>("filterResetBtn")->click();
    QVERIFY(!QFile::exists(m_app->path("docs.db")));
}

void tst_MainWindow::tableOfAnotherShape()
{
    m_app->exec("DROP TABLE docs");
    m_app->exec("CREATE TABLE docs (ID INTEGER, TEMPLATE INTEGER)");
    m_app->exec("INSERT INTO docs VALUES (7, 0)");
    const LogCatcher log;
    open();
    QCOMPARE(rowTexts(list()), QStringList({"7|  |||"}));
    QVERIFY(log.contains("Unable to execute select query")); // the content pane's
    QCOMPARE(find<QTableWidget>("contentWidget")->rowCount(), 0);
}

void tst_MainWindow::hundredThousandDocuments()
{
    addForm("Диплом");
    m_app->exec("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 100000) "
                "INSERT INTO docs (LNAME, FNAME, MNAME, DOC_TYPE, DOC_GROUP, ISSUE_DATE, TEMPLATE) "
                "SELECT 'Ф' || (i * 7919 % 100000), 'И', 'О', 1, '9А', '2024-06-20', 0 FROM n");
    open();
    list()->sortByColumn(0, Qt::AscendingOrder);
    m_window->updateDocsTable(QString());
    QCOMPARE(list()->rowCount(), 100000);
    for (int row = 1; row < 100000; ++row) {
        QVERIFY(list()->item(row - 1, 0)->text() <= list()->item(row, 0)->text());
    }
    QCOMPARE(list()->item(99999, 3)->text(), QString("2024-06-20"));
}

QTEST_MAIN(tst_MainWindow)
#include "tst_MainWindow.moc"
