// Applying an update package to a database, by parts and by migrated documents. The floor runs the
// same SQL in one transaction written bare; that of the migration reads, rewrites and stores the
// same documents.

#include <benchmark/benchmark.h>

#include <QBuffer>
#include <QCoreApplication>
#include <QDataStream>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QStringList>

#include <cstdio>
#include <cstdlib>

#include "benchmarks/BenchDirectory.h"
#include "benchmarks/RatioReporter.h"
#include "store/DataBaseUpdater.h"
#include "store/UpdatePackage.h"

namespace {

constexpr int partCount = 1000;
constexpr int documentCount = 5000;
constexpr int oldFields = 10;
constexpr int newFields = 20;

const char* const listNames[] = {"Вид документа",
                                 "Да/Нет",
                                 "Уровень образования",
                                 "Гражданство получателя (по ОКСМ)",
                                 "Форма получения образования",
                                 "Пол",
                                 "Источник финансирования",
                                 "Форма обучения"};

/// A benchmark of something that failed would measure nothing.
void demand(bool holds, const char* what)
{
    if (!holds) {
        std::fprintf(stderr, "bench_update: %s\n", what);
        std::exit(1);
    }
}

void run(const QString& statement)
{
    demand(QSqlQuery().exec(statement), qPrintable(statement));
}

QByteArray compact(const QJsonObject& object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

QString statementOfPart(int number)
{
    return QString("INSERT INTO lists (LIST_NAME, LIST_ITEMS) VALUES ('Список %1', "
                   "'{\"items\": [\"очная\", \"заочная\", \"очно-заочная\"]}')")
        .arg(number);
}

QByteArray packageOf(const QVector<UpdatePart>& parts)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    writeUpdatePackage(stream, {compact({{"update_version", "1.0.0.0"}}), parts});
    return bytes;
}

QByteArray packageOfStatements()
{
    QVector<UpdatePart> parts;
    for (int i = 0; i < partCount; ++i) {
        parts.append({compact({{"version", "1.0.0.0"}, {"type", "sqlQuery"}}), QString(),
                      statementOfPart(i)});
    }
    return packageOf(parts);
}

QJsonArray addedFields()
{
    QJsonArray fields;
    for (int i = 0; i < newFields; ++i) {
        fields.append(QJsonObject{{"tag", QString("#NEW_%1").arg(i)},
                                  {"name", QString("Новое поле %1").arg(i)},
                                  {"type", i % 3}});
    }
    return fields;
}

QByteArray packageOfMigration()
{
    QString argument = QJsonDocument(addedFields()).toJson(QJsonDocument::Compact);
    argument.chop(1);
    argument += R"(,{"tag":"#SEX","name":"Пол","type":1,"list":IDL_SEX}])";
    return packageOf(
        {{compact(
              {{"version", "1.0.0.0"}, {"type", "cppFunction"}, {"function_name", "crutchFrdoA"}}),
          QString(), argument}});
}

QByteArray oldContent(int document)
{
    QJsonObject content;
    for (int i = 0; i < oldFields; ++i) {
        content[QString("#OLD_%1").arg(i)] = QJsonObject{
            {"name", "Специальность"},
            {"type", 0},
            {"value", QString("Информационные системы и программирование %1").arg(document)}};
    }
    return compact(content);
}

/// The tables as they are before an update.
void resetLists()
{
    run("DROP TABLE IF EXISTS zvsys");
    run("DELETE FROM lists");
    for (const char* name : listNames) {
        run(QString("INSERT INTO lists (LIST_NAME, LIST_ITEMS) VALUES ('%1', '{}')").arg(name));
    }
}

void resetDocuments()
{
    resetLists();
    run("DELETE FROM forms");
    run("DELETE FROM docs");
    run(R"(INSERT INTO forms (ID, FORM_NAME, FIELDS) VALUES (28, 'Удостоверение', '{"fields":[]}'))");
    QSqlDatabase::database().transaction();
    QSqlQuery insert;
    insert.prepare("INSERT INTO docs (LNAME, DOC_TYPE, TEMPLATE, CONTENT) VALUES (?, 28, 0, ?)");
    for (int i = 0; i < documentCount; ++i) {
        insert.addBindValue(QString("Иванов %1").arg(i));
        insert.addBindValue(QString::fromUtf8(oldContent(i)));
        demand(insert.exec(), "no document");
    }
    QSqlDatabase::database().commit();
}

/// The version stamp, read and made as an update does.
void readStamp()
{
    run("CREATE TABLE IF NOT EXISTS zvsys (DB_VERSION TEXT);");
    run("SELECT DB_VERSION FROM zvsys");
    run("INSERT INTO zvsys (DB_VERSION) VALUES ('0.0.0.0');");
}

void writeStamp()
{
    run("UPDATE zvsys SET DB_VERSION = '1.0.0.0';");
}

void applyPackage(QByteArray& package)
{
    QBuffer device(&package);
    DataBaseUpdater updater;
    demand(updater.runUpdate(&device), "the update failed");
}

void parts(benchmark::State& state)
{
    QByteArray package = packageOfStatements();
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        resetLists();
        state.ResumeTiming();
        applyPackage(package);
    }
    state.SetItemsProcessed(state.iterations() * partCount);
}

