#pragma once

#include <QDialog>
#include <QString>

#include <memory>

namespace Ui {
class TextMemoDialog;
}

/// Editor of a long text, for entry and, in read-only mode, for reading.
class TextMemoDialog : public QDialog
{
    Q_OBJECT

public:
    explicit TextMemoDialog(QWidget* parent = nullptr);
    ~TextMemoDialog() override;

    void setText(const QString& text);
    QString text() const;

    void setReadOnly(bool readOnly);

private:
    std::unique_ptr<Ui::TextMemoDialog> ui;
};
