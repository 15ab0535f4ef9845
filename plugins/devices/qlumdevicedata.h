// What is known of the devices of a server.
#pragma once
#include <opcua/opcua_types.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumvaluecontext.h>

#include <QMap>
#include <QString>
#include <QStringList>

#include <array>
#include <memory>
#include <vector>

/// By which the namespace of device integration is found.
inline constexpr char qlumDeviceNamespace[] = "http://opcfoundation.org/UA/DI/";

/// How a device says it is, with the numbers of its variable.
enum class QlumDeviceHealth : signed char {
    Untold = -1,
    Normal,
    Failure,
    CheckFunction,
    OffSpec,
    MaintenanceRequired
};

/// What a row of the device tree is.
enum class QlumDeviceKind : unsigned char {
    Device,  ///< or a component, a block, software: whatever has parameters and methods of its own
    Group,   ///< only holds others: modules, sub-devices
    Feature, ///< the folder of what belongs to several devices
    Network, ///< connects others
    Point    ///< where a device is connected to a network
};

/// The facts of a nameplate, in the order of its columns.
enum class QlumNameplate : unsigned char {
    Manufacturer,
    Model,
    SerialNumber,
    HardwareRevision,
    SoftwareRevision,
    DeviceRevision,
    RevisionCounter,
    ProductCode,
    DeviceClass,
    ProductInstanceUri,
    ManufacturerUri,
    AssetId,
    ComponentName,
    DeviceManual
};
/// As many.
inline constexpr std::size_t qlumNameplateCount = 14;

/// Nodes by their browse names.
using QlumDeviceParts = QMap<QString, UaNodeId>;

/// What the lock object of a device says.
struct QlumDeviceLockState
{
    bool isKnown = false; ///< it could be read
    bool isLocked = false;
    QString client;
    QString user;
    double remaining = 0; ///< ms
};

/// A row of the device tree.
struct QlumDevice
{
    UaNodeId id;
    UaNodeId type;
    QString name;      ///< for the user
    QString typeName;  ///< the same; may be empty
    QString pathNames; ///< browse names from the top, for whoever looks for the device again
    QlumDeviceKind kind = QlumDeviceKind::Device;
    int parent = -1; ///< place of the row above, which comes before; -1: at the top
    std::array<QString, qlumNameplateCount> nameplate;
    QlumDeviceHealth health = QlumDeviceHealth::Untold;
    UaNodeId healthId;            ///< variable; null where the device has none
    QlumDeviceParts parts;        ///< objects of the devices' namespace: ParameterSet, MethodSet, Lock...
    std::vector<UaNodeId> groups; ///< functional groups, in the order of the server
    QlumDeviceParts lockParts; ///< of the object Lock, its methods and properties; empty where there is none
    QlumDeviceParts transferParts; ///< the same of the object Transfer
    QlumDeviceLockState lock;
    UaByteString icon;       ///< its own or that of its type, as the server sent it; null for none
    QStringList connections; ///< names of what it is connected to
    QStringList missing;     ///< what a device must have and this one has not

    [[nodiscard]] const QString& fact(QlumNameplate field) const
    {
        return nameplate.at(static_cast<std::size_t>(field));
    }
    [[nodiscard]] bool has(const char* part) const { return parts.contains(QLatin1String(part)); }
};

/// All devices of a server.
struct QlumDeviceSpace
{
    UaStatus status;           ///< why there is nothing, where a call failed
    bool hasNamespace = false; ///< the server knows of device integration at all
    QStringList missing;       ///< what it should have and has not
    std::vector<QlumDevice> devices;
    double mostInactiveLockTime = 0; ///< ms; 0: the server does not tell
    bool isCut = false;              ///< there are more than are shown

    /// The row whose lock counts for the one given, which is itself or one above; -1 where nothing can be
    /// locked.
    [[nodiscard]] int lockOf(int device) const;
};

/// A parameter of a device.
struct QlumDeviceParameter
{
    UaNodeId id;
    QString namespaceUri; ///< of the browse name
    QString browseName;
    QString name;                                    ///< for the user
    QStringList groups;                              ///< names of the functional groups in which it stands
    bool isInSet = false;                            ///< is one of the ParameterSet
    std::shared_ptr<const QlumValueContext> context; ///< what its node says of values
    UaDataValue value;                               ///< as it was read
    bool hasDefault = false;
    UaVariant byType; ///< the value that the device's type has for it
};

/// A method of a device.
struct QlumDeviceMethod
{
    UaNodeId object; ///< on which it is called
    UaNodeId id;
    QString name;
    QStringList groups;
};

/// Something to look at that a device offers.
struct QlumDeviceDocument
{
    UaNodeId id; ///< of the variable or file; null for the manual, which the nameplate names
    QString name;
    QString folder;        ///< the part of the device in which it stands: "Documentation"
    QString address;       ///< of what lies elsewhere; else the server has the content
    bool isFile = false;   ///< content of a file object, not of a variable
    bool isOfType = false; ///< the device's type has it
};

/// What one device has.
struct QlumDeviceDetails
{
    UaStatus status;
    UaNodeId device;
    QStringList groups; ///< names, in the order of the server
    std::vector<QlumDeviceParameter> parameters;
    std::vector<QlumDeviceMethod> methods;
    std::vector<QlumDeviceDocument> documents;
    QStringList missing;
    bool isCut = false;
};
