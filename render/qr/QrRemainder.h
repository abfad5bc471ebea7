#pragma once

#include <array>
#include <cstdint>

/// Reed-Solomon division by the generator of one count of error correction codewords.
///
/// The remainder is kept in four machine words, the highest degree in the most significant byte of
/// the first, and the generator's multiples are looked up by half bytes. So a data codeword costs
/// a dozen word operations, whatever the degree.
class QrRemainder
{
public:
    static constexpr int maxDegree = 30; ///< no version has more in one block

    /// `generatorDegree`: error correction codewords per block, one of those that the standard
    /// uses.
    explicit QrRemainder(int generatorDegree);

    /// Writes the error correction codewords of `data` to `result`, which has room for them.
    void divide(const std::uint8_t* data, int dataCount, std::uint8_t* result) const;

private:
    using Words = std::array<std::uint64_t, 4>;
    using Products = std::array<Words, 16>;

    const int m_degree;        ///< error correction codewords per block
    Products m_lowProducts{};  ///< generator times each value of the low four bits
    Products m_highProducts{}; ///< generator times each value of the high four bits
};
