#pragma once

#include <QDialog>
#include <QJsonArray>

#include <memory>

class QComboBox;

namespace Ui {
class TableLayoutDialog;
}

/// Layout of a table item of a blank: which rows of a document's table print, and the width and the
/// alignment of each column. The values given stay as they are until the dialog is accepted.
class TableLayoutDialog : public QDialog
{
    Q_OBJECT

public:
    explicit TableLayoutDialog(QWidget* parent = nullptr);
    ~TableLayoutDialog() override;

    /// Shows one row a column: widths in scene units, alignments as HorizontalAlign codes. A
    /// missing alignment reads as left.
    void setColumns(const QJsonArray& widths, const QJsonArray& aligns);

    /// First and last row to print, counted from 1, inclusive.
    void setRowFrom(int row);
    void setRowTo(int row);

    QJsonArray columnsWidth() const { return m_columnsWidth; }
    QJsonArray columnsAlign() const { return m_columnsAlign; }
    int rowFrom() const { return m_rowFrom; }
    int rowTo() const { return m_rowTo; }

public slots:
    /// Takes the values from the widgets; a text that is no number gives 0.
    void onDone();
    void addColumn();
    void deleteColumn();

private:
    void appendRow(const QString& width, int align);
    QComboBox* alignCombo(int row) const;

    std::unique_ptr<Ui::TableLayoutDialog> ui;
    QJsonArray m_columnsWidth;
    QJsonArray m_columnsAlign;
    int m_rowFrom = 1;
    int m_rowTo = 10;
};
