#include "store/UpdateFixture.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QtTest>

#include "support/Process.h"

namespace {

const char* const packer = R"(
import base64, json, struct, sys

def byte_array(data):
    return struct.pack('>I', len(data)) + data

def string(text):
    if text is None:
        return struct.pack('>I', 0xFFFFFFFF)
    return byte_array(text.encode('utf-16-be'))

job = json.loads(sys.stdin.read())
for package in job['packages']:
    out = byte_array(job['header'].encode('utf-8'))
    for part in package:
        out += byte_array(part[0].encode('utf-8')) + string(part[1]) + string(part[2])
    print(base64.b64encode(out).decode('ascii'))
)";

QByteArray compact(const QJsonObject& object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

QJsonValue jsonString(const QString& text)
{
    return text.isNull() ? QJsonValue(QJsonValue::Null) : QJsonValue(text);
}

} // namespace

TestPart sqlPart(const QString& version, const QString& statement, bool ignoreErrors)
{
    QJsonObject json{{"version", version}, {"type", "sqlQuery"}};
    if (ignoreErrors) {
        json["ignore_errors"] = true;
    }
    return {compact(json), statement};
}

TestPart functionPart(const QString& version, const QString& argument, bool ignoreErrors)
{
    return {compact({{"version", version},
                     {"type", "cppFunction"},
                     {"function_name", "crutchFrdoA"},
                     {"ignore_errors", ignoreErrors}}),
            argument};
}

QByteArray packPackage(const QByteArray& header, const QList<TestPart>& parts)
{
    return packPackages(header, {parts}).value(0);
}

QList<QByteArray> packPackages(const QByteArray& header, const QList<QList<TestPart>>& packages)
{
    QJsonArray jobs;
    for (const QList<TestPart>& parts : packages) {
        QJsonArray job;
        for (const TestPart& part : parts) {
            job.append(QJsonArray{QString::fromUtf8(part.json), jsonString(part.unused),
                                  jsonString(part.payload)});
        }
        jobs.append(QJsonValue(job));
    }
    const ProcessResult result =
        runProcess(ZELVORA_PYTHON, {"-c", packer},
                   compact({{"header", QString::fromUtf8(header)}, {"packages", jobs}}));
    if (result.exitCode != 0) {
        QTest::qFail(result.err.constData(), __FILE__, __LINE__);
    }
    QList<QByteArray> bytes;
    for (const QByteArray& line : result.out.trimmed().split('\n')) {
        bytes << QByteArray::fromBase64(line);
    }
    return bytes;
}

QByteArray headerFor(const QString& version)
{
    return compact({{"update_version", version}});
}

void placePackage(const TempApplication& app, const QByteArray& package)
{
    QFile file(app.path("dbUpdate.bin"));
    if (!file.open(QIODevice::WriteOnly) || file.write(package) != package.size()) {
        QTest::qFail("no package", __FILE__, __LINE__);
    }
}

void makeForm28(TempApplication& app, int documents)
{
    app.exec(
        "INSERT INTO forms (ID, FORM_NAME, FORM_FULLNAME, FIELDS) VALUES (28, 'Удостоверение', "
        "'', ?)",
        {QByteArray(R"({"fields": [{"tag": "#OLD", "name": "Прежнее", "type": 0}]})")});
    app.exec("INSERT INTO lists (ID, LIST_NAME, LIST_ITEMS) VALUES "
             "(101, 'Вид документа', '{}'), (102, 'Да/Нет', '{}'), "
             "(103, 'Уровень образования', '{}'), "
             "(104, 'Гражданство получателя (по ОКСМ)', '{}'), "
             "(105, 'Форма получения образования', '{}'), (106, 'Пол', '{}'), "
             "(107, 'Источник финансирования', '{}'), (108, 'Форма обучения', '{}')");
    QSqlDatabase::database().transaction();
    for (int i = 1; i <= documents; ++i) {
        const QString content = i % 10 == 0
                                    ? QString("{ broken %1").arg(i)
                                    : QString("{\"#OLD\": {\"name\": \"Прежнее\", \"type\": 0, "
                                              "\"value\": \"значение %1\"}}")
                                          .arg(i);
        app.exec("INSERT INTO docs (LNAME, DOC_TYPE, TEMPLATE, CONTENT) VALUES (?, 28, 0, ?)",
                 {QString("Фамилия%1").arg(i), content});
    }
    QSqlDatabase::database().commit();
}

QString migrationArgument()
{
    return R"([{"tag": "#SEX", "name": "Пол", "type": 1, "list": IDL_SEX},
               {"tag": "#NOTE", "name": "Примечание", "type": 5},
               {"tag": "#OLD", "name": "Другое", "type": 5}])";
}
