#pragma once

#include <QVector>
#include <QWidget>

#include <memory>

#include "batch/PlannedSheet.h"
#include "batch/SheetChecks.h"
#include "preflight/PageCheck.h"

namespace Ui {
class CheckStep;
}

/// The second step: looks at the sheets before paper is spent, and shows what was found on each.
class CheckStep : public QWidget
{
    Q_OBJECT

public:
    explicit CheckStep(QWidget* parent = nullptr);
    ~CheckStep() override;

    /// The sheets that are to be checked. What is known of those that were among the last ones
    /// stays. Does nothing while the step is busy.
    void setSheets(const QVector<PlannedSheet>& sheets);

    /// Checks what has not been checked or has changed since. Serves events meanwhile. False if the
    /// user stopped it or the database can't be read; the step then says so.
    bool checkNow();

    /// The sheets with what the check found.
    QVector<PlannedSheet> sheets() const;

    /// Takes the margins of a printer into account; empty for none.
    void setPrinter(const QString& name);

    /// Says that what was checked may have changed.
    void setOutdated();

    bool isBusy() const { return m_isBusy; }

    /// Stops between two sheets, as stopButton does.
    void stop();

    /// Why the last check ended early; empty if the user stopped it, or it did not.
    QString problem() const { return m_checks.problem(); }

    /// "Замечаний: 3 в 2 документах".
    QString statusLine() const;

    /// The same while other documents are being chosen.
    QString statusBeforeChoice() const;

signals:
    void statusChanged();
    void busyChanged(bool busy);

    /// The user is done with this step.
    void finished();

private:
    void connectViews();
    void connectButtons();
    void showProgress(int sheet, int count);
    void settleSheet(int sheet);
    void showSheet(int sheet, int frame);
    void showZoom();
    void saveReport();
    bool goesOn(int sheet, int count);
    void setBusy(bool busy);
    void showState();
    QString emptyTreeNotice() const;

    std::unique_ptr<Ui::CheckStep> m_ui;
    SheetChecks m_checks;
    QString m_printer;
    std::unique_ptr<PageCheck> m_page; // of the sheet that is shown
    int m_shown = -1;                  // sheet
    int m_reached = 0;
    bool m_isBusy = false;
    bool m_stops = false;
    bool m_isOutdated = false;
};
