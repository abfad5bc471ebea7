#include "store/DataBaseUpdater.h"

#include <QDebug>
#include <QFile>

bool runDatabaseUpdate(QFile& package)
{
    qDebug() << "Запуск обновления базы данных..." << package.fileName();
    return true;
}
