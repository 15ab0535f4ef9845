// Values that come as from a server, a sink that fails when it is told to, and what is in files afterwards.
#pragma once

#include <monitoring/allsink.h>
#include <recording/recorder.h>
#include <recording/recordreader.h>
#include <recording/recordsink.h>
#include <tests/support/temporaryfolder.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uavariant.h>

#include <QString>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <limits>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

/// Stands before a real sink.
class FaultySink : public recording::RecordSink
{
public:
    struct Faults
    {
        std::atomic<int> opens{0}, writes{0}, commits{0}; ///< that fail from now on
        std::atomic<bool> isStuck{false};                 ///< writing does not come back
    };

    FaultySink(std::unique_ptr<recording::RecordSink> real, std::shared_ptr<Faults> faults)
        : m_real(std::move(real)), m_faults(std::move(faults))
    {
    }

    bool open() override { return !takeFault(m_faults->opens) && pass(m_real->open()); }
    bool addItem(recording::ItemNumber number, const recording::RecordedItem& item) override
    {
        return pass(m_real->addItem(number, item));
    }
    bool write(const recording::Portion& portion) override
    {
        while (m_faults->isStuck)
            std::this_thread::yield();
        const bool isDone = pass(m_real->write(portion)); // a fault may come in the middle
        return !takeFault(m_faults->writes) && isDone;
    }
    bool commit() override { return !takeFault(m_faults->commits) && pass(m_real->commit()); }
    void rollback() override { m_real->rollback(); }
    void close() override { m_real->close(); }
    bool isIntact() override { return pass(m_real->isIntact()); }
    void leaveFile() override { m_real->leaveFile(); }
    bool keepWithin(const recording::Bounds& bounds, OpcUa_DateTime now, recording::Dropped& dropped) override
    {
        return pass(m_real->keepWithin(bounds, now, dropped));
    }
    qint64 size() override { return m_real->size(); }
    QString path() const override { return m_real->path(); }
    OpcUa_DateTime lastTime() override { return m_real->lastTime(); }

private:
    bool takeFault(std::atomic<int>& count)
    {
        if (count <= 0)
            return false;
        --count;
        fail(QStringLiteral("injected"));
        return true;
    }
    bool pass(bool isDone) { return isDone || fail(m_real->error()); }

    const std::unique_ptr<recording::RecordSink> m_real;
    const std::shared_ptr<Faults> m_faults;
};

class RecordingTest : public testing::Test
{
protected:
    template <typename Condition>
    static bool waitFor(const Condition& condition)
    {
        const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (!condition() && std::chrono::steady_clock::now() < limit)
            std::this_thread::yield();
        return condition();
    }

    QString file(const char* name) const { return QString::fromStdString(folder.file(name)); }
    recording::RecorderSettings settings() const
    {
        recording::RecorderSettings result;
        result.freeFloor = 0;
        result.commitInterval = 20;
        return result;
    }
    recording::Surroundings surroundings()
    {
        recording::Surroundings result = recording::Surroundings::usual();
        result.now = [this] { return UaDateTime::now().value() + clockOffset; };
        result.freeBytes = [this](const QString&) { return freeBytes.load(); };
        return result;
    }
    static recording::RecordedItem item(const char* name)
    {
        recording::RecordedItem result;
        result.server = QStringLiteral("Plant");
        result.nodeId = QStringLiteral("s=") + QLatin1String(name);
        result.namespaceUri = QStringLiteral("urn:plant");
        result.name = QLatin1String(name);
        return result;
    }
    /// As the subscription's thread does.
    void put(recording::Recorder& recorder, recording::ItemNumber number, const UaDataValue& value,
             OpcUa_DateTime received = 0)
    {
        OpcUa_DataValue raw;
        OpcUa_DataValue_Initialize(&raw);
        ASSERT_TRUE(OpcUa_IsGood(value.copyTo(&raw)));
        monitoring::Sink::Filling filling;
        filling.put(*recorder.source(QStringLiteral("Plant")), {number, number, mark}, raw,
                    {received != 0 ? received : UaDateTime::now().value() + clockOffset, ++sequence});
    }
    void put(recording::Recorder& recorder, recording::ItemNumber number, OpcUa_Int32 value)
    {
        put(recorder, number, UaDataValue(UaVariant(value)));
    }

    // ---- what is in files

    struct Found
    {
        std::vector<recording::Record> records;
        std::vector<recording::Mark> marks;
        QString error;

        [[nodiscard]] std::vector<std::string> values() const
        {
            std::vector<std::string> texts;
            for (const recording::Record& record : records)
                texts.push_back(record.value.value().toString().toStdString());
            return texts;
        }
        [[nodiscard]] const recording::Mark* find(recording::MarkKind kind) const
        {
            for (const recording::Mark& one : marks)
                if (one.kind == kind)
                    return &one;
            return nullptr;
        }
    };
    static Found readFile(const QString& path)
    {
        Found found;
        recording::RecordReader reader;
        const auto visit = [&found](const recording::Portion& portion) {
            found.records.insert(found.records.end(), portion.records.begin(), portion.records.end());
            for (const recording::Portion::Placed& placed : portion.marks)
                found.marks.push_back(placed.mark);
            return true;
        };
        if (!reader.open(path) || !reader.check() ||
            !reader.visit(0, std::numeric_limits<OpcUa_DateTime>::max(), {}, visit))
            found.error = reader.error();
        return found;
    }

    TemporaryFolder folder;
    std::atomic<OpcUa_Int64> clockOffset{0};
    std::atomic<qint64> freeBytes{1LL << 40};
    monitoring::SinkMark mark;
    OpcUa_UInt32 sequence = 0;
};
