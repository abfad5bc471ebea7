#include "render/qr/QrRemainder.h"

#include <cstddef>
#include <tuple>

#include "render/qr/QrTables.h"

namespace {

/// Shift of codeword `index` inside its word.
constexpr int shiftOf(int index)
{
    return 56 - index % 8 * 8;
}

} // namespace

QrRemainder::QrRemainder(int generatorDegree)
    : m_degree(generatorDegree)
{
    static_assert(maxDegree <= 8 * std::tuple_size_v<Words>);

    const QrTables::Generator& generator = QrTables::generators[m_degree];
    for (int bit = 0; bit < 8; ++bit) {
        Words& words = bit < 4 ? m_lowProducts[1 << bit] : m_highProducts[1 << (bit - 4)];
        for (int i = 0; i < m_degree; ++i) {
            const std::uint64_t product = QrTables::exponents[(generator[i] + bit) % 255];
            words[i / 8] |= product << shiftOf(i);
        }
    }

    // The other multiples are sums of those by a single bit.
    for (Products* products : {&m_lowProducts, &m_highProducts}) {
        for (int factor = 3; factor < 16; ++factor) {
            const int rest = factor & (factor - 1);
            if (rest == 0) {
                continue;
            }
            for (std::size_t i = 0; i < std::tuple_size_v<Words>; ++i) {
                (*products)[factor][i] = (*products)[rest][i] ^ (*products)[factor ^ rest][i];
            }
        }
    }
}

void QrRemainder::divide(const std::uint8_t* data, int dataCount, std::uint8_t* result) const
{
    Words words{};
    for (int i = 0; i < dataCount; ++i) {
        const unsigned factor = static_cast<unsigned>(words[0] >> 56) ^ data[i];
        const Words& low = m_lowProducts[factor & 0xF];
        const Words& high = m_highProducts[factor >> 4];
        words[0] = (words[0] << 8 | words[1] >> 56) ^ low[0] ^ high[0];
        words[1] = (words[1] << 8 | words[2] >> 56) ^ low[1] ^ high[1];
        words[2] = (words[2] << 8 | words[3] >> 56) ^ low[2] ^ high[2];
        words[3] = words[3] << 8 ^ low[3] ^ high[3];
    }
    for (int i = 0; i < m_degree; ++i) {
        result[i] = static_cast<std::uint8_t>(words[i / 8] >> shiftOf(i));
    }
}
