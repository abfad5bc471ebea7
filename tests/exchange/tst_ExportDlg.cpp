#include <QtTest>

#include <QComboBox>
#include <QFileDialog>
#include <QHeaderView>
#include <QIntValidator>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSplitter>
#include <QTableWidget>

#include "ExchangeFixture.h"
#include "app/AppStyle.h"
#include "support/LogCatcher.h"
#include "support/ModalDriver.h"

/// Exchange templates: the list, the values and the mapping.
class tst_ExportDlg : public QObject
{
    Q_OBJECT

private slots:
    void unreadTemplateIsNotReplaced();
    void init() { m_fixture = std::make_unique<ExchangeFixture>(); }
    void cleanup() { m_fixture.reset(); }

    void window();
    void widgets_data();
    void widgets();
    void tables();
    void opensWithNothingSelected();
    void exitButtonRejects();
    void enterInALineEditStartsNothing();
    void slotsInTheirOrder();

    void addTemplateStoresTheDefaults();
    void addTemplateSelectsIt();
    void failedAddTemplate();
    void selectionShowsTheTemplate();
    void selectionShowsTextAndBytes();
    void failedSelection();
    void failedTemplateListLeavesTheDialogDead();
    void failedFormList();

    void renameInPlace();
    void everyEditWritesAllFiveValues();
    void editWithoutASelectionDoesNothing();
    void dateFormatIsNotConnected();
    void rowsRefuseWhatIsNoRow();
    void failedEdit();
    void chosenWorkbookIsStored();
    void cancelledFileDialogClearsThePath();

    void openEditIsStoredAtTheEnd();

    void deleteTemplate();
    void deleteTemplateDenied();
    void deleteTemplateInTheMiddle();
    void deleteTheBottomTemplate();
    void deleteTheLastTemplate();
    void deleteWithoutASelection();
    void failedDelete();

    void templateReachedByTabIsNotPicked();
    void deselectedTemplateLeavesTheWidgetsEmpty();

    void addFieldAppends();
    void addFieldWithoutASelection();
    void editFieldReplaces();
    void editFieldKeepsTheCurrentCell();
    void editedCellKeepsTheKeyboard();
    void rowsOfAnotherTemplateAreNotCurrent();
    void editFieldDropsOtherKeys();
    void deleteField();
    void deleteTheLastField();
    void deleteFieldWithoutASelection();
    void duplicatesAreAccepted();
    void brokenFields();
    void failedFieldSelects();
    void failedFieldUpdates();
    void doubleClickDeletesOneField();
    void keysOnAClosedText();
    void longPathIsSeenFromItsBeginning();

private:
    QString stored(const char* column, int id = 1);
    QStringList names();
    QStringList mapping();
    QTableWidget* templates() { return m_fixture->child<QTableWidget>("templatesWidget"); }
    QTableWidget* fields() { return m_fixture->child<QTableWidget>("fieldsWidget"); }
    QLineEdit* edit(const char* name) { return m_fixture->child<QLineEdit>(name); }
    void type(const char* lineEdit, const QString& text);
    void typeIntoCell(QTableWidget* table, int row, int column, const QString& text);
    void breakUpdates();
    void compareWithNoTemplate();

    std::unique_ptr<ExchangeFixture> m_fixture;
};

QString tst_ExportDlg::stored(const char* column, int id)
{
    return m_fixture->app.value(QString("SELECT %1 FROM export WHERE ID = ?").arg(column), {id})
        .toString();
}

QStringList tst_ExportDlg::names()
{
    QStringList all;
    for (int row = 0; row < templates()->rowCount(); ++row) {
        all << templates()->item(row, 0)->text();
    }
    return all;
}

/// The mapping as shown, "column=tag@index".
QStringList tst_ExportDlg::mapping()
{
    QStringList all;
    for (int row = 0; row < fields()->rowCount(); ++row) {
        all << fields()->item(row, 0)->text() + "=" + fields()->item(row, 1)->text() + "@" +
                   fields()->item(row, 0)->data(Qt::UserRole).toString();
    }
    return all;
}

void tst_ExportDlg::type(const char* lineEdit, const QString& text)
{
    QLineEdit* line = edit(lineEdit);
    line->setFocus();
    line->selectAll();
    QTest::keyClicks(line, text);
}

void tst_ExportDlg::typeIntoCell(QTableWidget* table, int row, int column, const QString& text)
{
    table->setCurrentCell(row, column);
    table->editItem(table->item(row, column));
    auto* editor = table->findChild<QLineEdit*>();
    QVERIFY(editor);
    editor->setText(text); // simulated keys know no Cyrillic
    QTest::keyClick(editor, Qt::Key_Return);
    // The editor commits by way of the event queue and is then deleted.
    QTRY_VERIFY(!table->findChild<QLineEdit*>());
}

void tst_ExportDlg::breakUpdates()
{
    for (const char* action : {"INSERT", "UPDATE", "DELETE"}) {
        m_fixture->app.exec(QString("CREATE TRIGGER no_%1 BEFORE %1 ON export "
                                    "BEGIN SELECT RAISE(ABORT, 'refused'); END;")
                                .arg(action));
    }
}

/// What the widgets show while no template is picked.
void tst_ExportDlg::compareWithNoTemplate()
{
    for (const char* name : {"tmpPathEdit", "fromRow", "toRow", "dateFormat"}) {
        QCOMPARE(edit(name)->text(), QString());
    }
    QCOMPARE(fields()->rowCount(), 0);
}

