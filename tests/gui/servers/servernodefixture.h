// A server node above a scripted stack.
#pragma once
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumprojectnode.h>
#include <app/api/qlumservernode.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_statuscodes.h>
#include <servers/qlumdiscoverysetting.h>
#include <servers/qlumendpoint.h>
#include <servers/qlumprojectnodeserver.h>
#include <tests/support/connectanswers.h>
#include <tests/support/fakestack.h>
#include <tests/support/modeltext.h>
#include <tests/support/owncertificate.h>
#include <tests/support/stubapplication.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastring.h>

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QPair>
#include <QString>
#include <QStringList>
#include <QTest>
#include <QVector>
#include <QWidget>
#include <gtest/gtest.h>

#include <memory>
#include <utility>

class ServerNode : public testing::Test
{
protected:
    ServerNode()
    {
        EXPECT_EQ(provideOwnCertificate(), QString());
        FakeStack::instance().reset();
        offer({{"opc.tcp://plc:4840", qlumPolicyNone()}});
        for (const char* key : {"General.ConnectTimeout", "General.PublishTimeout", "General.CallTimeout"})
            application.settings[key] = 5000u;
        application.settings["General.SessionTimeout"] = 1200000.0;
        application.settings["General.SecureChannelLifetime"] = 3600000u;
        application.settings["General.LocaleId"] = "en";
        application.settings["General.WatchdogTime"] = 5000u;
        application.settings["General.WatchdogTimeout"] = 5000u;
        application.settings["General.TypeDictionaryMode"] = "Manual";
        application.settings["General.SubscribeForModelChangeEvents"] = false;
        setting.endpoint.url = "opc.tcp://plc:4840";
        setting.endpoint.securityPolicyUri = qlumPolicyNone();
        setting.displayName = "Plc";
        setting.sessionName = "test session";
    }
    /// What GetEndpoints answers: one endpoint.
    static void offerOne(const QlumEndpoint& endpoint)
    {
        FakeStack::instance().on(
            OpcUa_GetEndpointsRequest_EncodeableType,
            [endpoint](const void*, void* response) {
                UaEndpointDescriptions descriptions = qlumEndpointDescriptions({endpoint});
                const QByteArray& der = endpoint.serverCertificate;
                const UaByteString certificate(der.size(),
                                               reinterpret_cast<const OpcUa_Byte*>(der.constData()));
                EXPECT_TRUE(OpcUa_IsGood(certificate.copyTo(&descriptions[0].ServerCertificate)));
                auto* answer = static_cast<OpcUa_GetEndpointsResponse*>(response);
                descriptions.detach(&answer->NoOfEndpoints, &answer->Endpoints);
                return static_cast<OpcUa_StatusCode>(OpcUa_Good);
            });
    }
    /// What GetEndpoints answers: URL and policy.
    static void offer(const QVector<QPair<QString, QString>>& endpoints)
    {
        FakeStack::instance().on(
            OpcUa_GetEndpointsRequest_EncodeableType,
            [endpoints](const void*, void* response) {
                UaEndpointDescriptions descriptions(static_cast<OpcUa_UInt32>(endpoints.size()));
                for (OpcUa_UInt32 i = 0; i < descriptions.length(); ++i) {
                    const auto& [url, policy] = endpoints.at(static_cast<int>(i));
                    EXPECT_TRUE(OpcUa_IsGood(toUaString(url).copyTo(&descriptions[i].EndpointUrl)));
                    EXPECT_TRUE(OpcUa_IsGood(toUaString(policy).copyTo(&descriptions[i].SecurityPolicyUri)));
                    descriptions[i].SecurityMode = OpcUa_MessageSecurityMode_None;
                    EXPECT_TRUE(
                        OpcUa_IsGood(UaString("urn:plc").copyTo(&descriptions[i].Server.ApplicationUri)));
                }
                auto* answer = static_cast<OpcUa_GetEndpointsResponse*>(response);
                descriptions.detach(&answer->NoOfEndpoints, &answer->Endpoints);
                return static_cast<OpcUa_StatusCode>(OpcUa_Good);
            });
    }
    void make()
    {
        node = std::make_unique<QlumProjectNodeServer>(setting, std::make_unique<ConnectAnswers>(script));
        QObject::connect(node.get(), &QlumServerNode::serverNodeChanged, node.get(),
                         [this](QlumProjectNode*, QWidget*, QlumConnectionStatus status, unsigned int,
                                const NamespaceMap& map) {
                             states.append(static_cast<int>(status));
                             lastMap = map;
                         });
        QObject::connect(node.get(), &QlumServerNode::retryConnectServer, node.get(),
                         &QlumServerNode::startConnect); // as the main window
    }
    void changeUser()
    {
        node->changeUser();
        EXPECT_TRUE(QTest::qWaitFor([this] { return !node->isBusy(); }));
    }
    /// The questions since the last call.
    QStringList asked() { return std::exchange(script.asked, {}); }
    QStringList log() const
    {
        QStringList lines;
        for (const StubApplication::Entry& entry : application.entries())
            if (entry.source == "Server Node" && entry.serverId == node->serverId())
                lines.append(QString::number(entry.level) + " " + entry.text);
        return lines;
    }

    StubApplication application;
    QlumDiscoverySetting setting;
    ConnectScript script;
    std::unique_ptr<QlumProjectNodeServer> node;
    QList<int> states;
    NamespaceMap lastMap;
};
