#include "exchange/package/PartReader.h"

#include "exchange/package/MarkupScan.h"
#include "exchange/package/PackageLimits.h"

namespace {

const QLatin1String sheetName("http://schemas.openxmlformats.org/spreadsheetml/2006/main");
const QLatin1String sheetStrictName("http://purl.oclc.org/ooxml/spreadsheetml/main");
const QLatin1String
    compatibilityName("http://schemas.openxmlformats.org/markup-compatibility/2006");

bool isRelationsOfDocument(const QStringRef& name)
{
    return name == QLatin1String(
                       "http://schemas.openxmlformats.org/officeDocument/2006/relationships") ||
           name == QLatin1String("http://purl.oclc.org/ooxml/officeDocument/relationships");
}

Vocabulary vocabularyOf(const QStringRef& name)
{
    if (name.isEmpty() || name == sheetName || name == sheetStrictName) {
        return Vocabulary::Sheet;
    }
    if (name.endsWith(QLatin1String("/spreadsheetDrawing"))) {
        return Vocabulary::Drawing;
    }
    if (name == QLatin1String("http://schemas.openxmlformats.org/drawingml/2006/main") ||
        name == QLatin1String("http://purl.oclc.org/ooxml/drawingml/main"))
    {
        return Vocabulary::Picture;
    }
    if (name == QLatin1String("http://schemas.openxmlformats.org/drawingml/2006/chart") ||
        name == QLatin1String("http://purl.oclc.org/ooxml/drawingml/chart"))
    {
        return Vocabulary::Chart;
    }
    for (const char* properties :
         {"http://schemas.openxmlformats.org/package/2006/metadata/core-properties",
          "http://purl.org/dc/elements/1.1/", "http://purl.org/dc/terms/",
          "http://schemas.openxmlformats.org/officeDocument/2006/extended-properties",
          "http://purl.oclc.org/ooxml/officeDocument/extendedProperties"})
    {
        if (name == QLatin1String(properties)) {
            return Vocabulary::Properties;
        }
    }
    return name.endsWith(QLatin1String("/package/2006/relationships")) ? Vocabulary::Relations
                                                                       : Vocabulary::Other;
}

} // namespace

PartReader::PartReader(const QByteArray& part)
{
    const QByteArray text = utf8Markup(part);
    if (!isBoundedMarkup(text, &m_error)) {
        return;
    }
    if (text.constData() == part.constData()) {
        m_reader.addData(part);
    } else {
        // As a text, so that the encoding that it may declare counts no longer.
        m_reader.addData(QString::fromUtf8(text));
    }
}

bool PartReader::enter(const char* root, Vocabulary vocabulary)
{
    if (!isWell() || !m_reader.readNextStartElement()) {
        return false;
    }
    if (is(root) && this->vocabulary() == vocabulary) {
        return true;
    }
    m_error = QString("not a part with the root %1").arg(root);
    return false;
}

bool PartReader::nextChild()
{
    while (!m_reader.atEnd()) {
        const QXmlStreamReader::TokenType token = m_reader.readNext();
        if (token != QXmlStreamReader::StartElement && token != QXmlStreamReader::EndElement) {
            continue;
        }
        const bool isAlternative = m_reader.namespaceUri() == compatibilityName;
        if (token == QXmlStreamReader::EndElement) {
            if (!isAlternative) {
                return false;
            }
            continue;
        }
        if (++m_elements > PackageLimits::elements) {
            m_error = "too many elements";
            return false;
        }
        if (!isAlternative && vocabulary() != Vocabulary::Other) {
            return true;
        }
        // The children of "AlternateContent" and "Fallback" count as those of the element around.
        if (!isAlternative || is("Choice")) {
            skip();
        }
    }
    return false;
}

void PartReader::skip()
{
    m_reader.skipCurrentElement();
}

QString PartReader::text()
{
    return m_reader.readElementText(QXmlStreamReader::SkipChildElements);
}

Vocabulary PartReader::vocabulary() const
{
    return vocabularyOf(m_reader.namespaceUri());
}

QString PartReader::relation(const char* name) const
{
    const QXmlStreamAttributes all = m_reader.attributes();
    for (const QXmlStreamAttribute& attribute : all) {
        if (attribute.name() == QLatin1String(name) &&
            isRelationsOfDocument(attribute.namespaceUri())) {
            return attribute.value().toString();
        }
    }
    return QString();
}

int PartReader::whole(const char* name, int least, int most, int fallback) const
{
    bool isNumber = false;
    const int number = attribute(name).toInt(&isNumber);
    return isNumber && number >= least && number <= most ? number : fallback;
}

bool PartReader::flag(const char* name, bool fallback) const
{
    return flagOf(attribute(name), fallback);
}

bool PartReader::isWellToTheEnd()
{
    while (isWell() && !m_reader.atEnd()) {
        m_reader.readNext();
    }
    return isWell();
}

bool flagOf(const QStringRef& text, bool fallback)
{
    if (text == QLatin1String("1") || text == QLatin1String("true") || text == QLatin1String("on"))
    {
        return true;
    }
    if (text == QLatin1String("0") || text == QLatin1String("false") ||
        text == QLatin1String("off")) {
        return false;
    }
    return fallback;
}
