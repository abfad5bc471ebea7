#include "DeskOperations.h"

#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTableWidget>

#include "Player.h"
#include "app/AppHelpers.h"
#include "app/WorkedDocument.h"
#include "blanks/BlankDlg.h"
#include "blanks/BlankFormatDialog.h"
#include "blanks/BlankWindow.h"
#include "documents/DocDialog.h"
#include "documents/DocumentFixture.h"
#include "documents/MainWindow.h"
#include "documents/NewDocDlg.h"
#include "documents/TextValDialog.h"
#include "documents/ZelvoraTextButton.h"
#include "exchange/ExportDlg.h"
#include "forms/FieldEditDlg.h"
#include "forms/FormEditDlg.h"
#include "forms/FormsDlg.h"
#include "store/ChangeOrgDataDlg.h"

namespace {

constexpr WorkedDocument entered{77};

void press(const QWidget* window, const QString& button)
{
    named<QPushButton>(window, button)->click();
}

void selectFirst(const QWidget* window, const QString& table)
{
    named<QTableWidget>(window, table)->setCurrentCell(0, 0);
}

/// As a user does who types into the first row of a table and ends with Enter.
void retype(const QWidget* window, const QString& table, const QString& text)
{
    selectFirst(window, table);
    if (QTableWidgetItem* item = named<QTableWidget>(window, table)->item(0, 0)) {
        item->setText(text);
    }
}

void enterNames(const QDialog* dialog)
{
    named<QLineEdit>(dialog, "lnameEdit")->setText(entered.lname());
    named<QLineEdit>(dialog, "seriesEdit")->setText(entered.series());
    named<QLineEdit>(dialog, "numberEdit")->setText(entered.blankNo());
}

/// False if there is nothing to fill in, as after a form that could not be read: nobody saves that.
bool enterContent(const QDialog* dialog)
{
    auto* number = editorOfTag<QSpinBox>(dialog, "#NO");
    if (!number) {
        return false;
    }
    number->setValue(entered.number);
    editorOfTag<ZelvoraTextButton>(dialog, "#TEXT")->setValue(entered.text());
    return true;
}

void enterNewDocument(NewDocDlg* dialog)
{
    named<QComboBox>(dialog, "docTypeCmb")->setCurrentIndex(0);
    enterNames(dialog);
    if (enterContent(dialog)) {
        press(dialog, "saveButton");
    }
}

void changeDocument(Player& player)
{
    player.in<DocDialog>([](DocDialog* dialog) {
        enterNames(dialog);
        if (enterContent(dialog)) {
            press(dialog, "saveButton");
        }
    });
}

void newDocument(MainWindow& window, Player& player)
{
    player.in<NewDocDlg>(enterNewDocument);
    window.onNewDoc();
}

void editDocument(MainWindow& window, Player& player)
{
    changeDocument(player);
    selectFirst(&window, "docsWidget");
    window.onEditDoc();
}

void copyDocument(MainWindow& window, Player& player)
{
    changeDocument(player);
    selectFirst(&window, "docsWidget");
    window.onCopyDoc();
}

void deleteDocuments(MainWindow& window, Player&)
{
    named<QTableWidget>(window, "docsWidget")->selectAll();
    window.onDeleteDoc();
}

void addDocumentTemplate(MainWindow& window, Player& player)
{
    player.in<NewDocDlg>([](NewDocDlg* dialog) {
        named<QComboBox>(dialog, "docTypeCmb")->setCurrentIndex(0);
        if (enterContent(dialog)) {
            dialog->addTemplate();
        }
    });
    player.in<TextValDialog>([](TextValDialog* dialog) {
        named<QLineEdit>(dialog, "valueEdit")->setText("Новый шаблон");
        dialog->accept();
    });
    player.in<DocDialog>([](DocDialog* dialog) { press(dialog, "saveButton"); });
    window.onNewDoc();
}

void deleteDocumentTemplate(MainWindow& window, Player& player)
{
    player.in<NewDocDlg>([](NewDocDlg* dialog) {
        named<QListWidget>(dialog, "templatesList")->setCurrentRow(0);
        dialog->deleteTemplate();
    });
    window.onNewDoc();
}

using FormsStep = std::function<void(FormsDlg*)>;

/// One step in the window of forms and lists, the first form and the first list being current.
DeskOperation inForms(const FormsStep& step)
{
    return [step](MainWindow& window, Player& player) {
        player.in<FormEditDlg>([](FormEditDlg* dialog) {
            named<QLineEdit>(dialog, "typeEdit")->setText("Справка");
            named<QLineEdit>(dialog, "nameEdit")->setText("Справка об обучении");
            press(dialog, "buttonAccept");
        });
        player.in<FieldEditDlg>([](FieldEditDlg* dialog) {
            named<QLineEdit>(dialog, "tagEdit")->setText("#NEW");
            named<QLineEdit>(dialog, "nameEdit")->setText("Новое поле");
            press(dialog, "buttonAccept");
        });
        player.in<FormsDlg>([step](FormsDlg* dialog) {
            for (const char* table : {"formsWidget", "fieldsWidget", "listsWidget"}) {
                selectFirst(dialog, table);
            }
            step(dialog);
        });
        window.showForms();
    };
}

DeskOperation inBlanks(const std::function<void(BlankDlg*)>& step)
{
    return [step](MainWindow& window, Player& player) {
        player.in<BlankFormatDialog>([](BlankFormatDialog* dialog) {
            named<QLineEdit>(dialog, "blankNameEdit")->setText("Другой бланк");
            named<QComboBox>(dialog, "comboBoxForm")->setCurrentIndex(0);
            press(dialog, "buttonAccept");
        });
        player.in<BlankWindow>([](BlankWindow* editor) {
            editor->createItem(QRectF(10, 10, 200, 40), "#LNAME", 0);
            press(editor, "buttonAccept");
        });
        player.in<BlankDlg>([step](BlankDlg* dialog) {
            selectFirst(dialog, "blanksWidget");
            step(dialog);
        });
        window.showBlanks();
    };
}

DeskOperation inExchange(const std::function<void(ExportDlg*)>& step, const QString& file = {})
{
    return [step, file](MainWindow& window, Player& player) {
        if (!file.isEmpty()) {
            player.chooseFile(appFilePath(file));
        }
        player.in<ExportDlg>([step](ExportDlg* dialog) {
            selectFirst(dialog, "templatesWidget");
            step(dialog);
        });
        window.showExport();
    };
}

void importRows(ExportDlg* dialog, const QString& lastRow)
{
    named<QLineEdit>(dialog, "fromRow")->setText("2");
    named<QLineEdit>(dialog, "toRow")->setText(lastRow);
    named<QComboBox>(dialog, "formCombo")->setCurrentIndex(0);
    dialog->importClicked();
}

void changeOrganisation(MainWindow& window, Player& player)
{
    enterOrganisation(window, player, "Новый лицей", "Новая Анна Сергеевна");
}

void saveArchive(MainWindow& window, Player& player)
{
    player.chooseFile(appFilePath("storage/saved.zlv"));
    window.saveData();
}

void restoreArchive(MainWindow& window, Player& player)
{
    player.chooseFile(appFilePath("storage/archive.zlv"));
    window.loadData();
}

} // namespace

