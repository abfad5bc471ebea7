#include "printing/SheetPage.h"

#include "printing/PrintSheet.h"
#include "render/page/PagePrinter.h"

bool SheetPage::build(const PrintSheet& sheet)
{
    m_withBackground = sheet.withBackground;
    m_page = m_pages->build(sheet.document.id, sheet.blank.id);
    return m_page != nullptr;
}

bool SheetPage::print(QPrinter& printer, QPainter& painter)
{
    m_page->restore(); // an earlier print has moved it
    PagePrinter page(*m_page);
    page.setBackgroundPrinted(m_withBackground);
    return page.print(printer, painter);
}
