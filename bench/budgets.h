// Medians, the lines that ./dev bench reads, and the short form of every benchmark.
#pragma once

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <vector>

/// Whether to show only that every path still runs: fewest repetitions, no verdict (./dev bench --quick).
[[nodiscard]] inline bool isQuick()
{
    static const bool quick = std::getenv("BENCH_QUICK") != nullptr;
    return quick;
}

/// How often to measure: as said, or once in the short form.
[[nodiscard]] inline int repetitions(int usual)
{
    return isQuick() ? 1 : usual;
}

/// How many operations to measure at a time: as said, or a tenth in the short form.
[[nodiscard]] inline int operations(int usual)
{
    return isQuick() ? std::max(1, usual / 10) : usual;
}

/// CPU time of this process so far, all threads and the system's share included; us.
[[nodiscard]] inline double processCpu()
{
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e6 + static_cast<double>(time.tv_nsec) / 1e3;
}

/// 0 for none.
[[nodiscard]] inline double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.empty() ? 0.0 : values[values.size() / 2];
}

/// What one measured figure is above another. Of one repetition each it may come out as nothing, or less: in
/// the short form that is the least there is, since the path has run.
[[nodiscard]] inline double excess(double value, double base)
{
    constexpr double least = 1e-6; // us
    if (isQuick() && value > 0 && base > 0)
        return std::max(value - base, least);
    return value - base;
}

/// What was not measured has missed its budget, in the short form too.
inline void printBudget(const char* name, double value, double limit, bool measured)
{
    const char* const verdict = !measured ? "MISS" : isQuick() ? "quick" : value <= limit ? "ok" : "MISS";
    std::printf("BUDGET %s %.3f %.3f %s\n", name, value, limit, verdict);
}

/// A figure as a multiple of a raw loop's in the same run, so that the limit holds on any machine.
inline void printRatio(const char* name, double value, double rawLoop, double limit)
{
    const bool measured = value > 0 && rawLoop > 0;
    printBudget(name, measured ? value / rawLoop : 0.0, limit, measured);
}
