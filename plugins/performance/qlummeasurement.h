// What is to be measured, and what has come of it.
#pragma once
#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumtoolservices.h>
#include <opcua/opcua_types.h>
#include <plugins/performance/qlumfigures.h>
#include <plugins/performance/qlumsamplelog.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uavariant.h>

#include <QDateTime>
#include <QString>
#include <QStringList>
#include <QtGlobal>

#include <memory>
#include <vector>

/// What is measured. The numbers are in project files.
enum class QlumMeasuredKind {
    Read = 0,           ///< the Value of nodes
    Write = 1,          ///< of the values that were just read
    Browse = 2,         ///< the references of nodes
    TranslatePaths = 3, ///< from a node to its first child
    ReadRegistered = 4, ///< Read of nodes that were registered before
    Call = 5,           ///< of a method
    Session = 6,        ///< opening a session and closing it
    MonitoredItems = 7, ///< creating items and deleting them
    Notifications = 8   ///< from a value's time stamp to its arrival
};

/// For the user: "Read".
[[nodiscard]] QString qlumMeasuredName(QlumMeasuredKind kind);

/// What a run does.
struct QlumMeasurementPlan
{
    QlumMeasuredKind kind = QlumMeasuredKind::Read;
    unsigned int serverId = qlumNoServer;
    std::vector<QlumToolNode> nodes = {};               ///< taken in turn until a call is full
    std::vector<UaVariant> values = {};                 ///< for Write: what stands in each node
    std::vector<std::vector<UaVariant>> arguments = {}; ///< for Call: of each method; none: without any
    quint32 nodesPerCall = 1; ///< at least 1; of Call the number of calls in a request
    quint32 calls = 1000;     ///< 0: as many as the duration allows
    quint32 seconds = 0;      ///< 0: as long as the calls take
    quint32 pause = 0;        ///< ms between the calls of one lane
    quint32 outstanding = 1;  ///< calls under way at once, each in a lane of its own
    quint32 timeout = 10000;  ///< ms
    quint32 warmUp = 20;      ///< calls of each lane before it is measured
};

/// How a run ended.
enum class QlumRunEnd {
    Done,
    Cancelled, ///< by the user; what was measured before counts
    Broken     ///< the connection was lost, or nothing could be measured
};

/// A run: a value that its views share.
struct QlumMeasurementRun
{
    QString name;     ///< the user's; made from the plan at first
    QString server;   ///< name of the server
    QString endpoint; ///< its URL, or policy and mode where these were compared
    QDateTime begun;  ///< when
    QlumMeasurementPlan plan;
    QlumRunEnd end = QlumRunEnd::Done;
    QStringList remarks; ///< what the user has to know to believe the figures
    QlumFigures figures;
    std::shared_ptr<const QlumSampleLog> samples; ///< null for a run of an earlier start of the program
};
