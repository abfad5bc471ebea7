#include "documents/DocDialog.h"

#include "app/AppStyle.h"
#include "app/WheelGuard.h"
#include "documents/DocumentContent.h"
#include "documents/ZelvoraTableButton.h"
#include "ui_DocDialog.h"

namespace {

constexpr int buttonHeight = 32; // pixels

void showDate(QDateEdit* edit, const QString& stored)
{
    edit->setDate(QDate::fromString(stored, storedDateFormat));
}

} // namespace

DocDialog::DocDialog(QWidget* parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::DocDialog>())
{
    m_ui->setupUi(this);
    applyBaseStyle(this);
    fillDocTypes(m_ui->docTypeCmb);
    WheelGuard::install(m_ui->docTypeCmb); // a stray step would discard the content
    setUpContentTable(m_ui->contentTable);
    for (QPushButton* button : {m_ui->saveButton, m_ui->closeButton}) {
        setStyledFixedHeight(button, buttonHeight);
    }
    for (const QDateEdit* edit : {m_ui->birthDateEdit, m_ui->issueDateEdit, m_ui->editDateEdit}) {
        applyCalendarStyle(edit->calendarWidget());
    }
    m_ui->lnameEdit->setFocus();

    connect(m_ui->docTypeCmb, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &DocDialog::onDocTypeCgange);
    // The dialog's loop ends first; the values are taken right afterwards.
    connect(m_ui->saveButton, &QPushButton::clicked, this, &QDialog::accept);
    connect(m_ui->saveButton, &QPushButton::clicked, this, &DocDialog::onDone);
    connect(m_ui->closeButton, &QPushButton::clicked, this, &QDialog::reject);
}

DocDialog::~DocDialog() = default;

void DocDialog::setFname(const QString& fname)
{
    m_fname = fname;
    m_ui->fnameEdit->setText(fname);
}

void DocDialog::setLname(const QString& lname)
{
    m_lname = lname;
    m_ui->lnameEdit->setText(lname);
}

void DocDialog::setMname(const QString& mname)
{
    m_mname = mname;
    m_ui->mnameEdit->setText(mname);
}

void DocDialog::setDocType(int docType)
{
    m_docType = docType;
    m_ui->docTypeCmb->setCurrentIndex(m_ui->docTypeCmb->findData(docType));
}

void DocDialog::setDocGroup(const QString& docGroup)
{
    m_docGroup = docGroup;
    m_ui->groupEdit->setText(docGroup);
}

void DocDialog::setIssueDate(const QString& issueDate)
{
    m_issueDate = issueDate;
    showDate(m_ui->issueDateEdit, issueDate);
}

void DocDialog::setEditDate(const QString& editDate)
{
    m_editDate = editDate;
    showDate(m_ui->editDateEdit, editDate);
}

void DocDialog::setBirthDate(const QString& birthDate)
{
    m_birthDate = birthDate;
    showDate(m_ui->birthDateEdit, birthDate);
}

void DocDialog::setSeries(const QString& series)
{
    m_series = series;
    m_ui->seriesEdit->setText(series);
}

void DocDialog::setNumber(const QString& number)
{
    m_number = number;
    m_ui->numberEdit->setText(number);
}

void DocDialog::setDuplicate(int duplicate)
{
    m_duplicate = duplicate;
    m_ui->duplicateCheck->setChecked(duplicate != 0);
}

void DocDialog::setContent(const QJsonObject& content)
{
    m_content = content;
    showContent();
}

void DocDialog::onDone()
{
    readFixedFields(*m_ui);
    m_editDate = QDate::currentDate().toString(storedDateFormat);
    saveContentTable(&m_content, m_ui->contentTable);
}

void DocDialog::onTextEdit()
{
    runTextEditor(sender(), this);
}

void DocDialog::onTalbeEdit()
{
    runTableEditor(qobject_cast<ZelvoraTableButton*>(sender()), this);
}

void DocDialog::onDocTypeCgange()
{
    if (buildContent(m_ui->docTypeCmb->currentData(), &m_content)) {
        showContent();
    }
}

void DocDialog::showContent()
{
    loadContentTable(m_ui->contentTable, m_content,
                     valueButtonSlots(this, &DocDialog::onTextEdit, &DocDialog::onTalbeEdit));
}
