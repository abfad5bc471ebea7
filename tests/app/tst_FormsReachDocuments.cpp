#include <QtTest>

#include <QComboBox>
#include <QDateEdit>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTabWidget>
#include <QTableWidget>
#include <QToolButton>
#include <QTreeWidget>

#include <functional>
#include <memory>

#include "DeskFixture.h"
#include "app/AppStyle.h"
#include "blanks/BlankDlg.h"
#include "blanks/BlankWindow.h"
#include "documents/DocDialog.h"
#include "documents/DocumentFixture.h"
#include "documents/MainWindow.h"
#include "documents/NewDocDlg.h"
#include "documents/ZelvoraTableButton.h"
#include "documents/ZelvoraTextButton.h"
#include "forms/FieldEditDlg.h"
#include "forms/FormDefinitions.h"
#include "forms/FormEditDlg.h"
#include "forms/FormsDlg.h"
#include "support/ModalDriver.h"

namespace {

constexpr int certificate = 1; // forms of the sample
constexpr int reference = 3;
constexpr int certificateBlank = 1;
constexpr int certificateDocument = 1; // the first document of the list
constexpr int studyForms = 8;          // list

QStringList itemTexts(const QComboBox* combo)
{
    QStringList texts;
    for (int i = 0; i < combo->count(); ++i) {
        texts << combo->itemText(i);
    }
    return texts;
}

QJsonObject parsed(const QVariant& json)
{
    return QJsonDocument::fromJson(json.toByteArray()).object();
}

QTreeWidgetItem* formFieldsOf(const BlankWindow* editor)
{
    return named<QTreeWidget>(editor, "blankTree")->topLevelItem(2);
}

} // namespace

/// What is changed in the forms manager reaches the filter, the document dialogs and the blank
/// editor, and leaves existing documents alone. Everything runs from the real main window.
class tst_FormsReachDocuments : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void acceptedFormsReachTheFilter();
    void rejectedFormsWaitForTheNextReload();
    void newFieldsReachNewDocuments();
    void newFieldsReachTheBlankEditor();
    void existingDocumentsStayAsTheyAre();
    void changedListsReachExistingDocuments();
    void deletedFormLeavesItsDocuments();

private:
    QTableWidget* list() const { return named<QTableWidget>(m_window.get(), "docsWidget"); }
    QComboBox* filter() const { return named<QComboBox>(m_window.get(), "filterTypeCmb"); }
    void press(const QString& action);
    void inForms(const char* button, const std::function<void(FormsDlg*)>& work);
    void addForm(const FormsDlg* dialog, const QString& type);
    void addField(const FormsDlg* dialog, int form, const QString& tag, const QString& name,
                  int type, const std::function<void(FieldEditDlg*)>& more = nullptr);
    QByteArray documents() const;

    std::unique_ptr<SampleApplication> m_app;
    std::unique_ptr<MainWindow> m_window;
    std::unique_ptr<ModalDriver> m_driver;
};

void tst_FormsReachDocuments::initTestCase()
{
    loadBaseStyle();
}

void tst_FormsReachDocuments::init()
{
    m_app = std::make_unique<SampleApplication>();
    m_window = std::make_unique<MainWindow>();
    m_window->show();
    m_driver = std::make_unique<ModalDriver>();
}

void tst_FormsReachDocuments::cleanup()
{
    m_driver.reset();
    m_window.reset();
    m_app.reset();
}

void tst_FormsReachDocuments::press(const QString& action)
{
    pressToolBar(m_window.get(), action);
    QVERIFY2(m_driver->finished(), m_driver->failures());
}

// Works in the forms manager and leaves it by a button.
void tst_FormsReachDocuments::inForms(const char* button,
                                      const std::function<void(FormsDlg*)>& work)
{
    m_driver->expect<FormsDlg>([&](FormsDlg* dialog) {
        work(dialog);
        clickButton(dialog, button);
    });
    press("ФОРМЫ");
}

