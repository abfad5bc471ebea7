#include "printing/BatchCheck.h"

#include "printing/BatchObserver.h"
#include "printing/SheetOutcome.h"

BatchCheck::BatchCheck(const QVector<PrintSheet>& sheets, BatchObserver& observer,
                       std::shared_ptr<PageSet> pages)
    : m_sheets(sheets)
    , m_observer(observer)
    , m_check(std::move(pages))
{
}

bool BatchCheck::run()
{
    for (int sheet = 0; sheet < m_sheets.size(); ++sheet) {
        if (!m_observer.goesOn(sheet, m_sheets.size())) {
            return false;
        }
        checkSheet(sheet);
    }
    return true;
}

bool BatchCheck::checkSheet(int sheet)
{
    const PrintSheet& wanted = m_sheets[sheet];
    m_check.setBackgroundPrinted(wanted.withBackground);
    if (wanted.blank.id.isNull() || !m_check.check(wanted.document.id, wanted.blank.id)) {
        m_observer.sheetNotChecked(sheet, SheetOutcome::withoutPage(wanted));
        return false;
    }
    m_observer.sheetChecked(sheet, m_check);
    return true;
}
