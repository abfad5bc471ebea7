#pragma once

#include <QDialog>

#include <memory>
#include <optional>

#include "batch/BlankOffsets.h"

class CalibrationSheet;

namespace Ui {
class CalibrationDialog;
}

/// Brings the print of a blank to its place on a printer: prints the test sheet, takes what was
/// read off it, tells what offsets follow and what they do on paper, and stores them in the blank.
class CalibrationDialog : public QDialog
{
    Q_OBJECT

public:
    /// `blank` is the ID of the blank that is current at the start, or null.
    explicit CalibrationDialog(const QVariant& blank, QWidget* parent = nullptr);
    ~CalibrationDialog() override;

private:
    void fillBlanks(const QVariant& current);
    void fillPrinters();
    void loadBlank();
    void showOffsets();
    std::optional<QPoint> newOffsets() const;

    void printSheet();
    bool printToFile(const CalibrationSheet& sheet, const QString& file);
    bool printToPrinter(const CalibrationSheet& sheet, const QString& name);
    void writeOffsets();

    std::unique_ptr<Ui::CalibrationDialog> m_ui;
    std::optional<BlankOffsets> m_blank; // the current one
    QString m_problem;                   // why there is none
};
