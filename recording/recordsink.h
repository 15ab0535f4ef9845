// Where a recording is written.
#pragma once

#include <recording/recordtypes.h>

#include <QString>

namespace recording {

/// How much of the past is kept. The oldest goes first, and a mark says so.
struct Bounds
{
    qint64 bytes = 0;   ///< 0: as much as there is room for
    qint64 seconds = 0; ///< 0: for ever
};

/// What was deleted to keep within the bounds.
struct Dropped
{
    OpcUa_UInt64 records = 0;
    OpcUa_DateTime from{}, to{}; ///< reception of the first and the last
};

/// One recording. All calls come from one thread. What fails returns false with a reason in error(), for
/// people; what was written since the last commit is then written again after rollback(), or after close()
/// and open().
class RecordSink
{
public:
    RecordSink() = default;
    virtual ~RecordSink() = default;
    RecordSink(const RecordSink&) = delete;
    RecordSink& operator=(const RecordSink&) = delete;

    /// Begins a recording, or goes on with the one that is there.
    [[nodiscard]] virtual bool open() = 0;
    /// Has this item under this number. Part of what is committed next.
    [[nodiscard]] virtual bool addItem(ItemNumber number, const RecordedItem& item) = 0;
    /// Part of what is committed next.
    [[nodiscard]] virtual bool write(const Portion& portion) = 0;
    /// What was written is safe from now on, if this process is killed.
    [[nodiscard]] virtual bool commit() = 0;
    /// What was written since the last commit is not.
    virtual void rollback() = 0;
    /// Without what is not committed.
    virtual void close() = 0;

    /// Whether the file is still the one that was opened.
    [[nodiscard]] virtual bool isIntact() = 0;
    /// Goes to another file, since this one was taken away or is broken. Closed before and afterwards.
    virtual void leaveFile() = 0;
    /// Deletes the oldest until it is within the bounds, a portion at a time. After a commit.
    [[nodiscard]] virtual bool keepWithin(const Bounds& bounds, OpcUa_DateTime now, Dropped& dropped) = 0;

    [[nodiscard]] virtual qint64 size() = 0;        ///< bytes of all its files
    [[nodiscard]] virtual QString path() const = 0; ///< of the file that is written
    [[nodiscard]] virtual OpcUa_DateTime lastTime()
    {
        return 0;
    } ///< of what was recorded before open(); 0: nothing
    [[nodiscard]] const QString& error() const { return m_error; } ///< of the last call that failed

protected:
    bool fail(const QString& why)
    {
        m_error = why;
        return false;
    }

private:
    QString m_error;
};

} // namespace recording
