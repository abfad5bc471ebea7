#include "exchange/package/MarkupScan.h"

#include <QTextCodec>
#include <QVector>

#include <algorithm>
#include <cstring>

#include "exchange/package/PackageLimits.h"

namespace {

constexpr int declarationSize = 200; ///< bytes; where the encoding is looked for

/// The encoding that an XML declaration in an ASCII-like text names; empty without one.
QByteArray declaredEncoding(const QByteArray& part)
{
    const QByteArray head = part.left(declarationSize);
    const int end = head.indexOf("?>");
    const int at = head.indexOf("encoding");
    if (!head.startsWith("<?xml") || at < 0 || end < at) {
        return QByteArray();
    }
    const QByteArray rest = head.mid(at, end - at);
    const int quote = std::max(rest.indexOf('"'), rest.indexOf('\''));
    return quote < 0 ? QByteArray() : rest.mid(quote + 1).split(rest[quote]).first().trimmed();
}

QTextCodec* codecOf(const QByteArray& part)
{
    QTextCodec* marked = QTextCodec::codecForUtfText(part, nullptr);
    if (marked) {
        return marked;
    }
    if (part.startsWith(QByteArray("<\0", 2))) {
        return QTextCodec::codecForName("UTF-16LE");
    }
    if (part.startsWith(QByteArray("\0<", 2))) {
        return QTextCodec::codecForName("UTF-16BE");
    }
    const QByteArray name = declaredEncoding(part).toUpper();
    return name.isEmpty() || name == "UTF-8" ? nullptr : QTextCodec::codecForName(name);
}

/// Walks over the tags of a text.
class TagWalk
{
public:
    explicit TagWalk(const QByteArray& text)
        : m_at(text.constData())
        , m_end(text.constData() + text.size())
    {
    }

    bool isBounded(QString* error)
    {
        while (m_at != m_end && m_excess == nullptr) {
            m_at = find('<');
            if (m_at != m_end) {
                ++m_at;
                passTag();
            }
        }
        if (m_excess && error) {
            *error = m_excess;
        }
        return m_excess == nullptr;
    }

private:
    const char* find(char c) const
    {
        const auto* found =
            static_cast<const char*>(std::memchr(m_at, c, std::size_t(m_end - m_at)));
        return found ? found : m_end;
    }

    bool isAt(const char* text) const
    {
        const std::size_t size = std::strlen(text);
        return std::size_t(m_end - m_at) >= size && std::memcmp(m_at, text, size) == 0;
    }

    void passBeyond(const char* text)
    {
        m_at = std::search(m_at, m_end, text, text + std::strlen(text));
    }

    /// Passes what follows a "<".
    void passTag()
    {
        if (isAt("!--")) {
            m_at += 3;
            passBeyond("-->");
        } else if (isAt("![CDATA[")) {
            passBeyond("]]>");
        } else if (isAt("!")) {
            m_excess = "a document type"; // no part has one; entities would blow the text up
        } else if (isAt("?")) {
            passBeyond("?>");
        } else if (isAt("/")) {
            m_at = find('>');
            if (!m_prefixes.isEmpty()) {
                m_prefixCount -= m_prefixes.takeLast();
            }
        } else {
            passStart();
        }
    }

    void passStart()
    {
        int attributes = 0;
        int prefixes = 0;
        while (m_at != m_end && *m_at != '>') {
            if (*m_at == '=') {
                ++attributes;
            } else if (*m_at == '"' || *m_at == '\'') {
                const char quote = *m_at++;
                m_at = find(quote);
                if (m_at == m_end) {
                    return;
                }
            } else if (isAt("xmlns")) {
                ++prefixes;
            }
            ++m_at;
        }
        const bool isEmpty = m_at != m_end && m_at[-1] == '/';
        count(attributes, prefixes, isEmpty);
    }

    void count(int attributes, int prefixes, bool isEmpty)
    {
        if (attributes > PackageLimits::attributes) {
            m_excess = "too many attributes";
        } else if (m_prefixCount + prefixes > PackageLimits::prefixes) {
            m_excess = "too many namespaces";
        } else if (m_prefixes.size() >= PackageLimits::nesting) {
            m_excess = "elements nested too deep";
        } else if (!isEmpty) {
            m_prefixes.append(prefixes);
            m_prefixCount += prefixes;
        }
    }

    const char* m_at;
    const char* m_end;
    const char* m_excess = nullptr; ///< what is too much
    QVector<int> m_prefixes;        ///< declared by each element that is open
    int m_prefixCount = 0;
};

} // namespace

QByteArray utf8Markup(const QByteArray& part)
{
    QTextCodec* codec = codecOf(part);
    return codec ? codec->toUnicode(part).toUtf8() : part;
}

bool isBoundedMarkup(const QByteArray& utf8, QString* error)
{
    return TagWalk(utf8).isBounded(error);
}
