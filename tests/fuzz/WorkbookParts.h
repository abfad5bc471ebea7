#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

#include <utility>

/// Name and content of the parts of a workbook.
using WorkbookParts = QVector<std::pair<QString, QByteArray>>;

/// The parts in an input of fuzz_workbook: each begins with a line of "\x1d" and the part's name.
/// An archive would keep the fuzzer from seeing what the parts hold.
WorkbookParts partsOf(const QByteArray& input);

/// The input that has these parts.
QByteArray inputOf(const WorkbookParts& parts);
