#include "store/DataBase.h"

#include <QDebug>
#include <QFile>
#include <QSqlError>

#include "app/AppHelpers.h"

DataBase dataBase;

DataBase::DataBase(QObject* parent)
    : QObject(parent)
{
}

bool DataBase::open()
{
    const QString path = appFilePath("docs.db");
    if (!QFile::exists(path)) {
        qDebug() << "Database not found!";
        return false;
    }
    // A registration that an earlier open() left behind goes first: replacing one that is still
    // held works too, but the driver manager then warns of queries that cease to work.
    m_db = QSqlDatabase();
    QSqlDatabase::removeDatabase(QSqlDatabase::defaultConnection);
    m_db = QSqlDatabase::addDatabase("QSQLITE");
    m_db.setHostName("Zelvora");
    m_db.setDatabaseName(path);
    if (!m_db.open()) {
        qDebug() << m_db.lastError();
        return false;
    }
    return true;
}

void DataBase::close()
{
    m_db.close();
    m_db =
        QSqlDatabase(); // a handle that is held keeps the driver manager from removing it quietly
}
