// The services of a session against a server that is not ours: methods, history, registered nodes, what the
// server refuses, and the asynchronous forms.
#include <opcua/opcua.h>
#include <tests/support/demoserverinfo.h>
#include <uabase/system/uaplatformlayer.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/servicewatch.h>
#include <uaclientsdk/uaclient.h>
#include <uaclientsdk/uasession.h>
#include <uaclientsdk/uasessioncallback.h>

#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <initializer_list>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

namespace {

using namespace UaClientSdk;

UaNodeId demoNode(const char* id)
{
    return UaNodeId(UaString(id), 2);
}

// Waits for one completion at a time.
class OneCompletion : public UaSessionCallback
{
public:
    void connectionStatusChanged(OpcUa_UInt32, UaClient::ServerStatus) override {}
    void readComplete(OpcUa_UInt32 id, const UaStatus& status, UaDataValues& read,
                      UaDiagnosticInfos&) override
    {
        values = std::move(read);
        done(id, status);
    }
    void callComplete(OpcUa_UInt32 id, const UaStatus& status, CallOut& out) override
    {
        callOut = std::move(out);
        done(id, status);
    }
    void addNodesComplete(OpcUa_UInt32 id, const UaStatus& status, UaAddNodesResults&,
                          UaDiagnosticInfos&) override
    {
        done(id, status);
    }
    void historyReadRawModifiedComplete(OpcUa_UInt32 id, const UaStatus& status,
                                        HistoryReadDataResults& results, UaDiagnosticInfos&) override
    {
        history = std::move(results);
        done(id, status);
    }

    // BadTimeout when none comes.
    OpcUa_StatusCode wait(OpcUa_UInt32 id)
    {
        std::unique_lock lock(m_mutex);
        m_came.wait_for(lock, std::chrono::seconds(20), [&] { return m_id == id; });
        return m_id == id ? m_status.statusCode() : OpcUa_BadTimeout;
    }

    UaDataValues values;
    CallOut callOut;
    HistoryReadDataResults history;

private:
    void done(OpcUa_UInt32 id, const UaStatus& status)
    {
        std::lock_guard lock(m_mutex);
        m_id = id;
        m_status = status;
        m_came.notify_all();
    }

    std::mutex m_mutex;
    std::condition_variable m_came;
    std::optional<OpcUa_UInt32> m_id;
    UaStatus m_status;
};

// Keeps what it is told of the latest call of each kind.
class LatestCalls : public ServiceObserver
{
public:
    void serviceBegun(OpcUa_UInt64 number, const ServiceCall& call) override
    {
        std::lock_guard lock(m_mutex);
        m_names[number] = call.type.TypeName;
    }
    void serviceEnded(OpcUa_UInt64 number, const ServiceOutcome& outcome) override
    {
        std::lock_guard lock(m_mutex);
        m_passed[m_names[number]] = outcome.passed;
        m_measures[m_names[number]] = outcome.measure;
    }
    // In order, from the gate to the decoded answer, with bytes both ways.
    bool isMeasured(const char* request)
    {
        std::lock_guard lock(m_mutex);
        const OpcUa_CallMeasure& measure = m_measures[request];
        return m_passed[request] > 0 && m_passed[request] <= measure.Encoded &&
               measure.Encoded <= measure.Sent && measure.Sent <= measure.FirstByte &&
               measure.FirstByte <= measure.Decoded && measure.BytesOut > 24 && measure.BytesIn > 24;
    }

private:
    std::mutex m_mutex;
    std::map<OpcUa_UInt64, std::string> m_names;
    std::map<std::string, OpcUa_UInt64> m_passed;
    std::map<std::string, OpcUa_CallMeasure> m_measures;
};

class ServicesDemoServerTest : public testing::Test
{
protected:
    static void SetUpTestSuite() { ASSERT_EQ(UaPlatformLayer::init(), 0); }
    static void TearDownTestSuite() { UaPlatformLayer::cleanup(); }

    void SetUp() override
    {
        SessionConnectInfo info;
        info.sessionName = UaString("services test");
        info.maxOperationsPerServiceCall = 100; // as the server takes calls and history
        const UaStatus status = session.connect(UaString(demoserver::endpointUrl().c_str()), info,
                                                SessionSecurityInfo(), &callback);
        ASSERT_TRUE(status.isGood()) << status.toString().toUtf8();
    }
    void TearDown() override { EXPECT_TRUE(session.disconnect(settings, true).isGood()); }

