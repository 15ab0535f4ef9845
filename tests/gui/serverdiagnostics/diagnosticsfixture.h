// A server that tells of itself what a test wants it to, with a view in front of it.
#pragma once
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumjob.h>
#include <app/api/qlumserverpools.h>
#include <app/api/qlumsessionservices.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/serverdiagnostics/qlumdiagnosticchooser.h>
#include <plugins/serverdiagnostics/qlumdiagnosticmodel.h>
#include <plugins/serverdiagnostics/qlumdiagnosticpanel.h>
#include <plugins/serverdiagnostics/qlumdiagnosticserverpage.h>
#include <plugins/serverdiagnostics/qlumserverdiagnosticwidget.h>
#include <plugins/serverdiagnostics/qlumsessiontable.h>
#include <plugins/serverdiagnostics/qlumsubscriptiontable.h>
#include <tests/support/modeltext.h>
#include <tests/support/stubapplication.h>
#include <tests/support/tableservices.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>

#include <QAbstractItemModel>
#include <QLabel>
#include <QList>
#include <QString>
#include <QStringList>
#include <QTest>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

class DiagnosticsApplication : public StubApplication
{
public:
    QString serverName(unsigned int id) override { return QStringLiteral("Plc%1").arg(id); }
    QList<unsigned int> projectServerIds() override { return {5, 6}; }

    /// What was logged by the view.
    [[nodiscard]] QStringList said() const
    {
        QStringList lines;
        for (const Entry& entry : entries())
            if (entry.source == QLatin1String("ServerDiagnostic Plugin"))
                lines.append(entry.text);
        return lines;
    }
};

class DiagnosticsServices : public TableServices
{
public:
    UaNodeId own;
    UaClientSdk::OperationLimits limits;

    bool isListTooLarge = false; ///< an answer with a list of sessions or subscriptions

    UaNodeId sessionId() const override { return own; }
    UaStatus read(Settings& settings, double maxAge, OpcUa_TimestampsToReturn stamps,
                  const UaReadValueIds& nodes, UaDataValues& values) override
    {
        for (const OpcUa_ReadValueId& node : nodes)
            if (const UaNodeId id(node.NodeId);
                isListTooLarge && (id == UaNodeId(3707) || id == UaNodeId(2290)))
                return UaStatus(OpcUa_BadResponseTooLarge);
        return TableServices::read(settings, maxAge, stamps, nodes, values);
    }
    UaClientSdk::OperationLimits operationLimits() const override { return limits; }
};

/// A structure as the stack hands it over.
template <typename T>
UaVariant structureVariant(const OpcUa_EncodeableType& type, const std::function<void(T&)>& fill)
{
    void* const object = OpcUa_EncodeableObject_Create(&type);
    fill(*static_cast<T*>(object));
    UaExtensionObject extension;
    extension.attachDecoded(type, object);
    return UaVariant(extension);
}

inline UaVariant arrayVariant(const std::vector<UaVariant>& elements)
{
    UaVariant array;
    EXPECT_TRUE(OpcUa_IsGood(array.setArray(OpcUaType_ExtensionObject, elements)));
    return array;
}

inline void setText(OpcUa_String& text, const char* value)
{
    EXPECT_TRUE(OpcUa_IsGood(UaString(value).copyTo(&text)));
}

/// What a test says of a session.
struct StatedSession
{
    const char* name;
    const char* application = "urn:plant:hmi";
    int silentSeconds = 0;
    OpcUa_UInt32 requests = 10;
};

class DiagnosticsFixture : public testing::Test
{
protected:
    using Summary = OpcUa_SessionDiagnosticsDataType;

