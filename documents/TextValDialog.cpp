#include "documents/TextValDialog.h"

#include <QPushButton>

#include "app/AppStyle.h"
#include "ui_TextValDialog.h"

namespace {

void dress(QPushButton* button, const QString& role)
{
    button->setIcon(QIcon());
    button->setProperty("btnRole1", role);
}

} // namespace

TextValDialog::TextValDialog(QWidget* parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::TextValDialog>())
{
    ui->setupUi(this);
    dress(ui->buttonBox->button(QDialogButtonBox::Ok), "accept");
    dress(ui->buttonBox->button(QDialogButtonBox::Cancel), "cancel");
    ui->buttonBox->button(QDialogButtonBox::Cancel)->setText("Отмена");
    applyBaseStyle(this);
    connect(this, &QDialog::accepted, this, &TextValDialog::onDone);
}

TextValDialog::~TextValDialog() = default;

QString TextValDialog::value() const
{
    return m_value;
}

void TextValDialog::onDone()
{
    m_value = ui->valueEdit->text();
}
