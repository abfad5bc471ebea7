#include "blanks/BlankFormatDialog.h"

#include <QFileDialog>

#include "app/AppHelpers.h"
#include "app/AppStyle.h"
#include "app/widgets/LineStart.h"
#include "app/widgets/LongItems.h"
#include "blanks/BlankRecord.h"
#include "blanks/FontFamily.h"
#include "ui_BlankFormatDialog.h"

BlankFormatDialog::BlankFormatDialog(QWidget* parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::BlankFormatDialog>())
{
    ui->setupUi(this);
    applyBaseStyle(this);
    LineStart::installAll(this);
    LongItems::install(ui->comboBoxForm);
    for (const int code : {PaperFormat::customMm, PaperFormat::a4, PaperFormat::a5}) {
        ui->formatCombo->addItem(paperFormatName(code), code);
    }
    setFontFamily("Times New Roman");
}

BlankFormatDialog::~BlankFormatDialog() = default;

QString BlankFormatDialog::name() const
{
    return ui->blankNameEdit->text();
}

QVariant BlankFormatDialog::form() const
{
    return ui->comboBoxForm->currentData();
}

int BlankFormatDialog::paperFormat() const
{
    return ui->formatCombo->currentData().toInt();
}

int BlankFormatDialog::orientation() const
{
    return ui->landscapeButton->isChecked() ? PaperOrientation::landscape
                                            : PaperOrientation::portrait;
}

int BlankFormatDialog::pages() const
{
    return ui->pagesCombo->currentText().toInt();
}

QString BlankFormatDialog::fontFamily() const
{
    return ui->fontComboBox->currentText();
}

int BlankFormatDialog::fontSize() const
{
    return ui->spinBoxFontSize->value();
}

QString BlankFormatDialog::background() const
{
    return ui->lineEditBG->text();
}

int BlankFormatDialog::pageWidth() const
{
    return ui->widthSpin->value();
}

int BlankFormatDialog::pageHeight() const
{
    return ui->heigthSpin->value();
}

int BlankFormatDialog::offsetX() const
{
    return ui->spinBoxOffsetX->value();
}

int BlankFormatDialog::offsetY() const
{
    return ui->spinBoxOffsetY->value();
}

void BlankFormatDialog::setForms(const QStringList& names, const QVariantList& ids)
{
    for (int i = 0; i < names.size(); ++i) {
        ui->comboBoxForm->addItem(names[i], ids[i]);
    }
}

void BlankFormatDialog::setName(const QString& name)
{
    ui->blankNameEdit->setText(name);
    setWindowTitle("Редактирование бланка: " + name);
}

void BlankFormatDialog::setForm(const QVariant& id)
{
    ui->comboBoxForm->setCurrentIndex(ui->comboBoxForm->findData(id));
}

void BlankFormatDialog::setPaperFormat(int code)
{
    ui->formatCombo->setCurrentIndex(ui->formatCombo->findData(code));
}

void BlankFormatDialog::setOrientation(int code)
{
    if (code == PaperOrientation::landscape) {
        ui->landscapeButton->setChecked(true);
    } else if (code == PaperOrientation::portrait) {
        ui->portraitButton->setChecked(true);
    }
}

void BlankFormatDialog::setPages(int pages)
{
    ui->pagesCombo->setCurrentText(QString::number(pages));
}

void BlankFormatDialog::setFontFamily(const QString& family)
{
    showFontFamily(ui->fontComboBox, family);
}

void BlankFormatDialog::setFontSize(int points)
{
    ui->spinBoxFontSize->setValue(points);
}

void BlankFormatDialog::setBackground(const QString& path)
{
    ui->lineEditBG->setText(path);
}

void BlankFormatDialog::setPageSize(int width, int height)
{
    ui->widthSpin->setValue(width);
    ui->heigthSpin->setValue(height);
}

void BlankFormatDialog::setOffsets(int x, int y)
{
    ui->spinBoxOffsetX->setValue(x);
    ui->spinBoxOffsetY->setValue(y);
}

void BlankFormatDialog::on_buttonSelectBGImg_clicked()
{
    const QString file = QFileDialog::getOpenFileName(
        this, "Фоновое изображение", appFilePath("blanks"), "Image Files (*.png *.jpg *.bmp)");
    if (file.isEmpty()) {
        return;
    }
    // Cut by length alone; a path that is too short for the cut stays whole.
    ui->lineEditBG->setText(file.right(file.length() - appDirPath().length() - 1));
}
