#include <plugins/dataaccess/parts/qlumcopyformats.h>
#include <plugins/dataaccess/parts/qlumnodelist.h>
#include <tests/support/modeltext.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <gtest/gtest.h>

#include <vector>

namespace {

std::vector<QlumCopiedNode> twoNodes()
{
    QlumCopiedNode text;
    text.server = "Plc";
    text.serverUrl = "opc.tcp://plc:4840";
    text.namespaces = QStringList{"http://opcfoundation.org/UA/", "urn:own", "urn:plant;a/b"};
    text.nodeId = UaNodeId(UaString("Say \"hi\", \\n"), 2);
    text.displayName = "=cmd";
    text.path.path = {{0, {}, "Objects"}, {2, {}, "Say"}};
    text.hasValue = true;
    text.value = UaDataValue(UaVariant("a,\"b\"\nc"));
    QlumCopiedNode number = text;
    number.nodeId = UaNodeId(2258);
    number.displayName = "CurrentTime";
    number.value = UaDataValue(UaVariant(OpcUa_UInt64(18446744073709551615u)));
    return {text, number};
}

TEST(CopyFormats, AreReadBackAsListsOfNodes)
{
    const QString ids = qlumCopyNodes(twoNodes(), QlumCopyFormat::NodeIdsByIndex);
    EXPECT_EQ(ids, "ns=2;s=Say \"hi\", \\n\ni=2258");
    EXPECT_EQ(qlumCopyNodes(twoNodes(), QlumCopyFormat::NodeIdsByUri),
              "nsu=urn:plant%3Ba/b;s=Say \"hi\", \\n\ni=2258");
    EXPECT_EQ(qlumCopyNodes(twoNodes(), QlumCopyFormat::PathsByUri).section('\n', 0, 0),
              "/Objects/nsu=urn:plant&;a&/b;Say");
    const QString csv = qlumCopyNodes(twoNodes(), QlumCopyFormat::Csv);
    const QlumNodeList list = qlumReadNodeList(csv.toUtf8());
    ASSERT_EQ(list.lines.size(), 2U) << csv;
    EXPECT_EQ(list.lines[0].text, "nsu=urn:plant%3Ba/b;s=Say \"hi\", \\n");
    EXPECT_EQ(list.lines[0].server, "Plc");
    EXPECT_EQ(list.lines[0].value, "a,\"b\"\nc");
    EXPECT_TRUE(csv.contains(",'=cmd,")) << csv;
}

TEST(CopyFormats, ProgramsGetWhatTheyCanParse)
{
    const QJsonArray array =
        QJsonDocument::fromJson(qlumCopyNodes(twoNodes(), QlumCopyFormat::Json).toUtf8()).array();
    ASSERT_EQ(array.size(), 2);
    EXPECT_EQ(array.at(1).toObject()["value"].toObject()["Value"].toObject()["Body"].toString(),
              "18446744073709551615");
    const QString python = qlumCopyNodes(twoNodes(), QlumCopyFormat::Python);
    EXPECT_TRUE(python.contains("    \"opc.tcp://plc:4840\": [\n"
                                "        (\"urn:plant;a/b\", \"s=Say \\\"hi\\\", \\\\n\", \"=cmd\"),\n"
                                "        (\"http://opcfoundation.org/UA/\", \"i=2258\", \"CurrentTime\"),\n"))
        << python;
    const QString telegraf = qlumCopyNodes(twoNodes(), QlumCopyFormat::Telegraf);
    EXPECT_TRUE(telegraf.contains("{name=\"=cmd\", namespace=\"2\", identifier_type=\"s\", "
                                  "identifier=\"Say \\\"hi\\\", \\\\n\"},\n"))
        << telegraf;
}

} // namespace
