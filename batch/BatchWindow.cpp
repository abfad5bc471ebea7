#include "batch/BatchWindow.h"

#include <QCloseEvent>
#include <QMessageBox>

#include "app/AppHelpers.h"
#include "app/AppStyle.h"
#include "app/SharpIcon.h"
#include "batch/CalibrationDialog.h"
#include "store/OrgData.h"
#include "ui_BatchWindow.h"

BatchWindow::BatchWindow(QWidget* parent)
    : QMainWindow(parent)
    , m_ui(std::make_unique<Ui::BatchWindow>())
{
    m_ui->setupUi(this);
    applyBaseStyle(this);
    setWindowIcon(QIcon(":/res/zelvora-batch.png"));
    m_ui->logo->setPixmap(sharpPixmap(":/logo.png"));
    int number = 0;
    for (StepButton* button : {m_ui->documentsButton, m_ui->checkStepButton, m_ui->printStepButton})
    {
        button->setNumber(++number);
    }
    constexpr int aWhile = 2000; // milliseconds: what another program stores takes less
    m_retry.setInterval(aWhile);
    m_retry.setSingleShot(true);
    connect(&m_retry, &QTimer::timeout, this, [this] {
        if (isBusy()) {
            m_retry.start();
        } else {
            reload();
        }
    });
    connectSteps();
    reload();
    showStep(Documents);
}

BatchWindow::~BatchWindow() = default;

bool BatchWindow::reload()
{
    QString error;
    const bool isRead = readDatabase(&error);
    m_ui->databaseProblem->setText(error);
    m_ui->databaseProblem->setVisible(!isRead);
    m_ui->databaseLabel->setWholeText(appFilePath("docs.db"));
    if (isRead) {
        m_retry.stop();
        if (m_ui->steps->currentIndex() != Documents) {
            takeChoice();
        }
        m_ui->checkStep->setOutdated();
    } else {
        m_retry.start();
    }
    showStatus();
    return isRead;
}

void BatchWindow::changeEvent(QEvent* event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow() && !isBusy() &&
        m_database.hasChanged())
    {
        reload();
    }
}

void BatchWindow::closeEvent(QCloseEvent* event)
{
    if (!isBusy()) {
        event->accept();
        return;
    }
    event->ignore();
    if (m_ui->printStep->isBusy() && !askYesNo("Идёт печать. Остановить её и закрыть окно?", this))
    {
        return;
    }
    if (!isBusy()) { // it came to its end while the question stood there
        event->accept();
        return;
    }
    m_isClosing = true;
    stopAll();
}

void BatchWindow::connectSteps()
{
    connect(m_ui->documentsButton, &StepButton::clicked, this, [this] { showStep(Documents); });
    connect(m_ui->checkStepButton, &StepButton::clicked, this, [this] { showStep(Check); });
    connect(m_ui->printStepButton, &StepButton::clicked, this, [this] { showStep(Print); });
    connect(m_ui->documentsStep, &DocumentsStep::choiceChanged, this, [this] {
        m_hasChoice = false;
        showStatus();
    });
    connect(m_ui->documentsStep, &DocumentsStep::finished, this, &BatchWindow::goOnToCheck);
    connect(m_ui->checkStep, &CheckStep::statusChanged, this, &BatchWindow::showStatus);
    connect(m_ui->checkStep, &CheckStep::busyChanged, this, &BatchWindow::showBusy);
    connect(m_ui->checkStep, &CheckStep::finished, this, [this] { showStep(Print); });
    connect(m_ui->printStep, &PrintStep::statusChanged, this, &BatchWindow::showStatus);
    connect(m_ui->printStep, &PrintStep::busyChanged, this, &BatchWindow::showBusy);
    connect(m_ui->printStep, &PrintStep::printerChanged, m_ui->checkStep, &CheckStep::setPrinter);
    m_ui->printStep->setPrepare([this] { return prepare(); });
    connect(m_ui->calibrationAction, &QAction::triggered, this, &BatchWindow::calibrate);
    connect(m_ui->refreshAction, &QAction::triggered, this, &BatchWindow::reload);
    connect(m_ui->closeAction, &QAction::triggered, this, &QWidget::close);
}

