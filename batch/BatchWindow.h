#pragma once

#include <QMainWindow>
#include <QTimer>

#include <memory>
#include <optional>

#include "batch/BatchDatabase.h"
#include "batch/PlannedSheet.h"

namespace Ui {
class BatchWindow;
}

/// The window for a whole batch: documents are chosen, checked and printed in three steps. The
/// database is opened for reading alone, and read again when it has changed.
class BatchWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit BatchWindow(QWidget* parent = nullptr);
    ~BatchWindow() override;

    /// Reads the database of the application directory anew. What the user has chosen stays as far
    /// as it is still there. False, with the reason shown in the window, if it can't be read; what
    /// was read before then stays.
    bool reload();

protected:
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    enum Step
    {
        Documents,
        Check,
        Print
    };

    void connectSteps();
    void showStep(int step);
    void goOnToCheck();
    void takeChoice();
    void handOver();
    void calibrate();

    /// Brings list and check up to date before something is printed; nothing, after a word to the
    /// user, if it can't be.
    std::optional<QVector<PlannedSheet>> prepare();
    bool checkBeforePrint();
    void showStatus();
    void showBusy();
    bool isBusy() const;
    void stopAll();
    bool readDatabase(QString* error);

    std::unique_ptr<Ui::BatchWindow> m_ui;
    BatchDatabase m_database;
    QTimer m_retry;           // of a database that was busy
    bool m_hasChoice = false; // the check knows the choice of the first step
    bool m_isClosing = false; // as soon as nothing is under way
};
