#pragma once

#include <QDialog>
#include <QString>

#include <memory>

namespace Ui {
class FormEditDlg;
}

/// Prompt for the two names of a document form. Nothing is validated: both may be empty or repeat
/// existing ones.
class FormEditDlg : public QDialog
{
    Q_OBJECT

public:
    explicit FormEditDlg(QWidget* parent = nullptr);
    ~FormEditDlg() override;

    /// Short name, by which the form is known everywhere else. Follows the editor only when the
    /// dialog is accepted.
    QString formName() const { return m_formName; }
    void setFormName(const QString& name);

    /// Full name.
    QString fullName() const { return m_fullName; }
    void setFullName(const QString& name);

public slots:
    /// Takes both names from the editors.
    void onDone();

private:
    std::unique_ptr<Ui::FormEditDlg> ui;
    QString m_formName;
    QString m_fullName;
};
