#pragma once

#include <QLocale>
#include <QString>
#include <QVector>

#include <functional>

#include "preflight/FindingWords.h"

class PageCheck;
class PdfFile;
class SheetChecks;

/// The report of a check: what was found on which sheet, as a table for spreadsheets, or with a
/// proof of each sheet as a PDF. Files come to be whole or not at all. The database must be open.
class CheckReport
{
public:
    /// Asked before each of `count` sheets; false stops the report.
    using GoesOn = std::function<bool(int sheet, int count)>;

    /// `sheets` are those of the checks that the report tells of, in their order there.
    CheckReport(const SheetChecks& checks, const QVector<int>& sheets);

    /// A line a finding, and one for each sheet without findings; UTF-8 with semicolons. On failure
    /// puts the system's reason into `error` (may be null).
    bool writeCsv(const QString& path, QString* error) const;

    /// A page with the proof of each sheet. On failure, or if it was stopped, no file is written;
    /// `error` (may be null) is empty if it was stopped.
    bool writePdf(const QString& path, const GoesOn& goesOn, QString* error) const;

private:
    QStringList csvLine(int sheet, const Finding* finding) const;
    bool addProof(PdfFile& file, PageCheck& check, int sheet) const;

    const SheetChecks& m_checks;
    QVector<int> m_sheets;
    FindingWords m_words;
};
