// The conversations with a configuration object: their order, what ends them, and what is never sent.
#include <app/api/qlumserverrole.h>
#include <plugins/gds/qlumpushclient.h>
#include <plugins/gds/qlumpushwords.h>
#include <plugins/gds/qlumtrustlist.h>
#include <tests/gui/gds/pushworld.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/secretbytes.h>

#include <QString>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace {
class PushConversation : public testing::Test
{
protected:
    QlumPushServer found() { return client.find(); }
    [[nodiscard]] static std::string lastWords(QlumPushClient& client)
    {
        const auto steps = client.takeSteps();
        return steps.empty() ? std::string() : steps.back().words.toStdString();
    }
    void stateList()
    {
        world.list[QlumTrustPart::Trusted] = {pushCertificate("One"), pushCertificate("Plant CA", {}, true)};
        world.list[QlumTrustPart::TrustedCrls] = {pushDer(
            testcertificates::makeRevocationList("Plant CA", testcertificates::key(2048, "Plant CA"), {}))};
    }

    PushWorld world;
    bool isCancelled = false;
    QlumPushClient client{world, {10000, [this] { return isCancelled; }}};
};

TEST_F(PushConversation, FindsGroupsAndFactsByNames)
{
    const QlumPushServer server = found();
    ASSERT_TRUE(server.status.isGood());
    EXPECT_EQ(server.missing.join(' '), QString());
    EXPECT_EQ(server.keyFormats.join(' '), "PEM");
    EXPECT_EQ(server.mostListBytes, 100'000U);
    EXPECT_EQ(server.multicastDns, false);
    ASSERT_EQ(server.groups.size(), 1U);
    EXPECT_EQ(server.groups[0].mostBytes, 700U) << "what the server allows in one ByteString";
    ASSERT_EQ(server.groups[0].types.size(), 1U);
    EXPECT_EQ(server.groups[0].lastUpdate, UaDateTime::fromTime_t(1'700'000'000));

    TableServices bare;
    bare.table.object(UaNodeId("X", 2), "ServerConfiguration", UaNodeId(OpcUaId_Server));
    const QlumPushServer poor = QlumPushClient(bare, {}).find();
    EXPECT_TRUE(poor.missing.contains("ApplyChanges") && poor.missing.contains("CertificateGroups"));
    TableServices none;
    EXPECT_TRUE(QlumPushClient(none, {}).find().object.isNull());
}

TEST_F(PushConversation, ReadsAListInPiecesAndClosesTheFileOnEveryWay)
{
    stateList();
    const QlumPushServer server = found();
    QlumTrustList list;
    ASSERT_TRUE(client.readTrustList(server.groups[0], OpcUa_TrustListMasks_All, list).isGood());
    EXPECT_EQ(list.parts, world.list.parts);
    EXPECT_TRUE(world.order().starts_with("OpenWithMasks Read Read ")) << world.order();
    EXPECT_TRUE(world.order().ends_with("Read Close")) << world.order();

    world.journal.clear();
    world.failures["Read"] = OpcUa_BadInvalidArgument;
    world.failsFrom["Read"] = 2;
    EXPECT_TRUE(client.readTrustList(server.groups[0], OpcUa_TrustListMasks_All, list).isBad());
    EXPECT_TRUE(world.order().ends_with("Read Close")) << world.order();
    EXPECT_TRUE(lastWords(client).find("does not know the opened file any more") != std::string::npos);

    world.journal.clear();
    isCancelled = true;
    EXPECT_TRUE(client.readTrustList(server.groups[0], OpcUa_TrustListMasks_All, list).isBad());
    EXPECT_EQ(world.order(), "OpenWithMasks Close");
}

TEST_F(PushConversation, WritesAListAndLeavesNoFileOpenWhenItIsRefused)
{
    const QlumPushServer server = found();
    QlumTrustList list;
    list.lists = OpcUa_TrustListMasks_TrustedCertificates;
    list[QlumTrustPart::Trusted] = {pushCertificate("One"), pushCertificate("Two")};
    bool isApplyRequired = false;
    ASSERT_TRUE(client.writeTrustList(server, server.groups[0], list, isApplyRequired).isGood());
    EXPECT_TRUE(isApplyRequired);
    QlumTrustList written;
    ASSERT_TRUE(qlumDecodeTrustList(world.written, written).isGood());
    EXPECT_EQ(written.lists, list.lists);
    EXPECT_EQ(written.parts, list.parts);
    EXPECT_TRUE(world.order().starts_with("Open Write Write")) << world.order();
    EXPECT_TRUE(world.order().ends_with("CloseAndUpdate")) << "and no Close after it";

    world.journal.clear();
    world.failures["CloseAndUpdate"] = OpcUa_BadCertificateInvalid;
    EXPECT_TRUE(client.writeTrustList(server, server.groups[0], list, isApplyRequired).isBad());
    EXPECT_TRUE(world.order().ends_with("CloseAndUpdate Close")) << world.order();

    world.journal.clear();
    world.failures["Write"] = OpcUa_BadRequestTooLarge;
    EXPECT_TRUE(client.writeTrustList(server, server.groups[0], list, isApplyRequired).isBad());
    EXPECT_EQ(world.order(), "Open Write Close");

    world.journal.clear();
    QlumPushServer small = server;
    small.mostListBytes = 100;
    EXPECT_EQ(client.writeTrustList(small, small.groups[0], list, isApplyRequired).code(),
              OpcUa_BadEncodingLimitsExceeded);
    EXPECT_EQ(world.order(), "") << "larger than allowed is not even tried";
}

TEST_F(PushConversation, AddsAndRemovesByTheirDigestsAndTellsTheRejected)
{
    const QlumPushServer server = found();
    const UaByteString one = pushCertificate("One");
    world.rejected = {one};
    std::vector<UaByteString> rejected;
    ASSERT_TRUE(client.rejectedList(server, rejected).isGood());
    ASSERT_EQ(rejected, world.rejected);
    ASSERT_TRUE(client.addCertificate(server.groups[0], rejected[0], true).isGood());
    EXPECT_EQ(world.list[QlumTrustPart::Trusted], rejected);
    EXPECT_TRUE(client.removeCertificate(server.groups[0], one, false).isBad()) << "not among the issuers";
    EXPECT_TRUE(client.removeCertificate(server.groups[0], one, true).isGood());
    EXPECT_TRUE(world.list[QlumTrustPart::Trusted].empty());
}

TEST_F(PushConversation, ReplacesACertificateAndTakesTheBrokenConnectionForTheAnswer)
{
    QlumPushServer server = found();
    UaByteString request;
    ASSERT_TRUE(
        client.createSigningRequest(server, {world.group, world.type, "CN=x", true}, request).isGood());
    EXPECT_GE(world.nonce.length(), 32);
    ASSERT_TRUE(client.createSigningRequest(server, {world.group, world.type, "", false}, request).isGood());
    EXPECT_EQ(world.nonce.length(), 0) << "only for a new key";
    bool isApplyRequired = false;
    const UaByteString one = pushCertificate("One");
    ASSERT_TRUE(
        client.updateCertificate(server, {world.group, world.type, one, {}, "", nullptr}, isApplyRequired)
            .isGood());
    EXPECT_EQ(world.update, one);
    world.failures["ApplyChanges"] = OpcUa_BadConnectionClosed;
    EXPECT_TRUE(client.applyChanges(server).isGood());
    EXPECT_EQ(world.order(), "CreateSigningRequest CreateSigningRequest UpdateCertificate ApplyChanges");
    world.failures["ApplyChanges"] = OpcUa_BadTimeout;
    EXPECT_TRUE(client.applyChanges(server).isBad()) << "nobody knows whether it was carried out";
}

TEST_F(PushConversation, SendsAPrivateKeyOverAnEncryptedConnectionOnly)
{
    QlumPushServer server = found();
    const auto key = std::make_shared<const UaClientSdk::SecretBytes>(std::string_view("the key"));
    const QlumCertificateUpdate update{world.group, world.type, pushCertificate("One"), {}, "PEM", key};
    bool isApplyRequired = false;
    for (const auto mode : {OpcUa_MessageSecurityMode_Invalid, OpcUa_MessageSecurityMode_None,
                            OpcUa_MessageSecurityMode_Sign}) {
        server.mode = mode;
        EXPECT_EQ(client.updateCertificate(server, update, isApplyRequired).code(),
                  OpcUa_BadSecurityModeInsufficient);
    }
    EXPECT_EQ(world.order(), "");
    server.mode = OpcUa_MessageSecurityMode_SignAndEncrypt;
    EXPECT_TRUE(client.updateCertificate(server, update, isApplyRequired).isGood());
    EXPECT_EQ(world.key.view(), "the key");
}

TEST_F(PushConversation, NothingThatConfiguresIsSentInALesserRole)
{
    stateList();
    const QlumPushServer server = found();
    QlumTrustList list;
    std::vector<UaByteString> rejected;
    UaByteString request;
    bool isApplyRequired = false;
    const UaByteString one = pushCertificate("One");
    for (const QlumServerRole role : {QlumServerRole::Look, QlumServerRole::Operate}) {
        world.role = role;
        for (const UaStatus& status :
             {client.readTrustList(server.groups[0], OpcUa_TrustListMasks_All, list),
              client.writeTrustList(server, server.groups[0], list, isApplyRequired),
              client.addCertificate(server.groups[0], one, true),
              client.removeCertificate(server.groups[0], one, true), client.rejectedList(server, rejected),
              client.createSigningRequest(server, {world.group, world.type, "", true}, request),
              client.updateCertificate(server, {world.group, world.type, one, {}, "", nullptr},
                                       isApplyRequired),
              client.applyChanges(server), client.cancelChanges(server),
              client.resetToServerDefaults(server)})
            EXPECT_TRUE(qlumRefusingRole(status).has_value()) << status.toString().toUtf8();
        EXPECT_TRUE(lastWords(client).starts_with("Not sent:"));
    }
    EXPECT_EQ(world.order(), "");
}

TEST(PushWords, SayWhatEachAnswerMeans)
{
    const auto words = [](const char* method, OpcUa_StatusCode status) {
        return qlumPushWords(method, UaStatus(status)).toStdString();
    };
    EXPECT_NE(words("UpdateCertificate", OpcUa_BadSecurityChecksFailed).find("does not belong to its key"),
              std::string::npos);
    EXPECT_NE(words("AddCertificate", OpcUa_BadUserAccessDenied).find("as an administrator"),
              std::string::npos);
    EXPECT_NE(words("ApplyChanges", OpcUa_BadSecurityModeInsufficient).find("SignAndEncrypt"),
              std::string::npos);
    EXPECT_NE(words("RemoveCertificate", OpcUa_BadInvalidArgument), words("Read", OpcUa_BadInvalidArgument));
}

TEST(TrustList, RefusesBytesThatAreNoList)
{
    QlumTrustList list;
    UaByteString bytes;
    list[QlumTrustPart::Issuers] = {UaByteString::fromHex("01")};
    ASSERT_TRUE(qlumEncodeTrustList(list, bytes).isGood());
    QlumTrustList again;
    EXPECT_TRUE(qlumDecodeTrustList(UaByteString(bytes.length() - 1, bytes.data()), again).isBad());
    const std::string longer = std::string(bytes.view()) + "x";
    EXPECT_TRUE(qlumDecodeTrustList(UaByteString(static_cast<OpcUa_Int32>(longer.size()),
                                                 reinterpret_cast<const OpcUa_Byte*>(longer.data())),
                                    again)
                    .isBad());
}

TEST(TrustList, KnowsWhoIsLockedOutAndWhichIssuersLackTheirLists)
{
    const UaByteString authority = pushCertificate("Plant CA", {}, true);
    const UaPkiCertificate client = UaPkiCertificate::fromDER(pushCertificate("Client", "Plant CA"));
    QlumTrustList before;
    before[QlumTrustPart::Trusted] = {authority};
    QlumTrustList after = before;
    after[QlumTrustPart::Trusted] = {pushCertificate("Other")};
    EXPECT_TRUE(qlumLocksOut(before, after, client)) << "its issuer is gone";
    after[QlumTrustPart::Issuers] = {authority};
    EXPECT_TRUE(qlumLocksOut(before, after, client)) << "an issuer alone trusts nobody";
    after[QlumTrustPart::Trusted] = {client.toByteStringDER()};
    EXPECT_FALSE(qlumLocksOut(before, after, client)) << "trusted by itself now";
    EXPECT_FALSE(qlumLocksOut(QlumTrustList(), QlumTrustList(), client)) << "was not trusted before";

    EXPECT_EQ(qlumIssuersWithoutCrl(after).join(' '), "Plant CA");
    after[QlumTrustPart::IssuerCrls] = {pushDer(
        testcertificates::makeRevocationList("Plant CA", testcertificates::key(2048, "Plant CA"), {}))};
    EXPECT_EQ(qlumIssuersWithoutCrl(after).join(' '), QString());
    EXPECT_EQ(qlumTrustListChanges(before, after).join("; "),
              "Trusted certificates: 1 added, 1 removed; Issuer certificates: 1 added, 0 removed; "
              "Issuer revocation lists: 1 added, 0 removed");
}
} // namespace
