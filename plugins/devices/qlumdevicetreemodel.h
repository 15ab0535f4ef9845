#pragma once
#include <plugins/devices/qlumdevicedata.h>
#include <uabase/values/uanodeid.h>
#include <uawidgets/models/qlumtablemodel.h>
#include <uawidgets/models/qlumtreemodel.h>
#include <uawidgets/models/qlumtreenode.h>

#include <QIcon>
#include <QModelIndex>
#include <QObject>
#include <QString>
#include <QVariant>

#include <memory>
#include <vector>

/// A row of the tree; the device is one of the space that the model shows.
class QlumDeviceTreeNode : public QlumTreeNode<QlumDeviceTreeNode>
{
public:
    explicit QlumDeviceTreeNode(int device) : m_device(device) {}

    /// Place of the device; -1 for the root.
    [[nodiscard]] int device() const { return m_device; }

private:
    const int m_device;
};

/// The devices of a server as a tree, with how they are.
class QlumDeviceTreeModel : public QlumTreeModel<QlumDeviceTreeNode>
{
    Q_OBJECT
public:
    /// In the order of the construction.
    enum Column { Name, Health, Type, Lock, ColumnCount };
    explicit QlumDeviceTreeModel(QObject* parent = nullptr);

    void setSpace(std::shared_ptr<const QlumDeviceSpace> space);
    /// The device is in another state now.
    void showState(int device);
    /// -1 for an invalid index.
    [[nodiscard]] int deviceAt(const QModelIndex& index) const;
    /// Invalid for a device that is none.
    [[nodiscard]] QModelIndex indexOfDevice(int device) const;

protected:
    [[nodiscard]] QVariant cell(const QlumDeviceTreeNode& node, int column, int role) const override;

private:
    [[nodiscard]] QString text(const QlumDevice& device, int column) const;

    std::shared_ptr<const QlumDeviceSpace> m_space;
    QlumDeviceTreeNode m_root{-1};
    std::vector<QlumDeviceTreeNode*> m_nodes; ///< by device
    std::vector<QIcon> m_icons;               ///< the same; null for those that have none
};

/// The nameplates of all devices.
class QlumNameplateModel : public QlumTableModel<QlumDevice>
{
    Q_OBJECT
public:
    /// Columns before those of the facts.
    enum Column { Name, Health, FirstFact };

    explicit QlumNameplateModel(QObject* parent = nullptr);

    /// Of those that are devices.
    void setSpace(const QlumDeviceSpace& space);
    void setHealth(const UaNodeId& device, QlumDeviceHealth health);

protected:
    [[nodiscard]] QVariant cell(const QlumDevice& device, int column, int role) const override;
};
