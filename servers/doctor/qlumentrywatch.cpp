#include <servers/doctor/qlumentrywatch.h>

#include <certificates/qlumtlsoverrules.h>
#include <opcua/opcua_statuscodes.h>
#include <opcua/opcua_types.h>

#include <utility>

QlumEntryWatch::QlumEntryWatch(const Rules& rules) : m_rules(rules)
{
    m_entry.begun = std::chrono::steady_clock::now();
}

QlumEntry QlumEntryWatch::entry() const
{
    const std::lock_guard lock(m_mutex);
    return m_entry;
}

bool QlumEntryWatch::connectError(OpcUa_UInt32, UaClientSdk::UaClient::ConnectServiceType step,
                                  const UaStatus& error, bool clientSideError)
{
    if (clientSideError && m_rules.isHostJudged && error.code() == OpcUa_BadCertificateHostNameInvalid)
        return true;
    const std::lock_guard lock(m_mutex);
    if (!m_entry.failedStep) { // what follows from it is not of interest
        m_entry.failedStep = step;
        m_entry.error = error;
        m_entry.isOurs = clientSideError;
    }
    return false;
}

bool QlumEntryWatch::sslCertificateValidationFailed(OpcUa_UInt32, const UaStatus& status,
                                                    const UaByteString& certificate)
{
    return qlumIsTlsOverruled(m_rules.url, certificate, status.statusCode());
}

UaStatus QlumEntryWatch::mayCall(const UaClientSdk::ServiceCall& call)
{
    const bool isLogIn = &call.type == &OpcUa_ActivateSessionRequest_EncodeableType;
    return isLogIn && !m_rules.mayLogIn ? UaStatus(OpcUa_BadRequestCancelledByClient) : UaStatus();
}

void QlumEntryWatch::serviceBegun(OpcUa_UInt64 number, const UaClientSdk::ServiceCall& call)
{
    const std::lock_guard lock(m_mutex);
    if (&call.type == &OpcUa_CreateSessionRequest_EncodeableType) {
        m_createNumber = number;
        m_entry.create.begun = std::chrono::steady_clock::now();
    } else if (&call.type == &OpcUa_ActivateSessionRequest_EncodeableType) {
        m_activateNumber = number;
        m_entry.activate.begun = std::chrono::steady_clock::now();
    }
}

void QlumEntryWatch::serviceEnded(OpcUa_UInt64 number, const UaClientSdk::ServiceOutcome& outcome)
{
    const std::lock_guard lock(m_mutex);
    for (auto [wanted, call] :
         {std::pair{m_createNumber, &m_entry.create}, std::pair{m_activateNumber, &m_entry.activate}}) {
        if (!call->begun || wanted != number)
            continue;
        call->ended = std::chrono::steady_clock::now();
        call->status = outcome.status;
    }
}
