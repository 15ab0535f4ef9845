// What one device has: parameters in their groups, methods, documents.
#include <plugins/devices/qlumdevicereader.h>

#include <app/api/qlumtext.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_statuscodes.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumcontextreader.h>
#include <uawidgets/editors/qlumvaluecontext.h>

#include <algorithm>
#include <deque>
#include <utility>

namespace {
constexpr std::size_t contextsPerCall = 200;
constexpr std::size_t mostDocuments = 500;
constexpr const char* documentFolders[] = {"Documentation", "DocumentationFiles", "ProtocolSupport",
                                           "ImageSet", "DeviceTypeImage"};
constexpr const char* groupTypes[] = {"FunctionalGroupType"};

// What a group says of itself is no parameter.
bool isOfGroup(const QlumDeviceChild& child)
{
    return child.browseName == QLatin1String("GroupIdentifier") ||
           child.browseName == QLatin1String("UIElement");
}
} // namespace

QlumDeviceDetails QlumDeviceReader::readDetails(const QlumDevice& device)
{
    QlumDeviceDetails details;
    details.device = device.id;
    if (!findNamespace()) {
        details.status = UaStatus(OpcUa_BadNodeIdUnknown);
        return details;
    }
    Gathered gathered;
    const UaNodeId set = device.parts.value(QStringLiteral("ParameterSet"));
    for (const QlumDeviceChild& child : m_browser.children(set)) {
        addParameter(details, gathered, child, QString());
        if (const auto found = gathered.parameters.find(child.id); found != gathered.parameters.end())
            details.parameters[found->second].isInSet = true;
    }
    const UaNodeId methods = device.parts.value(QStringLiteral("MethodSet"));
    for (const QlumDeviceChild& child : m_browser.children(methods))
        addMethod(details, gathered, child, methods, QString());
    readGroups(device, details, gathered);
    readValues(details);
    readDefaults(device, details);
    if (const QString& manual = device.fact(QlumNameplate::DeviceManual); !manual.isEmpty())
        details.documents.push_back({{}, QStringLiteral("DeviceManual"), {}, manual, false, false});
    readDocuments(device, device.id, false, details);
    readDocuments(device, device.type, true, details);
    const bool isEmpty = details.parameters.empty() && details.methods.empty();
    if (isEmpty && m_browser.worst().isBad())
        details.status = m_browser.worst();
    return details;
}

// One that stands in several places is one parameter.
void QlumDeviceReader::addParameter(QlumDeviceDetails& details, Gathered& gathered,
                                    const QlumDeviceChild& child, const QString& group)
{
    if (child.nodeClass != OpcUa_NodeClass_Variable || isOfGroup(child))
        return;
    const auto [found, isNew] = gathered.parameters.emplace(child.id, details.parameters.size());
    if (isNew && details.parameters.size() >= mostParameters) {
        gathered.parameters.erase(found);
        details.isCut = true;
        return;
    }
    if (isNew) {
        QlumDeviceParameter parameter;
        parameter.id = child.id;
        parameter.namespaceUri = m_namespaces.value(child.namespaceIndex);
        parameter.browseName = child.browseName;
        parameter.name = child.name;
        details.parameters.push_back(std::move(parameter));
    }
    QStringList& groups = details.parameters[found->second].groups;
    if (!group.isEmpty() && !groups.contains(group))
        groups.append(group);
}

void QlumDeviceReader::addMethod(QlumDeviceDetails& details, Gathered& gathered, const QlumDeviceChild& child,
                                 const UaNodeId& object, const QString& group)
{
    if (child.nodeClass != OpcUa_NodeClass_Method || gathered.methods.size() >= mostParameters)
        return;
    const auto [found, isNew] = gathered.methods.emplace(child.id, details.methods.size());
    if (isNew)
        details.methods.push_back({object, child.id, child.name, {}});
    QStringList& groups = details.methods[found->second].groups;
    if (!group.isEmpty() && !groups.contains(group))
        groups.append(group);
}

