#include "exchange/WorkbookCheck.h"

#include <QXmlStreamReader>

#include "exchange/CellName.h"
#include "exchange/ZipArchive.h"

namespace {

constexpr qint64 unpackedMax = 128LL * 1024 * 1024; // bytes, all parts together
constexpr int rowMax = 1048576;
constexpr int columnMax = 16384;

/// True if the text names a cell that a sheet can have.
bool isCellName(const QString& name)
{
    const QXlsx::CellReference cell = cellFromName(name);
    return cell.isValid() && cell.row() <= rowMax && cell.column() <= columnMax;
}

/// True for "A1" and "A1:B2".
bool isRange(const QString& range)
{
    const QStringList corners = range.split(':');
    return corners.size() <= 2 && isCellName(corners.first()) && isCellName(corners.last());
}

/// Reads the XML of one part piece by piece and looks for what the library does not survive.
class PartCheck
{
public:
    /// Takes the next piece; false as soon as the part is found unsound.
    bool take(const char* data, int size)
    {
        m_reader.addData(QByteArray(data, size));
        while (!m_reader.atEnd()) {
            if (!isSound(m_reader.readNext())) {
                return false;
            }
        }
        return !m_reader.hasError() ||
               m_reader.error() == QXmlStreamReader::PrematureEndOfDocumentError;
    }

    bool isWhole() const { return m_isWhole; }

private:
    bool isSound(QXmlStreamReader::TokenType token)
    {
        switch (token) {
        case QXmlStreamReader::DTD:
            return false; // no part has one; entities would blow the text up
        case QXmlStreamReader::StartElement:
            return isSoundElement();
        case QXmlStreamReader::EndDocument:
            m_isWhole = true;
            return true;
        default:
            return true;
        }
    }

    bool isSoundElement()
    {
        if (m_root.isEmpty()) {
            m_root = m_reader.name().toString();
        }
        if (m_root == QLatin1String("worksheet")) {
            return isSoundSheetElement();
        }
        if (m_root == QLatin1String("workbook")) {
            return isSoundWorkbookElement();
        }
        if (m_root == QLatin1String("styleSheet")) {
            return isSoundFormat();
        }
        if (m_root == QLatin1String("Relationships")) {
            return isSoundRelationship();
        }
        return true;
    }

    bool isSoundSheetElement() const
    {
        const QStringRef name = m_reader.name();
        if (name == QLatin1String("c")) {
            return isCellName(attribute("r"));
        }
        if (name == QLatin1String("dimension")) {
            return isRange(attribute("ref"));
        }
        if (name == QLatin1String("col")) {
            return attribute("min").toInt() >= 1 && attribute("max").toInt() <= columnMax;
        }
        return true;
    }

    bool isSoundWorkbookElement()
    {
        const QStringRef name = m_reader.name();
        if (name == QLatin1String("sheet")) {
            ++m_sheetCount;
        }
        const QString sheet = attribute("localSheetId");
        return name != QLatin1String("definedName") || sheet.isEmpty() ||
               (sheet.toInt() >= 0 && sheet.toInt() < m_sheetCount);
    }

    /// A format points into lists by number; only too large numbers are caught by the library.
    bool isSoundFormat() const
    {
        return m_reader.name() != QLatin1String("xf") ||
               (attribute("fontId").toInt() >= 0 && attribute("fillId").toInt() >= 0 &&
                attribute("borderId").toInt() >= 0);
    }

    /// Only sheets with cells and sheets with a chart are known to the library.
    bool isSoundRelationship() const
    {
        const QString type = attribute("Type");
        return !type.endsWith(QLatin1String("/dialogsheet")) &&
               !type.endsWith(QLatin1String("/xlMacrosheet"));
    }

    QString attribute(const char* name) const
    {
        return m_reader.attributes().value(QLatin1String(name)).toString();
    }

    QXmlStreamReader m_reader;
    QString m_root; ///< name of the part's outermost element
    int m_sheetCount = 0;
    bool m_isWhole = false;
};

bool isXml(const QByteArray& partName)
{
    const QByteArray name = partName.toLower();
    return name.endsWith(".xml") || name.endsWith(".rels") || name.endsWith(".vml");
}

bool isSoundPart(ZipArchive& archive, const ZipArchive::Part& part)
{
    if (!isXml(part.name) || part.unpackedSize == 0) {
        return archive.unpack(part, [](const char*, int) { return true; });
    }
    PartCheck check;
    return archive.unpack(part, [&check](const char* data, int size) {
        return check.take(data, size);
    }) && check.isWhole();
}

} // namespace

bool isSoundWorkbook(QIODevice& device)
{
    ZipArchive archive(device);
    if (!archive.readDirectory()) {
        return false;
    }
    qint64 unpacked = 0;
    for (const ZipArchive::Part& part : archive.parts()) {
        unpacked += part.unpackedSize;
    }
    if (unpacked > unpackedMax) {
        return false;
    }
    for (const ZipArchive::Part& part : archive.parts()) {
        if (!isSoundPart(archive, part)) {
            return false;
        }
    }
    return true;
}
