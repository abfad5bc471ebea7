#include <QtTest>

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QDir>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSpinBox>
#include <QTabWidget>
#include <QTableWidget>
#include <QTextEdit>

#include <memory>

#include "DeskFixture.h"
#include "app/AppStyle.h"
#include "documents/DocDialog.h"
#include "documents/DocumentFixture.h"
#include "documents/MainWindow.h"
#include "documents/NewDocDlg.h"
#include "documents/TableMemoDialog.h"
#include "documents/TextMemoDialog.h"
#include "documents/TextValDialog.h"
#include "documents/ZelvoraTableButton.h"
#include "documents/ZelvoraTextButton.h"
#include "support/ModalDriver.h"
#include "support/Process.h"

namespace {

struct FixedFields
{
    QString series;
    QString number;
    QString lname;
    QString fname;
    QString mname;
    QString group;
    QDate birth;
    QDate issue;
};

void typeNames(const QDialog* dialog, const FixedFields& fields)
{
    typeInto(named<QLineEdit>(dialog, "seriesEdit"), fields.series);
    typeInto(named<QLineEdit>(dialog, "numberEdit"), fields.number);
    typeInto(named<QLineEdit>(dialog, "lnameEdit"), fields.lname);
    typeInto(named<QLineEdit>(dialog, "fnameEdit"), fields.fname);
    typeInto(named<QLineEdit>(dialog, "mnameEdit"), fields.mname);
}

void typeFixedFields(const QDialog* dialog, const FixedFields& fields)
{
    typeNames(dialog, fields);
    typeInto(named<QLineEdit>(dialog, "groupEdit"), fields.group);
    typeDate(named<QDateEdit>(dialog, "birthDateEdit"), fields.birth);
    typeDate(named<QDateEdit>(dialog, "issueDateEdit"), fields.issue);
}

void typeString(const QDialog* dialog, const QString& tag, const QString& text)
{
    auto* table = named<QTableWidget>(dialog, "contentTable");
    typeIntoCell(table, rowOfTag(table, tag), 1, text);
}

void chooseListItem(const QDialog* dialog, const QString& tag, int index)
{
    chooseByKeys(editorOfTag<QComboBox>(dialog, tag), index);
}

void typeListText(const QDialog* dialog, const QString& tag, const QString& text)
{
    typeInto(editorOfTag<QComboBox>(dialog, tag), text);
}

void typeCounter(const QDialog* dialog, const QString& tag, const QString& number)
{
    typeInto(editorOfTag<QSpinBox>(dialog, tag), number);
}

void typeContentDate(const QDialog* dialog, const QString& tag, const QDate& date)
{
    typeDate(editorOfTag<QDateEdit>(dialog, tag), date);
}

// Types into whatever editor stands in a cell of a table value; dates as dd.MM.yyyy.
void typeTableCell(QTableWidget* table, int row, int column, const QString& text)
{
    QWidget* editor = table->cellWidget(row, column);
    if (!editor) {
        typeIntoCell(table, row, column, text);
        return;
    }
    if (auto* date = qobject_cast<QDateEdit*>(editor)) {
        typeDate(date, QDate::fromString(text, "dd.MM.yyyy"));
        return;
    }
    typeInto(editor, text);
}

void appendTableRow(const TableMemoDialog* dialog, const QStringList& cells)
{
    auto* table = named<QTableWidget>(dialog, "tableWidget");
    clickButton(dialog, "buttonAddRow");
    const int row = table->rowCount() - 1;
    for (int column = 0; column < cells.size(); ++column) {
        typeTableCell(table, row, column, cells.at(column));
    }
}

} // namespace

/// A registrar's day on the sample database, through the real windows, and what another program
/// then reads in the files.
class tst_Scenario : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void aDayAtTheDesk();

