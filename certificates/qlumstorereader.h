// Reads the files of a store away from the GUI thread: thousands of them must not hold up a window.
#pragma once
#include <app/api/qlumjob.h>

#include <QString>
#include <QStringList>
#include <QtGlobal>

#include <functional>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

/// What was read and waits for the GUI thread.
template <typename Entry>
class QlumStoreInbox
{
public:
    void put(std::vector<Entry>& portion)
    {
        const std::lock_guard lock(m_mutex);
        for (Entry& entry : portion)
            m_entries.push_back(std::move(entry));
        portion.clear();
    }
    [[nodiscard]] std::vector<Entry> take()
    {
        const std::lock_guard lock(m_mutex);
        return std::exchange(m_entries, {});
    }

private:
    std::mutex m_mutex;
    std::vector<Entry> m_entries;
};

/// One folder, and how entries are made of a file in it.
template <typename Entry>
struct QlumStoreSource
{
    std::function<QStringList()> names;
    std::function<std::vector<Entry>(const QString& name)> read;
};

/// Fills the inbox in portions and tells of each; notify is called on the pool's thread.
template <typename Entry>
class QlumStoreReader : public QlumJob
{
public:
    QlumStoreReader(std::vector<QlumStoreSource<Entry>> sources, std::shared_ptr<QlumStoreInbox<Entry>> inbox,
                    std::function<void()> notify)
        : m_sources(std::move(sources)), m_inbox(std::move(inbox)), m_notify(std::move(notify))
    {
    }

    void run() override
    {
        constexpr std::size_t portionSize = 250;
        std::vector<Entry> portion;
        std::vector<QStringList> names;
        qint64 total = 0;
        for (const QlumStoreSource<Entry>& source : m_sources)
            total += names.emplace_back(source.names()).size();
        qint64 done = 0;
        for (std::size_t i = 0; i < m_sources.size(); ++i)
            for (const QString& name : qAsConst(names[i])) {
                if (isCancelled())
                    return handOver(portion);
                for (Entry& entry : m_sources[i].read(name))
                    portion.push_back(std::move(entry));
                if (portion.size() >= portionSize)
                    handOver(portion);
                setProgress(++done, total);
            }
        handOver(portion);
    }

private:
    void handOver(std::vector<Entry>& portion)
    {
        m_inbox->put(portion);
        m_notify();
    }

    std::vector<QlumStoreSource<Entry>> m_sources;
    std::shared_ptr<QlumStoreInbox<Entry>> m_inbox;
    std::function<void()> m_notify;
};
