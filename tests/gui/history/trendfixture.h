// A trend view with a server behind it whose histories a test states.
#pragma once
#include <app/api/qlumtext.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/history/qlumtrenditem.h>
#include <plugins/history/qlumtrenditemmodel.h>
#include <plugins/history/qlumtrendviewdocument.h>
#include <tests/support/modeltext.h>
#include <tests/support/stubapplication.h>
#include <tests/support/tableservices.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/historycontexts.h>
#include <uaclientsdk/historyresults.h>
#include <uawidgets/plot/qlumplotcurve.h>
#include <uawidgets/plot/qlumsamplestore.h>

#include <QDateTime>
#include <QMimeData>
#include <QString>
#include <QStringList>
#include <QTest>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

/// Decodes every drop as the nodes that the test has set.
class TrendApplication : public StubApplication
{
public:
    bool nodeIdsFromMimeData(const QMimeData*, unsigned int* serverId, unsigned int* count,
                             UaNodeId** nodeIds) override
    {
        *serverId = 5;
        *count = static_cast<unsigned int>(dragged.size());
        *nodeIds = new UaNodeId[dragged.size()];
        std::copy(dragged.begin(), dragged.end(), *nodeIds);
        return !dragged.empty();
    }
    QString serverName(unsigned int) override { return "Plc"; }
    QString errorMessage(unsigned int code) override { return qlumStatusText(code); }
    void setModified() override { ++modified; }

    std::vector<UaNodeId> dragged;
    int modified = 0;
};

/// Remembers what was asked, and answers late or not at all where the test wants it.
class TrendServices : public TableServices
{
public:
    struct Asked
    {
        UaClientSdk::HistoryReadRawModifiedContext context;
        std::vector<UaNodeId> nodes;
    };
    UaStatus historyReadRawModified(Settings& settings,
                                    const UaClientSdk::HistoryReadRawModifiedContext& context,
                                    const UaHistoryReadValueIds& nodes,
                                    UaClientSdk::HistoryReadDataResults& results) override
    {
        int call = 0;
        {
            const std::lock_guard lock(m_mutex);
            Asked one{context, {}};
            for (const OpcUa_HistoryReadValueId& node : nodes)
                one.nodes.emplace_back(node.NodeId);
            m_asked.push_back(std::move(one));
            call = static_cast<int>(m_asked.size());
        }
        const UaStatus status = TableServices::historyReadRawModified(settings, context, nodes, results);
        if (call == losesPointsAt && !results.empty())
            results[0] = {UaStatus(OpcUa_BadContinuationPointInvalid), {}, {}, {}};
        if (keepsPoints >= 0)
            keepPoints(context.releaseContinuationPoints, nodes, results);
        return status;
    }
    UaStatus read(Settings& settings, double maxAge, OpcUa_TimestampsToReturn timestamps,
                  const UaReadValueIds& nodes, UaDataValues& values) override
    {
        if (++m_reads == failsReadAt)
            return UaStatus(OpcUa_BadTimeout);
        return TableServices::read(settings, maxAge, timestamps, nodes, values);
    }
    [[nodiscard]] int reads() const { return m_reads; }
    [[nodiscard]] std::vector<Asked> asked() const
    {
        const std::lock_guard lock(m_mutex);
        return m_asked;
    }

    int losesPointsAt = 0;            ///< number of the call; 0: never
    int keepsPoints = -1;             ///< at a time; -1: any number
    std::atomic<int> failsReadAt = 0; ///< the same

private:
    void keepPoints(bool releases, const UaHistoryReadValueIds& nodes,
                    UaClientSdk::HistoryReadDataResults& results)
    {
        for (OpcUa_UInt32 i = 0; i < nodes.length(); ++i) {
            const bool had = nodes[i].ContinuationPoint.Length > 0;
            const bool has = !releases && !results[i].continuationPoint.isEmpty();
            if (!had && has && m_points >= keepsPoints)
                results[i] = {UaStatus(OpcUa_BadNoContinuationPoints), {}, {}, {}};
            else
                m_points += int(has) - int(had);
        }
    }

    mutable std::mutex m_mutex;
    int m_points = 0;
    std::vector<Asked> m_asked;
    std::atomic<int> m_reads = 0;
};

class TrendFixture : public testing::Test
{
protected:
    static constexpr std::int64_t first = 1'700'000'000; // s since 1970

    static UaNodeId node(OpcUa_UInt32 id) { return UaNodeId(id, 2); }
    static UaDateTime at(double seconds)
    {
        return UaDateTime::fromMSecsSinceEpoch(first * 1000 + static_cast<std::int64_t>(seconds * 1000));
    }
    static QDateTime time(double seconds)
    {
        return QDateTime::fromMSecsSinceEpoch(at(seconds).toMSecsSinceEpoch());
    }
    void addVariable(OpcUa_UInt32 id, const char* name, std::vector<UaDataValue> values,
                     OpcUa_Byte access = 0x5)
    {
        NodeTable& table = services->table;
        table.variable(node(id), name, UaVariant(0.0));
        table.setAttribute(node(id), OpcUa_Attributes_UserAccessLevel, UaDataValue(UaVariant(access)));
        table.history(node(id), std::move(values));
    }
    static std::vector<UaDataValue> numbers(int count)
    {
        std::vector<UaDataValue> values;
        for (int i = 0; i < count; ++i)
            values.emplace_back(UaVariant(double(i)), UaStatusCode(), at(i), at(i + 0.5));
        return values;
    }
    void drop(std::vector<UaNodeId> nodes)
    {
        application.dragged = std::move(nodes);
        const QMimeData data;
        view.model()->dropMimeData(&data, Qt::CopyAction, -1, -1, {});
    }
    bool addItems(const std::vector<UaNodeId>& nodes)
    {
        const int wanted = view.model()->rowCount() + static_cast<int>(nodes.size());
        drop(nodes);
        return QTest::qWaitFor([&] { return view.model()->rowCount() == wanted; });
    }
    bool read(double from, double to)
    {
        view.sltUpdateTrendData(false, time(from), time(to));
        return waitForEnd();
    }
    bool waitForEnd()
    {
        return QTest::qWaitFor([this] {
            for (const QlumTrendItem& item : view.model()->rows())
                if (item.history.endsWith("..."))
                    return false;
            return true;
        });
    }
    [[nodiscard]] const QlumTrendItem& item(int row) const { return view.model()->rowAt(row); }
    [[nodiscard]] const QlumSampleStore& samples(int row) const
    {
        return view.curve(item(row).key)->samples();
    }
    /// "time in seconds: value (status)", a line each.
    [[nodiscard]] std::string sampleText(int row) const
    {
        std::string text;
        for (std::size_t i = 0; i < samples(row).size(); ++i) {
            const QlumSample sample = samples(row).at(i);
            text += QString("%1: %2%3\n")
                        .arg(double(sample.time - at(0).value()) / 1e7)
                        .arg(sample.value)
                        .arg(sample.status ? QString(" 0x%1").arg(sample.status, 8, 16) : QString())
                        .toStdString();
        }
        return text;
    }
    [[nodiscard]] QStringList log() const
    {
        QStringList texts;
        for (const StubApplication::Entry& entry : application.entries())
            if (entry.source == "History Plugin")
                texts.append(entry.text);
        return texts;
    }

    TrendApplication application;
    std::shared_ptr<TrendServices> services = std::make_shared<TrendServices>();
    QlumTrendViewDocument view{application, [this](unsigned int id) {
                                   return id == 5 ? services : std::shared_ptr<TrendServices>();
                               }};
};
