#pragma once

class QIODevice;

/// True if a workbook can be handed to the reading library: its archive is whole, unpacks to a size
/// that fits into memory, and its XML is well-formed and names only cells, columns and sheets that
/// exist. The library itself trusts what it reads and would hang, crash or run out of memory.
bool isSoundWorkbook(QIODevice& device);
