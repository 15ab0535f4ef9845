#include <uaclientsdk/subscription/publishpace.h>

#include <algorithm>

namespace UaClientSdk {

namespace {

constexpr OpcUa_UInt64 window = 100;
constexpr OpcUa_UInt32 sendsInWindow = 20;
constexpr OpcUa_UInt64 memory = 1000;

} // namespace

bool PublishPace::linkFailed(OpcUa_UInt64 now, OpcUa_UInt32 fault)
{
    if (fault != m_linkFaults)
        return false;
    ++m_linkFaults;
    const bool isSecond = m_linkPause == minimumLinkPause;
    m_linkPause = m_linkPause == 0 ? minimumLinkPause : std::min(2 * m_linkPause, maximumLinkPause);
    failed(now, m_linkPause);
    return isSecond;
}

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
    if (within(now, m_lastError, m_pause)) // which may be longer than the memory
        return false;
    if (!within(now, m_lastError, memory)) {
        m_failing = false;
        return true;
    }
    if (!within(now, m_windowBegin, window)) {
        m_windowBegin = now;
        m_sentInWindow = 0;
    }
    return ++m_sentInWindow <= sendsInWindow;
}

} // namespace UaClientSdk
