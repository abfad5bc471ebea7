#include <QApplication>
#include <QDir>
#include <QLocale>
#include <QTextStream>

#include "app/AppHelpers.h"
#include "app/AppStyle.h"
#include "scripts/guide-pictures/GuidePictures.h"
#include "store/DataBase.h"
#include "store/OrgData.h"

// zelvora-pictures DIR FOLDER [NAME...]: makes the pictures of the guide from the sample in DIR,
// which `zelvora-db sample` has made and which is changed on the way.
int main(int argc, char** argv)
{
    qputenv("QT_FONT_DPI", "96"); // the windows in their own sizes, whatever the screen
    const QApplication application(argc, argv);
    QApplication::setCursorFlashTime(0);
    const QStringList arguments = QCoreApplication::arguments().mid(1);
    if (arguments.size() < 2) {
        QTextStream(stderr) << "Usage: zelvora-pictures DIR FOLDER [NAME...]\n";
        return 2;
    }
    // What the users see, whatever the language of the machine that makes the pictures.
    QLocale::setDefault(QLocale(QLocale::Russian, QLocale::Russia));
    const QString folder = QDir(arguments[1]).absolutePath();
    setAppDirPath(QDir(arguments[0]).absolutePath());
    QDir::setCurrent(appDirPath());
    orgDataPath = appFilePath("data/Zelvora/orgData.json");
    loadBaseStyle();
    loadOrgData();
    if (!dataBase.open()) {
        QTextStream(stderr) << "zelvora-pictures: no database in " << appDirPath() << '\n';
        return 2;
    }
    return makeGuidePictures(folder, arguments.mid(2)) ? 0 : 1;
}
