#pragma once

#include <QTableView>
#include <QTreeWidget>

#include <memory>

#include "batch/BatchWindow.h"
#include "support/PrintFixture.h"
#include "support/Widgets.h"

/// The time in which this process has worked, milliseconds: what others do on the machine does not
/// count.
qint64 workedMs();

/// An application directory with documents and blanks and the window for batches over it. Once the
/// window is open its connection only reads: what other programs store goes through change().
class BatchDesk : public PrintFixture
{
public:
    /// Adds a form, whose ID follows that of the last one.
    void addForm(const QString& name);

    /// Adds so many documents of form 1 at once, "Фамилия0001" and so on.
    void addDocuments(int count);

    /// Opens the window, in the size of a small screen, and waits until it is there.
    void open();

    /// Stores something as another program does.
    void change(const QString& statement) const;

    /// Ticks the first rows of the list.
    void tick(int rows) const;

    BatchWindow& window() { return *m_window; }
    QTableView* documents() const { return named<QTableView>(*m_window, "documentsTable"); }
    QTreeWidget* findings() const { return named<QTreeWidget>(*m_window, "findingsTree"); }

    /// What a cell of the list shows.
    QString cell(int row, int column) const;
    QStringList people() const;
    bool isTicked(int row) const;

    /// What the bar says of a step.
    QString status(const QString& button) const;

private:
    std::unique_ptr<BatchWindow> m_window;
};
