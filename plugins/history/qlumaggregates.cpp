#include <plugins/history/qlumaggregates.h>

#include <app/api/qlumjob.h>
#include <app/api/qlumsessionservices.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_identifiers.h>
#include <plugins/history/qlumtrendextras.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uaclientsdk/browsecontext.h>

#include <algorithm>
#include <vector>

// Servers list them with their general capabilities, with those of their histories, or in both places.
std::vector<QlumAggregate> qlumReadAggregates(QlumSessionServices& session, const QlumJob& job)
{
    std::vector<QlumAggregate> found;
    for (const OpcUa_UInt32 folder : {OpcUaId_HistoryServerCapabilities_AggregateFunctions,
                                      OpcUaId_Server_ServerCapabilities_AggregateFunctions}) {
        UaClientSdk::ServiceSettings settings = job.serviceSettings();
        UaClientSdk::BrowseContext context;
        context.referenceTypeId = UaNodeId(OpcUaId_HierarchicalReferences);
        UaByteString point;
        UaReferenceDescriptions references;
        bool isBad = session.browse(settings, UaNodeId(folder), context, point, references).isBad();
        while (!isBad) {
            for (const OpcUa_ReferenceDescription& reference : references) {
                const UaNodeId id(reference.NodeId.NodeId);
                const bool isKnown =
                    std::any_of(found.begin(), found.end(), [&id](const auto& one) { return one.id == id; });
                if (!isKnown)
                    found.push_back({id, toQString(UaLocalizedText(reference.DisplayName).text())});
            }
            if (point.isEmpty() || job.isCancelled())
                break;
            isBad = session.browseNext(settings, false, point, references).isBad();
        }
    }
    std::sort(found.begin(), found.end(), [](const auto& left, const auto& right) {
        return left.name.localeAwareCompare(right.name) < 0;
    });
    return found;
}
