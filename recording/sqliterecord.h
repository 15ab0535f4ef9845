// Recordings as SQLite files.
#pragma once

#include <recording/recordsink.h>

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <map>
#include <memory>
#include <optional>
#include <vector>

class QLockFile;

namespace recording {

/// One file with its write-ahead log beside. Another program may read it meanwhile, but not record to it.
/// What is committed outlives the death of the process; of a loss of power the file outlives it, and the last
/// seconds may be missing.
class SqliteRecord final : public RecordSink
{
public:
    /// Nothing happens to the file before open().
    explicit SqliteRecord(const QString& path);
    ~SqliteRecord() override;

    [[nodiscard]] bool open() override;
    [[nodiscard]] bool addItem(ItemNumber number, const RecordedItem& item) override;
    [[nodiscard]] bool write(const Portion& portion) override;
    [[nodiscard]] bool commit() override;
    void rollback() override;
    void close() override;
    [[nodiscard]] bool isIntact() override;
    void leaveFile() override;
    [[nodiscard]] bool keepWithin(const Bounds& bounds, OpcUa_DateTime now, Dropped& dropped) override;
    [[nodiscard]] qint64 size() override;
    [[nodiscard]] QString path() const override { return m_path; }
    [[nodiscard]] OpcUa_DateTime lastTime() override { return m_lastTime; }

private:
    [[nodiscard]] bool lock();
    [[nodiscard]] bool prepareFile();
    [[nodiscard]] bool knowFile();
    [[nodiscard]] bool begin();
    [[nodiscard]] bool run(const QString& statement);
    [[nodiscard]] bool execute(QSqlQuery& query);
    [[nodiscard]] bool failBy(const QSqlQuery& query);
    [[nodiscard]] bool writeRecords(const Portion& portion, std::size_t first, std::size_t last);
    [[nodiscard]] bool writeMark(const Mark& mark);
    [[nodiscard]] std::optional<qint64> number(const QString& statement);
    [[nodiscard]] bool dropPortion(qint64 lastId, Dropped& dropped);

    const QString m_firstPath;
    QString m_path;
    const QString m_connection;
    std::unique_ptr<QLockFile> m_lock;
    QSqlDatabase m_database;
    std::unique_ptr<QSqlQuery> m_one;
    std::unique_ptr<QSqlQuery> m_many;
    std::unique_ptr<QSqlQuery> m_mark;
    std::map<ItemNumber, ItemNumber> m_numbers; ///< ours -> the file's, which has items of former times
    qint64 m_lastId = 0;
    qint64 m_committedId = 0;
    OpcUa_DateTime m_lastTime{};
    quint64 m_inode = 0;
    qint64 m_knownSize = 0;
    bool m_isOpen = false; ///< a transaction
    bool m_isBroken = false;
};

/// What marks a file as a recording, and the version that this program writes.
constexpr int sqliteApplicationId = 0x54564c52;
constexpr int sqliteVersion = 1;

} // namespace recording
