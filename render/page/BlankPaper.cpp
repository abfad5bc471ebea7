#include "render/page/BlankPaper.h"

#include <QDebug>
#include <QPageLayout>
#include <QPrinter>
#include <QSqlQuery>
#include <QVariant>

#include "blanks/BlankRecord.h"

BlankPaper::BlankPaper(int orientation, int format, const QSizeF& size)
    : m_orientation(orientation)
    , m_format(format)
    , m_size(size)
{
}

QString BlankPaper::storedSize(const QSqlQuery& row)
{
    const auto text = [&row](const char* column) {
        const QString stored = row.value(QLatin1String(column)).toString();
        return stored.isEmpty() ? QString("0") : stored;
    };
    return text("SIZE_WIDTH") + QString::fromUtf8(" × ") + text("SIZE_HEIGHT");
}

void BlankPaper::setOn(QPrinter& printer) const
{
    printer.setPageOrientation(isLandscape() ? QPageLayout::Landscape : QPageLayout::Portrait);
    if (!isKnown()) {
        qDebug() << "PrinPreviewDialog Error: Unknown page format";
        return;
    }
    printer.setPageSize(printerSize());
}

QSize BlankPaper::pageSize() const
{
    return {mmToPixels(static_cast<int>(m_size.width())),
            mmToPixels(static_cast<int>(m_size.height()))};
}

QSizeF BlankPaper::sheetSize() const
{
    const QSizeF upright = printerSize().size(QPageSize::Millimeter);
    return isLandscape() ? upright.transposed() : upright;
}

double BlankPaper::unitLength() const
{
    const QSizeF page = pageSize();
    if (page.isEmpty()) {
        return 0;
    }
    const QSizeF sheet = sheetSize();
    return qMin(sheet.width() / page.width(), sheet.height() / page.height());
}

bool BlankPaper::isKnown() const
{
    return m_format == PaperFormat::a4 || m_format == PaperFormat::a5 ||
           m_format == PaperFormat::customMm;
}

bool BlankPaper::isLandscape() const
{
    return m_orientation == PaperOrientation::landscape;
}

QPageSize BlankPaper::printerSize() const
{
    switch (m_format) {
    case PaperFormat::a5:
        return QPageSize(QPageSize::A5);
    case PaperFormat::customMm:
        // kept: height first, also for portrait. Existing blanks are made for it. A size in
        // millimetres is taken exactly: matched to the nearest named size, it could be a millimetre
        // off, and every mark with it.
        return QPageSize(QSizeF(m_size.height(), m_size.width()), QPageSize::Millimeter, QString(),
                         QPageSize::ExactMatch);
    default:
        return QPageSize(QPageSize::A4);
    }
}
