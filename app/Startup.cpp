#include "app/Startup.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QPixmap>
#include <QSplashScreen>
#include <QTimer>

#include <algorithm>
#include <memory>

#include "app/AppHelpers.h"
#include "app/AppStyle.h"
#include "app/SharpIcon.h"
#include "app/StandardStream.h"
#include "documents/MainWindow.h"
#include "store/DataBase.h"
#include "store/DataBaseUpdater.h"
#include "store/OrgData.h"

namespace {

constexpr int splashMs = 2000;       // how long the splash stands at least
constexpr int negligibleWaitMs = 50; // a shorter rest is not waited for

} // namespace

bool versionRequested(int argc, const char* const* argv)
{
    return std::any_of(argv, argv + argc, [](const char* argument) {
        return QString::fromLocal8Bit(argument).toLower() == "--v";
    });
}

void printVersion()
{
    StandardStream(StandardStream::Channel::Output) << appVersion << "\n";
}

int remainingSplashMs(bool timerValid, qint64 elapsedMs)
{
    const qint64 remaining = timerValid ? splashMs - elapsedMs : splashMs;
    return remaining <= negligibleWaitMs ? 0 : static_cast<int>(remaining);
}

void holdSplash(const QElapsedTimer& shown)
{
    const int remaining = remainingSplashMs(shown.isValid(), shown.isValid() ? shown.elapsed() : 0);
    if (remaining == 0) {
        return;
    }
    QEventLoop loop;
    QTimer::singleShot(remaining, &loop, &QEventLoop::quit);
    loop.exec();
}

void applyPendingUpdate(QFile& package)
{
    if (package.exists()) {
        runDatabaseUpdate(package);
    }
}

int runApplication(int& argc, char** argv)
{
    QApplication application(argc, argv);
    // kept: any other argument changes nothing, "--after-update" among them, which older updaters
    // pass.
    if (versionRequested(argc, argv)) {
        printVersion();
        return 0;
    }
    QDir::setCurrent(appDirPath());
    loadBaseStyle();

    QSplashScreen splash{QPixmap()};
    splash.setPixmap(sharpPixmap(":/splash.png"));
    splash.show();
    auto shown = std::make_unique<QElapsedTimer>();
    shown->start();

    // kept: not looked at. Without a database the window opens all the same, with an empty list.
    dataBase.open();
    QFile package(appFilePath("dbUpdate.bin"));
    applyPendingUpdate(package);

    holdSplash(*shown);
    splash.hide();
    shown.reset();

    loadOrgData();
    MainWindow window;
    window.show();
    return QApplication::exec();
}
