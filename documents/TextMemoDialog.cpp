#include "documents/TextMemoDialog.h"

#include <QTextDocument>

#include "ui_TextMemoDialog.h"

// The one dialog that does not put the base style in front of its own: it shows the text as the
// window that opened it does.
TextMemoDialog::TextMemoDialog(QWidget* parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::TextMemoDialog>())
{
    ui->setupUi(this);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
}

TextMemoDialog::~TextMemoDialog() = default;

void TextMemoDialog::setText(const QString& text)
{
    ui->textEdit->setDocument(new QTextDocument(text, this));
}

QString TextMemoDialog::text() const
{
    return ui->textEdit->document()->toPlainText();
}

void TextMemoDialog::setReadOnly(bool readOnly)
{
    ui->textEdit->setReadOnly(readOnly);
}
