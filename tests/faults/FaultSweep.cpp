#include "FaultSweep.h"

#include <QtTest>

namespace {

// What a sample takes of an operation: every so manieth mode, and of its calls.
constexpr int sampleModes = 3;
constexpr int sampleStep = 5;

} // namespace

void FaultSweep::sweep(const QString& operation, const Run& run, const Check& check, int expense)
{
    ++m_operations;
    const bool isWhole = m_isWhole || expense == 0;
    m_step = isWhole ? 1 : sampleStep * expense;
    for (int i = 0; i < faultModes().size() && !QTest::currentTestFailed(); ++i) {
        if (isWhole || (i + m_operations) % sampleModes == 0) {
            sweepMode(operation, faultModes().at(i), run, check);
        }
    }
}

void FaultSweep::sweepMode(const QString& operation, const QString& mode, const Run& run,
                           const Check& check)
{
    for (int at = 1 + (m_operations % m_step);; at += m_step) {
        const FaultRun result = run({mode, at});
        if (result.struck.isEmpty()) {
            QCOMPARE(result.exitCode, 0); // as when nothing fails
            return;
        }
        ++m_calls;
        if (!result.isPlanned) {
            QTest::qFail("it ended otherwise", __FILE__, __LINE__);
        } else {
            check(result);
        }
        if (QTest::currentTestFailed()) {
            qWarning("%s, %s %s: %s %s", qPrintable(operation), qPrintable(mode),
                     qPrintable(result.struck), qPrintable(result.out.join(" | ")),
                     result.err.constData());
            return;
        }
    }
}

void FaultSweep::tell() const
{
    qInfo("%d calls failed in %d operations", m_calls, m_operations);
}
