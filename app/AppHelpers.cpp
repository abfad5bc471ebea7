#include "app/AppHelpers.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QFileInfo>
#include <QMessageBox>
#include <QPushButton>
#include <QTextDocument>

const QString appVersion = QStringLiteral(ZELVORA_VERSION);
const QString appBuildLabel = QStringLiteral("64 bit");

namespace {

QString& overriddenAppDirPath()
{
    static QString path;
    return path;
}

} // namespace

QString appDirPath()
{
    const QString& overridden = overriddenAppDirPath();
    return overridden.isEmpty() ? QCoreApplication::applicationDirPath() : overridden;
}

void setAppDirPath(const QString& path)
{
    overriddenAppDirPath() = path;
}

QString appFilePath(const QString& relative)
{
    return appDirPath() + "/" + relative;
}

bool liesBelow(const QString& path, const QString& directory)
{
    const QString real = QFileInfo(path).canonicalFilePath();
    QString above = QFileInfo(directory).canonicalFilePath();
    if (!above.endsWith('/')) {
        above += '/';
    }
    return real.startsWith(above);
}

QString plainMessage(const QString& text)
{
    return Qt::mightBeRichText(text) ? Qt::convertFromPlainText(text) : text;
}

bool askYesNo(const QString& text, QWidget* parent)
{
    QMessageBox box(parent);
    box.setWindowTitle("Zelvora");
    box.setText(text);
    const QPushButton* yes = box.addButton("Да", QMessageBox::AcceptRole);
    QPushButton* no = box.addButton("Нет", QMessageBox::RejectRole);
    // What can't be taken back is never done by a stray key.
    box.setDefaultButton(no);
    box.setEscapeButton(no);
    box.exec();
    return box.clickedButton() == static_cast<const QAbstractButton*>(yes);
}
