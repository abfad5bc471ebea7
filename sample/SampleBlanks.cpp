#include "sample/SampleBlanks.h"

#include <QBuffer>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

#include "blanks/BlankRecord.h"
#include "sample/BlankBackground.h"
#include "sample/NewFile.h"
#include "sample/SampleData.h"

namespace {

QSize pageSize(const QJsonValue& blank)
{
    return {mmToPixels(blank["width"].toInt()), mmToPixels(blank["height"].toInt())};
}

QByteArray backgroundPng(const QJsonValue& blank)
{
    QBuffer buffer;
    drawBlankBackground(blank["background"].toObject(), pageSize(blank)).save(&buffer, "PNG");
    return buffer.data();
}

bool insertBlank(QSqlQuery& query, const QJsonValue& blank, QString* error)
{
    const QJsonObject content = {{"fields", blank["fields"]}};
    return runStatement(
        query,
        "INSERT INTO blanks (NAME, FORM_ID, PAPER_FORMAT, PAPER_ORIENTATION, PAGES, FONT, "
        "FONT_SIZE, BACKGROUND_IMG, SIZE_WIDTH, SIZE_HEIGHT, OFFSET_X, OFFSET_Y, CONTENT) VALUES "
        "(?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
        {blank["name"].toString(), blank["form"].toInt(), blank["format"].toInt(),
         blank["orientation"].toInt(), 1, blank["font"].toString(), blank["fontSize"].toInt(),
         blank["background"]["file"].toString(), blank["width"].toInt(), blank["height"].toInt(),
         blank["offsetX"].toInt(), blank["offsetY"].toInt(),
         QJsonDocument(content).toJson(QJsonDocument::Compact)},
        error);
}

} // namespace

bool insertSampleBlanks(QSqlDatabase& database, QString* error)
{
    QSqlQuery query(database);
    const QJsonArray blanks = sampleData("blanks")["blanks"].toArray();
    return std::all_of(blanks.begin(), blanks.end(),
                       [&](const QJsonValue& blank) { return insertBlank(query, blank, error); });
}

bool drawSampleBackgrounds(const QString& directory, QString* error)
{
    const QJsonArray blanks = sampleData("blanks")["blanks"].toArray();
    return std::all_of(blanks.begin(), blanks.end(), [&](const QJsonValue& blank) {
        return writeNewFile(
            directory + "/" + blank["background"]["file"].toString(),
            [&blank] { return backgroundPng(blank); }, error);
    });
}
