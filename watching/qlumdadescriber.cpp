#include <watching/qlumdadescriber.h>

#include <app/api/qlumnodeaddress.h>
#include <app/api/qlumservertypes.h>
#include <app/api/qlumsettings.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_identifiers.h>
#include <uabase/structures/uagenericstructurevalue.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uaexpandednodeid.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/servicesettings.h>
#include <uawidgets/editors/qlumcontextreader.h>
#include <uawidgets/editors/qlumvaluefacts.h>
#include <uawidgets/editors/qlumvaluetype.h>

#include <algorithm>
#include <array>
#include <utility>

namespace {

constexpr int maximumDepth = 100;
constexpr OpcUa_Byte writable = 0x2; // of an access level

constexpr std::array<OpcUa_UInt32, 5> askedAttributes{
    OpcUa_Attributes_NodeClass, OpcUa_Attributes_DisplayName, OpcUa_Attributes_BrowseName,
    OpcUa_Attributes_DataType, OpcUa_Attributes_UserAccessLevel};

QString stepOf(const UaQualifiedName& name)
{
    return qlumPathStep(name.namespaceIndex(), toQString(name.name()));
}

void takeAttribute(OpcUa_UInt32 attribute, const UaVariant& value, QlumDaDescription& row,
                   QString& browseName)
{
    switch (attribute) {
    case OpcUa_Attributes_NodeClass:
        row.nodeClass = static_cast<OpcUa_NodeClass>(value.toInt32());
        break;
    case OpcUa_Attributes_DisplayName:
        row.displayName = toQString(value.toLocalizedText().text());
        break;
    case OpcUa_Attributes_BrowseName:
        browseName = stepOf(value.toQualifiedName());
        break;
    case OpcUa_Attributes_DataType:
        row.dataType = value.toNodeId();
        break;
    default:
        row.isWritable = value.type() != OpcUaType_Byte || (value.toByte() & writable) != 0;
        break;
    }
}

UaBrowseDescriptions parentsOf(const std::vector<UaNodeId>& nodes)
{
    UaBrowseDescriptions descriptions(static_cast<OpcUa_UInt32>(nodes.size()));
    for (OpcUa_UInt32 i = 0; i < descriptions.length(); ++i) {
        OpcUa_BrowseDescription& one = descriptions[i];
        static_cast<void>(nodes[i].copyTo(&one.NodeId)); // else null, which is refused
        static_cast<void>(UaNodeId(OpcUaId_HierarchicalReferences).copyTo(&one.ReferenceTypeId));
        one.BrowseDirection = OpcUa_BrowseDirection_Inverse;
        one.IncludeSubtypes = OpcUa_True;
        one.ResultMask = OpcUa_BrowseResultMask_BrowseName;
    }
    return descriptions;
}

// Gives back what the server keeps for answers that nobody wants to go on with.
void releasePoints(QlumSessionServices& services, QlumJob& job, const UaBrowseResults& results)
{
    UaByteStringArray points;
    for (const OpcUa_BrowseResult& one : results)
        if (one.ContinuationPoint.Length > 0)
            static_cast<void>(points.append(one.ContinuationPoint));
    if (points.isEmpty())
        return;
    UaClientSdk::ServiceSettings settings = job.serviceSettings();
    UaBrowseResults none;
    static_cast<void>(services.browseListNext(settings, true, points, none));
}

UaBrowsePaths pathsToUnits(std::span<const UaNodeId> nodes)
{
    UaBrowsePaths paths(static_cast<OpcUa_UInt32>(nodes.size()));
    for (OpcUa_UInt32 i = 0; i < paths.length(); ++i) {
        UaRelativePathElements elements(1);
        static_cast<void>(nodes[i].copyTo(&paths[i].StartingNode));
        static_cast<void>(UaNodeId(OpcUaId_HasProperty).copyTo(&elements[0].ReferenceTypeId));
        static_cast<void>(UaQualifiedName(UaString("EngineeringUnits"), 0).copyTo(&elements[0].TargetName));
        elements.detach(&paths[i].RelativePath.NoOfElements, &paths[i].RelativePath.Elements);
    }
    return paths;
}

QString unitOf(const UaVariant& value)
{
    const UaGenericStructureValue fields = qlumStandardFields(value, "EUInformation");
    return fields.isNull() ? QString()
                           : toQString(fields.value(UaString("DisplayName")).toLocalizedText().text());
}

bool mayHaveUnit(const UaNodeId& dataType)
{
    return !(dataType.namespaceIndex() == 0 && dataType.isNumeric() &&
             (dataType.identifierNumeric() == OpcUaType_Boolean ||
              (dataType.identifierNumeric() > OpcUaType_Double &&
               dataType.identifierNumeric() < OpcUaType_Variant)));
}

} // namespace

