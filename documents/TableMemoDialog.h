#pragma once

#include <QDialog>
#include <QHash>
#include <QJsonArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <memory>

namespace Ui {
class TableMemoDialog;
}

/// Editor of a table value, for entry and, in read-only mode, for reading. The columns come from a
/// form's table field; the rows are arrays of strings, whatever the type of a column.
class TableMemoDialog : public QDialog
{
    Q_OBJECT

public:
    explicit TableMemoDialog(QWidget* parent = nullptr);
    ~TableMemoDialog() override;

    /// Builds the table of column objects and rows, once. Short rows are filled up with empty
    /// cells, extra cells dropped. With no columns a notice is shown and false returned; the dialog
    /// can be run all the same.
    bool setData(const QJsonArray& columns, const QJsonArray& rows);

    /// The rows as the widgets hold them: an array of strings each, none left out.
    QJsonArray tableValue() const;

    /// Leaves nothing but a button to close the dialog. The cell editors stay active: what is typed
    /// is lost, since callers that read only ignore the result.
    void setReadOnly(bool readOnly);

    /// The items of a value list; empty on any failure. The first failure to find a list in a run
    /// of the program is shown to the user, the later ones are not.
    QStringList loadListValues(const QString& listId);

public slots:
    void on_buttonAddRow_clicked();
    void on_buttonRemoveRow_clicked();

private:
    void loadColumns();
    void setColumnWidths(const QStringList& headers, const QList<int>& widths);
    void addRow(int row, const QStringList& cells);
    void setCell(int row, int column, const QStringList& cells);
    QString cellText(int row, int column) const;
    void showListError(const QString& text);

    std::unique_ptr<Ui::TableMemoDialog> ui;
    QJsonArray m_columns;
    QList<int> m_columnTypes;             // by column number
    QHash<int, QStringList> m_listValues; // items by column number
};

/// Makes the next failure to find a list show its notice again, as at the start of the program.
/// For tests: the program itself stays silent until it is restarted.
void rearmListErrorNotice();
