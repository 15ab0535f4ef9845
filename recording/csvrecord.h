// Recordings as CSV files.
#pragma once

#include <recording/recordsink.h>

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QStringList>

#include <map>
#include <memory>
#include <vector>

namespace recording {

/// When a CSV recording goes on in another file.
struct Rotation
{
    qint64 bytes = 0;   ///< 0: never for its size
    qint64 seconds = 0; ///< 0: never for its age
};

/// Rows of RFC 4180 in UTF-8, times in UTC: records and marks in one table. Not for threads.
class CsvRows
{
public:
    /// With its line end.
    [[nodiscard]] static QByteArray heading();
    /// From now on this item has that number.
    void addItem(ItemNumber number, const RecordedItem& item);
    /// Appends the rows.
    void append(QByteArray& text, const Portion& portion) const;
    void append(QByteArray& text, const Record& record) const;
    void append(QByteArray& text, const Mark& mark) const;

private:
    std::map<ItemNumber, QByteArray> m_items; ///< their cells, quoted
};

/// One file after the other, never one that is there already: the name gets the time at which it begins.
class CsvRecord final : public RecordSink
{
public:
    /// "pump.csv" becomes "pump_20261122T183000Z.csv".
    CsvRecord(const QString& path, const Rotation& rotation);
    ~CsvRecord() override;

    [[nodiscard]] bool open() override;
    [[nodiscard]] bool addItem(ItemNumber number, const RecordedItem& item) override;
    [[nodiscard]] bool write(const Portion& portion) override;
    [[nodiscard]] bool commit() override;
    void rollback() override;
    void close() override;
    [[nodiscard]] bool isIntact() override;
    void leaveFile() override {}
    [[nodiscard]] bool keepWithin(const Bounds& bounds, OpcUa_DateTime now, Dropped& dropped) override;
    [[nodiscard]] qint64 size() override;
    [[nodiscard]] QString path() const override { return m_file ? m_file->fileName() : m_path; }

private:
    [[nodiscard]] bool openNext();
    [[nodiscard]] bool writeOut();
    [[nodiscard]] bool isRotationDue() const;

    const QString m_path;
    const Rotation m_rotation;
    CsvRows m_rows;
    QByteArray m_buffer;
    std::unique_ptr<QFile> m_file;
    OpcUa_UInt64 m_uncommitted = 0; ///< records
    qint64 m_committed = 0;         ///< bytes
    qint64 m_written = 0;           ///< bytes, with those that are not committed
    quint64 m_inode = 0;
    OpcUa_DateTime m_begun{};
    /// Files of this recording, oldest first, with the times and counts of what is in them.
    struct Piece
    {
        QString path;
        OpcUa_UInt64 records = 0;
        OpcUa_DateTime from{}, to{};
    };
    std::vector<Piece> m_pieces;
};

} // namespace recording