QlumDaDescriber::QlumDaDescriber(std::shared_ptr<QlumSessionServices> services, QlumJob& job, bool readsUnits)
    : m_services(std::move(services)), m_job(job), m_readsUnits(readsUnits)
{
    const UaNodeId root(OpcUaId_RootFolder); // what is at the top of every server need not be asked
    m_steps[UaNodeId(OpcUaId_ObjectsFolder)] = {root, QStringLiteral("Objects")};
    m_steps[UaNodeId(OpcUaId_TypesFolder)] = {root, QStringLiteral("Types")};
    m_steps[UaNodeId(OpcUaId_ViewsFolder)] = {root, QStringLiteral("Views")};
}

UaStatus QlumDaDescriber::describe(const std::vector<QlumDaQuestion>& questions,
                                   const std::function<void(Portion)>& told)
{
    for (std::size_t first = 0; first < questions.size() && !m_job.isCancelled(); first += portion) {
        const std::span part =
            std::span(questions).subspan(first, std::min(portion, questions.size() - first));
        Portion result;
        if (const UaStatus status = readAttributes(part, result); status.isBad())
            return status;
        nameTypes(result);
        if (!m_job.isCancelled())
            findPaths(part, result);
        if (m_readsUnits && !m_job.isCancelled())
            readUnits(part, result);
        told(std::move(result));
        m_job.setProgress(static_cast<qint64>(first + part.size()), static_cast<qint64>(questions.size()));
    }
    return {};
}

UaStatus QlumDaDescriber::readAttributes(std::span<const QlumDaQuestion> questions, Portion& result)
{
    UaReadValueIds nodes(static_cast<OpcUa_UInt32>(questions.size() * askedAttributes.size()));
    for (std::size_t i = 0; i < nodes.length(); ++i) {
        OpcUa_ReadValueId& node = nodes[static_cast<OpcUa_UInt32>(i)];
        static_cast<void>(questions[i / askedAttributes.size()].nodeId.copyTo(&node.NodeId));
        node.AttributeId = askedAttributes[i % askedAttributes.size()];
    }
    UaClientSdk::ServiceSettings settings = m_job.serviceSettings();
    UaDataValues values;
    const UaStatus status = m_services->read(settings, 0, OpcUa_TimestampsToReturn_Neither, nodes, values);
    if (status.isBad() || values.length() != nodes.length())
        return status.isBad() ? status : UaStatus(OpcUa_BadUnknownResponse);
    result.rows.resize(questions.size());
    for (std::size_t i = 0; i < values.length(); ++i) {
        const QlumDaQuestion& question = questions[i / askedAttributes.size()];
        const OpcUa_DataValue& value = values[static_cast<OpcUa_UInt32>(i)];
        QlumDaDescription& row = result.rows[i / askedAttributes.size()];
        row.key = question.key;
        if (!OpcUa_IsBad(value.StatusCode))
            takeAttribute(askedAttributes[i % askedAttributes.size()], UaVariant(value.Value), row,
                          m_steps[question.nodeId].name);
    }
    return status;
}

// What the types are for texts, too: names of enumerations, fields of structures.
void QlumDaDescriber::nameTypes(Portion& result)
{
    QlumServerTypes* const types = m_services->types();
    for (QlumDaDescription& row : result.rows) {
        if (row.dataType.isNull() || m_job.isCancelled())
            continue;
        const auto [name, isNew] = m_typeNames.try_emplace(row.dataType);
        if (isNew) {
            QlumValueFacts facts;
            facts.dataType = row.dataType;
            QlumContextReader reader(m_services, m_job.serviceSettings()); // each with definitions of its own
            const auto context = std::make_shared<const QlumValueContext>(reader.of(facts));
            name->second = types != nullptr ? types->typeName(row.dataType) : QString();
            if (name->second.isEmpty())
                name->second = qlumTypeNameOf(row.dataType, *context);
            result.types.emplace_back(row.dataType, context);
        }
        row.dataTypeName = name->second;
    }
}

