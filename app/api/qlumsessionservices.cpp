#include <app/api/qlumsessionservices.h>

#include <app/api/qlumapplicationinterface.h>
#include <uabase/structures/uadatatypedictionary.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>

namespace {
using UaClientSdk::BrowseContext;
using UaClientSdk::ServiceSettings;
using UaClientSdk::UaSession;

class UaSessionServices final : public QlumSessionServices
{
public:
    explicit UaSessionServices(UaSession& session) : m_session(session) {}

    bool isConnected() const override { return m_session.isConnected(); }
    UaStatus read(ServiceSettings& settings, double maxAge, OpcUa_TimestampsToReturn timestampsToReturn,
                  const UaReadValueIds& nodesToRead, UaDataValues& values) override
    {
        UaDiagnosticInfos diagnostics;
        return m_session.read(settings, maxAge, timestampsToReturn, nodesToRead, values, diagnostics);
    }
    UaStatus write(ServiceSettings& settings, const UaWriteValues& nodesToWrite,
                   UaStatusCodeArray& results) override
    {
        UaDiagnosticInfos diagnostics;
        return m_session.write(settings, nodesToWrite, results, diagnostics);
    }
    UaStatus browse(ServiceSettings& settings, const UaNodeId& nodeToBrowse, const BrowseContext& context,
                    UaByteString& continuationPoint, UaReferenceDescriptions& references) override
    {
        return m_session.browse(settings, nodeToBrowse, context, continuationPoint, references);
    }
    UaStatus browseNext(ServiceSettings& settings, bool releaseContinuationPoint,
                        UaByteString& continuationPoint, UaReferenceDescriptions& references) override
    {
        return m_session.browseNext(settings, releaseContinuationPoint, continuationPoint, references);
    }
    UaStatus translateBrowsePathsToNodeIds(ServiceSettings& settings, const UaBrowsePaths& browsePaths,
                                           UaBrowsePathResults& results) override
    {
        UaDiagnosticInfos diagnostics;
        return m_session.translateBrowsePathsToNodeIds(settings, browsePaths, results, diagnostics);
    }
    UaDataTypeDictionary* dataTypeDictionary() override { return &m_session; }

private:
    UaSession& m_session;
};
} // namespace

std::shared_ptr<QlumSessionServices> qlumServicesOf(UaSession* session)
{
    return session ? std::make_shared<UaSessionServices>(*session) : nullptr;
}

QlumSessionServicesProvider qlumApplicationServices()
{
    return [](unsigned int serverId) -> std::shared_ptr<QlumSessionServices> {
        QlumApplicationInterface* application = QlumApplicationInterface::instance();
        return application ? qlumServicesOf(application->session(serverId)) : nullptr;
    };
}
