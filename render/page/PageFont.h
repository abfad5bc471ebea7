#pragma once

#include <QFont>

/// A font as a page takes it. Hinting fits letters to the dots of a screen, and widths with them: a
/// line would end elsewhere on paper with each setting of the desktop.
inline QFont pageFont(QFont font)
{
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}
