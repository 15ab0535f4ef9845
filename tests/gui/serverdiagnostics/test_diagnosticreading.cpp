// What is made of what servers tell of their sessions and subscriptions, rightly and wrongly.
#include <plugins/serverdiagnostics/qlumsessiontable.h>
#include <plugins/serverdiagnostics/qlumsubscriptiontable.h>
#include <tests/gui/serverdiagnostics/diagnosticsfixture.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uavariant.h>

#include <QStringList>

#include <algorithm>
#include <string>
#include <vector>

namespace {

class DiagnosticReading : public DiagnosticsFixture
{
protected:
    // A node of a subscription with one child, whose names are in the namespaces.
    void stateSubscriptionNode(const UaNodeId& array, const char* name, OpcUa_UInt32 type,
                               OpcUa_UInt16 childNames, const UaVariant& value)
    {
        const UaNodeId node = below(array, name, 2);
        services->table.variable(node, name, value, UaNodeId());
        services->table.object(node, name, array, UaNodeId(type));
        services->table.setAttribute(node, OpcUa_Attributes_Value, UaDataValue(value));
        services->table.variable(below(node, "I", childNames), "SubscriptionId", UaVariant(OpcUa_UInt32(77)),
                                 node);
    }
};

TEST_F(DiagnosticReading, ArraysGiveTheTableOfSessionsWithTheOwnAndForgottenOnesMarked)
{
    services->own = idOf("Bench");
    stateArrays({{"Line", "urn:other", 500}, {"Bench", "urn:plant:hmi", 0}, {"Old", "urn:plant:hmi", 180}});
    stateObject({"Bench"});
    connectView();
    EXPECT_EQ(names(*view.sessions()), "Line; Bench (Current session); Old");
    const auto cell = [this](int row, int column) {
        return view.sessions()->index(row, column).data().toString();
    };
    EXPECT_EQ(cell(2, QlumSessionTable::Note), "Forgotten? No contact for 3 min");
    EXPECT_EQ(cell(0, QlumSessionTable::Note), "") << "of another application";
    EXPECT_EQ(cell(1, QlumSessionTable::Security), "Sign, Basic256Sha256");
    EXPECT_EQ(cell(1, QlumSessionTable::User), "operator");
    EXPECT_TRUE(note(view.sessionChooser()).contains("looks forgotten"));
    EXPECT_EQ(view.sessionChooser()->key(), toQString(idOf("Bench").toXmlString()));
    EXPECT_EQ(valueOf(view.sessionPanel(), "SessionName"), "Bench now") << "of its nodes";
    EXPECT_EQ(valueOf(view.sessionPanel(), "ReadCount"), "Total 10 / Error 1");
    EXPECT_EQ(valueOf(view.sessionPanel(), "ActualSessionTimeout"), "60000")
        << "has no node, but is in the list";
    EXPECT_EQ(valueOf(view.securityPanel(), "ClientUserIdOfSession"), "guest");

    view.sessionChooser()->choose(toQString(idOf("Line").toXmlString()));
    view.sltGetSessions(false);
    ASSERT_TRUE(waitForAll());
    EXPECT_EQ(valueOf(view.sessionPanel(), "SessionName"), "Line") << "of the array, since it has no node";
    EXPECT_EQ(valueOf(view.sessionPanel(), "ServerUri"), "N/A");
    EXPECT_EQ(valueOf(view.securityPanel(), "SecurityMode"), "Sign");
    EXPECT_TRUE(application.said().isEmpty()) << application.said().join('\n');
}

TEST_F(DiagnosticReading, SessionsWithoutArraysAreReadOfTheirObjects)
{
    services->own = idOf("B");
    stateObject({"A"});
    stateObject({"B"});
    services->table.object(UaNodeId(1, 2), "Folder", UaNodeId(summary), UaNodeId(61)); // is no session
    connectView();
    EXPECT_EQ(names(*view.sessions()), "A; B (Current session)");
    EXPECT_EQ(view.sessions()->index(0, QlumSessionTable::Requests).data().toInt(), 10);
    EXPECT_EQ(view.sessions()->index(0, QlumSessionTable::User).data().toString(), "operator");

    // arrays of something else are no arrays
    services->table.variable(UaNodeId(3707), "SessionDiagnosticsArray",
                             arrayVariant({subscriptionOf(1, "A"), subscriptionOf(2, "A")}), UaNodeId());
    services->table.variable(UaNodeId(3708), "SessionSecurityDiagnosticsArray", UaVariant("none"),
                             UaNodeId());
    view.sltGetSessions(false);
    ASSERT_TRUE(waitForAll());
    EXPECT_EQ(names(*view.sessions()), "A; B (Current session)");
    EXPECT_EQ(note(view.sessionChooser()), "2 elements of the server's list of sessions are something else.");
}

TEST_F(DiagnosticReading, ListsThatAreTooLargeForAnAnswerAreReadOfTheirObjectsInBatches)
{
    services->own = idOf("S7");
    services->isListTooLarge = true;
    constexpr int many = 450;
    std::vector<std::string> texts;
    for (int i = 0; i < many; ++i)
        texts.push_back("S" + std::to_string(i));
    for (const std::string& text : texts)
        stateObject({text.c_str(), "urn:plant:hmi", text == "S9" ? 180 : 0});
    stateSubscriptionNode(UaNodeId(subscriptionArray), "77", 2172, 0, subscriptionOf(77, "S7"));
    connectView();
    ASSERT_EQ(view.sessions()->rowCount(), many);
    EXPECT_EQ(view.sessions()->index(many - 1, QlumSessionTable::Requests).data().toInt(), 10)
        << "of the last batch";
    EXPECT_EQ(view.sessions()->index(7, 0).data().toString(), "S7 (Current session)");
    EXPECT_TRUE(note(view.sessionChooser()).contains("could not be read: BadResponseTooLarge"))
        << note(view.sessionChooser()).toStdString();
    EXPECT_TRUE(note(view.sessionChooser()).contains("looks forgotten")) << "by the server's clock";
    EXPECT_EQ(names(*view.subscriptions()), "77");
}

TEST_F(DiagnosticReading, ForbiddenListsAreToldAndWhatIsAllowedIsShown)
{
    stateArrays({{"A"}});
    services->table.fail(NodeTable::Read, UaNodeId(3708), OpcUa_BadUserAccessDenied);
    connectView();
    EXPECT_EQ(names(*view.sessions()), "A");
    EXPECT_TRUE(note(view.sessionChooser())
                    .startsWith("How sessions are secured could not be read: "
                                "BadUserAccessDenied"));

    services->table.fail(NodeTable::Read, UaNodeId(3707), OpcUa_BadSecurityModeInsufficient);
    services->table.fail(NodeTable::Browse, UaNodeId(summary), OpcUa_BadSecurityModeInsufficient);
    services->table.fail(NodeTable::Read, UaNodeId(subscriptionArray), OpcUa_BadUserAccessDenied);
    services->table.fail(NodeTable::Browse, UaNodeId(subscriptionArray), OpcUa_BadUserAccessDenied);
    view.sltRefresh();
    ASSERT_TRUE(waitForAll());
    EXPECT_TRUE(note(view.sessionChooser())
                    .startsWith("The sessions could not be read: BadSecurityModeInsufficient"));
    EXPECT_EQ(names(*view.sessions()), "A") << "what was there before stays";
    EXPECT_TRUE(note(view.subscriptionChooser()).startsWith("The subscriptions could not be read: "));
}

TEST_F(DiagnosticReading, DiagnosticsInNamespaceOneAreUsedAndLoggedOnce)
{
    stateObject({"A"}, 1, 0);
    stateObject({"B"}, 0, 1);
    connectView();
    EXPECT_EQ(valueOf(view.sessionPanel(), "SessionName"), "A now");
    view.sessionChooser()->choose(toQString(idOf("B").toXmlString()));
    view.sltGetSessions(false);
    ASSERT_TRUE(waitForAll());
    EXPECT_EQ(valueOf(view.securityPanel(), "ClientUserIdOfSession"), "guest");
    EXPECT_EQ(
        application.said(),
        QStringList({"The BrowsePath's NamespaceIndex of the diagnostics children of session node 'ns=2;s=A' "
                     "is wrong, should be 0 instead of 1",
                     "The BrowsePath's NamespaceIndex of the security diagnostics children of session node "
                     "'ns=2;s=B' is wrong, should be 0 instead of 1"}));
}

TEST_F(DiagnosticReading, WrongNamesAndTypesOfSubscriptionsAreUsedAndLogged)
{
    const UaNodeId array(subscriptionArray);
    stateSubscriptionNode(array, "77", 874, 0, UaVariant());
    connectView();
    EXPECT_EQ(names(*view.subscriptions()), "77");
    EXPECT_EQ(valueOf(view.subscriptionPanel(), "SubscriptionId"), "77");
    EXPECT_EQ(valueOf(view.subscriptionPanel(), "Priority"), "Node does not exist");
    EXPECT_EQ(application.said(),
              QStringList("The TypeDefinition of SubscriptionDiagnostics node "
                          "'ns=2;s=i=2290.77' is wrong, should be SubscriptionDiagnosticsType "
                          "instead of SubscriptionDiagnosticsDataType"));

    stateSubscriptionNode(array, "78", 2172, 1, subscriptionOf(78, "A"));
    services->table.setValue(array, arrayVariant({subscriptionOf(78, "A")}));
    view.sltGetSubscriptions(false);
    ASSERT_TRUE(waitForAll());
    EXPECT_EQ(names(*view.subscriptions()), "78");
    EXPECT_EQ(note(view.subscriptionChooser()), "The subscription that was shown has ended.");
    EXPECT_EQ(valueOf(view.subscriptionPanel(), "SubscriptionId"), "") << "nothing of the one before";
    view.subscriptionChooser()->choose("78");
    view.sltGetSubscriptions(false);
    ASSERT_TRUE(waitForAll());
    EXPECT_EQ(valueOf(view.subscriptionPanel(), "SubscriptionId"), "77") << "as its node says";
    EXPECT_EQ(
        application.said().last(),
        "The BrowsePath's NamespaceIndex of the diagnostics children of subscription node 'ns=2;s=i=2290.78' "
        "is wrong, should be 0 instead of 1");
}

TEST_F(DiagnosticReading, SubscriptionsAreFoundBelowSessionsWhereTheServerHasNoListOfItsOwn)
{
    services->table.fail(NodeTable::Read, UaNodeId(subscriptionArray), OpcUa_BadNodeIdUnknown);
    services->table.fail(NodeTable::Browse, UaNodeId(subscriptionArray), OpcUa_BadNodeIdUnknown);
    stateObject({"A"});
    stateObject({"B"});
    services->table.variable(below(idOf("A"), "L", 0), "SubscriptionDiagnosticsArray",
                             arrayVariant({subscriptionOf(1, "A"), subscriptionOf(2, "A")}), idOf("A"));
    services->table.variable(below(idOf("B"), "L", 1), "SubscriptionDiagnosticsArray",
                             arrayVariant({subscriptionOf(3, "B")}), idOf("B"));
    connectView();
    EXPECT_EQ(names(*view.subscriptions()), "1; 2; 3");
    EXPECT_EQ(view.subscriptions()->index(2, QlumSubscriptionTable::Session).data().toString(), "B");
    EXPECT_EQ(valueOf(view.subscriptionPanel(), "EventQueueOverFlowCount"), "3");
    EXPECT_EQ(application.said(),
              QStringList("The BrowsePath's NamespaceIndex of the SubscriptionDiagnosticsArray "
                          "child of session node 'ns=2;s=B' is wrong, should be 0 instead of 1"));
}

TEST_F(DiagnosticReading, SessionThatVanishesIsToldAndItsRowsAreEmptied)
{
    stateArrays({{"A"}, {"B"}});
    connectView();
    EXPECT_EQ(valueOf(view.sessionPanel(), "SessionName"), "A");
    stateArrays({{"B"}, {"C"}});
    view.sltGetSessions(true);
    ASSERT_TRUE(waitForAll());
    EXPECT_EQ(names(*view.sessions()), "B; C");
    EXPECT_EQ(view.sessionChooser()->key(), "");
    EXPECT_EQ(note(view.sessionChooser()), "The session that was shown has ended.");
    EXPECT_EQ(valueOf(view.sessionPanel(), "SessionName"), "");
}

TEST_F(DiagnosticReading, ManySessionsCostFewCalls)
{
    std::vector<std::string> texts;
    for (int i = 0; i < 1000; ++i)
        texts.push_back("Session" + std::to_string(i));
    std::vector<StatedSession> sessions;
    for (const std::string& text : texts)
        sessions.push_back({text.c_str()});
    stateArrays(sessions);
    std::vector<UaVariant> subscriptions;
    for (OpcUa_UInt32 i = 1; i <= 5000; ++i)
        subscriptions.push_back(subscriptionOf(i, "Session1"));
    services->table.setValue(UaNodeId(subscriptionArray), arrayVariant(subscriptions));
    connectView();
    ASSERT_EQ(view.sessions()->rowCount(), 1000);
    ASSERT_EQ(view.subscriptions()->rowCount(), 5000);
    const auto calls = [this] {
        return services->calls(NodeTable::Read) + services->calls(NodeTable::Browse) +
               services->calls(NodeTable::Translate);
    };
    int before = calls();
    view.sltGetSessions(false);
    ASSERT_TRUE(waitForAll());
    EXPECT_LE(calls() - before, 10);
    before = calls();
    view.sltGetSubscriptions(false);
    ASSERT_TRUE(waitForAll());
    EXPECT_LE(calls() - before, 10);
}

} // namespace
