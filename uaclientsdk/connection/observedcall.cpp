#include <uaclientsdk/connection/observedcall.h>

#include <uabase/values/uastatus.h>

#include <chrono>
#include <utility>

namespace UaClientSdk {

namespace {

OpcUa_UInt64 monotonicNow()
{
    using namespace std::chrono;
    return static_cast<OpcUa_UInt64>(
        duration_cast<nanoseconds>(steady_clock::now().time_since_epoch()).count());
}

} // namespace

std::unique_ptr<ObservedCall> ObservedCall::ofOne(std::shared_ptr<ServiceObserver> observer,
                                                  const ServiceCall& call)
{
    if (!observer || !observer->isLooking())
        return nullptr;
    return std::make_unique<ObservedCall>(Observers{std::move(observer), nullptr}, 1, call);
}

ObservedCall::ObservedCall(Observers observers, OpcUa_UInt64 number, const ServiceCall& call)
    : m_observers(std::move(observers)), m_number(number), m_passed(monotonicNow())
{
    for (const auto& observer : m_observers)
        if (observer)
            observer->serviceBegun(m_number, call);
    OpcUa_Channel_MeasureNextCall(&m_measure);
}

void ObservedCall::end(OpcUa_StatusCode status, const OpcUa_EncodeableType* type, const void* response)
{
    OpcUa_Channel_MeasureNextCall(nullptr); // should the stack never have been called
    const ServiceOutcome outcome{UaStatus(status), type, response, m_begun, m_passed, m_measure};
    for (const auto& observer : m_observers)
        if (observer)
            observer->serviceEnded(m_number, outcome);
}

} // namespace UaClientSdk
