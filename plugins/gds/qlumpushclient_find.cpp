// What a server tells of its configuration object: browsed by names, then read in one go.
#include <plugins/gds/qlumpushclient.h>

#include <app/api/qlumserviceneed.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_statuscodes.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/browsecontext.h>
#include <uaclientsdk/uasession.h>

#include <algorithm>
#include <optional>
#include <ranges>
#include <utility>

namespace {
constexpr int mostPages = 20;

QStringList textsOf(const UaVariant& value)
{
    QStringList texts;
    UaStringArray strings;
    if (value.toStringArray(strings))
        for (const OpcUa_String& text : strings)
            texts.append(toQString(UaString(text)));
    return texts;
}

std::vector<UaNodeId> nodeIdsOf(const UaVariant& value)
{
    std::vector<UaNodeId> ids;
    for (OpcUa_UInt32 i = 0; value.type() == OpcUaType_NodeId && i < value.elementCount(); ++i)
        ids.push_back(value.at(i).toNodeId());
    return ids;
}

template <typename Value>
std::optional<Value> readAs(const UaVariant& variant, Value (UaVariant::*convert)(bool*) const noexcept)
{
    bool isThere = false;
    const Value value = (variant.*convert)(&isThere);
    return isThere && !variant.isNull() ? std::optional<Value>(value) : std::nullopt;
}

OpcUa_UInt32 smallest(std::initializer_list<OpcUa_UInt32> limits)
{
    OpcUa_UInt32 least = 0;
    for (const OpcUa_UInt32 limit : limits)
        if (limit > 0 && (least == 0 || limit < least))
            least = limit;
    return least;
}
} // namespace

// By the names of namespace 0; what a server adds of its own may have the same name elsewhere.
UaStatus QlumPushClient::children(const UaNodeId& node, Children& found)
{
    UaClientSdk::BrowseContext context;
    context.referenceTypeId = UaNodeId(OpcUaId_HierarchicalReferences);
    QlumSessionServices::Settings how = settings(QlumPurpose::refreshing, QString());
    UaByteString point;
    UaReferenceDescriptions references;
    UaStatus status = m_services.browse(how, node, context, point, references);
    for (int page = 1; status.isGood() && point.length() > 0; ++page) {
        const bool isEnough = page >= mostPages || isCancelled();
        UaReferenceDescriptions more;
        status = m_services.browseNext(how, isEnough, point, more);
        if (isEnough || status.isBad() || !references.appendMoved(std::move(more)))
            break;
    }
    for (const OpcUa_ReferenceDescription& reference : references) {
        const UaQualifiedName name(reference.BrowseName);
        const bool isHere = reference.NodeId.ServerIndex == 0;
        if (isHere)
            found.emplace(toQString(name.name()),
                          Child{UaNodeId(reference.NodeId.NodeId), reference.NodeClass});
    }
    return status;
}

std::vector<UaVariant> QlumPushClient::readValues(const std::vector<UaNodeId>& ids, OpcUa_UInt32 attribute)
{
    std::vector<UaVariant> values(ids.size());
    const auto count = std::ranges::count_if(ids, [](const UaNodeId& id) { return !id.isNull(); });
    UaReadValueIds nodes(static_cast<OpcUa_UInt32>(count));
    OpcUa_UInt32 next = 0;
    for (const UaNodeId& id : ids)
        if (!id.isNull()) {
            nodes[next].AttributeId = attribute;
            if (OpcUa_IsBad(id.copyTo(&nodes[next++].NodeId)))
                return values;
        }
    if (nodes.isEmpty())
        return values;
    QlumSessionServices::Settings how = settings(QlumPurpose::refreshing, QString());
    UaDataValues answers;
    if (m_services.read(how, 0, OpcUa_TimestampsToReturn_Neither, nodes, answers).isBad())
        return values;
    next = 0;
    for (std::size_t i = 0; i < ids.size(); ++i)
        if (!ids[i].isNull()) {
            const UaDataValue answer(answers[next++]);
            if (!answer.statusCode().isBad())
                values[i] = answer.value();
        }
    return values;
}

QlumPushServer QlumPushClient::find()
{
    QlumPushServer server;
    if (const auto session = m_services.session())
        server.mode = session->messageSecurityMode();
    Children below;
    server.status = children(UaNodeId(OpcUaId_Server), below);
    const auto object = below.find(QStringLiteral("ServerConfiguration"));
    if (server.status.isBad() || object == below.end())
        return server;
    server.object = object->second.id;
    Children own;
    server.status = children(server.object, own);
    if (server.status.isBad())
        return server;
    for (const auto& [name, child] : own)
        if (child.nodeClass == OpcUa_NodeClass_Method)
            server.methods.insert(name, child.id);
    for (const char* needed :
         {"UpdateCertificate", "ApplyChanges", "CreateSigningRequest", "GetRejectedList"})
        if (!server.has(needed))
            server.missing.append(QLatin1String(needed));
    const auto groups = own.find(QStringLiteral("CertificateGroups"));
    Children found;
    if (groups == own.end())
        server.missing.append(QStringLiteral("CertificateGroups"));
    else
        server.status = children(groups->second.id, found);
    for (const auto& [name, child] : found)
        if (child.nodeClass == OpcUa_NodeClass_Object && !isCancelled())
            server.groups.push_back(findGroup(child.id, name, server.missing));
    if (groups != own.end() && server.groups.empty() && server.status.isGood())
        server.missing.append(QStringLiteral("CertificateGroups/DefaultApplicationGroup"));
    readFacts(server, own);
    readGroupFacts(server);
    return server;
}

