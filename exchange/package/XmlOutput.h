#pragma once

#include <QByteArray>
#include <QStringView>

/// XML text under construction. Names are taken as they are; values are escaped. It does little,
/// since a sheet has millions of elements.
class XmlOutput
{
public:
    /// Begins an element; attributes may follow.
    void start(const char* name);
    void attribute(const char* name, QStringView value);
    void attribute(const char* name, const char* value);
    void attribute(const char* name, qint64 value);
    void text(QStringView text);
    void number(int number);
    /// Ends the element begun last, which must have this name.
    void end(const char* name);

    /// Puts finished XML in.
    void raw(const QByteArray& xml);

    /// The place where the next element begins.
    int mark();
    /// Takes back all behind a mark.
    void truncate(int mark);

    /// The text so far, closed at the end of its last start tag.
    const QByteArray& bytes();

private:
    void closeStart();
    void escaped(QStringView text);

    QByteArray m_bytes;
    bool m_isStartOpen = false;
};