void partsBare(benchmark::State& state)
{
    QStringList statements;
    for (int i = 0; i < partCount; ++i) {
        statements << statementOfPart(i);
    }
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        resetLists();
        state.ResumeTiming();
        readStamp();
        QSqlDatabase::database().transaction();
        QSqlQuery query;
        for (const QString& statement : qAsConst(statements)) {
            query.exec(statement);
        }
        writeStamp();
        QSqlDatabase::database().commit();
    }
    state.SetItemsProcessed(state.iterations() * partCount);
}

void migration(benchmark::State& state)
{
    QByteArray package = packageOfMigration();
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        resetDocuments();
        state.ResumeTiming();
        applyPackage(package);
    }
    state.SetItemsProcessed(state.iterations() * documentCount);
}

/// The new entries by their tags, ready to be put into a content.
QVector<QPair<QString, QJsonObject>> newEntries()
{
    QSqlQuery list;
    list.exec("SELECT ID FROM lists WHERE LIST_NAME = 'Пол'");
    list.next();
    QJsonArray fields = addedFields();
    fields.append(QJsonObject{
        {"tag", "#SEX"}, {"name", "Пол"}, {"type", 1}, {"list", list.value(0).toInt()}});
    run("UPDATE forms SET FIELDS = '" + QString::fromUtf8(compact({{"fields", fields}})) +
        "' WHERE ID = 28");
    QVector<QPair<QString, QJsonObject>> entries;
    for (const QJsonValue& value : qAsConst(fields)) {
        QJsonObject field = value.toObject();
        const QString tag = field.take("tag").toString();
        entries.append({tag, field});
    }
    return entries;
}

void rewriteDocuments(const QVector<QPair<QString, QJsonObject>>& entries)
{
    QSqlQuery documents;
    documents.setForwardOnly(true);
    documents.exec("SELECT ID, CONTENT FROM docs WHERE DOC_TYPE = 28");
    QSqlQuery update;
    update.prepare("UPDATE docs SET CONTENT = ? WHERE ID = ?");
    while (documents.next()) {
        QJsonObject content = QJsonDocument::fromJson(documents.value(1).toByteArray()).object();
        for (const auto& [tag, entry] : entries) {
            content.insert(tag, entry);
        }
        update.bindValue(0, compact(content));
        update.bindValue(1, documents.value(0));
        update.exec();
    }
}

void migrationBare(benchmark::State& state)
{
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        resetDocuments();
        state.ResumeTiming();
        readStamp();
        QSqlDatabase::database().transaction();
        rewriteDocuments(newEntries());
        writeStamp();
        QSqlDatabase::database().commit();
    }
    state.SetItemsProcessed(state.iterations() * documentCount);
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    const BenchDirectory directory;
    run("PRAGMA synchronous = OFF"); // the work is measured, not the disk
    const auto add = [](const char* name, void (*function)(benchmark::State&)) {
        benchmark::RegisterBenchmark(name, function)->Unit(benchmark::kMillisecond);
    };
    add("parts-1000/ours", parts);
    add("parts-1000/bare SQL", partsBare);
    add("migration-5000/ours", migration);
    add("migration-5000/bare", migrationBare);

    benchmark::Initialize(&argc, argv);
    RatioReporter reporter(RatioReporter::Clock::Cpu, RatioReporter::Peers::Floors);
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return 0;
}