    static CallIn callOf(const char* method, std::initializer_list<UaVariant> arguments)
    {
        CallIn callIn;
        callIn.objectId = demoNode("Methods");
        callIn.methodId = demoNode(method);
        EXPECT_TRUE(callIn.inputArguments.create(static_cast<OpcUa_UInt32>(arguments.size())));
        OpcUa_UInt32 i = 0;
        for (const UaVariant& argument : arguments)
            EXPECT_TRUE(OpcUa_IsGood(argument.copyTo(&callIn.inputArguments[i++])));
        return callIn;
    }
    static UaHistoryReadValueIds historyNode(const char* id)
    {
        UaHistoryReadValueIds nodes(1u);
        EXPECT_TRUE(OpcUa_IsGood(demoNode(id).copyTo(&nodes[0].NodeId)));
        return nodes;
    }

    OneCompletion callback;
    UaSession session;
    ServiceSettings settings;
    UaDiagnosticInfos diagnostics;
};

TEST_F(ServicesDemoServerTest, MethodsAreDescribedAndCalled)
{
    UaArguments inputs;
    UaArguments outputs;
    ASSERT_TRUE(session.getMethodArguments(settings, demoNode("Methods.Add"), inputs, outputs).isGood());
    ASSERT_EQ(inputs.length(), 2u);
    EXPECT_EQ(UaString(inputs[1].Name).view(), "B");
    EXPECT_EQ(outputs.length(), 1u);
    ASSERT_TRUE(session.getMethodArguments(settings, demoNode("Methods.Nothing"), inputs, outputs).isGood());
    EXPECT_TRUE(inputs.isEmpty() && outputs.isEmpty());
    EXPECT_TRUE(session.getMethodArguments(settings, demoNode("Methods.None"), inputs, outputs).isBad());

    CallOut callOut;
    ASSERT_TRUE(
        session.call(settings, callOf("Methods.Add", {UaVariant(1.5), UaVariant(2.25)}), callOut).isGood());
    ASSERT_EQ(callOut.outputArguments.length(), 1u);
    EXPECT_EQ(callOut.outputArguments[0].Value.Double, 3.75);
    ASSERT_TRUE(
        session.call(settings, callOf("Methods.Fail", {UaVariant(UaString("why"))}), callOut).isGood());
    EXPECT_EQ(callOut.callResult.statusCode(), static_cast<OpcUa_StatusCode>(OpcUa_BadInvalidState));
    ASSERT_TRUE(
        session.call(settings, callOf("Methods.Add", {UaVariant(UaString("x")), UaVariant(1.0)}), callOut)
            .isGood());
    EXPECT_TRUE(callOut.callResult.isBad());
    EXPECT_TRUE(callOut.outputArguments.isEmpty());
}

TEST_F(ServicesDemoServerTest, ManyCallsAreSplitAndAnsweredInOrder)
{
    UaCallMethodRequests requests(250u);
    for (OpcUa_UInt32 i = 0; i < requests.length(); ++i) {
        EXPECT_TRUE(OpcUa_IsGood(demoNode("Methods").copyTo(&requests[i].ObjectId)));
        EXPECT_TRUE(OpcUa_IsGood(demoNode("Methods.Add").copyTo(&requests[i].MethodId)));
        UaVariantArray arguments(2u);
        EXPECT_TRUE(OpcUa_IsGood(UaVariant(static_cast<double>(i)).copyTo(&arguments[0])));
        EXPECT_TRUE(OpcUa_IsGood(UaVariant(1000.0).copyTo(&arguments[1])));
        arguments.detach(&requests[i].NoOfInputArguments, &requests[i].InputArguments);
    }
    UaCallMethodResults results;
    ASSERT_TRUE(session.callList(settings, requests, results, diagnostics).isGood());
    ASSERT_EQ(results.length(), 250u);
    for (OpcUa_UInt32 i = 0; i < results.length(); ++i) {
        ASSERT_EQ(results[i].NoOfOutputArguments, 1);
        ASSERT_EQ(results[i].OutputArguments[0].Value.Double, 1000.0 + i);
    }
}

TEST_F(ServicesDemoServerTest, RawHistoryIsReadToItsEnd)
{
    HistoryReadRawModifiedContext context;
    const OpcUa_Int64 second = 10'000'000;
    context.endTime = UaDateTime(UaDateTime::now().value() - 60 * second);
    context.startTime = UaDateTime(context.endTime.value() - 600 * second);
    context.numValuesPerNode = 100;
    HistoryReadDataResults results;
    OpcUa_UInt32 read = 0;
    int calls = 0;
    OpcUa_DateTime last = 0;
    do {
        ASSERT_TRUE(
            session
                .historyReadRawModified(settings, context, historyNode("History.Sine"), results, diagnostics)
                .isGood());
        ASSERT_EQ(results.size(), 1u);
        ASSERT_FALSE(results[0].status.isBad()) << results[0].status.toString().toUtf8();
        for (const OpcUa_DataValue& value : results[0].values) {
            EXPECT_GT(value.SourceTimestamp, last);
            last = value.SourceTimestamp;
        }
        read += results[0].values.length();
        context.continuationPoint = results[0].continuationPoint;
    } while (++calls < 20 && !context.continuationPoint.isEmpty());
    EXPECT_GT(calls, 4);

    // the same in one piece: how many there are is the server's own matter, who records when it has time
    context.continuationPoint = UaByteString();
    context.numValuesPerNode = 10000;
    ASSERT_TRUE(
        session.historyReadRawModified(settings, context, historyNode("History.Sine"), results, diagnostics)
            .isGood());
    EXPECT_TRUE(results[0].continuationPoint.isEmpty());
    EXPECT_EQ(read, results[0].values.length());
    EXPECT_GT(read, 400u);

    // one that is not read to its end is given back
    context.continuationPoint = UaByteString();
    context.numValuesPerNode = 100;
    ASSERT_TRUE(
        session.historyReadRawModified(settings, context, historyNode("History.Sine"), results, diagnostics)
            .isGood());
    context.continuationPoint = results[0].continuationPoint;
    ASSERT_FALSE(context.continuationPoint.isEmpty());
    context.releaseContinuationPoints = true;
    EXPECT_TRUE(
        session.historyReadRawModified(settings, context, historyNode("History.Sine"), results, diagnostics)
            .isGood());
    EXPECT_TRUE(results[0].values.isEmpty());
}

TEST_F(ServicesDemoServerTest, ProcessedHistoryHasOneValueAnInterval)
{
    HistoryReadProcessedContext context;
    const OpcUa_Int64 minute = 600'000'000;
    context.endTime = UaDateTime((UaDateTime::now().value() / minute - 1) * minute);
    context.startTime = UaDateTime(context.endTime.value() - 30 * minute);
    context.processingInterval = 300'000.0; // one period of the sine
    ASSERT_TRUE(context.aggregateTypes.create(1));
    EXPECT_TRUE(OpcUa_IsGood(UaNodeId(OpcUaId_AggregateFunction_Average).copyTo(&context.aggregateTypes[0])));
    HistoryReadDataResults results;
    ASSERT_TRUE(
        session.historyReadProcessed(settings, context, historyNode("History.Sine"), results, diagnostics)
            .isGood());
    ASSERT_EQ(results.size(), 1u);
    ASSERT_EQ(results[0].values.length(), 6u) << results[0].status.toString().toUtf8();
    for (const OpcUa_DataValue& value : results[0].values)
        EXPECT_NEAR(value.Value.Value.Double, 50.0, 1.0);
}

TEST_F(ServicesDemoServerTest, RegisteredNodesCanBeRead)
{
    UaNodeIdArray nodes;
    EXPECT_TRUE(nodes.append(*demoNode("Scalar.Int32").get()));
    EXPECT_TRUE(nodes.append(*demoNode("Scalar.Double").get()));
    UaNodeIdArray registered;
    ASSERT_TRUE(session.registerNodes(settings, nodes, registered).isGood());
    ASSERT_EQ(registered.length(), 2u);
    UaReadValueIds read(1u);
    EXPECT_TRUE(OpcUa_IsGood(UaNodeId(registered[1]).copyTo(&read[0].NodeId)));
    read[0].AttributeId = OpcUa_Attributes_Value;
    UaDataValues values;
    ASSERT_TRUE(
        session.read(settings, 0.0, OpcUa_TimestampsToReturn_Both, read, values, diagnostics).isGood());
    EXPECT_EQ(values[0].Value.Datatype, OpcUaType_Double);
    EXPECT_TRUE(session.unregisterNodes(settings, registered).isGood());
}

// What the server does not offer ends with its own status, in both forms.
TEST_F(ServicesDemoServerTest, RefusedServicesTellWhy)
{
    const auto unsupported = static_cast<OpcUa_StatusCode>(OpcUa_BadServiceUnsupported);
    UaAddNodesResults added;
    UaStatusCodeArray codes;
    EXPECT_EQ(session.addNodes(settings, UaAddNodesItems(1u), added, diagnostics).statusCode(), unsupported);
    EXPECT_EQ(session.addReferences(settings, UaAddReferencesItems(1u), codes, diagnostics).statusCode(),
              unsupported);
    EXPECT_EQ(session.deleteNodes(settings, UaDeleteNodesItems(1u), codes, diagnostics).statusCode(),
              unsupported);
    EXPECT_EQ(
        session.deleteReferences(settings, UaDeleteReferencesItems(1u), codes, diagnostics).statusCode(),
        unsupported);
    UaHistoryUpdateResults updated;
    EXPECT_EQ(
        session.historyDeleteRawModified(settings, UaDeleteRawModifiedDetailsArray(1u), updated, diagnostics)
            .statusCode(),
        unsupported);
    HistoryReadAtTimeContext atTime;
    EXPECT_TRUE(atTime.requestedTimes.append(UaDateTime::now().value()));
    HistoryReadDataResults read;
    const UaStatus atTimeStatus =
        session.historyReadAtTime(settings, atTime, historyNode("History.Sine"), read, diagnostics);
    EXPECT_TRUE(atTimeStatus.isGood());
    ASSERT_EQ(read.size(), 1u);
    EXPECT_EQ(read.at(0).values.length(), 1u);
    UaQueryDataSets dataSets;
    UaByteString point;
    QueryFindings findings;
    EXPECT_TRUE(
        session.queryFirst(settings, QueryContext(), UaNodeTypeDescriptions(1u), dataSets, point, findings)
            .isBad());
    ASSERT_TRUE(session.beginAddNodes(settings, UaAddNodesItems(1u), 5).isGood());
    EXPECT_EQ(callback.wait(5), unsupported);
    EXPECT_EQ(session.serverStatus(), UaClient::Connected);
}

TEST_F(ServicesDemoServerTest, AsynchronousCallsCompleteOverTheWire)
{
    UaReadValueIds nodes(250u);
    for (OpcUa_UInt32 i = 0; i < nodes.length(); ++i) {
        EXPECT_TRUE(OpcUa_IsGood(UaNodeId(100000 + i, 4).copyTo(&nodes[i].NodeId)));
        nodes[i].AttributeId = OpcUa_Attributes_NodeId;
    }
    ASSERT_TRUE(session.beginRead(settings, 0.0, OpcUa_TimestampsToReturn_Both, nodes, 1).isGood());
    EXPECT_EQ(callback.wait(1), static_cast<OpcUa_StatusCode>(OpcUa_Good));
    ASSERT_EQ(callback.values.length(), 250u);
    EXPECT_EQ(UaVariant(callback.values[249].Value).toString().toStdString(), "ns=4;i=100249");

    ASSERT_TRUE(
        session.beginCall(settings, callOf("Methods.Add", {UaVariant(1.0), UaVariant(2.0)}), 2).isGood());
    EXPECT_EQ(callback.wait(2), static_cast<OpcUa_StatusCode>(OpcUa_Good));
    ASSERT_EQ(callback.callOut.outputArguments.length(), 1u);
    EXPECT_EQ(callback.callOut.outputArguments[0].Value.Double, 3.0);

    ServiceSettings impatient;
    impatient.callTimeout = 200;
    ASSERT_TRUE(session.beginCall(impatient, callOf("Methods.Slow", {}), 3).isGood());
    EXPECT_EQ(callback.wait(3), static_cast<OpcUa_StatusCode>(OpcUa_BadTimeout));

    HistoryReadRawModifiedContext context;
    context.endTime = UaDateTime::now();
    context.startTime = UaDateTime(context.endTime.value() - 600'000'000);
    ASSERT_TRUE(
        session.beginHistoryReadRawModified(settings, context, historyNode("History.Steps"), 4).isGood());
    EXPECT_EQ(callback.wait(4), static_cast<OpcUa_StatusCode>(OpcUa_Good));
    ASSERT_EQ(callback.history.size(), 1u);
    EXPECT_GT(callback.history[0].values.length(), 50u);

    // left behind: the disconnect of the test's end waits for it
    settings.callTimeout = 5000;
    ASSERT_TRUE(session.beginCall(settings, callOf("Methods.Slow", {}), 5).isGood());
}

TEST_F(ServicesDemoServerTest, ObserverLearnsWhereTheTimeOfACallWent)
{
    const auto calls = std::make_shared<LatestCalls>();
    session.setServiceObserver(calls);
    UaReadValueIds nodes(1u);
    nodes[0].NodeId.Identifier.Numeric = OpcUaId_Server_ServerStatus;
    nodes[0].AttributeId = OpcUa_Attributes_Value;
    UaDataValues values;
    UaDiagnosticInfos diagnosticInfos;
    EXPECT_TRUE(
        session.read(settings, 0.0, OpcUa_TimestampsToReturn_Both, nodes, values, diagnosticInfos).isGood());
    EXPECT_TRUE(calls->isMeasured("ReadRequest"));
    CallIn callIn = callOf("Methods.Add", {UaVariant(3.0), UaVariant(4.0)});
    ASSERT_TRUE(session.beginCall(settings, callIn, 5).isGood());
    ASSERT_EQ(callback.wait(5), static_cast<OpcUa_StatusCode>(OpcUa_Good));
    EXPECT_TRUE(calls->isMeasured("CallRequest"));
    session.setServiceObserver(nullptr);
}

} // namespace