void tst_ExportDlg::window()
{
    ExportDlg& dialog = m_fixture->open();
    QCOMPARE(dialog.windowTitle(), QString("Dialog"));
    QCOMPARE(dialog.size(), QSize(714, 620));
    QVERIFY(dialog.styleSheet().startsWith(baseStyleSheet + "\r\n"));
    QVERIFY(!baseStyleSheet.isEmpty());
    QCOMPARE(dialog.focusWidget(), m_fixture->child<QPushButton>("importButton"));
    auto* splitter = dialog.findChild<QSplitter*>();
    QVERIFY(splitter);
    QVERIFY(splitter->isAncestorOf(templates()));
    QVERIFY(splitter->isAncestorOf(fields()));
}

void tst_ExportDlg::widgets_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("role");
    QTest::addColumn<bool>("icon");

    QTest::newRow("add template") << "addTmpBtn"
                                  << ""
                                  << "whiteButton" << true;
    QTest::newRow("delete template") << "delTmpBtn"
                                     << ""
                                     << "whiteButton" << true;
    QTest::newRow("add field") << "fldAddBtn"
                               << ""
                               << "whiteButton" << true;
    QTest::newRow("delete field") << "fldDelBtn"
                                  << ""
                                  << "whiteButton" << true;
    QTest::newRow("file") << "tmpFileBtn"
                          << ""
                          << "" << true;
    QTest::newRow("import") << "importButton"
                            << "Импорт"
                            << "accept" << false;
    QTest::newRow("export") << "exportButton"
                            << "Экспорт"
                            << "accept" << false;
    QTest::newRow("exit") << "buttonReject"
                          << "Выход"
                          << "reject" << false;
    QTest::newRow("path label") << "label"
                                << "Шаблон таблицы для экспорта(.xlsx)"
                                << "" << false;
    QTest::newRow("from label") << "label_2"
                                << "Строки с"
                                << "" << false;
    QTest::newRow("to label") << "label_3"
                              << "по"
                              << "" << false;
    QTest::newRow("format label") << "label_4"
                                  << "Формат даты:"
                                  << "" << false;
    QTest::newRow("form label") << "label_5"
                                << "Форма для импорта"
                                << "" << false;
}

void tst_ExportDlg::widgets()
{
    QFETCH(QString, name);
    QFETCH(QString, text);
    QFETCH(QString, role);
    QFETCH(bool, icon);
    auto* widget = m_fixture->open().findChild<QWidget*>(name);
    QVERIFY(widget);
    QVERIFY(widget->isVisible());
    QCOMPARE(widget->property("text").toString(), text);
    QCOMPARE(widget->property("btnRole1").toString(), role);
    QCOMPARE(!widget->property("icon").value<QIcon>().isNull(), icon);
}

void tst_ExportDlg::tables()
{
    m_fixture->open();
    for (QTableWidget* table : {templates(), fields()}) {
        QCOMPARE(table->selectionMode(), QAbstractItemView::SingleSelection);
        QCOMPARE(table->selectionBehavior(), QAbstractItemView::SelectRows);
        QVERIFY(table->horizontalHeader()->stretchLastSection());
    }
    QCOMPARE(templates()->columnCount(), 1);
    QCOMPARE(templates()->horizontalHeaderItem(0)->text(), QString("Шаблон"));
    QCOMPARE(fields()->columnCount(), 2);
    QCOMPARE(fields()->horizontalHeaderItem(0)->text(), QString("Колонка"));
    QCOMPARE(fields()->horizontalHeaderItem(1)->text(), QString("Метка"));
    QCOMPARE(edit("tmpPathEdit")->placeholderText(), QString("Укажите путь шаблона"));
}

void tst_ExportDlg::opensWithNothingSelected()
{
    m_fixture->addTemplate("Первый", {{"A", "#LNAME"}}, "/books/first.xlsx");
    m_fixture->addTemplate("Второй", {});
    m_fixture->addForm("Аттестат");
    m_fixture->addForm("Диплом");
    m_fixture->open();
    QCOMPARE(names(), (QStringList{"Первый", "Второй"}));
    QCOMPARE(templates()->item(1, 0)->data(Qt::UserRole).toInt(), 2);
    QCOMPARE(templates()->currentRow(), -1);
    QCOMPARE(fields()->rowCount(), 0);
    QCOMPARE(edit("tmpPathEdit")->text(), QString());
    auto* forms = m_fixture->child<QComboBox>("formCombo");
    QCOMPARE(forms->currentIndex(), -1);
    QCOMPARE(forms->count(), 2);
    QCOMPARE(forms->itemText(1), QString("Диплом"));
    QCOMPARE(forms->itemData(1).toInt(), 2);
}

void tst_ExportDlg::exitButtonRejects()
{
    ExportDlg& dialog = m_fixture->open();
    QSignalSpy rejected(&dialog, &QDialog::rejected);
    m_fixture->click("buttonReject");
    QCOMPARE(rejected.count(), 1);
    QVERIFY(!dialog.isVisible());
}

void tst_ExportDlg::enterInALineEditStartsNothing()
{
    m_fixture->addTemplate("Шаблон", {});
    m_fixture->addForm("Аттестат");
    m_fixture->open();
    m_fixture->selectTemplate(0);
    m_fixture->child<QComboBox>("formCombo")->setCurrentIndex(0);
    ModalDriver nothingExpected;
    for (const char* name : {"tmpPathEdit", "fromRow", "toRow", "dateFormat"}) {
        edit(name)->setFocus();
        QTest::keyClick(edit(name), Qt::Key_Return);
    }
    QVERIFY(m_fixture->dialog().isVisible());
    QCOMPARE(names().size(), 1);
    QVERIFY2(nothingExpected.finished(), nothingExpected.failures());
}

