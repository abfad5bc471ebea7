#include "Visitor.h"

#include <QApplication>
#include <QComboBox>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QTabWidget>
#include <QTableWidget>
#include <QTimer>
#include <QToolButton>

#include <utility>

#include "blanks/BlankDlg.h"
#include "documents/DocumentFixture.h"
#include "documents/NewDocDlg.h"
#include "documents/ZelvoraTableButton.h"
#include "documents/ZelvoraTextButton.h"
#include "forms/FormsDlg.h"
#include "render/PrinPreviewDialog.h"

namespace {

void lookAtRows(QTableWidget* table)
{
    constexpr int enough = 8;
    for (int row = 0; row < qMin(enough, table->rowCount()); ++row) {
        table->setCurrentCell(row, 0);
    }
}

void lookAtItems(QComboBox* combo)
{
    for (int i = 0; i < combo->count(); ++i) {
        combo->setCurrentIndex(i);
        combo->window()->grab();
    }
}

void lookAtTables(const QWidget* window)
{
    const auto tables = window->findChildren<QTableWidget*>();
    for (QTableWidget* table : tables) {
        lookAtRows(table);
        openValues(table);
    }
}

void lookAtForms(FormsDlg* dialog)
{
    auto* forms = named<QTableWidget>(dialog, "formsWidget");
    for (int row = 0; row < forms->rowCount(); ++row) {
        forms->setCurrentCell(row, 0);
        dialog->editForm();
        lookAtRows(named<QTableWidget>(dialog, "fieldsWidget"));
        dialog->editField();
    }
    named<QTabWidget>(dialog, "mainTab")->setCurrentIndex(1);
    lookAtRows(named<QTableWidget>(dialog, "listsWidget"));
    dialog->grab();
}

void lookAtBlanks(BlankDlg* dialog)
{
    auto* blanks = named<QTableWidget>(dialog, "blanksWidget");
    for (int row = 0; row < blanks->rowCount(); ++row) {
        blanks->setCurrentCell(row, 0);
        dialog->grab();
        dialog->on_blanksWidget_itemDoubleClicked(blanks->item(row, 0));
        dialog->blankDetails();
    }
}

void lookAtTypesAndTemplates(NewDocDlg* dialog)
{
    lookAtItems(named<QComboBox>(dialog, "docTypeCmb"));
    auto* templates = named<QListWidget>(dialog, "templatesList");
    for (int row = 0; row < templates->count(); ++row) {
        templates->setCurrentRow(row);
        dialog->createFromTemplate();
    }
    openValues(named<QTableWidget>(dialog, "contentTable"));
}

void lookInto(QWidget* modal)
{
    if (auto* forms = qobject_cast<FormsDlg*>(modal)) {
        lookAtForms(forms);
    } else if (auto* blanks = qobject_cast<BlankDlg*>(modal)) {
        lookAtBlanks(blanks);
    } else if (auto* created = qobject_cast<NewDocDlg*>(modal)) {
        lookAtTypesAndTemplates(created);
    } else if (auto* preview = qobject_cast<PrinPreviewDialog*>(modal)) {
        lookAtItems(named<QComboBox>(preview, "comboBoxBlank"));
    } else if (!qobject_cast<QMessageBox*>(modal)) {
        lookAtTables(modal);
    }
}

QString nameOf(const QWidget* modal)
{
    if (const auto* box = qobject_cast<const QMessageBox*>(modal)) {
        return box->windowTitle() + ": " + box->text();
    }
    return modal->metaObject()->className();
}

void leave(QWidget* modal)
{
    if (auto* dialog = qobject_cast<QDialog*>(modal)) {
        dialog->reject();
        return;
    }
    modal->close();
}

} // namespace

void openValues(const QTableWidget* table)
{
    // The rows that are there now: buttons of earlier ones live on until the loop is idle.
    for (int row = 0; row < table->rowCount(); ++row) {
        auto* button = qobject_cast<QPushButton*>(table->cellWidget(row, 1));
        if (qobject_cast<ZelvoraTextButton*>(button) || qobject_cast<ZelvoraTableButton*>(button)) {
            button->click();
        }
    }
}

Visitor::Visitor(QObject* parent)
    : QObject(parent)
{
    schedule();
}

QStringList Visitor::takeSeen()
{
    return std::exchange(m_seen, {});
}

void Visitor::schedule()
{
    QTimer::singleShot(2, this, &Visitor::poll); // fires in the loops of nested dialogs too
}

void Visitor::poll()
{
    schedule();
    QWidget* modal = QApplication::activeModalWidget();
    if (modal && modal->isVisible() && !m_visited.contains(modal)) {
        m_visited.removeAll(QPointer<QWidget>());
        m_visited << modal;
        visit(modal);
    }
}

void Visitor::visit(QWidget* modal)
{
    m_seen << nameOf(modal);
    modal->grab();
    lookInto(modal);
    leave(modal);
}
