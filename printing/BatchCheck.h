#pragma once

#include <QVector>

#include <memory>

#include "preflight/PageCheck.h"
#include "printing/PrintSheet.h"

class BatchObserver;

/// Looks at the pages of a batch before paper is spent. The database must be open.
class BatchCheck
{
public:
    /// The observer has to live as long as the check. With the pages of a batch that prints the
    /// sheets, what is checked need not be laid out again to be printed next.
    BatchCheck(const QVector<PrintSheet>& sheets, BatchObserver& observer,
               std::shared_ptr<PageSet> pages = nullptr);

    /// Takes the printer's margins, to be set before the check begins.
    PageCheck& pageCheck() { return m_check; }

    /// Checks all sheets and tells the observer of each. False if the observer stopped it.
    bool run();

    /// Checks one sheet and tells the observer; false if it can't be checked.
    bool checkSheet(int sheet);

private:
    QVector<PrintSheet> m_sheets;
    BatchObserver& m_observer;
    PageCheck m_check;
};
