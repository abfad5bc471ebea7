#pragma once

#include "app/widgets/NoticeTable.h"
#include "batch/PlannedSheet.h"
#include "printing/SheetOutcome.h"

/// The sheets of a batch in the order of printing, with what became of each.
class ResultsTable : public NoticeTable
{
    Q_OBJECT

public:
    explicit ResultsTable(QWidget* parent = nullptr);

    /// Lists the sheets; none is ticked.
    void setSheets(const QVector<PlannedSheet>& sheets, const QVector<SheetOutcome>& outcomes);

    /// Shows what a row's sheet is and what became of it. `event` stands in the place of the
    /// outcome, if it is not empty.
    void showSheet(int row, const PlannedSheet& sheet, const SheetOutcome& outcome,
                   const QString& event = QString());

    /// Makes a row the current one, in sight.
    void goTo(int row);

    /// Whether rows can be ticked; ticks are taken away in any case.
    void setTickable(bool isTickable);
    QVector<int> ticked() const;

protected:
    void keyPressEvent(QKeyEvent* event) override;
};
