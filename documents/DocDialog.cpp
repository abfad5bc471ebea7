#include "documents/DocDialog.h"

#include "app/AppStyle.h"
#include "app/widgets/CalendarPopupStyle.h"
#include "app/widgets/LineStart.h"
#include "app/widgets/LongItems.h"
#include "app/widgets/WheelGuard.h"
#include "documents/DocumentContent.h"
#include "documents/ZelvoraTableButton.h"
#include "ui_DocDialog.h"

namespace {

constexpr int buttonHeight = 32; // pixels

void showDate(QDateEdit* edit, const QString& stored)
{
    edit->setDate(dateFromStored(stored));
}

} // namespace

DocDialog::DocDialog(QWidget* parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::DocDialog>())
{
    ui->setupUi(this);
    applyBaseStyle(this);
    LongItems::install(ui->docTypeCmb);
    fillDocTypes(ui->docTypeCmb);
    WheelGuard::install(ui->docTypeCmb); // a stray step would discard the content
    setUpContentTable(ui->contentTable);
    for (QPushButton* button : {ui->saveButton, ui->closeButton}) {
        setStyledFixedHeight(button, buttonHeight);
    }
    for (DateField* edit : {ui->birthDateEdit, ui->issueDateEdit, ui->editDateEdit}) {
        CalendarPopupStyle::install(edit);
        WheelGuard::install(edit);
    }
    LineStart::installAll(this);
    ui->lnameEdit->setFocus();

    connect(ui->docTypeCmb, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &DocDialog::onDocTypeCgange);
    // The dialog's loop ends first; the values are taken right afterwards.
    connect(ui->saveButton, &QPushButton::clicked, this, &QDialog::accept);
    connect(ui->saveButton, &QPushButton::clicked, this, &DocDialog::onDone);
    connect(ui->closeButton, &QPushButton::clicked, this, &QDialog::reject);
}

DocDialog::~DocDialog() = default;

void DocDialog::setFname(const QString& fname)
{
    m_fname = fname;
    ui->fnameEdit->setText(fname);
}

void DocDialog::setLname(const QString& lname)
{
    m_lname = lname;
    ui->lnameEdit->setText(lname);
}

void DocDialog::setMname(const QString& mname)
{
    m_mname = mname;
    ui->mnameEdit->setText(mname);
}

void DocDialog::setDocType(int docType)
{
    m_docType = docType;
    ui->docTypeCmb->setCurrentIndex(ui->docTypeCmb->findData(docType));
}

void DocDialog::setDocGroup(const QString& docGroup)
{
    m_docGroup = docGroup;
    ui->groupEdit->setText(docGroup);
}

void DocDialog::setIssueDate(const QString& issueDate)
{
    m_issueDate = issueDate;
    showDate(ui->issueDateEdit, issueDate);
}

void DocDialog::setEditDate(const QString& editDate)
{
    m_editDate = editDate;
    showDate(ui->editDateEdit, editDate);
}

void DocDialog::setBirthDate(const QString& birthDate)
{
    m_birthDate = birthDate;
    showDate(ui->birthDateEdit, birthDate);
}

void DocDialog::setSeries(const QString& series)
{
    m_series = series;
    ui->seriesEdit->setText(series);
}

void DocDialog::setNumber(const QString& number)
{
    m_number = number;
    ui->numberEdit->setText(number);
}

void DocDialog::setDuplicate(int duplicate)
{
    m_duplicate = duplicate;
    ui->duplicateCheck->setChecked(duplicate != 0);
}

void DocDialog::setContent(const QJsonObject& content)
{
    m_content = content;
    showContent();
}

void DocDialog::onDone()
{
    readFixedFields(*ui);
    // kept: every save stamps its day, whatever the widget shows; NewDocDlg takes its widget's
    // date.
    m_editDate = QDate::currentDate().toString(storedDateFormat);
    saveContentTable(&m_content, ui->contentTable);
}

void DocDialog::onTextEdit()
{
    runTextEditor(sender(), this);
}

void DocDialog::onTalbeEdit()
{
    runTableEditor(qobject_cast<ZelvoraTableButton*>(sender()), this);
}

void DocDialog::onDocTypeCgange(int)
{
    if (buildContent(ui->docTypeCmb->currentData(), &m_content)) {
        showContent();
    }
}

void DocDialog::showContent()
{
    loadContentTable(ui->contentTable, m_content,
                     valueButtonSlots(this, &DocDialog::onTextEdit, &DocDialog::onTalbeEdit));
}
