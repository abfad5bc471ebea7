#pragma once

#include <QWidget>

#include <functional>
#include <memory>
#include <optional>

#include "batch/BatchJournal.h"
#include "batch/PlannedSheet.h"
#include "batch/PrintRun.h"
#include "batch/SheetResults.h"

namespace Ui {
class PrintStep;
}

/// The third step: where and in which order the sheets are printed, the printing itself, and what
/// became of each sheet.
class PrintStep : public QWidget
{
    Q_OBJECT

public:
    /// Asked before anything is printed, and when the database changes meanwhile: brings the check
    /// up to date and returns the sheets as they are then, or nothing if printing must not go on
    /// (the callee has told why).
    using Prepare = std::function<std::optional<QVector<PlannedSheet>>()>;

    explicit PrintStep(QWidget* parent = nullptr);
    ~PrintStep() override;

    /// The sheets in the order of the list. The same sheets as before keep their outcomes. Not to
    /// be called while it is busy.
    void setSheets(const QVector<PlannedSheet>& sheets);
    void setPrepare(const Prepare& prepare) { m_prepare = prepare; }

    QString printerName() const; ///< empty: a PDF
    bool isBusy() const;

    /// Stops between two sheets.
    void stop();

    /// What the step knows, in a line.
    QString statusLine() const;

signals:
    void statusChanged();
    void busyChanged(bool busy);
    void printerChanged(const QString& name);

private:
    enum class Page
    {
        SetUp,
        Work,
        Results
    };

    void connectWidgets();
    void showPage(Page page);
    void showSetUp();
    void onTargetChanged();
    void beginWith(const QVector<PlannedSheet>& sheets);
    void beginAnew() { beginWith(m_results.listed()); }
    void showRows(const QVector<int>& rows);

    void printAll();
    void printRest();
    void printTicked();
    bool prepare();
    bool takeOver(const QVector<PlannedSheet>& sheets);
    void print(const QVector<int>& rows);
    bool mayWriteFile();
    bool openJournal();
    PrintPlan planOf(const QVector<int>& rows) const;

    void onSheetChanged(int sheet);
    void onRunChanged();
    void showWork();
    void showSheetPanel();
    void showResults();
    void showTicks();
    void spoilTicked();
    void saveJournal();

    std::unique_ptr<Ui::PrintStep> m_ui;
    Prepare m_prepare;
    BatchJournal m_journal;
    SheetResults m_results;
    std::unique_ptr<PrintRun> m_run; // the last one
    PrintTarget m_target;            // of the run
    Page m_page = Page::SetUp;
    bool m_isPreparing = false;
};
