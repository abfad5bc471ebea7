#pragma once

#include <functional>

#include "FaultRun.h"

/// Makes the calls of operations fail, one a run, in each mode, until an operation runs through.
/// With ZELVORA_ALL_FAULTS in the environment really each; else a sample, other calls and modes in
/// each operation.
class FaultSweep
{
public:
    /// Does the operation on fresh files with this fault.
    using Run = std::function<FaultRun(const Fault&)>;

    /// Looks at what a run left, by Qt Test's means.
    using Check = std::function<void(const FaultRun&)>;

    /// Stops at the first failure and tells where it was. `expense` thins out the sample; 0: of an
    /// operation that costs next to nothing each call is taken in each mode.
    void sweep(const QString& operation, const Run& run, const Check& check, int expense = 1);

    /// Says how many calls failed in how many operations.
    void tell() const;

private:
    void sweepMode(const QString& operation, const QString& mode, const Run& run,
                   const Check& check);

    const bool m_isWhole = qEnvironmentVariableIsSet("ZELVORA_ALL_FAULTS");
    int m_step = 1;
    int m_calls = 0;
    int m_operations = 0;
};
