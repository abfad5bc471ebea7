#pragma once

#include <QWidget>

#include <memory>

#include "batch/PlannedSheet.h"

namespace Ui {
class SheetPanel;
}

/// What the user is to lay into the printer, in letters that can be read from there, with the
/// buttons that say that it is done.
class SheetPanel : public QWidget
{
    Q_OBJECT

public:
    explicit SheetPanel(QWidget* parent = nullptr);
    ~SheetPanel() override;

    /// Asks for the numbered form of a sheet, anew for one that was spoilt.
    void askForSheet(const PlannedSheet& sheet, bool isRepeat);

    /// Asks for the paper of a blank, for so many sheets.
    void askForPaper(const QString& blankName, int sheets);

    /// All sheets had their turn; the last one can still be repeated.
    void askAtEnd();

    /// Whether the sheet before can be repeated. No button does anything while a sheet is printed.
    void setButtons(bool canGoOn, bool canRepeat);

    QString paper() const; ///< as it stands there large

signals:
    void nextClicked();
    void repeatClicked();
    void skipClicked();

private:
    void tell(const QString& caption, const QString& paper, const QString& details);

    std::unique_ptr<Ui::SheetPanel> m_ui;
};
