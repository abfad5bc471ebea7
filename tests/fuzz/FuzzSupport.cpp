#include "fuzz/FuzzSupport.h"

#include <QApplication>
#include <QEvent>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMessageBox>
#include <QSqlDatabase>
#include <QSqlQuery>

#include <cstdio>
#include <cstdlib>

#include "store/Schema.h"

namespace {

/// Answers every message box as a user does who closes it.
class MessageBoxCloser : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Show && qobject_cast<QMessageBox*>(watched)) {
            QMetaObject::invokeMethod(watched, "reject", Qt::QueuedConnection);
        }
        return QObject::eventFilter(watched, event);
    }
};

void ignoreMessage(QtMsgType, const QMessageLogContext&, const QString&) {}

QSqlQuery execute(const QString& statement, const QVariantList& values)
{
    QSqlQuery query;
    bool done = query.prepare(statement);
    for (const QVariant& value : values) {
        query.addBindValue(value);
    }
    done = done && query.exec();
    require(done, "a statement of the target itself succeeds");
    return query;
}

void startApplication()
{
    static QApplication* application = nullptr; // lives as long as the process
    if (application) {
        return;
    }
    static int argc = 1;
    static char name[] = "fuzz";
    static char* argv[] = {name, nullptr};
    qputenv("QT_QPA_PLATFORM", "offscreen");
    application = new QApplication(argc, argv);
    application->installEventFilter(new MessageBoxCloser(application));
    qInstallMessageHandler(ignoreMessage);
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    constexpr std::size_t longest = 16384;
    startApplication();
    if (size <= longest) {
        tryInput(QByteArray(reinterpret_cast<const char*>(data), static_cast<int>(size)));
    }
    return 0;
}

void require(bool holds, const char* property)
{
    if (!holds) {
        std::fprintf(stderr, "Does not hold: %s\n", property);
        std::abort();
    }
}

void openFreshDatabase()
{
    {
        QSqlDatabase old = QSqlDatabase::database(QSqlDatabase::defaultConnection, false);
        old.close();
    }
    QSqlDatabase::removeDatabase(QSqlDatabase::defaultConnection);
    QSqlDatabase database = QSqlDatabase::addDatabase("QSQLITE");
    database.setDatabaseName(":memory:");
    require(database.open() && createSchema(database), "a database in memory can be made");
}

void insertFormAndList()
{
    runSql("INSERT INTO forms (ID, FORM_NAME, FIELDS) VALUES (1, 'Диплом', '')");
    runSql("INSERT INTO lists (ID, LIST_NAME, LIST_ITEMS) VALUES (1, 'Пол', "
           "'{\"items\": [\"М\", \"Ж\"]}')");
}

void runSql(const QString& statement, const QVariantList& values)
{
    execute(statement, values);
}

QVariant sqlValue(const QString& statement)
{
    QSqlQuery query = execute(statement, {});
    return query.next() ? query.value(0) : QVariant();
}

QJsonObject throughJsonText(const QJsonObject& object)
{
    return QJsonDocument::fromJson(QJsonDocument(object).toJson(QJsonDocument::Compact)).object();
}
