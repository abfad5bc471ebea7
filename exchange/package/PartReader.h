#pragma once

#include <QByteArray>
#include <QString>
#include <QXmlStreamReader>

/// The vocabularies of a workbook's parts, each of which has one name in the published format and
/// another in its strict form.
enum class Vocabulary
{
    Sheet,   ///< workbook, sheets, styles, texts; also what has no namespace
    Drawing, ///< places of pictures and charts on a sheet
    Picture, ///< what all drawings are made of
    Chart,
    Properties, ///< of the document: its title, its author
    Relations,  ///< of a package
    Other
};

/// Walks over the elements of one part, child by child. Elements of other vocabularies are passed
/// over; of the alternatives of one content that is taken which asks for nothing.
class PartReader
{
public:
    explicit PartReader(const QByteArray& part);

    /// Goes to the outermost element. False if it is not of this name and vocabulary.
    bool enter(const char* root, Vocabulary vocabulary = Vocabulary::Sheet);

    /// Goes to the next child of the element; false at its end, or if the part is ill-formed. What
    /// it goes to must be walked over by nextChild(), passed by skip() or read by text().
    bool nextChild();
    void skip();
    /// The text of the element itself, to its end.
    QString text();

    bool is(const char* name) const { return m_reader.name() == QLatin1String(name); }
    QStringRef name() const { return m_reader.name(); }
    Vocabulary vocabulary() const;

    QXmlStreamAttributes attributes() const { return m_reader.attributes(); }
    QStringRef attribute(const char* name) const
    {
        return m_reader.attributes().value(QLatin1String(name));
    }
    /// The attribute that names a relation, whatever its prefix.
    QString relation(const char* name = "id") const;
    /// A whole number, or `fallback` if the attribute is none between the two.
    int whole(const char* name, int least, int most, int fallback) const;
    bool flag(const char* name, bool fallback = false) const;

    /// True if the part was well-formed as far as it was read.
    bool isWell() const { return m_error.isEmpty() && !m_reader.hasError(); }
    /// Reads what is left. True if the part is well-formed to its end.
    bool isWellToTheEnd();
    QString error() const { return m_error.isEmpty() ? m_reader.errorString() : m_error; }

private:
    QXmlStreamReader m_reader;
    QString m_error;
    int m_elements = 0; ///< gone to so far
};

/// A text of the format's truth values.
bool flagOf(const QStringRef& text, bool fallback = false);
