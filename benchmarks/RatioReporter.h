#pragma once

#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>
#include <vector>

/// Prints the usual table and then, for each case, our time, that of every peer and how many times
/// ours goes into it; or, where the peer is a floor, how many times it goes into ours.
///
/// Benchmarks are to be named "case/subject"; one subject of each case is "ours". With repetitions
/// their median counts, else the only run. They may come in any order, so that the repetitions of
/// all can be interleaved.
class RatioReporter : public benchmark::ConsoleReporter
{
public:
    enum class Clock
    {
        Cpu, ///< of this process; steady on a busy machine
        Real ///< for subjects that work in another process
    };

    enum class Peers
    {
        Rivals, ///< the ratio is their time by ours
        Floors  ///< the ratio is our time by theirs
    };

    explicit RatioReporter(Clock measured, Peers kind = Peers::Rivals)
        : m_clock(measured)
        , m_peerKind(kind)
    {
    }

    void ReportRuns(const std::vector<Run>& runs) override
    {
        for (const Run& run : runs) {
            const bool isMedian = run.aggregate_name == "median";
            const bool isOnlyRun = run.run_type == Run::RT_Iteration && run.repetitions <= 1;
            if (isMedian || isOnlyRun) {
                keep(run);
            }
        }
        ConsoleReporter::ReportRuns(runs);
    }

    void Finalize() override
    {
        ConsoleReporter::Finalize();
        std::printf("\n%-20s %12s  %-14s %12s %8s\n", "case", "ours, us", "peer", "peer, us",
                    m_peerKind == Peers::Rivals ? "faster" : "of floor");
        for (const Subject& peer : m_subjects) {
            const double ours = timeOfOurs(peer.caseName);
            if (peer.name == oursName || ours <= 0) {
                continue;
            }
            const double ratio = m_peerKind == Peers::Rivals ? peer.time / ours : ours / peer.time;
            std::printf("%-20s %12.1f  %-14s %12.1f %8.2f\n", peer.caseName.c_str(), ours,
                        peer.name.c_str(), peer.time, ratio);
        }
    }

private:
    static constexpr const char* oursName = "ours";

    struct Subject
    {
        std::string caseName;
        std::string name;
        double time; ///< microseconds
    };

    void keep(const Run& run)
    {
        const std::string& name = run.run_name.function_name;
        const std::size_t slash = name.rfind('/');
        const double time =
            (m_clock == Clock::Cpu ? run.GetAdjustedCPUTime() : run.GetAdjustedRealTime()) /
            benchmark::GetTimeUnitMultiplier(run.time_unit) * 1e6;
        if (slash == std::string::npos || time <= 0) { // a failed run has no time
            return;
        }

        m_subjects.push_back({name.substr(0, slash), name.substr(slash + 1), time});
    }

    /// Microseconds; 0 if ours failed.
    double timeOfOurs(const std::string& caseName) const
    {
        for (const Subject& subject : m_subjects) {
            if (subject.caseName == caseName && subject.name == oursName) {
                return subject.time;
            }
        }
        return 0;
    }

    const Clock m_clock;
    const Peers m_peerKind;
    std::vector<Subject> m_subjects;
};
