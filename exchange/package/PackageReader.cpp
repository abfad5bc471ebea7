#include "exchange/package/PackageReader.h"

#include <zip.h>

#include "exchange/package/PackageLimits.h"

namespace {

void tell(QString* error, const QString& reason)
{
    if (error) {
        *error = reason;
    }
}

struct FileCloser
{
    void operator()(zip_file_t* file) const { zip_fclose(file); }
};

} // namespace

void PackageReader::Closer::operator()(zip* archive) const
{
    zip_discard(archive);
}

PackageReader::PackageReader() = default;
PackageReader::~PackageReader() = default;

bool PackageReader::open(const QByteArray& archive, QString* error)
{
    m_archive.reset();
    m_bytes = archive;
    zip_source_t* source =
        zip_source_buffer_create(m_bytes.constData(), zip_uint64_t(m_bytes.size()), 0, nullptr);
    if (!source) {
        tell(error, "out of memory");
        return false;
    }
    zip_error_t failure;
    zip_error_init(&failure);
    m_archive.reset(zip_open_from_source(source, ZIP_RDONLY, &failure));
    if (!m_archive) {
        zip_source_free(source); // an archive takes it over, a failure does not
        tell(error, QString::fromUtf8(zip_error_strerror(&failure)));
    }
    zip_error_fini(&failure);
    return m_archive && readDirectory(error);
}

std::optional<QByteArray> PackageReader::read(const QString& part, QString* error)
{
    const auto place = m_places.constFind(key(part));
    zip_stat_t state;
    zip_stat_init(&state);
    if (place == m_places.constEnd() ||
        zip_stat_index(m_archive.get(), place.value(), 0, &state) != 0 ||
        (state.valid & ZIP_STAT_SIZE) == 0)
    {
        tell(error, part + ": no such part");
        return {};
    }
    if (state.size > zip_uint64_t(PackageLimits::unpackedSize - m_unpacked)) {
        tell(error, part + ": the parts are too large");
        return {};
    }
    const std::unique_ptr<zip_file_t, FileCloser> file(
        zip_fopen_index(m_archive.get(), place.value(), 0));
    QByteArray bytes(int(state.size), Qt::Uninitialized);
    char beyond = 0;
    // Only a read that meets the end compares the checksum.
    if (!file || zip_fread(file.get(), bytes.data(), state.size) != zip_int64_t(state.size) ||
        zip_fread(file.get(), &beyond, 1) != 0)
    {
        tell(error, part + ": damaged");
        return {};
    }
    m_unpacked += bytes.size();
    return bytes;
}

QString PackageReader::key(const QString& part)
{
    return part.toLower().replace('\\', '/');
}

bool PackageReader::readDirectory(QString* error)
{
    m_places.clear();
    m_unpacked = 0;
    const zip_int64_t count = zip_get_num_entries(m_archive.get(), 0);
    if (count > PackageLimits::parts) {
        tell(error, "too many parts");
        return false;
    }
    for (zip_int64_t i = 0; i < count; ++i) {
        const char* name = zip_get_name(m_archive.get(), zip_uint64_t(i), ZIP_FL_ENC_GUESS);
        const QString part = key(QString::fromUtf8(name));
        if (part.endsWith('/')) {
            continue; // a folder
        }
        if (m_places.contains(part)) {
            tell(error, part + ": twice in the archive");
            return false;
        }
        m_places.insert(part, quint64(i));
    }
    return true;
}