void QlumDeviceReader::readGroups(const QlumDevice& device, QlumDeviceDetails& details, Gathered& gathered)
{
    std::deque<Group> waiting;
    std::set<UaNodeId> seen;
    const std::vector<UaDataValue> names = m_browser.read(device.groups, OpcUa_Attributes_DisplayName);
    for (std::size_t i = 0; i < device.groups.size(); ++i)
        waiting.push_back({device.groups[i], toQString(names[i].value().toLocalizedText().text()), 1});
    while (!waiting.empty() && !m_browser.isCancelled()) {
        const Group group = std::move(waiting.front());
        waiting.pop_front();
        if (!seen.insert(group.id).second)
            continue;
        if (seen.size() > mostGroups) {
            details.isCut = true;
            return;
        }
        details.groups.append(group.name);
        const QlumDeviceChildren children = m_browser.children(group.id);
        std::vector<UaNodeId> types;
        for (const QlumDeviceChild& child : children)
            if (child.nodeClass == OpcUa_NodeClass_Object)
                types.push_back(child.type);
        m_browser.learnTypes(types);
        for (const QlumDeviceChild& child : children) {
            addParameter(details, gathered, child, group.name);
            addMethod(details, gathered, child, group.id, group.name);
            const bool isGroup = child.nodeClass == OpcUa_NodeClass_Object &&
                                 !m_browser.baseOf(child.type, m_namespace, groupTypes).isEmpty();
            if (isGroup && group.depth < deepestGroup)
                waiting.push_back({child.id, group.name + QLatin1Char('/') + child.name, group.depth + 1});
        }
    }
}

void QlumDeviceReader::readValues(QlumDeviceDetails& details)
{
    QlumContextReader reader(m_session, m_settings, [this] { return m_browser.isCancelled(); });
    for (std::size_t first = 0; first < details.parameters.size() && !m_browser.isCancelled();
         first += contextsPerCall) {
        const std::size_t count = std::min(contextsPerCall, details.parameters.size() - first);
        std::vector<UaNodeId> ids;
        for (std::size_t i = 0; i < count; ++i)
            ids.push_back(details.parameters[first + i].id);
        std::vector<QlumValueContext> contexts;
        UaDataValues values;
        const UaStatus status = reader.read(ids, contexts, &values);
        for (std::size_t i = 0; i < count; ++i) {
            QlumDeviceParameter& parameter = details.parameters[first + i];
            if (status.isNotBad() && i < values.length())
                parameter.value = UaDataValue(values[static_cast<OpcUa_UInt32>(i)]);
            else
                parameter.value.setStatusCode(status.isBad() ? status.code() : OpcUa_BadUnknownResponse);
            reader.learn(parameter.value.value());
            if (i < contexts.size())
                parameter.context = std::make_shared<const QlumValueContext>(std::move(contexts[i]));
        }
        if (m_progress)
            m_progress(static_cast<int>(first + count));
    }
}

// What the type has in its own parameter set, name by name.
void QlumDeviceReader::readDefaults(const QlumDevice& device, QlumDeviceDetails& details)
{
    if (device.type.isNull())
        return;
    const UaNodeId set = m_browser.find(device.type, m_namespace, "ParameterSet");
    std::map<std::pair<QString, QString>, UaNodeId> ofType;
    for (const QlumDeviceChild& child : m_browser.children(set))
        if (child.nodeClass == OpcUa_NodeClass_Variable)
            ofType.emplace(std::pair(m_namespaces.value(child.namespaceIndex), child.browseName), child.id);
    std::vector<UaNodeId> ids;
    std::vector<QlumDeviceParameter*> targets;
    for (QlumDeviceParameter& parameter : details.parameters)
        if (const auto found = ofType.find({parameter.namespaceUri, parameter.browseName});
            parameter.isInSet && found != ofType.end()) {
            ids.push_back(found->second);
            targets.push_back(&parameter);
        }
    const std::vector<UaDataValue> values = m_browser.read(ids, OpcUa_Attributes_Value);
    for (std::size_t i = 0; i < values.size(); ++i) {
        targets[i]->hasDefault = !values[i].statusCode().isBad() && !values[i].value().isNull();
        targets[i]->byType = values[i].value();
    }
}

void QlumDeviceReader::readDocuments(const QlumDevice& device, const UaNodeId& owner, bool isOfType,
                                     QlumDeviceDetails& details)
{
    for (const char* const folder : documentFolders) {
        const UaNodeId place =
            isOfType ? m_browser.find(owner, m_namespace, folder) : device.parts.value(QLatin1String(folder));
        for (const QlumDeviceChild& child : m_browser.children(place)) {
            const bool isVariable = child.nodeClass == OpcUa_NodeClass_Variable;
            const bool isFile =
                child.nodeClass == OpcUa_NodeClass_Object && child.type == UaNodeId(OpcUaId_FileType);
            // what stands for any of them in a type
            if (child.browseName.startsWith(QLatin1Char('<')))
                continue;
            if ((isVariable || isFile) && details.documents.size() < mostDocuments)
                details.documents.push_back(
                    {child.id, child.name, QLatin1String(folder), {}, isFile, isOfType});
        }
    }
}
