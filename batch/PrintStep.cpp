#include "batch/PrintStep.h"

#include <QDate>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QScopedValueRollback>
#include <QStandardPaths>

#include <algorithm>

#include "app/AppHelpers.h"
#include "app/widgets/ClickGuard.h"
#include "batch/RunWords.h"
#include "batch/SheetOrder.h"
#include "ui_PrintStep.h"

namespace {

void tell(QWidget* parent, const QString& text)
{
    QMessageBox::about(parent, "Ошибка", plainMessage(text));
}

} // namespace

PrintStep::PrintStep(QWidget* parent)
    : QWidget(parent)
    , m_ui(std::make_unique<Ui::PrintStep>())
{
    m_ui->setupUi(this);
    connectWidgets();
    beginWith({});
    onTargetChanged();
}

PrintStep::~PrintStep() = default;

void PrintStep::connectWidgets()
{
    for (QPushButton* button :
         {m_ui->printButton, m_ui->printRestButton, m_ui->repeatMarkedButton, m_ui->spoiltButton})
    {
        ClickGuard::install(button);
    }
    connect(m_ui->targetPanel, &PrintTargetPanel::changed, this, &PrintStep::onTargetChanged);
    for (QComboBox* combo : {m_ui->orderCmb, m_ui->blanksOrderCmb}) {
        connect(combo, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
                &PrintStep::beginAnew);
    }
    connect(m_ui->printButton, &QPushButton::clicked, this, &PrintStep::printAll);
    connect(m_ui->printRestButton, &QPushButton::clicked, this, &PrintStep::printRest);
    connect(m_ui->repeatMarkedButton, &QPushButton::clicked, this, &PrintStep::printTicked);
    connect(m_ui->spoiltButton, &QPushButton::clicked, this, &PrintStep::spoilTicked);
    connect(m_ui->saveJournalButton, &QPushButton::clicked, this, &PrintStep::saveJournal);
    connect(m_ui->anewButton, &QPushButton::clicked, this, &PrintStep::beginAnew);
    connect(m_ui->stopButton, &QPushButton::clicked, this, &PrintStep::stop);
    connect(m_ui->resultsTable, &QTableWidget::itemChanged, this, &PrintStep::showTicks);
    connect(m_ui->sheetPanel, &SheetPanel::nextClicked, this, [this] {
        m_run->state() == PrintRun::State::AwaitsPaper ? m_run->goOn() : m_run->printSheet();
    });
    connect(m_ui->sheetPanel, &SheetPanel::repeatClicked, this, [this] { m_run->repeatSheet(); });
    connect(m_ui->sheetPanel, &SheetPanel::skipClicked, this, [this] { m_run->skipSheet(); });
}

void PrintStep::setSheets(const QVector<PlannedSheet>& sheets)
{
    if (isBusy() || takeOver(sheets)) {
        return;
    }
    beginWith(sheets);
}

QString PrintStep::printerName() const
{
    return m_ui->targetPanel->printerName();
}

bool PrintStep::isBusy() const
{
    return m_isPreparing || (m_run && m_run->state() != PrintRun::State::Ended);
}

void PrintStep::stop()
{
    if (m_run) {
        m_run->stop();
    }
}

QString PrintStep::statusLine() const
{
    if (m_page == Page::SetUp) {
        return m_results.count() == 0 ? QString("Печатать нечего")
                                      : QString("Листов: %1").arg(m_results.count());
    }
    return totals(m_results.outcomes());
}

void PrintStep::showPage(Page page)
{
    m_page = page;
    m_ui->settings->setVisible(page != Page::Work);
    m_ui->orderCmb->setEnabled(page == Page::SetUp);
    m_ui->blanksOrderCmb->setEnabled(page == Page::SetUp);
    m_ui->setUpBar->setVisible(page == Page::SetUp);
    m_ui->workBar->setVisible(page == Page::Work);
    m_ui->resultsBar->setVisible(page == Page::Results);
    if (page != Page::Work) {
        m_ui->sheetPanel->hide();
    }
    emit statusChanged();
}

/// Forgets what was printed: nothing of it is marked any more.
void PrintStep::beginWith(const QVector<PlannedSheet>& sheets)
{
    m_run.reset();
    m_journal.clear();
    SheetOrder order;
    order.by = static_cast<SheetOrder::By>(m_ui->orderCmb->currentIndex());
    order.blankAfterBlank = m_ui->blanksOrderCmb->currentIndex() == 0;
    m_results.begin(sheets, order);
    m_ui->blanksOrderCmb->setVisible(blankCount(sheets) > 1);
    m_ui->resultsTable->setSheets(m_results.sheets(), m_results.outcomes());
    m_ui->targetPanel->setSheets(m_results.sheets());
    showPage(Page::SetUp);
    showSetUp();
}

