#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <QVariant>

class QDataStream;
class QFile;
class QIODevice;
class QSqlQuery;

/// Applies an update package to the open database: all of it in one transaction, or nothing. Works
/// on the default connection; made for one run.
class DataBaseUpdater
{
public:
    /// Applies the package that the device holds. True also when nothing was to be done. On false
    /// the database is as it was, but for its version stamp, which may have been made. A package
    /// whose own statement ends the transaction is stopped there: what that statement committed
    /// stays.
    bool runUpdate(QIODevice* device);

    /// The last error text. Later successes do not clear it, so look at it only after a failure.
    const QString& lastError() const { return m_lastError; }

    /// The text of the last query that failed.
    const QString& lastQuery() const { return m_lastQuery; }

    /// Reads the version stamp of the database; "0.0.0.0" if there is none. With `create` makes
    /// the table and the row where they are missing.
    bool readDbVersion(QString& version, bool create);

    /// Sets the version stamp.
    bool writeDbVersion(const QString& version);

    /// The free isNewerVersion() of the package's format.
    bool isNewerVersion(const QString& current, const QString& candidate) const;

    /// Reads one part and applies it if it is newer than the database was at the start of the run.
    /// False stops the update.
    bool applyPart(QDataStream& stream);

    /// `ID` of the list of this name; invalid if there is none.
    QVariant listIdByName(const QString& name);

    /// Adds fields to the form 28 and to its documents. `text` is a JSON array of field definitions
    /// in which placeholder words stand for the identifiers of lists. What else the part says,
    /// `object`, does not matter here.
    bool crutchFrdoA(const QJsonObject& object, QString text);

    /// Gives every stored document of the form an entry for each field that it lacks. On failure
    /// puts the driver's text into `error` (may be null).
    bool updateFormExistDocuments(const QVariant& formId, const QJsonArray& fields, QString* error);

private:
    bool applyParts(QDataStream& stream);
    bool applyDuePart(const QJsonObject& part, const QString& payload);
    bool runQueryPart(const QString& statement);
    bool runFunctionPart(const QJsonObject& part, const QString& argument);
    void insertListIds(QString& text);
    void fail(const QString& what, const QSqlQuery& query);

    QString m_currentVersion;
    QString m_statement; // of the part that was run last
    QString m_lastError;
    QString m_lastQuery;
};

/// Applies the update package and removes it when that succeeded; otherwise tells the user, who
/// may remove it. Always returns true: start-up goes on whatever becomes of the update.
bool runDatabaseUpdate(QFile& package);
