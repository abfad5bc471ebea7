#include "app/widgets/HeadingTips.h"

#include <QHeaderView>
#include <QHelpEvent>

#include "app/widgets/CutTextTip.h"

HeadingTips::HeadingTips(QHeaderView* header)
    : QObject(header)
    , m_header(header)
{
    header->setTextElideMode(Qt::ElideRight);
    header->viewport()->installEventFilter(this);
}

void HeadingTips::install(QHeaderView* header)
{
    new HeadingTips(header);
}

bool HeadingTips::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::ToolTip) {
        return QObject::eventFilter(watched, event);
    }
    const auto* help = static_cast<QHelpEvent*>(event);
    const int section = m_header->logicalIndexAt(help->pos());
    if (section < 0 || !isElided(section)) {
        return QObject::eventFilter(watched, event);
    }
    const QRect area(m_header->sectionViewportPosition(section), 0, m_header->sectionSize(section),
                     m_header->height());
    showCutText(help->globalPos(), textOf(section), m_header->viewport(), area);
    return true;
}

bool HeadingTips::isElided(int section) const
{
    // As the header itself reckons what it has for a text.
    const QStyle* style = m_header->style();
    int margins = 2 * style->pixelMetric(QStyle::PM_HeaderMargin, nullptr, m_header);
    const bool isSorted =
        m_header->isSortIndicatorShown() && m_header->sortIndicatorSection() == section;
    if (isSorted && style->styleHint(QStyle::SH_Header_ArrowAlignment) & Qt::AlignVCenter) {
        margins += style->pixelMetric(QStyle::PM_HeaderMarkSize, nullptr, m_header);
    }
    const QString text = textOf(section);
    const int available = m_header->sectionSize(section) - margins;
    return m_header->fontMetrics().elidedText(text, Qt::ElideRight, available) != text;
}

QString HeadingTips::textOf(int section) const
{
    return m_header->model()->headerData(section, Qt::Horizontal).toString();
}