void PrintStep::showSetUp()
{
    const QVector<PlannedSheet>& sheets = m_results.sheets();
    const int count = sheets.size();
    const int printable =
        static_cast<int>(std::count_if(sheets.cbegin(), sheets.cend(), isPrintable));
    QString text = count > 0 ? QString("Листов: %1.").arg(count) : QString();
    if (printable < count) {
        text += QString(" Не печатается: %1 — из-за ошибок или без бланка.").arg(count - printable);
    }
    m_ui->summaryLabel->setText(text);
    m_ui->printButton->setEnabled(printable > 0);
    emit statusChanged();
}

void PrintStep::onTargetChanged()
{
    const bool isPrinter = m_ui->targetPanel->kind() == PrintTarget::Kind::Printer;
    m_ui->sheetModeCheck->setEnabled(isPrinter);
    emit printerChanged(printerName());
}

void PrintStep::printAll()
{
    if (prepare()) {
        m_journal.clear();
        print(m_results.allRows());
    }
}

void PrintStep::printRest()
{
    if (prepare()) {
        print(m_results.unprintedRows());
    }
}

void PrintStep::printTicked()
{
    const QVector<int> rows = m_ui->resultsTable->ticked();
    if (prepare()) {
        print(rows);
    }
}

/// Brings the sheets up to date; false if nothing is to be printed.
bool PrintStep::prepare()
{
    if (!m_prepare) {
        return true;
    }
    std::optional<QVector<PlannedSheet>> sheets;
    {
        const QScopedValueRollback<bool> guard(m_isPreparing, true);
        sheets = m_prepare();
    }
    if (!sheets) {
        return false;
    }
    if (takeOver(*sheets)) {
        return true;
    }
    // Other documents than those that the list shows: the user has to see them first.
    beginWith(*sheets);
    tell(this, "Список листов изменился. Посмотрите его и нажмите «Печать» ещё раз.");
    return false;
}

/// What is new about the sheets of the list. False if they are others.
bool PrintStep::takeOver(const QVector<PlannedSheet>& sheets)
{
    if (!m_results.takeOver(sheets)) {
        return false;
    }
    showRows(m_results.allRows());
    if (m_page == Page::SetUp) {
        showSetUp();
    }
    return true;
}

void PrintStep::showRows(const QVector<int>& rows)
{
    for (const int row : rows) {
        m_ui->resultsTable->showSheet(row, m_results.sheets()[row], m_results.outcomes()[row]);
    }
}

void PrintStep::print(const QVector<int>& rows)
{
    if (!m_results.isAnyPrintable(rows)) {
        tell(this, "Печатать нечего: эти листы отложены из-за ошибок или у них нет бланка.");
        return;
    }
    QString error;
    const std::optional<PrintTarget> target = m_ui->targetPanel->target(&error);
    if (!target) {
        tell(this, error);
        return;
    }
    m_target = *target;
    if (!mayWriteFile() || !openJournal()) {
        return;
    }
    auto run = std::make_unique<PrintRun>(planOf(rows), m_journal);
    run->setRefresh([this] { return m_prepare ? m_prepare() : m_results.listed(); });
    if (!run->begin()) {
        tell(this, refusalOf(m_target));
        return;
    }
    m_run = std::move(run);
    connect(m_run.get(), &PrintRun::sheetChanged, this, &PrintStep::onSheetChanged);
    connect(m_run.get(), &PrintRun::stateChanged, this, &PrintStep::onRunChanged);
    m_results.beginRun(rows);
    showRows(rows);
    m_ui->resultsTable->setTickable(false);
    m_ui->progressBar->setRange(0, rows.size());
    // Neither another step nor the button that stops shall be pressed by a further Return or Space.
    m_ui->resultsTable->setFocus();
    showPage(Page::Work);
    showWork();
    emit busyChanged(true);
}

/// A file that is there stays if it is of this batch; else the user decides.
bool PrintStep::mayWriteFile()
{
    if (m_target.kind != PrintTarget::Kind::OneFile || !QFileInfo::exists(m_target.place)) {
        return true;
    }
    if (m_page == Page::Results) {
        m_ui->targetPanel->takeFreeFileName();
        m_target = *m_ui->targetPanel->target(nullptr);
        return true;
    }
    return askYesNo(
        plainMessage("Файл «" + QFileInfo(m_target.place).fileName() + "» уже есть. Заменить его?"),
        this);
}

