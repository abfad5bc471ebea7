#include <QtTest>

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QDialog>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QStyledItemDelegate>
#include <QTableWidget>
#include <QTextEdit>
#include <QTimer>
#include <QToolBar>

#include <functional>
#include <memory>

#include "DocumentFixture.h"
#include "app/AppStyle.h"
#include "blanks/BlankDlg.h"
#include "documents/DocDialog.h"
#include "documents/MainWindow.h"
#include "documents/NewDocDlg.h"
#include "documents/TableMemoDialog.h"
#include "documents/TextMemoDialog.h"
#include "documents/ZelvoraTableButton.h"
#include "documents/ZelvoraTextButton.h"
#include "exchange/ExportDlg.h"
#include "forms/FormDefinitions.h"
#include "forms/FormsDlg.h"
#include "render/PrinPreviewDialog.h"
#include "store/ChangeOrgDataDlg.h"
#include "support/LogCatcher.h"
#include "support/ModalDriver.h"
#include "support/Process.h"
#include "support/TempApplication.h"

namespace {

const QString diplomaFields = R"({"fields": [
    {"tag": "#SPECIALTY", "name": "Специальность", "type": 0},
    {"tag": "#HOURS", "name": "Часы", "type": 2}]})";

// Keys in sorted order: #A_HOURS, #B_NOTE, #C_LIST, #D_DATE, #E_GRADES, #F_BEHIND.
const QString richContent = R"({
    "#F_BEHIND": {"name": "За таблицей", "type": 0, "value": "не видно"},
    "#E_GRADES": {"name": "Оценки", "type": 4, "columns": [{"name": "Предмет", "typeID": "0"}],
                  "value": [["Физика"], ["Химия"]]},
    "#D_DATE": {"name": "Дата протокола", "type": 3, "format": "dd.MM.yyyy",
                "value": "15.06.2024"},
    "#C_LIST": {"name": "Квалификация", "type": 1, "list": 7, "value": "оператор"},
    "#B_NOTE": {"name": "Примечание", "type": 5, "value": "первая\nвторая"},
    "#A_HOURS": {"name": "Часы", "type": 2, "value": 144}})";

/// Replaces the text of one of a dialog's line editors.
void type(const QDialog* dialog, const char* edit, const QString& text)
{
    typeInto(named<QLineEdit>(dialog, edit), text);
}

/// "caption=value" for a row of the content pane; a button's caption in brackets.
QString paneRow(const QTableWidget* pane, int row)
{
    const auto* button = qobject_cast<QPushButton*>(pane->cellWidget(row, 1));
    const QString value = button ? "[" + static_cast<const QAbstractButton*>(button)->text() + "]"
                                 : pane->item(row, 1)->text();
    return pane->item(row, 0)->text() + "=" + value;
}

} // namespace

/// The content pane and the document actions of the main window.
class tst_MainWindowActions : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void paneShowsTheDocument();
    void paneShowsAnyContent_data();
    void paneShowsAnyContent();
    void paneShowsLongValuesWhole();
    void paneFollowsTheClickedRow();
    void paneOfRowOfNulls();
    void paneOfHugeContent();
    void paneSelectFails();
    void paneOfVanishedDocument();
    void textIsRead();
    void textViewCancelled();
    void tableIsRead();

    void newDocumentIsStored();
    void newDocumentRejected();
    void newDocumentWithoutTypeIsDiscarded();
    void newDocumentWithApostropheIsRefused();
    void newDocumentInSortedList();

    void editIsStored();
    void editByDoubleClick();
    void keysOfTheList();
    void shortcuts_data();
    void shortcuts();
    void enterAppliesTheFilter();
    void editRejected();
    void editRejectedKeepsWhatIsNoJson();
    void editWithApostropheShowsWhatWasEntered();
    void editMovesTheRowInSortedList();
    void changedDocumentsAreScrolledTo();
    void editOfDeletedFormWritesNothing();
    void editUnderTheNamelessType();
    void editOfRowOfNulls();
    void editOfVanishedDocument();
    void editSelectFails();

    void copyStandsAboveItsSource();
    void copyInSortedList();
    void copyRejected();
    void copyWithApostropheIsRefused();

    void deleteSelected_data();
    void deleteSelected();
    void deleteRefusedByTheUser();
    void deleteShowsAllDocumentsAgain();
    void deleteOfLastRowLeavesTheFirstCurrent();
    void deleteGoesOnAfterAFailure();
    void deleteShowsABusyCursor();

    void actionsOnAnEmptyTable();
    void printWithoutBlank();
    void printOpensThePreview();
    void formsAreReloadedAfterAccept();
    void formsAreNotReloadedAfterReject();
    void organisationData();
    void blanksAreListed();
    void exchangeShowsAllDocumentsAgain();
    void exportGoesByTheLastFilter();

private:
    QTableWidget* list() const { return named<QTableWidget>(m_window.get(), "docsWidget"); }
    QTableWidget* pane() const { return named<QTableWidget>(m_window.get(), "contentWidget"); }
    void open();
    int addForm(const QString& name, const QString& fields = diplomaFields);
    int addDocument(const QString& lname, int type = 1, const QString& content = "{}");
    void trigger(const QString& text);
    void play();
    QStringList paneRows() const;
    QStringList rows() const;
    QString stored(const QString& sql) const;
    void selectRow(int row, Qt::KeyboardModifiers modifiers = Qt::NoModifier);

    std::unique_ptr<TempApplication> m_app;
    std::unique_ptr<MainWindow> m_window;
    std::unique_ptr<ModalDriver> m_driver;
};

void tst_MainWindowActions::init()
{
    loadBaseStyle();
    m_app = std::make_unique<TempApplication>();
    addForm("Диплом");
    addForm("Аттестат", emptyFormFields);
    m_driver = std::make_unique<ModalDriver>();
}

void tst_MainWindowActions::cleanup()
{
    m_driver.reset();
    m_window.reset();
    m_app.reset();
}

void tst_MainWindowActions::open()
{
    m_window = std::make_unique<MainWindow>();
    m_window->show();
}

int tst_MainWindowActions::addForm(const QString& name, const QString& fields)
{
    return m_app
        ->exec("INSERT INTO forms (FORM_NAME, FORM_FULLNAME, FIELDS) VALUES (?, '', ?)",
               {name, fields})
        .toInt();
}

int tst_MainWindowActions::addDocument(const QString& lname, int type, const QString& content)
{
    return m_app
        ->exec("INSERT INTO docs (BLANK_SER, BLANK_NO, FNAME, LNAME, MNAME, BIRTH_DATE, DOC_TYPE, "
               "DOC_GROUP, ISSUE_DATE, EDIT_DATE, DUPLICATE, TEMPLATE, TEMPLATE_NAME, CONTENT) "
               "VALUES ('77 АБ', '001', 'Анна', ?, 'Ильинична', '2006-01-02', ?, '9А', "
               "'2024-06-20', '2024-06-21', 5, 0, '', ?)",
               {lname, type, content})
        .toInt();
}

