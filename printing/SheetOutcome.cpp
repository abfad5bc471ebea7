#include "printing/SheetOutcome.h"

#include "printing/PrintSheet.h"

SheetOutcome SheetOutcome::printed(const QString& file)
{
    SheetOutcome outcome;
    outcome.state = State::Printed;
    outcome.file = file;
    return outcome;
}

SheetOutcome SheetOutcome::failed(Reason reason, const QString& file)
{
    SheetOutcome outcome;
    outcome.state = State::Failed;
    outcome.reason = reason;
    outcome.file = file;
    return outcome;
}

SheetOutcome SheetOutcome::withoutPage(const PrintSheet& sheet)
{
    switch (sheet.blank.problem) {
    case BlankChoice::Problem::NoBlanks:
        return failed(Reason::NoBlanks);
    case BlankChoice::Problem::NoSuchBlank:
        return failed(Reason::NoSuchBlank);
    case BlankChoice::Problem::None:
        break;
    }
    return failed(Reason::Unreadable);
}
