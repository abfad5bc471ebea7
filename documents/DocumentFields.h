#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QDate>
#include <QDateEdit>
#include <QJsonObject>
#include <QLineEdit>
#include <QString>

#include "store/StoredDate.h"

/// Values of a document's fixed columns and its content, as a document dialog holds them for its
/// caller. The two document dialogs have the same fields with the same widgets.
class DocumentFields
{
public:
    QString fname() const { return m_fname; }
    QString lname() const { return m_lname; }
    QString mname() const { return m_mname; }
    /// Form of the document; 0 if none is chosen, and then the document must not be stored.
    int docType() const { return m_docType; }
    QString docGroup() const { return m_docGroup; }
    /// Dates are texts "yyyy-MM-dd".
    QString issueDate() const { return m_issueDate; }
    QString editDate() const { return m_editDate; }
    QString birthDate() const { return m_birthDate; }
    QString series() const { return m_series; }
    QString number() const { return m_number; }
    /// 0 or 1.
    int duplicate() const { return m_duplicate; }
    QJsonObject content() const { return m_content; }

protected:
    DocumentFields() = default;
    ~DocumentFields() = default;
    DocumentFields(const DocumentFields&) = default;
    DocumentFields& operator=(const DocumentFields&) = default;

    /// Takes the fixed fields from the widgets of a dialog's generated form, all but the edit date,
    /// which is the dialog's own matter.
    template <class Form>
    void readFixedFields(const Form& form);

    QString m_fname;
    QString m_lname;
    QString m_mname;
    int m_docType = 0;
    QString m_docGroup;
    QString m_issueDate;
    QString m_editDate;
    QString m_birthDate;
    QString m_series;
    QString m_number;
    int m_duplicate = 0;
    QJsonObject m_content;
};

template <class Form>
void DocumentFields::readFixedFields(const Form& form)
{
    m_fname = form.fnameEdit->text();
    m_lname = form.lnameEdit->text();
    m_mname = form.mnameEdit->text();
    m_docType = form.docTypeCmb->currentData().toInt();
    m_docGroup = form.groupEdit->text();
    m_issueDate = form.issueDateEdit->date().toString(storedDateFormat);
    m_birthDate = form.birthDateEdit->date().toString(storedDateFormat);
    m_series = form.seriesEdit->text();
    m_number = form.numberEdit->text();
    m_duplicate = form.duplicateCheck->isChecked() ? 1 : 0;
}
