#include "render/QrPixmap.h"

#include <QByteArray>
#include <QImage>
#include <QPixmap>
#include <QString>

#include "render/QrEncoder.h"

namespace {

constexpr int levelM = 1;
constexpr int lowestVersion = 12;
constexpr int anyMask = -1;

constexpr uint black = 0;
constexpr uint white = 1;

} // namespace

void makeQrPixmap(const QString& text, QPixmap& pixmap)
{
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): a plain work area
    QrEncoder encoder;
    encoder.moduleCount = 0; // stays so for a refused text, which draws the quiet zone alone
    // kept: the result is not looked at, and the bytes are UTF-8 without saying so: scanners guess
    // it.
    encoder.encodeData(levelM, lowestVersion, true, anyMask, text.toUtf8().constData(), 0);

    const int side = encoder.moduleCount + 2 * qrQuietZone;
    QImage image(side, side, QImage::Format_Mono);
    image.fill(white);
    for (int x = 0; x < encoder.moduleCount; ++x) {
        for (int y = 0; y < encoder.moduleCount; ++y) {
            if (encoder.modules[x][y] != 0) {
                image.setPixel(x + qrQuietZone, y + qrQuietZone, black);
            }
        }
    }
    pixmap = QPixmap::fromImage(image);
}
