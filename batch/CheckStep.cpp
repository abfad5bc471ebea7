#include "batch/CheckStep.h"

#include <QCoreApplication>
#include <QFileDialog>
#include <QMessageBox>
#include <QStandardPaths>

#include "app/AppHelpers.h"
#include "batch/CheckReport.h"
#include "batch/SheetText.h"
#include "preflight/ProofPicture.h"
#include "ui_CheckStep.h"

namespace {

const char* const noSheetNotice = "Здесь появится лист, который выбран слева";

} // namespace

CheckStep::CheckStep(QWidget* parent)
    : QWidget(parent)
    , m_ui(std::make_unique<Ui::CheckStep>())
    , m_page(std::make_unique<PageCheck>())
{
    m_ui->setupUi(this);
    m_ui->splitter->setSizes({460, 560});
    m_ui->findingsTree->setChecks(&m_checks);
    connectViews();
    connectButtons();
    m_ui->proofView->showNotice(noSheetNotice);
    showState();
}

CheckStep::~CheckStep() = default;

void CheckStep::setSheets(const QVector<PlannedSheet>& sheets)
{
    if (m_isBusy) {
        return;
    }
    m_checks.setSheets(sheets);
    m_shown = -1;
    m_ui->findingsTree->showAll();
    if (m_ui->findingsTree->currentSheet() < 0) {
        m_ui->proofView->showNotice(noSheetNotice);
    }
    showState();
}

bool CheckStep::checkNow()
{
    if (m_isBusy) {
        return false;
    }
    setBusy(true);
    m_ui->findingsTree->clearSheets();
    m_shown = -1;
    const bool isWhole = m_checks.run();
    if (isWhole) {
        m_isOutdated = false;
    } else {
        m_ui->findingsTree->showAll(); // with those that were checked earlier
    }
    setBusy(false);
    if (m_ui->findingsTree->currentSheet() < 0) {
        m_ui->findingsTree->step(0);
    }
    return isWhole;
}

QVector<PlannedSheet> CheckStep::sheets() const
{
    QVector<PlannedSheet> sheets = m_checks.sheets();
    QSet<QString> faulty; // documents, by ID
    for (int i = 0; i < sheets.size(); ++i) {
        const SheetChecks::Result& result = m_checks.result(i);
        sheets[i].hasErrors = result.isChecked && result.hasErrors();
        if (sheets[i].hasErrors) {
            faulty << sheets[i].sheet.document.id.toString();
        }
    }
    // A title without its supplement helps nobody: all sheets of a document are held back.
    for (PlannedSheet& sheet : sheets) {
        sheet.isHeldBack = m_ui->holdErrorsCheck->isChecked() && !sheet.sheet.blank.id.isNull() &&
                           faulty.contains(sheet.sheet.document.id.toString());
    }
    return sheets;
}

void CheckStep::setPrinter(const QString& name)
{
    if (m_isBusy || name == m_printer) {
        return;
    }
    m_printer = name;
    m_checks.setPrinter(name);
    m_page = std::make_unique<PageCheck>();
    m_page->setPrinter(name);
    m_shown = -1;
    m_ui->findingsTree->showAll();
    m_ui->proofView->showNotice(noSheetNotice); // the page that it drew is gone
    showState();
}

void CheckStep::setOutdated()
{
    m_isOutdated = m_checks.checkedCount() > 0;
    showState();
}

void CheckStep::stop()
{
    m_stops = true;
    m_checks.stop();
}

QString CheckStep::statusLine() const
{
    const int all = m_checks.sheets().size();
    const int checked = m_checks.checkedCount();
    if (all == 0) {
        return "Нечего проверять";
    }
    if (m_isBusy) {
        return QString("Проверяется: %1 из %2").arg(m_reached).arg(all);
    }
    if (checked == 0) {
        return "Ещё не проверено";
    }
    const int findings = m_ui->findingsTree->findingCount();
    const int documents = m_ui->findingsTree->documentCount();
    QString line = "Замечаний нет";
    if (findings > 0) {
        line = "Замечаний: " + QString::number(findings);
        line += documents > 0
                    ? QString(" в %1 %2")
                          .arg(documents)
                          .arg(nounFor(documents, "документе", "документах", "документах"))
                    : QString(" к бланкам");
    }
    if (checked < all) {
        line += QString(", не проверено: %1").arg(all - checked);
    } else if (m_isOutdated) {
        line += ". База изменилась, проверьте снова";
    }
    return line;
}

