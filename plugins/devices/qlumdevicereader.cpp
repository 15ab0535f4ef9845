// The tree of devices: what there is, what it is called and how it is.
#include <plugins/devices/qlumdevicereader.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/devices/qlumdevicewords.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>

#include <algorithm>
#include <iterator>
#include <ranges>
#include <utility>

namespace {
constexpr const char* elementTypes[] = {
    "FunctionalGroupType",    "ConnectionPointType", "NetworkType",          "TopologyElementType",
    "ConfigurableObjectType", "LockingServicesType", "TransferServicesType", "ProtocolType"};

QString factText(const UaDataValue& value)
{
    if (value.statusCode().isBad() || value.value().isNull())
        return {};
    const UaVariant& fact = value.value();
    const QString text = fact.type() == OpcUaType_LocalizedText ? toQString(fact.toLocalizedText().text())
                                                                : toQString(fact.toString());
    return qlumSingleLine(qlumCutText(text));
}
} // namespace

int QlumDeviceSpace::lockOf(int device) const
{
    for (int at = device; at >= 0 && at < static_cast<int>(devices.size()); at = devices[at].parent)
        if (!devices[at].lockParts.isEmpty())
            return at;
    return -1;
}

QlumDeviceHealth qlumDeviceHealthOf(const UaDataValue& value)
{
    bool isNumber = false;
    const OpcUa_Int32 number = value.value().toInt32(&isNumber);
    const bool isTold = isNumber && !value.value().isNull() && !value.statusCode().isBad();
    return isTold && number >= 0 && number <= static_cast<int>(QlumDeviceHealth::MaintenanceRequired)
               ? static_cast<QlumDeviceHealth>(number)
               : QlumDeviceHealth::Untold;
}

void qlumTakeLockValue(QlumDeviceLockState& state, std::size_t property, const UaDataValue& value)
{
    switch (property) {
    case 0: {
        bool isTold = false;
        const bool isLocked = value.value().toBool(&isTold);
        state.isKnown = isTold && !value.value().isNull() && !value.statusCode().isBad();
        state.isLocked = isLocked && state.isKnown;
        break;
    }
    case 1:
        state.client = factText(value);
        break;
    case 2:
        state.user = factText(value);
        break;
    default:
        state.remaining = std::max(0.0, value.value().toDouble());
        break;
    }
}

QlumDeviceLockState qlumDeviceLockState(const UaDataValue& locked, const UaDataValue& client,
                                        const UaDataValue& user, const UaDataValue& remaining)
{
    QlumDeviceLockState state;
    std::size_t property = 0;
    for (const UaDataValue* const value : {&locked, &client, &user, &remaining})
        qlumTakeLockValue(state, property++, *value);
    return state;
}

QlumDeviceReader::QlumDeviceReader(std::shared_ptr<QlumSessionServices> session,
                                   QlumSessionServices::Settings settings,
                                   QlumDeviceBrowser::Cancelled isCancelled, Progress progress)
    : m_session(std::move(session)), m_settings(settings),
      m_browser(*m_session, std::move(settings), std::move(isCancelled)), m_progress(std::move(progress))
{
}

bool QlumDeviceReader::findNamespace()
{
    const UaStringArray table = m_session->namespaceTable();
    m_namespaces.clear();
    for (const OpcUa_String& uri : table)
        m_namespaces.append(toQString(UaString(uri)));
    const int index = m_namespaces.indexOf(QLatin1String(qlumDeviceNamespace));
    m_namespace = static_cast<OpcUa_UInt16>(std::max(index, 0));
    return index > 0;
}

// ---- the tree