void enterOrganisation(MainWindow& window, Player& player, const QString& name,
                       const QString& director)
{
    player.in<ChangeOrgDataDlg>([=](ChangeOrgDataDlg* dialog) {
        named<QPlainTextEdit>(dialog, "textEditOrgName1")->setPlainText(name);
        named<QLineEdit>(dialog, "lineEditOrgDirector")->setText(director);
        press(dialog, "saveButton");
    });
    window.on_menuAction_LocalChangeOrgData_triggered();
}

const QMap<QString, DeskOperation>& deskOperations()
{
    static const QMap<QString, DeskOperation> operations = {
        {"new-document", newDocument},
        {"edit-document", editDocument},
        {"copy-document", copyDocument},
        {"delete-documents", deleteDocuments},
        {"add-document-template", addDocumentTemplate},
        {"delete-document-template", deleteDocumentTemplate},
        {"add-form", inForms(&FormsDlg::addForm)},
        {"edit-form", inForms(&FormsDlg::editForm)},
        {"delete-form", inForms(&FormsDlg::deleteForm)},
        {"add-field", inForms(&FormsDlg::addField)},
        {"edit-field", inForms(&FormsDlg::editField)},
        {"delete-field", inForms(&FormsDlg::deleteField)},
        {"add-list", inForms(&FormsDlg::addList)},
        {"rename-list", inForms([](FormsDlg* dialog) { retype(dialog, "listsWidget", "Иной"); })},
        {"delete-list", inForms(&FormsDlg::deleteList)},
        {"add-list-item", inForms(&FormsDlg::addItem)},
        {"edit-list-item",
         inForms([](FormsDlg* dialog) { retype(dialog, "itemsWidget", "другое"); })},
        {"delete-list-item", inForms([](FormsDlg* dialog) {
             selectFirst(dialog, "itemsWidget");
             dialog->deleteItem();
         })},
        {"add-blank", inBlanks(&BlankDlg::on_blankAddBtn_clicked)},
        {"edit-blank-format", inBlanks([](BlankDlg* dialog) { dialog->editFormat(1); })},
        {"edit-blank", inBlanks(&BlankDlg::blankDetails)},
        {"delete-blank", inBlanks(&BlankDlg::on_blankDeleteBtn_clicked)},
        {"add-exchange-template", inExchange(&ExportDlg::addTemplate)},
        {"edit-exchange-template",
         inExchange([](ExportDlg* dialog) { retype(dialog, "templatesWidget", "Иной шаблон"); })},
        {"delete-exchange-template", inExchange(&ExportDlg::deleteTemplate)},
        {"add-exchange-field", inExchange(&ExportDlg::addField)},
        {"edit-exchange-field",
         inExchange([](ExportDlg* dialog) { retype(dialog, "fieldsWidget", "Z"); })},
        {"delete-exchange-field", inExchange([](ExportDlg* dialog) {
             selectFirst(dialog, "fieldsWidget");
             dialog->deleteField();
         })},
        {"import-one", inExchange([](ExportDlg* dialog) { importRows(dialog, "2"); }, "in.xlsx")},
        {"import", inExchange([](ExportDlg* dialog) { importRows(dialog, "3"); }, "in.xlsx")},
        {"export", inExchange(&ExportDlg::exportClicked, "out.xlsx")},
        {"organisation", changeOrganisation},
        {"save-archive", saveArchive},
        {"restore", restoreArchive},
    };
    return operations;
}
