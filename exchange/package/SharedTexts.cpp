#include "exchange/package/SharedTexts.h"

#include "exchange/package/PartReader.h"
#include "exchange/package/PartRule.h"
#include "exchange/package/StyleRebuild.h"

namespace {

/// Plain text, and runs with a font; how a text is spoken is left out.
const QVector<ElementRule>& textRules()
{
    static const ElementRule plain{"t", "t", {}, {}, true};
    static const QVector<ElementRule> rules = {
        plain, {"r", "r", {}, {{"rPr", "rPr", {}, runFontRules()}, plain}}};
    return rules;
}

} // namespace

bool SharedTexts::read(const QByteArray& part, QString* error)
{
    PartReader reader(part);
    if (reader.enter("sst")) {
        while (reader.nextChild()) {
            if (reader.is("si")) {
                const int mark = m_texts.mark();
                if (!copy(reader, m_texts)) {
                    // An empty one counts too. The library finds it again only as a text.
                    m_texts.truncate(mark);
                    m_texts.raw("<si><t/></si>");
                }
                m_sizes.append(m_texts.mark() - mark);
            } else {
                reader.skip();
            }
        }
    }
    if (!reader.isWellToTheEnd()) {
        if (error) {
            *error = reader.error();
        }
        return false;
    }
    return true;
}

int SharedTexts::add(PartReader& reader)
{
    XmlOutput text;
    if (!copy(reader, text)) {
        return -1;
    }
    const QByteArray xml = text.bytes();
    const auto known = m_added.constFind(xml);
    if (known != m_added.constEnd()) {
        return known.value();
    }
    const int index = count();
    m_texts.raw(xml);
    m_sizes.append(xml.size());
    m_added.insert(xml, index);
    return index;
}

QByteArray SharedTexts::xml()
{
    XmlOutput out;
    out.start("sst");
    out.attribute("xmlns", "http://schemas.openxmlformats.org/spreadsheetml/2006/main");
    out.attribute("uniqueCount", count());
    out.raw(m_texts.bytes());
    out.end("sst");
    return out.bytes();
}

/// Copies the text of the element that the reader is at; false if there is none in it.
bool SharedTexts::copy(PartReader& reader, XmlOutput& out)
{
    out.start("si");
    const int copied = copyChildren(reader, textRules(), out);
    out.end("si");
    return copied > 0;
}
