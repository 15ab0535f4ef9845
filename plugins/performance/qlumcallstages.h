// Where the time of one call went, as the session's gate saw it.
#pragma once
#include <uaclientsdk/servicewatch.h>

#include <QtGlobal>

#include <mutex>

/// What the services of one measured call say of themselves. One for each lane.
class QlumCallStages : public UaClientSdk::ServiceObserver
{
public:
    /// Sums of the services since the last take().
    struct Sums
    {
        quint32 services = 0;    ///< that have ended
        double elsewhere = 0;    ///< us between the request's way out and the first bytes of the answer
        quint64 bytesOut = 0;    ///< of the requests
        quint64 bytesIn = 0;     ///< of the answers
        bool wasTooMuch = false; ///< the server found a request too large
    };
    /// Sums that begin anew.
    [[nodiscard]] Sums take();

    void serviceBegun(OpcUa_UInt64 number, const UaClientSdk::ServiceCall& call) override;
    void serviceEnded(OpcUa_UInt64 number, const UaClientSdk::ServiceOutcome& outcome) override;

private:
    std::mutex m_mutex;
    Sums m_sums;
};
