#include <QApplication>

#include "app/AppStyle.h"
#include "batch/BatchWindow.h"

int main(int argc, char* argv[])
{
    const QApplication app(argc, argv);
    loadBaseStyle();
    BatchWindow window;
    window.show();
    return QApplication::exec();
}