// ---- paths

void QlumDaDescriber::findPaths(std::span<const QlumDaQuestion> questions, Portion& result)
{
    std::vector<UaNodeId> level;
    for (const QlumDaQuestion& question : questions)
        level.push_back(question.nodeId);
    std::set<UaNodeId> asked;
    for (int depth = 0; depth < maximumDepth && !level.empty() && !m_job.isCancelled(); ++depth) {
        std::erase_if(level, [&](const UaNodeId& node) {
            return node == UaNodeId(OpcUaId_RootFolder) || !m_steps[node].parent.isNull() ||
                   !asked.insert(node).second;
        });
        if (level.empty())
            break;
        browseParents(level);
        for (UaNodeId& node : level)
            node = m_steps[node].parent;
        std::erase_if(level, [](const UaNodeId& node) { return node.isNull(); });
    }
    for (std::size_t i = 0; i < questions.size(); ++i)
        result.rows[i].browsePath = pathOf(questions[i].nodeId);
}

void QlumDaDescriber::browseParents(const std::vector<UaNodeId>& nodes)
{
    UaClientSdk::ServiceSettings settings = m_job.serviceSettings();
    UaBrowseResults results;
    if (m_services->browseList(settings, UaNodeId(), 1, parentsOf(nodes), results).isBad())
        return;
    for (OpcUa_UInt32 i = 0; i < results.length() && i < nodes.size(); ++i) {
        if (results[i].NoOfReferences < 1)
            continue;
        const OpcUa_ReferenceDescription& reference = results[i].References[0];
        const UaNodeId parent = UaExpandedNodeId(reference.NodeId).nodeId();
        m_steps[nodes[i]].parent = parent;
        if (QString& name = m_steps[parent].name; name.isEmpty())
            name = stepOf(UaQualifiedName(reference.BrowseName));
    }
    releasePoints(*m_services, m_job, results);
}

QString QlumDaDescriber::pathOf(UaNodeId node) const
{
    QString path;
    for (int depth = 0; depth < maximumDepth; ++depth) {
        const auto step = m_steps.find(node);
        if (step == m_steps.end() || node == UaNodeId(OpcUaId_RootFolder))
            break;
        if (step->second.parent.isNull() && depth > 0) // the way up ends somewhere else
            return QString();
        path = QLatin1Char('/') + step->second.name + path;
        if (step->second.parent.isNull())
            return QString();
        node = step->second.parent;
    }
    return node == UaNodeId(OpcUaId_RootFolder) ? path : QString();
}

// ---- units

void QlumDaDescriber::readUnits(std::span<const QlumDaQuestion> questions, Portion& result)
{
    std::vector<UaNodeId> nodes;
    std::vector<std::size_t> places;
    for (std::size_t i = 0; i < questions.size(); ++i)
        if (result.rows[i].nodeClass == OpcUa_NodeClass_Variable && mayHaveUnit(result.rows[i].dataType)) {
            nodes.push_back(questions[i].nodeId);
            places.push_back(i);
        }
    UaClientSdk::ServiceSettings settings = m_job.serviceSettings();
    UaBrowsePathResults found;
    if (nodes.empty() ||
        m_services->translateBrowsePathsToNodeIds(settings, pathsToUnits(nodes), found).isBad())
        return;
    UaReadValueIds properties;
    std::vector<std::size_t> rows;
    for (OpcUa_UInt32 i = 0; i < found.length() && i < places.size(); ++i) {
        if (!OpcUa_IsGood(found[i].StatusCode) || found[i].NoOfTargets < 1)
            continue;
        OpcUa_ReadValueId property;
        OpcUa_ReadValueId_Initialize(&property);
        property.NodeId = found[i].Targets[0].TargetId.NodeId; // borrowed: append copies
        property.AttributeId = OpcUa_Attributes_Value;
        if (properties.append(property))
            rows.push_back(places[i]);
    }
    UaDataValues values;
    if (properties.isEmpty() ||
        m_services->read(settings, 0, OpcUa_TimestampsToReturn_Neither, properties, values).isBad())
        return;
    for (OpcUa_UInt32 i = 0; i < values.length() && i < rows.size(); ++i)
        result.rows[rows[i]].unit = unitOf(UaVariant(values[i].Value));
}

