// Records what comes of watched items.
#pragma once

#include <monitoring/allsink.h>
#include <recording/recordsink.h>
#include <recording/recordtypes.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uastatuscode.h>

#include <QString>

#include <functional>
#include <memory>
#include <vector>

namespace recording {

class RecorderWork;

/// What the recorder asks of its surroundings; tests have others.
struct Surroundings
{
    std::function<OpcUa_DateTime()> now;             ///< the clock of the computer
    std::function<OpcUa_Int64()> steady;             ///< ms, never set
    std::function<qint64(const QString&)> freeBytes; ///< where this file is; below 0: not known

    /// Those of this computer.
    [[nodiscard]] static Surroundings usual();
};

/// How it is recorded.
struct RecorderSettings
{
    qint64 freeFloor = 1LL << 30;      ///< bytes of free space below which nothing is written
    Bounds bounds;                     ///< of what is kept
    monitoring::AllSink::Record queue; ///< of each source
    int commitInterval = 500;          ///< ms
};

/// Where a recorder is.
enum class RecorderState : unsigned char {
    Idle,      ///< not begun, or ended
    Recording, ///< what comes is written
    NoSpace,   ///< it waits for room; what comes is kept as long as the queue lasts
    Failing    ///< writing fails and is tried again and again
};

/// All of it at a moment.
struct RecorderStatus
{
    RecorderState state = RecorderState::Idle;
    OpcUa_DateTime since{};    ///< the start
    OpcUa_UInt64 records = 0;  ///< written since then
    OpcUa_UInt64 marks = 0;    ///< the same
    OpcUa_UInt64 lost = 0;     ///< values that are not in the recording because of this program
    OpcUa_UInt64 dropped = 0;  ///< old ones that were deleted to keep within the bounds
    std::size_t queued = 0;    ///< values that wait
    std::size_t queueSize = 0; ///< as many may
    qint64 bytes = 0;          ///< of the files
    qint64 freeBytes = -1;     ///< where they are; below 0: not known
    OpcUa_DateTime lastCommit{};
    QString path;
    QString error; ///< the last one; it stays after it is over
    OpcUa_DateTime errorTime{};
};

/// News of an item.
struct ItemFigures
{
    ItemNumber item = 0;
    OpcUa_UInt64 records = 0;   ///< since the start
    OpcUa_UInt64 overflows = 0; ///< of the server's queue
    OpcUa_UInt64 gaps = 0;      ///< marks of its own or of its server that say that something is missing
    OpcUa_DateTime received{};  ///< the last one
    UaDataValue value;          ///< the same
    monitoring::ItemState state = monitoring::ItemState::Waiting; ///< as its server has told
    UaStatusCode why;                                             ///< it is refused
};

/// Owns a thread that takes what the sources of servers hold and writes it. Who fills a source never waits
/// for it. What cannot be written stays in the sources until they are full; then the oldest is lost, and a
/// mark says how much and of what time. Any thread may call.
class Recorder
{
public:
    /// Does nothing before start().
    Recorder(std::unique_ptr<RecordSink> sink, const RecorderSettings& settings,
             Surroundings surroundings = Surroundings::usual());
    ~Recorder(); ///< stops
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

    /// The sink for items of a server, whose keys are numbers of addItem(). One for each server.
    [[nodiscard]] std::shared_ptr<monitoring::AllSink> source(const QString& server);
    /// Gives the next number. What comes of it is recorded with what is said here.
    [[nodiscard]] ItemNumber addItem(const RecordedItem& item);

    /// Opens the file in the background; what fails is in the status.
    void start();
    /// Writes what is there, marks that it ends, and closes the file. Blocks, for as long as that takes.
    void stop();
    /// A mark of the caller's, in its place among what has come so far.
    void mark(const Mark& mark);
    /// Waits until everything that had come is committed; false when it is not within the time.
    [[nodiscard]] bool flush(int milliseconds);

    [[nodiscard]] RecorderStatus status() const;
    /// Of items that something has come of since the last call.
    [[nodiscard]] std::vector<ItemFigures> takeFigures();

private:
    std::unique_ptr<RecorderWork> d;
};

} // namespace recording
