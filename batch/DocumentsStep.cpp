#include "batch/DocumentsStep.h"

#include <QDate>
#include <QHeaderView>
#include <QSignalBlocker>
#include <QSqlError>
#include <QSqlQuery>

#include <algorithm>

#include "app/AppStyle.h"
#include "app/widgets/CalendarPopupStyle.h"
#include "app/widgets/LongItems.h"
#include "batch/DocumentsModel.h"
#include "batch/SheetText.h"
#include "printing/DocumentSelection.h"
#include "store/StoredDate.h"
#include "ui_DocumentsStep.h"

namespace {

using FormList = QVector<QPair<qint64, QString>>;

bool readForms(FormList& forms)
{
    QSqlQuery query;
    query.setForwardOnly(true);
    if (!query.exec("SELECT ID, FORM_NAME FROM forms")) {
        return false;
    }
    while (query.next()) {
        forms << qMakePair(query.value(0).toLongLong(), query.value(1).toString().simplified());
    }
    return !query.lastError().isValid();
}

/// The blanks of all forms that the documents have.
bool readBlanks(const QVector<PrintDocument>& documents, QHash<qint64, BlankList>& blanks)
{
    QString error;
    for (const PrintDocument& document : documents) {
        const qint64 form = document.formId.toLongLong();
        if (!blanks.contains(form)) {
            blanks[form] = blanksOfForm(form, &error);
        }
    }
    return error.isEmpty();
}

PlannedSheet sheetOf(const PrintDocument& document, const QString& form)
{
    PlannedSheet planned;
    planned.sheet.document = document;
    planned.form = form;
    planned.group = document.group;
    planned.blankSeries = document.blankSeries;
    planned.blankNumber = document.blankNumber;
    return planned;
}

void setColumns(QHeaderView* header)
{
    constexpr int tickWidth = 34; // pixels, as all that follow
    constexpr int widths[DocumentsModel::ColumnCount] = {tickWidth, 0, 90, 190, 96, 90, 110};
    header->setMinimumSectionSize(tickWidth);
    for (int column = 0; column < DocumentsModel::ColumnCount; ++column) {
        if (column == DocumentsModel::PersonColumn) {
            header->setSectionResizeMode(column, QHeaderView::Stretch);
        } else {
            header->resizeSection(column, widths[column]);
        }
    }
    header->setSectionResizeMode(DocumentsModel::TickColumn, QHeaderView::Fixed);
    header->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
}

} // namespace

DocumentsStep::DocumentsStep(QWidget* parent)
    : QWidget(parent)
    , m_ui(std::make_unique<Ui::DocumentsStep>())
    , m_documents(new DocumentsModel(this))
{
    m_ui->setupUi(this);
    m_ui->documentsTable->setDocuments(m_documents);
    setColumns(m_ui->documentsTable->horizontalHeader());
    LongItems::install(m_ui->filterTypeCmb);
    const QDate today = QDate::currentDate();
    m_ui->fromDate->setDate(QDate(today.year(), 1, 1));
    m_ui->toDate->setDate(today);
    CalendarPopupStyle::install(m_ui->fromDate);
    CalendarPopupStyle::install(m_ui->toDate);
    showTypes({});
    connectFilters();
    connect(m_documents, &DocumentsModel::ticksChanged, this, &DocumentsStep::showBlanks);
    connect(m_ui->blanksTable, &BlanksTable::choicesChanged, this, &DocumentsStep::showNotice);
    connect(m_ui->toCheckButton, &QPushButton::clicked, this, &DocumentsStep::finished);
    showBlanks();
}

DocumentsStep::~DocumentsStep() = default;

bool DocumentsStep::load()
{
    DocumentSelection selection;
    FormList forms;
    QHash<qint64, BlankList> blanks;
    if (!selection.load({}) || !readForms(forms) || !readBlanks(selection.documents(), blanks)) {
        return false;
    }
    QHash<qint64, QString> names;
    for (const auto& [id, name] : qAsConst(forms)) {
        names[id] = name;
    }
    showTypes(forms);
    m_ui->blanksTable->setBlanks(blanks);
    m_documents->setDocuments(selection.documents(), names);
    applyFilters();
    return true;
}

