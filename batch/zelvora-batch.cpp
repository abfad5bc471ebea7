#include <QApplication>
#include <QDir>

#include "app/AppHelpers.h"
#include "app/AppStyle.h"
#include "app/StandardStream.h"
#include "batch/BatchWindow.h"

namespace {

/// A QString: a stream takes a plain text for Latin-1.
QString help()
{
    return "Использование: zelvora-batch [--dir КАТАЛОГ]\n"
           "Окно, в котором документы базы данных выбирают, проверяют и печатают все сразу.\n\n"
           "  --dir КАТАЛОГ  база данных и фоны бланков в этом каталоге, а не рядом с программой\n"
           "  --help         эта справка\n"
           "  --version      версия\n";
}

/// What the command line asks for.
struct Options
{
    QString directory;
    bool wantsHelp = false;
    bool wantsVersion = false;
    bool isValid = true;
};

Options parse(const QStringList& arguments)
{
    Options options;
    for (int i = 0; i < arguments.size(); ++i) {
        const QString& argument = arguments[i];
        if (argument == "--help" || argument == "-h") {
            options.wantsHelp = true;
        } else if (argument.toLower() == "--v" || argument == "--version") {
            options.wantsVersion = true;
        } else if (argument == "--dir" && i + 1 < arguments.size()) {
            options.directory = arguments[++i];
        } else if (argument.startsWith("--dir=")) {
            options.directory = argument.section('=', 1);
        } else {
            options.isValid = false;
        }
    }
    return options;
}

/// False if there is nothing more to do; the status is then that of the program.
bool answer(const Options& options, int& status)
{
    constexpr int failure = 2;
    StandardStream out(StandardStream::Channel::Output);
    StandardStream err(StandardStream::Channel::Error);
    status = 0;
    if (!options.isValid) {
        err << help();
        status = failure;
        return false;
    }
    if (options.wantsHelp) {
        out << help();
    } else if (options.wantsVersion) {
        out << appVersion << '\n';
    }
    return !options.wantsHelp && !options.wantsVersion;
}

} // namespace

int main(int argc, char* argv[])
{
    const QApplication app(argc, argv);
    const Options options = parse(QApplication::arguments().mid(1));
    int status = 0;
    if (!answer(options, status)) {
        return status;
    }
    if (!options.directory.isEmpty()) {
        setAppDirPath(QDir(options.directory).absolutePath());
    }
    // What texts of blanks name is looked for there, as the application does.
    QDir::setCurrent(appDirPath());
    loadBaseStyle();
    BatchWindow window;
    window.show();
    return QApplication::exec();
}
