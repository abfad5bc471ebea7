#pragma once

#include <QObject>
#include <QSqlDatabase>

/// Opens and closes the one connection to the document database. The connection is the default
/// one, so that every QSqlQuery built without a database lands on it.
class DataBase : public QObject
{
    Q_OBJECT

public:
    explicit DataBase(QObject* parent = nullptr);

    /// Opens "docs.db" in the application directory. Never creates the file: an absent database
    /// stays absent. Failures go to the log and give false.
    bool open();

    /// Closes the handle; the registered connection stays, and the next open() replaces it.
    void close();

private:
    QSqlDatabase m_db;
};

/// The one instance. Constructing it touches neither the file nor the SQL driver.
extern DataBase dataBase;