private:
    QTableWidget* list() const { return named<QTableWidget>(m_window, "docsWidget"); }
    void press(const QString& action);
    void typeText(const QDialog* dialog, const QString& tag, const QStringList& lines);
    void addTableRows(const QDialog* dialog, const QString& tag, const QVector<QStringList>& rows);
    void createDocument(int typeIndex, const FixedFields& fields,
                        const std::function<void(NewDocDlg*)>& fillContent);
    void changeDocument(int id, const QString& action,
                        const std::function<void(DocDialog*)>& change);
    void createOfEachForm();
    void editSome();
    void copySome();
    void deleteSome();
    void saveTemplate();
    void createFromTemplate();
    void saveArchive();
    void deleteAll();
    void restore();
    QString sqlite(const QString& sql) const;

    SampleApplication* m_app = nullptr;
    MainWindow* m_window = nullptr;
    ModalDriver* m_driver = nullptr;
};

void tst_Scenario::initTestCase()
{
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    loadBaseStyle();
}

void tst_Scenario::press(const QString& action)
{
    pressToolBar(m_window, action);
    QVERIFY2(m_driver->finished(), m_driver->failures());
}

void tst_Scenario::typeText(const QDialog* dialog, const QString& tag, const QStringList& lines)
{
    m_driver->expect<TextMemoDialog>([lines](TextMemoDialog* memo) {
        auto* edit = named<QTextEdit>(memo, "textEdit");
        edit->setFocus();
        QTest::keyClick(edit, Qt::Key_A, Qt::ControlModifier);
        for (int i = 0; i < lines.size(); ++i) {
            if (i > 0) {
                QTest::keyClick(edit, Qt::Key_Return);
            }
            typeLetters(edit, lines.at(i));
        }
        clickButton(memo, "buttonAccept");
    });
    QTest::mouseClick(editorOfTag<ZelvoraTextButton>(dialog, tag), Qt::LeftButton);
}

void tst_Scenario::addTableRows(const QDialog* dialog, const QString& tag,
                                const QVector<QStringList>& rows)
{
    m_driver->expect<TableMemoDialog>([rows](TableMemoDialog* memo) {
        for (const QStringList& row : rows) {
            appendTableRow(memo, row);
        }
        clickButton(memo, "buttonAccept");
    });
    QTest::mouseClick(editorOfTag<ZelvoraTableButton>(dialog, tag), Qt::LeftButton);
}

void tst_Scenario::createDocument(int typeIndex, const FixedFields& fields,
                                  const std::function<void(NewDocDlg*)>& fillContent)
{
    m_driver->expect<NewDocDlg>([&](NewDocDlg* dialog) {
        chooseByKeys(named<QComboBox>(dialog, "docTypeCmb"), typeIndex);
        typeFixedFields(dialog, fields);
        fillContent(dialog);
        clickButton(dialog, "saveButton");
    });
    press("СОЗДАТЬ ДОКУМЕНТ");
}

void tst_Scenario::changeDocument(int id, const QString& action,
                                  const std::function<void(DocDialog*)>& change)
{
    clickRecord(list(), id);
    m_driver->expect<DocDialog>([&](DocDialog* dialog) {
        change(dialog);
        clickButton(dialog, "saveButton");
    });
    press(action);
}

