#include <app/api/qlumserviceneed.h>

#include <app/api/qlumtext.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_types.h>
#include <uabase/values/uastring.h>

#include <QLatin1String>

#include <algorithm>
#include <array>
#include <iterator>
#include <ranges>
#include <span>
#include <string_view>

namespace {
using Role = QlumServerRole;
using Rule = QlumServiceRule;

// ---- services

struct ServiceRow
{
    OpcUa_UInt32 requestType;
    Rule rule;
};

// By number. Who adds a service to the stack decides about it here.
constexpr ServiceRow services[] = {
    {OpcUaId_FindServersRequest, Rule::Look},
    {OpcUaId_GetEndpointsRequest, Rule::Look},
    {OpcUaId_RegisterServerRequest, Rule::Commission},
    {OpcUaId_OpenSecureChannelRequest, Rule::Look},
    {OpcUaId_CloseSecureChannelRequest, Rule::Look},
    {OpcUaId_CreateSessionRequest, Rule::Look},
    {OpcUaId_ActivateSessionRequest, Rule::Look},
    {OpcUaId_CloseSessionRequest, Rule::Look},
    {OpcUaId_CancelRequest, Rule::Look},
    {OpcUaId_AddNodesRequest, Rule::Commission},
    {OpcUaId_AddReferencesRequest, Rule::Commission},
    {OpcUaId_DeleteNodesRequest, Rule::Commission},
    {OpcUaId_DeleteReferencesRequest, Rule::Commission},
    {OpcUaId_BrowseRequest, Rule::Look},
    {OpcUaId_BrowseNextRequest, Rule::Look},
    {OpcUaId_TranslateBrowsePathsToNodeIdsRequest, Rule::Look},
    {OpcUaId_RegisterNodesRequest, Rule::Look},
    {OpcUaId_UnregisterNodesRequest, Rule::Look},
    {OpcUaId_QueryFirstRequest, Rule::Look},
    {OpcUaId_QueryNextRequest, Rule::Look},
    {OpcUaId_ReadRequest, Rule::Look},
    {OpcUaId_HistoryReadRequest, Rule::Look},
    {OpcUaId_WriteRequest, Rule::ByAttribute},
    {OpcUaId_HistoryUpdateRequest, Rule::Commission},
    {OpcUaId_CallRequest, Rule::ByMethod},
    {OpcUaId_CreateMonitoredItemsRequest, Rule::Look},
    {OpcUaId_ModifyMonitoredItemsRequest, Rule::Look},
    {OpcUaId_SetMonitoringModeRequest, Rule::Look},
    {OpcUaId_SetTriggeringRequest, Rule::BySubscription},
    {OpcUaId_DeleteMonitoredItemsRequest, Rule::Look},
    {OpcUaId_CreateSubscriptionRequest, Rule::Look},
    {OpcUaId_ModifySubscriptionRequest, Rule::Look},
    {OpcUaId_SetPublishingModeRequest, Rule::Look},
    {OpcUaId_PublishRequest, Rule::Look},
    {OpcUaId_RepublishRequest, Rule::Look},
    {OpcUaId_TransferSubscriptionsRequest, Rule::BySubscription},
    {OpcUaId_DeleteSubscriptionsRequest, Rule::Look},
    {OpcUaId_FindServersOnNetworkRequest, Rule::Look},
    {OpcUaId_RegisterServer2Request, Rule::Commission},
};
static_assert(std::ranges::is_sorted(services, {}, &ServiceRow::requestType));

// ---- methods

enum class MethodRule { Look, Open, Commission };

struct MethodRow
{
    OpcUa_UInt32 method;
    MethodRule rule;
};

// A server may be asked for the method of a type or for that of each of its instances in namespace 0.
#define FILE_ROWS(file)                                                                                      \
    {OpcUaId_##file##_Open, MethodRule::Open}, {OpcUaId_##file##_Close, MethodRule::Look},                   \
        {OpcUaId_##file##_Read, MethodRule::Look}, {OpcUaId_##file##_GetPosition, MethodRule::Look},         \
    {                                                                                                        \
        OpcUaId_##file##_Write, MethodRule::Commission                                                       \
    }
#define TRUST_LIST_OWN_ROWS(list)                                                                            \
    {OpcUaId_##list##_OpenWithMasks, MethodRule::Commission},                                                \
        {OpcUaId_##list##_CloseAndUpdate, MethodRule::Commission},                                           \
        {OpcUaId_##list##_AddCertificate, MethodRule::Commission},                                           \
    {                                                                                                        \
        OpcUaId_##list##_RemoveCertificate, MethodRule::Commission                                           \
    }
#define TRUST_LIST_ROWS(list) FILE_ROWS(list##_TrustList), TRUST_LIST_OWN_ROWS(list##_TrustList)
#define APPLICATION_ROWS(application)                                                                        \
    {OpcUaId_##application##_UpdateCertificate, MethodRule::Commission},                                     \
        {OpcUaId_##application##_ApplyChanges, MethodRule::Commission},                                      \
        {OpcUaId_##application##_CreateSigningRequest, MethodRule::Commission},                              \
    {                                                                                                        \
        OpcUaId_##application##_GetRejectedList, MethodRule::Look                                            \
    }
#define CONFIGURATION_ROWS(configuration)                                                                    \
    APPLICATION_ROWS(configuration), FILE_ROWS(configuration##_ConfigurationFile),                           \
        {OpcUaId_##configuration##_ConfigurationFile_CloseAndUpdate, MethodRule::Commission},                \
        {OpcUaId_##configuration##_ConfigurationFile_ConfirmUpdate, MethodRule::Commission},                 \
        {OpcUaId_##configuration##_CreateSelfSignedCertificate, MethodRule::Commission},                     \
        {OpcUaId_##configuration##_DeleteCertificate, MethodRule::Commission},                               \
        {OpcUaId_##configuration##_GetCertificates, MethodRule::Commission},                                 \
        {OpcUaId_##configuration##_CancelChanges, MethodRule::Commission},                                   \
    {                                                                                                        \
        OpcUaId_##configuration##_ResetToServerDefaults, MethodRule::Commission                              \
    }
#define FOLDER_ROWS(folder)                                                                                  \
    {OpcUaId_##folder##_CreateDirectory, MethodRule::Commission},                                            \
        {OpcUaId_##folder##_CreateFile, MethodRule::Commission},                                             \
        {OpcUaId_##folder##_DeleteFileSystemObject, MethodRule::Commission},                                 \
    {                                                                                                        \
        OpcUaId_##folder##_MoveOrCopy, MethodRule::Commission                                                \
    }

constexpr MethodRow methodRows[] = {
    {OpcUaId_ConditionType_ConditionRefresh, MethodRule::Look},
    {OpcUaId_ConditionType_ConditionRefresh2, MethodRule::Look},
    {OpcUaId_ServerType_GetMonitoredItems, MethodRule::Look},
    {OpcUaId_Server_GetMonitoredItems, MethodRule::Look},
    {OpcUaId_ServerType_ResendData, MethodRule::Look},
    {OpcUaId_Server_ResendData, MethodRule::Look},
    {OpcUaId_ServerType_RequestServerStateChange, MethodRule::Commission},
    {OpcUaId_Server_RequestServerStateChange, MethodRule::Commission},
    CONFIGURATION_ROWS(ServerConfigurationType),
    CONFIGURATION_ROWS(ServerConfiguration),
    APPLICATION_ROWS(ApplicationConfigurationFolderType_ApplicationName_Placeholder),
    APPLICATION_ROWS(ProvisionableDeviceType_ApplicationName_Placeholder),
    {OpcUaId_CertificateGroupType_GetRejectedList, MethodRule::Look},
    {OpcUaId_KeyCredentialConfigurationFolderType_CreateCredential, MethodRule::Commission},
    {OpcUaId_KeyCredentialConfiguration_CreateCredential, MethodRule::Commission},
    {OpcUaId_KeyCredentialConfigurationType_GetEncryptingKey, MethodRule::Commission},
    {OpcUaId_KeyCredentialConfigurationType_UpdateCredential, MethodRule::Commission},
    {OpcUaId_KeyCredentialConfigurationType_DeleteCredential, MethodRule::Commission},
    TRUST_LIST_OWN_ROWS(TrustListType),
    TRUST_LIST_ROWS(CertificateGroupType),
    TRUST_LIST_ROWS(CertificateGroupFolderType_DefaultApplicationGroup),
    TRUST_LIST_ROWS(CertificateGroupFolderType_DefaultHttpsGroup),
    TRUST_LIST_ROWS(CertificateGroupFolderType_DefaultUserTokenGroup),
    TRUST_LIST_ROWS(CertificateGroupFolderType_AdditionalGroup_Placeholder),
    TRUST_LIST_ROWS(ServerConfigurationType_CertificateGroups_DefaultApplicationGroup),
    TRUST_LIST_ROWS(ServerConfiguration_CertificateGroups_DefaultApplicationGroup),
    TRUST_LIST_ROWS(ServerConfiguration_CertificateGroups_DefaultHttpsGroup),
    TRUST_LIST_ROWS(ServerConfiguration_CertificateGroups_DefaultUserTokenGroup),
    TRUST_LIST_ROWS(
        ApplicationConfigurationFolderType_ApplicationName_Placeholder_CertificateGroups_DefaultApplicationGroup),
    TRUST_LIST_ROWS(
        ProvisionableDeviceType_ApplicationName_Placeholder_CertificateGroups_DefaultApplicationGroup),
    FILE_ROWS(FileType),
    FILE_ROWS(NamespaceMetadataType_NamespaceFile),
    FILE_ROWS(FileDirectoryType_FileName_Placeholder),
    FILE_ROWS(PublishSubscribeType_PubSubConfiguration),
    FILE_ROWS(PublishSubscribe_PubSubConfiguration),
    {OpcUaId_ConfigurationFileType_CloseAndUpdate, MethodRule::Commission},
    {OpcUaId_ConfigurationFileType_ConfirmUpdate, MethodRule::Commission},
    {OpcUaId_PubSubConfigurationType_CloseAndUpdate, MethodRule::Commission},
    {OpcUaId_PublishSubscribeType_PubSubConfiguration_CloseAndUpdate, MethodRule::Commission},
    {OpcUaId_PublishSubscribe_PubSubConfiguration_CloseAndUpdate, MethodRule::Commission},
    FOLDER_ROWS(FileDirectoryType),
    FOLDER_ROWS(FileDirectoryType_FileDirectoryName_Placeholder),
    FOLDER_ROWS(FileSystem),
    {OpcUaId_TemporaryFileTransferType_GenerateFileForWrite, MethodRule::Commission},
    {OpcUaId_TemporaryFileTransferType_CloseAndCommit, MethodRule::Commission},
};
#undef FOLDER_ROWS
#undef CONFIGURATION_ROWS
#undef APPLICATION_ROWS
#undef TRUST_LIST_ROWS
#undef TRUST_LIST_OWN_ROWS
#undef FILE_ROWS

constexpr auto methods = [] {
    auto sorted = std::to_array(methodRows);
    std::ranges::sort(sorted, {}, &MethodRow::method);
    return sorted;
}();
static_assert(std::ranges::adjacent_find(methods, {}, &MethodRow::method) == methods.end());

constexpr OpcUa_Byte openForReading = 1;

bool isOpenForReading(const OpcUa_CallMethodRequest& method)
{
    if (method.NoOfInputArguments < 1)
        return false;
    const OpcUa_Variant& mode = method.InputArguments[0];
    return mode.Datatype == OpcUaType_Byte && mode.ArrayType == OpcUa_VariantArrayType_Scalar &&
           mode.Value.Byte == openForReading;
}

// ---- purposes

struct PurposeRow
{
    std::string_view kind;
    Role need;
};

constexpr PurposeRow purposes[] = {
    {QlumPurpose::serverConfiguration, Role::Commission},
    {QlumPurpose::trustList, Role::Commission},
    {QlumPurpose::serverState, Role::Commission},
    {QlumPurpose::fileWriting, Role::Commission},
    {QlumPurpose::fileReading, Role::Look},
    {QlumPurpose::refreshing, Role::Look},
};

std::optional<Role> purposeNeed(const UaString& purpose)
{
    const std::string_view text(purpose.toUtf8(), purpose.size());
    const auto found = std::ranges::find(purposes, text.substr(0, text.find(':')), &PurposeRow::kind);
    return found == std::end(purposes) ? std::nullopt : std::optional(found->need);
}

// ---- needs

template <typename Item>
std::span<const Item> itemsOf(OpcUa_Int32 count, const Item* items)
{
    return {items, static_cast<std::size_t>(std::max(count, 0))};
}

Role needOfWrite(const OpcUa_WriteRequest& request, const UaString& purpose)
{
    const auto items = itemsOf(request.NoOfNodesToWrite, request.NodesToWrite);
    const bool isValues = std::ranges::all_of(
        items, [](const OpcUa_WriteValue& item) { return item.AttributeId == OpcUa_Attributes_Value; });
    return std::max(isValues ? Role::Operate : Role::Commission,
                    purposeNeed(purpose).value_or(Role::Operate));
}

Role needOfCall(const OpcUa_CallRequest& request, const UaString& purpose)
{
    const Role ofOthers = purposeNeed(purpose).value_or(Role::Operate);
    Role need = request.NoOfMethodsToCall > 0 ? Role::Look : Role::Operate;
    for (const OpcUa_CallMethodRequest& method : itemsOf(request.NoOfMethodsToCall, request.MethodsToCall))
        need = std::max(need, qlumMethodNeed(method).value_or(ofOthers));
    return need;
}

Role needOfSubscriptions(const UaClientSdk::ServiceCall& call, const QlumOwnSubscriptions& own)
{
    const auto isOwn = [&own](OpcUa_UInt32 id) { return own.contains(id); };
    bool allOwn = false;
    if (call.type.TypeId == OpcUaId_SetTriggeringRequest) {
        allOwn = isOwn(static_cast<const OpcUa_SetTriggeringRequest*>(call.request)->SubscriptionId);
    } else if (call.type.TypeId == OpcUaId_TransferSubscriptionsRequest) {
        const auto& request = *static_cast<const OpcUa_TransferSubscriptionsRequest*>(call.request);
        allOwn = std::ranges::all_of(itemsOf(request.NoOfSubscriptionIds, request.SubscriptionIds), isOwn);
    }
    return allOwn ? Role::Look : Role::Commission;
}
} // namespace

QString qlumPurpose(const char* kind, const QString& words)
{
    return QLatin1String(kind) + QLatin1String(": ") + words;
}

QString qlumPurposeWords(const QString& purpose)
{
    for (const PurposeRow& row : purposes) {
        const QString start = QLatin1String(row.kind.data()) + QLatin1String(": ");
        if (purpose.startsWith(start))
            return purpose.mid(start.size());
    }
    return purpose;
}

void QlumOwnSubscriptions::add(OpcUa_UInt32 id)
{
    const std::lock_guard lock(m_mutex);
    m_ids.insert(id);
}

bool QlumOwnSubscriptions::contains(OpcUa_UInt32 id) const
{
    const std::lock_guard lock(m_mutex);
    return m_ids.contains(id);
}

std::optional<QlumServiceRule> qlumServiceRule(const OpcUa_EncodeableType& requestType)
{
    const auto found = std::ranges::lower_bound(services, requestType.TypeId, {}, &ServiceRow::requestType);
    const bool isThere = found != std::end(services) && found->requestType == requestType.TypeId;
    return isThere ? std::optional(found->rule) : std::nullopt;
}

std::optional<QlumServerRole> qlumMethodNeed(const OpcUa_CallMethodRequest& method)
{
    const OpcUa_NodeId& id = method.MethodId;
    if (id.NamespaceIndex != 0 || id.IdentifierType != OpcUa_IdentifierType_Numeric)
        return std::nullopt;
    const auto found = std::ranges::lower_bound(methods, id.Identifier.Numeric, {}, &MethodRow::method);
    if (found == methods.end() || found->method != id.Identifier.Numeric)
        return std::nullopt;
    const bool isHarmless =
        found->rule == MethodRule::Look || (found->rule == MethodRule::Open && isOpenForReading(method));
    return isHarmless ? Role::Look : Role::Commission;
}

QlumServerRole qlumNeedOf(const UaClientSdk::ServiceCall& call, const QlumOwnSubscriptions& own)
{
    switch (qlumServiceRule(call.type).value_or(Rule::Commission)) {
    case Rule::Look:
        return Role::Look;
    case Rule::Commission:
        break;
    case Rule::ByAttribute:
        return needOfWrite(*static_cast<const OpcUa_WriteRequest*>(call.request), call.purpose);
    case Rule::ByMethod:
        return needOfCall(*static_cast<const OpcUa_CallRequest*>(call.request), call.purpose);
    case Rule::BySubscription:
        return needOfSubscriptions(call, own);
    }
    return Role::Commission;
}