void tst_MainWindowActions::trigger(const QString& text)
{
    const auto bars = m_window->findChildren<QToolBar*>();
    for (const QToolBar* bar : bars) {
        const auto actions = bar->actions();
        for (QAction* action : actions) {
            if (action->text() == text) {
                QTest::mouseClick(bar->widgetForAction(action), Qt::LeftButton);
                play();
                return;
            }
        }
    }
    QFAIL("no such action");
}

void tst_MainWindowActions::play()
{
    QVERIFY2(m_driver->finished(), m_driver->failures());
}

QStringList tst_MainWindowActions::paneRows() const
{
    QStringList texts;
    for (int row = 0; row < pane()->rowCount(); ++row) {
        texts << paneRow(pane(), row);
    }
    return texts;
}

// Identifier and surname of each row, top down.
QStringList tst_MainWindowActions::rows() const
{
    QStringList texts;
    for (int row = 0; row < list()->rowCount(); ++row) {
        const QTableWidgetItem* item = list()->item(row, 0);
        texts << item->data(Qt::UserRole).toString() + " " + item->text().section(' ', 0, 0);
    }
    return texts;
}

// What another process reads in the database file: rows in lines, "|" between the columns.
QString tst_MainWindowActions::stored(const QString& sql) const
{
    return QString::fromUtf8(runProcess("sqlite3", {m_app->path("docs.db"), sql}).out).trimmed();
}

void tst_MainWindowActions::selectRow(int row, Qt::KeyboardModifiers modifiers)
{
    const QRect cell = list()->visualItemRect(list()->item(row, 0));
    QTest::mouseClick(list()->viewport(), Qt::LeftButton, modifiers, cell.center());
}

void tst_MainWindowActions::paneShowsTheDocument()
{
    addDocument("Иванова", 1, richContent);
    open();
    QCOMPARE(paneRows(), QStringList({"Серия=77 АБ", "Номер=001", "Дата изменения=2024-06-21",
                                      "Дата рождения=2006-01-02", "Часы=144",
                                      "Примечание=[Просмотр]", "Квалификация=оператор",
                                      "Дата протокола=15.06.2024", "Оценки=[Просмотр]"}));
    const auto* text = qobject_cast<ZelvoraTextButton*>(pane()->cellWidget(5, 1));
    QVERIFY(text);
    QCOMPARE(text->property("text").toString(), QString("первая\nвторая"));
    const auto* table = qobject_cast<ZelvoraTableButton*>(pane()->cellWidget(8, 1));
    QVERIFY(table);
    QCOMPARE(table->columns.size(), 1);
    QCOMPARE(table->value, QJsonArray({QJsonArray({"Физика"}), QJsonArray({"Химия"})}));
}

void tst_MainWindowActions::paneShowsAnyContent_data()
{
    QTest::addColumn<QString>("content");
    QTest::addColumn<QStringList>("added");

    QTest::newRow("empty text") << "" << QStringList();
    QTest::newRow("no JSON") << "не JSON {" << QStringList();
    QTest::newRow("cut off") << R"({"#A": {"name": "А", "ty)" << QStringList();
    QTest::newRow("array") << R"([{"name": "А", "type": 0, "value": "х"}])" << QStringList();
    QTest::newRow("number") << "17" << QStringList();
    QTest::newRow("entry is no object")
        << R"({"#A": "текст", "#B": {"name": "Б", "value": "б"}})" << QStringList({"=", "Б=б"});
    QTest::newRow("missing keys") << R"({"#A": {}, "#B": {"type": 2}})" << QStringList({"=", "=0"});
    QTest::newRow("values of a wrong type")
        << R"({"#A": {"name": 5, "type": "2", "value": 7}, "#B": {"name": "Б", "type": 2,
             "value": "9"}, "#C": {"name": "В", "type": 1, "value": ["х"]}})"
        << QStringList({"=", "Б=0", "В="});
    QTest::newRow("type of a later day")
        << R"({"#A": {"name": "А", "type": 99, "value": "х"}})" << QStringList({"А=х"});
    QTest::newRow("new counter") << R"({"#A": {"name": "А", "type": 2, "value": ""}})"
                                 << QStringList({"А=0"});
    QTest::newRow("negative counter") << R"({"#A": {"name": "А", "type": 2, "value": -2147483648}})"
                                      << QStringList({"А=-2147483648"});
    QTest::newRow("table first") << R"({"#A": {"name": "Т", "type": 4}, "#B": {"name": "Б",
             "type": 0, "value": "б"}})"
                                 << QStringList({"Т=[Просмотр]"});
}

void tst_MainWindowActions::paneShowsAnyContent()
{
    QFETCH(QString, content);
    QFETCH(QStringList, added);
    addDocument("Иванова", 1, content);
    const QByteArray before = m_app->dump();
    open();
    QCOMPARE(paneRows().mid(4), added);
    QCOMPARE(m_app->dump(), before);
}

