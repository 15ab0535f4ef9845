// A crawl of 100,000 nodes, and a folder of 100,000 children opened in the tree, in CPU time of this process:
// the server is another one, which answers out of a table. The yardsticks read as many bytes and do nothing
// with them, and fill a plain model of as many rows.
#include <app/api/qlumjob.h>
#include <app/api/qlumsessionservices.h>
#include <bench/budgets.h>
#include <bench/rawloops.h>
#include <bench/responder.h>
#include <bench/tableanswers.h>
#include <plugins/addressspace/qlumaddressspacemodel.h>
#include <plugins/addressspace/search/qlumcrawl.h>
#include <plugins/addressspace/search/qlumnodeindex.h>
#include <tests/support/nodetable.h>
#include <tests/support/stubapplication.h>
#include <tests/support/stubservernode.h>
#include <tests/support/unscriptedservices.h>
#include <uabase/system/uaplatformlayer.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/uaclient.h>
#include <uaclientsdk/uasession.h>
#include <uaclientsdk/uasessioncallback.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QObject>
#include <QPaintEvent>
#include <QString>
#include <QStringList>
#include <QStringListModel>
#include <QTimer>
#include <QTreeView>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <malloc.h>
#include <memory>
#include <string>
#include <utility>
#include <vector>

using namespace opcua::bench;
using namespace UaClientSdk;

