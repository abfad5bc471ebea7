#pragma once

#include <QByteArray>
#include <QVector>

#include <functional>

class QIODevice;

/// The directory of a zip archive and its parts, unpacked piece by piece, so that a part's true
/// size never has to fit into memory. Understands what workbooks are made of: parts that are stored
/// or deflated, without encryption and without the 64 bit extension.
class ZipArchive
{
public:
    struct Part
    {
        QByteArray name;
        quint16 method = 0; ///< 0 stored, 8 deflated
        quint32 checksum = 0;
        quint32 packedSize = 0;   ///< bytes in the archive
        quint32 unpackedSize = 0; ///< bytes that the directory declares
        quint32 headerOffset = 0; ///< of the part's own header
    };

    /// Takes a piece of a part; false stops the unpacking.
    using Sink = std::function<bool(const char* data, int size)>;

    /// The device must be open, seekable and outlive the archive.
    explicit ZipArchive(QIODevice& device);

    /// Reads the directory. False if there is none or it is damaged.
    bool readDirectory();

    const QVector<Part>& parts() const { return m_parts; }

    /// Unpacks one part into the sink. False if the part is damaged, if its size or checksum is not
    /// the declared one, or if the sink stopped it.
    bool unpack(const Part& part, const Sink& sink);

private:
    qint64 findEndOfDirectory();
    bool readPart(Part& part);
    bool seekToData(const Part& part);

    QIODevice& m_device;
    QVector<Part> m_parts;
};
