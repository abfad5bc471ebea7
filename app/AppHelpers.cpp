#include "app/AppHelpers.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QTextDocument>

const QString appVersion = QStringLiteral("1.1.0.9");
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
    box.addButton("Нет", QMessageBox::RejectRole);
    box.exec();
    return box.clickedButton() == static_cast<const QAbstractButton*>(yes);
}
