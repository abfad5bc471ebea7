#include "support/CheckedPage.h"

#include <QPrinter>
#include <QtTest>

#include "render/PrinPreviewDialog.h"

QVector<Finding> CheckedPage::check(const QJsonArray& items, const QVariantMap& blank,
                                    const QJsonObject& content, const QVariantMap& document)
{
    m_document = addDocument(content, document);
    m_blank = addBlank(items, blank);
    if (!pageCheck.check(m_document, m_blank)) {
        QTest::qFail("the page could not be checked", __FILE__, __LINE__);
    }
    return pageCheck.findings();
}

PdfMeasure CheckedPage::print()
{
    PrinPreviewDialog dialog(m_document);
    dialog.buildScene(dialog.pageScene(), m_document, m_blank);
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(path("page.pdf"));
    dialog.printTo(printer);
    return PdfMeasure(path("page.pdf"));
}
