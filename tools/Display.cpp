#include "tools/Display.h"

#include <QByteArray>

void useNoDisplay()
{
    // Elsewhere a program of the command line always has its platform.
#if defined(Q_OS_UNIX) && !defined(Q_OS_MACOS)
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
#endif
}