void tst_MainWindowActions::paneShowsLongValuesWhole()
{
    const QString longValue = "Аттестат об основном общем образовании, выдан в 2019 году средней "
                              "общеобразовательной школой № 17 города Ясногорска";
    addDocument("Иванова", 1,
                R"({"#A": {"name": "Документ", "type": 0, "value": ")" + longValue + R"("}})");
    open();
    constexpr int textMargin = 3; // of a cell, on each side
    const QRect room(0, 0, pane()->columnWidth(1) - 2 * textMargin, 1000);
    const int needed =
        pane()->fontMetrics().boundingRect(room, Qt::TextWordWrap, longValue).height();
    QVERIFY(needed > plainRowHeight);
    QTRY_VERIFY(pane()->rowHeight(4) >= needed);
    QCOMPARE(pane()->rowHeight(0), plainRowHeight);
}

void tst_MainWindowActions::paneFollowsTheClickedRow()
{
    addDocument("Иванова", 1, R"({"#A": {"name": "Первая", "type": 0, "value": "1"}})");
    addDocument("Петрова", 1, R"({"#A": {"name": "Вторая", "type": 0, "value": "2"}})");
    open();
    QCOMPARE(paneRows().last(), QString("Первая=1"));
    QCOMPARE(m_window->currentDocId().toInt(), 1);
    selectRow(1);
    QCOMPARE(paneRows().last(), QString("Вторая=2"));
    QCOMPARE(m_window->currentDocId().toInt(), 2);
    QTest::keyClick(list(), Qt::Key_Up);
    QCOMPARE(paneRows().last(), QString("Первая=1"));
    // What the database holds counts, not what was read before.
    m_app->exec("UPDATE docs SET BLANK_NO = '002' WHERE ID = 2");
    selectRow(1);
    QCOMPARE(paneRows().at(1), QString("Номер=002"));
}

void tst_MainWindowActions::paneOfRowOfNulls()
{
    m_app->exec("INSERT INTO docs (TEMPLATE) VALUES (0)");
    open();
    QCOMPARE(paneRows(), QStringList({"Серия=", "Номер=", "Дата изменения=", "Дата рождения="}));
}

void tst_MainWindowActions::paneOfHugeContent()
{
    const QString huge(10 << 20, 'x');
    addDocument("Иванова", 1,
                R"({"#A": {"name": "Текст", "type": 5, "value": ")" + huge +
                    R"("}, "#B": {"name": "Строка", "type": 0, "value": ")" + huge + R"("}})");
    open();
    QCOMPARE(pane()->rowCount(), 6);
    QCOMPARE(pane()->item(5, 1)->text(), huge);
    // What is laid out at each repaint has a bound.
    const auto* delegate = qobject_cast<QStyledItemDelegate*>(pane()->itemDelegate());
    QVERIFY(delegate);
    const QString drawn = delegate->displayText(huge, QLocale());
    QVERIFY(drawn.size() < 10000);
    QVERIFY(huge.startsWith(drawn));
    QVERIFY(!m_window->grab().isNull());
}

void tst_MainWindowActions::paneSelectFails()
{
    addDocument("Иванова");
    addDocument("Петрова");
    open();
    m_app->exec("ALTER TABLE docs RENAME TO hidden");
    const LogCatcher log;
    selectRow(1);
    QCOMPARE(log.count("Unable to execute select query"), 1);
    QVERIFY(log.contains("no such table: docs"));
    QCOMPARE(pane()->rowCount(), 0);
    QCOMPARE(list()->rowCount(), 2);
}

void tst_MainWindowActions::paneOfVanishedDocument()
{
    addDocument("Иванова");
    addDocument("Петрова");
    open();
    m_app->exec("DELETE FROM docs WHERE ID = 2");
    selectRow(1);
    QCOMPARE(pane()->rowCount(), 0);
}

void tst_MainWindowActions::textIsRead()
{
    addDocument("Иванова", 1, richContent);
    open();
    const QByteArray before = m_app->dump();
    bool readOnly = false;
    QString shown;
    m_driver->expect<TextMemoDialog>([&](TextMemoDialog* dialog) {
        auto* edit = named<QTextEdit>(dialog, "textEdit");
        readOnly = edit->isReadOnly();
        typeLetters(edit, "правка");
        shown = dialog->text();
        clickButton(dialog, "buttonAccept");
    });
    QTest::mouseClick(pane()->cellWidget(5, 1), Qt::LeftButton);
    play();
    QVERIFY(readOnly);
    QCOMPARE(shown, QString("первая\nвторая"));
    QCOMPARE(pane()->cellWidget(5, 1)->property("text").toString(), QString("первая\nвторая"));
    QCOMPARE(m_app->dump(), before);
}

void tst_MainWindowActions::textViewCancelled()
{
    addDocument("Иванова", 1, richContent);
    open();
    m_driver->expect<TextMemoDialog>(
        [](TextMemoDialog* dialog) { clickButton(dialog, "buttonReject"); });
    QTest::mouseClick(pane()->cellWidget(5, 1), Qt::LeftButton);
    play();
    QCOMPARE(pane()->cellWidget(5, 1)->property("text").toString(), QString("первая\nвторая"));
}

void tst_MainWindowActions::tableIsRead()
{
    addDocument("Иванова", 1, richContent);
    open();
    const QByteArray before = m_app->dump();
    QJsonArray shown;
    bool acceptHidden = false;
    m_driver->expect<TableMemoDialog>([&](TableMemoDialog* dialog) {
        shown = dialog->tableValue();
        acceptHidden = named<QPushButton>(dialog, "buttonAccept")->isHidden();
        named<QTableWidget>(dialog, "tableWidget")->item(0, 0)->setText("правка");
        clickButton(dialog, "buttonReject");
    });
    QTest::mouseClick(pane()->cellWidget(8, 1), Qt::LeftButton);
    play();
    QVERIFY(acceptHidden);
    const QJsonArray rows({QJsonArray({"Физика"}), QJsonArray({"Химия"})});
    QCOMPARE(shown, rows);
    QCOMPARE(static_cast<ZelvoraTableButton*>(pane()->cellWidget(8, 1))->value, rows);
    QCOMPARE(m_app->dump(), before);
}

void tst_MainWindowActions::newDocumentIsStored()
{
    addDocument("Иванова");
    open();
    m_driver->expect<NewDocDlg>([](NewDocDlg* dialog) {
        named<QComboBox>(dialog, "docTypeCmb")->setCurrentText("Диплом");
        type(dialog, "lnameEdit", "Орлова");
        type(dialog, "fnameEdit", "Мария");
        type(dialog, "mnameEdit", "Олеговна");
        type(dialog, "groupEdit", "11Б");
        type(dialog, "seriesEdit", "78 ВГ");
        type(dialog, "numberEdit", "0042");
        named<QDateEdit>(dialog, "birthDateEdit")->setDate(QDate(2007, 8, 9));
        named<QDateEdit>(dialog, "issueDateEdit")->setDate(QDate(2025, 6, 30));
        QTest::keyClick(named<QCheckBox>(dialog, "duplicateCheck"), Qt::Key_Space);
        named<QTableWidget>(dialog, "contentTable")->item(1, 1)->setText("Слесарь");
        clickButton(dialog, "saveButton");
    });
    trigger("СОЗДАТЬ ДОКУМЕНТ");

    const QString today = QDate::currentDate().toString("yyyy-MM-dd");
    QCOMPARE(stored("SELECT ID, BLANK_SER, BLANK_NO, FNAME, LNAME, MNAME, BIRTH_DATE, DOC_TYPE, "
                    "DOC_GROUP, ISSUE_DATE, EDIT_DATE, DUPLICATE, TEMPLATE, TEMPLATE_NAME, "
                    "typeof(CONTENT) FROM docs WHERE ID <> 1"),
             "2|78 ВГ|0042|Мария|Орлова|Олеговна|2007-08-09|1|11Б|2025-06-30|" + today +
                 "|1|0||text");
    const QString content = stored("SELECT CONTENT FROM docs WHERE ID = 2");
    QVERIFY(content.contains("\n    \"#HOURS\"")); // indented
    const QJsonObject object = QJsonDocument::fromJson(content.toUtf8()).object();
    QCOMPARE(object.keys(), QStringList({"#HOURS", "#SPECIALTY"}));
    QCOMPARE(object["#SPECIALTY"].toObject()["value"].toString(), QString("Слесарь"));

    QCOMPARE(rows(), QStringList({"1 Иванова", "2 Орлова"}));
    QCOMPARE(list()->item(1, 0)->text(), QString("Орлова Мария Олеговна"));
    QCOMPARE(list()->item(1, 1)->text(), QString("11Б"));
    QCOMPARE(list()->item(1, 2)->text(), QString("Диплом"));
    QCOMPARE(list()->item(1, 3)->text(), QString("2025-06-30"));
    QCOMPARE(list()->currentRow(), 1);
    QCOMPARE(m_window->currentDocId().toInt(), 2);
    QCOMPARE(paneRows(),
             QStringList({"Серия=78 ВГ", "Номер=0042", "Дата изменения=" + today,
                          "Дата рождения=2007-08-09", "Часы=0", "Специальность=Слесарь"}));
    QVERIFY(list()->isSortingEnabled());
}

void tst_MainWindowActions::newDocumentRejected()
{
    addDocument("Иванова");
    open();
    const QByteArray before = m_app->dump();
    m_driver->expect<NewDocDlg>([](NewDocDlg* dialog) {
        named<QComboBox>(dialog, "docTypeCmb")->setCurrentText("Диплом");
        clickButton(dialog, "closeButton");
    });
    trigger("СОЗДАТЬ ДОКУМЕНТ");
    QCOMPARE(m_app->dump(), before);
    QCOMPARE(rows(), QStringList({"1 Иванова"}));
    QVERIFY(list()->isSortingEnabled());
}

void tst_MainWindowActions::newDocumentWithoutTypeIsDiscarded()
{
    open();
    const QByteArray before = m_app->dump();
    m_driver->expect<NewDocDlg>([](NewDocDlg* dialog) {
        named<QComboBox>(dialog, "docTypeCmb")->setCurrentText("Диплом");
        named<QComboBox>(dialog, "docTypeCmb")->setCurrentIndex(-1);
        clickButton(dialog, "saveButton");
    });
    trigger("СОЗДАТЬ ДОКУМЕНТ");
    QCOMPARE(m_app->dump(), before);
    QCOMPARE(list()->rowCount(), 0);
}

void tst_MainWindowActions::newDocumentWithApostropheIsRefused()
{
    addDocument("Иванова");
    open();
    const QByteArray before = m_app->dump();
    m_driver->expect<NewDocDlg>([](NewDocDlg* dialog) {
        named<QComboBox>(dialog, "docTypeCmb")->setCurrentText("Диплом");
        type(dialog, "lnameEdit", "О'Нил");
        clickButton(dialog, "saveButton");
    });
    const LogCatcher log;
    trigger("СОЗДАТЬ ДОКУМЕНТ");
    QCOMPARE(log.count("error insert into docs "), 1);
    QCOMPARE(log.count("syntax error"), 1);
    QCOMPARE(log.count("INSERT INTO docs (BLANK_SER, BLANK_NO, FNAME, LNAME, MNAME,BIRTH_DATE"), 1);
    QCOMPARE(m_app->dump(), before);
    QCOMPARE(rows(), QStringList({"1 Иванова"}));
    QCOMPARE(list()->currentRow(), 0);
    QVERIFY(list()->isSortingEnabled());
}

void tst_MainWindowActions::newDocumentInSortedList()
{
    addDocument("Яковлева");
    addDocument("Антонова");
    open();
    list()->sortByColumn(0, Qt::AscendingOrder);
    m_driver->expect<NewDocDlg>([](NewDocDlg* dialog) {
        named<QComboBox>(dialog, "docTypeCmb")->setCurrentText("Аттестат");
        type(dialog, "lnameEdit", "Орлова");
        clickButton(dialog, "saveButton");
    });
    trigger("СОЗДАТЬ ДОКУМЕНТ");
    QCOMPARE(rows(), QStringList({"2 Антонова", "3 Орлова", "1 Яковлева"}));
    QCOMPARE(list()->currentRow(), 1); // still the new one
    QCOMPARE(m_window->currentDocId().toInt(), 3);
    QCOMPARE(list()->item(1, 2)->text(), QString("Аттестат"));
}

void tst_MainWindowActions::editIsStored()
{
    addDocument("Иванова", 1, R"({"#X": {"name": "Икс", "type": 0, "value": "было",
        "later": true}})");
    addDocument("Петрова");
    open();
    m_driver->expect<DocDialog>([](DocDialog* dialog) {
        QCOMPARE(dialog->windowTitle(), QString("Изменение документа"));
        QCOMPARE(named<QLineEdit>(dialog, "seriesEdit")->text(), QString("77 АБ"));
        QCOMPARE(named<QLineEdit>(dialog, "numberEdit")->text(), QString("001"));
        QCOMPARE(named<QLineEdit>(dialog, "fnameEdit")->text(), QString("Анна"));
        QCOMPARE(named<QLineEdit>(dialog, "lnameEdit")->text(), QString("Иванова"));
        QCOMPARE(named<QLineEdit>(dialog, "mnameEdit")->text(), QString("Ильинична"));
        QCOMPARE(named<QDateEdit>(dialog, "birthDateEdit")->text(), QString("02-01-2006"));
        QCOMPARE(named<QComboBox>(dialog, "docTypeCmb")->currentText(), QString("Диплом"));
        QCOMPARE(named<QLineEdit>(dialog, "groupEdit")->text(), QString("9А"));
        QCOMPARE(named<QDateEdit>(dialog, "issueDateEdit")->text(), QString("20-06-2024"));
        QCOMPARE(named<QDateEdit>(dialog, "editDateEdit")->text(), QString("21-06-2024"));
        QVERIFY(named<QCheckBox>(dialog, "duplicateCheck")->isChecked());
        // The stored content, not a fresh one of the form.
        auto* content = named<QTableWidget>(dialog, "contentTable");
        QCOMPARE(content->rowCount(), 1);
        content->item(0, 1)->setText("стало");
        type(dialog, "lnameEdit", "Кузнецова");
        type(dialog, "groupEdit", "10А");
        type(dialog, "numberEdit", "777");
        named<QDateEdit>(dialog, "issueDateEdit")->setDate(QDate(2024, 7, 1));
        clickButton(dialog, "saveButton");
    });
    trigger("РЕДАКТИРОВАТЬ\nДОКУМЕНТ");

    const QString today = QDate::currentDate().toString("yyyy-MM-dd");
    QCOMPARE(stored("SELECT ID, BLANK_SER, BLANK_NO, FNAME, LNAME, MNAME, BIRTH_DATE, DOC_TYPE, "
                    "DOC_GROUP, ISSUE_DATE, EDIT_DATE, DUPLICATE, TEMPLATE, TEMPLATE_NAME FROM "
                    "docs WHERE ID = 1"),
             "1|77 АБ|777|Анна|Кузнецова|Ильинична|2006-01-02|1|10А|2024-07-01|" + today + "|1|0|");
    const QJsonObject entry =
        QJsonDocument::fromJson(stored("SELECT CONTENT FROM docs WHERE ID = 1").toUtf8())
            .object()["#X"]
            .toObject();
    QCOMPARE(entry["value"].toString(), QString("стало"));
    QCOMPARE(entry["later"].toBool(), true); // an unknown key survives
    QCOMPARE(stored("SELECT LNAME, EDIT_DATE FROM docs WHERE ID = 2"),
             QString("Петрова|2024-06-21"));

    QCOMPARE(rows(), QStringList({"1 Кузнецова", "2 Петрова"}));
    QCOMPARE(list()->item(0, 0)->text(), QString("Кузнецова Анна Ильинична"));
    QCOMPARE(list()->item(0, 1)->text(), QString("10А"));
    QCOMPARE(list()->item(0, 2)->text(), QString("Диплом"));
    QCOMPARE(list()->item(0, 3)->text(), QString("2024-07-01"));
    QCOMPARE(paneRows(), QStringList({"Серия=77 АБ", "Номер=777", "Дата изменения=" + today,
                                      "Дата рождения=2006-01-02", "Икс=стало"}));
    QVERIFY(list()->isSortingEnabled());
}