QlumDeviceSpace QlumDeviceReader::readSpace()
{
    QlumDeviceSpace space;
    space.hasNamespace = findNamespace();
    if (!space.hasNamespace)
        return space;
    const UaNodeId objects(OpcUaId_ObjectsFolder);
    const UaNodeId set = m_browser.find(objects, m_namespace, "DeviceSet");
    if (set.isNull())
        space.missing.append(QStringLiteral("Objects/DeviceSet"));
    else
        readElements(space, set);
    if (const UaNodeId networks = m_browser.find(objects, m_namespace, "NetworkSet"); !networks.isNull())
        readNetworks(space, networks);
    const UaNodeId longest =
        m_browser.find(UaNodeId(OpcUaId_Server_ServerCapabilities), m_namespace, "MaxInactiveLockTime");
    const std::vector<UaDataValue> value = m_browser.read(std::span(&longest, 1), OpcUa_Attributes_Value);
    space.mostInactiveLockTime = std::max(0.0, value.front().value().toDouble());
    refreshStates(space);
    if (space.devices.empty())
        space.status = m_browser.worst();
    return space;
}

bool QlumDeviceReader::append(QlumDeviceSpace& space, const QlumDeviceChild& child, QlumDeviceKind kind,
                              int parent)
{
    if (space.devices.size() >= mostDevices) {
        space.isCut = true;
        return false;
    }
    if (!m_visited.insert(child.id).second)
        return false;
    QlumDevice device;
    device.id = child.id;
    device.type = child.type;
    device.name = child.name;
    device.kind = kind;
    device.parent = parent;
    device.typeName = m_browser.typeName(child.type);
    const QString above = parent >= 0 ? space.devices[static_cast<std::size_t>(parent)].pathNames : QString();
    device.pathNames = above + QLatin1Char('/') + child.browseName;
    m_devices.emplace(child.id, space.devices.size());
    space.devices.push_back(std::move(device));
    return true;
}

// Whether it is a row of the tree at all.
bool QlumDeviceReader::kindOf(const QlumDeviceChild& child, QlumDeviceKind& kind) const
{
    // references of the model itself lead to neighbours, not to parts
    if (child.nodeClass != OpcUa_NodeClass_Object || child.reference.namespaceIndex() == m_namespace)
        return false;
    const QString base = m_browser.baseOf(child.type, m_namespace, elementTypes);
    const bool isOfModel = child.namespaceIndex == m_namespace;
    if (isOfModel && child.browseName == QLatin1String("DeviceFeatures"))
        kind = QlumDeviceKind::Feature;
    else if (base == QLatin1String("TopologyElementType"))
        kind = QlumDeviceKind::Device;
    else if (base == QLatin1String("ConnectionPointType"))
        kind = QlumDeviceKind::Point;
    else if (base == QLatin1String("ConfigurableObjectType"))
        kind = QlumDeviceKind::Group;
    else if (base == QLatin1String("NetworkType"))
        kind = QlumDeviceKind::Network;
    else
        return false;
    return true;
}

void QlumDeviceReader::typesOf(const std::vector<QlumDeviceChildren>& found)
{
    std::set<UaNodeId> types;
    for (const QlumDeviceChildren& children : found)
        for (const QlumDeviceChild& child : children)
            if (child.nodeClass == OpcUa_NodeClass_Object)
                types.insert(child.type);
    const std::vector<UaNodeId> all(types.begin(), types.end());
    m_browser.learnTypes(all);
}

void QlumDeviceReader::readElements(QlumDeviceSpace& space, const UaNodeId& set)
{
    m_visited.insert(set);
    std::vector<UaNodeId> level{set};
    std::vector<int> places{-1};
    std::vector<Found> all;
    for (int depth = 0; depth <= deepest && !level.empty() && !m_browser.isCancelled(); ++depth) {
        std::vector<QlumDeviceChildren> found;
        static_cast<void>(m_browser.children(level, found)); // worst() has it
        typesOf(found);
        std::vector<UaNodeId> next;
        std::vector<int> nextPlaces;
        for (std::size_t i = 0; i < found.size(); ++i) {
            for (const QlumDeviceChild& child : found[i]) {
                QlumDeviceKind kind = QlumDeviceKind::Device;
                if (!kindOf(child, kind) || !append(space, child, kind, places[i]))
                    continue;
                next.push_back(child.id);
                nextPlaces.push_back(static_cast<int>(space.devices.size()) - 1);
            }
            if (places[i] >= 0)
                all.push_back({static_cast<std::size_t>(places[i]), std::move(found[i])});
        }
        space.isCut = space.isCut || (depth == deepest && !next.empty());
        level = std::move(next);
        places = std::move(nextPlaces);
        if (m_progress)
            m_progress(static_cast<int>(space.devices.size()));
    }
    readParts(space, all);
    readFacts(space, all);
    readIcons(space, all);
    for (QlumDevice& device : space.devices)
        noteMissing(device);
}

