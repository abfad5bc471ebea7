#include "blanks/FontFamily.h"

#include <QFontComboBox>
#include <QLineEdit>

void showFontFamily(QFontComboBox* combo, const QString& family)
{
    // Without an entry of its own a family must not stand over another entry: choosing that one
    // would then count as no change.
    combo->setCurrentIndex(combo->findText(family));
    combo->setEditText(family);
    combo->lineEdit()->home(false);
}

QString searchableFamily(const QString& family)
{
    constexpr int longest = 256;
    return family.size() <= longest ? family : QString();
}
