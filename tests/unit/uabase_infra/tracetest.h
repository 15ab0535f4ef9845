// The trace is one for the whole process: each test begins and ends with it turned off.
#pragma once

#include <tests/support/temporaryfolder.h>
#include <uabase/system/uatrace.h>
#include <uabase/system/uatracehook.h>
#include <uabase/values/uastring.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <mutex>
#include <string>
#include <utility>
#include <vector>

class RecordingHook : public UaTraceHook
{
public:
    void traceOutput(UaTrace::TraceLevel level, const char* text, int moduleId) override
    {
        const std::lock_guard lock(m_mutex);
        m_records.push_back(std::to_string(level) + ' ' + std::to_string(moduleId) + ' ' + text);
    }
    std::vector<std::string> take()
    {
        const std::lock_guard lock(m_mutex);
        return std::exchange(m_records, {});
    }

private:
    std::mutex m_mutex;
    std::vector<std::string> m_records;
};

class TraceTest : public ::testing::Test
{
protected:
    static void SetUpTestSuite() { UaTrace::setProductVersion("1.4.2"); }
    void SetUp() override { turnOff(); }
    void TearDown() override { turnOff(); }

    static void turnOff()
    {
        UaTrace::setTraceHook(nullptr);
        UaTrace::setErrorTraceHook(nullptr);
        UaTrace::closeTrace();
        UaTrace::closeErrorTrace();
        UaTrace::setPreFileTrace(false, UaTrace::NoTrace);
        UaTrace::setMaxPreFileTraceEntries(1000);
        UaTrace::clearPreFileTraces();
        UaTrace::setLocalTimeOutput(false);
        UaTrace::setPrintDateInTrace(false);
        UaTrace::setFlushDisabled(false);
    }
    int start(UaTrace::TraceLevel level, unsigned int maximum = 1000, unsigned int backups = 3)
    {
        return UaTrace::initTrace(level, maximum, backups, UaString(trace), "tavelin");
    }
    /// What follows the header.
    static std::vector<std::string> records(const std::string& path)
    {
        std::vector<std::string> result;
        for (const std::string& line : TemporaryFolder::lines(path))
            if (!line.starts_with("**"))
                result.push_back(line);
        return result;
    }
    /// Behind the time, level and thread.
    static std::vector<std::string> texts(const std::string& path)
    {
        std::vector<std::string> result;
        for (const std::string& line : records(path)) {
            const std::size_t star = line.find("* ");
            result.push_back(star == std::string::npos ? "?" : line.substr(star + 2));
        }
        return result;
    }

    TemporaryFolder folder;
    const std::string trace = folder.file("trace.log");
};
