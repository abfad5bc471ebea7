#include "documents/TextValDialog.h"

#include <QPushButton>

#include "app/AppStyle.h"
#include "ui_TextValDialog.h"

TextValDialog::TextValDialog(QWidget* parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::TextValDialog>())
{
    m_ui->setupUi(this);
    m_ui->buttonBox->button(QDialogButtonBox::Ok)->setProperty("btnRole1", "accept");
    m_ui->buttonBox->button(QDialogButtonBox::Cancel)->setProperty("btnRole1", "cancel");
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
    m_value = m_ui->valueEdit->text();
}
