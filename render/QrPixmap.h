#pragma once

class QPixmap;
class QString;

/// Width of the white edge of a symbol on each side, in modules.
constexpr int qrQuietZone = 4;

/// Draws `text` as a QR symbol into `pixmap`: black on white, one pixel per module, with the quiet
/// zone on each side. The symbol has error correction level M and at least version 12, so the
/// pixmap is at least 73 pixels square. The text ends at its first zero character. A text that is
/// empty or too long for a symbol gives 8 by 8 white pixels.
void makeQrPixmap(const QString& text, QPixmap& pixmap);
