#include "store/DataBaseUpdater.h"

#include <QBuffer>
#include <QDataStream>
#include <QDebug>
#include <QFile>
#include <QJsonDocument>
#include <QMessageBox>
#include <QPushButton>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QStringList>

#include "app/AppStyle.h"
#include "store/UpdatePackage.h"

namespace {

/// A word in the argument of the migration, and the list whose identifier takes its place.
struct ListPlaceholder
{
    const char* word;
    const char* listName;
};

const ListPlaceholder listPlaceholders[] = {
    {"IDL_DOC_FULL_NAME", "Вид документа"},
    {"IDL_YES_NO", "Да/Нет"},
    {"IDL_EDUC_LVL", "Уровень образования"},
    {"IDL_CITIZEN", "Гражданство получателя (по ОКСМ)"},
    {"IDL_EDUC_FORM", "Форма получения образования"},
    {"IDL_SEX", "Пол"},
    {"IDL_FIN_SOURCE", "Источник финансирования"},
    {"IDL_STUDY_FORM", "Форма обучения"},
};

constexpr int migratedFormId = 28;

/// Whether the update's transaction is still there. A statement may have ended it ("COMMIT", or a
/// conflict that rolls back), and then each further one would stand for itself.
bool isInTransaction()
{
    QSqlQuery query;
    if (!query.exec("BEGIN")) {
        return true; // refused within a transaction
    }
    query.exec("ROLLBACK");
    return false;
}

/// Adds an entry for each field that the content lacks; true if any was added.
bool addMissingEntries(QJsonObject& content, const QJsonArray& fields)
{
    bool changed = false;
    for (const QJsonValue& value : fields) {
        QJsonObject field = value.toObject();
        const QString tag = field.value("tag").toString();
        if (tag.isEmpty() || content.contains(tag)) {
            continue;
        }
        field.remove("tag");
        content.insert(tag, field);
        changed = true;
    }
    return changed;
}

/// Puts the whole of a file into `bytes`, since a stream takes a failed read for the end of the
/// package. False if it cannot be read; what is no file is left to the stream.
bool readFile(QIODevice* device, QByteArray& bytes)
{
    auto* file = qobject_cast<QFileDevice*>(device);
    bytes = file ? file->readAll() : QByteArray();
    return !file || file->error() == QFileDevice::NoError;
}

/// Tells the user of a failed update; true if the package is to be removed.
bool askToRemovePackage(const DataBaseUpdater& updater)
{
    constexpr int shownQueryLength = 1200;
    QMessageBox box;
    applyBaseStyle(&box);
    box.setWindowTitle("Ошибка обновления БД");
    box.setText("Не удалось обновить базу данных.\n\n-- ERROR --\n" + updater.lastError() +
                ";\n\n-- SQL QUERY --\n" + updater.lastQuery().left(shownQueryLength));
    // The texts come from the driver and from the package: none of it is markup.
    box.setTextFormat(Qt::PlainText);
    box.addButton("Продолжить", QMessageBox::AcceptRole);
    const QPushButton* remove = box.addButton("Удалить файл обн.", QMessageBox::DestructiveRole);
    box.exec();
    return box.clickedButton() == static_cast<const QAbstractButton*>(remove);
}

} // namespace

bool DataBaseUpdater::runUpdate(QIODevice* device)
{
    qDebug() << "Запуск обновления базы данных...";
    m_lastError.clear();
    m_lastQuery.clear();
    QByteArray bytes;
    if (!device->open(QIODevice::ReadOnly) || !readFile(device, bytes)) {
        device->close();
        m_lastError = "Не удалось открыть файл с обновлением БД";
        return false;
    }
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    if (!readDbVersion(m_currentVersion, true)) {
        return false;
    }
    QDataStream stream(qobject_cast<QFileDevice*>(device) ? &buffer : device);
    QByteArray header;
    stream >> header;
    const QString updateVersion = parseUpdateJson(header).value("update_version").toString();
    qDebug() << "Текущая версия БД: " << m_currentVersion;
    qDebug() << "Версия обновления БД: " << updateVersion;
    if (!isNewerVersion(m_currentVersion, updateVersion)) {
        qDebug() << "Обновление базы не требуется";
        device->close();
        return true;
    }
    QSqlDatabase database = QSqlDatabase::database();
    // kept: the results of transaction() and commit() are not looked at; the statements between
    // tell.
    database.transaction();
    const bool applied = applyParts(stream) && writeDbVersion(updateVersion);
    // kept: what becomes of the commit is not told. But a transaction that it left open would take
    // every later change of the run with it.
    if (!applied || !database.commit()) {
        database.rollback();
    }
    device->close();
    return applied;
}

