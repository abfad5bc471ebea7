#include <QGuiApplication>

#include <memory>

#include "app/StandardStream.h"
#include "tools/DatabaseTool.h"
#include "tools/Display.h"
#include "tools/UserLanguage.h"

namespace {

// Painting the sample's backgrounds needs the fonts of a GUI application, but never a window.
std::unique_ptr<QCoreApplication> makeApplication(int& argc, char** argv)
{
    if (argc < 2 || qstrcmp(argv[1], "sample") != 0) {
        return std::make_unique<QCoreApplication>(argc, argv);
    }
    useNoDisplay();
    return std::make_unique<QGuiApplication>(argc, argv);
}

} // namespace

int main(int argc, char* argv[])
{
    const std::unique_ptr<QCoreApplication> app = makeApplication(argc, argv);
    useUserLanguage();
    StandardStream out(StandardStream::Channel::Output);
    StandardStream err(StandardStream::Channel::Error);
    return runDatabaseTool(app->arguments().mid(1), out, err);
}
