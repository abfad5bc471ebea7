#include "exchange/package/PackageWriter.h"

#include <zip.h>

namespace {

bool addPart(zip_t* archive, const QString& name, const QByteArray& bytes)
{
    zip_source_t* source =
        zip_source_buffer(archive, bytes.constData(), zip_uint64_t(bytes.size()), 0);
    if (!source) {
        return false;
    }
    const zip_int64_t place =
        zip_file_add(archive, name.toUtf8().constData(), source, ZIP_FL_ENC_UTF_8);
    if (place < 0) {
        zip_source_free(source);
        return false;
    }
    return zip_set_file_compression(archive, zip_uint64_t(place), ZIP_CM_STORE, 0) == 0;
}

/// What was written into a source, from its beginning on.
std::optional<QByteArray> contentOf(zip_source_t* source)
{
    zip_stat_t state;
    zip_stat_init(&state);
    if (zip_source_stat(source, &state) != 0 || zip_source_open(source) != 0) {
        return {};
    }
    QByteArray bytes(int(state.size), Qt::Uninitialized);
    const bool whole = zip_source_read(source, bytes.data(), state.size) == zip_int64_t(state.size);
    zip_source_close(source);
    return whole ? std::optional<QByteArray>(bytes) : std::nullopt;
}

} // namespace

std::optional<QByteArray> PackageWriter::finish() const
{
    zip_source_t* target = zip_source_buffer_create(nullptr, 0, 0, nullptr);
    zip_t* archive = target ? zip_open_from_source(target, ZIP_TRUNCATE, nullptr) : nullptr;
    if (!archive) {
        zip_source_free(target);
        return {};
    }
    zip_source_keep(target); // beyond the archive that fills it
    bool done = true;
    for (const auto& part : m_parts) {
        done = done && addPart(archive, part.first, part.second);
    }
    if (!done || zip_close(archive) != 0) {
        zip_discard(archive);
        zip_source_free(target);
        return {};
    }
    std::optional<QByteArray> bytes = contentOf(target);
    zip_source_free(target);
    return bytes;
}
