// What a recording consists of.
#pragma once

#include <opcua/opcua_builtintypes.h>
#include <uabase/values/uadatavalue.h>

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <cstddef>
#include <vector>

namespace recording {

/// 100 ns, as times have them.
constexpr OpcUa_Int64 ticksOfSecond = 10'000'000;

/// The number of an item in a recording, from 1 on.
using ItemNumber = OpcUa_UInt32;

/// What a recording says of an item: enough to read it elsewhere, without the server.
struct RecordedItem
{
    QString server;                ///< name, for people
    QString serverUrl;             ///< its endpoint
    QString nodeId;                ///< without namespace: "s=Pump.Speed"
    QString namespaceUri;          ///< of the node
    OpcUa_UInt32 attributeId = 13; ///< of the node; 13: its value
    QString indexRange;            ///< of an array; empty for all of it
    QString name;                  ///< for people
    QString path;                  ///< in the server; may be empty
    QString dataType;              ///< for people; may be empty
    QString unit;                  ///< may be empty
    QString settings;              ///< how it was watched

    /// Equal in what makes it the same item when a recording is continued.
    [[nodiscard]] bool isSame(const RecordedItem& other) const
    {
        return server == other.server && nodeId == other.nodeId && namespaceUri == other.namespaceUri &&
               attributeId == other.attributeId && indexRange == other.indexRange;
    }
};

/// A value as it came.
struct Record
{
    ItemNumber item = 0;             ///< of the recording
    OpcUa_UInt32 sequenceNumber = 0; ///< of its notification message; 0: not known
    OpcUa_DateTime received{};       ///< by the recording computer
    UaDataValue value;               ///< with status and times of the server
};

/// What is recorded besides values, in the same order.
enum class MarkKind : unsigned char {
    Started,          ///< items are recorded from now on
    Stopped,          ///< no longer, as the user wished
    Gap,              ///< nothing was recorded from one time to another
    ConnectionLost,   ///< what happens until it is back arrives late or never
    ConnectionBack,   ///< of the same session
    SessionNew,       ///< items are created anew; what happened in between is lost
    SubscriptionLost, ///< the server has ended one
    Missing,          ///< notification messages that did not arrive
    Republished,      ///< one that arrived late: its values follow
    ItemWatched,      ///< the server reports the item
    ItemRefused,      ///< it does not
    ItemWaiting,      ///< its server is not connected, or has to be asked again
    Overflow,         ///< the server's queue of an item lost values before the next one
    Lost,             ///< this program was too slow, or could not write
    Paused,           ///< nothing is written
    Resumed,          ///< it is written again
    ClockStep,        ///< the clock of this computer was set, or the computer slept
    FileTrouble,      ///< writing failed, or the file was taken away
    OldDropped,       ///< the oldest records were deleted, as the user has bounded them
    Note              ///< typed by the user
};

/// One of them.
struct Mark
{
    MarkKind kind = MarkKind::Note;
    OpcUa_DateTime time{};            ///< of this computer
    QString server;                   ///< name; empty for all
    ItemNumber item = 0;              ///< 0 for all
    OpcUa_UInt64 count = 0;           ///< values or messages that it is about
    OpcUa_DateTime from{}, to{};      ///< 0 where there is none
    OpcUa_UInt32 first = 0, last = 0; ///< sequence numbers
    OpcUa_StatusCode status = 0;      ///< why
    QString text;                     ///< for people; may be empty
};

/// Records and marks in their order.
struct Portion
{
    /// A mark and where it stands.
    struct Placed
    {
        std::size_t place = 0; ///< of the record before which it stands
        Mark mark;
    };
    std::vector<Record> records;
    std::vector<Placed> marks; ///< by place

    [[nodiscard]] bool isEmpty() const { return records.empty() && marks.empty(); }
    void clear()
    {
        records.clear();
        marks.clear();
    }
    /// Behind everything that is there.
    void add(const Mark& mark) { marks.push_back({records.size(), mark}); }
};

/// The kind as it stands in files: one word, never translated.
[[nodiscard]] QString markWord(MarkKind kind);
/// The reverse; Note for a word that is none.
[[nodiscard]] MarkKind markKind(const QString& word);

/// "2026-11-22T18:30:00.1234567Z"; empty for 0.
[[nodiscard]] QByteArray isoTime(OpcUa_DateTime time);

} // namespace recording
