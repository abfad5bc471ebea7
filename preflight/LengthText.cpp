#include "preflight/LengthText.h"

QString lengthText(double millimetres, int decimals, const QLocale& locale)
{
    return locale.toString(millimetres, 'f', decimals);
}
