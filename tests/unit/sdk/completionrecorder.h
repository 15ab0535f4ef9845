// A callback that remembers the completions it gets.
#pragma once

#include <tests/unit/sdk/sessiontest.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uastatus.h>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <ostream>
#include <string>
#include <thread>
#include <vector>

struct Completion
{
    std::string name;
    OpcUa_UInt32 transactionId = 0;
    OpcUa_StatusCode status = 0;
    std::size_t results = 0;
    OpcUa_Int32 lastValue = 0; ///< of a read
    std::thread::id thread{};

    bool operator==(const Completion& other) const
    {
        return name == other.name && transactionId == other.transactionId && status == other.status &&
               results == other.results;
    }
};

inline std::ostream& operator<<(std::ostream& out, const Completion& completion)
{
    return out << completion.name << '(' << completion.transactionId << ") " << std::hex << completion.status
               << std::dec << " with " << completion.results;
}

class CompletionRecorder : public RecordingCallback
{
public:
    /// Called by each completion after it was recorded, no lock held.
    std::function<void(const Completion&)> reaction;

    bool waitForCompletions(std::size_t count)
    {
        std::unique_lock lock(m_guard);
        return m_came.wait_for(lock, std::chrono::seconds(10), [&] { return m_completions.size() >= count; });
    }
    std::size_t count()
    {
        std::lock_guard lock(m_guard);
        return m_completions.size();
    }
    std::vector<Completion> completions()
    {
        std::lock_guard lock(m_guard);
        return m_completions;
    }

    /// clang-format off
    void readComplete(OpcUa_UInt32 id, const UaStatus& status, UaDataValues& values,
                      UaDiagnosticInfos&) override
    {
        const OpcUa_Int32 last = values.isEmpty() ? 0 : values[values.length() - 1].Value.Value.Int32;
        record({"read", id, status.statusCode(), values.length(), last, std::this_thread::get_id()});
    }
    void callComplete(OpcUa_UInt32 id, const UaStatus& status, UaClientSdk::CallOut& out) override
    {
        record({"call", id, status.statusCode(), out.outputArguments.length()});
    }
    void writeComplete(OpcUa_UInt32 id, const UaStatus& status, UaStatusCodeArray& results,
                       UaDiagnosticInfos&) override
    {
        note("write", id, status, results);
    }
    void addNodesComplete(OpcUa_UInt32 id, const UaStatus& status, UaAddNodesResults& results,
                          UaDiagnosticInfos&) override
    {
        note("addNodes", id, status, results);
    }
    void addReferencesComplete(OpcUa_UInt32 id, const UaStatus& status, UaStatusCodeArray& results,
                               UaDiagnosticInfos&) override
    {
        note("addReferences", id, status, results);
    }
    void deleteNodesComplete(OpcUa_UInt32 id, const UaStatus& status, UaStatusCodeArray& results,
                             UaDiagnosticInfos&) override
    {
        note("deleteNodes", id, status, results);
    }
    void deleteReferencesComplete(OpcUa_UInt32 id, const UaStatus& status, UaStatusCodeArray& results,
                                  UaDiagnosticInfos&) override
    {
        note("deleteReferences", id, status, results);
    }
    void historyReadRawModifiedComplete(OpcUa_UInt32 id, const UaStatus& status,
                                        UaClientSdk::HistoryReadDataResults& results,
                                        UaDiagnosticInfos&) override
    {
        note("historyReadRawModified", id, status, results);
    }
    void historyReadProcessedComplete(OpcUa_UInt32 id, const UaStatus& status,
                                      UaClientSdk::HistoryReadDataResults& results,
                                      UaDiagnosticInfos&) override
    {
        note("historyReadProcessed", id, status, results);
    }
    void historyReadAtTimeComplete(OpcUa_UInt32 id, const UaStatus& status,
                                   UaClientSdk::HistoryReadDataResults& results, UaDiagnosticInfos&) override
    {
        note("historyReadAtTime", id, status, results);
    }
    void historyReadEventComplete(OpcUa_UInt32 id, const UaStatus& status,
                                  UaClientSdk::HistoryReadEventResults& results, UaDiagnosticInfos&) override
    {
        note("historyReadEvent", id, status, results);
    }
    void historyUpdateDataComplete(OpcUa_UInt32 id, const UaStatus& status, UaHistoryUpdateResults& results,
                                   UaDiagnosticInfos&) override
    {
        note("historyUpdateData", id, status, results);
    }
    void historyDeleteRawModifiedComplete(OpcUa_UInt32 id, const UaStatus& status,
                                          UaHistoryUpdateResults& results, UaDiagnosticInfos&) override
    {
        note("historyDeleteRawModified", id, status, results);
    }
    void historyDeleteAtTimeComplete(OpcUa_UInt32 id, const UaStatus& status, UaHistoryUpdateResults& results,
                                     UaDiagnosticInfos&) override
    {
        note("historyDeleteAtTime", id, status, results);
    }
    void historyUpdateEventsComplete(OpcUa_UInt32 id, const UaStatus& status, UaHistoryUpdateResults& results,
                                     UaDiagnosticInfos&) override
    {
        note("historyUpdateEvents", id, status, results);
    }
    void historyDeleteEventsComplete(OpcUa_UInt32 id, const UaStatus& status, UaHistoryUpdateResults& results,
                                     UaDiagnosticInfos&) override
    {
        note("historyDeleteEvents", id, status, results);
    }
    // clang-format on

private:
    template <typename Results>
    void note(const char* name, OpcUa_UInt32 id, const UaStatus& status, const Results& results)
    {
        record({name, id, status.statusCode(), results.size()});
    }
    void record(const Completion& completion)
    {
        {
            std::lock_guard lock(m_guard);
            m_completions.push_back(completion);
            m_came.notify_all();
        }
        if (reaction)
            reaction(completion);
    }

    std::mutex m_guard;
    std::condition_variable m_came;
    std::vector<Completion> m_completions;
};
