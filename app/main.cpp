#include <QApplication>

int main(int argc, char* argv[])
{
    QApplication app(argc, argv);
    return 0;
}
