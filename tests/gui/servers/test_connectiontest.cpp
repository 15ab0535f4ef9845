// Settings that are tried out before they are accepted.
#include <opcua/opcua_statuscodes.h>
#include <servers/qlumconnectiontest.h>
#include <servers/qlumdiscoverysetting.h>
#include <tests/gui/servers/servernodefixture.h>
#include <tests/support/connectanswers.h>
#include <tests/support/fakestack.h>
#include <tests/support/modeltext.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTest>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace {
class ConnectionTest : public ServerNode
{
protected:
    ConnectionTest()
        : test(std::make_unique<QlumConnectionTest>(
              [this] { return std::make_unique<ConnectAnswers>(script); }))
    {
        QObject::connect(
            test.get(), &QlumConnectionTest::finished,
            [this](bool good, const QString& said, const QString& reason) {
                isGood = good;
                what = said;
                why = reason;
            });
        QObject::connect(test.get(), &QlumConnectionTest::stepChanged,
                         [this](const QString& step) { steps.append(step); });
    }
    bool run()
    {
        test->start(setting);
        return QTest::qWaitFor([this] { return !test->isRunning(); });
    }

    std::unique_ptr<QlumConnectionTest> test;
    bool isGood = false;
    QString what;
    QString why;
    QStringList steps;
};

TEST_F(ConnectionTest, TellsWhatTheServerSaysOfItselfAndClosesItsSession)
{
    FakeStack::instance().setServerState(3);
    FakeStack::instance().setVariable(2261, UaVariant(UaString("<b>Boiler</b>")));
    FakeStack::instance().setVariable(2264, UaVariant(UaString("1.2")));
    ASSERT_TRUE(run());
    EXPECT_TRUE(isGood) << what << why;
    EXPECT_TRUE(what.contains("None, None, anonymously")) << what;
    EXPECT_TRUE(why.startsWith("<b>Boiler</b> 1.2 is suspended. It keeps the session for 1,200 s")) << why;
    EXPECT_TRUE(steps.contains("Opening the session")) << steps.join('\n');
    EXPECT_TRUE(QTest::qWaitFor(
        [] { return FakeStack::instance().calls(OpcUa_CloseSessionRequest_EncodeableType) == 1; }));
}

TEST_F(ConnectionTest, FailureNamesReasonAndAdvice)
{
    FakeStack::instance().failNext(OpcUa_ActivateSessionRequest_EncodeableType,
                                   {OpcUa_BadIdentityTokenRejected});
    ASSERT_TRUE(run());
    EXPECT_FALSE(isGood);
    EXPECT_TRUE(what.contains("does not accept the log-in (BadIdentityTokenRejected)")) << what;
    EXPECT_FALSE(why.isEmpty());
    EXPECT_FALSE(asked().contains("failure")) << "it is told in place";
}

TEST_F(ConnectionTest, CancelAndLeavingEndItAtAnyServer)
{
    FakeStack::instance().on(OpcUa_CreateSessionRequest_EncodeableType,
                             [](const void*, void*) { return FakeStack::instance().hang(); });
    test->start(setting);
    ASSERT_TRUE(QTest::qWaitFor(
        [] { return FakeStack::instance().calls(OpcUa_CreateSessionRequest_EncodeableType) > 0; }));
    test->cancel();
    ASSERT_TRUE(QTest::qWaitFor([this] { return !test->isRunning(); }));
    EXPECT_EQ(what, "The test was cancelled.");
    test->start(setting);
    ASSERT_TRUE(QTest::qWaitFor(
        [] { return FakeStack::instance().calls(OpcUa_CreateSessionRequest_EncodeableType) > 1; }));
    QElapsedTimer timer;
    timer.start();
    test.reset();
    EXPECT_LT(timer.elapsed(), 3000);
}

TEST_F(ConnectionTest, HostThatTheUserKeepsToIsTold)
{
    application.settings["General.ConnectTimeout"] = 300u; // a look-up may take longer than anybody waits
    offer({{"opc.tcp://plc.invalid:4840", qlumPolicyNone()}});
    script.isDialledHostKept = true;
    ASSERT_TRUE(run());
    EXPECT_TRUE(isGood) << what;
    EXPECT_EQ(test->ignoredHost(), "plc.invalid");
}
} // namespace
