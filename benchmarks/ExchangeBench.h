#pragma once

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QSqlDatabase>
#include <QSqlQuery>

#include <functional>

#include "benchmarks/BenchDirectory.h"
#include "benchmarks/RatioReporter.h"
#include "exchange/ExchangeTemplate.h"
#include "forms/FormDefinitions.h"

/// What the benchmarks of export and import share: an application directory on disk with one form,
/// a mapping of 20 columns, and the peer's jobs.
class ExchangeBench : public BenchDirectory
{
public:
    /// How long a job of the peer took, in seconds; negative if it failed.
    struct PeerTime
    {
        double clock = -1;
        double processor = -1;
    };

    ExchangeBench()
    {
        QJsonArray fields;
        for (const QString& tag : formTags()) {
            fields.append(QJsonObject{{"tag", tag}, {"name", "Поле " + tag}, {"type", 0}});
        }
        QSqlQuery query;
        query.prepare("INSERT INTO forms (FORM_NAME, FORM_FULLNAME, FIELDS) VALUES (?, ?, ?)");
        query.addBindValue("Диплом");
        query.addBindValue("Диплом о среднем профессиональном образовании");
        query.addBindValue(QJsonDocument(QJsonObject{{"fields", fields}}).toJson());
        query.exec();
        docTypeNames = {{1, "Диплом"}};
    }

    static QStringList formTags()
    {
        return {"#SPECIALTY", "#QUALIFICATION", "#PROTOCOL_NO", "#REG_NO", "#HONOURS",
                "#YEARS",     "#DEPARTMENT",    "#MANAGER",     "#NOTE"};
    }

    /// "#DUPLICATE" first, so that no row is refused.
    static QVector<ExchangeItem> items()
    {
        const QStringList tags =
            QStringList{"#DUPLICATE",  "#BLANK_SER", "#BLANK_NO",  "#LNAME",
                        "#FNAME",      "#MNAME",     "#DOC_GROUP", "#BIRTH_DATE",
                        "#ISSUE_DATE", "#EDIT_DATE", "#DOC_NAME"} +
            formTags();
        QVector<ExchangeItem> all;
        for (const QString& tag : tags) {
            all.append({QString(QChar('A' + all.size())), tag});
        }
        return all;
    }

    void addDocuments(int count)
    {
        QSqlDatabase::database().transaction();
        QSqlQuery insert;
        insert.prepare("INSERT INTO docs (BLANK_SER, BLANK_NO, FNAME, LNAME, MNAME, BIRTH_DATE, "
                       "DOC_TYPE, DOC_GROUP, ISSUE_DATE, EDIT_DATE, DUPLICATE, TEMPLATE, "
                       "TEMPLATE_NAME, CONTENT) "
                       "VALUES (?, ?, ?, ?, ?, ?, 1, ?, ?, ?, ?, 0, '', ?)");
        for (int i = 0; i < count; ++i) {
            QJsonObject content;
            for (const QString& tag : formTags()) {
                content[tag] = QJsonObject{{"name", "Поле " + tag},
                                           {"type", 0},
                                           {"value", QString("Значение %1").arg(i % 100)}};
            }
            insert.addBindValue("0077");
            insert.addBindValue(QString("%1").arg(i, 7, 10, QChar('0')));
            insert.addBindValue("Анна");
            insert.addBindValue("Фамилия" + QString::number(i));
            insert.addBindValue("Сергеевна");
            insert.addBindValue(QDate(2000, 1, 1).addDays(i % 3000).toString("yyyy-MM-dd"));
            insert.addBindValue(QString("11-%1").arg(i % 5));
            insert.addBindValue("2019-06-25");
            insert.addBindValue("2019-06-26");
            insert.addBindValue(i % 10 == 0);
            insert.addBindValue(QString::fromUtf8(QJsonDocument(content).toJson()));
            insert.exec();
        }
        QSqlDatabase::database().commit();
    }

    /// Runs a job of the peer with the mapping.
    static PeerTime runPeer(const QString& job, const QStringList& before, const QString& last)
    {
        QJsonArray mapping;
        for (const ExchangeItem& item : items()) {
            mapping.append(QJsonArray{item.column, item.tag});
        }
        const QString text = QJsonDocument(mapping).toJson(QJsonDocument::Compact);
        const QList<QByteArray> times =
            output(QStringList{job} + before + QStringList{text, last}).split(' ');
        if (times.size() != 2) {
            return {};
        }
        return {times[0].toDouble(), times[1].toDouble()};
    }

    /// The texts of a workbook's first sheet as the peer reads them.
    static QByteArray texts(const QString& workbook) { return output({"check", workbook}); }

private:
    static QByteArray output(const QStringList& arguments)
    {
        QProcess peer;
        peer.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        peer.start(ZELVORA_PYTHON, QStringList{ZELVORA_EXCHANGE_PEER} + arguments);
        peer.waitForFinished(-1);
        return peer.readAllStandardOutput().trimmed();
    }
};

constexpr int repetitions = 5;

/// Registers a job that sets the time of its one iteration itself.
inline void addJob(const char* name, const std::function<void(benchmark::State&)>& job,
                   int times = repetitions)
{
    benchmark::RegisterBenchmark(name, job)
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond)
        ->Iterations(1)
        ->Repetitions(times)
        ->ReportAggregatesOnly();
}

/// Runs all jobs and prints how they compare.
inline void runJobs(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    RatioReporter reporter(RatioReporter::Clock::Real);
    benchmark::RunSpecifiedBenchmarks(&reporter);
}
