// A service call that somebody looks at.
#pragma once

#include <opcua/opcua_channel.h>
#include <uabase/values/uadatetime.h>
#include <uaclientsdk/servicewatch.h>

#include <array>
#include <memory>
#include <utility>

namespace UaClientSdk {

/// From the gate to the answer; made only while there is an observer.
class ObservedCall
{
public:
    /// Who looks at a call: the session's observer, the witness of its guard and who the caller names; null
    /// for nobody.
    using Observers = std::array<std::shared_ptr<ServiceObserver>, 3>;

    /// The only call that the observer sees; null when there is none, or it does not look.
    [[nodiscard]] static std::unique_ptr<ObservedCall> ofOne(std::shared_ptr<ServiceObserver> observer,
                                                             const ServiceCall& call);

    /// Tells of the begin, and has the next call of this thread measured.
    ObservedCall(Observers observers, OpcUa_UInt64 number, const ServiceCall& call);
    /// The answer is here, or the call has failed: tells of the end. type and response may be null.
    void end(OpcUa_StatusCode status, const OpcUa_EncodeableType* type, const void* response);

private:
    const Observers m_observers;
    const OpcUa_UInt64 m_number;
    const UaDateTime m_begun = UaDateTime::now();
    const OpcUa_UInt64 m_passed;
    OpcUa_CallMeasure m_measure{};
};

/// The end of a call that has blocked: the response is only looked at when the call was answered. Null for a
/// call that nobody looks at.
template <typename Service>
void endObserved(const std::unique_ptr<ObservedCall>& observed, OpcUa_StatusCode status,
                 const typename Service::Response& response)
{
    if (!observed)
        return;
    const bool isAnswered = !OpcUa_IsBad(status);
    observed->end(status, isAnswered ? &Service::responseType : nullptr, isAnswered ? &response : nullptr);
}

} // namespace UaClientSdk
