#include "batch/SheetSignature.h"

#include <QCryptographicHash>
#include <QDataStream>
#include <QDateTime>
#include <QFileInfo>
#include <QSqlQuery>
#include <QSqlRecord>

#include "app/AppHelpers.h"
#include "printing/PrintSheet.h"
#include "store/OrgData.h"

namespace {

/// All columns of a row of a table; empty if it can't be read.
QByteArray rowBytes(const QString& table, const QVariant& id, QString* background = nullptr)
{
    QSqlQuery query;
    query.setForwardOnly(true);
    query.prepare("SELECT * FROM " + table + " WHERE ID = ?");
    query.addBindValue(id);
    if (!query.exec() || !query.next()) {
        return {};
    }
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    const int columns = query.record().count();
    for (int column = 0; column < columns; ++column) {
        stream << query.value(column);
    }
    if (background) {
        *background = query.value("BACKGROUND_IMG").toString();
    }
    return bytes;
}

QByteArray digest(const QByteArray& bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Sha1);
}

} // namespace

SheetSignature::SheetSignature()
{
    QDataStream stream(&m_organisation, QIODevice::WriteOnly);
    stream << orgNameFormat1 << orgNameFormat2 << orgRegion << orgLocality << orgDirector;
}

QByteArray SheetSignature::of(const PrintSheet& sheet)
{
    const QByteArray document = rowBytes("docs", sheet.document.id);
    const QByteArray blank = ofBlank(sheet.blank.id);
    if (document.isEmpty() || blank.isEmpty()) {
        return {};
    }
    return digest(document + blank + m_organisation);
}

QByteArray SheetSignature::ofBlank(const QVariant& id)
{
    QByteArray& bytes = m_blanks[id.toString()];
    if (bytes.isEmpty()) {
        QString background;
        bytes = rowBytes("blanks", id, &background);
        if (!bytes.isEmpty()) {
            const QFileInfo file(appFilePath(background));
            QDataStream stream(&bytes, QIODevice::Append);
            stream << file.size() << file.lastModified();
        }
    }
    return bytes;
}
