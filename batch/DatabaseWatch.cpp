#include "batch/DatabaseWatch.h"

#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>

#include "app/AppHelpers.h"

namespace {

/// SQLite's codes for a database that another connection holds.
bool isLocked(const QSqlQuery& query)
{
    const QString code = query.lastError().nativeErrorCode();
    return code == "5" || code == "6";
}

QVariant valueOf(const QString& pragma)
{
    QSqlQuery query("PRAGMA " + pragma);
    return query.next() ? query.value(0) : QVariant();
}

} // namespace

DatabaseWatch::DatabaseWatch()
{
    accept();
}

DatabaseWatch::~DatabaseWatch()
{
    release();
}

DatabaseWatch::State DatabaseWatch::look()
{
    QSqlQuery query;
    if (!QFileInfo::exists(appFilePath("docs.db"))) {
        return State::Replaced;
    }
    if (!query.exec("BEGIN") || !query.exec("SELECT name FROM sqlite_master LIMIT 1")) {
        const bool isBusy = isLocked(query);
        query.exec("ROLLBACK");
        return isBusy ? State::Busy : State::Unreadable;
    }
    query.finish();
    m_isHeld = true;
    Print now;
    const bool isRead = read(now);
    State state = State::Same;
    if (!isRead) {
        state = State::Unreadable;
    } else if (now.version != m_known.version) {
        state = State::Changed;
    } else if (now.written != m_known.written || now.size != m_known.size) {
        // The file has changed, and the connection does not see it: it reads another one.
        state = State::Replaced;
    }
    if (state != State::Same) {
        release();
    }
    return state;
}

void DatabaseWatch::release()
{
    if (m_isHeld) {
        QSqlQuery().exec("COMMIT");
        m_isHeld = false;
    }
}

bool DatabaseWatch::accept()
{
    m_known = Print();
    QSqlQuery query;
    // Within a transaction nobody can write the file between the two looks at it.
    const bool isBegun =
        query.exec("BEGIN") && query.exec("SELECT name FROM sqlite_master LIMIT 1");
    query.finish();
    const bool isRead = isBegun && read(m_known);
    query.exec(isBegun ? "COMMIT" : "ROLLBACK");
    return isRead;
}

bool DatabaseWatch::read(Print& print)
{
    const QFileInfo file(appFilePath("docs.db"));
    print.version = valueOf("data_version");
    print.written = file.lastModified();
    print.size = file.size();
    return print.version.isValid() && file.exists();
}
