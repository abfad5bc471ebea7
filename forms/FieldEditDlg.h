#pragma once

#include <QDialog>
#include <QJsonArray>
#include <QJsonObject>

#include <memory>

namespace Ui {
class FieldEditDlg;
}

/// Edits one field of a form: tag, caption, type and the settings of the type. Works on a JSON
/// object in memory; who runs the dialog stores it.
class FieldEditDlg : public QDialog
{
    Q_OBJECT

public:
    explicit FieldEditDlg(QWidget* parent = nullptr);
    ~FieldEditDlg() override;

    /// The field object, brought up to date by onDone().
    QJsonObject field() const { return m_field; }

    /// Fills the dialog from a field object. What the dialog does not change stays in the object,
    /// so that the settings of an earlier type survive. To be called before the dialog is run.
    void setField(const QJsonObject& field);

public slots:
    /// Reads the widgets into the field object. A tag that does not begin with "#" is warned of
    /// and taken all the same.
    void onDone();
    /// Shows the settings of a field type.
    void onChange(int type);
    void on_buttonAddTableRow_clicked();
    void on_buttonRemoveTableRow_clicked();
    /// Runs the additional settings of the column whose button sent the signal.
    void onTableAdOptionsClicked();

private:
    void fillLists();
    void insertColumn(int row, const QString& name, int typeId, const QJsonObject& column);
    QJsonArray columns() const;

    std::unique_ptr<Ui::FieldEditDlg> ui;
    QJsonObject m_field;
};