// ---- branches

QlumDaBranch::QlumDaBranch(QlumSessionServices& services, QlumJob& job, std::size_t limit)
    : m_services(services), m_job(job), m_limit(limit)
{
}

QlumDaBranch::Result QlumDaBranch::find(const std::vector<UaNodeId>& roots)
{
    constexpr std::size_t nodesInACall = 100, nodesOfAVariable = 10;
    std::vector<UaNodeId> level = roots;
    for (const UaNodeId& root : roots)
        m_seen.insert(root);
    while (!level.empty() && !m_job.isCancelled() && !m_result.isCut && !m_result.status.isBad()) {
        std::vector<UaNodeId> below;
        for (std::size_t first = 0; first < level.size() && !m_job.isCancelled() && !m_result.isCut;
             first += nodesInACall) {
            const std::span part =
                std::span(level).subspan(first, std::min(nodesInACall, level.size() - first));
            if (m_result.status = browse(part, below); m_result.status.isBad())
                break;
            m_result.isCut = m_result.isCut || m_seen.size() > m_limit * nodesOfAVariable;
            m_job.setProgress(static_cast<qint64>(m_result.variables.size()), 0);
        }
        level = std::move(below);
    }
    return std::move(m_result);
}

UaStatus QlumDaBranch::browse(std::span<const UaNodeId> nodes, std::vector<UaNodeId>& below)
{
    UaBrowseDescriptions descriptions = parentsOf({nodes.begin(), nodes.end()});
    for (OpcUa_BrowseDescription& one : descriptions) {
        one.BrowseDirection = OpcUa_BrowseDirection_Forward;
        one.NodeClassMask = OpcUa_NodeClass_Object | OpcUa_NodeClass_Variable;
        one.ResultMask = OpcUa_BrowseResultMask_NodeClass | OpcUa_BrowseResultMask_DisplayName |
                         OpcUa_BrowseResultMask_ReferenceTypeId;
    }
    UaClientSdk::ServiceSettings settings = m_job.serviceSettings();
    UaBrowseResults results;
    UaStatus status = m_services.browseList(settings, UaNodeId(), QlumSettings::maxReferences.value(),
                                            descriptions, results);
    const int limit = QlumSettings::maxBrowseNextCalls.value();
    for (int calls = 0; !status.isBad(); ++calls) {
        UaByteStringArray points;
        for (OpcUa_BrowseResult& one : results) {
            UaReferenceDescriptions references;
            references.attachFrom(&one.NoOfReferences, &one.References);
            take(references, below);
            if (one.ContinuationPoint.Length > 0)
                static_cast<void>(points.append(one.ContinuationPoint));
        }
        if (points.isEmpty())
            break;
        const bool isOver = m_job.isCancelled() || m_result.isCut || (limit >= 0 && calls >= limit);
        m_result.isCut = m_result.isCut || isOver;
        UaBrowseResults next;
        status = m_services.browseListNext(settings, isOver, points, next);
        if (isOver)
            break;
        results = std::move(next);
    }
    return status;
}

void QlumDaBranch::take(UaReferenceDescriptions& references, std::vector<UaNodeId>& below)
{
    for (const OpcUa_ReferenceDescription& reference : references) {
        const UaExpandedNodeId id(reference.NodeId);
        if (!id.isLocal() || UaNodeId(reference.ReferenceTypeId) == UaNodeId(OpcUaId_HasProperty) ||
            !m_seen.insert(id.nodeId()).second)
            continue;
        below.push_back(id.nodeId());
        if (reference.NodeClass != OpcUa_NodeClass_Variable)
            continue;
        if (m_result.variables.size() >= m_limit) {
            m_result.isCut = true;
            return;
        }
        m_result.variables.push_back({id.nodeId(), toQString(UaLocalizedText(reference.DisplayName).text())});
    }
}
