#include "documents/NewDocDlg.h"

#include <QDebug>
#include <QSqlQuery>

#include "app/AppStyle.h"
#include "app/widgets/CalendarPopupStyle.h"
#include "app/widgets/ClickGuard.h"
#include "app/widgets/CurrentRowGuard.h"
#include "app/widgets/LineStart.h"
#include "app/widgets/LongItems.h"
#include "app/widgets/WheelGuard.h"
#include "documents/DocDialog.h"
#include "documents/DocumentContent.h"
#include "documents/DocumentRecord.h"
#include "documents/TextValDialog.h"
#include "documents/ZelvoraTableButton.h"
#include "store/JsonColumn.h"
#include "store/SqlLog.h"
#include "ui_NewDocDlg.h"

namespace {

constexpr int buttonHeight = 32; // pixels
constexpr int usualAge = 20;     // years

QString storedDate(const QDateEdit* edit)
{
    return edit->date().toString(storedDateFormat);
}

} // namespace

NewDocDlg::NewDocDlg(QWidget* parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::NewDocDlg>())
{
    ui->setupUi(this);
    applyBaseStyle(this);
    LongItems::install(ui->docTypeCmb);
    fillDocTypes(ui->docTypeCmb);
    ui->docTypeCmb->setCurrentIndex(-1);
    WheelGuard::install(ui->docTypeCmb); // a stray step would discard the content
    setUpContentTable(ui->contentTable);
    for (QPushButton* button : {ui->saveButton, ui->closeButton}) {
        setStyledFixedHeight(button, buttonHeight);
    }
    for (DateField* edit : {ui->birthDateEdit, ui->issueDateEdit}) {
        CalendarPopupStyle::install(edit);
        WheelGuard::install(edit);
    }
    LineStart::installAll(this);
    ClickGuard::install(ui->deleteTemplateBtn);

    connect(ui->docTypeCmb, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &NewDocDlg::onDocTypeCgange);
    connect(ui->addTemplateBtn, &QPushButton::clicked, this, &NewDocDlg::addTemplate);
    connect(ui->deleteTemplateBtn, &QPushButton::clicked, this, &NewDocDlg::deleteTemplate);
    connect(ui->createFromBtn, &QPushButton::clicked, this, &NewDocDlg::createFromTemplate);
    // The dialog's loop ends first; the values are taken right afterwards.
    connect(ui->saveButton, &QPushButton::clicked, this, &QDialog::accept);
    connect(ui->saveButton, &QPushButton::clicked, this, &NewDocDlg::onDone);
    connect(ui->closeButton, &QPushButton::clicked, this, &QDialog::reject);

    clearFocus();
    loadTemplates();
    CurrentRowGuard::install(ui->templatesList);
}

NewDocDlg::~NewDocDlg() = default;

void NewDocDlg::onDone()
{
    readFixedFields(*ui);
    // kept: the widget's date, unlike DocDialog.
    m_editDate = storedDate(ui->editDateEdit);
    saveContentTable(&m_content, ui->contentTable);
}

void NewDocDlg::onDocTypeCgange(int)
{
    ui->mainFrame->setEnabled(true);
    const QDate today = QDate::currentDate();
    ui->editDateEdit->setDate(today);
    ui->birthDateEdit->setDate(today.addYears(-usualAge));
    ui->issueDateEdit->setDate(today);
    ui->saveButton->setEnabled(true);
    ui->addTemplateBtn->setEnabled(true);
    if (buildContent(ui->docTypeCmb->currentData(), &m_content)) {
        showContent();
    }
}

void NewDocDlg::addTemplate()
{
    DocDialog document(parentWidget());
    TextValDialog name(this);
    name.setWindowTitle("Введите название шаблона:");
    if (name.exec() != QDialog::Accepted) {
        return;
    }
    document.setIssueDate(storedDate(ui->issueDateEdit));
    document.setBirthDate(storedDate(ui->birthDateEdit));
    document.setEditDate(storedDate(ui->editDateEdit));
    document.setDocGroup(ui->groupEdit->text());
    document.setDocType(ui->docTypeCmb->currentData().toInt());
    QJsonObject entered = m_content;
    saveContentTable(&entered, ui->contentTable);
    document.setContent(entered);
    if (document.exec() != QDialog::Accepted) {
        return;
    }
    const QVariant id = insertDocumentTemplate(document, name.value());
    if (id.isValid()) {
        appendTemplate(name.value(), id);
    }
}

void NewDocDlg::deleteTemplate()
{
    QListWidgetItem* item = ui->templatesList->currentItem();
    if (!item) {
        return;
    }
    QSqlQuery query;
    query.prepare("DELETE FROM docs WHERE ID = :Id");
    query.bindValue(":Id", item->data(Qt::UserRole));
    if (!query.exec()) {
        logSqlFailure("error delete from forms ", query);
        return;
    }
    delete item; // leaves the list by itself
}

void NewDocDlg::createFromTemplate()
{
    const QListWidgetItem* item = ui->templatesList->currentItem();
    if (!item) {
        return;
    }
    QSqlQuery query;
    if (!query.exec("SELECT DOC_TYPE, DOC_GROUP, ISSUE_DATE, DUPLICATE, CONTENT FROM docs "
                    "WHERE ID = " +
                    item->data(Qt::UserRole).toString() + ";"))
    {
        logSqlFailure("Unable to execute select query", query);
        return;
    }
    if (!query.first()) {
        return;
    }
    // kept: names, dates of birth and change, series and number stay as they were typed, though the
    // template has them.
    m_docType = query.value("DOC_TYPE").toInt();
    ui->docTypeCmb->setCurrentIndex(ui->docTypeCmb->findData(m_docType));
    m_docGroup = query.value("DOC_GROUP").toString();
    ui->groupEdit->setText(m_docGroup);
    m_issueDate = query.value("ISSUE_DATE").toString();
    ui->issueDateEdit->setDate(dateFromStored(m_issueDate));
    m_duplicate = query.value("DUPLICATE").toInt();
    ui->duplicateCheck->setChecked(m_duplicate != 0);
    m_content = parseJsonColumn(query.value("CONTENT"));
    showContent();
    ui->newDocTab->setCurrentIndex(0);
}

void NewDocDlg::onTextEdit()
{
    runTextEditor(sender(), this);
}

void NewDocDlg::onTableEdit()
{
    auto* button = qobject_cast<ZelvoraTableButton*>(sender());
    if (!button) {
        qDebug() << "cast error in NewDocDlg::onTableEdit()";
        return;
    }
    runTableEditor(button, this);
}

void NewDocDlg::loadTemplates()
{
    ui->templatesList->clear();
    QSqlQuery query;
    query.setForwardOnly(true);
    if (!query.exec("SELECT ID, TEMPLATE_NAME FROM docs WHERE TEMPLATE > 0;")) {
        logSqlFailure("Unable to execute select query", query);
        return;
    }
    while (query.next()) {
        appendTemplate(query.value("TEMPLATE_NAME").toString(), query.value("ID"));
    }
}

void NewDocDlg::appendTemplate(const QString& name, const QVariant& id)
{
    auto* item = new QListWidgetItem(name, ui->templatesList);
    item->setData(Qt::UserRole, id);
}

void NewDocDlg::showContent()
{
    loadContentTable(ui->contentTable, m_content,
                     valueButtonSlots(this, &NewDocDlg::onTextEdit, &NewDocDlg::onTableEdit));
}
