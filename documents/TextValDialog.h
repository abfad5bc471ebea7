#pragma once

#include <QDialog>
#include <QString>

#include <memory>

namespace Ui {
class TextValDialog;
}

/// Prompt for one line of text; the window title, set by the caller, says what for.
class TextValDialog : public QDialog
{
    Q_OBJECT

public:
    explicit TextValDialog(QWidget* parent = nullptr);
    ~TextValDialog() override;

    /// The entered text; empty until the dialog has been accepted. An empty text is a valid result.
    QString value() const;

public slots:
    void onDone();

private:
    std::unique_ptr<Ui::TextValDialog> ui;
    QString m_value;
};