namespace {
const auto nodes = static_cast<OpcUa_UInt32>(operations(100'000));
constexpr OpcUa_UInt32 folderSize = 100;
constexpr int bytesOfReference = 61;
// 2 us a reference where its bare bytes took 0.074
constexpr double maximumCrawlToBytes = 27.0;
constexpr double maximumBytesKept = 300.0;
// 0.3 s where the bare bytes and a plain model took 0.166
constexpr double maximumTreeToBare = 1.8;
constexpr double maximumChildBytes = 400.0;
constexpr double maximumGap = 50.0;        // ms, besides the calls
constexpr double maximumFirstRows = 100.0; // ms after the first answer

const UaNodeId crawled(1, 1);
const UaNodeId flat(2, 1);

// Half of the servers number their nodes, the others name them.
UaNodeId child(OpcUa_UInt32 i)
{
    return i % 2 == 0 ? UaNodeId(1'000'000 + i, 1)
                      : UaNodeId(UaString(("Plant.Temperature." + std::to_string(i)).c_str()), 1);
}

void fill(NodeTable& table)
{
    table.object(crawled, "Plant", UaNodeId());
    table.object(flat, "Flat", UaNodeId());
    for (OpcUa_UInt32 i = 0; i < nodes; ++i) {
        const UaNodeId folder(2'000'000 + i / folderSize, 1);
        if (i % folderSize == 0)
            table.object(folder, ("Line " + std::to_string(i)).c_str(), crawled);
        table.object(child(i), ("Temperature " + std::to_string(i * 7919 % nodes)).c_str(), folder);
        table.object(UaNodeId(3'000'000 + i, 1), ("Temperature " + std::to_string(i * 7919 % nodes)).c_str(),
                     flat);
    }
}

class QuietCallback : public UaSessionCallback
{
public:
    void connectionStatusChanged(OpcUa_UInt32, UaClient::ServerStatus) override {}
};

struct NoWork : QlumJob
{
    void run() override {}
};

double heapBytes()
{
    const auto heap = mallinfo2();
    return static_cast<double>(heap.uordblks + heap.hblkhd);
}

// ---- crawl

void measureCrawl(const Responder& responder, QlumSessionServices& services)
{
    std::vector<double> ours, bare, kept;
    for (int n = 0; n < repetitions(3); ++n) {
        NoWork job;
        QlumCrawlControl control;
        QlumCrawlState state;
        const double heap = heapBytes();
        QlumNodeIndex index(crawled, QStringLiteral("Plant"), OpcUa_NodeClass_Object);
        double before = processCpu();
        QlumCrawl::Options options;
        options.longestRest = std::chrono::milliseconds(0);
        QlumCrawl(
            job, services, index, control, [&state](const QlumCrawlState& now) { state = now; }, options)
            .run();
        const auto references = static_cast<double>(state.references);
        ours.push_back((processCpu() - before) / references);
        kept.push_back((heapBytes() - heap) / static_cast<double>(index.size()));
        if (index.size() < nodes) {
            std::fprintf(stderr, "%u nodes were found\n", index.size());
            return ours.clear();
        }
        before = processCpu();
        pingPong(responder.rawPort(), static_cast<int>(state.calls),
                 static_cast<int>(references / static_cast<double>(state.calls) * bytesOfReference));
        bare.push_back((processCpu() - before) / references);
    }
    std::printf("a crawl takes %.3f us for a reference, its bare bytes %.3f us; %.0f bytes a node are kept\n",
                median(ours), median(bare), median(kept));
    printRatio("crawl_reference_to_bare_bytes", median(ours), median(bare), maximumCrawlToBytes);
    printBudget("crawl_bytes_a_node", median(kept), maximumBytesKept, !kept.empty());
}

// ---- tree

// Tells how long calls take, which are made on other threads.
class TimedServices : public UnscriptedServices
{
public:
    explicit TimedServices(std::shared_ptr<QlumSessionServices> services) : m_services(std::move(services)) {}
    UaStatus browse(Settings& settings, const UaNodeId& node, const BrowseContext& context,
                    UaByteString& point, UaReferenceDescriptions& references) override
    {
        begun = clock.nsecsElapsed();
        const UaStatus status = m_services->browse(settings, node, context, point, references);
        end();
        if (firstAnswer == 0)
            firstAnswer = clock.nsecsElapsed();
        return status;
    }
    UaStatus browseNext(Settings& settings, bool release, UaByteString& point,
                        UaReferenceDescriptions& references) override
    {
        begun = clock.nsecsElapsed();
        const UaStatus status = m_services->browseNext(settings, release, point, references);
        end();
        return status;
    }
    // Of all so far, with the one under way.
    [[nodiscard]] qint64 inCalls() const
    {
        const qint64 since = begun;
        return ended + (since > 0 ? clock.nsecsElapsed() - since : 0);
    }

    QElapsedTimer clock;
    std::atomic<qint64> firstAnswer = 0;

private:
    void end() { ended += clock.nsecsElapsed() - begun.exchange(0); }

    const std::shared_ptr<QlumSessionServices> m_services;
    std::atomic<qint64> begun = 0; // 0: none is under way
    std::atomic<qint64> ended = 0;
};

class PaintedTree : public QTreeView
{
public:
    qint64 firstRows = 0; // ns of the clock
    const QElapsedTimer* clock = nullptr;

protected:
    void paintEvent(QPaintEvent* event) override
    {
        QTreeView::paintEvent(event);
        if (firstRows == 0 && model() && model()->rowCount(model()->index(0, 0)) > 0)
            firstRows = clock->nsecsElapsed();
    }
};

struct Opened
{
    double cpu = 0;       // ms
    double firstRows = 0; // ms after the first answer
    double gap = 0;       // ms
    double bytes = 0;     // a child
};

Opened openFolder(StubServerNode& server, const std::shared_ptr<QlumSessionServices>& services)
{
    Opened opened;
    const auto timed = std::make_shared<TimedServices>(services);
    const double heap = heapBytes();
    PaintedTree tree;
    tree.setUniformRowHeights(true);
    tree.setHeaderHidden(true);
    tree.resize(300, 600);
    timed->clock.start();
    tree.clock = &timed->clock;
    tree.show();
    QApplication::processEvents();
    const double before = processCpu();
    qint64 last = timed->clock.nsecsElapsed();
    qint64 callsAtLast = 0;
    const auto look = [&] {
        const qint64 now = timed->clock.nsecsElapsed();
        const qint64 calls = timed->inCalls();
        opened.gap = std::max(opened.gap, static_cast<double>(now - last - (calls - callsAtLast)) / 1e6);
        last = now;
        callsAtLast = calls;
    };
    QTimer ticks;
    QObject::connect(&ticks, &QTimer::timeout, look);
    ticks.start(0);
    QlumAddressSpaceModel model(&server, &flat, nullptr, timed);
    tree.setModel(&model);
    tree.expand(model.index(0, 0));
    while (model.isBrowsing())
        QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    QApplication::processEvents();
    look();
    opened.cpu = (processCpu() - before) / 1e3;
    opened.firstRows = static_cast<double>(tree.firstRows - timed->firstAnswer) / 1e6;
    opened.bytes = (heapBytes() - heap) / model.rowCount(model.index(0, 0));
    if (model.rowCount(model.index(0, 0)) != static_cast<int>(nodes))
        opened.cpu = 0;
    tree.setModel(nullptr);
    return opened;
}

// As many rows in as many portions, in a model of Qt's.
double bareRows(OpcUa_UInt32 portion)
{
    QTreeView tree;
    tree.setUniformRowHeights(true);
    tree.resize(300, 600);
    tree.show();
    QApplication::processEvents();
    const double before = processCpu();
    QStringListModel model;
    tree.setModel(&model);
    QStringList rows;
    for (OpcUa_UInt32 i = 0; i < nodes; i += portion) {
        model.insertRows(model.rowCount(), static_cast<int>(portion));
        for (OpcUa_UInt32 k = 0; k < portion; ++k)
            rows.append(QString::number(i + k));
        QApplication::processEvents();
    }
    model.setStringList(rows);
    model.sort(0);
    QApplication::processEvents();
    return (processCpu() - before) / 1e3;
}

void measureTree(const Responder& responder, const std::shared_ptr<QlumSessionServices>& services,
                 StubApplication& application, OpcUa_UInt32 portion, bool isBudget)
{
    StubServerNode server;
    application.settings["General.MaxReferencesToReturn"] = portion;
    application.settings["General.MaxBrowseNextCalls"] = -1;
    std::vector<double> cpu, bare, firstRows, gaps, bytes;
    for (int n = 0; n < repetitions(3); ++n) {
        const Opened opened = openFolder(server, services);
        cpu.push_back(opened.cpu);
        firstRows.push_back(opened.firstRows);
        gaps.push_back(opened.gap);
        bytes.push_back(opened.bytes);
        const double before = processCpu();
        pingPong(responder.rawPort(), static_cast<int>(nodes / portion),
                 static_cast<int>(portion) * bytesOfReference);
        bare.push_back((processCpu() - before) / 1e3 + bareRows(portion));
    }
    std::printf("%u children by %u: %.0f ms of CPU (bare %.0f), first rows %.1f ms after the first answer, "
                "longest gap besides calls %.1f ms, %.0f bytes a child\n",
                nodes, portion, median(cpu), median(bare), median(firstRows), median(gaps), median(bytes));
    if (!isBudget)
        return;
    const bool isMeasured = median(cpu) > 0;
    printRatio("tree_100000_children_to_bare", median(cpu), median(bare), maximumTreeToBare);
    printBudget("tree_first_rows_ms", median(firstRows), maximumFirstRows, isMeasured);
    printBudget("tree_longest_gap_ms", median(gaps), maximumGap, isMeasured);
    printBudget("tree_bytes_a_child", median(bytes), maximumChildBytes, isMeasured);
}
} // namespace

int main(int argc, char** argv)
{
    NodeTable table;
    fill(table);
    const Responder responder(makeIdentity("server"), makeIdentity("client"), opcua::Bytes(32, 5),
                              answersOf(table));
    if (UaPlatformLayer::init() != 0)
        return 1;
    {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        const QApplication qt(argc, argv);
        StubApplication application;
        QuietCallback callback;
        const auto session = std::make_shared<UaSession>();
        const std::string url = responder.url(false);
        if (session->connect(UaString(url.c_str()), SessionConnectInfo(), SessionSecurityInfo(), &callback)
                .isGood()) {
            const std::shared_ptr<QlumSessionServices> services = qlumServicesOf(session);
            measureCrawl(responder, *services);
            measureTree(responder, services, application, 1000, true);
            measureTree(responder, services, application, 100, false);
        }
        static_cast<void>(session->disconnect(ServiceSettings(), true));
    }
    UaPlatformLayer::cleanup();
    return 0;
}
