#include <QtTest>

#include <QApplication>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QIcon>
#include <QPixmap>
#include <QPointer>
#include <QSplashScreen>
#include <QTableWidget>
#include <QThread>
#include <QTimer>

#include <functional>
#include <memory>

#include "app/AppHelpers.h"
#include "app/AppStyle.h"
#include "app/Startup.h"
#include "documents/MainWindow.h"
#include "store/OrgData.h"
#include "support/TempApplication.h"

namespace {

// A coarse timer, which Qt takes for a wait of the full 2000 ms, may fire up to 5 % early.
constexpr qint64 splashFloorMs = 1900;

/// One whole run of the program in this process: what was shown and logged, in its order. A step
/// is "splash shown", "splash hidden", "window shown" or "log: " and the message.
class Run : public QObject
{
public:
    explicit Run(const QByteArrayList& arguments = {"zelvora"})
        : m_arguments(arguments)
    {
    }

    /// Called for each step as it happens.
    std::function<void(const QString&)> onStep;

    /// Called when the main window is about to paint for the first time, in front of its closing.
    std::function<void(MainWindow*)> onWindow;

    int exec()
    {
        std::vector<char*> argv;
        for (QByteArray& argument : m_arguments) {
            argv.push_back(argument.data());
        }
        argv.push_back(nullptr);
        int argc = m_arguments.size();
        m_current = this;
        m_previous = qInstallMessageHandler(logged);
        m_clock.start();
        const int code = runApplication(argc, argv.data());
        qInstallMessageHandler(m_previous);
        m_current = nullptr;
        return code;
    }

    QStringList steps() const { return m_steps; }

    int indexOf(const QString& step) const { return m_steps.indexOf(step); }

    /// Index of the first log line that holds the text.
    int indexOfLog(const QString& text) const
    {
        for (int i = 0; i < m_steps.size(); ++i) {
            if (m_steps.at(i).startsWith("log: ") && m_steps.at(i).contains(text)) {
                return i;
            }
        }
        return -1;
    }

    /// Milliseconds between two steps.
    qint64 between(const QString& from, const QString& to) const
    {
        return m_times.value(indexOf(to)) - m_times.value(indexOf(from));
    }

    /// Watches the application that is being constructed.
    static void watchApplication()
    {
        if (m_current) {
            QCoreApplication::instance()->installEventFilter(m_current);
        }
    }

    bool eventFilter(QObject* object, QEvent* event) override
    {
        if (qobject_cast<QSplashScreen*>(object)) {
            if (event->type() == QEvent::Show) {
                step("splash shown");
            }
            if (event->type() == QEvent::Hide) {
                step("splash hidden");
            }
        }
        if (auto* window = qobject_cast<MainWindow*>(object)) {
            watchWindow(window, event);
        }
        return false;
    }

private:
    static void logged(QtMsgType type, const QMessageLogContext& context, const QString& message)
    {
        if (m_previous) {
            m_previous(type, context, message);
        }
        if (type == QtDebugMsg) { // the program's own; warnings are the platform's
            m_current->step("log: " + message);
        }
    }

    void watchWindow(MainWindow* window, QEvent* event)
    {
        if (event->type() == QEvent::Show) {
            step("window shown");
            return;
        }
        if (event->type() == QEvent::Paint && !m_painted) {
            m_painted = true;
            if (onWindow) {
                onWindow(window);
            }
            QTimer::singleShot(0, window, &QWidget::close);
        }
    }

    void step(const QString& what)
    {
        m_steps << what;
        m_times << m_clock.elapsed();
        if (onStep) {
            onStep(what);
        }
    }

    static Run* m_current;
    static QtMessageHandler m_previous;

    QByteArrayList m_arguments;
    QElapsedTimer m_clock;
    QStringList m_steps;
    QVector<qint64> m_times;
    bool m_painted = false;
};

Run* Run::m_current = nullptr;
QtMessageHandler Run::m_previous = nullptr;

void watchApplication()
{
    Run::watchApplication();
}

/// An application directory, made and left without an application object. It is not yet the current
/// one, which the start-up has to see to.
class Directory : public TempApplication
{
public:
    Directory()
        : TempApplication(Database::None)
    {
        QDir::setCurrent(QDir::rootPath());
        orgDataPath = path("orgData.json");
        baseStyleSheet.clear();
    }

