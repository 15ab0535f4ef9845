// Benchmarks of one run compared by their medians, and the lines that ./dev bench reads.
#pragma once

#include <bench/budgets.h>

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

/// Keeps the time of each repetition, so that ratios can be told from medians of one run.
class Medians : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(const std::vector<Run>& runs) override
    {
        for (const Run& run : runs)
            if (run.run_type == Run::RT_Iteration && !run.error_occurred)
                m_times[run.run_name.function_name].push_back(run.GetAdjustedCPUTime());
    }

    /// 0 for a benchmark that did not run.
    double of(const std::string& name) { return median(m_times[name]); }

private:
    std::map<std::string, std::vector<double>> m_times;
};

/// Runs the program's benchmarks with their repetitions mixed, so that a busy moment hits all alike.
inline void runInterleaved(int argc, char** argv, Medians& medians)
{
    std::vector<char*> arguments(argv, argv + argc);
    std::string interleaved = "--benchmark_enable_random_interleaving=true";
    arguments.push_back(interleaved.data());
    int argumentCount = static_cast<int>(arguments.size());
    benchmark::Initialize(&argumentCount, arguments.data());
    benchmark::RunSpecifiedBenchmarks(&medians);
    benchmark::Shutdown();
}

/// The time of a benchmark as a multiple of its yardstick's.
inline void printRatioBudget(const char* name, Medians& medians, const char* measured, const char* yardstick,
                             double limit)
{
    printRatio(name, medians.of(measured), medians.of(yardstick), limit);
}
