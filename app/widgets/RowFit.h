#pragma once

#include <QObject>

class QTableView;

/// Makes each row of a table as high as its text and keeps it so when a text or the width of a
/// column changes, see fitRows(). It belongs to the table.
class RowFit : public QObject
{
    Q_OBJECT

public:
    /// `lowest` is the height of a row with one line, pixels.
    RowFit(QTableView* table, int lowest);

    /// That of a table; null if its rows don't fit their texts.
    static RowFit* of(const QTableView* table);

    /// Leaves the rows as they are until resume().
    void pause();

    /// Fits all rows; those of a table that is not shown yet when it is, with the widths that the
    /// columns have then.
    void resume();

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void start();
    void columnResized();

    QTableView* m_table;
    bool m_isPaused = false;
    bool m_startsAtShow = false;
    bool m_isPending = false; // the rows follow the columns soon
};