void tst_Scenario::createOfEachForm()
{
    createDocument(0,
                   {"07724", "00990001", "Лебедева", "Анна", "Игоревна", "11Б", QDate(2007, 3, 14),
                    QDate(2025, 6, 24)},
                   [this](NewDocDlg* dialog) {
                       QTest::mouseClick(named<QCheckBox>(dialog, "duplicateCheck"), Qt::LeftButton,
                                         Qt::NoModifier, QPoint(8, 8));
                       typeString(dialog, "#REG_NUMBER", "0917");
                       chooseListItem(dialog, "#EDUC_LEVEL", 1);
                       typeCounter(dialog, "#GRAD_YEAR", "2025");
                       typeContentDate(dialog, "#COUNCIL_DATE", QDate(2025, 6, 18));
                       typeText(dialog, "#NOTES", {"Медаль \"За особые успехи\"", "вторая строка"});
                       addTableRows(dialog, "#SUBJECTS",
                                    {{"Химия", "5 (отлично)"}, {"Астрономия", "зачтено"}});
                   });
    createDocument(
        1,
        {"117724", "0000001", "Жуков", "Пётр", "Ильич", "ИС-41", QDate(2005, 1, 2),
         QDate(2025, 7, 1)},
        [this](NewDocDlg* dialog) {
            typeString(dialog, "#REG_NUMBER", "00077");
            chooseListItem(dialog, "#SPECIALTY", 0);
            typeListText(dialog, "#QUALIFICATION", "Мастер на все руки");
            chooseListItem(dialog, "#STUDY_FORM", 2);
            typeString(dialog, "#STUDY_PERIOD", "3 года 10 месяцев");
            typeString(dialog, "#PREV_DOCUMENT", "Аттестат, 2021 год");
            typeCounter(dialog, "#PROTOCOL_NUMBER", "-5");
            typeContentDate(dialog, "#PROTOCOL_DATE", QDate(2024, 2, 28));
            typeText(dialog, "#NOTES", {"С отличием"});
            addTableRows(dialog, "#SUBJECTS",
                         {{"ОП.01 Сети", "72", "отлично"}, {"ОП.02 Базы данных", "108", "хорошо"}});
            addTableRows(dialog, "#TERM_PAPERS", {{"Схема", "хорошо", "05.04.2023"}});
        });
    createDocument(2,
                   {"", "15", "Ким", "Ольга", "", "ИС-21", QDate(2006, 12, 12), QDate(2025, 2, 3)},
                   [this](NewDocDlg* dialog) {
                       typeString(dialog, "#REG_NUMBER", "15/о");
                       typeCounter(dialog, "#COURSE", "2");
                       typeText(dialog, "#PURPOSE", {"По месту требования"});
                   });
    createDocument(3,
                   {"УПК", "000123", "Соколов", "Иван", "Петрович", "ПК-1", QDate(1980, 5, 6),
                    QDate(2025, 3, 21)},
                   [this](NewDocDlg* dialog) {
                       typeString(dialog, "#REG_NUMBER", "У-1");
                       typeText(dialog, "#PROGRAM", {"Охрана труда"});
                       typeCounter(dialog, "#HOURS", "144");
                       typeContentDate(dialog, "#START_DATE", QDate(2025, 2, 10));
                       typeContentDate(dialog, "#END_DATE", QDate(2025, 3, 14));
                   });
}

void tst_Scenario::editSome()
{
    changeDocument(203, "РЕДАКТИРОВАТЬ\nДОКУМЕНТ", [this](DocDialog* dialog) {
        typeInto(named<QLineEdit>(dialog, "lnameEdit"), "Лебедева-Орлова");
        QTest::mouseClick(named<QCheckBox>(dialog, "duplicateCheck"), Qt::LeftButton,
                          Qt::NoModifier, QPoint(8, 8));
        typeContentDate(dialog, "#COUNCIL_DATE", QDate(2025, 6, 19));
        typeText(dialog, "#NOTES", {"Иначе"});
        addTableRows(dialog, "#SUBJECTS", {{"Физика", "4 (хорошо)"}});
    });
    // A document of the sample of which one field changes: all others must come through.
    changeDocument(5, "РЕДАКТИРОВАТЬ\nДОКУМЕНТ", [](DocDialog* dialog) {
        typeInto(named<QLineEdit>(dialog, "numberEdit"), "77777777");
    });
}

void tst_Scenario::copySome()
{
    changeDocument(204, "СОЗДАТЬ КОПИЮ\nДОКУМЕНТА", [](DocDialog* dialog) {
        typeInto(named<QLineEdit>(dialog, "numberEdit"), "0000002");
        typeString(dialog, "#REG_NUMBER", "00078");
    });
    changeDocument(10, "СОЗДАТЬ КОПИЮ\nДОКУМЕНТА", [](DocDialog*) {});
}

void tst_Scenario::deleteSome()
{
    clickRecord(list(), 205);
    clickRecord(list(), 17, Qt::ControlModifier);
    m_driver->expectMessage("Zelvora", "Удалить выбранные документы?", "Да");
    press("УДАЛИТЬ ДОКУМЕНТ");
}

