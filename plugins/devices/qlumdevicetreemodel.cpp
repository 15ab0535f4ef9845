#include <plugins/devices/qlumdevicetreemodel.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumimageformat.h>
#include <opcua/opcua_identifiers.h>
#include <plugins/devices/qlumdevicewords.h>
#include <uabase/values/uabytestring.h>
#include <uawidgets/qlumnodelook.h>
#include <uawidgets/table/qlumstatuslook.h>

#include <QBuffer>
#include <QByteArray>
#include <QImageReader>
#include <QObject>
#include <QPixmap>
#include <QSize>
#include <QStringList>

#include <deque>
#include <map>
#include <span>
#include <utility>

namespace {
// What a cell about health answers besides its text.
QVariant healthCell(QlumDeviceHealth health, int role)
{
    if (role == Qt::ToolTipRole)
        return qlumDeviceHealthWords(health);
    return health == QlumDeviceHealth::Untold ? QVariant()
                                              : qlumStatusCell(qlumDeviceHealthLevel(health), role);
}

// A small file may claim any size.
QIcon deviceIcon(const UaByteString& bytes)
{
    constexpr int mostBytes = 1024 * 1024;
    constexpr int mostPixels = 1024; // of a side
    const std::span<const unsigned char> content(
        bytes.data(), static_cast<std::size_t>(bytes.length() > 0 ? bytes.length() : 0));
    const char* const format = qlumImageFormatName(qlumImageFormatOf(content));
    if (content.empty() || content.size() > mostBytes || !format)
        return {};
    QByteArray data(reinterpret_cast<const char*>(content.data()), static_cast<int>(content.size()));
    QBuffer buffer(&data);
    QImageReader reader(&buffer, format);
    const QSize size = reader.size();
    if (!size.isValid() || size.width() > mostPixels || size.height() > mostPixels)
        return {};
    return QIcon(QPixmap::fromImage(reader.read()));
}

QStringList nameplateTitles()
{
    QStringList titles{QlumNameplateModel::tr("Device"), QlumNameplateModel::tr("Health")};
    for (std::size_t field = 0; field < qlumNameplateCount; ++field)
        titles.append(qlumNameplateTitle(static_cast<QlumNameplate>(field)));
    return titles;
}
} // namespace

// ---- tree

QlumDeviceTreeModel::QlumDeviceTreeModel(QObject* parent)
    : QlumTreeModel({tr("Device"), tr("Health"), tr("Type"), tr("Lock")}, parent)
{
    setRoot(&m_root);
}

void QlumDeviceTreeModel::setSpace(std::shared_ptr<const QlumDeviceSpace> space)
{
    reset([&] {
        m_root.clearChildren();
        m_nodes.clear();
        m_icons.clear();
        std::map<UaByteString, QIcon> decoded; // many devices have that of their type
        m_space = std::move(space);
        if (!m_space)
            return;
        // those above come first
        for (int i = 0; i < static_cast<int>(m_space->devices.size()); ++i) {
            const int above = m_space->devices[static_cast<std::size_t>(i)].parent;
            QlumDeviceTreeNode& parent = above >= 0 ? *m_nodes[static_cast<std::size_t>(above)] : m_root;
            std::vector<std::unique_ptr<QlumDeviceTreeNode>> added;
            added.push_back(std::make_unique<QlumDeviceTreeNode>(i));
            m_nodes.push_back(added.back().get());
            parent.insertChildren(parent.childCount(), std::move(added));
            const UaByteString& bytes = m_space->devices[static_cast<std::size_t>(i)].icon;
            const auto [icon, isNew] = decoded.try_emplace(bytes);
            if (isNew)
                icon->second = deviceIcon(bytes);
            m_icons.push_back(icon->second);
        }
    });
}

void QlumDeviceTreeModel::showState(int device)
{
    tellChanged(*m_nodes.at(static_cast<std::size_t>(device)));
}

int QlumDeviceTreeModel::deviceAt(const QModelIndex& index) const
{
    const QlumDeviceTreeNode* const node = nodeAt(index);
    return node ? node->device() : -1;
}

QModelIndex QlumDeviceTreeModel::indexOfDevice(int device) const
{
    return device >= 0 && device < static_cast<int>(m_nodes.size())
               ? indexOf(m_nodes[static_cast<std::size_t>(device)])
               : QModelIndex();
}

QString QlumDeviceTreeModel::text(const QlumDevice& device, int column) const
{
    switch (column) {
    case Name:
        return device.name;
    case Health:
        return qlumDeviceHealthText(device.health);
    case Type:
        return device.typeName.isEmpty() ? qlumDeviceKindText(device.kind) : device.typeName;
    case Lock:
        return device.lock.isLocked ? tr("locked") : QString();
    default:
        return {};
    }
}

QVariant QlumDeviceTreeModel::cell(const QlumDeviceTreeNode& node, int column, int role) const
{
    if (!m_space || node.device() < 0)
        return {};
    const QlumDevice& device = m_space->devices[static_cast<std::size_t>(node.device())];
    if (role == Qt::DisplayRole)
        return text(device, column);
    if (column == Health)
        return healthCell(device.health, role);
    if (role == Qt::DecorationRole && column == Name) {
        const QIcon& own = m_icons[static_cast<std::size_t>(node.device())];
        return own.isNull() ? qlumNodeIcon(OpcUa_NodeClass_Object, UaNodeId(OpcUaId_BaseObjectType)) : own;
    }
    if (role != Qt::ToolTipRole)
        return {};
    if (column == Lock && device.lock.isLocked)
        return qlumPlainToolTip(tr("Locked by %1").arg(qlumDeviceOwnerText(device.lock)));
    QStringList lines{text(device, column)};
    if (!device.connections.isEmpty())
        lines.append(tr("Connected to: %1").arg(device.connections.join(QStringLiteral(", "))));
    if (!device.missing.isEmpty())
        lines.append(tr("Missing: %1").arg(device.missing.join(QStringLiteral(", "))));
    return qlumPlainToolTip(lines.join(QLatin1Char('\n')));
}

// ---- nameplates

QlumNameplateModel::QlumNameplateModel(QObject* parent) : QlumTableModel(nameplateTitles(), parent) {}

void QlumNameplateModel::setSpace(const QlumDeviceSpace& space)
{
    std::deque<QlumDevice> rows;
    for (const QlumDevice& device : space.devices)
        if (device.kind == QlumDeviceKind::Device)
            rows.push_back(device);
    reset(std::move(rows));
}

void QlumNameplateModel::setHealth(const UaNodeId& device, QlumDeviceHealth health)
{
    changeRows([&](QlumDevice& row) {
        const bool isOther = row.id == device && row.health != health;
        row.health = isOther ? health : row.health;
        return isOther;
    });
}

QVariant QlumNameplateModel::cell(const QlumDevice& device, int column, int role) const
{
    if (column == Health && role != Qt::DisplayRole)
        return healthCell(device.health, role);
    const auto field = static_cast<std::size_t>(column - FirstFact);
    const QString text = column == Name     ? device.name
                         : column == Health ? qlumDeviceHealthText(device.health)
                                            : device.nameplate.at(field);
    if (role == Qt::DisplayRole)
        return text;
    if (role != Qt::ToolTipRole)
        return {};
    const bool isMissing =
        column >= FirstFact && device.missing.contains(qlumNameplateKey(static_cast<QlumNameplate>(field)));
    return isMissing ? tr("The model of devices wants this fact, but the server does not have it.")
                     : qlumPlainToolTip(text);
}
