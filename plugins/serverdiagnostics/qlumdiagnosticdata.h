// What is read of a server's diagnostics, on its way from the job to the view.
#pragma once
#include <opcua/opcua_types.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/operationlimits.h>

#include <QString>
#include <QStringList>

#include <chrono>
#include <vector>

/// When something was read, for rates.
using QlumDiagnosticClock = std::chrono::steady_clock;

/// The rows about the server.
struct QlumServerReading
{
    UaStatus status;                      ///< of the call
    std::vector<UaDataValue> values;      ///< in the order of qlumServerRows(); empty without an answer
    UaDataValue isEnabled;                ///< whether the server counts at all
    QStringList stateNames;               ///< of ServerState, by number; empty where the server has none
    QStringList redundancyNames;          ///< the same of RedundancySupport
    UaClientSdk::OperationLimits limits;  ///< that the session keeps to
    OpcUa_UInt32 longestArray = 0;        ///< that this program sends or takes; 0: not known
    OpcUa_UInt32 longestString = 0;       ///< the same
    QlumDiagnosticClock::time_point time; ///< when the answer came
};

/// A session of the server, as far as it tells.
struct QlumSessionRow
{
    QString key;                      ///< by which it is found again
    UaNodeId objectId;                ///< of its diagnostics object; null for none
    UaNodeId sessionId;               ///< null when it is not known
    QString name;                     ///< of the session
    QString applicationName;          ///< of its client
    QString applicationUri;           ///< of its client
    QString endpointUrl;              ///< that the client has used
    UaDateTime connected;             ///< since when
    UaDateTime lastContact;           ///< last request
    double timeout = 0;               ///< ms
    OpcUa_UInt32 subscriptions = 0;   ///< now
    OpcUa_UInt32 items = 0;           ///< now
    OpcUa_UInt32 publishRequests = 0; ///< that wait
    OpcUa_UInt32 requests = 0;        ///< so far
    OpcUa_UInt32 errors = 0;          ///< of these
    OpcUa_UInt32 unauthorized = 0;    ///< of these
    double requestRate = -1;          ///< a second, since it was read last; negative: not known
    QString user;                     ///< who has logged in
    QString securityMode;             ///< by name
    QString securityPolicy;           ///< without the part that all have
    bool isOwn = false;               ///< the session that asks
    double silence = -1;           ///< s without a contact, of a session that looks forgotten; else negative
    UaExtensionObject diagnostics; ///< null where they are not known
    UaExtensionObject security;    ///< the same
};

/// The sessions of a server.
struct QlumSessionReading
{
    UaStatus status;                      ///< bad: there is nothing
    std::vector<QlumSessionRow> rows;     ///< as the server has them
    QString hint;                         ///< what is wrong with the list, in words; empty for nothing
    QlumDiagnosticClock::time_point time; ///< when the answer came
};

/// A subscription of the server, as far as it tells.
struct QlumSubscriptionRow
{
    QString key;                     ///< by which it is found again
    UaNodeId nodeId;                 ///< of its diagnostics; null for none
    UaNodeId sessionId;              ///< null for one without a session
    QString name;                    ///< its number
    QString sessionName;             ///< empty when it is not known
    OpcUa_UInt32 id = 0;             ///< 0 when it is not known
    OpcUa_UInt32 priority = 0;       ///< the higher, the sooner
    double interval = 0;             ///< ms
    bool isPublishing = false;       ///< or silent
    OpcUa_UInt32 items = 0;          ///< now
    OpcUa_UInt32 disabledItems = 0;  ///< of these
    OpcUa_UInt32 notifications = 0;  ///< so far
    OpcUa_UInt32 unacknowledged = 0; ///< messages that are kept
    OpcUa_UInt32 discarded = 0;      ///< messages that are lost
    OpcUa_UInt32 late = 0;           ///< times without a publish request
    OpcUa_UInt32 overflows = 0;      ///< of queues of items
    double notificationRate = -1;    ///< a second, since it was read last; negative: not known
    bool isOwn = false;              ///< of the session that asks

    UaExtensionObject diagnostics; ///< null where they are not known
};

/// The subscriptions of a server.
struct QlumSubscriptionReading
{
    UaStatus status;                       ///< bad: there is nothing
    std::vector<QlumSubscriptionRow> rows; ///< as the server has them
    QString hint;                          ///< what is wrong with the list, in words; empty for nothing
    QlumDiagnosticClock::time_point time;  ///< when the answer came
};

/// The rows about one session or subscription; a node that is not there has BadNodeIdUnknown.
struct QlumDetailReading
{
    std::vector<UaDataValue> values;      ///< in the order of the rows
    std::vector<UaDataValue> security;    ///< of a session: those of its security
    QlumDiagnosticClock::time_point time; ///< when the answer came
};

/// What FindServers and GetEndpoints have answered.
struct QlumEndpointReading
{
    QString url;                       ///< that was asked
    UaStatus serversStatus;            ///< of FindServers
    UaApplicationDescriptions servers; ///< its answer
    UaStatus endpointsStatus;          ///< of GetEndpoints
    UaEndpointDescriptions endpoints;  ///< its answer
};
