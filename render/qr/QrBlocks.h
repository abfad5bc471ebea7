#pragma once

class QrEncoder;

/// The second half of segmentation: joining the classified blocks of a text where fewer, longer
/// blocks take fewer bits. `group` is the version group (0 to 2) that gives the count widths. Both
/// work on `blockCount`, `blockModes` and `blockLengths` of the encoder.
namespace QrBlocks {

/// Joins numeric and alphanumeric neighbours, with each other or with an 8-bit block beside them.
void joinNumericWithAlphanumeric(QrEncoder& encoder, int group);

/// Joins short blocks of any mode into 8-bit blocks.
void joinShortBlocks(QrEncoder& encoder, int group);

} // namespace QrBlocks
