#include <uaclientsdk/subscription/publishpace.h>

namespace UaClientSdk {

namespace {

constexpr OpcUa_UInt64 window = 100;
constexpr OpcUa_UInt32 sendsInWindow = 20;
constexpr OpcUa_UInt64 memory = 1000;

} // namespace

void PublishPace::failed(OpcUa_UInt64 now, OpcUa_UInt64 pause)
{
    if (!m_failing) {
        m_windowBegin = now;
        m_sentInWindow = 0;
    }
    m_failing = true;
    m_lastError = now;
    m_pause = pause;
}

bool PublishPace::take(OpcUa_UInt64 now)
{
    if (!m_failing)
        return true;
    if (!within(now, m_lastError, memory)) {
        m_failing = false;
        return true;
    }
    if (within(now, m_lastError, m_pause))
        return false;
    if (!within(now, m_windowBegin, window)) {
        m_windowBegin = now;
        m_sentInWindow = 0;
    }
    return ++m_sentInWindow <= sendsInWindow;
}

} // namespace UaClientSdk