QString CheckStep::statusBeforeChoice() const
{
    return m_checks.checkedCount() > 0 ? "Выбор изменился, проверьте снова" : "Ещё не проверено";
}

void CheckStep::connectViews()
{
    connect(&m_checks, &SheetChecks::progressed, this, &CheckStep::showProgress);
    connect(&m_checks, &SheetChecks::sheetSettled, this, &CheckStep::settleSheet);
    connect(m_ui->findingsTree, &FindingsTree::chosen, this, &CheckStep::showSheet);
    connect(m_ui->proofView, &ProofView::frameClicked, m_ui->findingsTree,
            &FindingsTree::selectFrame);
    connect(m_ui->proofView, &ProofView::stepped, m_ui->findingsTree, &FindingsTree::step);
    connect(m_ui->proofView, &ProofView::zoomChanged, this, &CheckStep::showZoom);
}

void CheckStep::connectButtons()
{
    connect(m_ui->checkButton, &QPushButton::clicked, this, &CheckStep::checkNow);
    connect(m_ui->stopButton, &QPushButton::clicked, this, &CheckStep::stop);
    connect(m_ui->onlyFindingsCheck, &QCheckBox::toggled, m_ui->findingsTree,
            &FindingsTree::setOnlyFindings);
    connect(m_ui->onlyFindingsCheck, &QCheckBox::toggled, this, &CheckStep::showState);
    connect(m_ui->holdErrorsCheck, &QCheckBox::toggled, this, &CheckStep::statusChanged);
    connect(m_ui->zoomInButton, &QPushButton::clicked, m_ui->proofView, &ProofView::zoomIn);
    connect(m_ui->zoomOutButton, &QPushButton::clicked, m_ui->proofView, &ProofView::zoomOut);
    connect(m_ui->fitWidthButton, &QPushButton::clicked, m_ui->proofView, &ProofView::fitWidth);
    connect(m_ui->previousButton, &QPushButton::clicked, this,
            [this] { m_ui->findingsTree->step(-1); });
    connect(m_ui->nextButton, &QPushButton::clicked, this, [this] { m_ui->findingsTree->step(1); });
    connect(m_ui->reportButton, &QPushButton::clicked, this, &CheckStep::saveReport);
    connect(m_ui->toPrintButton, &QPushButton::clicked, this, &CheckStep::finished);
}

void CheckStep::showProgress(int sheet, int count)
{
    m_reached = sheet;
    m_ui->progressBar->setMaximum(count);
    m_ui->progressBar->setValue(sheet);
    emit statusChanged();
}

void CheckStep::settleSheet(int sheet)
{
    m_ui->findingsTree->addSheet(sheet);
}

void CheckStep::showSheet(int sheet, int frame)
{
    const PrintSheet& wanted = m_checks.sheets()[sheet].sheet;
    m_ui->findingLabel->setText(m_ui->findingsTree->currentText());
    if (sheet == m_shown) {
        m_ui->proofView->markFrame(frame);
        return;
    }
    m_shown = sheet;
    m_page->setBackgroundPrinted(wanted.withBackground);
    if (wanted.blank.id.isNull()) {
        m_ui->proofView->showNotice(problemText(SheetOutcome::Reason::NoBlanks));
        return;
    }
    if (!m_page->check(wanted.document.id, wanted.blank.id)) {
        m_ui->proofView->showNotice(problemText(SheetOutcome::Reason::Unreadable));
        return;
    }
    if (m_page->sheetSize().isEmpty()) {
        m_ui->proofView->showNotice("Ширина или высота листа 0: показать нечего");
        return;
    }
    const bool withBackground = wanted.withBackground;
    const auto draw = [this, withBackground](int dpi) {
        return ProofPicture(*m_page, dpi, withBackground).drawSheetAlone();
    };
    m_ui->proofView->showSheet({draw, m_page->sheetSize(), m_page->frames(), m_page->findings()});
    m_ui->proofView->markFrame(frame);
}