void tst_ExportDlg::slotsInTheirOrder()
{
    const QMetaObject& meta = ExportDlg::staticMetaObject;
    QStringList found;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        if (meta.method(i).methodType() == QMetaMethod::Slot) {
            QCOMPARE(meta.method(i).access(), QMetaMethod::Public);
            found << meta.method(i).name();
        }
    }
    QCOMPARE(found, (QStringList{"addTemplate", "deleteTemplate", "editTemplate", "addField",
                                 "deleteField", "editField", "selChange", "tmpFileClicked",
                                 "exportClicked", "importClicked"}));
}

void tst_ExportDlg::addTemplateStoresTheDefaults()
{
    m_fixture->open();
    m_fixture->click("addTmpBtn");
    QCOMPARE(m_fixture->app.value("SELECT COUNT(*) FROM export").toInt(), 1);
    QCOMPARE(stored("NAME"), QString("Новый шаблон"));
    QCOMPARE(stored("FIELDS"), QString("{\n\t\"items\":\n\t\t[\n\t\t]\n}"));
    QCOMPARE(stored("typeof(FIELDS)"), QString("text"));
    QCOMPARE(stored("TYPE"), QString("0"));
    QCOMPARE(stored("TEMPLATE"), QString(""));
    QCOMPARE(stored("TEMPLATE IS NULL"), QString("0"));
    QCOMPARE(stored("FROM_ROW"), QString("2"));
    QCOMPARE(stored("TO_ROW"), QString("99"));
    QCOMPARE(stored("DATE_FORMAT"), QString("dd.MM.yyyy"));
}

void tst_ExportDlg::addTemplateSelectsIt()
{
    m_fixture->addTemplate("Первый", {{"A", "#LNAME"}}, "/books/first.xlsx", 5, 9, "yyyy");
    m_fixture->open();
    m_fixture->selectTemplate(0);
    m_fixture->click("addTmpBtn");
    QCOMPARE(names(), (QStringList{"Первый", "Новый шаблон"}));
    QCOMPARE(templates()->currentRow(), 1);
    QCOMPARE(templates()->currentItem()->data(Qt::UserRole).toInt(), 2);
    QCOMPARE(edit("tmpPathEdit")->text(), QString());
    QCOMPARE(edit("fromRow")->text(), QString("2"));
    QCOMPARE(edit("toRow")->text(), QString("99"));
    QCOMPARE(edit("dateFormat")->text(), QString("dd.MM.yyyy"));
    QCOMPARE(fields()->rowCount(), 0);
    // What was selected before stays as it was.
    QCOMPARE(stored("NAME"), QString("Первый"));
    QCOMPARE(stored("TEMPLATE"), QString("/books/first.xlsx"));
    // The new one is the one that a mapping is added to.
    m_fixture->click("fldAddBtn");
    QCOMPARE(mapping(), QStringList{"колонка excel=#TAG@0"});
    QVERIFY(stored("FIELDS", 2).contains("колонка excel"));
}

void tst_ExportDlg::failedAddTemplate()
{
    m_fixture->open();
    breakUpdates();
    LogCatcher log;
    m_fixture->click("addTmpBtn");
    QVERIFY(log.contains("error insert into export"));
    QVERIFY(log.contains("refused"));
    QCOMPARE(templates()->rowCount(), 0);
}

void tst_ExportDlg::selectionShowsTheTemplate()
{
    m_fixture->addTemplate("Первый", {{"A", "#LNAME"}, {"B", "#FNAME"}}, "/books/first.xlsx", 5, 9,
                           "yyyy-MM-dd");
    m_fixture->addTemplate("Второй", {{"AB", "#GRADES"}}, "", 2, 1500, "d.M.yy");
    m_fixture->open();
    const QByteArray before = m_fixture->app.dump();
    m_fixture->selectTemplate(0);
    QCOMPARE(edit("tmpPathEdit")->text(), QString("/books/first.xlsx"));
    QCOMPARE(edit("fromRow")->text(), QString("5"));
    QCOMPARE(edit("toRow")->text(), QString("9"));
    QCOMPARE(edit("dateFormat")->text(), QString("yyyy-MM-dd"));
    QCOMPARE(mapping(), (QStringList{"A=#LNAME@0", "B=#FNAME@1"}));
    m_fixture->selectTemplate(1);
    QCOMPARE(edit("tmpPathEdit")->text(), QString());
    QCOMPARE(edit("toRow")->text(), QString("1500"));
    QCOMPARE(edit("dateFormat")->text(), QString("d.M.yy"));
    QCOMPARE(mapping(), QStringList{"AB=#GRADES@0"});
    QCOMPARE(m_fixture->app.dump(), before);
}

void tst_ExportDlg::selectionShowsTextAndBytes()
{
    const QString json = R"({"items":[{"col":"Ж","tag":"#ФАМИЛИЯ"}]})";
    m_fixture->app.exec("INSERT INTO export (NAME, FIELDS) VALUES ('text', ?)", {json});
    m_fixture->app.exec("INSERT INTO export (NAME, FIELDS) VALUES ('bytes', ?)", {json.toUtf8()});
    m_fixture->open();
    m_fixture->selectTemplate(0);
    QCOMPARE(mapping(), QStringList{"Ж=#ФАМИЛИЯ@0"});
    m_fixture->selectTemplate(1);
    QCOMPARE(mapping(), QStringList{"Ж=#ФАМИЛИЯ@0"});
}

void tst_ExportDlg::failedSelection()
{
    m_fixture->addTemplate("Первый", {{"A", "#LNAME"}}, "/books/first.xlsx");
    m_fixture->open();
    m_fixture->app.exec("ALTER TABLE export RENAME TO elsewhere");
    LogCatcher log;
    m_fixture->selectTemplate(0);
    QVERIFY(log.contains("Unable to execute select query"));
    QVERIFY(log.contains("no such table"));
    QCOMPARE(edit("tmpPathEdit")->text(), QString());
}