bool DataBaseUpdater::readDbVersion(QString& version, bool create)
{
    version = "0.0.0.0";
    QSqlQuery query;
    if (create && !query.exec("CREATE TABLE IF NOT EXISTS zvsys (DB_VERSION TEXT);")) {
        fail("Не удалось создать таблицу zvsys;\nSqlError: ", query);
        return false;
    }
    // Asked again if it fails: taken for an absent row, one failed read would have a package
    // applied that has been applied already.
    const QString select = "SELECT DB_VERSION FROM zvsys";
    if ((query.exec(select) || query.exec(select)) && query.next()) {
        version = query.value("DB_VERSION").toString();
        return true;
    }
    if (!create || !query.exec("INSERT INTO zvsys (DB_VERSION) VALUES ('" + version + "');")) {
        fail("Не удалось получить/создать DB_VERSION;\nSqlError: ", query);
        return false;
    }
    return true;
}

bool DataBaseUpdater::writeDbVersion(const QString& version)
{
    QSqlQuery query;
    if (!query.exec("UPDATE zvsys SET DB_VERSION = '" + version + "';")) {
        fail("Ошибка установки версии базы данных;\nSqlError: ", query);
        return false;
    }
    return true;
}

bool DataBaseUpdater::isNewerVersion(const QString& current, const QString& candidate) const
{
    return ::isNewerVersion(current, candidate);
}

bool DataBaseUpdater::applyPart(QDataStream& stream)
{
    UpdatePart part;
    if (!readUpdatePart(stream, part)) {
        // Cut off: as if the file had ended before this part. A statement that is no text at all
        // fails, whatever is to be ignored, since nothing behind it can be read either.
        const bool isCutOff = stream.status() != QDataStream::ReadCorruptData;
        if (!isCutOff) {
            m_lastError = "Ошибка выполнения запроса;\nSqlError: файл обновления повреждён";
        }
        return isCutOff;
    }
    const QJsonObject json = parseUpdateJson(part.json);
    if (!isNewerVersion(m_currentVersion, json.value("version").toString())) {
        return true;
    }
    return applyDuePart(json, part.payload);
}

QVariant DataBaseUpdater::listIdByName(const QString& name)
{
    QSqlQuery query;
    if (!query.exec("SELECT ID FROM lists WHERE LIST_NAME = '" + name + "'")) {
        fail("Ошибка выполнения запроса;\nSqlError: ", query);
        qDebug() << m_lastError;
        return {};
    }
    if (!query.next()) {
        m_lastError = "Список '" + name + "' не найден";
        qDebug() << m_lastError;
        return {};
    }
    return query.value("ID");
}

bool DataBaseUpdater::crutchFrdoA(const QJsonObject&, QString text)
{
    QSqlQuery query;
    if (!query.exec("SELECT FIELDS FROM forms WHERE ID = 28")) {
        fail("Ошибка выполнения запроса;\nSqlError: ", query);
        return false;
    }
    if (!query.next()) {
        return true;
    }
    QJsonParseError parsed{};
    QJsonObject form =
        QJsonDocument::fromJson(query.value("FIELDS").toByteArray(), &parsed).object();
    if (parsed.error != QJsonParseError::NoError) {
        m_lastError = "Function: crutchFrdoA. Json parse error: " + parsed.errorString();
        return false;
    }
    QJsonArray fields = form.value("fields").toArray();

    insertListIds(text);
    const QJsonArray added = QJsonDocument::fromJson(text.toUtf8(), &parsed).array();
    if (parsed.error != QJsonParseError::NoError) {
        m_lastError = "Function: crutchFrdoA. Json (Append) parse error: " + parsed.errorString();
        return false;
    }
    for (const QJsonValue& field : added) {
        fields.append(field);
    }
    form["fields"] = fields;
    const QString json = QJsonDocument(form).toJson(QJsonDocument::Compact);
    if (!query.exec("UPDATE forms SET FIELDS = '" + json + "' WHERE ID = 28")) {
        fail("Ошибка выполнения запроса;\nSqlError: ", query);
        return false;
    }
    QString error;
    // kept: true all the same.
    if (!updateFormExistDocuments(migratedFormId, fields, &error)) {
        // The form itself is changed, and that is what the migration is for.
        m_lastError = "Function: crutchFrdoA. Не удалось обновить поля имеющихся документов";
        qDebug() << m_lastError << error;
    }
    return true;
}