void BatchWindow::showStep(int step)
{
    if (step != Documents && !isBusy()) {
        takeChoice();
    }
    if (step == Print && !isBusy()) {
        m_ui->checkStep->setPrinter(m_ui->printStep->printerName());
        handOver();
    }
    m_ui->steps->setCurrentIndex(step);
    m_ui->documentsButton->setChecked(step == Documents);
    m_ui->checkStepButton->setChecked(step == Check);
    m_ui->printStepButton->setChecked(step == Print);
    if (step == Documents) {
        m_ui->documentsStep->takeFocus();
    }
    showStatus();
}

void BatchWindow::goOnToCheck()
{
    showStep(Check);
    m_ui->checkStep->checkNow();
}

void BatchWindow::takeChoice()
{
    if (m_hasChoice || m_ui->checkStep->isBusy()) {
        return;
    }
    m_ui->checkStep->setSheets(m_ui->documentsStep->sheets());
    m_hasChoice = true;
    if (!isBusy()) {
        handOver();
    }
}

void BatchWindow::handOver()
{
    m_ui->printStep->setSheets(m_ui->checkStep->sheets());
}

void BatchWindow::calibrate()
{
    const QVector<PlannedSheet> sheets = m_ui->documentsStep->sheets();
    CalibrationDialog dialog(sheets.isEmpty() ? QVariant() : sheets.first().sheet.blank.id, this);
    dialog.exec();
    if (m_database.hasChanged()) {
        reload();
    }
}

std::optional<QVector<PlannedSheet>> BatchWindow::prepare()
{
    // The file is opened anew in any case: what is checked here is what is printed next.
    if (!reload()) {
        QMessageBox::warning(this, "Печать партии",
                             plainMessage("Печать не начата.\n" + m_ui->databaseProblem->text()));
        return std::nullopt;
    }
    takeChoice();
    if (!checkBeforePrint()) {
        return std::nullopt;
    }
    return m_ui->checkStep->sheets();
}

bool BatchWindow::checkBeforePrint()
{
    // What takes no time is not worth another page.
    constexpr int aMoment = 300; // milliseconds
    QTimer shows;
    shows.setSingleShot(true);
    connect(&shows, &QTimer::timeout, this, [this] {
        m_ui->checkStep->setEnabled(true);
        m_ui->steps->setCurrentIndex(Check);
    });
    shows.start(aMoment);
    const bool isChecked = m_ui->checkStep->checkNow();
    shows.stop();
    const QString problem = m_ui->checkStep->problem();
    if (isChecked || problem.isEmpty()) {
        m_ui->steps->setCurrentIndex(Print);
    } else {
        showStep(Check); // which says why
    }
    return isChecked;
}

void BatchWindow::showStatus()
{
    m_ui->documentsButton->setStatus(m_ui->documentsStep->statusLine());
    m_ui->checkStepButton->setStatus(m_hasChoice ? m_ui->checkStep->statusLine()
                                                 : m_ui->checkStep->statusBeforeChoice());
    m_ui->printStepButton->setStatus(m_ui->printStep->statusLine());
}

void BatchWindow::showBusy()
{
    m_ui->documentsStep->setEnabled(!isBusy());
    m_ui->checkStep->setEnabled(!m_ui->printStep->isBusy() || m_ui->checkStep->isBusy());
    m_ui->refreshAction->setEnabled(!isBusy());
    m_ui->calibrationAction->setEnabled(!isBusy());
    if (!isBusy()) {
        handOver();
    }
    showStatus();
    if (m_isClosing && !isBusy()) {
        // Whoever is busy has still to come back from what it did.
        QMetaObject::invokeMethod(this, &QWidget::close, Qt::QueuedConnection);
    }
}

bool BatchWindow::isBusy() const
{
    return m_ui->checkStep->isBusy() || m_ui->printStep->isBusy();
}

void BatchWindow::stopAll()
{
    m_ui->checkStep->stop();
    m_ui->printStep->stop();
}

bool BatchWindow::readDatabase(QString* error)
{
    // A database that can't be read stays as it was in the window: what the user has chosen is not
    // lost because another program stores something.
    if (!m_database.open(error)) {
        return false;
    }
    if (readOrgData() == OrgDataFile::Broken) {
        *error = "Не удалось прочитать данные организации " + orgDataPath +
                 ". Откройте в основной программе «Смена данных организации».";
        return false;
    }
    if (!m_ui->documentsStep->load()) {
        if (BatchDatabase::isReadable(error)) {
            *error = "Базу данных не удалось прочитать. Нажмите F5, чтобы попробовать снова.";
        }
        return false;
    }
    return true;
}