void tst_ExportDlg::failedTemplateListLeavesTheDialogDead()
{
    m_fixture->addTemplate("Первый", {{"A", "#LNAME"}});
    m_fixture->app.exec("ALTER TABLE export RENAME TO elsewhere");
    LogCatcher log;
    m_fixture->open();
    QVERIFY(log.contains("Unable to execute select query"));
    QCOMPARE(templates()->rowCount(), 0);
    log.clear();
    m_fixture->dialog().editTemplate();
    m_fixture->dialog().editField();
    QCOMPARE(log.messages(), QStringList());
}

void tst_ExportDlg::failedFormList()
{
    m_fixture->app.exec("DROP TABLE forms");
    LogCatcher log;
    m_fixture->open();
    QVERIFY(log.contains("Unable to select from forms query"));
}

void tst_ExportDlg::renameInPlace()
{
    m_fixture->addTemplate("Первый", {});
    m_fixture->addTemplate("Второй", {});
    m_fixture->open();
    m_fixture->selectTemplate(1);
    typeIntoCell(templates(), 1, 0, "О'Нил");
    QCOMPARE(stored("NAME", 2), QString("О'Нил"));
    QCOMPARE(stored("NAME", 1), QString("Первый"));
}

void tst_ExportDlg::everyEditWritesAllFiveValues()
{
    m_fixture->addTemplate("Первый", {{"A", "#LNAME"}});
    m_fixture->open();
    m_fixture->selectTemplate(0);
    const QString fieldsBefore = stored("FIELDS");
    edit("dateFormat")->setText("yyyy");
    edit("toRow")->setText("40");
    edit("tmpPathEdit")->setText("/books/new.xlsx");
    type("fromRow", "7\t");
    QCOMPARE(stored("FROM_ROW"), QString("7"));
    QCOMPARE(stored("TO_ROW"), QString("40"));
    QCOMPARE(stored("typeof(TO_ROW)"), QString("integer"));
    QCOMPARE(stored("TEMPLATE"), QString("/books/new.xlsx"));
    QCOMPARE(stored("DATE_FORMAT"), QString("yyyy"));
    QCOMPARE(stored("NAME"), QString("Первый"));
    QCOMPARE(stored("FIELDS"), fieldsBefore);
    type("toRow", "41\t");
    QCOMPARE(stored("TO_ROW"), QString("41"));
    type("tmpPathEdit", "/books/other.xlsx\t");
    QCOMPARE(stored("TEMPLATE"), QString("/books/other.xlsx"));
}

void tst_ExportDlg::editWithoutASelectionDoesNothing()
{
    m_fixture->addTemplate("Первый", {}, "/books/first.xlsx");
    m_fixture->open();
    const QByteArray before = m_fixture->app.dump();
    type("fromRow", "7\t");
    type("tmpPathEdit", "x\t");
    QCOMPARE(m_fixture->app.dump(), before);
}

void tst_ExportDlg::dateFormatIsNotConnected()
{
    m_fixture->addTemplate("Первый", {});
    m_fixture->open();
    m_fixture->selectTemplate(0);
    type("dateFormat", "yyyy\t");
    m_fixture->click("buttonReject");
    QCOMPARE(stored("DATE_FORMAT"), QString("dd.MM.yyyy"));
}

void tst_ExportDlg::rowsRefuseWhatIsNoRow()
{
    m_fixture->open();
    for (const char* name : {"fromRow", "toRow"}) {
        const auto* validator = qobject_cast<const QIntValidator*>(edit(name)->validator());
        QVERIFY(validator);
        QCOMPARE(validator->bottom(), 1);
        QCOMPARE(validator->top(), 999);
        type(name, "12a34");
        QCOMPARE(edit(name)->text(), QString("123"));
    }
}

void tst_ExportDlg::failedEdit()
{
    m_fixture->addTemplate("Первый", {});
    m_fixture->open();
    m_fixture->selectTemplate(0);
    breakUpdates();
    LogCatcher log;
    type("fromRow", "7\t");
    QVERIFY(log.contains("error update into export"));
    QVERIFY(log.contains("refused"));
    QVERIFY(log.contains("UPDATE export SET NAME = :Name"));
    QCOMPARE(edit("fromRow")->text(), QString("7"));
    QCOMPARE(stored("FROM_ROW"), QString("2"));
}

void tst_ExportDlg::chosenWorkbookIsStored()
{
    m_fixture->addTemplate("Первый", {});
    QDir(m_fixture->app.path()).mkdir("templates");
    const QString book = m_fixture->app.path("templates/book.xlsx");
    QVERIFY(QFile(book).open(QIODevice::WriteOnly));
    m_fixture->open();
    m_fixture->selectTemplate(0);
    ModalDriver user;
    user.expect<QFileDialog>([&](QFileDialog* dialog) {
        QCOMPARE(dialog->windowTitle(), QString("Таблица-шаблон(для экспорта)"));
        QCOMPARE(dialog->nameFilters(), QStringList{"Excel Files (*.xlsx *.xls)"});
        QCOMPARE(dialog->directory().path(), m_fixture->app.path("templates"));
        dialog->findChild<QLineEdit*>("fileNameEdit")->setText(book);
        static_cast<QDialog*>(dialog)->accept();
    });
    m_fixture->click("tmpFileBtn");
    QVERIFY2(user.finished(), user.failures());
    QCOMPARE(edit("tmpPathEdit")->text(), book);
    QCOMPARE(stored("TEMPLATE"), book);
}

