// A service call that somebody looks at.
#pragma once

#include <opcua/opcua_channel.h>
#include <uabase/values/uadatetime.h>
#include <uaclientsdk/servicewatch.h>

#include <memory>
#include <utility>

namespace UaClientSdk {

/// From the gate to the answer; made only while there is an observer.
class ObservedCall
{
public:
    /// Tells of the begin, and has the next call of this thread measured.
    ObservedCall(std::shared_ptr<ServiceObserver> observer, OpcUa_UInt64 number, const ServiceCall& call);
    /// The answer is here, or the call has failed: tells of the end. type and response may be null.
    void end(OpcUa_StatusCode status, const OpcUa_EncodeableType* type, const void* response);

private:
    const std::shared_ptr<ServiceObserver> m_observer;
    const OpcUa_UInt64 m_number;
    const UaDateTime m_begun = UaDateTime::now();
    const OpcUa_UInt64 m_passed;
    OpcUa_CallMeasure m_measure{};
};

} // namespace UaClientSdk