void tst_Scenario::saveTemplate()
{
    m_driver->expect<NewDocDlg>([this](NewDocDlg* dialog) {
        chooseByKeys(named<QComboBox>(dialog, "docTypeCmb"), 2);
        typeFixedFields(dialog, {"НЕТ", "НЕТ", "Нет", "Нет", "Нет", "ИС-31", QDate(2001, 1, 1),
                                 QDate(2025, 9, 1)});
        typeCounter(dialog, "#COURSE", "3");
        chooseListItem(dialog, "#STUDY_FORM", 0);
        named<QTabWidget>(dialog, "newDocTab")->setCurrentIndex(1);
        m_driver->expect<TextValDialog>([](TextValDialog* prompt) {
            typeInto(named<QLineEdit>(prompt, "valueEdit"), "Справка, третий курс");
            QTest::keyClick(named<QLineEdit>(prompt, "valueEdit"), Qt::Key_Return);
        });
        m_driver->expect<DocDialog>([this](DocDialog* confirmation) {
            typeText(confirmation, "#PURPOSE", {"В военкомат"});
            clickButton(confirmation, "saveButton");
        });
        clickButton(dialog, "addTemplateBtn");
        clickButton(dialog, "closeButton");
    });
    press("СОЗДАТЬ ДОКУМЕНТ");
}

void tst_Scenario::createFromTemplate()
{
    m_driver->expect<NewDocDlg>([](NewDocDlg* dialog) {
        named<QTabWidget>(dialog, "newDocTab")->setCurrentIndex(1);
        auto* templates = named<QListWidget>(dialog, "templatesList");
        QCOMPARE(templates->count(), 3);
        templates->setCurrentRow(0);
        clickButton(dialog, "deleteTemplateBtn");
        templates->setCurrentRow(1);
        clickButton(dialog, "createFromBtn");
        typeNames(dialog, {"", "16", "Юрьева", "Ева", "Львовна", "", QDate(), QDate()});
        typeDate(named<QDateEdit>(dialog, "birthDateEdit"), QDate(2006, 7, 8));
        typeString(dialog, "#REG_NUMBER", "16/о");
        clickButton(dialog, "saveButton");
    });
    press("СОЗДАТЬ ДОКУМЕНТ");
}

void tst_Scenario::saveArchive()
{
    m_driver->expectFileDialog(m_app->path("storage/day.zlv"));
    press("СОХРАНИТЬ\nВ АРХИВ");
}

void tst_Scenario::deleteAll()
{
    list()->setFocus();
    QTest::keyClick(list(), Qt::Key_A, Qt::ControlModifier);
    m_driver->expectMessage("Zelvora", "Удалить выбранные документы?", "Да");
    press("УДАЛИТЬ ДОКУМЕНТ");
    QCOMPARE(list()->rowCount(), 0);
    // Templates are none of the documents that the list shows.
    QCOMPARE(sqlite("SELECT ID, TEMPLATE FROM docs ORDER BY ID"), QString("202|1\n209|1"));
}

void tst_Scenario::restore()
{
    m_driver->expectFileDialog(m_app->path("storage/day.zlv"));
    press("ЗАГРУЗИТЬ\nИЗ АРХИВА");
}

QString tst_Scenario::sqlite(const QString& sql) const
{
    return QString::fromUtf8(runProcess("sqlite3", {m_app->path("docs.db"), sql}).out).trimmed();
}

void tst_Scenario::aDayAtTheDesk()
{
    const QDate today = QDate::currentDate();
    SampleApplication app;
    MainWindow window;
    window.show();
    ModalDriver driver;
    m_app = &app;
    m_window = &window;
    m_driver = &driver;
    QCOMPARE(list()->rowCount(), 200);

    createOfEachForm();
    editSome();
    copySome();
    deleteSome();
    saveTemplate();
    createFromTemplate();
    QCOMPARE(list()->rowCount(), 205);
    saveArchive();
    deleteAll();
    restore();
    QCOMPARE(list()->rowCount(), 205);
    if (QDate::currentDate() != today) {
        QSKIP("midnight passed: the documents are of two days");
    }

    const ProcessResult check =
        runProcess(ZELVORA_PYTHON, {READ_SCENARIO, app.path(), today.toString(Qt::ISODate)});
    QVERIFY2(check.exitCode == 0, check.out + check.err);
}

QTEST_MAIN(tst_Scenario)
#include "tst_Scenario.moc"
