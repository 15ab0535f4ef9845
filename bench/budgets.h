// Medians, and the lines that ./dev bench reads.
#pragma once

#include <algorithm>
#include <cstdio>
#include <vector>

/// 0 for none.
inline double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.empty() ? 0.0 : values[values.size() / 2];
}

/// What was not measured has missed its budget.
inline void printBudget(const char* name, double value, double limit, bool measured)
{
    std::printf("BUDGET %s %.2f %.2f %s\n", name, value, limit, measured && value <= limit ? "ok" : "MISS");
}
