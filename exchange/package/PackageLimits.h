#pragma once

#include <QtGlobal>

/// What a workbook from outside may ask of this machine. All of it is far above what a registrar's
/// workbook holds; beyond it a file is refused at once instead of keeping the program busy.
namespace PackageLimits {

/// Bytes of the file. It is read into memory whole.
constexpr qint64 fileSize = 64LL * 1024 * 1024;

/// Bytes of all parts that are read, unpacked. A row of twenty columns takes about 1 KB, so this is
/// a hundred thousand documents; reading it takes some seconds.
constexpr qint64 unpackedSize = 128LL * 1024 * 1024;

/// Entries of the archive. A sheet has at most four parts of its own.
constexpr int parts = 10000;

/// Sheets of a workbook, each an object of its own in the library.
constexpr int sheets = 1000;

/// Cells of all sheets: about half a kilobyte each in the library.
constexpr int cells = 1000000;

/// Places from the first to the last column, summed over all rows that hold something, and rows
/// from the first to the last: the library looks at each of them when it saves, some 20 million a
/// second.
constexpr qint64 places = 100000000;

/// Characters of all cells together. A text that many cells share is held once for each of them.
constexpr qint64 characters = 64LL * 1024 * 1024;

/// Elements of a part that are looked at.
constexpr int elements = 5000000;

/// Pictures, charts and lines of a workbook; links of a sheet to addresses; other workbooks that
/// formulas take values from. The library compares each with each other.
constexpr int objects = 10000;
constexpr int links = 10000;
constexpr int books = 1000;

/// Characters of the text that names the cells of a rule. Office programs write up to 8,192.
constexpr int areas = 65536;

/// What the format itself allows. Formats are as many as fonts, fills and borders may be.
constexpr int rows = 1048576;
constexpr int columns = 16384;
constexpr int formats = 65536;

/// Elements within elements. Office programs stay below thirty.
constexpr int nesting = 100;

/// Attributes of an element, and prefixes declared around it. The parser compares each attribute
/// with each other, and looks a prefix up in the whole list.
constexpr int attributes = 256;
constexpr int prefixes = 256;

} // namespace PackageLimits
