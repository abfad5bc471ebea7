#include "batch/PrintTargetPanel.h"

#include <QDate>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QPrintDialog>
#include <QPrinter>
#include <QPrinterInfo>
#include <QSignalBlocker>
#include <QStandardPaths>

#include "app/widgets/LongItems.h"
#include "preflight/LengthText.h"
#include "printing/FileNamePattern.h"
#include "ui_PrintTargetPanel.h"

namespace {

constexpr int kindRole = Qt::UserRole;
constexpr int printerRole = Qt::UserRole + 1;

QString documentsFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
}

QString batchName()
{
    return "Партия " + QDate::currentDate().toString("yyyy-MM-dd");
}

QString millimetres(double length)
{
    const QString text = lengthText(length, 1, QLocale(QLocale::Russian));
    return text.endsWith(",0") ? text.chopped(2) : text;
}

bool fail(QString* error, const QString& reason)
{
    if (error) {
        *error = reason;
    }
    return false;
}

} // namespace

PrintTargetPanel::PrintTargetPanel(QWidget* parent)
    : QWidget(parent)
    , m_ui(std::make_unique<Ui::PrintTargetPanel>())
{
    m_ui->setupUi(this);
    LongItems::install(m_ui->targetCmb);
    m_ui->fileEdit->setText(
        QDir::toNativeSeparators(documentsFolder() + "/" + batchName() + ".pdf"));
    m_ui->folderEdit->setText(QDir::toNativeSeparators(documentsFolder() + "/" + batchName()));
    fillTargets();
    showTarget();
    connect(m_ui->targetCmb, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            [this] { showTarget(); });
    connect(m_ui->patternEdit, &QLineEdit::textChanged, this, [this] { showNames(); });
    connect(m_ui->propertiesButton, &QPushButton::clicked, this, [this] { setUpPrinter(); });
    connect(m_ui->fileButton, &QPushButton::clicked, this, [this] { chooseFile(); });
    connect(m_ui->folderButton, &QPushButton::clicked, this, [this] { chooseFolder(); });
}

PrintTargetPanel::~PrintTargetPanel() = default;

/// The system's printers as they are now, and the kinds of files. What was chosen stays chosen.
void PrintTargetPanel::fillTargets()
{
    QComboBox* targets = m_ui->targetCmb;
    const QString printerBefore = printerName();
    const bool isFirst = targets->count() == 0;
    const PrintTarget::Kind kindBefore = kind();
    const QSignalBlocker blocker(targets);
    targets->clear();
    QStringList printers = QPrinterInfo::availablePrinterNames();
    // One that has gone stays chosen: nothing may go elsewhere unasked.
    if (!printerBefore.isEmpty() && !printers.contains(printerBefore)) {
        printers << printerBefore;
    }
    for (const QString& name : printers) {
        targets->addItem(name, static_cast<int>(PrintTarget::Kind::Printer));
        targets->setItemData(targets->count() - 1, name, printerRole);
    }
    targets->addItem("PDF: один файл", static_cast<int>(PrintTarget::Kind::OneFile));
    targets->addItem("PDF: файл на документ", static_cast<int>(PrintTarget::Kind::FilePerDocument));
    const QString wanted = isFirst ? QPrinterInfo::defaultPrinterName() : printerBefore;
    const int sameKind = targets->findData(static_cast<int>(kindBefore), kindRole);
    const int samePrinter = targets->findData(wanted, printerRole);
    targets->setCurrentIndex(wanted.isEmpty() || samePrinter < 0 ? qMax(sameKind, 0) : samePrinter);
}

PrintTarget::Kind PrintTargetPanel::kind() const
{
    const QVariant kind = m_ui->targetCmb->currentData(kindRole);
    return kind.isValid() ? static_cast<PrintTarget::Kind>(kind.toInt())
                          : PrintTarget::Kind::OneFile;
}

QString PrintTargetPanel::printerName() const
{
    return m_ui->targetCmb->currentData(printerRole).toString();
}

std::optional<PrintTarget> PrintTargetPanel::target(QString* error)
{
    PrintTarget target;
    target.kind = kind();
    switch (target.kind) {
    case PrintTarget::Kind::Printer:
        target.place = printerName();
        target.printer = printer();
        return target;
    case PrintTarget::Kind::OneFile:
        target.place = QDir::fromNativeSeparators(m_ui->fileEdit->text().trimmed());
        if (target.place.isEmpty()) {
            fail(error, "Укажите файл, в который печатать.");
            return std::nullopt;
        }
        if (!target.place.endsWith(".pdf", Qt::CaseInsensitive)) {
            target.place += ".pdf";
        }
        return target;
    case PrintTarget::Kind::FilePerDocument:
        break;
    }
    target.place = QDir::fromNativeSeparators(m_ui->folderEdit->text().trimmed());
    target.namePattern = m_ui->patternEdit->text();
    if (target.place.isEmpty()) {
        fail(error, "Укажите папку, в которую печатать.");
        return std::nullopt;
    }
    if (!FileNamePattern(target.namePattern).isValid()) {
        fail(error, "В именах файлов не сходятся фигурные скобки.");
        return std::nullopt;
    }
    return target;
}

