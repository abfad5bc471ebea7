#include <QApplication>
#include <QFile>

#include <dlfcn.h>

#include <cstdlib>

#include "DeskOperations.h"
#include "Player.h"
#include "app/AppHelpers.h"
#include "app/Startup.h"
#include "documents/MainWindow.h"
#include "store/DataBase.h"
#include "store/OrgData.h"

// Does one thing at the desk through the application's own windows and tells what a user, and
// whoever reads the log, gets to know. The calls of that one thing are those that FaultShim.cpp
// counts.
//
//     fault_worker OPERATION DIRECTORY
//
//     begin           it begins
//     box TITLE: TEXT a message came
//     log TEXT        the application logged a line
//     end             it came to its end
//
// "start" is the application's start with the pending update; "start-and-work" also makes a new
// document then.
//
//     fault_worker restores|organisations DIRECTORY TIMES
//
// does so many of them, one after another, with other data each, and says "trying NUMBER" before
// and "done NUMBER" after each: a process that can be killed at any moment.

namespace {

void tellLog(QtMsgType type, const QMessageLogContext&, const QString& text)
{
    if (type == QtDebugMsg) {
        say("log " + QString(text).replace('\n', ' '));
    } else if (type == QtFatalMsg) {
        say("fatal " + text);
    }
}

void begin()
{
    using Function = void (*)();
    say("begin");
    if (const auto count = reinterpret_cast<Function>(dlsym(RTLD_DEFAULT, "zelvora_fault_begin"))) {
        count();
    }
}

/// What runApplication() does, without the splash.
void start(Player& player, bool works)
{
    begin();
    dataBase.open();
    QFile package(appFilePath("dbUpdate.bin"));
    applyPendingUpdate(package);
    loadOrgData();
    MainWindow window;
    window.show();
    if (works) {
        say("started");
        deskOperations()["new-document"](window, player);
    }
}

void work(const QString& operation, Player& player)
{
    dataBase.open();
    loadOrgData();
    MainWindow window;
    window.show();
    begin();
    deskOperations()[operation](window, player);
}

void doOneOfMany(const QString& operation, int number, MainWindow& window, Player& player)
{
    const QString text = QString::number(number);
    if (operation == "organisations") {
        enterOrganisation(window, player, "Лицей " + text, "Директор " + text);
        return;
    }
    player.chooseFile(appFilePath(number % 2 == 1 ? "storage/archive.zlv" : "storage/other.zlv"));
    window.loadData();
}

void workOften(const QString& operation, int times, Player& player)
{
    dataBase.open();
    MainWindow window;
    window.show();
    begin();
    for (int number = 1; number <= times; ++number) {
        say(QString("trying %1").arg(number));
        doOneOfMany(operation, number, window, player);
        say(QString("done %1").arg(number));
    }
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    const QApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const QString operation = arguments.value(1);
    const bool isStart = operation.startsWith("start");
    const bool isOften = arguments.size() == 4;
    if (arguments.size() < 3 || !(isOften || isStart || deskOperations().contains(operation))) {
        return EXIT_FAILURE;
    }
    setAppDirPath(arguments.at(2));
    orgDataPath = appFilePath("data/orgData.json");
    qInstallMessageHandler(tellLog);
    Player player;
    if (isOften) {
        workOften(operation, arguments.at(3).toInt(), player);
    } else if (isStart) {
        start(player, operation == "start-and-work");
    } else {
        work(operation, player);
    }
    say("end");
    return EXIT_SUCCESS;
}
