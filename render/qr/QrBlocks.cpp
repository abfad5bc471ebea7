#include "render/qr/QrBlocks.h"

#include "render/QrEncoder.h"
#include "render/qr/QrTables.h"

namespace QrBlocks {

namespace {

/// Bits that a block's mode indicator and character count take.
int headerCost(QrEncoder::Mode mode, int group)
{
    return QrTables::modeIndicatorBits + QrTables::countIndicatorBits[mode][group];
}

/// Bits that a block of `length` source bytes takes.
int blockCost(QrEncoder::Mode mode, int length, int group)
{
    const int header = headerCost(mode, group);
    switch (mode) {
    case QrEncoder::Numeric: {
        constexpr int remainderBits[] = {0, 4, 7};
        return header + length / 3 * 10 + remainderBits[length % 3];
    }
    case QrEncoder::Alphanumeric:
        return header + length / 2 * 11 + length % 2 * 6;
    case QrEncoder::Kanji:
        return header + length / 2 * 13;
    default:
        return header + length * 8;
    }
}

/// One walk over the block tables that joins blocks on its way.
///
/// The blocks up to the current one stand at the front of the tables, those still ahead at the
/// back. A join takes a block out between them, so that nothing has to be moved up each time.
/// Offsets count from the current block: -1 is the one before it, 1 the next one.
class BlockWalk
{
public:
    BlockWalk(QrEncoder& walked, int versionGroup)
        : m_encoder(walked)
        , m_group(versionGroup)
        , m_end(walked.blockCount)
    {
    }

    bool hasNext() const { return m_next < m_end; }

    QrEncoder::Mode mode(int offset) const
    {
        return static_cast<QrEncoder::Mode>(m_encoder.blockModes[index(offset)]);
    }
    int length(int offset) const { return m_encoder.blockLengths[index(offset)]; }
    int cost(int offset) const { return blockCost(mode(offset), length(offset), m_group); }

    /// True if there is a block at `offset` and it is of that mode.
    bool is(int offset, QrEncoder::Mode expected) const
    {
        const int at = index(offset);
        return at >= 0 && at < m_end && m_encoder.blockModes[at] == expected;
    }

    void advance() { moveBlock(m_next++, ++m_current); }

    void stepBack()
    {
        if (m_current > 0) {
            moveBlock(m_current--, --m_next);
        }
    }

    /// Gives the current block to the one before it, which becomes the current one.
    void joinWithPrevious()
    {
        m_encoder.blockLengths[m_current - 1] += m_encoder.blockLengths[m_current];
        --m_current;
    }

    /// Gives the current block the next one and sets its mode.
    void joinWithNext(QrEncoder::Mode mode)
    {
        m_encoder.blockModes[m_current] = mode;
        m_encoder.blockLengths[m_current] += m_encoder.blockLengths[m_next++];
    }

    /// Makes the next two blocks one, with the mode of the second.
    void joinNextTwo()
    {
        m_encoder.blockLengths[m_next + 1] += m_encoder.blockLengths[m_next];
        ++m_next;
    }

    /// Stores the new block count; to be called when no block is left ahead.
    void finish() { m_encoder.blockCount = m_current + 1; }

private:
    int index(int offset) const { return offset <= 0 ? m_current + offset : m_next + offset - 1; }

    void moveBlock(int from, int to)
    {
        m_encoder.blockModes[to] = m_encoder.blockModes[from];
        m_encoder.blockLengths[to] = m_encoder.blockLengths[from];
    }

    QrEncoder& m_encoder;
    const int m_group;
    int m_current = 0;
    int m_next = 1;
    const int m_end;
};

/// Joins a numeric and an alphanumeric neighbour where one block of both, or an 8-bit block beside
/// them, takes fewer bits. Returns true if blocks were joined.
bool joinAlphanumericHere(BlockWalk& walk, int group)
{
    const auto areNeighbours = [&walk](QrEncoder::Mode here, QrEncoder::Mode ahead) {
        return walk.is(0, here) && walk.is(1, ahead);
    };
    if (!areNeighbours(QrEncoder::Numeric, QrEncoder::Alphanumeric) &&
        !areNeighbours(QrEncoder::Alphanumeric, QrEncoder::Numeric))
    {
        return false;
    }

    const int merged = blockCost(QrEncoder::Alphanumeric, walk.length(0) + walk.length(1), group);
    if (walk.cost(0) + walk.cost(1) <= merged) {
        return false;
    }

    // What it costs if the 8-bit block at `neighbour` takes the block at `taken` and `left`
    // remains; 0 if that is not possible or not better.
    const auto byteCandidate = [&walk, group, merged](int neighbour, int taken, int left) {
        if (!walk.is(neighbour, QrEncoder::Byte)) {
            return 0;
        }
        const int length = walk.length(neighbour) + walk.length(taken);
        const int cost = blockCost(QrEncoder::Byte, length, group) + walk.cost(left);
        return cost <= walk.cost(neighbour) + merged ? cost : 0;
    };
    const int front = byteCandidate(-1, 0, 1);
    const int behind = byteCandidate(2, 1, 0);

    if (front != 0 && (behind == 0 || front < behind)) {
        walk.joinWithPrevious();
        walk.advance();
        return true;
    }
    if (behind != 0) {
        walk.joinNextTwo();
        return true;
    }

    if (walk.is(2, QrEncoder::Alphanumeric)) {
        walk.joinNextTwo();
    }
    walk.joinWithNext(QrEncoder::Alphanumeric);
    if (walk.is(-1, QrEncoder::Alphanumeric)) {
        walk.joinWithPrevious();
        if (walk.hasNext()) {
            walk.advance();
        }
    }
    return true;
}

/// Makes the current block and the next one 8-bit, together with 8-bit neighbours, where that
/// takes fewer bits. Returns true if blocks were joined.
bool joinShortBlocksHere(BlockWalk& walk, int group)
{
    const bool byteBefore = walk.is(-1, QrEncoder::Byte);
    const bool byteBehind = walk.is(2, QrEncoder::Byte);
    const int savedHeaders = int{byteBefore} + int{byteBehind};
    const int joined = blockCost(QrEncoder::Byte, walk.length(0) + walk.length(1), group) -
                       savedHeaders * headerCost(QrEncoder::Byte, group);
    if (walk.cost(0) + walk.cost(1) <= joined) {
        return false;
    }

    if (byteBefore) {
        walk.joinWithPrevious();
    }
    if (byteBehind) {
        walk.joinNextTwo();
    }
    walk.joinWithNext(QrEncoder::Byte);
    walk.stepBack();
    return true;
}

/// Walks over all blocks with `joinHere`, which returns true if it joined blocks. The walk then
/// stays where it is, since what was joined may be joined again.
template <typename Join>
void walkBlocks(QrEncoder& encoder, int group, Join joinHere)
{
    BlockWalk walk(encoder, group);
    while (walk.hasNext()) {
        if (!joinHere(walk, group)) {
            walk.advance();
        }
    }
    walk.finish();
}

} // namespace

void joinNumericWithAlphanumeric(QrEncoder& encoder, int group)
{
    walkBlocks(encoder, group, joinAlphanumericHere);
}

void joinShortBlocks(QrEncoder& encoder, int group)
{
    walkBlocks(encoder, group, joinShortBlocksHere);
}

} // namespace QrBlocks
