#include "app/widgets/NoticeTable.h"

#include <QPainter>

void NoticeTable::setNotice(const QString& notice)
{
    m_notice = notice;
    viewport()->update();
}

void NoticeTable::paintEvent(QPaintEvent* event)
{
    QTableWidget::paintEvent(event);
    if (rowCount() > 0 || m_notice.isEmpty()) {
        return;
    }
    QPainter painter(viewport());
    painter.setPen(QColor("#878787"));
    painter.drawText(viewport()->rect(), Qt::AlignCenter | Qt::TextWordWrap, m_notice);
}