    void write(const QString& name, const QByteArray& content) const
    {
        QFile file(path(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
};

} // namespace

Q_COREAPP_STARTUP_FUNCTION(watchApplication)

/// The start-up sequence, step by step and as a whole run of the program in this process.
class tst_Startup : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void versionArgument_data();
    void versionArgument();
    void splashRest_data();
    void splashRest();
    void versionShowsNothing();
    void sequence();
    void startsWithoutDatabase();
    void startsWithTextFileAsDatabase();
    void slowStepsAreNotWaitedFor();
    void pendingUpdateRunsUnderTheSplash();
    void afterUpdateIsIgnored();
    void exitCodeIsTheEventLoops();

private:
    QByteArray m_database; // a database with two documents
};

void tst_Startup::initTestCase()
{
    int argc = 1;
    QByteArray name = "tst_Startup";
    char* argv[] = {name.data(), nullptr};
    const QCoreApplication application(argc, argv); // the SQL driver is a plugin
    TempApplication app;
    app.exec("INSERT INTO forms (FORM_NAME) VALUES ('Диплом')");
    for (const char* surname : {"Иванов", "Петров"}) {
        app.exec("INSERT INTO docs (LNAME, FNAME, MNAME, DOC_TYPE, TEMPLATE) "
                 "VALUES (?, 'И', 'О', 1, 0)",
                 {surname});
    }
    QFile file(app.path("docs.db"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    m_database = file.readAll();
}

void tst_Startup::versionArgument_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<bool>("requested");

    QTest::newRow("none") << QStringList{"zelvora"} << false;
    QTest::newRow("lower case") << QStringList{"zelvora", "--v"} << true;
    QTest::newRow("upper case") << QStringList{"zelvora", "--V"} << true;
    QTest::newRow("behind others") << QStringList{"zelvora", "--after-update", "x", "--v"} << true;
    QTest::newRow("entry 0") << QStringList{"--V"} << true;
    QTest::newRow("after-update") << QStringList{"zelvora", "--after-update"} << false;
    QTest::newRow("one dash") << QStringList{"zelvora", "-v"} << false;
    QTest::newRow("longer word") << QStringList{"zelvora", "--version"} << false;
}

void tst_Startup::versionArgument()
{
    QFETCH(QStringList, arguments);
    QFETCH(bool, requested);
    QByteArrayList storage;
    std::vector<const char*> argv;
    for (const QString& argument : arguments) {
        storage << argument.toLocal8Bit();
    }
    for (const QByteArray& argument : storage) {
        argv.push_back(argument.constData());
    }
    QCOMPARE(versionRequested(storage.size(), argv.data()), requested);
}

void tst_Startup::splashRest_data()
{
    QTest::addColumn<bool>("valid");
    QTest::addColumn<qint64>("elapsed");
    QTest::addColumn<int>("rest");

    QTest::newRow("at once") << true << qint64(0) << 2000;
    QTest::newRow("half") << true << qint64(1000) << 1000;
    QTest::newRow("51 ms left") << true << qint64(1949) << 51;
    QTest::newRow("50 ms left") << true << qint64(1950) << 0;
    QTest::newRow("over") << true << qint64(60000) << 0;
    QTest::newRow("beyond an int") << true << qint64(5000000000) << 0;
    QTest::newRow("no timer") << false << qint64(0) << 2000;
    QTest::newRow("no timer, no meaning") << false << qint64(1990) << 2000;
}

void tst_Startup::splashRest()
{
    QFETCH(bool, valid);
    QFETCH(qint64, elapsed);
    QTEST(remainingSplashMs(valid, elapsed), "rest");
}

void tst_Startup::versionShowsNothing()
{
    const Directory directory;
    directory.write("dbUpdate.bin", "package");
    Run run({"zelvora", "--after-update", "--V"});
    QCOMPARE(run.exec(), 0);
    QCOMPARE(run.steps(), QStringList());
    QVERIFY(baseStyleSheet.isEmpty());
    QVERIFY(QDir(QDir::currentPath()) != QDir(directory.path(QString())));
}

void tst_Startup::sequence()
{
    const Directory directory;
    directory.write("docs.db", m_database);
    directory.write("orgData.json", R"({"director": "Орлова Анна Петровна"})");

    Run run;
    QString directorUnderSplash = "never shown";
    run.onStep = [&](const QString& step) {
        if (step == "splash hidden") {
            directorUnderSplash = orgDirector;
        }
    };
    int rows = -1;
    QString directorInWindow;
    QSize splashSize;
    QSize pictureSize;
    bool plain = false;
    run.onWindow = [&](MainWindow* window) {
        rows = window->findChild<QTableWidget*>("docsWidget")->rowCount();
        directorInWindow = orgDirector;
        const auto windows = QApplication::topLevelWidgets();
        for (QWidget* widget : windows) {
            if (const auto* splash = qobject_cast<QSplashScreen*>(widget)) {
                splashSize = splash->pixmap().size();
            }
        }
        pictureSize = QPixmap(":/splash.png").size();
        plain = qApp->styleSheet().isEmpty() && qApp->windowIcon().isNull() &&
                QCoreApplication::organizationName().isEmpty();
    };
    QCOMPARE(run.exec(), 0);

    QCOMPARE(run.steps(), QStringList({"splash shown", "splash hidden", "window shown"}));
    QVERIFY(run.between("splash shown", "splash hidden") >= splashFloorMs);
    QCOMPARE(rows, 2); // the first paint shows the data
    QCOMPARE(directorUnderSplash, QString());
    QCOMPARE(directorInWindow, QString("Орлова Анна Петровна"));
    QCOMPARE(splashSize, pictureSize);
    QVERIFY(!splashSize.isEmpty());
    QVERIFY(plain);

    QFile style(":/res/baseStyle.css");
    QVERIFY(style.open(QIODevice::ReadOnly));
    QCOMPARE(baseStyleSheet, QString::fromUtf8(style.readAll()));
    QCOMPARE(QDir::current(), QDir(directory.path(QString())));
}

void tst_Startup::startsWithoutDatabase()
{
    const Directory directory;
    Run run;
    int rows = -1;
    run.onWindow = [&](MainWindow* window) {
        rows = window->findChild<QTableWidget*>("docsWidget")->rowCount();
    };
    QCOMPARE(run.exec(), 0);
    QCOMPARE(rows, 0);
    const int logged = run.indexOfLog("Database not found!");
    QVERIFY(logged > run.indexOf("splash shown"));
    QVERIFY(logged < run.indexOf("splash hidden"));
    QVERIFY(run.indexOfLog("Unable to select from forms query") > run.indexOf("splash hidden"));
    QVERIFY(run.indexOfLog("Unable to select from docs query") > run.indexOf("splash hidden"));
    QVERIFY(!QFile::exists(directory.path("docs.db")));
    QCOMPARE(orgNameFormat1 + orgNameFormat2 + orgRegion + orgLocality + orgDirector, QString());
}

void tst_Startup::startsWithTextFileAsDatabase()
{
    const Directory directory;
    const QByteArray text = QByteArray("this is no database, it is a text\n").repeated(100);
    directory.write("docs.db", text);
    Run run;
    int rows = -1;
    run.onWindow = [&](MainWindow* window) {
        rows = window->findChild<QTableWidget*>("docsWidget")->rowCount();
    };
    QCOMPARE(run.exec(), 0);
    QCOMPARE(rows, 0);
    QVERIFY(run.indexOfLog("Unable to select from docs query") >= 0);
    QFile file(directory.path("docs.db"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), text);
}

void tst_Startup::slowStepsAreNotWaitedFor()
{
    const Directory directory;
    Run run;
    bool looped = false;
    bool loopedUnderSplash = false;
    QObject context;
    run.onStep = [&](const QString& step) {
        if (step.contains("Database not found!")) {
            QThread::msleep(1960); // as if opening took so long
            QTimer::singleShot(0, &context, [&] { looped = true; });
        }
        if (step == "window shown") {
            loopedUnderSplash = looped;
        }
    };
    QCOMPARE(run.exec(), 0);
    QVERIFY(looped);
    QVERIFY(!loopedUnderSplash);
}

void tst_Startup::pendingUpdateRunsUnderTheSplash()
{
    const Directory directory;
    directory.write("docs.db", m_database);
    directory.write("dbUpdate.bin", QByteArray());
    Run run;
    QCOMPARE(run.exec(), 0);
    const int update = run.indexOfLog("Запуск обновления базы данных...");
    QVERIFY(update > run.indexOf("splash shown"));
    QVERIFY(update < run.indexOf("splash hidden"));
}

void tst_Startup::afterUpdateIsIgnored()
{
    const Directory directory;
    directory.write("docs.db", m_database);
    Run run({"zelvora", "--after-update"});
    QCOMPARE(run.exec(), 0);
    QCOMPARE(run.steps(), QStringList({"splash shown", "splash hidden", "window shown"}));
}

void tst_Startup::exitCodeIsTheEventLoops()
{
    const Directory directory;
    directory.write("docs.db", m_database);
    Run run;
    run.onWindow = [](MainWindow*) { QTimer::singleShot(0, [] { QApplication::exit(7); }); };
    QCOMPARE(run.exec(), 7);
}

// No application object: each run makes its own.
QTEST_APPLESS_MAIN(tst_Startup)
#include "tst_Startup.moc"
