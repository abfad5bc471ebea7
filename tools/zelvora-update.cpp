#include <QCoreApplication>

#include "app/StandardStream.h"
#include "tools/UpdateTool.h"
#include "tools/UserLanguage.h"

int main(int argc, char* argv[])
{
    const QCoreApplication app(argc, argv);
    useUserLanguage();
    StandardStream out(StandardStream::Channel::Output);
    StandardStream err(StandardStream::Channel::Error);
    return runUpdateTool(QCoreApplication::arguments().mid(1), out, err);
}
