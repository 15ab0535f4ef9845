// What is to be read from the history of one server, and what came of it.
#pragma once
#include <app/api/qlumapplicationinterface.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uawidgets/plot/qlumsamplestore.h>

#include <QList>
#include <QString>
#include <QtGlobal>

#include <vector>

/// Keys of targets from here on are not those of items, but of what is read besides their raw values.
inline constexpr int firstExtraKey = 1 << 28;

/// A node whose history is read.
struct QlumHistoryTarget
{
    int key = 0;            ///< of the curve that it is for
    UaNodeId nodeId;        ///< as the server knows it
    UaNodeId aggregate;     ///< for processed values
    UaDateTime resumeAt;    ///< a read that ended early goes on at this time; null for a new one
    quint64 resumeSkip = 0; ///< values of that time that are there already
};

/// One request, with all that continue it.
struct QlumHistoryPlan
{
    /// Which values are read.
    enum Kind {
        Raw,      ///< as they were recorded, or as they were before somebody changed them
        Processed ///< aggregates
    };

    unsigned int serverId = qlumNoServer;   ///< whose history
    Kind kind = Raw;                        ///< which values
    std::vector<QlumHistoryTarget> targets; ///< of that server
    UaDateTime start;                       ///< later than the end: newest first
    UaDateTime end;                         ///< see start
    OpcUa_UInt32 valuesPerNode = 0;         ///< in one answer; 0: all
    bool returnBounds = false; ///< raw values only, and only where no modified ones are asked for
    bool readModified = false; ///< raw values only
    int maximumNextCalls = 0;  ///< after so many the rest is left
    quint64 maximumValues = 0; ///< of one node, the same; 0: any number
    double interval = 0;       ///< of processed values; ms
    OpcUa_AggregateConfiguration aggregateConfiguration{OpcUa_True, OpcUa_False, 0, 0,
                                                        OpcUa_False}; ///< of them
};

/// How the read of one target has ended.
struct QlumHistoryOutcome
{
    int key = 0;          ///< of the target
    UaStatus status;      ///< of the last answer
    quint64 count = 0;    ///< values that came
    UaDateTime last;      ///< time of the last one; null for none
    quint64 atLast = 0;   ///< values of that time
    bool hasMore = false; ///< there was more, and it was not read
};

/// A value that no curve can show.
struct QlumHistoryText
{
    UaDateTime source; ///< null: the server did not say
    UaDateTime server; ///< the same
    QString value;     ///< for the user
};

/// A value as it was before somebody changed it.
struct QlumModifiedValue
{
    UaDateTime source;                                             ///< of the value
    UaDateTime server;                                             ///< of the value
    QString value;                                                 ///< for the user
    OpcUa_StatusCode status = 0;                                   ///< of the value
    UaDateTime changed;                                            ///< when somebody changed it
    OpcUa_HistoryUpdateType what = OpcUa_HistoryUpdateType_Insert; ///< what was done
    QString user;                                                  ///< who did it; empty where nobody said
};

/// What one answer holds of one node.
struct QlumHistoryBatch
{
    int key = 0;                             ///< of the target
    std::vector<QlumSample> samples;         ///< for a curve
    std::vector<QlumHistoryText> texts;      ///< for a table
    std::vector<QlumModifiedValue> modified; ///< for another
    quint64 count = 0;                       ///< values of the answer, shown or not
    bool hasUnknown = false;                 ///< some can be shown by neither
};
