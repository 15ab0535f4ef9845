#include <uaclientsdk/subscription/triggeringlinks.h>

#include <utility>

namespace UaClientSdk {

TriggeringLinks::TriggeringLinks(const UaUInt32Array& links, UaStatusCodeArray& results,
                                 UaDiagnosticInfos& diagnosticInfos)
    : m_links(links.span()), m_results(results), m_diagnosticInfos(diagnosticInfos)
{
    clear();
}

bool TriggeringLinks::take(std::size_t count, OpcUa_Int32* resultCount, OpcUa_StatusCode** results,
                           OpcUa_Int32* diagnosticCount, OpcUa_DiagnosticInfo** diagnostics)
{
    const auto before = static_cast<OpcUa_UInt32>(m_done);
    const auto wanted = static_cast<OpcUa_UInt32>(count);
    UaStatusCodeArray codes;
    codes.attachFrom(resultCount, results);
    UaDiagnosticInfos infos;
    infos.attach(std::exchange(*diagnosticCount, 0), std::exchange(*diagnostics, nullptr));
    if (codes.length() != wanted || (!infos.isEmpty() && infos.length() != wanted))
        return false;
    m_done += count;
    if (!m_results.appendMoved(std::move(codes)))
        return false;
    if (infos.isEmpty() && m_diagnosticInfos.isEmpty())
        return true;
    // other pieces may have come without
    return m_diagnosticInfos.resize(before) && (!infos.isEmpty() || infos.resize(wanted)) &&
           m_diagnosticInfos.append(std::move(infos));
}

void TriggeringLinks::clear()
{
    m_results.clear();
    m_diagnosticInfos.clear();
}

} // namespace UaClientSdk
