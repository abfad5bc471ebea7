#include "batch/BatchDatabase.h"

#include <QDateTime>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>

#include "app/AppHelpers.h"
#include "store/DataBase.h"

namespace {

QString databasePath()
{
    return appFilePath("docs.db");
}

bool fail(QString* error, const QString& reason)
{
    if (error) {
        *error = reason;
    }
    return false;
}

/// What one of SQLite's result codes means to the user.
QString reasonOf(const QSqlError& error)
{
    switch (error.nativeErrorCode().toInt() & 0xFF) { // the higher bits are details
    case 5:                                           // SQLITE_BUSY
    case 6:                                           // SQLITE_LOCKED
        return "База данных занята другой программой. Подождите, пока она закончит запись.";
    case 8:  // SQLITE_READONLY: what an interrupted change left can't be undone by who only reads
    case 14: // SQLITE_CANTOPEN
        return "Базу данных не удалось открыть. Если основная программа была прервана, запустите "
               "её: она приведёт базу в порядок.";
    case 11: // SQLITE_CORRUPT
    case 26: // SQLITE_NOTADB
        return "Файл базы данных повреждён или это не база данных. Восстановите её из архива в "
               "основной программе.";
    default:
        return "Базу данных не удалось прочитать: " + error.text().simplified();
    }
}

} // namespace

bool BatchDatabase::open(QString* error)
{
    dataBase.close();
    QSqlDatabase::removeDatabase(QSqlDatabase::defaultConnection);
    m_stamp = stamp();
    const QString path = databasePath();
    if (!QFileInfo(path).isFile()) {
        return fail(error, "Нет файла базы данных " + path + ". Запустите основную программу.");
    }
    QSqlDatabase database = QSqlDatabase::addDatabase("QSQLITE");
    database.setDatabaseName(path);
    // Who waits longer for a writer lets the window wait.
    database.setConnectOptions("QSQLITE_OPEN_READONLY;QSQLITE_BUSY_TIMEOUT=50");
    if (!database.open()) {
        return fail(error, reasonOf(database.lastError()));
    }
    return isReadable(error);
}

bool BatchDatabase::hasChanged() const
{
    return stamp() != m_stamp;
}

bool BatchDatabase::isReadable(QString* error)
{
    QSqlQuery query;
    query.setForwardOnly(true);
    for (const char* table : {"docs", "forms", "blanks"}) {
        if (!query.exec(QString("SELECT ID FROM %1 LIMIT 1").arg(table))) {
            return fail(error, reasonOf(query.lastError()));
        }
    }
    return true;
}

QVector<qint64> BatchDatabase::stamp()
{
    QVector<qint64> stamp;
    for (const char* suffix : {"", "-wal"}) {
        const QFileInfo file(databasePath() + suffix);
        stamp << (file.exists() ? file.size() : -1)
              << (file.exists() ? file.lastModified().toMSecsSinceEpoch() : -1);
    }
    return stamp;
}
