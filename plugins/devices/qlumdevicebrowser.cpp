#include <plugins/devices/qlumdevicebrowser.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_statuscodes.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>

#include <algorithm>
#include <cstddef>
#include <ranges>
#include <set>
#include <string_view>
#include <utility>

namespace {
constexpr std::size_t deviceNodesPerCall = 500;
constexpr int mostBrowsePages = 50;
constexpr std::size_t mostChildren = 20'000; // of one node
constexpr int mostTypeSteps = 30;
constexpr OpcUa_UInt32 hasNotifier = 48;
constexpr OpcUa_UInt32 hasEventSource = 36;

void takeReferences(const OpcUa_BrowseResult& result, QlumDeviceChildren& found)
{
    for (OpcUa_Int32 i = 0; i < result.NoOfReferences && found.size() < mostChildren; ++i) {
        const OpcUa_ReferenceDescription& reference = result.References[i];
        const UaNodeId kind(reference.ReferenceTypeId);
        // who notifies whom is not what consists of what
        if (reference.NodeId.ServerIndex != 0 || kind == UaNodeId(hasNotifier) ||
            kind == UaNodeId(hasEventSource))
            continue;
        const UaQualifiedName name(reference.BrowseName);
        QlumDeviceChild child{UaNodeId(reference.NodeId.NodeId),
                              UaNodeId(reference.TypeDefinition.NodeId),
                              kind,
                              reference.NodeClass,
                              name.namespaceIndex(),
                              toQString(name.name()),
                              {}};
        child.name = qlumSingleLine(qlumCutText(toQString(UaLocalizedText(reference.DisplayName).text())));
        if (child.name.isEmpty())
            child.name = qlumSingleLine(qlumCutText(child.browseName));
        found.push_back(std::move(child));
    }
}
} // namespace

QlumDeviceBrowser::QlumDeviceBrowser(QlumSessionServices& services, QlumSessionServices::Settings settings,
                                     Cancelled isCancelled)
    : m_services(services), m_settings(std::move(settings)), m_isCancelled(std::move(isCancelled))
{
}

void QlumDeviceBrowser::note(const UaStatus& status)
{
    if (status.isBad())
        m_worst = status;
}

// ---- browsing

UaStatus QlumDeviceBrowser::browse(std::span<const UaNodeId> nodes, OpcUa_BrowseDirection direction,
                                   const UaNodeId& referenceType, std::vector<QlumDeviceChildren>& found)
{
    UaBrowseDescriptions asked(static_cast<OpcUa_UInt32>(nodes.size()));
    for (OpcUa_UInt32 i = 0; i < asked.length(); ++i) {
        static_cast<void>(nodes[i].copyTo(&asked[i].NodeId));
        static_cast<void>(referenceType.copyTo(&asked[i].ReferenceTypeId));
        asked[i].BrowseDirection = direction;
        asked[i].IncludeSubtypes = OpcUa_True;
        asked[i].ResultMask = OpcUa_BrowseResultMask_All;
    }
    UaBrowseResults results;
    UaStatus status = m_services.browseList(m_settings, UaNodeId(), 0, asked, results);
    std::vector<std::size_t> places(results.length());
    for (std::size_t i = 0; i < places.size(); ++i)
        places[i] = i;
    for (int page = 1; status.isNotBad() && results.length() == places.size(); ++page) {
        UaByteStringArray points;
        std::vector<std::size_t> next;
        for (OpcUa_UInt32 i = 0; i < results.length(); ++i) {
            takeReferences(results[i], found[places[i]]);
            if (results[i].ContinuationPoint.Length > 0 && points.append(results[i].ContinuationPoint))
                next.push_back(places[i]);
        }
        if (next.empty())
            break;
        const bool isEnough = page >= mostBrowsePages || isCancelled();
        places = std::move(next);
        UaBrowseResults more;
        status = m_services.browseListNext(m_settings, isEnough, points, more);
        if (isEnough)
            break;
        results = std::move(more);
    }
    note(status);
    return status;
}

UaStatus QlumDeviceBrowser::children(std::span<const UaNodeId> nodes, std::vector<QlumDeviceChildren>& found)
{
    found.assign(nodes.size(), {});
    UaStatus status;
    for (std::size_t first = 0; first < nodes.size() && status.isNotBad(); first += deviceNodesPerCall) {
        if (isCancelled())
            return UaStatus(OpcUa_BadRequestCancelledByClient);
        const std::size_t count = std::min(deviceNodesPerCall, nodes.size() - first);
        std::vector<QlumDeviceChildren> portion(count);
        status = browse(nodes.subspan(first, count), OpcUa_BrowseDirection_Forward,
                        UaNodeId(OpcUaId_HierarchicalReferences), portion);
        std::move(portion.begin(), portion.end(), found.begin() + static_cast<std::ptrdiff_t>(first));
    }
    return status;
}

QlumDeviceChildren QlumDeviceBrowser::children(const UaNodeId& node)
{
    std::vector<QlumDeviceChildren> found;
    if (node.isNull() || children(std::span(&node, 1), found).isBad())
        return {};
    return std::move(found.front());
}

QlumDeviceChildren QlumDeviceBrowser::neighbours(const UaNodeId& node)
{
    std::vector<QlumDeviceChildren> found(1);
    const UaStatus status =
        browse(std::span(&node, 1), OpcUa_BrowseDirection_Forward, UaNodeId(OpcUaId_References), found);
    return status.isBad() ? QlumDeviceChildren() : std::move(found.front());
}

