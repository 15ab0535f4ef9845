// Reads a history to its end, or as far as it may.
#pragma once
#include <app/api/qlumlog.h>
#include <app/api/qlumsessionservices.h>
#include <plugins/history/qlumhistoryplan.h>
#include <plugins/history/qlumhistoryportions.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/historyresults.h>
#include <uaclientsdk/servicesettings.h>

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

class QString;

/// Carries out one plan on a job's thread. What came and what failed is logged.
class QlumHistoryReader
{
public:
    /// What the reader asks of whoever it reads for.
    struct Hooks
    {
        std::function<bool()> isCancelled;                      ///< asked between calls
        std::function<UaClientSdk::ServiceSettings()> settings; ///< for each call
        /// What an answer holds of a target, from a value on. False: it takes no more.
        std::function<bool(std::size_t target, const UaClientSdk::HistoryReadDataResult& result,
                           OpcUa_UInt32 first)>
            take;
    };

    /// All must outlive the reader.
    QlumHistoryReader(QlumSessionServices& services, const QlumHistoryPlan& plan, Hooks hooks);

    /// One outcome for each target. Continuation points are given back, whatever happens.
    [[nodiscard]] std::vector<QlumHistoryOutcome> read();

private:
    struct Open
    {
        std::size_t target;
        UaByteString point;
    };

    [[nodiscard]] UaStatus call(const std::vector<Open>& nodes, bool release,
                                UaClientSdk::HistoryReadDataResults& results);
    [[nodiscard]] UaHistoryReadValueIds idsOf(const std::vector<Open>& nodes) const;
    [[nodiscard]] UaNodeIdArray aggregatesOf(const std::vector<Open>& nodes) const;
    [[nodiscard]] bool begin(const std::vector<Open>& nodes);
    [[nodiscard]] std::vector<Open> takeResults(const std::vector<Open>& asked,
                                                UaClientSdk::HistoryReadDataResults& results);
    void takeFault(const Open& asked, const UaStatus& status);
    [[nodiscard]] bool takeValues(std::size_t target, const UaClientSdk::HistoryReadDataResult& result);
    [[nodiscard]] OpcUa_UInt32 skipped(std::size_t target, const UaClientSdk::HistoryReadDataResult& result);
    void continueReading(std::vector<Open> open);
    void release(const std::vector<Open>& open);
    void tellFault(std::size_t target) const;
    void tellCount(std::size_t target) const;
    void tellWhyRefused() const;
    [[nodiscard]] QString serviceName() const;

    QlumSessionServices& m_services;
    const QlumHistoryPlan& m_plan;
    const Hooks m_hooks;
    const QlumLog m_log;
    QlumHistoryPortions m_portions;
    std::vector<QlumHistoryOutcome> m_outcomes;
    std::vector<quint64> m_toSkip;
};

/// What the plugin's entries of the log have as their source.
[[nodiscard]] QString qlumHistoryLogSource();
