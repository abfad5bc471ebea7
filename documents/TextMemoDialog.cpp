#include "documents/TextMemoDialog.h"

#include <QTextDocument>

#include "ui_TextMemoDialog.h"

// The one dialog that does not put the base style in front of its own: it shows the text as the
// window that opened it does.
TextMemoDialog::TextMemoDialog(QWidget* parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::TextMemoDialog>())
{
    m_ui->setupUi(this);
}

TextMemoDialog::~TextMemoDialog() = default;

void TextMemoDialog::setText(const QString& text)
{
    m_ui->textEdit->setDocument(new QTextDocument(text, this));
}

QString TextMemoDialog::text() const
{
    return m_ui->textEdit->document()->toPlainText();
}

void TextMemoDialog::setReadOnly(bool readOnly)
{
    m_ui->textEdit->setReadOnly(readOnly);
}