UaNodeId QlumDeviceBrowser::find(const UaNodeId& start, OpcUa_UInt16 namespaceIndex, const char* name)
{
    UaBrowsePaths paths(1);
    UaRelativePathElements elements(1);
    static_cast<void>(start.copyTo(&paths[0].StartingNode));
    static_cast<void>(UaNodeId(OpcUaId_HierarchicalReferences).copyTo(&elements[0].ReferenceTypeId));
    elements[0].IncludeSubtypes = OpcUa_True;
    static_cast<void>(UaQualifiedName(UaString(name), namespaceIndex).copyTo(&elements[0].TargetName));
    elements.detach(&paths[0].RelativePath.NoOfElements, &paths[0].RelativePath.Elements);
    UaBrowsePathResults results;
    const UaStatus status = m_services.translateBrowsePathsToNodeIds(m_settings, paths, results);
    note(status);
    if (status.isBad() || results.length() != 1 || OpcUa_IsBad(results[0].StatusCode) ||
        results[0].NoOfTargets < 1)
        return {};
    return UaNodeId(results[0].Targets[0].TargetId.NodeId);
}

// ---- reading

std::vector<UaDataValue> QlumDeviceBrowser::read(std::span<const UaNodeId> nodes, OpcUa_UInt32 attribute)
{
    std::vector<UaDataValue> values(nodes.size());
    std::vector<std::size_t> places;
    for (std::size_t i = 0; i < nodes.size(); ++i)
        if (!nodes[i].isNull())
            places.push_back(i);
    for (std::size_t first = 0; first < places.size() && !isCancelled(); first += deviceNodesPerCall) {
        const std::size_t count = std::min(deviceNodesPerCall, places.size() - first);
        UaReadValueIds asked(static_cast<OpcUa_UInt32>(count));
        for (std::size_t i = 0; i < count; ++i) {
            static_cast<void>(nodes[places[first + i]].copyTo(&asked[static_cast<OpcUa_UInt32>(i)].NodeId));
            asked[static_cast<OpcUa_UInt32>(i)].AttributeId = attribute;
        }
        UaDataValues answers;
        const UaStatus status =
            m_services.read(m_settings, 0, OpcUa_TimestampsToReturn_Source, asked, answers);
        note(status);
        for (std::size_t i = 0; i < count; ++i) {
            UaDataValue& value = values[places[first + i]];
            if (status.isNotBad() && i < answers.length())
                value = UaDataValue(answers[static_cast<OpcUa_UInt32>(i)]);
            else
                value.setStatusCode(status.isBad() ? status.code() : OpcUa_BadUnknownResponse);
        }
    }
    return values;
}

// ---- types

void QlumDeviceBrowser::learnTypes(std::span<const UaNodeId> types)
{
    std::set<UaNodeId> fresh;
    for (const UaNodeId& type : types)
        if (!type.isNull() && !m_types.contains(type))
            fresh.insert(type);
    std::vector<UaNodeId> level(fresh.begin(), fresh.end());
    const std::vector<UaDataValue> browseNames = read(level, OpcUa_Attributes_BrowseName);
    const std::vector<UaDataValue> names = read(level, OpcUa_Attributes_DisplayName);
    for (std::size_t i = 0; i < level.size(); ++i) {
        const UaQualifiedName browseName = browseNames[i].value().toQualifiedName();
        m_types[level[i]] = {
            {},
            browseName.namespaceIndex(),
            toQString(browseName.name()),
            qlumSingleLine(qlumCutText(toQString(names[i].value().toLocalizedText().text())))};
    }
    for (int step = 0; step < mostTypeSteps && !level.empty() && !isCancelled(); ++step) {
        std::vector<QlumDeviceChildren> above(level.size());
        if (browse(level, OpcUa_BrowseDirection_Inverse, UaNodeId(OpcUaId_HasSubtype), above).isBad())
            return;
        std::vector<UaNodeId> next;
        for (std::size_t i = 0; i < level.size(); ++i) {
            if (above[i].empty())
                continue;
            const QlumDeviceChild& parent = above[i].front();
            m_types[level[i]].above = parent.id;
            if (m_types
                    .try_emplace(parent.id, Type{{}, parent.namespaceIndex, parent.browseName, parent.name})
                    .second)
                next.push_back(parent.id);
        }
        level = std::move(next);
    }
}

QString QlumDeviceBrowser::baseOf(const UaNodeId& type, OpcUa_UInt16 namespaceIndex,
                                  std::span<const char* const> names) const
{
    UaNodeId at = type;
    for (int step = 0; step < mostTypeSteps; ++step) {
        const auto found = m_types.find(at);
        if (found == m_types.end())
            return {};
        const bool isNamed = found->second.namespaceIndex == namespaceIndex &&
                             std::ranges::any_of(names, [&](const char* name) {
                                 return found->second.browseName == QLatin1String(name);
                             });
        if (isNamed)
            return found->second.browseName;
        at = found->second.above;
    }
    return {};
}

QString QlumDeviceBrowser::typeName(const UaNodeId& type) const
{
    const auto found = m_types.find(type);
    return found == m_types.end() ? QString() : found->second.name;
}
