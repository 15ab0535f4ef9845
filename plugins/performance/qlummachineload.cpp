#include <plugins/performance/qlummachineload.h>

#include <QCoreApplication>
#include <QtGlobal>

#include <algorithm>
#include <array>
#include <charconv>
#include <ctime>
#include <fstream>
#include <string>
#include <system_error>
#include <unistd.h>

namespace {
constexpr double busyShare = 0.25; // of the machine; more than that shows in the upper percentiles
}

std::optional<QlumCpuTimes> qlumParseCpuTimes(std::string_view line, double ticksPerSecond)
{
    constexpr std::string_view label = "cpu ";
    constexpr std::size_t idle = 3;
    constexpr std::size_t waiting = 4;
    if (!line.starts_with(label) || ticksPerSecond <= 0)
        return std::nullopt;
    line.remove_prefix(label.size());
    std::array<double, 8> ticks{}; // user, nice, system, idle, iowait, irq, softirq, steal
    for (double& value : ticks) {
        line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
        unsigned long long number = 0;
        const auto [end, fault] = std::from_chars(line.data(), line.data() + line.size(), number);
        if (fault != std::errc())
            return std::nullopt;
        value = static_cast<double>(number) / ticksPerSecond;
        line.remove_prefix(static_cast<std::size_t>(end - line.data()));
    }
    QlumCpuTimes times;
    for (const double value : ticks)
        times.all += value;
    times.busy = times.all - ticks[idle] - ticks[waiting];
    return times;
}

std::optional<QlumCpuTimes> qlumCpuTimes()
{
    std::ifstream file("/proc/stat");
    std::string line;
    if (!std::getline(file, line))
        return std::nullopt;
    auto times = qlumParseCpuTimes(line, static_cast<double>(::sysconf(_SC_CLK_TCK)));
    timespec own{};
    if (times && ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &own) == 0)
        times->own = static_cast<double>(own.tv_sec) + static_cast<double>(own.tv_nsec) / 1e9;
    return times;
}

double qlumOthersShare(const QlumCpuTimes& before, const QlumCpuTimes& after)
{
    const double all = after.all - before.all;
    if (all <= 0)
        return 0;
    return std::clamp((after.busy - before.busy - (after.own - before.own)) / all, 0.0, 1.0);
}

QString qlumLoadRemark(const std::optional<QlumCpuTimes>& before, const std::optional<QlumCpuTimes>& after)
{
    if (!before || !after)
        return {};
    const double share = qlumOthersShare(*before, *after);
    if (share <= busyShare)
        return {};
    return QCoreApplication::translate("QlumMeasurer",
                                       "Other programs used %1 % of this machine meanwhile: the longest "
                                       "durations may be theirs.")
        .arg(qRound(share * 100));
}
