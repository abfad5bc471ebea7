#include "documents/ZelvoraTableButton.h"

ZelvoraTableButton::ZelvoraTableButton(QWidget* parent)
    : QPushButton(parent)
{
}
