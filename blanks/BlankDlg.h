#pragma once

#include <QDialog>
#include <QVariant>

#include <memory>

class BlankFormatDialog;
class QGraphicsPixmapItem;
class QGraphicsScene;
class QTableWidgetItem;

namespace Ui {
class BlankDlg;
}

/// The list of all blanks with the settings and the background of the selected one. Leads to the
/// settings of a blank and to the editor of its items.
class BlankDlg : public QDialog
{
    Q_OBJECT

public:
    explicit BlankDlg(QWidget* parent = nullptr);
    ~BlankDlg() override;

    /// Refills the list. A failure goes to the log, is shown once per run, and gives false.
    bool refreshList();

    /// Fills the dialog's choice of forms. A failure goes to the log and gives false.
    bool loadForms(BlankFormatDialog* dialog);

    /// The SQL literal of one column of `blanks` as the dialog holds it; texts are not escaped.
    /// "NULL" for a name that is none of the dialog's columns.
    QString fieldValueLiteral(const QString& column, const BlankFormatDialog* dialog) const;

    /// Writes the dialog's columns into the row, or into a new row if `blankId` is null. A failure
    /// is logged, shown, and gives false.
    bool saveBlankFormat(const BlankFormatDialog* dialog, const QVariant* blankId);

    /// Lets the user edit the settings of a blank and writes them. The list keeps the old name.
    void editFormat(const QVariant& blankId);

public slots:
    /// Opens the editor of the selected blank's items and returns when it was closed.
    void blankDetails();
    void on_blankAddBtn_clicked();
    void on_blankDeleteBtn_clicked();
    void on_blanksWidget_itemDoubleClicked(QTableWidgetItem* item);
    void on_blanksWidget_itemSelectionChanged();

private:
    QVariant selectedId() const;
    int rowOf(const QVariant& id) const; // -1 if no row has it
    void selectRow(int row);             // none if it is negative
    QString formName(const QVariant& formId) const;
    void showBackground(const QString& path);
    void showError(const QString& text);

    std::unique_ptr<Ui::BlankDlg> ui;
    QGraphicsScene* previewScene;
    QGraphicsPixmapItem* previewItem;
};
