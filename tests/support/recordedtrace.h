// What the code under test traces, while the object lives. One at a time.
#pragma once

#include <uabase/system/uatrace.h>
#include <uabase/system/uatracehook.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

class RecordedTrace : private UaTraceHook
{
public:
    explicit RecordedTrace(UaTrace::TraceLevel level = UaTrace::Data) : m_before(UaTrace::traceLevel())
    {
        UaTrace::setTraceLevel(level);
        UaTrace::setTraceHook(this);
    }
    ~RecordedTrace() override
    {
        UaTrace::setTraceHook(nullptr);
        UaTrace::setTraceLevel(m_before);
    }

    [[nodiscard]] bool holds(std::string_view text) const { return count(text) > 0; }
    /// Waits for so many records that hold the text, ten seconds at most.
    [[nodiscard]] bool waitFor(std::string_view text, long wanted = 1) const
    {
        std::unique_lock lock(m_mutex);
        return m_recorded.wait_for(lock, std::chrono::seconds(10), [&] { return countOf(text) >= wanted; });
    }
    /// Records that hold the text.
    [[nodiscard]] long count(std::string_view text) const
    {
        std::lock_guard lock(m_mutex);
        return countOf(text);
    }

private:
    long countOf(std::string_view text) const
    {
        return std::count_if(
            m_records.begin(), m_records.end(),
            [text](const std::string& record) { return record.find(text) != std::string::npos; });
    }
    void traceOutput(UaTrace::TraceLevel, const char* text, int) override
    {
        std::lock_guard lock(m_mutex);
        m_records.emplace_back(text);
        m_recorded.notify_all();
    }

    mutable std::mutex m_mutex;
    mutable std::condition_variable m_recorded;
    std::vector<std::string> m_records;
    UaTrace::TraceLevel m_before;
};