void tst_ExportDlg::cancelledFileDialogClearsThePath()
{
    m_fixture->addTemplate("Первый", {}, "/books/first.xlsx");
    m_fixture->open();
    m_fixture->selectTemplate(0);
    ModalDriver user;
    user.expectFileDialogCancelled();
    m_fixture->click("tmpFileBtn");
    QVERIFY2(user.finished(), user.failures());
    QCOMPARE(edit("tmpPathEdit")->text(), QString());
    QCOMPARE(stored("TEMPLATE"), QString());
}

void tst_ExportDlg::openEditIsStoredAtTheEnd()
{
    m_fixture->addTemplate("Первый", {});
    m_fixture->open();
    m_fixture->selectTemplate(0);
    templates()->editItem(templates()->item(0, 0));
    templates()->findChild<QLineEdit*>()->setText("Новое имя");
    m_fixture->close();
    QCOMPARE(stored("NAME"), QString("Новое имя"));
}

void tst_ExportDlg::deleteTemplate()
{
    m_fixture->addTemplate("Первый", {});
    m_fixture->addTemplate("Второй", {{"B", "#FNAME"}}, "/books/second.xlsx");
    m_fixture->open();
    m_fixture->selectTemplate(0);
    ModalDriver user;
    user.expectMessage("Zelvora", "Удалить шаблон?", "Да");
    m_fixture->click("delTmpBtn");
    QVERIFY2(user.finished(), user.failures());
    QCOMPARE(names(), QStringList{"Второй"});
    QCOMPARE(m_fixture->app.value("SELECT group_concat(ID) FROM export").toString(), QString("2"));
    // The next one moved up and is the selected one, with its values.
    QCOMPARE(templates()->currentRow(), 0);
    QCOMPARE(edit("tmpPathEdit")->text(), QString("/books/second.xlsx"));
    QCOMPARE(mapping(), QStringList{"B=#FNAME@0"});
    QCOMPARE(stored("TEMPLATE", 2), QString("/books/second.xlsx"));
}

void tst_ExportDlg::deleteTemplateDenied()
{
    m_fixture->addTemplate("Первый", {});
    m_fixture->open();
    m_fixture->selectTemplate(0);
    ModalDriver user;
    user.expectMessage("Zelvora", "Удалить шаблон?", "Нет");
    m_fixture->click("delTmpBtn");
    QVERIFY2(user.finished(), user.failures());
    QCOMPARE(names(), QStringList{"Первый"});
    QCOMPARE(m_fixture->app.value("SELECT COUNT(*) FROM export").toInt(), 1);
}

void tst_ExportDlg::deleteTemplateInTheMiddle()
{
    for (const char* name : {"Первый", "Второй", "Третий"}) {
        m_fixture->addTemplate(name, {});
    }
    m_fixture->open();
    m_fixture->selectTemplate(1);
    ModalDriver user;
    user.expectMessage("Zelvora", "Удалить шаблон?", "Да");
    m_fixture->click("delTmpBtn");
    QCOMPARE(names(), (QStringList{"Первый", "Третий"}));
    QCOMPARE(templates()->currentRow(), 1);
    // What is added now goes to the template that is shown as selected.
    m_fixture->click("fldAddBtn");
    QVERIFY(stored("FIELDS", 3).contains("#TAG"));
    QVERIFY(!stored("FIELDS", 1).contains("#TAG"));
}

void tst_ExportDlg::deleteTheBottomTemplate()
{
    m_fixture->addTemplate("Первый", {{"A", "#LNAME"}}, "/books/first.xlsx");
    m_fixture->addTemplate("Второй", {{"B", "#FNAME"}}, "/books/second.xlsx");
    m_fixture->open();
    m_fixture->selectTemplate(1);
    ModalDriver user;
    user.expectMessage("Zelvora", "Удалить шаблон?", "Да");
    m_fixture->click("delTmpBtn");
    QCOMPARE(names(), QStringList{"Первый"});
    QCOMPARE(templates()->currentRow(), -1);
    compareWithNoTemplate();
    // Nothing that is done now reaches the template that is left.
    const QByteArray before = m_fixture->app.dump();
    m_fixture->click("fldAddBtn");
    type("tmpPathEdit", "/books/third.xlsx\t");
    QCOMPARE(m_fixture->app.dump(), before);
    QCOMPARE(fields()->rowCount(), 0);
    m_fixture->selectTemplate(0);
    QCOMPARE(edit("tmpPathEdit")->text(), QString("/books/first.xlsx"));
    QCOMPARE(mapping(), QStringList{"A=#LNAME@0"});
    m_fixture->click("fldAddBtn");
    QCOMPARE(mapping().size(), 2);
}

void tst_ExportDlg::deleteTheLastTemplate()
{
    m_fixture->addTemplate("Первый", {{"A", "#LNAME"}});
    m_fixture->open();
    m_fixture->selectTemplate(0);
    ModalDriver user;
    user.expectMessage("Zelvora", "Удалить шаблон?", "Да");
    m_fixture->click("delTmpBtn");
    QCOMPARE(templates()->rowCount(), 0);
    QCOMPARE(templates()->currentRow(), -1);
    // Its number is still remembered: a mapping is sought under it, in vain.
    LogCatcher log;
    m_fixture->click("fldAddBtn");
    QVERIFY(log.contains("Not an object!"));
    QCOMPARE(m_fixture->app.value("SELECT COUNT(*) FROM export").toInt(), 0);
}

void tst_ExportDlg::deleteWithoutASelection()
{
    m_fixture->addTemplate("Первый", {});
    m_fixture->open();
    ModalDriver nothingExpected;
    m_fixture->click("delTmpBtn");
    QCOMPARE(names().size(), 1);
}

