#pragma once

#include <QDialog>
#include <QJsonObject>
#include <QString>

#include <memory>

#include "documents/DocumentFields.h"

namespace Ui {
class DocDialog;
}

/// Shows one document and lets the user change it: its fixed fields and the content that its form
/// adds. Knows nothing of the database row: the caller fills it through the setters, runs it and,
/// if it was accepted and docType() is 1 or more, stores what the getters give.
class DocDialog : public QDialog, public DocumentFields
{
    Q_OBJECT

public:
    explicit DocDialog(QWidget* parent = nullptr);
    ~DocDialog() override;

    // Each setter keeps the value and shows it. Dates are texts "yyyy-MM-dd"; one that can't be
    // read leaves the date that is shown.
    void setFname(const QString& fname);
    void setLname(const QString& lname);
    void setMname(const QString& mname);
    /// Chooses the form and so builds a fresh content if the choice changes: to be called before
    /// setContent(). An unknown form leaves nothing chosen.
    void setDocType(int docType);
    void setDocGroup(const QString& docGroup);
    void setIssueDate(const QString& issueDate);
    void setEditDate(const QString& editDate);
    void setBirthDate(const QString& birthDate);
    void setSeries(const QString& series);
    void setNumber(const QString& number);
    /// Any value but 0 means a duplicate.
    void setDuplicate(int duplicate);
    void setContent(const QJsonObject& content);

public slots:
    /// Takes the values from the widgets. The edit date becomes today, whatever its widget shows.
    void onDone();
    void onTextEdit();
    // kept: onTalbeEdit and onDocTypeCgange are so written.
    void onTalbeEdit();
    /// Starts the content afresh from the form now chosen, whatever index of the combo is given;
    /// what was entered is lost.
    void onDocTypeCgange(int index = -1);

private:
    void showContent();

    std::unique_ptr<Ui::DocDialog> ui;
};
