#pragma once

#include <QDialog>
#include <QJsonArray>
#include <QVariant>

#include <memory>

#include "store/JsonColumn.h"

class QTableWidget;
class QTableWidgetItem;

namespace Ui {
class FormsDlg;
}

/// Maintains document forms and value lists. Every action is written to the database at once, so
/// both buttons only close the dialog. Failures go to the log and leave the tables as they were.
class FormsDlg : public QDialog
{
    Q_OBJECT

public:
    explicit FormsDlg(QWidget* parent = nullptr);
    ~FormsDlg() override;

public slots:
    void addForm();
    void deleteForm();
    void editForm();
    void addField();
    void deleteField();
    void editField();
    /// Shows the fields of the form that became current.
    void selChange();
    void addList();
    void deleteList();
    /// Stores the name of a list that was edited in place.
    void editList(QTableWidgetItem* item);
    void addItem();
    void deleteItem();
    /// Stores a list item that was edited in place.
    void editItem(QTableWidgetItem* item);
    /// Shows the items of the list that became current.
    void listSelChange();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void fillForms();
    void fillLists();
    bool changeFields(const JsonLogLines& log, const JsonArrayChange& change);
    bool changeItems(const JsonLogLines& log, const JsonArrayChange& change);
    void drawFields(const QJsonArray& fields);
    void drawItems(const QJsonArray& items);

    std::unique_ptr<Ui::FormsDlg> ui;
    QVariant m_currentFormId;
    QVariant m_currentListId;
};
