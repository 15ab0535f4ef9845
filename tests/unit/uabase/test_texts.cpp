// Texts, byte strings, identifiers and names: parsing and writing.
#include <uabase/values/uaarray.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uaexpandednodeid.h>
#include <uabase/values/uaguid.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uastring.h>

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <string_view>
#include <unordered_set>

TEST(UaString, TellsNullFromEmpty)
{
    const UaString null;
    const UaString empty("");
    EXPECT_TRUE(null.isNull() && null.isEmpty());
    EXPECT_TRUE(!empty.isNull() && empty.isEmpty());
    EXPECT_NE(null, empty);
    EXPECT_LT(null, empty);
    EXPECT_LT(empty, UaString("a"));
    EXPECT_TRUE(UaString(static_cast<const char*>(nullptr)).isNull());
    EXPECT_STREQ(null.toUtf8(), "");
    EXPECT_STREQ(empty.toUtf8(), "");

    OpcUa_String raw{-1, nullptr};
    ASSERT_EQ(empty.copyTo(&raw), OpcUa_Good);
    EXPECT_EQ(raw.Length, 0);
    OpcUa_String_Clear(&raw);
}

TEST(UaString, KeepsBytesAsReceived)
{
    const std::string_view withNul("a\0b", 3);
    EXPECT_EQ(UaString(withNul).view(), withNul);
    const UaString broken("\xC3(");
    EXPECT_EQ(broken.size(), 2u);
    EXPECT_FALSE(broken.isValidUtf8());
    for (const char* wrong : {"\xC0\xAF", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xE2\x82", "\x80", "\xFF"})
        EXPECT_FALSE(UaString(wrong).isValidUtf8()) << UaByteString::fromBase64(wrong).isNull();
    for (const char* right : {"", "abc", "\xC3\xA4", "\xE2\x82\xAC", "\xF0\x9F\x98\x80"})
        EXPECT_TRUE(UaString(right).isValidUtf8()) << right;
}

TEST(UaString, GrowsWithoutTouchingCopies)
{
    UaString text("ab");
    const UaString before = text;
    text += "cd";
    text += text;
    EXPECT_EQ(text, "abcdabcd");
    EXPECT_EQ(before, "ab");
    UaString fromNull;
    fromNull += "";
    EXPECT_TRUE(fromNull.isNull());
    fromNull += UaString("x") + "y";
    EXPECT_EQ(fromNull, "xy");
}

TEST(UaString, HandsItsTextOver)
{
    OpcUa_String raw;
    OpcUa_String_Initialize(&raw);
    ASSERT_EQ(OpcUa_String_Assign(&raw, "text", -1), OpcUa_Good);
    const char* data = raw.Data;
    UaString text;
    text.attach(&raw);
    EXPECT_EQ(raw.Data, nullptr);
    EXPECT_EQ(text.toUtf8(), data) << "the block moves, it is not copied";

    const UaString shared = text;
    OpcUa_String first;
    ASSERT_EQ(text.detach(&first), OpcUa_Good);
    EXPECT_TRUE(text.isNull());
    EXPECT_NE(first.Data, data) << "somebody else still reads the block";
    EXPECT_EQ(shared, "text");
    EXPECT_STREQ(first.Data, "text");
    OpcUa_String_Clear(&first);
}

TEST(UaByteString, ReadsAndWritesHexAndBase64)
{
    const OpcUa_Byte bytes[] = {0x00, 0x0A, 0xFF, 0x10, 0xFB};
    const char* base64[] = {"", "AA==", "AAo=", "AAr/", "AAr/EA==", "AAr/EPs="};
    for (OpcUa_Int32 length = 0; length <= 5; ++length) {
        const UaByteString value(length, bytes);
        EXPECT_EQ(value.toBase64(), base64[length]);
        EXPECT_EQ(UaByteString::fromBase64(base64[length]), value);
        EXPECT_EQ(UaByteString::fromHex(value.toHex().view()), value);
    }
    EXPECT_EQ(UaByteString(3, bytes).toHex(), "000aff");
    EXPECT_EQ(UaByteString(3, bytes).toHex(":"), "00:0a:ff");
    EXPECT_EQ(UaByteString::fromHex("0x00:0A FF"), UaByteString(3, bytes));
    EXPECT_EQ(UaByteString::fromBase64("AAr/\n EA=="), UaByteString(4, bytes));
    EXPECT_TRUE(UaByteString(-1, bytes).isNull());
    EXPECT_NE(UaByteString(), UaByteString(0, bytes));
    for (const char* wrong : {"A", "AA", "AAA", "A===", "AA=A", "A*==", "===="})
        EXPECT_TRUE(UaByteString::fromBase64(wrong).isNull()) << wrong;
    for (const char* wrong : {"0", "0g", "00:0", "00 x0"})
        EXPECT_TRUE(UaByteString::fromHex(wrong).isNull()) << wrong;
}

TEST(UaGuid, ReadsAndWritesTextAndBytes)
{
    const char* text = "72962b91-fa75-4ae6-8d28-b404dc7daf63";
    const UaGuid guid = UaGuid::fromString(text);
    EXPECT_EQ(guid.value().Data1, 0x72962b91u);
    EXPECT_EQ(guid.value().Data4[7], 0x63);
    EXPECT_EQ(guid.toString(), text);
    EXPECT_EQ(UaGuid::fromString("{72962B91-FA75-4AE6-8D28-B404DC7DAF63}"), guid);
    // the bytes of the standard's own example of the encoding
    EXPECT_EQ(guid.toByteString().toHex(), "912b967275fae64a8d28b404dc7daf63");
    EXPECT_EQ(UaGuid::fromByteString(guid.toByteString()), guid);

    bool ok = true;
    for (const char* wrong :
         {"", "72962b91-fa75-4ae6-8d28-b404dc7daf6", "72962b91fa754ae68d28b404dc7daf63",
          "72962b91-fa75-4ae6-8d28-b404dc7daf6g", "{72962b91-fa75-4ae6-8d28-b404dc7daf63"}) {
        EXPECT_TRUE(UaGuid::fromString(wrong, &ok).isNull());
        EXPECT_FALSE(ok) << wrong;
    }
    EXPECT_TRUE(UaGuid::fromByteString(UaByteString::fromHex("00"), &ok).isNull());
    EXPECT_FALSE(ok);
    const UaGuid made = UaGuid::create();
    EXPECT_NE(made, UaGuid::create());
    EXPECT_EQ(made.value().Data3 >> 12, 4);
    EXPECT_EQ(made.value().Data4[0] & 0xC0, 0x80);
}

TEST(UaNodeId, TextFormsReadBack)
{
    const std::map<std::string, UaNodeId> ids = {
        {"ns=0;i=84", UaNodeId(84)},
        {"ns=2;i=4294967295", UaNodeId(4294967295u, 2)},
        {"ns=2;s=abc", UaNodeId("abc", 2)},
        {"ns=65535;s=a;b=c ns=1;i=2", UaNodeId("a;b=c ns=1;i=2", 65535)},
        {"ns=3;g=72962b91-fa75-4ae6-8d28-b404dc7daf63",
         UaNodeId(UaGuid::fromString("72962b91-fa75-4ae6-8d28-b404dc7daf63"), 3)},
        {"ns=4;b=AAr/", UaNodeId(UaByteString::fromHex("000aff"), 4)},
    };
    for (const auto& [text, id] : ids) {
        EXPECT_EQ(id.toFullString(), text.c_str());
        EXPECT_EQ(UaNodeId::fromString(text), id) << text;
        EXPECT_EQ(UaNodeId::fromString(id.toXmlString().view()), id) << text;
    }
    EXPECT_EQ(UaNodeId(84).toString(), "i=84");
    EXPECT_EQ(UaNodeId("x", 0).toXmlString(), "s=x");
    EXPECT_EQ(UaNodeId("x", 7).toXmlString(), "ns=7;s=x");
}

TEST(UaNodeId, RefusesOtherTexts)
{
    for (const char* wrong : {"", "84", "i=", "i=4294967296", "i=-1", "i= 1", "x=1", "ns=1", "ns=65536;i=1",
                              "ns=;i=1", "ns=1;ns=2;i=1", "g=1", "b=A", "ns=+1;i=1"}) {
        bool ok = true;
        EXPECT_TRUE(UaNodeId::fromString(wrong, &ok).isNull()) << wrong;
        EXPECT_FALSE(ok) << wrong;
    }
    bool ok = false;
    EXPECT_TRUE(UaNodeId::fromString("i=0", &ok).isNull());
    EXPECT_TRUE(ok);
}

TEST(UaNodeId, KeysMaps)
{
    const UaNodeId ids[] = {
        UaNodeId(1),           UaNodeId(2),    UaNodeId("a", 0), UaNodeId(UaByteString::fromHex("61"), 0),
        UaNodeId(UaGuid(), 0), UaNodeId(1, 1), UaNodeId("", 1)};
    std::map<UaNodeId, int> ordered;
    std::unordered_set<UaNodeId> hashed;
    for (const UaNodeId& id : ids) {
        ordered[id] = 1;
        hashed.insert(id);
        EXPECT_TRUE(hashed.contains(UaNodeId::fromString(id.toFullString().view())))
            << id.toFullString().view();
    }
    EXPECT_EQ(ordered.size(), 7u);
    EXPECT_EQ(hashed.size(), 7u);
    UaNodeId moved("a", 1);
    const UaNodeId copy = moved;
    moved.setNamespaceIndex(9);
    EXPECT_EQ(moved, UaNodeId("a", 9));
    EXPECT_EQ(copy, UaNodeId("a", 1));
    EXPECT_TRUE(UaNodeId("a", 1).isNumeric(0) == false && UaNodeId(7).isNumeric(7));
}

TEST(UaExpandedNodeId, TextFormsReadBack)
{
    const UaExpandedNodeId ids[] = {
        UaExpandedNodeId(UaNodeId(84)),
        UaExpandedNodeId(UaNodeId("abc", 2), UaString(), 3),
        UaExpandedNodeId(UaNodeId("abc", 0), "http://x.org/a;b%c", 0),
        UaExpandedNodeId(UaNodeId(5), "urn:x", 4294967295u),
    };
    const char* texts[] = {"i=84", "svr=3;ns=2;s=abc", "nsu=http://x.org/a%3Bb%25c;s=abc",
                           "svr=4294967295;nsu=urn:x;i=5"};
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(ids[i].toString(), texts[i]);
        EXPECT_EQ(UaExpandedNodeId::fromString(texts[i]), ids[i]) << texts[i];
    }
    EXPECT_EQ(ids[0].toFullString(), "ns=0;i=84");
    for (const char* wrong :
         {"svr=1", "svr=x;i=1", "nsu=urn:x", "nsu=urn:x;ns=1;i=1", "nsu=urn:x;svr=1;i=1", ""}) {
        bool ok = true;
        EXPECT_TRUE(UaExpandedNodeId::fromString(wrong, &ok).isNull()) << wrong;
        EXPECT_FALSE(ok) << wrong;
    }
}

TEST(UaQualifiedName, TextFormReadsBack)
{
    const UaQualifiedName names[] = {{"Name", 0}, {"Name", 2}, {"a:b", 0}, {"3:x", 0}, {"3:x", 1}, {"", 0}};
    const char* texts[] = {"Name", "2:Name", "a:b", "0:3:x", "1:3:x", ""};
    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ(names[i].toString(), texts[i]);
        EXPECT_EQ(UaQualifiedName::fromString(texts[i]), names[i]) << texts[i];
    }
}