void tst_MainWindowActions::editByDoubleClick()
{
    addDocument("Иванова");
    addDocument("Петрова");
    open();
    m_driver->expect<DocDialog>([](DocDialog* dialog) {
        QCOMPARE(named<QLineEdit>(dialog, "lnameEdit")->text(), QString("Петрова"));
        clickButton(dialog, "closeButton");
    });
    const QPoint cell = list()->visualItemRect(list()->item(1, 1)).center();
    QTest::mouseClick(list()->viewport(), Qt::LeftButton, Qt::NoModifier, cell);
    QTest::mouseDClick(list()->viewport(), Qt::LeftButton, Qt::NoModifier, cell);
    play();
}

void tst_MainWindowActions::keysOfTheList()
{
    addDocument("Иванова");
    addDocument("Петрова");
    open();
    list()->setFocus();
    list()->setCurrentCell(1, 0);
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
        m_driver->expect<DocDialog>([](DocDialog* dialog) {
            QCOMPARE(named<QLineEdit>(dialog, "lnameEdit")->text(), QString("Петрова"));
            QTest::keyClick(dialog, Qt::Key_Escape);
        });
        m_window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
        QTest::keyClick(list(), key);
        play();
    }
    m_driver->expectMessage("Zelvora", "Удалить выбранные документы?", "Да");
    m_window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    QTest::keyClick(list(), Qt::Key_Delete);
    play();
    QCOMPARE(rows(), QStringList({"1 Иванова"}));

    // In a filter it takes a letter.
    m_window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    auto* filter = named<QLineEdit>(m_window.get(), "filterNameEdit");
    filter->setText("аб");
    filter->setFocus();
    filter->home(false);
    QTest::keyClick(filter, Qt::Key_Delete);
    QCOMPARE(filter->text(), QString("б"));
    play();
}

