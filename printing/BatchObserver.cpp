#include "printing/BatchObserver.h"

void BatchObserver::sheetChecked(int /*sheet*/, PageCheck& /*check*/) {}

void BatchObserver::sheetNotChecked(int /*sheet*/, const SheetOutcome& /*outcome*/) {}

void BatchObserver::sheetDone(int /*sheet*/, const SheetOutcome& /*outcome*/) {}

void BatchObserver::fileWritten(const QString& /*path*/) {}
