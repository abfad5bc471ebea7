#pragma once

class PageCheck;
class QString;
struct SheetOutcome;

/// Learns how a batch comes along, and can stop it between two sheets. Sheets are named by their
/// index in the batch.
class BatchObserver
{
public:
    virtual ~BatchObserver() = default;

    /// Before each of `count` sheets, `sheet` of which are dealt with. Nothing of the batch is
    /// under way, so that a window may serve its events here. False stops the batch.
    virtual bool goesOn(int sheet, int count) = 0;

    /// The sheet's page was looked at. `check` holds the page and its findings.
    virtual void sheetChecked(int sheet, PageCheck& check);

    /// The sheet has no blank, or it or its document can't be read. The outcome has the reason.
    virtual void sheetNotChecked(int sheet, const SheetOutcome& outcome);

    /// The sheet was printed, held back or skipped, or failed. It comes after fileWritten(), and
    /// before anything of the next sheet is sent.
    virtual void sheetDone(int sheet, const SheetOutcome& outcome);

    /// A file is whole and has its name.
    virtual void fileWritten(const QString& path);
};
