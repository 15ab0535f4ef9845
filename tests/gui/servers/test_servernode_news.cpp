#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumservernode.h>
#include <tests/gui/servers/servernodefixture.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/uaclient.h>

#include <QCoreApplication>
#include <QList>
#include <QSignalSpy>
#include <QTest>

#include <thread>

namespace {
using UaClientSdk::UaClient;

TEST_F(ServerNode, NewsOfTheSessionThreadReachTheGuiUnlessTheyAreTooLate)
{
    make();
    ASSERT_TRUE(node->connectServer());
    const auto tell = [this](UaClient::ServerStatus status) {
        std::thread([this, status] { node->connectionStatusChanged(node->serverId(), status); }).join();
    };
    states.clear();
    const struct
    {
        UaClient::ServerStatus told;
        QList<int> states;
    } cases[] = {{UaClient::ConnectionWarningWatchdogTimeout, {4}},
                 {UaClient::ConnectionErrorApiReconnect, {4}},
                 {UaClient::ServerShutdown, {4}},
                 {UaClient::NewSessionCreated, {4, 5}},
                 {UaClient::Connected, {4, 5, 2}},
                 {UaClient::Connected, {4, 5, 2}}};
    for (const auto& test : cases) {
        tell(test.told);
        QCoreApplication::processEvents();
        EXPECT_EQ(states, test.states) << test.told;
    }
    tell(UaClient::ConnectionErrorApiReconnect);
    node->disconnectServer();
    QCoreApplication::processEvents();
    EXPECT_EQ(node->connectionStatus(), QlumConnectionStatus::Disconnected);
}

TEST_F(ServerNode, TypesAreLoadedBesideTheConnection)
{
    application.settings["General.TypeDictionaryMode"] = "Reconnect";
    FakeStack::instance().on(OpcUa_BrowseRequest_EncodeableType, [](const void* request, void* response) {
        const auto count = static_cast<const OpcUa_BrowseRequest*>(request)->NoOfNodesToBrowse;
        UaBrowseResults nothing(static_cast<OpcUa_UInt32>(count));
        auto* answer = static_cast<OpcUa_BrowseResponse*>(response);
        nothing.detach(&answer->NoOfResults, &answer->Results);
        return static_cast<OpcUa_StatusCode>(OpcUa_Good);
    });
    make();
    const QSignalSpy loaded(node.get(), &QlumServerNode::dataTypesLoaded);
    ASSERT_TRUE(node->connectServer());
    ASSERT_TRUE(QTest::qWaitFor([&] { return loaded.count() == 1; })) << log().join('\n');
    EXPECT_EQ(loaded.first().first().toUInt(), node->serverId());
    EXPECT_TRUE(log().contains("30 Data types of server 'Plc' loaded"));
}

TEST_F(ServerNode, LoadedTypesReplaceWhatWasKeptAndFailedOnesDoNot)
{
    make();
    ASSERT_TRUE(node->connectServer());
    const QSignalSpy loaded(node.get(), &QlumServerNode::dataTypesLoaded);
    const UaNodeId type(3000, 1);
    const auto reads = [&] {
        EXPECT_FALSE(node->isEnum(&type));
        return FakeStack::instance().calls(OpcUa_ReadRequest_EncodeableType);
    };
    const auto tell = [this](OpcUa_StatusCode result) {
        std::thread([this, result] { node->dataTypesLoaded(node->serverId(), UaStatus(result)); }).join();
        QCoreApplication::processEvents();
    };
    const int first = reads();
    EXPECT_EQ(reads(), first) << "what is no enumeration is kept";
    tell(OpcUa_BadTimeout);
    EXPECT_EQ(log().last(), "50 Loading the data types of server 'Plc' failed with error 'BadTimeout'");
    EXPECT_EQ(loaded.count(), 0);
    EXPECT_EQ(reads(), first);
    tell(OpcUa_Good);
    EXPECT_EQ(loaded.count(), 1);
    EXPECT_GT(reads(), first) << "the server is asked again";
}

TEST_F(ServerNode, NewsDuringADisconnectAreNoLongerNews)
{
    make();
    const QSignalSpy loaded(node.get(), &QlumServerNode::dataTypesLoaded);
    ASSERT_TRUE(node->connectServer());
    bool closed = false;
    FakeStack::instance().on(OpcUa_CloseSessionRequest_EncodeableType, [&](const void*, void*) {
        closed = true;
        std::thread([this] {
            node->connectionStatusChanged(node->serverId(), UaClient::ConnectionErrorApiReconnect);
            node->dataTypesLoaded(node->serverId(), UaStatus());
        }).join();
        return static_cast<OpcUa_StatusCode>(OpcUa_Good);
    });
    node->disconnectServer();
    ASSERT_TRUE(closed);
    QCoreApplication::processEvents();
    EXPECT_EQ(states.last(), 0);
    EXPECT_EQ(loaded.count(), 0);
}
} // namespace
