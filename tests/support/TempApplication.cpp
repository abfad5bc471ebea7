#include "support/TempApplication.h"

#include <QDir>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QtTest>

#include "app/AppHelpers.h"
#include "forms/FormDefinitions.h"
#include "store/DataBase.h"
#include "store/OrgData.h"
#include "store/Schema.h"
#include "support/Process.h"

namespace {

void clearOrgData()
{
    for (QString* text : {&orgNameFormat1, &orgNameFormat2, &orgRegion, &orgLocality, &orgDirector})
    {
        text->clear();
    }
}

QSqlQuery run(const QString& sql, const QVariantList& positional)
{
    QSqlQuery query;
    bool ok = query.prepare(sql);
    for (const QVariant& value : positional) {
        query.addBindValue(value);
    }
    ok = ok && query.exec();
    if (!ok) {
        QTest::qFail(qPrintable(sql + ": " + query.lastError().text()), __FILE__, __LINE__);
    }
    return query;
}

} // namespace

TempApplication::TempApplication(Database database)
    : m_oldCurrent(QDir::currentPath())
    , m_oldOrgDataPath(orgDataPath)
{
    setAppDirPath(m_dir.path());
    QDir::setCurrent(m_dir.path());
    orgDataPath = m_dir.filePath("data/Zelvora/orgData.json");
    clearOrgData();
    docTypeNames.clear();
    if (database == Database::None) {
        return;
    }
    QString error;
    if (!createDatabaseFile(path("docs.db"), &error) || !dataBase.open()) {
        qFatal("no test database: %s", qPrintable(error));
    }
    // Nothing here survives a crash of the machine anyway, and commits without it are much faster.
    exec("PRAGMA synchronous = OFF");
}

TempApplication::~TempApplication()
{
    dataBase.close();
    QSqlDatabase::removeDatabase(QSqlDatabase::defaultConnection);
    docTypeNames.clear();
    clearOrgData();
    orgDataPath = m_oldOrgDataPath;
    QDir::setCurrent(m_oldCurrent);
    setAppDirPath(QString());
}

QString TempApplication::path(const QString& relative) const
{
    return relative.isEmpty() ? m_dir.path() : m_dir.filePath(relative);
}

QVariant TempApplication::exec(const QString& sql, const QVariantList& positional)
{
    return run(sql, positional).lastInsertId();
}

QVariant TempApplication::value(const QString& sql, const QVariantList& positional)
{
    QSqlQuery query = run(sql, positional);
    return query.next() ? query.value(0) : QVariant();
}

QByteArray TempApplication::dump(const QString& file) const
{
    return runProcess("sqlite3", {path(file), ".dump"}).out;
}
