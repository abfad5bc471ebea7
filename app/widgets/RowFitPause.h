#pragma once

class QTableView;
class RowFit;

/// Leaves the rows of a table that fit their texts (fitRows()) as they are while it is filled, and
/// fits them once at the end, or when the table is shown: fitting them all again at each cell would
/// take long.
class RowFitPause
{
public:
    explicit RowFitPause(const QTableView* table);
    ~RowFitPause();
    RowFitPause(const RowFitPause&) = delete;
    RowFitPause& operator=(const RowFitPause&) = delete;

private:
    RowFit* m_fit;
};
