#pragma once
#include <app/log/qlumlogentry.h>
#include <uawidgets/models/qlumtablemodel.h>

#include <QObject>
#include <QString>
#include <QVariant>

#include <atomic>
#include <memory>

class QTextStream;

/// Rows of the log window, the newest last. Entries may come from any thread by addLog(); they are gathered
/// and inserted at most twenty times a second, so that a flood does not stop the window.
class QlumLogModel : public QlumTableModel<QlumLogEntry>
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
    /// Whether the row says the same as the one before it, but for the time.
    [[nodiscard]] bool isRepeated(int row) const;
    void clear();
    /// One line for each entry: time, source, server, message.
    void save(QTextStream& stream);

public slots:
    /// Inserts what has been gathered.
    void sltFlush() { flush(); }

signals:
    void newLog(QlumLogEntry* entry);

private slots:
    void internalAddLog(QlumLogEntry* entry);

protected:
    QVariant cell(const QlumLogEntry& entry, int column, int role) const override;
    void flush() override;

private:
    void tellFirst();

    std::atomic<int> m_underWay{0};
    std::atomic<int> m_dropped{0};
    bool m_showDate = false;
};
