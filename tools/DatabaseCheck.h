#pragma once

#include <QCoreApplication>
#include <QSet>
#include <QSqlDatabase>
#include <QString>
#include <QStringList>

class QJsonArray;
class QJsonObject;
class QJsonValue;
class QSqlQuery;
class QVariant;
struct ColumnDefinition;
struct TableDefinition;

/// Checks a document database without ever changing it: its tables and columns, the JSON of every
/// JSON column, and the references between rows that no constraint guards. Of a file called
/// "docs.db", which stands in its application directory, the backgrounds and workbooks that it
/// names are looked for as well.
class DatabaseCheck
{
    Q_DECLARE_TR_FUNCTIONS(DatabaseCheck)

public:
    explicit DatabaseCheck(const QString& path);

    /// Runs the whole check. False if the file could not be read as a database at all; error()
    /// then says why.
    bool run();

    /// What was found, one readable line each: table, ID, and what is wrong, in the user's
    /// language.
    const QStringList& findings() const { return m_findings; }

    /// Whether an interrupted change waits to be undone at the next opening; what is checked is the
    /// database as it will be then.
    bool hasWaitingChange() const { return m_hasWaitingChange; }

    const QString& error() const { return m_error; }

private:
    bool checkOpened();
    void checkIntegrity();
    void checkTable(const TableDefinition& table);
    void checkOrder(const TableDefinition& table, const QStringList& present);
    void checkColumnType(const QString& table, const ColumnDefinition& column, const QString& type,
                         bool isKey);
    void checkVersion();
    void checkLists();
    void checkForms();
    void checkDocuments();
    void checkBlanks();
    void checkPaperFormat(const QVariant& code, const QString& place);
    void checkBackground(const QString& background, const QString& row);
    void checkBlankSize(const QVariant& millimetres, const QString& place);
    void checkExchangeTemplates();

    void checkField(const QJsonValue& value, const QString& place);
    void checkEntry(const QJsonValue& value, const QString& place);
    void checkTypeAndList(const QJsonObject& object, const QString& place);
    void checkTableColumns(const QJsonValue& value, const QString& key, const QString& place);
    void checkTableColumn(const QJsonObject& column, const QString& place);
    void checkFormReference(const QVariant& form, const QString& row, const QString& column);
    bool hasNeighbours() const;
    void checkFile(const QString& path, const QString& row, const QString& column);

    bool select(QSqlQuery& query, const QString& table, const QString& columns);
    QSet<int> idsOf(const QString& table);
    QJsonObject objectIn(const QVariant& value, const QString& place);
    QJsonArray arrayIn(const QVariant& value, const QString& key, const QString& place);
    void find(const QString& place, const QString& fault);

    const QString m_path;
    QSqlDatabase m_database;
    QString m_error;
    bool m_hasWaitingChange = false;
    QStringList m_findings;
    QSet<QString> m_damagedTables;  // reported already
    QSet<QString> m_computedTables; // see TableKind: never read
    QSet<int> m_listIds;
    QSet<int> m_formIds;
};
