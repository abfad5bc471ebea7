#pragma once

#include <QString>

class QFontComboBox;

/// Shows a font family in a combo by its name. A family that is not installed stays as it is, while
/// the combo's own setter would silently replace it. Read it back as the combo's current text.
void showFontFamily(QFontComboBox* combo, const QString& family);
