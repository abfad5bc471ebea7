#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>
#include <QVector>

class QDataStream;

/// One change of an update package: three values in the stream, in this order.
struct UpdatePart
{
    QByteArray json; ///< UTF-8 JSON object: what the part is and when it applies
    QString unused;  ///< carried by the format, of no use to any reader
    QString payload; ///< the statement to execute, or the argument of the built-in function
};

/// The update package as a whole: a header and its parts up to the end of the stream. Integers are
/// big-endian, byte arrays and strings carry a 32-bit length in front, as QDataStream writes them.
struct UpdatePackage
{
    QByteArray header; ///< UTF-8 JSON object with the version that the package brings
    QVector<UpdatePart> parts;
};

/// Reads one part. False if its three values could not be read whole: the package was cut off, or
/// the stream's status is ReadCorruptData, since a string has an odd number of bytes.
bool readUpdatePart(QDataStream& stream, UpdatePart& part);

/// Writes one part.
void writeUpdatePart(QDataStream& stream, const UpdatePart& part);

/// Reads a whole package. False if it is cut off anywhere; what came before stands in `package`.
bool readUpdatePackage(QDataStream& stream, UpdatePackage& package);

/// Writes a whole package.
void writeUpdatePackage(QDataStream& stream, const UpdatePackage& package);

/// Parses the JSON of a header or a part; anything but an object gives an empty one.
QJsonObject parseUpdateJson(const QByteArray& json);

/// True if `candidate` is higher than `current`. Dotted numbers are compared one by one; what is
/// missing or no number counts as 0.
bool isNewerVersion(const QString& current, const QString& candidate);
