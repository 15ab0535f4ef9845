// Whether the machine was busy with something else.
#pragma once
#include <QString>

#include <optional>
#include <string_view>

/// Processor time of the machine and of this program up to now, in seconds.
struct QlumCpuTimes
{
    double busy = 0; ///< of all processors, for all programs
    double all = 0;  ///< of all processors, idle time included
    double own = 0;  ///< of this program
};

/// The first line of /proc/stat, "cpu  10 2 ...", in ticks; nothing for what is not one.
[[nodiscard]] std::optional<QlumCpuTimes> qlumParseCpuTimes(std::string_view line, double ticksPerSecond);
/// As the system tells them now; nothing where it does not.
[[nodiscard]] std::optional<QlumCpuTimes> qlumCpuTimes();
/// The share of the machine that other programs had between the two, 0 to 1.
[[nodiscard]] double qlumOthersShare(const QlumCpuTimes& before, const QlumCpuTimes& after);
/// What the user has to know of it; empty when others had too little to matter.
[[nodiscard]] QString qlumLoadRemark(const std::optional<QlumCpuTimes>& before,
                                     const std::optional<QlumCpuTimes>& after);
