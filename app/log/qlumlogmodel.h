#pragma once
#include <app/log/qlumlogentry.h>

#include <QAbstractTableModel>
#include <QModelIndex>
#include <QObject>
#include <QString>
#include <QTimer>
#include <QVariant>

#include <atomic>
#include <deque>
#include <memory>

class QTextStream;

/// Rows of the log window, the newest last. Entries may come from any thread by addLog(); they are gathered
/// and inserted at most twenty times a second, so that a flood does not stop the window.
class QlumLogModel : public QAbstractTableModel
{
    Q_OBJECT
public:
    enum Column { Timestamp, Source, Server, Message, ColumnCount };
    /// Role that gives the level of a row as int.
    static constexpr int levelRole = Qt::UserRole + 1;

    explicit QlumLogModel(QObject* parent = nullptr);
    ~QlumLogModel() override;

    /// Any thread. When more entries wait than the window could ever show, the entry is only counted.
    void addLog(std::unique_ptr<QlumLogEntry> entry);

    /// The maximum number of entries kept, never below 1; the oldest are dropped first.
    void setMaxEntries(int count);
    void setShowDate(bool show);
    void clear();
    /// One line for each entry: time, source, server, message.
    void save(QTextStream& stream);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

public slots:
    /// Inserts what has been gathered.
    void sltFlush();

signals:
    void newLog(QlumLogEntry* entry);

private slots:
    void internalAddLog(QlumLogEntry* entry);

private:
    void addDroppedNote();
    void trimTo(std::size_t rows);

    std::deque<QlumLogEntry> m_entries;
    std::deque<QlumLogEntry> m_gathered;
    std::atomic<int> m_underWay{0};
    std::atomic<int> m_dropped{0};
    std::size_t m_maxEntries = 10000;
    QString m_timeFormat;
    QTimer m_flushTimer;
};