void tst_FormsReachDocuments::addForm(const FormsDlg* dialog, const QString& type)
{
    m_driver->expect<FormEditDlg>([type](FormEditDlg* names) {
        typeInto(named<QLineEdit>(names, "typeEdit"), type);
        clickButton(names, "buttonAccept");
    });
    clickButton(dialog, "addFrmBtn");
}

void tst_FormsReachDocuments::addField(const FormsDlg* dialog, int form, const QString& tag,
                                       const QString& name, int type,
                                       const std::function<void(FieldEditDlg*)>& more)
{
    clickRecord(named<QTableWidget>(dialog, "formsWidget"), form);
    m_driver->expect<FieldEditDlg>([=](FieldEditDlg* field) {
        typeInto(named<QLineEdit>(field, "tagEdit"), tag);
        typeInto(named<QLineEdit>(field, "nameEdit"), name);
        chooseByKeys(named<QComboBox>(field, "typeCombo"), type);
        if (more) {
            more(field);
        }
        clickButton(field, "buttonAccept");
    });
    clickButton(dialog, "fldAddBtn");
}

// Every byte of every document and template.
QByteArray tst_FormsReachDocuments::documents() const
{
    QByteArray rows;
    const QList<QByteArray> lines = m_app->dump().split('\n');
    bool inside = false; // a statement goes over many lines
    for (const QByteArray& line : lines) {
        inside = line.startsWith("INSERT INTO docs") ||
                 (inside && !line.startsWith("INSERT ") && !line.startsWith("CREATE "));
        if (inside) {
            rows += line + '\n';
        }
    }
    return rows;
}

void tst_FormsReachDocuments::acceptedFormsReachTheFilter()
{
    const QString shown = list()->item(0, 2)->text();
    QCOMPARE(shown, QString("Аттестат"));
    QCOMPARE(filter()->currentIndex(), -1);
    inForms("buttonAccept", [this](FormsDlg* dialog) {
        addForm(dialog, "Грамота");
        auto* forms = named<QTableWidget>(dialog, "formsWidget");
        clickRecord(forms, certificate);
        m_driver->expect<FormEditDlg>([](FormEditDlg* names) {
            typeInto(named<QLineEdit>(names, "typeEdit"), "Школьный аттестат");
            clickButton(names, "buttonAccept");
        });
        QTest::mouseDClick(forms->viewport(), Qt::LeftButton, Qt::NoModifier,
                           forms->visualItemRect(forms->item(0, 0)).center());
    });
    const QStringList names = {"Школьный аттестат", "Диплом СПО", "Справка об обучении",
                               "Удостоверение ПК", "Грамота"};
    QCOMPARE(itemTexts(filter()), names);
    QCOMPARE(QStringList(docTypeNames.values()), names);
    QCOMPARE(filter()->currentIndex(), 0); // the reload leaves it on the first form
    // The list itself is not filled again.
    QCOMPARE(list()->rowCount(), 200);
    QCOMPARE(list()->item(0, 2)->text(), shown);

    // With the filter on the first form, the next application of it counts.
    QTest::mouseClick(named<QToolButton>(m_window.get(), "filterApplyBtn"), Qt::LeftButton);
    QCOMPARE(list()->rowCount(),
             m_app->value("SELECT count(*) FROM docs WHERE TEMPLATE = 0 AND DOC_TYPE = 1").toInt());
    QCOMPARE(list()->item(0, 2)->text(), QString("Школьный аттестат"));
}