void tst_ExportDlg::failedDelete()
{
    m_fixture->addTemplate("Первый", {});
    m_fixture->open();
    m_fixture->selectTemplate(0);
    breakUpdates();
    LogCatcher log;
    ModalDriver user;
    user.expectMessage("Zelvora", "Удалить шаблон?", "Да");
    m_fixture->click("delTmpBtn");
    QVERIFY(log.contains("error delete from export "));
    QVERIFY(log.contains("refused"));
    QCOMPARE(names(), QStringList{"Первый"});
}

void tst_ExportDlg::templateReachedByTabIsNotPicked()
{
    m_fixture->addTemplate("Первый", {{"A", "#LNAME"}}, "/books/first.xlsx", 5, 9, "yyyy");
    m_fixture->addTemplate("Второй", {});
    m_fixture->open();
    const QByteArray before = m_fixture->app.dump();
    ModalDriver nothingExpected;
    QVERIFY(tabTo(templates()));
    QCOMPARE(templates()->currentRow(), -1);
    QTest::keyClick(templates(), Qt::Key_F2);
    QTest::keyClick(templates(), Qt::Key_X);
    QVERIFY(!templates()->viewport()->findChild<QLineEdit*>());
    m_fixture->click("delTmpBtn");
    m_fixture->click("exportButton");
    type("tmpPathEdit", "/books/other.xlsx\t");
    type("fromRow", "7\t");
    QCOMPARE(m_fixture->app.dump(), before);
    QVERIFY2(nothingExpected.finished(), nothingExpected.failures());

    QVERIFY(tabTo(templates()));
    QTest::keyClick(templates(), Qt::Key_Down); // this picks one
    QCOMPARE(templates()->currentRow(), 0);
    QCOMPARE(templates()->selectedItems().size(), 1);
    QCOMPARE(edit("tmpPathEdit")->text(), QString("/books/first.xlsx"));
    QVERIFY(tabTo(fields()));
    QCOMPARE(fields()->currentRow(), -1);
    m_fixture->click("fldDelBtn");
    QCOMPARE(mapping(), QStringList{"A=#LNAME@0"});
}

void tst_ExportDlg::deselectedTemplateLeavesTheWidgetsEmpty()
{
    m_fixture->addTemplate("Первый", {{"A", "#LNAME"}}, "/books/first.xlsx");
    m_fixture->open();
    const QByteArray before = m_fixture->app.dump();
    m_fixture->selectTemplate(0);
    clickRow(templates(), 0, Qt::ControlModifier);
    QCOMPARE(templates()->currentRow(), -1);
    compareWithNoTemplate();
    m_fixture->click("fldAddBtn");
    type("tmpPathEdit", "/books/other.xlsx\t");
    QCOMPARE(m_fixture->app.dump(), before);
}