void tst_MainWindowActions::shortcuts_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QKeySequence>("shortcut");
    QTest::newRow("new") << "СОЗДАТЬ ДОКУМЕНТ" << QKeySequence("Ctrl+N");
    QTest::newRow("copy") << "СОЗДАТЬ КОПИЮ\nДОКУМЕНТА" << QKeySequence("Ctrl+Shift+N");
    QTest::newRow("edit") << "РЕДАКТИРОВАТЬ\nДОКУМЕНТ" << QKeySequence("F2");
    QTest::newRow("print") << "ПЕЧАТЬ" << QKeySequence("Ctrl+P");
    QTest::newRow("delete") << "УДАЛИТЬ ДОКУМЕНТ" << QKeySequence("Ctrl+Del");
    QTest::newRow("forms") << "ФОРМЫ" << QKeySequence("Ctrl+1");
    QTest::newRow("blanks") << "БЛАНКИ" << QKeySequence("Ctrl+2");
    QTest::newRow("exchange") << "ЭКСПОРТ\nИМПОРТ" << QKeySequence("Ctrl+3");
    QTest::newRow("save") << "СОХРАНИТЬ\nВ АРХИВ" << QKeySequence("Ctrl+S");
    QTest::newRow("load") << "ЗАГРУЗИТЬ\nИЗ АРХИВА" << QKeySequence("Ctrl+O");
}

void tst_MainWindowActions::shortcuts()
{
    QFETCH(QString, text);
    QFETCH(QKeySequence, shortcut);
    open();
    const QList<QAction*> actions = m_window->findChildren<QAction*>();
    QStringList owners;
    for (const QAction* action : actions) {
        if (action->shortcut() == shortcut) {
            owners << action->text();
        }
    }
    QCOMPARE(owners, QStringList(text));
}

void tst_MainWindowActions::enterAppliesTheFilter()
{
    addDocument("Иванова");
    addDocument("Петрова");
    open();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    auto* filter = named<QLineEdit>(m_window.get(), "filterNameEdit");
    filter->setFocus();
    typeInto(filter, "Петр");
    QTest::keyClick(filter, Qt::Key_Return);
    QCOMPARE(rows(), QStringList({"2 Петрова"}));
}

void tst_MainWindowActions::editRejected()
{
    addDocument("Иванова");
    open();
    const QByteArray before = m_app->dump();
    m_driver->expect<DocDialog>([](DocDialog* dialog) {
        type(dialog, "lnameEdit", "Кузнецова");
        clickButton(dialog, "closeButton");
    });
    trigger("РЕДАКТИРОВАТЬ\nДОКУМЕНТ");
    QCOMPARE(m_app->dump(), before);
    QCOMPARE(rows(), QStringList({"1 Иванова"}));
    QVERIFY(list()->isSortingEnabled());
}

// Whoever mends the content by hand must find it; a save would replace it.
void tst_MainWindowActions::editRejectedKeepsWhatIsNoJson()
{
    addDocument("Иванова");
    m_app->exec("UPDATE docs SET CONTENT = '{\"#HOURS\": {\"value\": 144'");
    open();
    const QByteArray before = m_app->dump();
    m_driver->expect<DocDialog>([](DocDialog* dialog) {
        QCOMPARE(named<QTableWidget>(dialog, "contentTable")->rowCount(), 0);
        clickButton(dialog, "closeButton");
    });
    trigger("РЕДАКТИРОВАТЬ\nДОКУМЕНТ");
    QCOMPARE(m_app->dump(), before);
}

void tst_MainWindowActions::editWithApostropheShowsWhatWasEntered()
{
    addDocument("Иванова");
    open();
    const QByteArray before = m_app->dump();
    m_driver->expect<DocDialog>([](DocDialog* dialog) {
        type(dialog, "lnameEdit", "О'Нил");
        type(dialog, "numberEdit", "777");
        clickButton(dialog, "saveButton");
    });
    const LogCatcher log;
    trigger("РЕДАКТИРОВАТЬ\nДОКУМЕНТ");
    QCOMPARE(log.count("error update into docs "), 1);
    QCOMPARE(log.count("syntax error"), 1);
    QCOMPARE(log.count("UPDATE docs SET BLANK_SER = '77 АБ', BLANK_NO = '777'"), 1);
    QCOMPARE(m_app->dump(), before);
    QCOMPARE(rows(), QStringList({"1 О'Нил"}));
    QCOMPARE(paneRows().at(1), QString("Номер=001")); // the pane reads the database
    QVERIFY(list()->isSortingEnabled());
}

void tst_MainWindowActions::editMovesTheRowInSortedList()
{
    addDocument("Антонова");
    addDocument("Петрова");
    addDocument("Яковлева", 2);
    open();
    list()->sortByColumn(0, Qt::AscendingOrder);
    selectRow(2);
    m_driver->expect<DocDialog>([](DocDialog* dialog) {
        type(dialog, "lnameEdit", "Белова");
        type(dialog, "groupEdit", "1Б");
        clickButton(dialog, "saveButton");
    });
    trigger("РЕДАКТИРОВАТЬ\nДОКУМЕНТ");
    QCOMPARE(rows(), QStringList({"1 Антонова", "3 Белова", "2 Петрова"}));
    QCOMPARE(list()->item(1, 1)->text(), QString("1Б"));
    QCOMPARE(list()->item(1, 2)->text(), QString("Аттестат"));
    QCOMPARE(list()->item(2, 1)->text(), QString("9А"));
    QCOMPARE(list()->currentRow(), 1);
    QCOMPARE(m_window->currentDocId().toInt(), 3);
}