void tst_FormsReachDocuments::rejectedFormsWaitForTheNextReload()
{
    const QStringList before = itemTexts(filter());
    inForms("buttonReject", [this](FormsDlg* dialog) { addForm(dialog, "Грамота"); });
    QCOMPARE(m_app->value("SELECT count(*) FROM forms").toInt(), 5); // stored all the same
    QCOMPARE(itemTexts(filter()), before);
    QCOMPARE(filter()->currentIndex(), -1);
    QCOMPARE(QStringList(docTypeNames.values()), before);
    m_driver->expect<NewDocDlg>([&](NewDocDlg* dialog) {
        QCOMPARE(itemTexts(named<QComboBox>(dialog, "docTypeCmb")), before);
        clickButton(dialog, "closeButton");
    });
    press("СОЗДАТЬ ДОКУМЕНТ");

    inForms("buttonAccept", [](FormsDlg*) {});
    QCOMPARE(itemTexts(filter()), before + QStringList{"Грамота"});
    m_driver->expect<NewDocDlg>([&](NewDocDlg* dialog) {
        QCOMPARE(itemTexts(named<QComboBox>(dialog, "docTypeCmb")),
                 before + QStringList{"Грамота"});
        clickButton(dialog, "closeButton");
    });
    press("СОЗДАТЬ ДОКУМЕНТ");
}

void tst_FormsReachDocuments::newFieldsReachNewDocuments()
{
    const QByteArray before = documents();
    inForms("buttonAccept", [this](FormsDlg* dialog) {
        addField(dialog, reference, "#room", "Кабинет", 0);
        addField(dialog, reference, "#MODE", "Режим", 1, [](FieldEditDlg* field) {
            auto* lists = named<QComboBox>(field, "listCombo");
            chooseByKeys(lists, lists->findText("Форма обучения"));
        });
        addField(dialog, reference, "#COPIES", "Экземпляры", 2);
        addField(dialog, reference, "#UNTIL", "Действует до", 3, [](FieldEditDlg* field) {
            typeInto(named<QLineEdit>(field, "formatEdit"), "yyyy/MM/dd");
        });
        addField(dialog, reference, "#STAGES", "Этапы", 4, [](FieldEditDlg* field) {
            clickButton(field, "buttonAddTableRow");
            typeIntoCell(named<QTableWidget>(field, "tableFieldsWidget"), 0, 0, "Этап");
        });
        addField(dialog, reference, "#REMARK", "Заметка", 5);
    });
    QCOMPARE(documents(), before);

    m_driver->expect<NewDocDlg>([](NewDocDlg* dialog) {
        chooseByKeys(named<QComboBox>(dialog, "docTypeCmb"), 2);
        auto* table = named<QTableWidget>(dialog, "contentTable");
        QCOMPARE(table->rowCount(), 7 + 6);
        typeIntoCell(table, rowOfTag(table, "#ROOM"), 1, "305а");
        chooseByKeys(editorOfTag<QComboBox>(dialog, "#MODE"), 0);
        typeInto(editorOfTag<QSpinBox>(dialog, "#COPIES"), "2");
        QCOMPARE(editorOfTag<QDateEdit>(dialog, "#UNTIL")->displayFormat(), QString("yyyy/MM/dd"));
        typeDate(editorOfTag<QDateEdit>(dialog, "#UNTIL"), QDate(2027, 1, 12));
        QVERIFY(editorOfTag<ZelvoraTableButton>(dialog, "#STAGES"));
        QVERIFY(editorOfTag<ZelvoraTextButton>(dialog, "#REMARK"));
        clickButton(dialog, "saveButton");
    });
    press("СОЗДАТЬ ДОКУМЕНТ");
    const QJsonObject content = parsed(m_app->value("SELECT CONTENT FROM docs WHERE ID = 203"));
    QCOMPARE(content.size(), 13);
    QCOMPARE(content["#ROOM"].toObject(),
             (QJsonObject{{"name", "Кабинет"}, {"type", 0}, {"value", "305а"}}));
    QCOMPARE(
        content["#MODE"].toObject(),
        (QJsonObject{{"name", "Режим"}, {"type", 1}, {"list", studyForms}, {"value", "Очная"}}));
    QCOMPARE(content["#COPIES"].toObject(),
             (QJsonObject{{"name", "Экземпляры"}, {"type", 2}, {"value", 2}}));
    QCOMPARE(content["#UNTIL"].toObject(), (QJsonObject{{"name", "Действует до"},
                                                        {"type", 3},
                                                        {"format", "yyyy/MM/dd"},
                                                        {"value", "2027/01/12"}}));
    QCOMPARE(content["#STAGES"].toObject(),
             (QJsonObject{{"name", "Этапы"},
                          {"type", 4},
                          {"columns", QJsonArray{QJsonObject{{"name", "Этап"}, {"typeID", "0"}}}},
                          {"value", QJsonArray()}}));
    QCOMPARE(content["#REMARK"].toObject(),
             (QJsonObject{{"name", "Заметка"}, {"type", 5}, {"value", ""}}));
}

