// What a row of a data access view is: plain data, without widgets and services.
#pragma once
#include <app/api/qlumapplicationinterface.h>
#include <monitoring/watch.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_types.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatuscode.h>

#include <QString>

#include <limits>
#include <memory>

/// Changes below which a server is not to report a value.
enum class QlumDeadband : unsigned char {
    None,     ///< all are reported
    Absolute, ///< in units of the value
    Percent   ///< of the range that the node says it has
};

/// What counts as a change.
enum class QlumDataTrigger : unsigned char {
    Status,              ///< another status
    StatusValue,         ///< or another value
    StatusValueTimestamp ///< or another time of the source
};

/// How a row is watched, as the user asks for it.
struct QlumDataSettings
{
    double publishingInterval = 1000.0; ///< ms
    double samplingInterval = -1.0;     ///< ms; -1: as often as published, 0: as fast as the server can
    quint32 queueSize = 1;              ///< values kept at the server between two notifications
    bool discardOldest = true;          ///< when that is full
    QlumDeadband deadband = QlumDeadband::None;
    double deadbandValue = 0.0; ///< in the unit of the deadband
    QlumDataTrigger trigger = QlumDataTrigger::StatusValue;
    OpcUa_TimestampsToReturn timestamps = OpcUa_TimestampsToReturn_Both;
    OpcUa_MonitoringMode mode = OpcUa_MonitoringMode_Reporting;
    quint8 priority = 0;          ///< of its subscription; higher ones are sent first
    quint32 lifetimeCount = 1200; ///< publishing intervals
    double readInterval = 0.0;    ///< ms; above 0 the value is read so often instead of being watched

    /// Equal in all.
    bool operator==(const QlumDataSettings&) const = default;
};

/// Where a row is.
enum class QlumDataState : unsigned char {
    Unresolved,    ///< it names no node that is known; the problem says why
    NoServer,      ///< its server is not in the project
    NamespaceGone, ///< its server has no such namespace now
    Waiting,       ///< for a connection, or for its turn
    Watched,       ///< the server reports it
    Read,          ///< read again and again, since it is not to be watched or cannot be
    Refused        ///< the server does not watch it; the reason says why
};

/// A row: a variable, a part of one, or something that was to become one. There may be a hundred thousand, so
/// texts that many have in common are shared, and numbers stay numbers until they are painted.
struct QlumDataItem
{
    quint32 key = 0; ///< the row's name as long as it lives in its view; 0 before it is added

    // ---- what it shows
    unsigned int serverId = qlumNoServer;
    quint32 attributeId = OpcUa_Attributes_Value;
    UaNodeId nodeId;      ///< as the server calls it now; null for what does not resolve
    QString namespaceUri; ///< of that; empty while it is not known
    QString indexRange;   ///< of an array; empty for all of it
    QString fieldPath;    ///< of a structure, taken from its whole value here: "Pump.Speed"; empty for all
    QString displayName;  ///< of the node
    QString browsePath;   ///< below the Objects folder, "/Plant/Pump/Speed"; empty while it is not known
    UaNodeId dataType;    ///< of the whole value; null while it is not known
    QString dataTypeName; ///< for the user
    QString unit;         ///< for the user
    QString problem;      ///< of an unresolved row: why, with what the user has entered

    // ---- how it is watched
    std::shared_ptr<const QlumDataSettings> settings; ///< null: those of the view
    QlumDataState state = QlumDataState::Waiting;
    bool isWritable = true;         ///< false when the server says that the user may not write it
    bool awaitsFirst = true;        ///< no value has come since the server began to watch it
    monitoring::ItemId watched = 0; ///< the item of its server; 0 for none
    UaStatusCode reason;            ///< of the state Refused
    double revisedSampling = 0.0;   ///< ms; of a watched one
    quint32 revisedQueue = 0;       ///< the same

    // ---- what came
    UaDataValue value;           ///< the newest, as the server sent it
    OpcUa_DateTime received = 0; ///< by this computer; 0 before the first
    bool isFirst = true; ///< since the server began to watch it: what it was already, so its times may be old
    quint64 changes = 0; ///< values that came, also those that were not shown, since the last reset
    double minimum = std::numeric_limits<double>::quiet_NaN(); ///< since the last reset; NaN without a number
    double maximum = std::numeric_limits<double>::quiet_NaN(); ///< the same
};