bool DataBaseUpdater::updateFormExistDocuments(const QVariant& formId, const QJsonArray& fields,
                                               QString* error)
{
    const auto failed = [error](const QSqlQuery& query) {
        if (error) {
            *error = "SqlError: " + query.lastError().text();
        }
        return false;
    };
    QSqlQuery documents;
    documents.setForwardOnly(true);
    if (!documents.exec("SELECT ID, CONTENT FROM docs WHERE DOC_TYPE = " + formId.toString())) {
        return failed(documents);
    }
    QSqlQuery update;
    if (!update.prepare("UPDATE docs SET CONTENT = :CONTENT WHERE ID = :ID")) {
        return failed(update);
    }
    while (documents.next()) {
        QJsonParseError parsed{};
        const QByteArray stored = documents.value("CONTENT").toByteArray();
        const QJsonDocument document = QJsonDocument::fromJson(stored, &parsed);
        if (parsed.error != QJsonParseError::NoError) {
            qDebug() << "DataBaseUpdater::updateFormExistDocuments(). JsonError: " +
                            parsed.errorString();
            continue;
        }
        QJsonObject content = document.object();
        if (!addMissingEntries(content, fields)) {
            continue;
        }
        update.bindValue(":CONTENT", QJsonDocument(content).toJson(QJsonDocument::Compact));
        update.bindValue(":ID", documents.value("ID"));
        if (!update.exec()) {
            return failed(update);
        }
    }
    return true;
}

bool DataBaseUpdater::applyParts(QDataStream& stream)
{
    while (!stream.atEnd()) {
        if (!applyPart(stream)) {
            return false;
        }
        if (!isInTransaction()) {
            m_lastError =
                "Ошибка выполнения запроса;\nSqlError: запрос завершил транзакцию обновления";
            m_lastQuery = m_statement;
            return false;
        }
    }
    return true;
}

bool DataBaseUpdater::applyDuePart(const QJsonObject& part, const QString& payload)
{
    const QString type = part.value("type").toString("sqlQuery");
    const bool ignoreErrors = part.value("ignore_errors").toBool(false);
    if (type == "sqlQuery" || type.isEmpty()) {
        return runQueryPart(payload) || ignoreErrors;
    }
    if (type == "cppFunction") {
        return runFunctionPart(part, payload) || ignoreErrors;
    }
    m_lastError = "Unknown partType - " + type;
    return false;
}

bool DataBaseUpdater::runQueryPart(const QString& statement)
{
    m_statement = statement;
    QSqlQuery query;
    if (query.exec(statement)) {
        return true;
    }
    qDebug() << "(DataBaseUpdater) SqlError:" << query.lastError().text()
             << ";  SqlQuery:" << statement;
    fail("Ошибка выполнения запроса;\nSqlError: ", query);
    return false;
}

bool DataBaseUpdater::runFunctionPart(const QJsonObject& part, const QString& argument)
{
    const QString name = part.value("function_name").toString();
    if (name == "crutchFrdoA") {
        return crutchFrdoA(part, argument);
    }
    m_lastError = "Unknown function_name - " + name;
    qDebug() << "(DataBaseUpdater) " + m_lastError;
    return false;
}

void DataBaseUpdater::insertListIds(QString& text)
{
    QStringList listIds;
    for (const ListPlaceholder& placeholder : listPlaceholders) {
        listIds << listIdByName(placeholder.listName).toString();
    }
    for (int i = 0; i < listIds.size(); ++i) {
        text.replace(listPlaceholders[i].word, listIds[i]);
    }
}

void DataBaseUpdater::fail(const QString& what, const QSqlQuery& query)
{
    // kept: no later success within the run clears it; callers look at it after a failure only.
    m_lastError = what + query.lastError().text();
    m_lastQuery = query.lastQuery();
}

bool runDatabaseUpdate(QFile& package)
{
    DataBaseUpdater updater;
    if (updater.runUpdate(&package)) {
        qDebug() << "Обновление базы данных завершено успешно";
        package.remove();
        return true;
    }
    qDebug() << "Обновление базы прервано из-за ошибки: " << updater.lastError();
    if (askToRemovePackage(updater)) {
        package.remove();
    }
    return true;
}
