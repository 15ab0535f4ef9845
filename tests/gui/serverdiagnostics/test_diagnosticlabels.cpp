// Every page to the letter: what its fields and groups are called, which rows it has, in which order, and
// what of the server's answers stands in them.
#include <plugins/serverdiagnostics/qlumdiagnosticmodel.h>
#include <plugins/serverdiagnostics/qlumdiagnosticpanel.h>
#include <plugins/serverdiagnostics/qlumserverdiagnosticwidget.h>
#include <tests/gui/serverdiagnostics/diagnosticsfixture.h>
#include <tests/support/modeltext.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>

#include <QAbstractItemModel>
#include <QGroupBox>
#include <QLabel>
#include <QListWidget>
#include <QModelIndex>
#include <QPushButton>
#include <QString>
#include <QStringList>
#include <QTabWidget>
#include <QTreeView>

#include <string>
#include <utility>
#include <vector>

namespace {

struct NumberedRow
{
    const char* label;
    OpcUa_UInt32 nodeId; // 0: a folder, or the group above the rows that follow
};

struct PanelRows
{
    const char* title;
    std::vector<NumberedRow> rows;
};

const PanelRows serverPanels[] = {
    {"Build Info",
     {{"ProductName", 2261},
      {"ProductUri", 2262},
      {"ManufacturerName", 2263},
      {"SoftwareVersion", 2264},
      {"BuildNumber", 2265},
      {"BuildDate", 2266}}},
    {"Server Diagnostics",
     {{"ServerViewCount", 2276},
      {"CurrentSessionCount", 2277},
      {"CumulatedSessionCount", 2278},
      {"SecurityRejectedSessionCount", 2279},
      {"RejectedSessionCount", 3705},
      {"SessionTimeoutCount", 2281},
      {"SessionAbortCount", 2282},
      {"PublishingIntervalCount", 2284},
      {"CurrentSubscriptionCount", 2285},
      {"CumulatedSubscriptionCount", 2286},
      {"SecurityRejectedRequestsCount", 2287},
      {"RejectedRequestsCount", 2288}}},
    {"Server Status",
     {{"StartTime", 2257},
      {"CurrentTime", 2258},
      {"State", 2259},
      {"BuildInfo", 2260},
      {"SecondsTillShutdown", 2992},
      {"ShutdownReason", 2993}}},
    {"Server Redundancy",
     {{"RedundancySupport", 3709},
      {"CurrentServerId", 11312},
      {"RedundantServerArray", 11313},
      {"ServerUriArray", 11314}}},
    {"Server Capabilities",
     {{"ServerProfileArray", 2269},
      {"LocaleIdArray", 2271},
      {"MinSupportedSampleRate", 2272},
      {"MaxBrowseContinuationPoints", 2735},
      {"MaxQueryContinuationPoints", 2736},
      {"MaxHistoryContinuationPoints", 2737},
      {"SoftwareCertificates", 3704},
      {"MaxArrayLength", 11702},
      {"MaxStringLength", 11703},
      {"AggregateFunctions", 0},
      {"ModellingRules", 0},
      {"OperationLimits", 0},
      {"MaxNodesPerRead", 11705},
      {"MaxNodesPerHistoryReadData", 12165},
      {"MaxNodesPerHistoryReadEvents", 12166},
      {"MaxNodesPerWrite", 11707},
      {"MaxNodesPerHistoryUpdateData", 12167},
      {"MaxNodesPerHistoryUpdateEvents", 12168},
      {"MaxNodesPerMethodCall", 11709},
      {"MaxNodesPerBrowse", 11710},
      {"MaxNodesPerRegisterNodes", 11711},
      {"MaxNodesPerTranslateBrowsePathsToNodeIds", 11712},
      {"MaxNodesPerNodeManagement", 11713},
      {"MaxMonitoredItemsPerCall", 11714}}},
};

const char* const sessionFields[] = {
    "SessionId",
    "SessionName",
    "ClientDescription",
    "ServerUri",
    "EndpointUrl",
    "LocaleIds",
    "ActualSessionTimeout",
    "MaxResponseMessageSize",
    "ClientConnectionTime",
    "ClientLastContactTime",
    "CurrentSubscriptionsCount",
    "CurrentMonitoredItemsCount",
    "CurrentPublishRequestsInQueue",
};

using Session = OpcUa_SessionDiagnosticsDataType;
struct SessionCounter
{
    const char* label;
    OpcUa_ServiceCounterDataType Session::*member;
};
const SessionCounter sessionCounters[] = {
    {"TotalRequestCount", &Session::TotalRequestCount},
    {"UnauthorizedRequestCount", nullptr}, // a number
    {"ReadCount", &Session::ReadCount},
    {"HistoryReadCount", &Session::HistoryReadCount},
    {"WriteCount", &Session::WriteCount},
    {"HistoryUpdateCount", &Session::HistoryUpdateCount},
    {"CallCount", &Session::CallCount},
    {"CreateMonitoredItemsCount", &Session::CreateMonitoredItemsCount},
    {"ModifyMonitoredItemsCount", &Session::ModifyMonitoredItemsCount},
    {"SetMonitoringModeCount", &Session::SetMonitoringModeCount},
    {"SetTriggeringCount", &Session::SetTriggeringCount},
    {"DeleteMonitoredItemsCount", &Session::DeleteMonitoredItemsCount},
    {"CreateSubscriptionCount", &Session::CreateSubscriptionCount},
    {"ModifySubscriptionCount", &Session::ModifySubscriptionCount},
    {"SetPublishingModeCount", &Session::SetPublishingModeCount},
    {"PublishCount", &Session::PublishCount},
    {"RepublishCount", &Session::RepublishCount},
    {"TransferSubscriptionsCount", &Session::TransferSubscriptionsCount},
    {"DeleteSubscriptionsCount", &Session::DeleteSubscriptionsCount},
    {"AddNodesCount", &Session::AddNodesCount},
    {"AddReferencesCount", &Session::AddReferencesCount},
    {"DeleteNodesCount", &Session::DeleteNodesCount},
    {"DeleteReferencesCount", &Session::DeleteReferencesCount},
    {"BrowseCount", &Session::BrowseCount},
    {"BrowseNextCount", &Session::BrowseNextCount},
    {"TranslateBrowsePathsToNodeIdsCount", &Session::TranslateBrowsePathsToNodeIdsCount},
    {"QueryFirstCount", &Session::QueryFirstCount},
    {"QueryNextCount", &Session::QueryNextCount},
    {"RegisterNodesCount", &Session::RegisterNodesCount},
    {"UnregisterNodesCount", &Session::UnregisterNodesCount},
};

using Subscription = OpcUa_SubscriptionDiagnosticsDataType;
struct SubscriptionNumber
{
    const char* label;
    OpcUa_UInt32 Subscription::*member; // null: of another type
};
const SubscriptionNumber subscriptionNumbers[] = {
    {"SessionId", nullptr},
    {"SubscriptionId", &Subscription::SubscriptionId},
    {"Priority", nullptr},
    {"PublishingInterval", nullptr},
    {"MaxKeepAliveCount", &Subscription::MaxKeepAliveCount},
    {"MaxLifetimeCount", &Subscription::MaxLifetimeCount},
    {"MaxNotificationsPerPublish", &Subscription::MaxNotificationsPerPublish},
    {"PublishingEnabled", nullptr},
    {"ModifyCount", &Subscription::ModifyCount},
    {"EnableCount", &Subscription::EnableCount},
    {"DisableCount", &Subscription::DisableCount},
    {"RepublishRequestCount", &Subscription::RepublishRequestCount},
    {"RepublishMessageRequestCount", &Subscription::RepublishMessageRequestCount},
    {"RepublishMessageCount", &Subscription::RepublishMessageCount},
    {"TransferRequestCount", &Subscription::TransferRequestCount},
    {"TransferredToAltClientCount", &Subscription::TransferredToAltClientCount},
    {"TransferredToSameClientCount", &Subscription::TransferredToSameClientCount},
    {"PublishRequestCount", &Subscription::PublishRequestCount},
    {"DataChangeNotificationsCount", &Subscription::DataChangeNotificationsCount},
    {"EventNotificationsCount", &Subscription::EventNotificationsCount},
    {"NotificationsCount", &Subscription::NotificationsCount},
    {"LatePublishRequestCount", &Subscription::LatePublishRequestCount},
    {"CurrentKeepAliveCount", &Subscription::CurrentKeepAliveCount},
    {"CurrentLifetimeCount", &Subscription::CurrentLifetimeCount},
    {"UnacknowledgedMessageCount", &Subscription::UnacknowledgedMessageCount},
    {"DiscardedMessageCount", &Subscription::DiscardedMessageCount},
    {"MonitoredItemCount", &Subscription::MonitoredItemCount},
    {"DisabledMonitoredItemCount", &Subscription::DisabledMonitoredItemCount},
    {"MonitoringQueueOverflowCount", &Subscription::MonitoringQueueOverflowCount},
    {"NextSequenceNumber", &Subscription::NextSequenceNumber},
    {"EventQueueOverFlowCount", &Subscription::EventQueueOverflowCount},
};

void setTexts(OpcUa_Int32& count, OpcUa_String*& texts, const std::vector<const char*>& values)
{
    UaStringArray array(static_cast<OpcUa_UInt32>(values.size()));
    for (OpcUa_UInt32 i = 0; i < array.length(); ++i)
        setText(array[i], values[i]);
    array.detach(&count, &texts);
}

class DiagnosticLabels : public DiagnosticsFixture
{
protected:
    // "label: value" of each row, in the order of the screen.
    static QStringList rowsOf(const QlumDiagnosticPanel* panel)
    {
        QStringList rows;
        const QAbstractItemModel& model = *panel->model();
        for (int row = 0; row < model.rowCount(); ++row) {
            rows.append(rowText(model.index(row, 0)));
            for (int below = 0; below < model.rowCount(model.index(row, 0)); ++below)
                if (rows.last().startsWith("OperationLimits") || rows.last().startsWith("MaxNodes"))
                    rows.append(rowText(model.index(below, 0, model.index(row, 0))));
        }
        return rows;
    }
    static QString rowText(const QModelIndex& index)
    {
        return index.data().toString() + ": " +
               index.siblingAtColumn(QlumDiagnosticModel::Value).data().toString();
    }
    static QStringList columns(const QAbstractItemModel& model)
    {
        QStringList titles;
        for (int column = 0; column < model.columnCount(); ++column)
            titles.append(model.headerData(column, Qt::Horizontal).toString());
        return titles;
    }
    [[nodiscard]] QStringList tabs(const char* name) const
    {
        QStringList texts;
        const auto* widget = view.findChild<QTabWidget*>(name);
        for (int tab = 0; tab < widget->count(); ++tab)
            texts.append(widget->tabText(tab));
        return texts;
    }
    template <typename Widget>
    [[nodiscard]] bool isShown(const char* text) const
    {
        for (const Widget* widget : view.findChildren<Widget*>())
            if (textOf(*widget) == QLatin1String(text))
                return true;
        return false;
    }
    static QString textOf(const QLabel& label) { return label.text(); }
    static QString textOf(const QPushButton& button) { return button.text(); }
    static QString textOf(const QGroupBox& group) { return group.title(); }
    static std::string joined(const QStringList& rows) { return rows.join('\n').toStdString(); }
    [[nodiscard]] std::string description() const
    {
        return modelText(*view.findChild<QTreeView*>("endpointDescriptionView")->model());
    }
};

TEST_F(DiagnosticLabels, PagesFieldsAndGroupsAreCalledByTheirNames)
{
    EXPECT_EQ(tabs("diagnosticTabs"), QStringList({"Server Information", "Session Diagnostics",
                                                   "Subscription Diagnostics", "Endpoints"}));
    EXPECT_EQ(tabs("sessionTabs"), QStringList({"Session Diagnostics", "Session Security Diagnostics"}));
    for (const char* label : {"Current Server:", "Select Session:", "Select Subscription:",
                              "Select FindServers or GetEndpoints result:"})
        EXPECT_TRUE(isShown<QLabel>(label)) << label;
    for (const char* button : {"Refresh Session List", "Refresh Subscription List"})
        EXPECT_TRUE(isShown<QPushButton>(button)) << button;
    for (const char* group : {"FindServers Response", "GetEndpoints Response"})
        EXPECT_TRUE(isShown<QGroupBox>(group)) << group;
    EXPECT_EQ(columns(*view.findChild<QTreeView*>("endpointDescriptionView")->model()),
              QStringList({"Parameter", "Value"}));
}

TEST_F(DiagnosticLabels, RowsOfTheServerShowTheirOwnNodes)
{
    for (const PanelRows& panel : serverPanels)
        for (const NumberedRow& row : panel.rows)
            if (row.nodeId != 0)
                services->table.variable(UaNodeId(row.nodeId), "", UaVariant(row.nodeId), UaNodeId());
    services->table.object(UaNodeId(2997), "AggregateFunctions", UaNodeId());
    services->table.object(UaNodeId(2996), "ModellingRules", UaNodeId());
    connectView();
    std::size_t place = 0;
    for (const QlumDiagnosticPanel* panel : view.serverPage()->panels()) {
        ASSERT_LT(place, std::size(serverPanels));
        const PanelRows& wanted = serverPanels[place++];
        EXPECT_EQ(panel->title(), wanted.title);
        QStringList rows;
        for (const NumberedRow& row : wanted.rows)
            if (row.nodeId != 0)
                rows.append(QStringLiteral("%1: %2").arg(row.label).arg(row.nodeId));
            else if (qstrcmp(row.label, "OperationLimits") == 0)
                rows.append(QStringLiteral("OperationLimits: "));
            else
                rows.append(QStringLiteral("%1: N/A").arg(row.label));
        EXPECT_EQ(joined(rowsOf(panel)), joined(rows)) << wanted.title;
    }
    EXPECT_EQ(place, std::size(serverPanels));
}

TEST_F(DiagnosticLabels, BuildInfoAndStatusShowWhatTheServerIs)
{
    const auto variable = [this](OpcUa_UInt32 id, const UaVariant& value) {
        services->table.variable(UaNodeId(id), "", value, UaNodeId());
    };
    variable(2260,
             structureVariant<OpcUa_BuildInfo>(OpcUa_BuildInfo_EncodeableType, [](OpcUa_BuildInfo& info) {
                 setText(info.ProductUri, "urn:boiler");
                 setText(info.ManufacturerName, "Plant Works");
                 setText(info.ProductName, "Boiler");
                 setText(info.SoftwareVersion, "2.1");
                 setText(info.BuildNumber, "77");
             }));
    variable(2259, UaVariant(OpcUa_Int32(4)));
    variable(2992, UaVariant(OpcUa_UInt32(30)));
    variable(2993, UaVariant(UaLocalizedText(UaString("en"), UaString("Maintenance"))));
    variable(2257, UaVariant(now));
    connectView();
    const QlumDiagnosticPanel* status = view.serverPage()->panels()[2];
    const QString time = qlumShowDateTime(now);
    EXPECT_EQ(joined(rowsOf(status)), joined({"StartTime: " + time, "CurrentTime: " + time, "State: Shutdown",
                                              "BuildInfo: urn:boiler, Plant Works, Boiler, 2.1, 77",
                                              "SecondsTillShutdown: 30", "ShutdownReason: Maintenance"}));
    const QlumDiagnosticItem* build = status->model()->find("BuildInfo");
    QStringList parts;
    for (int part = 0; part < build->childCount(); ++part)
        parts.append(build->child(part)->label);
    EXPECT_EQ(parts, QStringList({"ProductUri", "ManufacturerName", "ProductName", "SoftwareVersion",
                                  "BuildNumber", "BuildDate"}));
}

TEST_F(DiagnosticLabels, ASessionShowsAllItsFields)
{
    services->own = idOf("A");
    services->table.variable(UaNodeId(3707), "",
                             arrayVariant({structureVariant<Session>(
                                 OpcUa_SessionDiagnosticsDataType_EncodeableType,
                                 [](Session& to) {
                                     EXPECT_TRUE(OpcUa_IsGood(idOf("A").copyTo(&to.SessionId)));
                                     setText(to.SessionName, "A");
                                     setText(to.ClientDescription.ApplicationUri, "urn:plant:hmi");
                                     to.ClientDescription.ApplicationType = OpcUa_ApplicationType_Client;
                                     setText(to.ServerUri, "urn:server");
                                     setText(to.EndpointUrl, "opc.tcp://plc:4840");
                                     setTexts(to.NoOfLocaleIds, to.LocaleIds, {"de", "en"});
                                     to.ActualSessionTimeout = 60000.5;
                                     to.MaxResponseMessageSize = 1 << 20;
                                     to.ClientConnectionTime = now;
                                     to.ClientLastContactTime = now;
                                     to.CurrentSubscriptionsCount = 2;
                                     to.CurrentMonitoredItemsCount = 3;
                                     to.CurrentPublishRequestsInQueue = 5;
                                     to.UnauthorizedRequestCount = 7;
                                     OpcUa_UInt32 number = 100;
                                     for (const SessionCounter& counter : sessionCounters)
                                         if (counter.member) {
                                             (to.*counter.member).TotalCount = number++;
                                             (to.*counter.member).ErrorCount = number++;
                                         }
                                 })}),
                             UaNodeId());
    connectView();
    const QString time = qlumShowDateTime(now);
    const QString values[] = {"ns=2;s=A",
                              "A",
                              "urn:plant:hmi, Client",
                              "urn:server",
                              "opc.tcp://plc:4840",
                              "2 elements",
                              "60000.5",
                              "1048576",
                              time,
                              time,
                              "2",
                              "3",
                              "5"};
    QStringList wanted;
    for (std::size_t i = 0; i < std::size(sessionFields); ++i)
        wanted.append(QStringLiteral("%1: %2").arg(sessionFields[i], values[i]));
    int number = 100;
    for (const SessionCounter& counter : sessionCounters) {
        wanted.append(
            counter.member
                ? QStringLiteral("%1: Total %2 / Error %3").arg(counter.label).arg(number).arg(number + 1)
                : QStringLiteral("%1: 7").arg(counter.label));
        number += counter.member ? 2 : 0;
    }
    EXPECT_EQ(joined(rowsOf(view.sessionPanel())), joined(wanted));
    EXPECT_EQ(columns(*view.sessionPanel()->model()), QStringList({"Parameter", "Value", "Per Second"}));
}

TEST_F(DiagnosticLabels, TheSecurityOfASessionShowsAllItsFields)
{
    services->own = idOf("A");
    stateArrays({{"A"}});
    services->table.variable(
        UaNodeId(3708), "",
        arrayVariant({structureVariant<OpcUa_SessionSecurityDiagnosticsDataType>(
            OpcUa_SessionSecurityDiagnosticsDataType_EncodeableType,
            [](OpcUa_SessionSecurityDiagnosticsDataType& to) {
                EXPECT_TRUE(OpcUa_IsGood(idOf("A").copyTo(&to.SessionId)));
                setText(to.ClientUserIdOfSession, "operator");
                setTexts(to.NoOfClientUserIdHistory, to.ClientUserIdHistory, {"operator"});
                setText(to.AuthenticationMechanism, "UserName");
                setText(to.Encoding, "UA Binary");
                setText(to.TransportProtocol, "opc.tcp");
                to.SecurityMode = OpcUa_MessageSecurityMode_SignAndEncrypt;
                setText(to.SecurityPolicyUri, "http://opcfoundation.org/UA/SecurityPolicy#Basic256Sha256");
                const OpcUa_Byte certificate[] = {0x30, 0x82, 0x01};
                EXPECT_TRUE(OpcUa_IsGood(UaByteString(3, certificate).copyTo(&to.ClientCertificate)));
            })}),
        UaNodeId());
    connectView();
    EXPECT_EQ(joined(rowsOf(view.securityPanel())),
              joined({"ClientUserIdOfSession: operator", "ClientUserIdHistory: 1 element",
                      "AuthenticationMechanism: UserName", "Encoding: UA Binary",
                      "TransportProtocol: opc.tcp", "SecurityMode: SignAndEncrypt",
                      "SecurityPolicyUri: http://opcfoundation.org/UA/SecurityPolicy#Basic256Sha256",
                      "ClientCertificate: 3 bytes: 308201"}));
}

TEST_F(DiagnosticLabels, ASubscriptionShowsAllItsFields)
{
    services->table.setValue(UaNodeId(subscriptionArray),
                             arrayVariant({structureVariant<Subscription>(
                                 OpcUa_SubscriptionDiagnosticsDataType_EncodeableType, [](Subscription& to) {
                                     EXPECT_TRUE(OpcUa_IsGood(idOf("A").copyTo(&to.SessionId)));
                                     to.Priority = 9;
                                     to.PublishingInterval = 250;
                                     to.PublishingEnabled = OpcUa_True;
                                     OpcUa_UInt32 number = 100;
                                     for (const SubscriptionNumber& row : subscriptionNumbers)
                                         if (row.member)
                                             to.*row.member = number++;
                                 })}));
    connectView();
    QStringList wanted;
    QStringList others{"ns=2;s=A", "9", "250", "true"};
    int number = 100;
    for (const SubscriptionNumber& row : subscriptionNumbers)
        wanted.append(QStringLiteral("%1: %2").arg(row.label, row.member ? QString::number(number++)
                                                                         : others.takeFirst()));
    EXPECT_EQ(view.subscriptionPanel()->title(), "Subscription Diagnostics");
    EXPECT_EQ(joined(rowsOf(view.subscriptionPanel())), joined(wanted));
}

TEST_F(DiagnosticLabels, DescriptionsOfServersShowAllTheirFields)
{
    ASSERT_TRUE(endpoints.servers.create(4));
    for (const auto& [place, type] : {std::pair(0u, OpcUa_ApplicationType_Server),
                                      {1u, OpcUa_ApplicationType_Client},
                                      {2u, OpcUa_ApplicationType_ClientAndServer},
                                      {3u, OpcUa_ApplicationType_DiscoveryServer}}) {
        OpcUa_ApplicationDescription& server = endpoints.servers[place];
        server.ApplicationType = type;
        setText(server.ApplicationUri, "urn:plc");
        setText(server.ProductUri, "urn:product");
        setText(server.ApplicationName.Text, "Plc");
        setTexts(server.NoOfDiscoveryUrls, server.DiscoveryUrls,
                 {"opc.tcp://plc:4840", "opc.tcp://plc:4841"});
    }
    setText(endpoints.servers[2].GatewayServerUri, "urn:gateway");
    setText(endpoints.servers[2].DiscoveryProfileUri, "urn:profile");
    connectView();

    auto* servers = view.findChild<QListWidget*>("findServers");
    ASSERT_EQ(servers->count(), 4);
    EXPECT_EQ(servers->item(0)->text(), "Plc (urn:plc)");
    const char* types[] = {"Server", "Client", "ClientAndServer", "DiscoveryServer"};
    for (int row = 0; row < 4; ++row) {
        servers->setCurrentRow(row);
        EXPECT_NE(description().find(std::string("ApplicationType | ") + types[row] + '\n'),
                  std::string::npos)
            << description();
    }
    servers->setCurrentRow(2);
    EXPECT_EQ(description(), "ApplicationUri | urn:plc\nProductUri | urn:product\nApplicationName | Plc\n"
                             "ApplicationType | ClientAndServer\nGatewayServerUri | urn:gateway\n"
                             "DiscoveryProfileUri | urn:profile\nDiscoveryUrls | 2 elements\n"
                             "  [0] | opc.tcp://plc:4840\n  [1] | opc.tcp://plc:4841\n");
}

TEST_F(DiagnosticLabels, DescriptionsOfEndpointsShowAllTheirFields)
{
    const OpcUa_MessageSecurityMode modes[] = {OpcUa_MessageSecurityMode_Invalid,
                                               OpcUa_MessageSecurityMode_None, OpcUa_MessageSecurityMode_Sign,
                                               OpcUa_MessageSecurityMode_SignAndEncrypt};
    const OpcUa_UserTokenType tokens[] = {OpcUa_UserTokenType_Anonymous, OpcUa_UserTokenType_UserName,
                                          OpcUa_UserTokenType_Certificate, OpcUa_UserTokenType_IssuedToken};
    ASSERT_TRUE(endpoints.endpoints.create(4));
    for (OpcUa_UInt32 i = 0; i < 4; ++i) {
        endpoints.endpoints[i].SecurityMode = modes[i];
        setText(endpoints.endpoints[i].EndpointUrl, "opc.tcp://plc:4840");
        endpoints.endpoints[i].SecurityLevel = 40;
    }
    OpcUa_EndpointDescription& endpoint = endpoints.endpoints[3];
    setText(endpoint.SecurityPolicyUri, "http://opcfoundation.org/UA/SecurityPolicy#Basic256Sha256");
    setText(endpoint.TransportProfileUri, "urn:uatcp");
    UaUserTokenPolicys policies(4);
    for (OpcUa_UInt32 i = 0; i < 4; ++i) {
        policies[i].TokenType = tokens[i];
        setText(policies[i].PolicyId, "p");
    }
    setText(policies[3].IssuedTokenType, "urn:token");
    setText(policies[3].IssuerEndpointUrl, "https://issuer");
    setText(policies[3].SecurityPolicyUri, "urn:policy");
    policies.detach(&endpoint.NoOfUserIdentityTokens, &endpoint.UserIdentityTokens);
    connectView();

    auto* answers = view.findChild<QListWidget*>("getEndpoints");
    ASSERT_EQ(answers->count(), 4);
    EXPECT_EQ(answers->item(3)->text(), "opc.tcp://plc:4840 (Basic256Sha256, SignAndEncrypt)");
    const char* names[] = {"Invalid", "None", "Sign", "SignAndEncrypt"};
    for (int row = 0; row < 4; ++row) {
        answers->setCurrentRow(row);
        EXPECT_NE(description().find(std::string("\nSecurityMode | ") + names[row] + '\n'), std::string::npos)
            << description();
    }
    QStringList labels;
    const QAbstractItemModel& tree = *view.findChild<QTreeView*>("endpointDescriptionView")->model();
    for (int row = 0; row < tree.rowCount(); ++row)
        labels.append(tree.index(row, 0).data().toString());
    EXPECT_EQ(labels,
              QStringList({"EndpointUrl", "Server", "ServerCertificate", "SecurityMode", "SecurityPolicyUri",
                           "UserIdentityTokens", "TransportProfileUri", "SecurityLevel"}));
    const QModelIndex tokensRow = tree.index(5, 0);
    QStringList kinds;
    for (int row = 0; row < tree.rowCount(tokensRow); ++row)
        kinds.append(rowText(tree.index(row, 0, tokensRow)));
    EXPECT_EQ(kinds,
              QStringList({"UserTokenPolicy[0]: p, Anonymous", "UserTokenPolicy[1]: p, UserName",
                           "UserTokenPolicy[2]: p, Certificate",
                           "UserTokenPolicy[3]: p, IssuedToken, urn:token, https://issuer, urn:policy"}));
    const QModelIndex issued = tree.index(3, 0, tokensRow);
    QStringList fields;
    for (int row = 0; row < tree.rowCount(issued); ++row)
        fields.append(tree.index(row, 0, issued).data().toString());
    EXPECT_EQ(fields, QStringList({"PolicyId", "TokenType", "IssuedTokenType", "IssuerEndpointUrl",
                                   "SecurityPolicyUri"}));
}

} // namespace
