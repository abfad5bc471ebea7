#include "batch/CalibrationDialog.h"

#include <QFileDialog>
#include <QMessageBox>
#include <QPainter>
#include <QPrinter>
#include <QPrinterInfo>
#include <QSqlQuery>
#include <QStandardPaths>

#include "app/AppHelpers.h"
#include "app/AppStyle.h"
#include "app/widgets/LongItems.h"
#include "blanks/BlankRecord.h"
#include "printing/PdfFile.h"
#include "printing/calibration/CalibrationSheet.h"
#include "printing/calibration/OffsetWords.h"
#include "ui_CalibrationDialog.h"

namespace {

using Axis = OffsetWords::Axis;

void tell(QWidget* parent, const QString& text)
{
    QMessageBox::about(parent, "Ошибка", plainMessage(text));
}

/// What was typed, in millimetres; an empty field is a zero.
std::optional<double> numberIn(const QLineEdit* edit)
{
    return edit->text().trimmed().isEmpty() ? 0 : PrintOffsets::millimetres(edit->text());
}

QString offsetText(int millimetres)
{
    return QString::number(millimetres).replace('-', QChar(0x2212));
}

} // namespace

CalibrationDialog::CalibrationDialog(const QVariant& blank, QWidget* parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::CalibrationDialog>())
{
    m_ui->setupUi(this);
    const QString own = styleSheet();
    applyBaseStyle(this);
    setStyleSheet(styleSheet() + own);
    LongItems::install(m_ui->blankCmb);
    LongItems::install(m_ui->printerCmb);
    m_ui->pictureX->setAxis(Axis::X);
    m_ui->pictureY->setAxis(Axis::Y);
    fillBlanks(blank);
    fillPrinters();
    connect(m_ui->blankCmb, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &CalibrationDialog::loadBlank);
    for (QLineEdit* edit : {m_ui->offsetXEdit, m_ui->offsetYEdit}) {
        connect(edit, &QLineEdit::textChanged, this, &CalibrationDialog::showOffsets);
    }
    connect(m_ui->printSheetButton, &QPushButton::clicked, this, &CalibrationDialog::printSheet);
    connect(m_ui->writeOffsetsButton, &QPushButton::clicked, this,
            &CalibrationDialog::writeOffsets);
    loadBlank();
}

CalibrationDialog::~CalibrationDialog() = default;

void CalibrationDialog::fillBlanks(const QVariant& current)
{
    QSqlQuery query;
    query.setForwardOnly(true);
    query.exec("SELECT ID, NAME FROM blanks ORDER BY ID");
    while (query.next()) {
        const QVariant id = query.value("ID");
        m_ui->blankCmb->addItem(shownBlankName(query.value("NAME").toString(), id), id);
    }
    m_ui->blankCmb->setCurrentIndex(qMax(m_ui->blankCmb->findData(current), 0));
}

void CalibrationDialog::fillPrinters()
{
    for (const QString& name : QPrinterInfo::availablePrinterNames()) {
        m_ui->printerCmb->addItem(name, name);
    }
    m_ui->printerCmb->addItem("PDF: один файл", QString());
    const int usual = m_ui->printerCmb->findData(QPrinterInfo::defaultPrinterName());
    m_ui->printerCmb->setCurrentIndex(qMax(usual, 0));
}

void CalibrationDialog::loadBlank()
{
    m_blank.reset();
    if (m_ui->blankCmb->currentIndex() < 0) {
        m_problem = "В базе данных нет бланков.";
    } else {
        m_blank = BlankOffsets::read(m_ui->blankCmb->currentData(), &m_problem);
        m_problem = "Бланк не прочитан: " + m_problem + ".";
    }
    m_ui->printSheetButton->setEnabled(m_blank.has_value());
    showOffsets();
}

std::optional<QPoint> CalibrationDialog::newOffsets() const
{
    const std::optional<double> x = numberIn(m_ui->offsetXEdit);
    const std::optional<double> y = numberIn(m_ui->offsetYEdit);
    if (!m_blank || m_blank->paper().unitLength() <= 0 || !x || !y) {
        return std::nullopt;
    }
    const PrintOffsets offsets(m_blank->paper().unitLength());
    return QPoint(offsets.offsetFor(*x).value, offsets.offsetFor(*y).value);
}

