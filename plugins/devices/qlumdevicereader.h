#pragma once
#include <app/api/qlumsessionservices.h>
#include <plugins/devices/qlumdevicebrowser.h>
#include <plugins/devices/qlumdevicedata.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uanodeid.h>

#include <QString>
#include <QStringList>

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <span>
#include <vector>

/// Reads the devices of a server by the names of their model, never by ids. For one job; blocks. Whatever a
/// server has, as many as mostDevices and so on are looked at, and a node that leads back to itself once.
class QlumDeviceReader
{
public:
    static constexpr std::size_t mostDevices = 5000;
    static constexpr int deepest = 16; ///< devices in devices
    static constexpr std::size_t mostParameters = 5000;
    static constexpr int deepestGroup = 6;
    static constexpr std::size_t mostGroups = 500;

    /// Hears how much is read.
    using Progress = std::function<void(int done)>;

    /// The session is that of a job, as are the settings.
    QlumDeviceReader(std::shared_ptr<QlumSessionServices> session, QlumSessionServices::Settings settings,
                     QlumDeviceBrowser::Cancelled isCancelled, Progress progress = {});

    /// The tree with nameplates, health and locks.
    [[nodiscard]] QlumDeviceSpace readSpace();
    /// Parameters with their values, methods and documents of one device.
    [[nodiscard]] QlumDeviceDetails readDetails(const QlumDevice& device);
    /// The values of health and locks as they are now.
    void refreshStates(QlumDeviceSpace& space);

private:
    struct Found
    {
        std::size_t device;
        QlumDeviceChildren children;
    };
    struct Group
    {
        UaNodeId id;
        QString name;
        int depth;
    };
    struct Gathered
    {
        std::map<UaNodeId, std::size_t> parameters; ///< places
        std::map<UaNodeId, std::size_t> methods;
    };

    [[nodiscard]] bool findNamespace();
    void readElements(QlumDeviceSpace& space, const UaNodeId& set);
    void readNetworks(QlumDeviceSpace& space, const UaNodeId& set);
    void connectNetwork(QlumDeviceSpace& space, int network);
    [[nodiscard]] bool append(QlumDeviceSpace& space, const QlumDeviceChild& child, QlumDeviceKind kind,
                              int parent);
    [[nodiscard]] bool kindOf(const QlumDeviceChild& child, QlumDeviceKind& kind) const;
    void takeParts(QlumDevice& device, const QlumDeviceChildren& children);
    void readParts(QlumDeviceSpace& space, const std::vector<Found>& found);
    void readFacts(QlumDeviceSpace& space, const std::vector<Found>& found);
    void readIcons(QlumDeviceSpace& space, const std::vector<Found>& found);
    void noteMissing(QlumDevice& device) const;
    void typesOf(const std::vector<QlumDeviceChildren>& found);

    void addParameter(QlumDeviceDetails& details, Gathered& gathered, const QlumDeviceChild& child,
                      const QString& group);
    void addMethod(QlumDeviceDetails& details, Gathered& gathered, const QlumDeviceChild& child,
                   const UaNodeId& object, const QString& group);
    void readGroups(const QlumDevice& device, QlumDeviceDetails& details, Gathered& gathered);
    void readValues(QlumDeviceDetails& details);
    void readDefaults(const QlumDevice& device, QlumDeviceDetails& details);
    void readDocuments(const QlumDevice& device, const UaNodeId& owner, bool isOfType,
                       QlumDeviceDetails& details);

    const std::shared_ptr<QlumSessionServices> m_session;
    const QlumSessionServices::Settings m_settings;
    QlumDeviceBrowser m_browser;
    const Progress m_progress;
    OpcUa_UInt16 m_namespace = 0;
    QStringList m_namespaces;
    std::set<UaNodeId> m_visited;
    std::map<UaNodeId, std::size_t> m_devices; ///< places in the space
};

/// What the values of a lock's properties mean; null ones are not told.
[[nodiscard]] QlumDeviceLockState qlumDeviceLockState(const UaDataValue& locked, const UaDataValue& client,
                                                      const UaDataValue& user, const UaDataValue& remaining);
/// Takes over one of them, by its place in that order.
void qlumTakeLockValue(QlumDeviceLockState& state, std::size_t property, const UaDataValue& value);
/// The names of the properties, in that order.
inline constexpr const char* qlumLockProperties[] = {"Locked", "LockingClient", "LockingUser",
                                                     "RemainingLockTime"};
/// Untold for what is no number of it.
[[nodiscard]] QlumDeviceHealth qlumDeviceHealthOf(const UaDataValue& value);
