// Samples for tests that compare with brute force.
#pragma once
#include <uawidgets/plot/qlumsamplestore.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

inline constexpr std::uint32_t uncertainStatus = 0x40000000U;
inline constexpr std::uint32_t badStatus = 0x80000000U;
inline constexpr std::int64_t startOfSamples = 134'000'000'000'000'000; // in 2025

/// Walks with jumps, at uneven and equal times; of a hundred so many are bad, not a number or uncertain.
inline std::vector<QlumSample> randomSamples(std::size_t count, int oddOnes, std::mt19937& random)
{
    std::vector<QlumSample> samples;
    std::uniform_int_distribution<int> percent(0, 99);
    std::normal_distribution<double> step(0.0, 1.0);
    std::int64_t time = startOfSamples;
    double value = 0;
    for (std::size_t i = 0; i < count; ++i) {
        time += percent(random) < 10 ? 0 : percent(random) * 1000;
        value += percent(random) == 0 ? 100 * step(random) : step(random);
        QlumSample sample{time, value, 0};
        if (percent(random) < oddOnes) {
            const int kind = percent(random) % 3;
            sample.status = kind == 0 ? badStatus : kind == 1 ? uncertainStatus : 0;
            sample.value = kind == 2 ? std::nan("") : value;
        }
        samples.push_back(sample);
    }
    return samples;
}
