#include <QApplication>

#include "app/StandardStream.h"
#include "app/TerminalText.h"
#include "tools/Display.h"
#include "tools/PrintTool.h"
#include "tools/UserLanguage.h"

namespace {

// The toolkit's warnings and notes are about windows that are never shown and the desktop's
// folders; the log and what is worse stay, each on a line.
void writeLog(QtMsgType type, const QMessageLogContext&, const QString& message)
{
    if (type != QtWarningMsg && type != QtInfoMsg) {
        StandardStream(StandardStream::Channel::Error) << onOneLine(message) << '\n';
    }
}

} // namespace

int main(int argc, char* argv[])
{
    qInstallMessageHandler(writeLog);
    useNoDisplay();
    const QApplication app(argc, argv);
    useUserLanguage();
    StandardStream out(StandardStream::Channel::Output);
    StandardStream err(StandardStream::Channel::Error);
    return runPrintTool(QApplication::arguments().mid(1), out, err);
}
