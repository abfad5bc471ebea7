#pragma once

#include <QDialog>
#include <QJsonObject>

#include <memory>

namespace Ui {
class TableColumFormDialog;
}

/// Additional settings of one column of a table field: its width in the table editor and the list
/// that offers its values.
class TableColumFormDialog : public QDialog
{
    Q_OBJECT

public:
    /// Starts from the column object; keys that the dialog does not know stay in it.
    explicit TableColumFormDialog(const QJsonObject& column, QWidget* parent = nullptr);
    ~TableColumFormDialog() override;

    /// The column object, with the settings in it once the dialog was accepted.
    QJsonObject column() const { return m_column; }

public slots:
    /// Writes the settings into the column object and closes the dialog as accepted.
    void accept() override;

private:
    void fillLists();
    void selectList(const QString& listId);

    std::unique_ptr<Ui::TableColumFormDialog> ui;
    QJsonObject m_column;
};