QVector<PlannedSheet> DocumentsStep::sheets() const
{
    QVector<PlannedSheet> sheets;
    const QVector<PrintDocument> documents = m_documents->ticked();
    for (const PrintDocument& document : documents) {
        const qint64 form = document.formId.toLongLong();
        PlannedSheet planned = sheetOf(document, m_documents->formName(form));
        if (!m_ui->blanksTable->hasBlanks(form)) {
            planned.sheet.blank.problem = BlankChoice::Problem::NoBlanks;
            sheets << planned;
            continue;
        }
        const QVector<BlanksTable::Choice> blanks = m_ui->blanksTable->printed(form);
        for (const BlanksTable::Choice& blank : blanks) {
            planned.blankName = blank.name;
            planned.sheet.blank.id = blank.id;
            planned.sheet.copies = blank.copies;
            planned.sheet.withBackground = blank.withBackground;
            sheets << planned;
        }
    }
    return sheets;
}

QString DocumentsStep::statusLine() const
{
    if (m_documents->documentCount() == 0) {
        return "Документов нет";
    }
    return QString("Выбрано %1 из %2")
        .arg(m_documents->tickedCount())
        .arg(m_documents->documentCount());
}

void DocumentsStep::takeFocus()
{
    m_ui->filterNameEdit->setFocus();
}

void DocumentsStep::connectFilters()
{
    connect(m_ui->filterNameEdit, &QLineEdit::textChanged, this, &DocumentsStep::applyFilters);
    connect(m_ui->filterGroupEdit, &QLineEdit::textChanged, this, &DocumentsStep::applyFilters);
    connect(m_ui->filterTypeCmb, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &DocumentsStep::applyFilters);
    connect(m_ui->dateCheck, &QCheckBox::toggled, this, &DocumentsStep::applyFilters);
    connect(m_ui->fromDate, &QDateEdit::dateChanged, this, &DocumentsStep::applyFilters);
    connect(m_ui->toDate, &QDateEdit::dateChanged, this, &DocumentsStep::applyFilters);
    connect(m_ui->filterResetBtn, &QPushButton::clicked, this, &DocumentsStep::resetFilters);
}

void DocumentsStep::applyFilters()
{
    const bool isDated = m_ui->dateCheck->isChecked();
    m_ui->fromDate->setEnabled(isDated);
    m_ui->toDate->setEnabled(isDated);
    ListFilter filter;
    filter.name = m_ui->filterNameEdit->text();
    filter.group = m_ui->filterGroupEdit->text();
    filter.formId = m_ui->filterTypeCmb->currentData();
    if (isDated) {
        filter.from = m_ui->fromDate->date().toString(storedDateFormat);
        filter.to = m_ui->toDate->date().toString(storedDateFormat);
    }
    m_ui->filterResetBtn->setEnabled(!filter.isEmpty());
    m_documents->setFilter(filter);
    m_ui->documentsTable->setNotice(
        m_documents->documentCount() == 0 ? "В базе данных нет документов" : "Ничего не найдено");
}

void DocumentsStep::resetFilters()
{
    m_ui->filterNameEdit->clear();
    m_ui->filterGroupEdit->clear();
    m_ui->filterTypeCmb->setCurrentIndex(0);
    m_ui->dateCheck->setChecked(false);
    takeFocus();
}

void DocumentsStep::showTypes(const FormList& forms)
{
    const QSignalBlocker blocker(m_ui->filterTypeCmb);
    const QVariant chosen = m_ui->filterTypeCmb->currentData();
    m_ui->filterTypeCmb->clear();
    m_ui->filterTypeCmb->addItem("Все типы");
    for (const auto& [id, name] : forms) {
        m_ui->filterTypeCmb->addItem(name, id);
    }
    m_ui->filterTypeCmb->setCurrentIndex(
        chosen.isNull() ? 0 : qMax(m_ui->filterTypeCmb->findData(chosen), 0));
}

void DocumentsStep::showBlanks()
{
    QVector<BlanksTable::Form> forms;
    const QMap<qint64, int> counts = m_documents->tickedByForm();
    for (auto it = counts.cbegin(); it != counts.cend(); ++it) {
        forms << BlanksTable::Form{it.key(), m_documents->formName(it.key()), it.value()};
    }
    m_ui->blanksTable->setForms(forms);
    showNotice();
}

void DocumentsStep::showNotice()
{
    const QStringList leftOut = m_ui->blanksTable->formsLeftOut();
    QString notice = "Бланки выбранных документов:";
    if (m_documents->tickedCount() == 0) {
        notice = "Отметьте документы: щелчком по квадратику, пробелом или щелчком с Shift — "
                 "подряд. Здесь появятся их бланки.";
    } else if (!leftOut.isEmpty()) {
        notice = "Не отмечен ни один бланк, документы не напечатаются: " + leftOut.join(", ");
    }
    m_ui->blanksNotice->setText(notice);
    m_ui->blanksTable->setVisible(m_documents->tickedCount() > 0);
    m_ui->toCheckButton->setEnabled(m_documents->tickedCount() > 0);
    emit choiceChanged();
}
