#include "exchange/ZipArchive.h"

#include <QIODevice>
#include <QtEndian>

#include <zlib.h>

namespace {

constexpr quint32 endSignature = 0x06054b50;
constexpr quint32 partSignature = 0x02014b50;
constexpr quint32 localSignature = 0x04034b50;
constexpr int endSize = 22;
constexpr int partHeaderSize = 46;
constexpr int localHeaderSize = 30;
constexpr int commentMax = 65535;
constexpr int pieceSize = 64 * 1024;

constexpr quint16 methodStored = 0;
constexpr quint16 methodDeflated = 8;
constexpr quint16 flagEncrypted = 1;

quint16 shortAt(const QByteArray& bytes, int offset)
{
    return qFromLittleEndian<quint16>(bytes.constData() + offset);
}

quint32 longAt(const QByteArray& bytes, int offset)
{
    return qFromLittleEndian<quint32>(bytes.constData() + offset);
}

/// Passes pieces on to a sink and keeps account of what went through.
class CheckedSink
{
public:
    CheckedSink(const ZipArchive::Part& part, const ZipArchive::Sink& sink)
        : m_part(part)
        , m_sink(sink)
    {
    }

    bool take(const char* data, int size)
    {
        m_size += static_cast<quint64>(size);
        m_checksum = crc32(m_checksum, reinterpret_cast<const Bytef*>(data), uInt(size));
        return m_size <= m_part.unpackedSize && m_sink(data, size);
    }

    bool isWhole() const { return m_size == m_part.unpackedSize && m_checksum == m_part.checksum; }

private:
    const ZipArchive::Part& m_part;
    const ZipArchive::Sink& m_sink;
    quint64 m_size = 0;
    uLong m_checksum = crc32(0, nullptr, 0);
};

/// The packed bytes of a part, from the device's current position on.
class PackedBytes
{
public:
    PackedBytes(QIODevice& device, quint32 size)
        : m_device(device)
        , m_left(size)
    {
    }

    bool atEnd() const { return m_left == 0; }

    /// The next piece; empty if the device ends too early.
    QByteArray next()
    {
        QByteArray piece = m_device.read(qMin<qint64>(m_left, pieceSize));
        m_left -= piece.size();
        return piece;
    }

private:
    QIODevice& m_device;
    qint64 m_left;
};

bool copyStored(PackedBytes& packed, CheckedSink& sink)
{
    while (!packed.atEnd()) {
        const QByteArray piece = packed.next();
        if (piece.isEmpty() || !sink.take(piece.constData(), piece.size())) {
            return false;
        }
    }
    return true;
}

/// Inflates one packed piece; returns zlib's state, or Z_ERRNO if the sink stopped it.
int inflatePiece(z_stream& stream, const QByteArray& piece, CheckedSink& sink)
{
    QByteArray unpacked(pieceSize, Qt::Uninitialized);
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(piece.constData()));
    stream.avail_in = uInt(piece.size());
    int state = Z_OK;
    do {
        stream.next_out = reinterpret_cast<Bytef*>(unpacked.data());
        stream.avail_out = pieceSize;
        state = inflate(&stream, Z_NO_FLUSH);
        const int size = pieceSize - int(stream.avail_out);
        if (size > 0 && !sink.take(unpacked.constData(), size)) {
            return Z_ERRNO;
        }
    } while (state == Z_OK && (stream.avail_in > 0 || stream.avail_out == 0));
    // No progress without more input is what the end of a piece looks like.
    return state == Z_BUF_ERROR && stream.avail_in == 0 ? Z_OK : state;
}

bool inflateAll(PackedBytes& packed, CheckedSink& sink)
{
    z_stream stream = {};
    if (inflateInit2(&stream, -MAX_WBITS) != Z_OK) {
        return false;
    }
    int state = Z_OK;
    while (state == Z_OK && !packed.atEnd()) {
        const QByteArray piece = packed.next();
        state = piece.isEmpty() ? Z_DATA_ERROR : inflatePiece(stream, piece, sink);
    }
    const bool isAllUsed = packed.atEnd() && stream.avail_in == 0;
    inflateEnd(&stream);
    return state == Z_STREAM_END && isAllUsed;
}

} // namespace

ZipArchive::ZipArchive(QIODevice& device)
    : m_device(device)
{
}

bool ZipArchive::readDirectory()
{
    m_parts.clear();
    const qint64 end = findEndOfDirectory();
    if (end < 0 || !m_device.seek(end)) {
        return false;
    }
    const QByteArray record = m_device.read(endSize);
    const int count = shortAt(record, 10);
    if (!m_device.seek(longAt(record, 16))) {
        return false;
    }
    for (int i = 0; i < count; ++i) {
        Part part;
        if (!readPart(part)) {
            return false;
        }
        m_parts.append(part);
    }
    return true;
}

bool ZipArchive::unpack(const Part& part, const Sink& sink)
{
    if (!seekToData(part)) {
        return false;
    }
    PackedBytes packed(m_device, part.packedSize);
    CheckedSink checked(part, sink);
    const bool unpacked =
        part.method == methodStored ? copyStored(packed, checked) : inflateAll(packed, checked);
    return unpacked && checked.isWhole();
}

/// Offset of the record that ends the directory; it stands before a comment of any length.
qint64 ZipArchive::findEndOfDirectory()
{
    const qint64 tailSize = qMin<qint64>(m_device.size(), endSize + commentMax);
    const qint64 tailOffset = m_device.size() - tailSize;
    if (!m_device.seek(tailOffset)) {
        return -1;
    }
    const QByteArray tail = m_device.read(tailSize);
    for (int i = tail.size() - endSize; i >= 0; --i) {
        if (longAt(tail, i) == endSignature) {
            return tailOffset + i;
        }
    }
    return -1;
}

/// Reads one record of the directory. False if it is damaged or tells of what is not understood.
bool ZipArchive::readPart(Part& part)
{
    const QByteArray header = m_device.read(partHeaderSize);
    if (header.size() < partHeaderSize || longAt(header, 0) != partSignature) {
        return false;
    }
    part.method = shortAt(header, 10);
    part.checksum = longAt(header, 16);
    part.packedSize = longAt(header, 20);
    part.unpackedSize = longAt(header, 24);
    part.headerOffset = longAt(header, 42);
    const int nameSize = shortAt(header, 28);
    part.name = m_device.read(nameSize);
    const int restSize = shortAt(header, 30) + shortAt(header, 32);
    const bool isUnderstood = (shortAt(header, 8) & flagEncrypted) == 0 &&
                              (part.method == methodStored || part.method == methodDeflated);
    return isUnderstood && part.name.size() == nameSize && m_device.seek(m_device.pos() + restSize);
}

bool ZipArchive::seekToData(const Part& part)
{
    if (!m_device.seek(part.headerOffset)) {
        return false;
    }
    const QByteArray header = m_device.read(localHeaderSize);
    // Readers go by the method that stands here.
    if (header.size() < localHeaderSize || longAt(header, 0) != localSignature ||
        shortAt(header, 8) != part.method)
    {
        return false;
    }
    return m_device.seek(m_device.pos() + shortAt(header, 26) + shortAt(header, 28));
}
