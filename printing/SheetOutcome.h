#pragma once

#include <QString>

struct PrintSheet;

/// What became of a sheet of a batch.
struct SheetOutcome
{
    enum class State
    {
        NotPrinted, ///< its turn has not come, or the batch ended before it or threw it away
        Printed,    ///< whole: sent to the printer, or in a file
        HeldBack,   ///< left out because of its findings
        Skipped,    ///< left out on the user's wish
        Failed
    };

    /// Why it is not printed.
    enum class Reason
    {
        None,
        NoBlanks,       ///< the document's form has no blanks
        NoSuchBlank,    ///< it has none of the wanted ID or name
        Unreadable,     ///< the document or the blank can't be read
        FileRefused,    ///< `file` can't be written
        PrinterRefused, ///< the printer does not take the page
        PrinterGone,    ///< there is no such printer any more; what it was sent may be lost
        Findings        ///< the check of its page found something
    };

    static SheetOutcome printed(const QString& file);
    static SheetOutcome failed(Reason reason, const QString& file = QString());

    /// That a sheet can't be laid out on its blank: Unreadable if it has one.
    static SheetOutcome withoutPage(const PrintSheet& sheet);

    State state = State::NotPrinted;
    Reason reason = Reason::None;
    QString file;   ///< where it went or should have gone; empty: a printer
    int spoilt = 0; ///< prints of it that came to nothing, by the user's word

    /// The user says that the paper of a sheet that was printed is spoilt: it counts as not
    /// printed.
    void markSpoilt()
    {
        if (state == State::Printed) {
            state = State::NotPrinted;
            ++spoilt;
        }
    }
};