void tst_MainWindowActions::changedDocumentsAreScrolledTo()
{
    m_app->exec("BEGIN");
    for (int i = 0; i < 200; ++i) {
        addDocument(QString("М%1").arg(i, 3, 10, QChar('0')));
    }
    m_app->exec("COMMIT");
    open();
    list()->sortByColumn(0, Qt::AscendingOrder);
    const auto compareInSight = [this](const QString& lname) {
        QCOMPARE(list()->currentItem()->text().section(' ', 0, 0), lname);
        QVERIFY(list()->viewport()->rect().contains(list()->visualItemRect(list()->currentItem())));
    };
    selectRow(2);
    for (const auto& step : {qMakePair(QString("РЕДАКТИРОВАТЬ\nДОКУМЕНТ"), QString("Яблокова")),
                             qMakePair(QString("СОЗДАТЬ КОПИЮ\nДОКУМЕНТА"), QString("Абрамова"))})
    {
        m_driver->expect<DocDialog>([&](DocDialog* dialog) {
            type(dialog, "lnameEdit", step.second);
            clickButton(dialog, "saveButton");
        });
        trigger(step.first);
        compareInSight(step.second);
    }
    m_driver->expect<NewDocDlg>([&](NewDocDlg* dialog) {
        named<QComboBox>(dialog, "docTypeCmb")->setCurrentIndex(0);
        type(dialog, "lnameEdit", "Яшина");
        clickButton(dialog, "saveButton");
    });
    trigger("СОЗДАТЬ ДОКУМЕНТ");
    compareInSight("Яшина");
}

