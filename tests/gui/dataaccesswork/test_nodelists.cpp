#include <app/api/qlumnodeaddress.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/dataaccess/parts/qlumnodelist.h>
#include <plugins/dataaccess/parts/qlumpathreader.h>
#include <tests/gui/dataaccesswork/workfixture.h>
#include <tests/support/modeltext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/table/qlumcsvreader.h>

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

std::string listText(const QByteArray& bytes)
{
    const QlumNodeList list = qlumReadNodeList(bytes);
    QString text = list.fault + list.remark;
    for (const QlumNodeLine& line : list.lines)
        text += QStringLiteral("%1[%2|%3|%4]")
                    .arg(line.line)
                    .arg(line.server, line.text, line.hasValue ? line.value : QStringLiteral("-"));
    return text.toStdString();
}

TEST(NodeLists, AreReadAsOtherProgramsWriteThem)
{
    EXPECT_EQ(listText("ns=2;s=Pump\nnsu=urn:a;i=5\r\n\r\n/Objects/2:Plant\n"),
              "1[|ns=2;s=Pump|-]2[|nsu=urn:a;i=5|-]4[|/Objects/2:Plant|-]");
    // titles in any order, quotes over two lines, the line number behind them
    EXPECT_EQ(listText("Value,Server,Node Id\n\"a\nb\",Plc,\"ns=2;s=x,\"\"y\"\"\"\n1,,i=7\n"),
              "2[Plc|ns=2;s=x,\"y\"|a\nb]4[|i=7|1]");
    // a spreadsheet of a country with decimal commas
    EXPECT_EQ(listText("Node Id;New Value\nns=2;s=Pump;2,5\n\"ns=3;i=1\";7\n"),
              "2[|ns=2;s=Pump|2,5]3[|ns=3;i=1|7]");
    EXPECT_EQ(listText("ns=2;i=1\t10\nns=2;i=2\t20\n"), "1[|ns=2;i=1|10]2[|ns=2;i=2|20]");
    // what looks like a formula is a text, also when it was kept from being one
    EXPECT_EQ(listText("=cmd|' /C calc'!A0\n'=1+1,5\n\"open\n"),
              "1[|=cmd|' /C calc'!A0|-]2[|=1+1|5]3[|\"open|-]");
}

TEST(NodeLists, OfOtherEncodingsAreReadOrRefusedWithAWord)
{
    EXPECT_EQ(listText(QByteArray("\xef\xbb\xbf") + "i=1"), "1[|i=1|-]");
    EXPECT_EQ(listText(QByteArray("\xff\xfe"
                                  "i\0=\0"
                                  "1\0",
                                  8)),
              "1[|i=1|-]");
    EXPECT_EQ(listText(QByteArray("\xfe\xff"
                                  "\0i\0=\0"
                                  "2",
                                  8)),
              "1[|i=2|-]");
    EXPECT_NE(
        listText("ns=2;s=K\xfchler").find("Latin-1, so look at accented letters.1[|ns=2;s=K\xc3\xbchler|-]"),
        std::string::npos);
    EXPECT_EQ(listText(QByteArray("PK\x03\x04\0\0", 6)), "This is no text: it holds bytes that no text has.");
    EXPECT_EQ(listText("Node Id,Value\n\n"), "There are no lines with nodes.");
}

TEST(NodeLists, OfAHundredThousandLinesLoseNone)
{
    QByteArray bytes;
    for (int i = 0; i < 100'000; ++i)
        bytes += "ns=2;i=" + QByteArray::number(i) + ",\"" + QByteArray::number(i) + "\"\n";
    const QlumNodeList list = qlumReadNodeList(bytes);
    ASSERT_EQ(list.lines.size(), 100'000U);
    EXPECT_EQ(list.lines.back().line, 100'000);
    EXPECT_EQ(list.lines.back().text, "ns=2;i=99999");
    EXPECT_EQ(list.lines.back().value, "99999");
    EXPECT_EQ(list.remark, "");

    int rest = 0;
    EXPECT_EQ(qlumCsvRows(QString::fromLatin1(bytes), 10, &rest).size(), 10);
    EXPECT_EQ(rest, 99'990);
}

class NodeFinding : public testing::Test
{
protected:
    NodeFinding()
    {
        services.table.object(PlantServices::node(1), "Plant");
        services.table.variable(PlantServices::node(2), "Pu/mp:1.a", UaVariant(1.5), PlantServices::node(1));
    }
    std::vector<std::string> find(const std::vector<QString>& texts)
    {
        std::vector<QlumFoundNode> found;
        const UaStatus status = qlumFindNodes(job, services, texts, found);
        std::vector<std::string> lines;
        for (const QlumFoundNode& node : found)
            lines.push_back(node.reason.isEmpty() ? node.nodeId.toXmlString().toUtf8()
                                                  : node.reason.toStdString());
        if (status.isBad())
            lines.emplace_back("bad");
        return lines;
    }

    StubApplication application;
    PlantServices services;
    TestJob job;
};

TEST_F(NodeFinding, TakesIdsAndPathsInEveryFormAndNamesWhatIsWrong)
{
    const std::vector<QString> texts{"ns=2;i=2",           "nsu=urn:plant%3B1/north;i=2",
                                     "nsu=urn:other;i=2",  "ns=9;i=2",
                                     "ns=2;i=77",          "ns=2;i=1",
                                     "=cmd|' /C calc'!A0", "",
                                     "/Objects/9:Plant",   "/Objects//x"};
    const std::vector<std::string> expected{"ns=2;i=2",
                                            "ns=2;i=2",
                                            "The server has no namespace \"urn:other\".",
                                            "The server has no namespace 9.",
                                            "The server has no such node.",
                                            "\"Plant\" is no variable and has no value.",
                                            "This is neither a node id nor a browse path.",
                                            "There is no node id.",
                                            "The server has no namespace 9.",
                                            "A name of the browse path is empty, or its namespace is none."};
    EXPECT_EQ(find(texts), expected);
    services.failCalls(NodeTable::Read, OpcUa_BadTimeout);
    EXPECT_EQ(find({"i=2258", "?"}),
              (std::vector<std::string>{"BadTimeout: the server did not answer in time",
                                        "This is neither a node id nor a browse path.", "bad"}));
}

TEST_F(NodeFinding, PathsThatWereReadLeadBackWhateverTheNamesHold)
{
    std::vector<QlumNodePath> paths;
    const std::vector<UaNodeId> nodes{PlantServices::node(2), UaNodeId(4711, 2)};
    ASSERT_TRUE(qlumReadPaths(job, services, nodes, paths).isGood());
    ASSERT_EQ(paths.size(), 2U);
    const QStringList table{"http://opcfoundation.org/UA/", "urn:client:own", "urn:plant;1/north"};
    std::vector<QString> texts;
    for (const QlumNamespaceForm form : {QlumNamespaceForm::Index, QlumNamespaceForm::Uri})
        texts.push_back(qlumPathText(paths[0].start, paths[0].path, table, form));
    EXPECT_TRUE(texts[0].endsWith("/2:Pu&/mp&:1&.a")) << texts[0];
    EXPECT_TRUE(qlumPathAbove(texts[0]).endsWith("/2:Plant")) << qlumPathAbove(texts[0]);
    EXPECT_TRUE(qlumPathAbove("/Objects").isEmpty());
    EXPECT_EQ(find(texts), (std::vector<std::string>{"ns=2;i=2", "ns=2;i=2"}));
    EXPECT_EQ(paths[1].start, nodes[1]) << "a node that nothing leads to";
}

} // namespace