QlumPushGroup QlumPushClient::findGroup(const UaNodeId& id, const QString& name, QStringList& missing)
{
    QlumPushGroup group;
    group.id = id;
    group.name = name;
    const auto note = [&](const char* what) {
        missing.append(name + QLatin1Char('/') + QLatin1String(what));
    };
    Children own;
    static_cast<void>(children(id, own)); // what is not there is missing below
    if (const auto list = own.find(QStringLiteral("TrustList")); list != own.end())
        group.trustList = list->second.id;
    else
        note("TrustList");
    if (const auto types = own.find(QStringLiteral("CertificateTypes")); types != own.end())
        group.typesId = types->second.id;
    else
        note("CertificateTypes");
    if (group.trustList.isNull())
        return group;
    Children ofList;
    static_cast<void>(children(group.trustList, ofList));
    for (const auto& [child, found] : ofList)
        if (found.nodeClass == OpcUa_NodeClass_Method)
            group.methods.insert(child, found.id);
        else
            group.variables.insert(child, found.id);
    group.lastUpdateId = group.variables.value(QStringLiteral("LastUpdateTime"));
    for (const char* needed : {"OpenWithMasks", "Read", "Close"})
        if (!group.has(needed))
            note(needed);
    return group;
}

void QlumPushClient::readFacts(QlumPushServer& server, const Children& properties)
{
    const char* const names[] = {"ServerCapabilities", "SupportedPrivateKeyFormats", "MaxTrustListSize",
                                 "MulticastDnsEnabled", "HasSecureElement"};
    std::vector<UaNodeId> ids;
    for (const char* const name : names) {
        const auto found = properties.find(QLatin1String(name));
        ids.push_back(found == properties.end() ? UaNodeId() : found->second.id);
        // the last one is not of every server
        if (found == properties.end() && name != names[4])
            server.missing.append(QLatin1String(name));
    }
    const std::vector<UaVariant> values = readValues(ids, OpcUa_Attributes_Value);
    server.capabilities = textsOf(values[0]);
    server.keyFormats = textsOf(values[1]);
    server.mostListBytes = readAs(values[2], &UaVariant::toUInt32);
    server.multicastDns = readAs(values[3], &UaVariant::toBool);
    server.hasSecureElement = readAs(values[4], &UaVariant::toBool);
}

void QlumPushClient::readGroupFacts(QlumPushServer& server)
{
    std::vector<UaNodeId> ids{UaNodeId(OpcUaId_Server_ServerCapabilities_MaxByteStringLength)};
    for (const QlumPushGroup& group : server.groups)
        ids.insert(ids.end(),
                   {group.lastUpdateId, group.typesId, group.variables.value(QStringLiteral("UserWritable")),
                    group.variables.value(QStringLiteral("MaxByteStringLength"))});
    const std::vector<UaVariant> values = readValues(ids, OpcUa_Attributes_Value);
    const OpcUa_UInt32 ofServer = readAs(values[0], &UaVariant::toUInt32).value_or(0);
    const auto session = m_services.session();
    const OpcUa_UInt32 own = session ? session->maxByteStringLength() : 0;
    auto value = values.begin() + 1;
    std::vector<UaNodeId> types;
    for (QlumPushGroup& group : server.groups) {
        group.lastUpdate = readAs(*value++, &UaVariant::toDateTime).value_or(UaDateTime());
        for (const UaNodeId& type : nodeIdsOf(*value++)) {
            group.types.push_back({type, QString()});
            types.push_back(type);
        }
        group.isWritable = readAs(*value++, &UaVariant::toBool).value_or(true);
        group.mostBytes = smallest({readAs(*value++, &UaVariant::toUInt32).value_or(0), ofServer, own});
    }
    const std::vector<UaVariant> names = readValues(types, OpcUa_Attributes_DisplayName);
    auto name = names.begin();
    for (QlumPushGroup& group : server.groups)
        for (QlumPushType& type : group.types) {
            type.name = toQString(name->toLocalizedText().text());
            if (type.name.isEmpty())
                type.name = toQString(type.id.toXmlString());
            ++name;
        }
}
