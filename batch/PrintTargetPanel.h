#pragma once

#include <QWidget>

#include <memory>
#include <optional>

#include "batch/PlannedSheet.h"
#include "printing/PrintTarget.h"

class QPrinter;

namespace Ui {
class PrintTargetPanel;
}

/// Where a batch is printed: a printer of the system, one PDF file, or a file a document.
class PrintTargetPanel : public QWidget
{
    Q_OBJECT

public:
    explicit PrintTargetPanel(QWidget* parent = nullptr);
    ~PrintTargetPanel() override;

    /// The target as it is chosen. The printer, if it is one, belongs to the panel and stays until
    /// another one is chosen. Nothing, with what is missing in `error`, if the choice is not whole.
    std::optional<PrintTarget> target(QString* error);

    PrintTarget::Kind kind() const;

    /// Empty for a file.
    QString printerName() const;

    /// The documents whose file names are shown for example.
    void setSheets(const QVector<PlannedSheet>& sheets);

    /// Names the common file anew, so that what was printed before stays: "Дипломы (2).pdf".
    void takeFreeFileName();

signals:
    void changed();

protected:
    void showEvent(QShowEvent* event) override;

private:
    void fillTargets();
    void showTarget();
    void showMargins();
    void showNames();
    void chooseFile();
    void chooseFolder();
    void setUpPrinter();
    QPrinter* printer();

    std::unique_ptr<Ui::PrintTargetPanel> m_ui;
    std::unique_ptr<QPrinter> m_printer;
    QVector<PrintDocument> m_examples;
};
