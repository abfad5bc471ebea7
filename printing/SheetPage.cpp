#include "printing/SheetPage.h"

#include "printing/PrintSheet.h"

SheetPage::SheetPage()
    : m_preview(QVariant())
{
}

bool SheetPage::build(const PrintSheet& sheet)
{
    m_preview.setBackgroundPrinted(sheet.withBackground);
    return m_preview.buildScene(m_preview.pageScene(), sheet.document.id, sheet.blank.id);
}

bool SheetPage::print(QPrinter& printer, QPainter& painter)
{
    return m_preview.printPage(printer, painter);
}
