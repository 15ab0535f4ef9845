// What a row of a data access view is: plain data, without widgets and services.
#pragma once
#include <app/api/qlumapplicationinterface.h>
#include <monitoring/watch.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_types.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatuscode.h>
#include <watching/qlumwatchsettings.h>

#include <QString>

#include <limits>
#include <memory>

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
    unsigned int serverId = qlumNoServer;

    // ---- what each value touches: side by side, since of 50,000 rows hardly one is in the cache
    QlumDataState state = QlumDataState::Waiting;
    bool isWritable = true;  ///< false when the server says that the user may not write it
    bool awaitsFirst = true; ///< no value has come since the server began to watch it
    bool isFirst = true; ///< since the server began to watch it: what it was already, so its times may be old
    monitoring::ItemId watched = 0; ///< the item of its server; 0 for none
    OpcUa_DateTime received = 0;    ///< by this computer; 0 before the first
    quint64 changes = 0; ///< values that came, also those that were not shown, since the last reset
    double minimum = std::numeric_limits<double>::quiet_NaN(); ///< since the last reset; NaN without a number
    double maximum = std::numeric_limits<double>::quiet_NaN(); ///< the same
    QString indexRange;                                        ///< of an array; empty for all of it
    QString fieldPath; ///< of a structure, taken from its whole value here: "Pump.Speed"; empty for all
    UaDataValue value; ///< the newest, as the server sent it

    // ---- what it shows besides
    quint32 attributeId = OpcUa_Attributes_Value;
    UaStatusCode reason;  ///< of the state Refused
    UaNodeId nodeId;      ///< as the server calls it now; null for what does not resolve
    QString namespaceUri; ///< of that; empty while it is not known
    QString displayName;  ///< of the node
    QString browsePath;   ///< below the Objects folder, "/Plant/Pump/Speed"; empty while it is not known
    UaNodeId dataType;    ///< of the whole value; null while it is not known
    QString dataTypeName; ///< for the user
    QString unit;         ///< for the user
    QString problem;      ///< of an unresolved row: why, with what the user has entered

    // ---- how it is watched
    std::shared_ptr<const QlumDataSettings> settings; ///< null: those of the view
    double revisedSampling = 0.0;                     ///< ms; of a watched one
    quint32 revisedQueue = 0;                         ///< the same
};