void tst_FormsReachDocuments::newFieldsReachTheBlankEditor()
{
    // The editor reads the form itself, so that also a rejected manager's changes are there.
    inForms("buttonReject", [this](FormsDlg* dialog) {
        addField(dialog, certificate, "#MEDAL", "Медаль", 0);
        addField(dialog, certificate, "#OLYMPIADS", "Олимпиады", 4);
        addField(dialog, reference, "#ROOM", "Кабинет", 0);
    });
    const int items =
        parsed(m_app->value("SELECT CONTENT FROM blanks WHERE ID = 1"))["fields"].toArray().size();
    QVERIFY(items > 0);
    m_driver->expect<BlankDlg>([this](BlankDlg* dialog) {
        clickRecord(named<QTableWidget>(dialog, "blanksWidget"), certificateBlank);
        m_driver->expect<BlankWindow>([](BlankWindow* editor) {
            const QTreeWidgetItem* fields = formFieldsOf(editor);
            QStringList captions;
            for (int i = 0; i < fields->childCount(); ++i) {
                captions << fields->child(i)->text(0);
            }
            QCOMPARE(captions.mid(captions.size() - 2), QStringList({"Медаль", "Олимпиады"}));
            auto* tree = named<QTreeWidget>(editor, "blankTree");
            tree->expandAll();
            for (int leaf : {captions.size() - 2, captions.size() - 1}) {
                tree->scrollToItem(fields->child(leaf));
                const QPoint at = tree->visualItemRect(fields->child(leaf)).center();
                QTest::mouseClick(tree->viewport(), Qt::LeftButton, Qt::NoModifier, at);
                QTest::mouseDClick(tree->viewport(), Qt::LeftButton, Qt::NoModifier, at);
            }
            clickButton(editor, "buttonAccept");
        });
        QTest::mouseClick(named<QToolButton>(dialog, "blankEditBtn"), Qt::LeftButton);
        clickButton(dialog, "buttonAccept");
    });
    press("БЛАНКИ");
    const QJsonArray stored =
        parsed(m_app->value("SELECT CONTENT FROM blanks WHERE ID = 1"))["fields"].toArray();
    QCOMPARE(stored.size(), items + 2);
    // The topmost item is written first.
    QCOMPARE(stored.at(0).toObject()["value"].toString(), QString("#OLYMPIADS"));
    QCOMPARE(stored.at(0).toObject()["type"].toInt(), 2);
    QCOMPARE(stored.at(1).toObject()["value"].toString(), QString("#MEDAL"));
    QCOMPARE(stored.at(1).toObject()["type"].toInt(), 0);
}

