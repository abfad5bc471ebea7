#include "documents/NewDocDlg.h"

#include <QDebug>
#include <QSqlQuery>

#include "app/AppStyle.h"
#include "app/WheelGuard.h"
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
    , m_ui(std::make_unique<Ui::NewDocDlg>())
{
    m_ui->setupUi(this);
    applyBaseStyle(this);
    fillDocTypes(m_ui->docTypeCmb);
    m_ui->docTypeCmb->setCurrentIndex(-1);
    WheelGuard::install(m_ui->docTypeCmb); // a stray step would discard the content
    setUpContentTable(m_ui->contentTable);
    for (QPushButton* button : {m_ui->saveButton, m_ui->closeButton}) {
        setStyledFixedHeight(button, buttonHeight);
    }
    applyCalendarStyle(m_ui->birthDateEdit->calendarWidget());
    applyCalendarStyle(m_ui->issueDateEdit->calendarWidget());

    connect(m_ui->docTypeCmb, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &NewDocDlg::onDocTypeCgange);
    connect(m_ui->addTemplateBtn, &QPushButton::clicked, this, &NewDocDlg::addTemplate);
    connect(m_ui->deleteTemplateBtn, &QPushButton::clicked, this, &NewDocDlg::deleteTemplate);
    connect(m_ui->createFromBtn, &QPushButton::clicked, this, &NewDocDlg::createFromTemplate);
    // The dialog's loop ends first; the values are taken right afterwards.
    connect(m_ui->saveButton, &QPushButton::clicked, this, &QDialog::accept);
    connect(m_ui->saveButton, &QPushButton::clicked, this, &NewDocDlg::onDone);
    connect(m_ui->closeButton, &QPushButton::clicked, this, &QDialog::reject);

    clearFocus();
    loadTemplates();
}

NewDocDlg::~NewDocDlg() = default;

void NewDocDlg::onDone()
{
    readFixedFields(*m_ui);
    m_editDate = storedDate(m_ui->editDateEdit);
    saveContentTable(&m_content, m_ui->contentTable);
}

void NewDocDlg::onDocTypeCgange()
{
    m_ui->mainFrame->setEnabled(true);
    const QDate today = QDate::currentDate();
    m_ui->editDateEdit->setDate(today);
    m_ui->birthDateEdit->setDate(today.addYears(-usualAge));
    m_ui->issueDateEdit->setDate(today);
    m_ui->saveButton->setEnabled(true);
    m_ui->addTemplateBtn->setEnabled(true);
    if (buildContent(m_ui->docTypeCmb->currentData(), &m_content)) {
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
    document.setIssueDate(storedDate(m_ui->issueDateEdit));
    document.setBirthDate(storedDate(m_ui->birthDateEdit));
    document.setEditDate(storedDate(m_ui->editDateEdit));
    document.setDocGroup(m_ui->groupEdit->text());
    document.setDocType(m_ui->docTypeCmb->currentData().toInt());
    QJsonObject entered = m_content;
    saveContentTable(&entered, m_ui->contentTable);
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
    QListWidgetItem* item = m_ui->templatesList->currentItem();
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
    const QListWidgetItem* item = m_ui->templatesList->currentItem();
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
    m_docType = query.value("DOC_TYPE").toInt();
    m_ui->docTypeCmb->setCurrentIndex(m_ui->docTypeCmb->findData(m_docType));
    m_docGroup = query.value("DOC_GROUP").toString();
    m_ui->groupEdit->setText(m_docGroup);
    m_issueDate = query.value("ISSUE_DATE").toString();
    m_ui->issueDateEdit->setDate(QDate::fromString(m_issueDate, storedDateFormat));
    m_duplicate = query.value("DUPLICATE").toInt();
    m_ui->duplicateCheck->setChecked(m_duplicate != 0);
    m_content = parseJsonColumn(query.value("CONTENT"));
    showContent();
    m_ui->newDocTab->setCurrentIndex(0);
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
    m_ui->templatesList->clear();
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
    auto* item = new QListWidgetItem(name, m_ui->templatesList);
    item->setData(Qt::UserRole, id);
}

void NewDocDlg::showContent()
{
    loadContentTable(m_ui->contentTable, m_content,
                     valueButtonSlots(this, &NewDocDlg::onTextEdit, &NewDocDlg::onTableEdit));
}
