// A thousand sessions and five thousand subscriptions from the server's answers to the screen, in CPU time of
// this process. The yardstick fills a plain model of as many cells behind a view.
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumjob.h>
#include <app/api/qlumserverpools.h>
#include <app/api/qlumsessionservices.h>
#include <bench/budgets.h>
#include <opcua/opcua_types.h>
#include <plugins/serverdiagnostics/qlumserverdiagnosticwidget.h>
#include <plugins/serverdiagnostics/qlumsessiontable.h>
#include <plugins/serverdiagnostics/qlumsubscriptiontable.h>
#include <tests/support/stubapplication.h>
#include <tests/support/tableservices.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>

#include <QApplication>
#include <QList>
#include <QPixmap>
#include <QStandardItem>
#include <QStandardItemModel>
#include <QString>
#include <QTest>
#include <QTreeView>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr int sessionCount = 1000;
constexpr int subscriptionCount = 5000;
constexpr int mostCalls = 10;
constexpr double maximumToPlainModel = 33.0; // a second, where the plain model takes 30 ms

struct Application : StubApplication
{
    QList<unsigned int> projectServerIds() override { return {5}; }
};

template <typename T, typename Fill>
UaVariant arrayOf(const OpcUa_EncodeableType& type, int count, Fill fill)
{
    std::vector<UaVariant> elements;
    for (int i = 0; i < count; ++i) {
        void* const object = OpcUa_EncodeableObject_Create(&type);
        fill(*static_cast<T*>(object), i);
        UaExtensionObject extension;
        extension.attachDecoded(type, object);
        elements.emplace_back(extension);
    }
    UaVariant array;
    static_cast<void>(array.setArray(OpcUaType_ExtensionObject, elements)); // none: nothing is counted
    return array;
}

void setText(OpcUa_String& to, const char* text, int i)
{
    static_cast<void>(UaString((text + std::to_string(i)).c_str()).copyTo(&to));
}

void fill(NodeTable& table)
{
    const UaVariant sessions = arrayOf<OpcUa_SessionDiagnosticsDataType>(
        OpcUa_SessionDiagnosticsDataType_EncodeableType, sessionCount,
        [](OpcUa_SessionDiagnosticsDataType& session, int i) {
            static_cast<void>(UaNodeId(static_cast<OpcUa_UInt32>(i + 1), 2).copyTo(&session.SessionId));
            setText(session.SessionName, "Session", i);
            setText(session.ClientDescription.ApplicationUri, "urn:client:", i % 7);
            setText(session.EndpointUrl, "opc.tcp://plc:", i % 3);
            session.TotalRequestCount.TotalCount = static_cast<OpcUa_UInt32>(i * 13);
        });
    const UaVariant security = arrayOf<OpcUa_SessionSecurityDiagnosticsDataType>(
        OpcUa_SessionSecurityDiagnosticsDataType_EncodeableType, sessionCount,
        [](OpcUa_SessionSecurityDiagnosticsDataType& session, int i) {
            static_cast<void>(UaNodeId(static_cast<OpcUa_UInt32>(i + 1), 2).copyTo(&session.SessionId));
            setText(session.ClientUserIdOfSession, "user", i % 20);
        });
    const UaVariant subscriptions = arrayOf<OpcUa_SubscriptionDiagnosticsDataType>(
        OpcUa_SubscriptionDiagnosticsDataType_EncodeableType, subscriptionCount,
        [](OpcUa_SubscriptionDiagnosticsDataType& subscription, int i) {
            subscription.SubscriptionId = static_cast<OpcUa_UInt32>(i + 1);
            static_cast<void>(
                UaNodeId(static_cast<OpcUa_UInt32>(i % sessionCount + 1), 2).copyTo(&subscription.SessionId));
        });
    table.object(UaNodeId(3706), "SessionsDiagnosticsSummary", UaNodeId());
    table.variable(UaNodeId(3707), "", sessions, UaNodeId());
    table.variable(UaNodeId(3708), "", security, UaNodeId());
    table.variable(UaNodeId(2290), "", subscriptions, UaNodeId());
}

bool isShown(const QlumServerDiagnosticWidget& view)
{
    return view.sessions()->rowCount() == sessionCount &&
           view.subscriptions()->rowCount() == subscriptionCount && !view.isReading();
}

// From nothing to the screen; 0 when it does not come to that.
double showAll(Application& application, const std::shared_ptr<TableServices>& services)
{
    const auto pools = std::make_shared<QlumServerPools>();
    QlumServerDiagnosticWidget view(
        application, pools, [&](unsigned int) { return services; },
        [](QlumSessionServices&, QlumJob&) { return QlumEndpointReading(); });
    view.resize(1200, 800);
    view.show();
    view.serverSelectionChanged(5);
    const double before = processCpu();
    view.sessionStatusChanged(5, QlumConnectionStatus::Connected);
    const bool isDone = QTest::qWaitFor([&] { return isShown(view); }, 60000);
    for (QTreeView* table : view.findChildren<QTreeView*>())
        static_cast<void>(table->grab());
    return isDone ? processCpu() - before : 0;
}

double showPlain()
{
    const double before = processCpu();
    QStandardItemModel model;
    const auto add = [&model](int rows, int columns) {
        for (int row = 0; row < rows; ++row) {
            QList<QStandardItem*> items;
            for (int column = 0; column < columns; ++column)
                items.append(new QStandardItem(QStringLiteral("%1/%2").arg(row).arg(column)));
            model.appendRow(items);
        }
    };
    add(sessionCount, 16);
    add(subscriptionCount, 13);
    QTreeView view;
    view.setModel(&model);
    view.resize(1200, 800);
    view.show();
    static_cast<void>(view.grab());
    return processCpu() - before;
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    Application stub;
    const auto services = std::make_shared<TableServices>();
    fill(services->table);
    std::vector<double> ours, plain;
    int calls = 0;
    for (int n = 0; n < repetitions(5); ++n) {
        const int before = services->calls(NodeTable::Read) + services->calls(NodeTable::Browse);
        ours.push_back(showAll(stub, services));
        calls = services->calls(NodeTable::Read) + services->calls(NodeTable::Browse) - before;
        plain.push_back(showPlain());
    }
    if (std::find(ours.begin(), ours.end(), 0.0) != ours.end())
        ours.clear();
    std::printf(
        "1,000 sessions and 5,000 subscriptions are shown in %.1f ms and %d calls for all pages, a plain "
        "model of as many cells in %.1f ms\n",
        median(ours) / 1000, calls, median(plain) / 1000);
    printRatio("diagnostics_to_plain_model", median(ours), median(plain), maximumToPlainModel);
    printBudget("diagnostics_calls", calls, mostCalls, calls > 0);
    return 0;
}
