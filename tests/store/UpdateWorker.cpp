#include <QApplication>
#include <QFile>

#include <cstdio>

#include "app/AppHelpers.h"
#include "store/DataBase.h"
#include "store/DataBaseUpdater.h"

// Applies the pending package of a directory, as a start of the application does, and says so:
// a process that can be killed at any moment.
//
//     update_worker DIRECTORY

int main(int argc, char* argv[])
{
    QApplication app(argc, argv);
    if (argc < 2) {
        return 2;
    }
    setAppDirPath(QString::fromLocal8Bit(argv[1]));
    if (!dataBase.open()) {
        return 1;
    }
    std::puts("begin");
    std::fflush(stdout);
    QFile package(appFilePath("dbUpdate.bin"));
    if (package.exists()) {
        runDatabaseUpdate(package);
    }
    std::puts("end");
    return 0;
}