void tst_FormsReachDocuments::existingDocumentsStayAsTheyAre()
{
    const QString read = "SELECT CONTENT FROM docs WHERE ID = 1";
    const QByteArray before = documents();
    const QJsonObject content = parsed(m_app->value(read));
    QVERIFY(content.contains("#REG_NUMBER"));
    inForms("buttonAccept", [this](FormsDlg* dialog) {
        addField(dialog, certificate, "#MEDAL", "Медаль", 0);
        // The first field goes, and the second one gets another caption and type.
        auto* fields = named<QTableWidget>(dialog, "fieldsWidget");
        clickRecord(fields, 0);
        clickButton(dialog, "fldDelBtn");
        clickRecord(fields, 0);
        m_driver->expect<FieldEditDlg>([](FieldEditDlg* field) {
            QCOMPARE(named<QLineEdit>(field, "tagEdit")->text(), QString("#EDUC_LEVEL"));
            typeInto(named<QLineEdit>(field, "nameEdit"), "Ступень");
            chooseByKeys(named<QComboBox>(field, "typeCombo"), 2);
            clickButton(field, "buttonAccept");
        });
        QTest::mouseDClick(fields->viewport(), Qt::LeftButton, Qt::NoModifier,
                           fields->visualItemRect(fields->item(0, 0)).center());
    });
    QCOMPARE(documents(), before);

    clickRecord(list(), certificateDocument);
    m_driver->expect<DocDialog>([](DocDialog* dialog) {
        auto* table = named<QTableWidget>(dialog, "contentTable");
        QCOMPARE(rowOfTag(table, "#MEDAL"), -1);
        QVERIFY(rowOfTag(table, "#REG_NUMBER") >= 0);
        QVERIFY(editorOfTag<QComboBox>(dialog, "#EDUC_LEVEL"));
        clickButton(dialog, "saveButton");
    });
    press("РЕДАКТИРОВАТЬ\nДОКУМЕНТ");
    QCOMPARE(parsed(m_app->value(read)), content);

    m_driver->expect<NewDocDlg>([](NewDocDlg* dialog) {
        chooseByKeys(named<QComboBox>(dialog, "docTypeCmb"), 0);
        auto* table = named<QTableWidget>(dialog, "contentTable");
        QVERIFY(rowOfTag(table, "#MEDAL") >= 0);
        QCOMPARE(rowOfTag(table, "#REG_NUMBER"), -1);
        QVERIFY(editorOfTag<QSpinBox>(dialog, "#EDUC_LEVEL"));
        clickButton(dialog, "closeButton");
    });
    press("СОЗДАТЬ ДОКУМЕНТ");
}

void tst_FormsReachDocuments::changedListsReachExistingDocuments()
{
    const QString read = "SELECT CONTENT FROM docs WHERE ID = 1";
    const QJsonObject content = parsed(m_app->value(read));
    const QString level = content["#EDUC_LEVEL"].toObject()["value"].toString();
    inForms("buttonReject", [](FormsDlg* dialog) {
        named<QTabWidget>(dialog, "mainTab")->setCurrentIndex(1);
        clickRecord(named<QTableWidget>(dialog, "listsWidget"), 3);
        clickButton(dialog, "listItemAddBtn");
    });
    clickRecord(list(), certificateDocument);
    m_driver->expect<DocDialog>([&](DocDialog* dialog) {
        auto* combo = editorOfTag<QComboBox>(dialog, "#EDUC_LEVEL");
        QCOMPARE(combo->currentText(), level);
        QCOMPARE(combo->itemText(combo->count() - 1), QString("Новый элемент"));
        chooseByKeys(combo, combo->count() - 1);
        clickButton(dialog, "saveButton");
    });
    press("РЕДАКТИРОВАТЬ\nДОКУМЕНТ");
    QCOMPARE(parsed(m_app->value(read))["#EDUC_LEVEL"].toObject()["value"].toString(),
             QString("Новый элемент"));
}

void tst_FormsReachDocuments::deletedFormLeavesItsDocuments()
{
    const QByteArray before = documents();
    inForms("buttonAccept", [this](FormsDlg* dialog) {
        clickRecord(named<QTableWidget>(dialog, "formsWidget"), certificate);
        m_driver->expectMessage("Zelvora", "Удалить форму?", "Да");
        clickButton(dialog, "delFrmBtn");
    });
    QCOMPARE(filter()->findText("Аттестат"), -1);
    QCOMPARE(list()->item(rowOfRecord(list(), certificateDocument), 2)->text(),
             QString("Аттестат")); // not filled again
    QTest::mouseClick(named<QToolButton>(m_window.get(), "filterResetBtn"), Qt::LeftButton);
    QCOMPARE(list()->rowCount(), 200);
    QCOMPARE(list()->item(rowOfRecord(list(), certificateDocument), 2)->text(), QString());
    QCOMPARE(documents(), before);
}

QTEST_MAIN(tst_FormsReachDocuments)
#include "tst_FormsReachDocuments.moc"