void CalibrationDialog::showOffsets()
{
    const double unit = m_blank ? m_blank->paper().unitLength() : 0;
    const OffsetWords words{QLocale(QLocale::Russian)};
    const auto show = [&](const QLineEdit* edit, CalibrationPicture* picture, QLabel* label,
                          Axis axis) {
        const std::optional<double> read = numberIn(edit);
        picture->setReadOff(read.value_or(0));
        if (!read) {
            label->setText("Введите число миллиметров, например 1,5 или -2.");
        } else {
            label->setText(unit > 0 ? words.inWords(PrintOffsets(unit).offsetFor(*read), axis)
                                    : QString());
        }
    };
    show(m_ui->offsetXEdit, m_ui->pictureX, m_ui->resultXLabel, Axis::X);
    show(m_ui->offsetYEdit, m_ui->pictureY, m_ui->resultYLabel, Axis::Y);
    if (!m_blank) {
        m_ui->currentLabel->setText(m_problem);
    } else if (unit <= 0) {
        m_ui->currentLabel->setText("Ширина или высота бланка — ноль.");
    } else {
        m_ui->currentLabel->setText(
            QString(
                "Сейчас у бланка X %1 мм, Y %2 мм. На проверочном листе они не действуют: новые "
                "числа заменяют их.")
                .arg(offsetText(m_blank->offsets().x()), offsetText(m_blank->offsets().y())));
    }
    const std::optional<QPoint> offsets = newOffsets();
    m_ui->writeOffsetsButton->setEnabled(offsets && *offsets != m_blank->offsets());
}

void CalibrationDialog::printSheet()
{
    const CalibrationSheet sheet(m_blank->paper(), m_blank->name());
    const QString printer = m_ui->printerCmb->currentData().toString();
    if (!printer.isEmpty()) {
        if (printToPrinter(sheet, printer)) {
            m_ui->offsetXEdit->setFocus();
        }
        return;
    }
    const QString file = QFileDialog::getSaveFileName(
        this, "Проверочный лист",
        QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation) +
            "/Проверочный лист.pdf",
        "PDF (*.pdf)");
    if (!file.isEmpty() && printToFile(sheet, file)) {
        m_ui->offsetXEdit->setFocus();
    }
}

bool CalibrationDialog::printToFile(const CalibrationSheet& sheet, const QString& file)
{
    PdfFile pdf(file);
    CalibrationSheet::Result result = CalibrationSheet::Result::PrinterRefused;
    const bool isPrinted = pdf.open() && pdf.addPage([&](QPrinter& printer, QPainter& painter) {
        result = sheet.print(printer, painter);
        return result == CalibrationSheet::Result::Printed;
    });
    if (result == CalibrationSheet::Result::PaperTooSmall) {
        tell(this, QString("Лист бланка меньше %1 мм, шкалы на нём не поместятся.")
                       .arg(CalibrationSheet::smallestSide));
        return false;
    }
    if (!isPrinted || !pdf.commit()) {
        tell(this, "Не удалось записать файл «" + file + "».");
        return false;
    }
    return true;
}

bool CalibrationDialog::printToPrinter(const CalibrationSheet& sheet, const QString& name)
{
    const QPrinterInfo info = QPrinterInfo::printerInfo(name);
    if (info.isNull()) {
        tell(this, "Системе больше не виден принтер «" + name + "». Лист не напечатан.");
        return false;
    }
    QPrinter printer(info, QPrinter::HighResolution);
    QPainter painter;
    switch (sheet.print(printer, painter)) {
    case CalibrationSheet::Result::Printed:
        return true;
    case CalibrationSheet::Result::PaperTooSmall:
        tell(this, QString("Лист бланка меньше %1 мм, шкалы на нём не поместятся.")
                       .arg(CalibrationSheet::smallestSide));
        return false;
    case CalibrationSheet::Result::PrinterRefused:
        break;
    }
    tell(this, "Принтер «" + name + "» не принял лист.");
    return false;
}

void CalibrationDialog::writeOffsets()
{
    const QPoint offsets = *newOffsets();
    const QString question =
        QString("Записать в бланк «%1» смещение печати X %2 мм, Y %3 мм?")
            .arg(m_blank->name(), offsetText(offsets.x()), offsetText(offsets.y()));
    if (!askYesNo(plainMessage(question), this)) {
        return;
    }
    QString error;
    switch (m_blank->write(offsets, &error)) {
    case BlankOffsets::Result::Written:
        QMessageBox::information(this, "Zelvora",
                                 "Смещение печати записано. Проверьте его на чистом листе: "
                                 "напечатайте документ и приложите к бланку.");
        break;
    case BlankOffsets::Result::Changed:
        tell(this, "Бланк за это время изменили или удалили, смещение не записано. Посмотрите, что "
                   "в нём теперь, и запишите ещё раз.");
        break;
    case BlankOffsets::Result::Failed:
        tell(this, "Смещение не записано: в базу данных не удалось ничего записать (" + error +
                       "). Посмотрите, можно ли писать в папку " + appDirPath() +
                       " и не занята ли база другой программой.");
        break;
    }
    loadBlank();
}
