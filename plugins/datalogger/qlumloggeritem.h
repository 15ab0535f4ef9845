// What a data logger view records: plain data.
#pragma once
#include <app/api/qlumapplicationinterface.h>
#include <monitoring/watch.h>
#include <recording/recorder.h>
#include <recording/recordtypes.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatuscode.h>
#include <watching/qlumwatchsettings.h>

#include <QString>

#include <memory>

/// Where an item of a data logger is.
enum class QlumLoggerState : unsigned char {
    Off,           ///< not to be recorded
    Ready,         ///< it is, once recording starts
    NoServer,      ///< its server is not in the project
    NamespaceGone, ///< its server has no such namespace now
    Waiting,       ///< for its server
    Recorded,      ///< the server reports it
    Refused        ///< the server does not
};

/// An item.
struct QlumLoggerItem
{
    quint32 key = 0; ///< of the row, as long as it lives
    unsigned int serverId = qlumNoServer;
    UaNodeId nodeId;      ///< as the server calls it now
    QString namespaceUri; ///< of that; empty while it is not known
    QString name;
    QString path;
    QString dataType;
    QString unit;
    std::shared_ptr<const QlumDataSettings> settings; ///< null: those of the view
    bool isOn = true;                                 ///< recorded when recording runs

    // ---- while it is recorded
    monitoring::ItemId watched = 0;   ///< 0: it is not
    recording::ItemNumber number = 0; ///< of the recording; 0: none yet
    QlumLoggerState state = QlumLoggerState::Ready;
    UaStatusCode why; ///< it is refused
    recording::ItemFigures figures;
};

/// Where and how a data logger records.
struct QlumLoggerSetup
{
    /// Kinds of files.
    enum Kind { Sqlite, Csv };

    Kind kind = Sqlite;
    QString path;            ///< absolute
    double freeFloor = 1024; ///< MB of free space below which nothing is written
    double rotateBytes = 0;  ///< MB of a CSV file; 0: never
    double rotateHours = 0;  ///< of a CSV file; 0: never
    double keepBytes = 0;    ///< MB; 0: all
    double keepDays = 0;     ///< 0: for ever
    bool startsWithProject = false;

    /// Equal in all.
    bool operator==(const QlumLoggerSetup&) const = default;
};
