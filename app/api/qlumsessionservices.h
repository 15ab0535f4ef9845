#pragma once
#include <uabase/structures/uadatatypedictionary.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/uasession.h>

#include <functional>
#include <memory>

/// The services of one session that views call; tests answer them by a script. Every function may be called
/// from any thread and blocks for at most the call timeout. Result arrays hold as many entries as the request
/// when the status is Good.
class QlumSessionServices
{
public:
    QlumSessionServices() = default;
    virtual ~QlumSessionServices() = default;
    QlumSessionServices(const QlumSessionServices&) = delete;
    QlumSessionServices& operator=(const QlumSessionServices&) = delete;

    /// Whether calls can reach the server at the moment.
    [[nodiscard]] virtual bool isConnected() const = 0;
    /// Reads attributes; one value for each node to read.
    virtual UaStatus read(UaClientSdk::ServiceSettings& settings, double maxAge,
                          OpcUa_TimestampsToReturn timestampsToReturn, const UaReadValueIds& nodesToRead,
                          UaDataValues& values) = 0;
    /// Writes attributes; one result for each value to write.
    virtual UaStatus write(UaClientSdk::ServiceSettings& settings, const UaWriteValues& nodesToWrite,
                           UaStatusCodeArray& results) = 0;
    /// Begins to browse a node. The continuation point is empty when the references are all there are.
    virtual UaStatus browse(UaClientSdk::ServiceSettings& settings, const UaNodeId& nodeToBrowse,
                            const UaClientSdk::BrowseContext& context, UaByteString& continuationPoint,
                            UaReferenceDescriptions& references) = 0;
    /// Continues a browse, or gives its continuation point up; the continuation point becomes the next one.
    virtual UaStatus browseNext(UaClientSdk::ServiceSettings& settings, bool releaseContinuationPoint,
                                UaByteString& continuationPoint, UaReferenceDescriptions& references) = 0;
    /// Follows paths of browse names; one result for each path.
    virtual UaStatus translateBrowsePathsToNodeIds(UaClientSdk::ServiceSettings& settings,
                                                   const UaBrowsePaths& browsePaths,
                                                   UaBrowsePathResults& results) = 0;
    /// The data types of the server; owned by the session, never null.
    [[nodiscard]] virtual UaDataTypeDictionary* dataTypeDictionary() = 0;
};

/// Finds the services of a server by its id; a null pointer for an unknown server.
using QlumSessionServicesProvider =
    std::function<std::shared_ptr<QlumSessionServices>(unsigned int serverId)>;

/// The services of a session, which must outlive them. Null for null.
[[nodiscard]] std::shared_ptr<QlumSessionServices> qlumServicesOf(UaClientSdk::UaSession* session);

/// The provider that asks the application for the session.
[[nodiscard]] QlumSessionServicesProvider qlumApplicationServices();
