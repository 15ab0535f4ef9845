// Reads recordings, wherever they were made.
#pragma once

#include <recording/recordtypes.h>

#include <QSqlDatabase>
#include <QString>

#include <functional>
#include <vector>

class QSqlQuery;

namespace recording {

/// An SQLite recording, also one that is being written. Without its server. Belongs to one thread, and blocks
/// as long as the disk does.
class RecordReader
{
public:
    RecordReader();
    ~RecordReader();
    RecordReader(const RecordReader&) = delete;
    RecordReader& operator=(const RecordReader&) = delete;

    /// False, with a reason for people in error(), for what is no recording.
    [[nodiscard]] bool open(const QString& path);
    [[nodiscard]] const QString& error() const { return m_error; } ///< of the last call that failed

    /// An item and how much there is of it.
    struct Item
    {
        ItemNumber number = 0;
        RecordedItem item;
        OpcUa_UInt64 records = 0;
        OpcUa_DateTime first{}, last{}; ///< reception; 0 without records
    };
    /// All of them, by number.
    [[nodiscard]] bool items(std::vector<Item>& found);
    /// What was received in this time, from and to included, in the order of reception, at most so many.
    [[nodiscard]] bool read(ItemNumber item, OpcUa_DateTime from, OpcUa_DateTime to, std::size_t most,
                            std::vector<Record>& found);
    /// Marks of this time, the newest first, at most so many.
    [[nodiscard]] bool marks(OpcUa_DateTime from, OpcUa_DateTime to, std::size_t most,
                             std::vector<Mark>& found);
    /// Everything of this time in the order in which it was recorded, in portions; only some items, unless
    /// there are none. Ends when the visitor answers false.
    [[nodiscard]] bool visit(OpcUa_DateTime from, OpcUa_DateTime to, const std::vector<ItemNumber>& items,
                             const std::function<bool(const Portion&)>& visitor);
    /// Whether the file is whole; slow.
    [[nodiscard]] bool check();

private:
    [[nodiscard]] bool run(QSqlQuery& query);
    [[nodiscard]] bool fail(const QString& why);
    void close();

    const QString m_connection;
    QSqlDatabase m_database;
    QString m_path;
    QString m_error;
};

} // namespace recording
