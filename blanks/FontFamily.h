#pragma once

#include <QString>

class QFontComboBox;

/// Shows a font family in a combo by its name. A family that is not installed stays as it is, while
/// the combo's own setter would silently replace it. Read it back as the combo's current text.
void showFontFamily(QFontComboBox* combo, const QString& family);

/// A stored family as a font takes it: as it is, or empty, the system's default, if it is longer
/// than any name. Looking for a font takes time and memory by the length of its name.
QString searchableFamily(const QString& family);