/// Without a journal a power cut leaves no list of what was printed: the user has to know before
/// the first sheet.
bool PrintStep::openJournal()
{
    QString error;
    return m_journal.open(&error) ||
           askYesNo(plainMessage("Журнал печати не записывается: " + error + ".\n" +
                                 m_journal.path() +
                                 "\n\nЕсли компьютер выключится, списка напечатанного не "
                                 "останется. Печатать без журнала?"),
                    this);
}

PrintPlan PrintStep::planOf(const QVector<int>& rows) const
{
    PrintPlan plan;
    plan.target = m_target;
    const bool isPrinter = m_target.kind == PrintTarget::Kind::Printer;
    plan.bySheet = isPrinter && m_ui->sheetModeCheck->isChecked();
    plan.pausesForPaper = isPrinter && m_ui->blanksOrderCmb->currentIndex() == 0;
    plan.sheets = m_results.sheetsFor(rows, plan.target);
    return plan;
}

void PrintStep::onSheetChanged(int sheet)
{
    m_results.take(sheet, m_run->sheets()[sheet], m_run->outcomes()[sheet]);
    showRows({m_results.rowOfRun(sheet)});
}

void PrintStep::onRunChanged()
{
    if (m_run->state() != PrintRun::State::Ended) {
        showWork();
        emit statusChanged();
        return;
    }
    for (int sheet = 0; sheet < m_results.rowsOfRun().size(); ++sheet) {
        onSheetChanged(sheet); // a common file that came to nothing takes all with it
    }
    showResults();
    emit busyChanged(false);
}

void PrintStep::showWork()
{
    const int sheet = m_run->current();
    m_ui->progressBar->setValue(m_run->dealt());
    m_ui->workLabel->setWholeText(inWords(*m_run, m_target));
    showSheetPanel();
    if (sheet < 0) {
        return;
    }
    const int row = m_results.rowOfRun(sheet);
    const bool isPrinting = m_run->state() == PrintRun::State::Printing;
    m_ui->resultsTable->showSheet(row, m_results.sheets()[row], m_results.outcomes()[row],
                                  isPrinting ? "печатается" : "ждёт");
    m_ui->resultsTable->goTo(row);
}

void PrintStep::showSheetPanel()
{
    SheetPanel* panel = m_ui->sheetPanel;
    switch (m_run->state()) {
    case PrintRun::State::AwaitsSheet:
        panel->askForSheet(m_run->sheets()[m_run->current()], m_run->isRepeat());
        break;
    case PrintRun::State::AwaitsPaper:
        panel->askForPaper(m_run->sheets()[m_run->current()].blankName, m_run->sheetsOnThisPaper());
        break;
    case PrintRun::State::AwaitsEnd:
        panel->askAtEnd();
        break;
    default:
        panel->setVisible(m_run->isBySheet());
        panel->setButtons(false, false);
        return;
    }
    panel->show();
    panel->setButtons(true, m_run->canRepeat());
}

void PrintStep::showResults()
{
    showPage(Page::Results);
    m_ui->resultsTable->setTickable(true);
    m_ui->resultLabel->setText(endingOf(*m_run, m_target) + ' ' + totals(m_results.outcomes()) +
                               '.');
    m_ui->printRestButton->setEnabled(!m_results.unprintedRows().isEmpty());
    showTicks();
    m_ui->resultsTable->setFocus();
}

void PrintStep::showTicks()
{
    if (m_page != Page::Results) {
        return;
    }
    const QVector<int> rows = m_ui->resultsTable->ticked();
    m_ui->repeatMarkedButton->setEnabled(!rows.isEmpty());
    m_ui->spoiltButton->setEnabled(std::any_of(
        rows.cbegin(), rows.cend(), [this](int row) { return m_results.isPrinted(row); }));
}

void PrintStep::spoilTicked()
{
    const QVector<int> rows = m_ui->resultsTable->ticked();
    for (const int row : rows) {
        if (!m_results.isPrinted(row)) {
            continue;
        }
        m_results.markSpoilt(row);
        const SheetOutcome& outcome = m_results.outcomes()[row];
        m_journal.add(entryOf(m_results.sheets()[row], outcome.file, m_target, inWords(outcome)));
    }
    showRows(rows);
    showResults();
}

void PrintStep::saveJournal()
{
    const QString name =
        QString("%1/Журнал печати %2.csv")
            .arg(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation),
                 QDate::currentDate().toString("yyyy-MM-dd"));
    const QString file =
        QFileDialog::getSaveFileName(this, "Журнал печати", name, "Таблица CSV (*.csv)");
    QString error;
    if (!file.isEmpty() && !m_journal.saveAs(file, &error)) {
        tell(this, "Не удалось записать файл «" + QFileInfo(file).fileName() + "»: " + error);
    }
}