void tst_ExportDlg::addFieldAppends()
{
    m_fixture->addTemplate("Первый", {{"A", "#LNAME"}});
    m_fixture->open();
    m_fixture->selectTemplate(0);
    m_fixture->click("fldAddBtn");
    QCOMPARE(mapping(), (QStringList{"A=#LNAME@0", "колонка excel=#TAG@1"}));
    // Compact, as bytes.
    QCOMPARE(stored("FIELDS"), QString(R"({"items":[{"col":"A","tag":"#LNAME"},)"
                                       R"({"col":"колонка excel","tag":"#TAG"}]})"));
    QCOMPARE(stored("typeof(FIELDS)"), QString("blob"));
}

void tst_ExportDlg::addFieldWithoutASelection()
{
    m_fixture->addTemplate("Первый", {});
    m_fixture->open();
    const QByteArray before = m_fixture->app.dump();
    LogCatcher log;
    m_fixture->click("fldAddBtn");
    QVERIFY(log.contains("Not an object!"));
    QCOMPARE(log.messages().size(), 1);
    QCOMPARE(m_fixture->app.dump(), before);
    QCOMPARE(fields()->rowCount(), 0);
}

void tst_ExportDlg::editFieldReplaces()
{
    m_fixture->addTemplate("Первый", {{"A", "#LNAME"}, {"B", "#FNAME"}, {"C", "#MNAME"}});
    m_fixture->open();
    m_fixture->selectTemplate(0);
    typeIntoCell(fields(), 1, 0, "d ");
    QCOMPARE(mapping(), (QStringList{"A=#LNAME@0", "d =#FNAME@1", "C=#MNAME@2"}));
    typeIntoCell(fields(), 1, 1, "метка");
    QCOMPARE(mapping(), (QStringList{"A=#LNAME@0", "d =метка@1", "C=#MNAME@2"}));
    QCOMPARE(stored("FIELDS"), QString(R"({"items":[{"col":"A","tag":"#LNAME"},)"
                                       R"({"col":"d ","tag":"метка"},)"
                                       R"({"col":"C","tag":"#MNAME"}]})"));
    QCOMPARE(stored("typeof(FIELDS)"), QString("blob"));
}

void tst_ExportDlg::editFieldKeepsTheCurrentCell()
{
    m_fixture->addTemplate("Первый", {{"A", "#LNAME"}, {"B", "#FNAME"}});
    m_fixture->open();
    m_fixture->selectTemplate(0);
    typeIntoCell(fields(), 1, 0, "D");
    QCOMPARE(fields()->currentRow(), 1);
    QCOMPARE(fields()->currentColumn(), 0);
}

void tst_ExportDlg::editedCellKeepsTheKeyboard()
{
    m_fixture->addTemplate("Первый", {{"A", "#LNAME"}, {"B", "#FNAME"}}, "/books/first.xlsx");
    m_fixture->open();
    m_fixture->selectTemplate(0);
    clickRow(fields(), 1);
    QTest::keyClick(fields(), Qt::Key_F2);
    QTest::keyClicks(QApplication::focusWidget(), "D");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    QTRY_COMPARE(mapping(), (QStringList{"A=#LNAME@0", "D=#FNAME@1"}));
    QTRY_COMPARE(QApplication::focusWidget(), fields());
    QCOMPARE(fields()->currentRow(), 1);
    QCOMPARE(fields()->currentColumn(), 0);

    // The next keys edit the same cell; Tab takes them to its neighbour.
    QTest::keyClicks(fields(), "E");
    QTRY_VERIFY(fields()->isAncestorOf(QApplication::focusWidget()));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QTRY_COMPARE(mapping(), (QStringList{"A=#LNAME@0", "E=#FNAME@1"}));
    QTRY_VERIFY(fields()->isAncestorOf(QApplication::focusWidget()));
    QCOMPARE(fields()->currentRow(), 1);
    QCOMPARE(fields()->currentColumn(), 1);
    QTest::keyClicks(QApplication::focusWidget(), "#MNAME");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    QTRY_COMPARE(mapping(), (QStringList{"A=#LNAME@0", "E=#MNAME@1"}));
    QTRY_COMPARE(QApplication::focusWidget(), fields());
    QCOMPARE(fields()->currentColumn(), 1);
    QCOMPARE(stored("TEMPLATE"), QString("/books/first.xlsx"));
    QVERIFY(m_fixture->dialog().isVisible());
}

void tst_ExportDlg::rowsOfAnotherTemplateAreNotCurrent()
{
    m_fixture->addTemplate("Первый", {{"A", "#LNAME"}});
    m_fixture->addTemplate("Второй", {{"B", "#FNAME"}});
    m_fixture->open();
    m_fixture->selectTemplate(0);
    clickRow(fields(), 0);
    m_fixture->selectTemplate(1);
    QCOMPARE(fields()->currentRow(), -1);
    m_fixture->click("fldDelBtn");
    QCOMPARE(mapping(), QStringList{"B=#FNAME@0"});
}

void tst_ExportDlg::editFieldDropsOtherKeys()
{
    m_fixture->app.exec("INSERT INTO export (NAME, FIELDS) VALUES ('x', ?)",
                        {R"({"items":[{"col":"A","tag":"#LNAME","width":7}],"kept":1})"});
    m_fixture->open();
    m_fixture->selectTemplate(0);
    typeIntoCell(fields(), 0, 0, "B");
    QCOMPARE(stored("FIELDS"), QString(R"({"items":[{"col":"B","tag":"#LNAME"}],"kept":1})"));
}

void tst_ExportDlg::deleteField()
{
    m_fixture->addTemplate("Первый", {{"A", "#LNAME"}, {"B", "#FNAME"}, {"C", "#MNAME"}});
    m_fixture->open();
    m_fixture->selectTemplate(0);
    fields()->setCurrentCell(0, 1);
    m_fixture->click("fldDelBtn");
    QCOMPARE(mapping(), (QStringList{"B=#FNAME@0", "C=#MNAME@1"}));
    QCOMPARE(fields()->currentRow(), 0);
    QCOMPARE(fields()->currentColumn(), 0);
    // Indented, as bytes.
    QCOMPARE(stored("FIELDS"),
             QString("{\n    \"items\": [\n        {\n            \"col\": \"B\",\n"
                     "            \"tag\": \"#FNAME\"\n        },\n        {\n"
                     "            \"col\": \"C\",\n            \"tag\": \"#MNAME\"\n"
                     "        }\n    ]\n}\n"));
    QCOMPARE(stored("typeof(FIELDS)"), QString("blob"));
    // The second delete goes by the positions as drawn after the first.
    m_fixture->click("fldDelBtn");
    QCOMPARE(mapping(), QStringList{"C=#MNAME@0"});
}

void tst_ExportDlg::deleteTheLastField()
{
    m_fixture->addTemplate("Первый", {{"A", "#LNAME"}});
    m_fixture->open();
    m_fixture->selectTemplate(0);
    fields()->setCurrentCell(0, 0);
    m_fixture->click("fldDelBtn");
    QCOMPARE(fields()->rowCount(), 0);
    QCOMPARE(QJsonDocument::fromJson(stored("FIELDS").toUtf8()).object()["items"].toArray().size(),
             0);
}

void tst_ExportDlg::deleteFieldWithoutASelection()
{
    m_fixture->addTemplate("Первый", {{"A", "#LNAME"}});
    m_fixture->open();
    m_fixture->selectTemplate(0);
    LogCatcher log;
    m_fixture->click("fldDelBtn");
    QCOMPARE(log.messages(), QStringList());
    QCOMPARE(mapping(), QStringList{"A=#LNAME@0"});
}

void tst_ExportDlg::duplicatesAreAccepted()
{
    m_fixture->addTemplate("Первый", {{"A", "#LNAME"}, {"B", "#FNAME"}});
    m_fixture->open();
    m_fixture->selectTemplate(0);
    typeIntoCell(fields(), 1, 0, "A");
    typeIntoCell(fields(), 1, 1, "#LNAME");
    QCOMPARE(mapping(), (QStringList{"A=#LNAME@0", "A=#LNAME@1"}));
}

void tst_ExportDlg::brokenFields()
{
    for (const char* text : {"", "no json", "[1, 2]", "{\"items\":"}) {
        m_fixture->app.exec("INSERT INTO export (NAME, FIELDS) VALUES ('x', ?)", {text});
    }
    m_fixture->app.exec("INSERT INTO export (NAME) VALUES ('null')");
    m_fixture->open();
    const QByteArray before = m_fixture->app.dump();
    for (int row = 0; row < templates()->rowCount(); ++row) {
        m_fixture->selectTemplate(row);
        QCOMPARE(fields()->rowCount(), 0);
        LogCatcher log;
        m_fixture->click("fldAddBtn");
        QCOMPARE(log.count("Not an object!"), 1);
    }
    QCOMPARE(m_fixture->app.dump(), before);
}

void tst_ExportDlg::failedFieldSelects()
{
    m_fixture->addTemplate("Первый", {{"A", "#LNAME"}});
    m_fixture->open();
    m_fixture->selectTemplate(0);
    fields()->setCurrentCell(0, 0);
    m_fixture->app.exec("ALTER TABLE export RENAME TO elsewhere");
    LogCatcher log;
    m_fixture->click("fldAddBtn");
    QVERIFY(log.contains("Unable to execute select export query"));
    QVERIFY(log.contains("no such table"));
    log.clear();
    m_fixture->click("fldDelBtn");
    QVERIFY(log.contains("Unable to execute select fields query"));
    log.clear();
    typeIntoCell(fields(), 0, 0, "B");
    QVERIFY(log.contains("Unable to execute select export query"));
    m_fixture->app.exec("ALTER TABLE elsewhere RENAME TO export");
    m_fixture->app.exec("UPDATE export SET FIELDS = '[]'");
    log.clear();
    m_fixture->click("fldDelBtn");
    QVERIFY(log.contains("not an object!"));
    log.clear();
    typeIntoCell(fields(), 0, 0, "C");
    QVERIFY(log.contains("Not an object!"));
    QCOMPARE(stored("FIELDS"), QString("[]"));
}

void tst_ExportDlg::failedFieldUpdates()
{
    m_fixture->addTemplate("Первый", {{"A", "#LNAME"}});
    m_fixture->open();
    m_fixture->selectTemplate(0);
    fields()->setCurrentCell(0, 0);
    breakUpdates();
    const QByteArray before = m_fixture->app.dump();
    LogCatcher log;
    m_fixture->click("fldAddBtn");
    QVERIFY(log.contains("error update template fields"));
    QVERIFY(log.contains("refused"));
    log.clear();
    m_fixture->click("fldDelBtn");
    QVERIFY(log.contains("error update fields items"));
    log.clear();
    typeIntoCell(fields(), 0, 0, "B");
    QVERIFY(log.contains("error update fields lists"));
    QCOMPARE(m_fixture->app.dump(), before);
    // The widgets stay as the user left them.
    QCOMPARE(mapping(), QStringList{"B=#LNAME@0"});
}

void tst_ExportDlg::doubleClickDeletesOneField()
{
    m_fixture->addTemplate("Первый", {{"A", "#LNAME"}, {"B", "#FNAME"}, {"C", "#MNAME"}});
    m_fixture->open();
    m_fixture->selectTemplate(0);
    fields()->setCurrentCell(0, 1);
    doubleClickButton(m_fixture->dialog(), "fldDelBtn");
    QCOMPARE(mapping(), (QStringList{"B=#FNAME@0", "C=#MNAME@1"}));
}

void tst_ExportDlg::keysOnAClosedText()
{
    m_fixture->addTemplate("Первый", {{"A", "#LNAME"}, {"B", "#FNAME"}});
    m_fixture->open();
    QVERIFY(QTest::qWaitForWindowActive(&m_fixture->dialog()));
    m_fixture->selectTemplate(0);
    clickRow(fields(), 0);
    pressKey(Qt::Key_C, Qt::ControlModifier);
    pressKey(Qt::Key_Delete);
    clickRow(fields(), 1);
    pressKey(Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(mapping(), (QStringList{"=#LNAME@0", "A=#FNAME@1"}));
    clickRow(templates(), 0);
    pressKey(Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(stored("NAME"), QString("A"));
}

void tst_ExportDlg::longPathIsSeenFromItsBeginning()
{
    m_fixture->addTemplate("Первый", {}, "/books/" + QString(300, 'x') + ".xlsx");
    m_fixture->open();
    m_fixture->selectTemplate(0);
    QCOMPARE(edit("tmpPathEdit")->cursorPosition(), 0);
}

// What the widgets show is then nothing, or of another template.
void tst_ExportDlg::unreadTemplateIsNotReplaced()
{
    ExchangeFixture fixture;
    fixture.addTemplate("Первый", {}, "/книга.xlsx", 3, 44, "yyyy");
    fixture.open();
    const auto rename = [&](const QString& name) {
        fixture.child<QTableWidget>("templatesWidget")->item(0, 0)->setText(name);
    };
    const auto stored = [&] {
        return fixture.app
            .value("SELECT NAME || TEMPLATE || FROM_ROW || TO_ROW || DATE_FORMAT "
                   "FROM export")
            .toString();
    };
    fixture.app.exec("ALTER TABLE export RENAME COLUMN FIELDS TO HIDDEN");
    fixture.selectTemplate(0);
    rename("Второй");
    QCOMPARE(stored(), QString("Первый/книга.xlsx344yyyy"));
    fixture.app.exec("ALTER TABLE export RENAME COLUMN HIDDEN TO FIELDS");
    fixture.child<QTableWidget>("templatesWidget")->clearSelection();
    fixture.child<QTableWidget>("templatesWidget")->setCurrentCell(-1, -1);
    fixture.selectTemplate(0);
    rename("Третий");
    QCOMPARE(stored(), QString("Третий/книга.xlsx344yyyy"));
}

QTEST_MAIN(tst_ExportDlg)
#include "tst_ExportDlg.moc"
