#include <QCoreApplication>
#include <QTextStream>

#include <cstdio>

#include "tools/UpdateTool.h"
#include "tools/UserLanguage.h"

int main(int argc, char* argv[])
{
    const QCoreApplication app(argc, argv);
    useUserLanguage();
    QTextStream out(stdout);
    QTextStream err(stderr);
    prepareTerminal(out);
    prepareTerminal(err);
    return runUpdateTool(QCoreApplication::arguments().mid(1), out, err);
}
