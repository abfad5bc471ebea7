#include "documents/ZelvoraTextButton.h"

ZelvoraTextButton::ZelvoraTextButton(QWidget* parent)
    : QPushButton(parent)
{
}

QString ZelvoraTextButton::value() const
{
    return m_value;
}

void ZelvoraTextButton::setValue(const QString& value)
{
    m_value = value;
}