void QlumDeviceReader::takeParts(QlumDevice& device, const QlumDeviceChildren& children)
{
    for (const QlumDeviceChild& child : children) {
        const bool isOfModel = child.namespaceIndex == m_namespace;
        if (child.nodeClass == OpcUa_NodeClass_Object) {
            if (isOfModel)
                device.parts.insert(child.browseName, child.id);
            if (m_browser.baseOf(child.type, m_namespace, elementTypes) ==
                QLatin1String("FunctionalGroupType"))
                device.groups.push_back(child.id);
        } else if (isOfModel && child.browseName == QLatin1String("DeviceHealth")) {
            device.healthId = child.id;
        }
    }
}

// Locks and transfers of all devices, by one more round.
void QlumDeviceReader::readParts(QlumDeviceSpace& space, const std::vector<Found>& found)
{
    std::vector<UaNodeId> objects;
    std::vector<QlumDeviceParts*> targets;
    for (const Found& one : found) {
        QlumDevice& device = space.devices[one.device];
        takeParts(device, one.children);
        const auto wish = [&](const char* part, QlumDeviceParts& target) {
            if (!device.has(part))
                return;
            objects.push_back(device.parts.value(QLatin1String(part)));
            targets.push_back(&target);
        };
        wish("Lock", device.lockParts);
        wish("Transfer", device.transferParts);
    }
    std::vector<QlumDeviceChildren> below;
    static_cast<void>(m_browser.children(objects, below));
    for (std::size_t i = 0; i < below.size(); ++i)
        for (const QlumDeviceChild& child : below[i])
            targets[i]->insert(child.browseName, child.id);
}

void QlumDeviceReader::readFacts(QlumDeviceSpace& space, const std::vector<Found>& found)
{
    std::vector<UaNodeId> ids;
    std::vector<QString*> targets;
    const auto gather = [&](QlumDevice& device, const QlumDeviceChildren& children) {
        for (const QlumDeviceChild& child : children) {
            const int field = qlumNameplateField(child.browseName);
            if (child.nodeClass != OpcUa_NodeClass_Variable || field < 0)
                continue;
            ids.push_back(child.id);
            targets.push_back(&device.nameplate[static_cast<std::size_t>(field)]);
        }
    };
    // some servers have the nameplate in the group only
    std::vector<UaNodeId> groups;
    std::vector<std::size_t> owners;
    for (const Found& one : found) {
        QlumDevice& device = space.devices[one.device];
        const std::size_t before = ids.size();
        gather(device, one.children);
        if (ids.size() == before && device.has("Identification")) {
            groups.push_back(device.parts.value(QStringLiteral("Identification")));
            owners.push_back(one.device);
        }
    }
    std::vector<QlumDeviceChildren> below;
    static_cast<void>(m_browser.children(groups, below));
    for (std::size_t i = 0; i < below.size(); ++i)
        gather(space.devices[owners[i]], below[i]);
    const std::vector<UaDataValue> values = m_browser.read(ids, OpcUa_Attributes_Value);
    for (std::size_t i = 0; i < values.size(); ++i)
        *targets[i] = factText(values[i]);
}

