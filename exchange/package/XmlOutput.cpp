#include "exchange/package/XmlOutput.h"

namespace {

/// What stands for a character, or null if it stands for itself. Line ends and tabs would else be
/// taken for blanks or for each other.
const char* replacement(char c)
{
    switch (c) {
    case '&':
        return "&amp;";
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case '"':
        return "&quot;";
    case '\r':
        return "&#13;";
    case '\n':
        return "&#10;";
    case '\t':
        return "&#9;";
    default:
        return nullptr;
    }
}

} // namespace

void XmlOutput::start(const char* name)
{
    closeStart();
    m_bytes += '<';
    m_bytes += name;
    m_isStartOpen = true;
}

void XmlOutput::attribute(const char* name, QStringView value)
{
    m_bytes += ' ';
    m_bytes += name;
    m_bytes += "=\"";
    escaped(value);
    m_bytes += '"';
}

void XmlOutput::attribute(const char* name, const char* value)
{
    m_bytes += ' ';
    m_bytes += name;
    m_bytes += "=\"";
    m_bytes += value;
    m_bytes += '"';
}

void XmlOutput::attribute(const char* name, qint64 value)
{
    attribute(name, QByteArray::number(value).constData());
}

void XmlOutput::text(QStringView text)
{
    closeStart();
    escaped(text);
}

void XmlOutput::number(int number)
{
    closeStart();
    m_bytes += QByteArray::number(number);
}

void XmlOutput::end(const char* name)
{
    if (m_isStartOpen) {
        m_bytes += "/>";
        m_isStartOpen = false;
        return;
    }
    m_bytes += "</";
    m_bytes += name;
    m_bytes += '>';
}

void XmlOutput::raw(const QByteArray& xml)
{
    closeStart();
    m_bytes += xml;
}

int XmlOutput::mark()
{
    closeStart();
    return m_bytes.size();
}

void XmlOutput::truncate(int mark)
{
    m_bytes.truncate(mark);
    m_isStartOpen = false;
}

const QByteArray& XmlOutput::bytes()
{
    closeStart();
    return m_bytes;
}

void XmlOutput::closeStart()
{
    if (m_isStartOpen) {
        m_bytes += '>';
        m_isStartOpen = false;
    }
}

void XmlOutput::escaped(QStringView text)
{
    const QByteArray utf8 = text.toUtf8();
    const char* begin = utf8.constData();
    const char* const end = begin + utf8.size();
    for (const char* at = begin; at != end; ++at) {
        if (const char* instead = replacement(*at)) {
            m_bytes.append(begin, int(at - begin));
            m_bytes += instead;
            begin = at + 1;
        }
    }
    m_bytes.append(begin, int(end - begin));
}
