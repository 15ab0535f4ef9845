// The lines of the trace that say where a function begins and ends.
#pragma once

#include <opcua/opcua_platform.h>
#include <uabase/system/uatrace.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>

namespace UaClientSdk {

/// "--> UaSession::read ..." at once, "<-- UaSession::read [ret=0x0]" with the scope. The names are literals.
class TraceScope
{
public:
    TraceScope(const char* owner, const char* function) : m_owner(owner), m_function(function)
    {
        UaTrace::tInOut("--> %s::%s", owner, function);
    }
    TraceScope(const char* owner, const char* function, OpcUa_UInt32 session)
        : m_owner(owner), m_function(function)
    {
        UaTrace::tInOut("--> %s::%s [Session=%u]", owner, function, session);
    }
    TraceScope(const char* owner, const char* function, OpcUa_UInt32 session, OpcUa_UInt32 count)
        : m_owner(owner), m_function(function)
    {
        UaTrace::tInOut("--> %s::%s count=%u [Session=%u]", owner, function, count, session);
    }
    TraceScope(const char* owner, const char* function, const char* label, const UaString& value)
        : m_owner(owner), m_function(function)
    {
        UaTrace::tInOut("--> %s::%s %s=%s", owner, function, label, value.toUtf8());
    }
    ~TraceScope()
    {
        if (m_end == End::Result)
            UaTrace::tInOut("<-- %s::%s [ret=0x%x]", m_owner, m_function, m_result);
        else if (m_end == End::Plain)
            UaTrace::tInOut("<-- %s::%s", m_owner, m_function);
    }
    TraceScope(const TraceScope&) = delete;
    TraceScope& operator=(const TraceScope&) = delete;

    /// The function ends with this; hands it on.
    UaStatus ending(UaStatus result)
    {
        m_end = End::Result;
        m_result = result.statusCode();
        return result;
    }
    /// The end says nothing more, or has been told in other words.
    void keepSilent() { m_end = End::Silent; }

private:
    enum class End { Plain, Result, Silent };

    const char* m_owner;
    const char* m_function;
    End m_end = End::Plain;
    OpcUa_StatusCode m_result = 0;
};

} // namespace UaClientSdk
