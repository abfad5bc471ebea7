#pragma once

#include <QDialog>
#include <QJsonObject>
#include <QString>

#include <memory>

#include "documents/DocumentFields.h"

namespace Ui {
class NewDocDlg;
}

/// The dialog in which a document is created, from a form or from a document template. The new
/// document is stored by the caller, if the dialog was accepted and docType() is 1 or more;
/// templates are read, stored and deleted here, whatever becomes of the document.
class NewDocDlg : public QDialog, public DocumentFields
{
    Q_OBJECT

public:
    explicit NewDocDlg(QWidget* parent = nullptr);
    ~NewDocDlg() override;

public slots:
    /// Takes the values from the widgets.
    void onDone();
    /// Starts the content afresh from the form now chosen, whatever index of the combo is given,
    /// and resets the three dates.
    // kept: so written.
    void onDocTypeCgange(int index = -1);
    /// Asks for a name, lets the user confirm the values and stores them as a template.
    void addTemplate();
    /// Deletes the current template without a question.
    void deleteTemplate();
    /// Starts a document from the current template: type, class, issue date, duplicate, content.
    void createFromTemplate();
    void onTextEdit();
    void onTableEdit();

private:
    void loadTemplates();
    void appendTemplate(const QString& name, const QVariant& id);
    void showContent();

    std::unique_ptr<Ui::NewDocDlg> ui;
};