void CheckStep::showZoom()
{
    const int percent = m_ui->proofView->zoomPercent();
    m_ui->zoomLabel->setText(percent > 0 ? QString("%1 %").arg(percent) : QString());
    const bool hasSheet = percent > 0;
    for (QPushButton* button : {m_ui->zoomInButton, m_ui->zoomOutButton, m_ui->fitWidthButton}) {
        button->setEnabled(hasSheet);
    }
}

void CheckStep::saveReport()
{
    const QString pdfFilter = "Листы с замечаниями на них (*.pdf)";
    const QString csvFilter = "Таблица (*.csv)";
    QString filter = pdfFilter;
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    const QString chosen = QFileDialog::getSaveFileName(
        this, "Сохранить отчёт", folder + "/Проверка.pdf", pdfFilter + ";;" + csvFilter, &filter);
    if (chosen.isEmpty()) {
        return;
    }
    const bool isTable = chosen.endsWith(".csv", Qt::CaseInsensitive) ||
                         (filter == csvFilter && !chosen.endsWith(".pdf", Qt::CaseInsensitive));
    const QString suffix = isTable ? ".csv" : ".pdf";
    const QString path = chosen.endsWith(suffix, Qt::CaseInsensitive) ? chosen : chosen + suffix;
    const CheckReport report(m_checks, m_ui->findingsTree->shownSheets());
    setBusy(true);
    QString error;
    const bool isWritten =
        isTable ? report.writeCsv(path, &error)
                : report.writePdf(
                      path, [this](int sheet, int count) { return goesOn(sheet, count); }, &error);
    setBusy(false);
    if (!isWritten && !error.isEmpty()) {
        QMessageBox::critical(this, "Ошибка",
                              plainMessage("Не удалось сохранить отчёт\n" + path + "\n" + error));
    }
}

bool CheckStep::goesOn(int sheet, int count)
{
    showProgress(sheet, count);
    QCoreApplication::processEvents();
    return !m_stops;
}

void CheckStep::setBusy(bool busy)
{
    m_isBusy = busy;
    m_stops = false;
    m_reached = 0;
    m_ui->progressBar->setValue(0);
    showState();
    emit busyChanged(busy);
}

void CheckStep::showState()
{
    const bool hasSheets = !m_checks.sheets().isEmpty();
    const bool isReady = !m_isBusy && hasSheets;
    m_ui->checkButton->setEnabled(isReady);
    m_ui->stopButton->setEnabled(m_isBusy);
    m_ui->progressBar->setEnabled(m_isBusy);
    m_ui->toPrintButton->setEnabled(isReady);
    m_ui->holdErrorsCheck->setEnabled(!m_isBusy);
    m_ui->reportButton->setEnabled(isReady && !m_ui->findingsTree->shownSheets().isEmpty());
    m_ui->problemLabel->setText(m_isBusy ? QString() : m_checks.problem());
    m_ui->problemLabel->setVisible(!m_ui->problemLabel->text().isEmpty());
    m_ui->findingsTree->setNotice(emptyTreeNotice());
    showZoom();
    emit statusChanged();
}

QString CheckStep::emptyTreeNotice() const
{
    if (m_checks.sheets().isEmpty()) {
        return "Сначала отметьте документы на шаге «Документы»";
    }
    if (m_isBusy) {
        return "Идёт проверка…";
    }
    return m_checks.checkedCount() == 0 ? "Нажмите «Проверить»: программа посмотрит каждый лист"
                                        : "Замечаний нет";
}
