#pragma once

#include <QByteArray>
#include <QString>

/// A part's text as UTF-8, whatever the part itself is written in: UTF-8 or UTF-16 by its byte
/// order mark or declaration, or any other encoding that it declares.
QByteArray utf8Markup(const QByteArray& part);

/// Looks over the tags of a text in UTF-8 before a parser reads it: how deep they are nested, and
/// how many attributes and prefixes they have, for which a parser needs the square of the time. On
/// excess, or if the text declares a document type, returns false and puts the reason into `error`
/// (may be null). Whether the text is well-formed is left to the parser.
bool isBoundedMarkup(const QByteArray& utf8, QString* error);
