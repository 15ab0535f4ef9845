#include <uaclientsdk/browseprogress.h>

#include <opcua/opcua_statuscodes.h>

#include <algorithm>
#include <functional>

namespace UaClientSdk {

namespace {

constexpr int maximumEmptyPages = 20;
constexpr int maximumSightings = 3;           // of one continuation point
constexpr OpcUa_UInt32 releaseTimeout = 1000; // ms

} // namespace

void BrowseProgress::take(std::size_t references, const UaByteString& continuationPoint)
{
    if (references > 0) {
        m_emptyPages = 0;
        m_points.clear();
    } else {
        ++m_emptyPages;
    }
    m_points.push_back(std::hash<UaByteString>()(continuationPoint));
    m_isStuck = m_emptyPages >= maximumEmptyPages ||
                std::count(m_points.begin(), m_points.end(), m_points.back()) >= maximumSightings;
}

bool keepsContinuationPoint(const UaStatus& status)
{
    switch (status.statusCode()) {
    case OpcUa_BadContinuationPointInvalid:
    case OpcUa_BadNoContinuationPoints:
    case OpcUa_BadConnectionClosed:
    case OpcUa_BadSecureChannelClosed:
    case OpcUa_BadSecureChannelIdInvalid:
    case OpcUa_BadSessionClosed:
    case OpcUa_BadSessionIdInvalid:
    case OpcUa_BadSessionNotActivated:
    case OpcUa_BadServerNotConnected:
    case OpcUa_BadServerHalted:
    case OpcUa_BadShutdown:
    case OpcUa_BadDisconnect:
    case OpcUa_BadCommunicationError:
    case OpcUa_BadInternalError: // what a browse without a connection ends with
        return false;
    default:
        return true;
    }
}

ServiceSettings settingsOfRelease(const ServiceSettings& settings)
{
    ServiceSettings release = settings;
    release.callTimeout = std::min(release.callTimeout, releaseTimeout);
    return release;
}

} // namespace UaClientSdk