void PrintTargetPanel::setSheets(const QVector<PlannedSheet>& sheets)
{
    constexpr int shown = 3;
    m_examples.clear();
    for (int i = 0; i < qMin(shown, sheets.size()); ++i) {
        m_examples.append(sheets[i].sheet.document);
    }
    showNames();
}

void PrintTargetPanel::takeFreeFileName()
{
    const QFileInfo taken(QDir::fromNativeSeparators(m_ui->fileEdit->text().trimmed()));
    QString free = taken.filePath();
    for (int number = 2; QFileInfo::exists(free); ++number) {
        free = QString("%1/%2 (%3).pdf").arg(taken.path(), taken.completeBaseName()).arg(number);
    }
    m_ui->fileEdit->setText(QDir::toNativeSeparators(free));
}

void PrintTargetPanel::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    const QString before = printerName();
    fillTargets();
    if (printerName() != before) {
        showTarget();
    }
}

void PrintTargetPanel::showTarget()
{
    const bool isPrinter = kind() == PrintTarget::Kind::Printer;
    m_printer.reset();
    m_ui->propertiesButton->setVisible(isPrinter);
    m_ui->marginsLabel->setVisible(isPrinter);
    m_ui->fileRow->setVisible(kind() == PrintTarget::Kind::OneFile);
    m_ui->folderRow->setVisible(kind() == PrintTarget::Kind::FilePerDocument);
    showMargins();
    showNames();
    emit changed();
}

void PrintTargetPanel::showMargins()
{
    if (kind() != PrintTarget::Kind::Printer) {
        return;
    }
    QPageLayout layout = printer()->pageLayout();
    layout.setUnits(QPageLayout::Millimeter);
    const QMarginsF margins = layout.minimumMargins();
    m_ui->marginsLabel->setText(
        margins.isNull()
            ? QString("Принтер не сообщает, какие поля он оставляет пустыми.")
            : QString("Принтер не печатает у краёв: слева %1, сверху %2, справа %3, снизу %4 мм. "
                      "Проверка это учитывает.")
                  .arg(millimetres(margins.left()), millimetres(margins.top()),
                       millimetres(margins.right()), millimetres(margins.bottom())));
}

void PrintTargetPanel::showNames()
{
    if (kind() != PrintTarget::Kind::FilePerDocument) {
        return;
    }
    FileNamePattern pattern(m_ui->patternEdit->text());
    if (!pattern.isValid()) {
        m_ui->namesLabel->setText("Не сходятся фигурные скобки.");
        return;
    }
    QStringList names;
    for (const PrintDocument& document : m_examples) {
        const std::optional<QString> name = pattern.nameFor(document);
        if (name) {
            names << m_ui->namesLabel->fontMetrics().elidedText(*name, Qt::ElideMiddle, 300);
        }
    }
    m_ui->namesLabel->setText(
        names.isEmpty() ? QString()
                        : "Например: " + names.join(", ") +
                              ". Файлы с такими именами, если они в папке есть, заменяются.");
}

void PrintTargetPanel::chooseFile()
{
    const QString file =
        QFileDialog::getSaveFileName(this, "Файл партии", m_ui->fileEdit->text(), "PDF (*.pdf)",
                                     nullptr, QFileDialog::DontConfirmOverwrite);
    if (!file.isEmpty()) {
        m_ui->fileEdit->setText(QDir::toNativeSeparators(file));
    }
}

void PrintTargetPanel::chooseFolder()
{
    const QString folder =
        QFileDialog::getExistingDirectory(this, "Папка партии", m_ui->folderEdit->text());
    if (!folder.isEmpty()) {
        m_ui->folderEdit->setText(QDir::toNativeSeparators(folder));
    }
}

/// Copies, paper and pages come from the batch, whatever is chosen of them in the system's dialog.
void PrintTargetPanel::setUpPrinter()
{
    QPrintDialog dialog(printer(), this);
    dialog.setWindowTitle("Свойства принтера");
    dialog.setOptions(QAbstractPrintDialog::PrintShowPageSize);
    dialog.exec();
    const int chosen = m_ui->targetCmb->findData(m_printer->printerName(), printerRole);
    if (chosen >= 0 && chosen != m_ui->targetCmb->currentIndex()) {
        const QSignalBlocker blocker(m_ui->targetCmb); // the printer stays as it was set up
        m_ui->targetCmb->setCurrentIndex(chosen);
        emit changed();
    }
    showMargins();
}

QPrinter* PrintTargetPanel::printer()
{
    if (!m_printer) {
        m_printer = std::make_unique<QPrinter>(QPrinterInfo::printerInfo(printerName()),
                                               QPrinter::HighResolution);
    }
    return m_printer.get();
}