    DiagnosticsFixture()
    {
        NodeTable& table = services->table;
        table.object(UaNodeId(summary), "SessionsDiagnosticsSummary", UaNodeId());
        table.variable(UaNodeId(2258), "CurrentTime", UaVariant(now), UaNodeId());
        table.variable(UaNodeId(subscriptionArray), "SubscriptionDiagnosticsArray", UaVariant(), UaNodeId());
    }
    /// Of an object in the table; each has the id of its session.
    static UaNodeId idOf(const char* name) { return UaNodeId(UaString(name), 2); }
    static UaNodeId below(const UaNodeId& parent, const char* name, OpcUa_UInt16 namespaceIndex)
    {
        const std::string text = parent.toXmlString().toStdString() + '.' + name;
        return UaNodeId(UaString(text.c_str()), namespaceIndex);
    }
    static UaVariant counter(OpcUa_UInt32 total, OpcUa_UInt32 errors)
    {
        return structureVariant<OpcUa_ServiceCounterDataType>(
            OpcUa_ServiceCounterDataType_EncodeableType,
            [=](OpcUa_ServiceCounterDataType& count) {
                count.TotalCount = total;
                count.ErrorCount = errors;
            });
    }
    static UaVariant diagnosticsOf(const StatedSession& stated)
    {
        return structureVariant<Summary>(
            OpcUa_SessionDiagnosticsDataType_EncodeableType,
            [&stated](Summary& to) {
                EXPECT_TRUE(OpcUa_IsGood(idOf(stated.name).copyTo(&to.SessionId)));
                setText(to.SessionName, stated.name);
                setText(to.ClientDescription.ApplicationUri, stated.application);
                UaDateTime contact = now;
                contact.addSecs(-stated.silentSeconds);
                to.ClientLastContactTime = contact;
                to.ActualSessionTimeout = 60000;
                to.TotalRequestCount.TotalCount = stated.requests;
            });
    }
    static UaVariant securityOf(const StatedSession& stated)
    {
        return structureVariant<OpcUa_SessionSecurityDiagnosticsDataType>(
            OpcUa_SessionSecurityDiagnosticsDataType_EncodeableType,
            [&stated](OpcUa_SessionSecurityDiagnosticsDataType& to) {
                EXPECT_TRUE(OpcUa_IsGood(idOf(stated.name).copyTo(&to.SessionId)));
                setText(to.ClientUserIdOfSession, "operator");
                to.SecurityMode = OpcUa_MessageSecurityMode_Sign;
                setText(to.SecurityPolicyUri, "http://opcfoundation.org/UA/SecurityPolicy#Basic256Sha256");
            });
    }
    static UaVariant subscriptionOf(OpcUa_UInt32 id, const char* session, OpcUa_UInt32 notifications = 4)
    {
        return structureVariant<OpcUa_SubscriptionDiagnosticsDataType>(
            OpcUa_SubscriptionDiagnosticsDataType_EncodeableType,
            [=](OpcUa_SubscriptionDiagnosticsDataType& to) {
                to.SubscriptionId = id;
                EXPECT_TRUE(OpcUa_IsGood(idOf(session).copyTo(&to.SessionId)));
                to.PublishingInterval = 500;
                to.NotificationsCount = notifications;
                to.EventQueueOverflowCount = 3;
            });
    }
    /// The arrays of sessions.
    void stateArrays(const std::vector<StatedSession>& sessions)
    {
        std::vector<UaVariant> diagnostics;
        std::vector<UaVariant> security;
        for (const StatedSession& session : sessions) {
            diagnostics.push_back(diagnosticsOf(session));
            security.push_back(securityOf(session));
        }
        services->table.variable(UaNodeId(3707), "SessionDiagnosticsArray", arrayVariant(diagnostics),
                                 UaNodeId());
        services->table.variable(UaNodeId(3708), "SessionSecurityDiagnosticsArray", arrayVariant(security),
                                 UaNodeId());
    }
    /// The object of a session; the namespaces are those of the names of the children.
    void stateObject(const StatedSession& stated, OpcUa_UInt16 diagnosticNames = 0,
                     OpcUa_UInt16 securityNames = 0)
    {
        NodeTable& table = services->table;
        const UaNodeId object = idOf(stated.name);
        table.object(object, stated.name, UaNodeId(summary), UaNodeId(2029));
        const UaNodeId diagnostics = below(object, "D", diagnosticNames);
        table.variable(diagnostics, "SessionDiagnostics", diagnosticsOf(stated), object);
        table.variable(below(diagnostics, "N", diagnosticNames), "SessionName",
                       UaVariant(UaString((std::string(stated.name) + " now").c_str())), diagnostics);
        table.variable(below(diagnostics, "T", diagnosticNames), "ReadCount", counter(stated.requests, 1),
                       diagnostics);
        const UaNodeId security = below(object, "S", securityNames);
        table.variable(security, "SessionSecurityDiagnostics", securityOf(stated), object);
        table.variable(below(security, "U", securityNames), "ClientUserIdOfSession", UaVariant("guest"),
                       security);
    }
    void connectView()
    {
        view.sessionStatusChanged(5, QlumConnectionStatus::Connected);
        view.serverSelectionChanged(5);
        ASSERT_TRUE(waitForAll());
    }
    bool waitForAll()
    {
        return QTest::qWaitFor([this] { return !view.isReading(); });
    }
    [[nodiscard]] QString valueOf(const QlumDiagnosticPanel* panel, const char* label) const
    {
        const QlumDiagnosticItem* const item = panel->model()->find(QLatin1String(label));
        return item ? item->text : QStringLiteral("no such row");
    }
    [[nodiscard]] QString serverValue(const char* label) const
    {
        for (const QlumDiagnosticPanel* panel : view.serverPage()->panels())
            if (const QlumDiagnosticItem* item = panel->model()->find(QLatin1String(label)))
                return item->text;
        return QStringLiteral("no such row");
    }
    [[nodiscard]] static QString names(const QAbstractItemModel& model)
    {
        QStringList list;
        for (int row = 0; row < model.rowCount(); ++row)
            list.append(model.index(row, 0).data().toString());
        return list.join(QLatin1String("; "));
    }
    [[nodiscard]] QString note(const QlumDiagnosticChooser* chooser) const
    {
        return chooser->findChild<QLabel*>(chooser->objectName() + "Note")->text();
    }

    static constexpr OpcUa_UInt32 summary = 3706;
    static constexpr OpcUa_UInt32 subscriptionArray = 2290;
    static inline const UaDateTime now = UaDateTime::fromMSecsSinceEpoch(1'700'000'000'000);

    DiagnosticsApplication application;
    std::shared_ptr<DiagnosticsServices> services = std::make_shared<DiagnosticsServices>();
    std::shared_ptr<QlumServerPools> pools = std::make_shared<QlumServerPools>();
    QlumEndpointReading endpoints;
    QlumServerDiagnosticWidget view{application, pools,
                                    [this](unsigned int id) { return id == 5 ? services : nullptr; },
                                    [this](QlumSessionServices&, QlumJob&) { return endpoints; }};
};