TEST(UaStatusCode, NamesAndSeverity)
{
    EXPECT_EQ(UaStatusCode(OpcUa_BadTimeout).toString(), "BadTimeout");
    EXPECT_EQ(UaStatusCode(OpcUa_BadTimeout | 0x0407u).toString(), "BadTimeout");
    EXPECT_EQ(UaStatusCode(0x8FFF0000u).toString(), "0x8FFF0000");
    EXPECT_EQ(UaStatusCode(OpcUa_BadTimeout).toHexString(), "0x800A0000");
    EXPECT_TRUE(UaStatusCode(0xC0000000u).isBad());
    EXPECT_TRUE(UaStatusCode(0x40000000u).isUncertain() && UaStatusCode(0x40000000u).isNotBad());
    const UaStatus status(OpcUa_BadTimeout, "no answer");
    EXPECT_TRUE(status.isBad() && status == OpcUa_BadTimeout);
    EXPECT_EQ(status.diagnosticText(), "no answer");
}

namespace {

// One info with an inner one; its texts are "<prefix>0" and "<prefix>1".
UaDiagnosticInfos infosWith(const char* prefix, OpcUa_Int32 symbolicId)
{
    UaArray<OpcUa_DiagnosticInfo> infos(1);
    infos[0].SymbolicId = symbolicId;
    infos[0].InnerDiagnosticInfo =
        static_cast<OpcUa_DiagnosticInfo*>(OpcUa_Memory_Alloc(sizeof(OpcUa_DiagnosticInfo)));
    OpcUa_DiagnosticInfo_Initialize(infos[0].InnerDiagnosticInfo);
    infos[0].InnerDiagnosticInfo->LocalizedText = 1;
    UaArray<OpcUa_String> strings(2);
    for (OpcUa_UInt32 i = 0; i < 2; ++i)
        EXPECT_TRUE(OpcUa_IsGood(UaString(prefix + std::to_string(i)).detach(&strings[i])));
    UaDiagnosticInfos result;
    result.attach(1, infos.detach(), 2, strings.detach());
    return result;
}

} // namespace

TEST(UaDiagnosticInfos, MergesBlocksWithTheirStrings)
{
    UaDiagnosticInfos all = infosWith("a", 0);
    ASSERT_TRUE(all.append(infosWith("b", 0)));
    ASSERT_TRUE(all.append(infosWith("c", 2))) << "an index beyond the table";
    ASSERT_EQ(all.length(), 3u);
    EXPECT_EQ(all.symbolicId(0), "a0");
    EXPECT_EQ(all.symbolicId(1), "b0");
    EXPECT_EQ(all.toString(1), "b0, b1");
    EXPECT_TRUE(all.symbolicId(2).isNull());
    EXPECT_EQ(all.toString(2), "c1");
    EXPECT_TRUE(all.toString(3).isEmpty());
}