// Each icon of a type is read once.
void QlumDeviceReader::readIcons(QlumDeviceSpace& space, const std::vector<Found>& found)
{
    const auto iconOf = [](const QlumDeviceChildren& children) {
        const auto icon = std::ranges::find_if(children, [](const QlumDeviceChild& child) {
            return child.namespaceIndex == 0 && child.browseName == QLatin1String("Icon");
        });
        return icon == children.end() ? UaNodeId() : icon->id;
    };
    std::set<UaNodeId> distinct;
    for (const QlumDevice& device : space.devices)
        if (!device.type.isNull())
            distinct.insert(device.type);
    const std::vector<UaNodeId> types(distinct.begin(), distinct.end());
    std::vector<QlumDeviceChildren> below;
    static_cast<void>(m_browser.children(types, below));
    std::vector<UaNodeId> ids;
    for (const QlumDeviceChildren& children : below)
        ids.push_back(iconOf(children));
    for (const Found& one : found)
        ids.push_back(iconOf(one.children));
    const std::vector<UaDataValue> values = m_browser.read(ids, OpcUa_Attributes_Value);
    std::map<UaNodeId, UaByteString> ofType;
    for (std::size_t i = 0; i < types.size(); ++i)
        ofType[types[i]] = values[i].value().toByteString();
    for (QlumDevice& device : space.devices)
        device.icon = ofType[device.type];
    for (std::size_t i = 0; i < found.size(); ++i)
        if (const UaByteString own = values[types.size() + i].value().toByteString(); own.length() > 0)
            space.devices[found[i].device].icon = own;
}

// What the model makes mandatory for everything that is a device; groups and networks have nothing to miss.
void QlumDeviceReader::noteMissing(QlumDevice& device) const
{
    const char* const deviceTypes[] = {"DeviceType"};
    if (device.kind != QlumDeviceKind::Device ||
        m_browser.baseOf(device.type, m_namespace, deviceTypes).isEmpty())
        return;
    for (const QlumNameplate field :
         {QlumNameplate::Manufacturer, QlumNameplate::Model, QlumNameplate::HardwareRevision,
          QlumNameplate::SoftwareRevision, QlumNameplate::DeviceRevision, QlumNameplate::DeviceManual,
          QlumNameplate::SerialNumber, QlumNameplate::RevisionCounter})
        if (device.fact(field).isNull())
            device.missing.append(qlumNameplateKey(field));
    if (device.has("Lock"))
        for (const char* const method : {"InitLock", "RenewLock", "ExitLock", "BreakLock"})
            if (!device.lockParts.contains(QLatin1String(method)))
                device.missing.append(QStringLiteral("Lock/") + QLatin1String(method));
}

// ---- networks

void QlumDeviceReader::readNetworks(QlumDeviceSpace& space, const UaNodeId& set)
{
    const QlumDeviceChildren children = m_browser.children(set);
    typesOf({children});
    for (const QlumDeviceChild& child : children) {
        QlumDeviceKind kind = QlumDeviceKind::Network;
        if (kindOf(child, kind) && kind == QlumDeviceKind::Network && append(space, child, kind, -1))
            connectNetwork(space, static_cast<int>(space.devices.size()) - 1);
    }
}

// What a network is connected to is a point of a device, or the device itself. The reference is a
// hierarchical one on old servers only.
void QlumDeviceReader::connectNetwork(QlumDeviceSpace& space, int network)
{
    const auto own = static_cast<std::size_t>(network);
    for (const QlumDeviceChild& child : m_browser.neighbours(space.devices[own].id)) {
        const auto found = m_devices.find(child.id);
        if (found == m_devices.end())
            continue;
        QlumDevice& end = space.devices[found->second];
        end.connections.append(space.devices[own].name);
        const QString holder = end.kind == QlumDeviceKind::Point && end.parent >= 0
                                   ? space.devices[static_cast<std::size_t>(end.parent)].name
                                   : end.name;
        space.devices[own].connections.append(holder);
    }
}

// ---- what changes

void QlumDeviceReader::refreshStates(QlumDeviceSpace& space)
{
    constexpr std::size_t perDevice = 1 + std::size(qlumLockProperties);
    std::vector<UaNodeId> ids;
    for (const QlumDevice& device : space.devices) {
        ids.push_back(device.healthId);
        for (const char* const property : qlumLockProperties)
            ids.push_back(device.lockParts.value(QLatin1String(property)));
    }
    const std::vector<UaDataValue> values = m_browser.read(ids, OpcUa_Attributes_Value);
    for (std::size_t i = 0; i < space.devices.size(); ++i) {
        const UaDataValue* const own = &values[i * perDevice];
        space.devices[i].health = qlumDeviceHealthOf(own[0]);
        space.devices[i].lock = qlumDeviceLockState(own[1], own[2], own[3], own[4]);
    }
}
