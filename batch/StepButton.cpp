#include "batch/StepButton.h"

#include <QPainter>

namespace {

const QColor accentColor("#7C99FF");
const QColor darkAccentColor("#4A63D0");
const QColor textColor("#404040");
const QColor statusColor("#6A7080");

QFont textFont(int pixels, bool isBold)
{
    QFont font("Roboto");
    font.setPixelSize(pixels);
    font.setBold(isBold);
    return font;
}

} // namespace

StepButton::StepButton(QWidget* parent)
    : QAbstractButton(parent)
{
    setCheckable(true);
    setAutoExclusive(true);
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::PointingHandCursor);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void StepButton::setNumber(int number)
{
    m_number = number;
    setShortcut(QKeySequence(QString("Ctrl+%1").arg(number)));
    setToolTip(QString("Ctrl+%1").arg(number));
}

void StepButton::setStatus(const QString& status)
{
    if (status == m_status) {
        return;
    }
    m_status = status;
    setAccessibleDescription(status);
    update();
}

QSize StepButton::sizeHint() const
{
    return {220, 78};
}

void StepButton::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (isChecked() || underMouse()) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(isChecked() ? QColor("#FFFFFF") : QColor("#EEF2FF"));
        painter.drawRoundedRect(rect(), 6, 6);
    }
    if (hasFocus()) {
        painter.setPen(QPen(accentColor, 1.5));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), 6, 6);
    }
    const QRectF circle(12, 13, 26, 26);
    painter.setPen(QPen(accentColor, 1.5));
    painter.setBrush(isChecked() ? accentColor : QColor("#FFFFFF"));
    painter.drawEllipse(circle);
    painter.setPen(isChecked() ? QColor("#FFFFFF") : darkAccentColor);
    painter.setFont(textFont(13, true));
    painter.drawText(circle, Qt::AlignCenter, QString::number(m_number));

    const int left = 50;
    painter.setPen(textColor);
    painter.setFont(textFont(15, isChecked()));
    painter.drawText(QRect(left, 13, width() - left - 6, 26), Qt::AlignVCenter, text());
    painter.setPen(statusColor);
    painter.setFont(textFont(12, false));
    // Two lines hold the longest of them.
    painter.drawText(QRect(left, 40, width() - left - 6, 34), Qt::TextWordWrap, m_status);
}
