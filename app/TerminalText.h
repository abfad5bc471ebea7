#pragma once

#include <QByteArray>
#include <QString>

/// A text of others, such as a name, a value or a path, for a line on a terminal: without line ends
/// and without what a terminal takes for a command, each of which becomes a blank.
QString onOneLine(QString text);

/// The same for a JSON text: what a terminal takes for a command is written as JSON's escape
/// sequence, so that the text means what it meant. Its line ends stay.
QString jsonForTerminal(const QByteArray& json);