void tst_MainWindowActions::editOfDeletedFormWritesNothing()
{
    addDocument("Иванова", 1, R"({"#X": {"name": "Икс", "type": 0, "value": "было"}})");
    m_app->exec("DELETE FROM forms WHERE ID = 1");
    open();
    // The fill leaves the unknown type in the map under an empty name; a reload takes it out.
    m_window->loadDocTypes();
    const QByteArray before = m_app->dump();
    m_driver->expect<DocDialog>([](DocDialog* dialog) {
        QCOMPARE(named<QComboBox>(dialog, "docTypeCmb")->currentIndex(), -1);
        QCOMPARE(named<QTableWidget>(dialog, "contentTable")->rowCount(), 1);
        type(dialog, "lnameEdit", "Кузнецова");
        clickButton(dialog, "saveButton");
    });
    trigger("РЕДАКТИРОВАТЬ\nДОКУМЕНТ");
    QCOMPARE(m_app->dump(), before);
    QCOMPARE(rows(), QStringList({"1 Иванова"}));
}

void tst_MainWindowActions::editUnderTheNamelessType()
{
    addDocument("Иванова", 77);
    open(); // the fill leaves the type of no form in the map, under an empty name
    m_driver->expect<DocDialog>([](DocDialog* dialog) {
        QCOMPARE(named<QComboBox>(dialog, "docTypeCmb")->currentData().toInt(), 77);
        type(dialog, "lnameEdit", "Кузнецова");
        clickButton(dialog, "saveButton");
    });
    trigger("РЕДАКТИРОВАТЬ\nДОКУМЕНТ");
    QCOMPARE(stored("SELECT LNAME, DOC_TYPE FROM docs"), QString("Кузнецова|77"));
    QCOMPARE(list()->item(0, 2)->text(), QString());
}

void tst_MainWindowActions::editOfRowOfNulls()
{
    m_app->exec("INSERT INTO docs (TEMPLATE) VALUES (0)");
    open();
    const QByteArray before = m_app->dump();
    m_driver->expect<DocDialog>([](DocDialog* dialog) {
        QCOMPARE(named<QLineEdit>(dialog, "lnameEdit")->text(), QString());
        clickButton(dialog, "saveButton"); // of no type: nothing to be stored
    });
    trigger("РЕДАКТИРОВАТЬ\nДОКУМЕНТ");
    QCOMPARE(m_app->dump(), before);
    QCOMPARE(rows(), QStringList({"1 "}));
}

void tst_MainWindowActions::editOfVanishedDocument()
{
    addDocument("Иванова");
    open();
    m_app->exec("DELETE FROM docs");
    trigger("РЕДАКТИРОВАТЬ\nДОКУМЕНТ"); // no dialog over nothing
    trigger("СОЗДАТЬ КОПИЮ\nДОКУМЕНТА");
    QCOMPARE(stored("SELECT COUNT(*) FROM docs"), QString("0"));
}

void tst_MainWindowActions::editSelectFails()
{
    addDocument("Иванова");
    open();
    m_app->exec("ALTER TABLE docs RENAME TO hidden");
    const LogCatcher log;
    trigger("РЕДАКТИРОВАТЬ\nДОКУМЕНТ");
    QCOMPARE(log.count("Unable to execute select query"), 1);
    QCOMPARE(log.count("no such table: docs"), 1);
    QCOMPARE(rows(), QStringList({"1 Иванова"}));
    QVERIFY(list()->isSortingEnabled());
}

void tst_MainWindowActions::copyStandsAboveItsSource()
{
    addDocument("Иванова");
    addDocument("Петрова", 1, richContent);
    addDocument("Смирнова");
    open();
    selectRow(1);
    m_driver->expect<DocDialog>([](DocDialog* dialog) {
        QCOMPARE(dialog->windowTitle(), QString("Изменение документа"));
        QCOMPARE(named<QLineEdit>(dialog, "lnameEdit")->text(), QString("Петрова"));
        type(dialog, "lnameEdit", "Новая");
        clickButton(dialog, "saveButton");
    });
    trigger("СОЗДАТЬ КОПИЮ\nДОКУМЕНТА");
    QCOMPARE(rows(), QStringList({"1 Иванова", "4 Новая", "2 Петрова", "3 Смирнова"}));
    QCOMPARE(list()->currentRow(), 1);
    QCOMPARE(m_window->currentDocId().toInt(), 4);
    QCOMPARE(list()->item(1, 3)->text(), QString("2024-06-20"));
    QCOMPARE(stored("SELECT LNAME, BLANK_SER, DOC_TYPE, DUPLICATE, TEMPLATE, TEMPLATE_NAME FROM "
                    "docs WHERE ID = 4"),
             QString("Новая|77 АБ|1|1|0|"));
    QCOMPARE(QJsonDocument::fromJson(stored("SELECT CONTENT FROM docs WHERE ID = 4").toUtf8())
                 .object()
                 .keys(),
             QStringList({"#A_HOURS", "#B_NOTE", "#C_LIST", "#D_DATE", "#E_GRADES", "#F_BEHIND"}));
    QCOMPARE(stored("SELECT LNAME, EDIT_DATE FROM docs WHERE ID = 2"),
             QString("Петрова|2024-06-21"));
    QCOMPARE(paneRows().first(), QString("Серия=77 АБ"));
    QVERIFY(list()->isSortingEnabled());
}

void tst_MainWindowActions::copyInSortedList()
{
    addDocument("Антонова");
    addDocument("Петрова");
    open();
    list()->sortByColumn(0, Qt::AscendingOrder);
    selectRow(0);
    m_driver->expect<DocDialog>([](DocDialog* dialog) {
        type(dialog, "lnameEdit", "Яковлева");
        clickButton(dialog, "saveButton");
    });
    trigger("СОЗДАТЬ КОПИЮ\nДОКУМЕНТА");
    QCOMPARE(rows(), QStringList({"1 Антонова", "2 Петрова", "3 Яковлева"}));
    QCOMPARE(list()->currentRow(), 2);
}

void tst_MainWindowActions::copyRejected()
{
    addDocument("Иванова");
    open();
    const QByteArray before = m_app->dump();
    m_driver->expect<DocDialog>([](DocDialog* dialog) { clickButton(dialog, "closeButton"); });
    trigger("СОЗДАТЬ КОПИЮ\nДОКУМЕНТА");
    QCOMPARE(m_app->dump(), before);
    QCOMPARE(list()->rowCount(), 1);
}

void tst_MainWindowActions::copyWithApostropheIsRefused()
{
    addDocument("Иванова", 1, R"({"#X": {"name": "Икс", "type": 0, "value": ""}})");
    open();
    const QByteArray before = m_app->dump();
    m_driver->expect<DocDialog>([](DocDialog* dialog) {
        named<QTableWidget>(dialog, "contentTable")->item(0, 1)->setText("д'Артаньян");
        clickButton(dialog, "saveButton");
    });
    const LogCatcher log;
    trigger("СОЗДАТЬ КОПИЮ\nДОКУМЕНТА");
    QCOMPARE(log.count("error insert into docs "), 1);
    QCOMPARE(log.count("syntax error"), 1);
    QCOMPARE(log.count("INSERT INTO docs (BLANK_SER"), 1);
    QCOMPARE(m_app->dump(), before);
    QCOMPARE(rows(), QStringList({"1 Иванова"}));
    QVERIFY(list()->isSortingEnabled());
}

void tst_MainWindowActions::deleteSelected_data()
{
    QTest::addColumn<QList<int>>("clicked"); // the first plainly, the others with Ctrl
    QTest::addColumn<QStringList>("left");
    QTest::addColumn<int>("current");

    QTest::newRow("one") << QList<int>{1} << QStringList({"1 Иванова", "3 Смирнова", "4 Яшина"})
                         << 1;
    QTest::newRow("several") << QList<int>{0, 2} << QStringList({"2 Петрова", "4 Яшина"}) << 0;
    QTest::newRow("all") << QList<int>{0, 1, 2, 3} << QStringList() << -1;
}

void tst_MainWindowActions::deleteSelected()
{
    QFETCH(QList<int>, clicked);
    for (const char* lname : {"Иванова", "Петрова", "Смирнова", "Яшина"}) {
        addDocument(lname);
    }
    open();
    selectRow(clicked.takeFirst());
    for (int row : clicked) {
        selectRow(row, Qt::ControlModifier);
    }
    m_driver->expectMessage("Zelvora", "Удалить выбранные документы?", "Да");
    trigger("УДАЛИТЬ ДОКУМЕНТ");
    QTEST(rows(), "left");
    QFETCH(QStringList, left);
    QCOMPARE(stored("SELECT ID || ' ' || LNAME FROM docs ORDER BY ID"), left.join('\n'));
    QTEST(list()->currentRow(), "current");
    QCOMPARE(pane()->rowCount(), left.isEmpty() ? 0 : 4);
    QVERIFY(list()->isSortingEnabled());
}

void tst_MainWindowActions::deleteRefusedByTheUser()
{
    addDocument("Иванова");
    open();
    const QByteArray before = m_app->dump();
    m_driver->expectMessage("Zelvora", "Удалить выбранные документы?", "Нет");
    trigger("УДАЛИТЬ ДОКУМЕНТ");
    QCOMPARE(m_app->dump(), before);
    QCOMPARE(rows(), QStringList({"1 Иванова"}));
    QVERIFY(list()->isSortingEnabled());
}

void tst_MainWindowActions::deleteShowsAllDocumentsAgain()
{
    addDocument("Иванова");
    addDocument("Петрова");
    addDocument("Иваненко");
    open();
    auto* name = named<QLineEdit>(m_window.get(), "filterNameEdit");
    name->setText("Иван");
    m_window->applyFilters();
    QCOMPARE(rows(), QStringList({"1 Иванова", "3 Иваненко"}));
    selectRow(1);
    m_driver->expectMessage("Zelvora", "Удалить выбранные документы?", "Да");
    trigger("УДАЛИТЬ ДОКУМЕНТ");
    QCOMPARE(rows(), QStringList({"1 Иванова", "2 Петрова"}));
    QCOMPARE(name->text(), QString("Иван"));
    QCOMPARE(list()->currentRow(), 1);
}

void tst_MainWindowActions::deleteOfLastRowLeavesTheFirstCurrent()
{
    addDocument("Иванова");
    addDocument("Петрова");
    addDocument("Смирнова");
    open();
    selectRow(2);
    m_driver->expectMessage("Zelvora", "Удалить выбранные документы?", "Да");
    trigger("УДАЛИТЬ ДОКУМЕНТ");
    QCOMPARE(list()->currentRow(), 0);
    QCOMPARE(list()->selectedItems().size(), 4);
    QCOMPARE(m_window->currentDocId().toInt(), 1);
}

void tst_MainWindowActions::deleteGoesOnAfterAFailure()
{
    addDocument("Иванова");
    addDocument("Петрова");
    addDocument("Смирнова");
    m_app->exec("CREATE TRIGGER keep BEFORE DELETE ON docs WHEN old.ID = 2 "
                "BEGIN SELECT RAISE(ABORT, 'must stay'); END");
    open();
    list()->selectAll();
    m_driver->expectMessage("Zelvora", "Удалить выбранные документы?", "Да");
    const LogCatcher log;
    trigger("УДАЛИТЬ ДОКУМЕНТ");
    QCOMPARE(log.count("error delete from docs"), 1);
    QCOMPARE(log.count("must stay"), 1);
    QCOMPARE(rows(), QStringList({"2 Петрова"}));
    QCOMPARE(stored("SELECT ID FROM docs"), QString("2"));
}

void tst_MainWindowActions::deleteShowsABusyCursor()
{
    addDocument("Иванова");
    open();
    m_driver->expect<QMessageBox>([&](QMessageBox* box) {
        const auto buttons = box->buttons();
        for (QAbstractButton* button : buttons) {
            if (button->text() == "Да") {
                QTest::mouseClick(button, Qt::LeftButton);
            }
        }
        // Runs in the next pass over the events, which is the delete's own.
        QTimer::singleShot(0, m_window.get(), [this] {
            m_window->setProperty("cursorSeen", int(m_window->cursor().shape()));
        });
    });
    trigger("УДАЛИТЬ ДОКУМЕНТ");
    QCOMPARE(m_window->property("cursorSeen").toInt(), int(Qt::BusyCursor));
    QCOMPARE(m_window->cursor().shape(), Qt::ArrowCursor);
}

void tst_MainWindowActions::actionsOnAnEmptyTable()
{
    open();
    const QByteArray before = m_app->dump();
    for (const char* action :
         {"РЕДАКТИРОВАТЬ\nДОКУМЕНТ", "СОЗДАТЬ КОПИЮ\nДОКУМЕНТА", "ПЕЧАТЬ", "УДАЛИТЬ ДОКУМЕНТ"})
    {
        trigger(action); // no dialog comes
    }
    QCOMPARE(m_app->dump(), before);
    QCOMPARE(pane()->rowCount(), 0);
    QVERIFY(list()->isSortingEnabled());
}

void tst_MainWindowActions::printWithoutBlank()
{
    addDocument("Иванова");
    open();
    m_driver->expectMessage("Ошибка", "Для документа нет доступных бланков", "OK");
    trigger("ПЕЧАТЬ");
}

void tst_MainWindowActions::printOpensThePreview()
{
    addDocument("Иванова", 2);
    addDocument("Петрова", 1);
    m_app->exec("INSERT INTO blanks (NAME, FORM_ID, PAPER_FORMAT, PAPER_ORIENTATION, FONT, "
                "FONT_SIZE, SIZE_WIDTH, SIZE_HEIGHT, OFFSET_X, OFFSET_Y) "
                "VALUES ('Твёрдая обложка', 1, 0, 1, 'Roboto', 12, 210, 297, 0, 0)");
    open();
    selectRow(1);
    m_driver->expect<PrinPreviewDialog>([](PrinPreviewDialog* dialog) {
        QCOMPARE(named<QComboBox>(dialog, "comboBoxBlank")->currentText(),
                 QString("Твёрдая обложка"));
        clickButton(dialog, "buttonReject");
    });
    trigger("ПЕЧАТЬ");
}

void tst_MainWindowActions::formsAreReloadedAfterAccept()
{
    open();
    m_driver->expect<FormsDlg>([&](FormsDlg* dialog) {
        m_app->exec("UPDATE forms SET FORM_NAME = 'Свидетельство' WHERE ID = 2");
        clickButton(dialog, "buttonAccept");
    });
    trigger("ФОРМЫ");
    QCOMPARE(docTypeNames, (QMap<int, QString>{{1, "Диплом"}, {2, "Свидетельство"}}));
    const auto* types = named<QComboBox>(m_window.get(), "filterTypeCmb");
    QCOMPARE(types->itemText(1), QString("Свидетельство"));
    QCOMPARE(types->currentIndex(), 0);
}

void tst_MainWindowActions::formsAreNotReloadedAfterReject()
{
    open();
    m_driver->expect<FormsDlg>([&](FormsDlg* dialog) {
        m_app->exec("UPDATE forms SET FORM_NAME = 'Свидетельство' WHERE ID = 2");
        clickButton(dialog, "buttonReject");
    });
    named<QAction>(m_window.get(), "actionForms")->trigger();
    play();
    QCOMPARE(docTypeNames, (QMap<int, QString>{{1, "Диплом"}, {2, "Аттестат"}}));
    QCOMPARE(named<QComboBox>(m_window.get(), "filterTypeCmb")->currentIndex(), -1);
}

void tst_MainWindowActions::organisationData()
{
    open();
    m_driver->expect<ChangeOrgDataDlg>(
        [](ChangeOrgDataDlg* dialog) { clickButton(dialog, "closeButton"); });
    named<QAction>(m_window.get(), "menuAction_LocalChangeOrgData")->trigger();
    play();
}

void tst_MainWindowActions::blanksAreListed()
{
    addDocument("Иванова");
    open();
    const QByteArray before = m_app->dump();
    for (int way = 0; way < 2; ++way) {
        m_driver->expect<BlankDlg>([&](BlankDlg* dialog) {
            QCOMPARE(dialog->parentWidget(), m_window.get());
            m_app->exec("INSERT INTO docs (LNAME, TEMPLATE) VALUES ('Позже', 0)");
            dialog->reject();
        });
        if (way == 0) {
            trigger("БЛАНКИ");
        } else {
            named<QAction>(m_window.get(), "actionBlanks")->trigger();
            play();
        }
        QCOMPARE(rows(), QStringList({"1 Иванова"})); // nothing follows
    }
    QVERIFY(m_app->dump() != before);
}

void tst_MainWindowActions::exchangeShowsAllDocumentsAgain()
{
    addDocument("Яковлева");
    addDocument("Иванова");
    open();
    list()->sortByColumn(0, Qt::AscendingOrder);
    named<QLineEdit>(m_window.get(), "filterNameEdit")->setText("Иван");
    m_window->applyFilters();
    QCOMPARE(rows(), QStringList({"2 Иванова"}));
    m_driver->expect<ExportDlg>([&](ExportDlg* dialog) {
        QCOMPARE(dialog->parentWidget(), m_window.get());
        QVERIFY(!list()->isSortingEnabled());
        addDocument("Антонова"); // as an import does
        dialog->reject();
    });
    trigger("ЭКСПОРТ\nИМПОРТ");
    QCOMPARE(rows(), QStringList({"3 Антонова", "2 Иванова", "1 Яковлева"}));
    QVERIFY(list()->isSortingEnabled());
    QCOMPARE(named<QLineEdit>(m_window.get(), "filterNameEdit")->text(), QString("Иван"));
}

void tst_MainWindowActions::exportGoesByTheLastFilter()
{
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    addDocument("Иванова");
    addDocument("Петрова");
    // The workbook of the template is missing; what counts here is which documents are read.
    m_app->exec("INSERT INTO export (NAME, FIELDS, TYPE, TEMPLATE, FROM_ROW, TO_ROW, DATE_FORMAT) "
                "VALUES ('Список', ?, 0, '', 2, 99, 'dd.MM.yyyy')",
                {R"({"items": [{"col": "A", "tag": "#LNAME"}]})"});
    open();
    named<QLineEdit>(m_window.get(), "filterNameEdit")->setText("Петр");
    m_window->applyFilters();
    m_window->resetFilters(); // the list shows all, the export keeps to the filter
    const QString book = m_app->path("out.xlsx");
    m_driver->expect<ExportDlg>([&](ExportDlg* dialog) {
        named<QTableWidget>(dialog, "templatesWidget")->setCurrentCell(0, 0);
        clickButton(dialog, "exportButton");
        dialog->reject();
    });
    m_driver->expectFileDialog(book);
    m_driver->expect<QMessageBox>([](QMessageBox* box) { box->accept(); });
    trigger("ЭКСПОРТ\nИМПОРТ");
    const ProcessResult read = runPython("import openpyxl, sys\n"
                                         "sheet = openpyxl.load_workbook(sys.argv[1]).active\n"
                                         "print([c.value for c in sheet['A']])\n",
                                         {book});
    QCOMPARE(QString::fromUtf8(read.out), QString("[None, 'Петрова']\n"));
}

QTEST_MAIN(tst_MainWindowActions)
#include "tst_MainWindowActions.moc"
