#include "tools/UpdateTool.h"

#include <QCoreApplication>
#include <QDataStream>
#include <QFile>
#include <QFileInfo>
#include <QTextStream>

#include <algorithm>

#include "app/TargetFile.h"
#include "app/TerminalText.h"
#include "store/UpdatePackage.h"
#include "tools/UpdateManifest.h"
#include "tools/UserLanguage.h"

namespace {

/// What this file says, in the language of the user.
class Text
{
    Q_DECLARE_TR_FUNCTIONS(UpdateTool)
};

constexpr int success = 0;
constexpr int failure = 2;

QString helpText()
{
    return Text::tr(
        "Usage: zelvora-update make MANIFEST PACKAGE\n"
        "       zelvora-update show PACKAGE\n"
        "\n"
        "  make    make an update package for the database (dbUpdate.bin) from a JSON manifest\n"
        "  show    print a package as a manifest\n"
        "  --help  show this help\n"
        "\n"
        "A package that stands beside the application as dbUpdate.bin is applied at its next\n"
        "start. Exit status: 0 if all is well, 2 if the job could not be done.\n");
}

int fail(QTextStream& err, const QString& reason)
{
    err << "zelvora-update: " << onOneLine(reason) << '\n';
    return failure;
}

int failOnFile(QTextStream& err, const QString& path, const QString& reason)
{
    return fail(err, path + ": " + reason);
}

int failToWrite(QTextStream& err, const QString& path, const TargetFile& file)
{
    const QString reason = file.errorString();
    return failOnFile(err, path,
                      reason.isEmpty() ? QFileInfo(path).isFile()
                                             ? Text::tr("this is a database, it is not replaced")
                                             : Text::tr("this is no regular file, it is not "
                                                        "replaced")
                                       : reason);
}

/// What is read is kept in memory whole, and a device has no end.
constexpr qint64 largestInput = 64 << 20;

QString tooLarge()
{
    return Text::tr("this is no file, or too large");
}

bool isSameFile(const QString& one, const QString& other)
{
    const QString path = QFileInfo(one).canonicalFilePath();
    return !path.isEmpty() && path == QFileInfo(other).canonicalFilePath();
}

int make(const QString& manifestPath, const QString& packagePath, QTextStream& out,
         QTextStream& err)
{
    QFile manifest(manifestPath);
    if (!manifest.open(QIODevice::ReadOnly)) {
        return failOnFile(err, manifestPath, manifest.errorString());
    }
    const QByteArray text = manifest.read(largestInput + 1);
    if (text.size() > largestInput) {
        return failOnFile(err, manifestPath, tooLarge());
    }
    if (isSameFile(manifestPath, packagePath)) {
        return failOnFile(err, packagePath,
                          Text::tr("this is the manifest itself, it is not replaced"));
    }
    UpdatePackage package;
    QString error;
    if (!packageFromManifest(text, package, error)) {
        return fail(err, manifestPath + ": " + error);
    }
    TargetFile file(packagePath);
    if (!file.open()) {
        return failToWrite(err, packagePath, file);
    }
    QDataStream stream(&file.device());
    writeUpdatePackage(stream, package);
    if (!file.commit()) {
        return failToWrite(err, packagePath, file);
    }
    out << Text::tr("Made the package %1, parts: %2")
               .arg(onOneLine(packagePath), QString::number(package.parts.size()))
        << '\n';
    return success;
}

/// Whether the texts that a package holds are what its format says. Any bytes can be read as one.
bool isPackage(const UpdatePackage& package)
{
    const auto isPart = [](const UpdatePart& part) {
        return !parseUpdateJson(part.json).isEmpty();
    };
    return parseUpdateJson(package.header).value("update_version").isString() &&
           std::all_of(package.parts.cbegin(), package.parts.cend(), isPart);
}

int show(const QString& packagePath, QTextStream& out, QTextStream& err)
{
    QFile file(packagePath);
    if (!file.open(QIODevice::ReadOnly)) {
        return failOnFile(err, packagePath, file.errorString());
    }
    if (!QFileInfo(packagePath).isFile() || file.size() > largestInput) {
        return failOnFile(err, packagePath, tooLarge());
    }
    QDataStream stream(&file);
    UpdatePackage package;
    const bool whole = readUpdatePackage(stream, package);
    if (!isPackage(package)) {
        return failOnFile(err, packagePath, Text::tr("this is no update package"));
    }
    out << jsonForTerminal(manifestFromPackage(package));
    QString error;
    if (!flushOutput(out, &error)) {
        return fail(err, error);
    }
    if (!whole) {
        return fail(
            err, packagePath + ": " +
                     Text::tr("the package is cut off behind part %1").arg(package.parts.size()));
    }
    return success;
}

} // namespace

int runUpdateTool(const QStringList& arguments, QTextStream& out, QTextStream& err)
{
    if (arguments.contains("--help") || arguments.contains("-h")) {
        out << helpText();
        return success;
    }
    if (arguments.size() == 3 && arguments[0] == "make") {
        return make(arguments[1], arguments[2], out, err);
    }
    if (arguments.size() == 2 && arguments[0] == "show") {
        return show(arguments[1], out, err);
    }
    err << helpText();
    return failure;
}
