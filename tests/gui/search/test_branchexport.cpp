// Files of a branch: in the order of the tree, and with whatever a server may have written.
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/addressspace/search/qlumbranchexport.h>
#include <plugins/addressspace/search/qlumcrawl.h>
#include <plugins/addressspace/search/qlumnodeindex.h>
#include <tests/gui/search/nowork.h>
#include <tests/support/modeltext.h>
#include <tests/support/tableservices.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>

#include <QByteArray>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>
#include <QList>
#include <QString>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <memory>

namespace {
UaNodeId named(const char* name)
{
    return UaNodeId(UaString(name), 1);
}

class Spoken : public TableServices
{
public:
    UaStringArray namespaceTable() const override
    {
        UaStringArray uris(2);
        static_cast<void>(UaString("urn:plant;a").copyTo(&uris[1]));
        return uris;
    }
};

class BranchExport : public testing::Test
{
protected:
    BranchExport()
    {
        NodeTable& table = services->table;
        table.object(named("Line"), "Line");
        table.variable(named("Line.Cmd"), "=cmd|' /C calc'!A0", UaVariant(-1.5), named("Line"));
        table.object(named("Tail"), "Tail");
        table.variable(named("Odd"), "odd \xFF\"name\",\n", UaVariant("text"), named("Tail"));
        QlumCrawlControl control;
        QlumCrawl(job, *services, index, control, nullptr).run();
        wish.details.value = wish.details.access = wish.details.typeAndUnit = true;
    }
    QByteArray write(const char* name)
    {
        wish.file = folder.filePath(QLatin1String(name));
        outcome = qlumExportNodes(job, services, index, wish, [](std::size_t) {});
        QFile file(wish.file);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    std::shared_ptr<Spoken> services = std::make_shared<Spoken>();
    NoWork job;
    QlumNodeIndex index{UaNodeId(85), "Objects", OpcUa_NodeClass_Object};
    QTemporaryDir folder;
    QlumExportWish wish;
    QlumExportOutcome outcome;
};

TEST_F(BranchExport, CsvHasTextsWhereSpreadsheetsWouldSeeFormulas)
{
    const QList<QByteArray> lines = write("nodes.csv").split('\n');
    ASSERT_GT(lines.size(), 5) << outcome.error;
    EXPECT_EQ(outcome.written, 5U);
    EXPECT_TRUE(lines[1].startsWith("Objects,,i=85,Objects,Object,")) << lines[1].toStdString();
    EXPECT_TRUE(lines[2].startsWith("Objects/Line,/1:Line,nsu=urn:plant%3Ba;s=Line,Line,Object"))
        << lines[2].toStdString();
    EXPECT_TRUE(lines[3].contains(",'=cmd|' /C calc'!A0,Variable,")) << lines[3].toStdString();
    EXPECT_TRUE(lines[3].contains(",Double,Read and write,,,-1.5,Good")) << lines[3].toStdString();
    EXPECT_TRUE(lines[4].startsWith("Objects/Tail,")) << "behind all that is below its neighbour";
}

TEST_F(BranchExport, JsonIsWellFormedWhateverTheServerHasWritten)
{
    QJsonParseError fault{};
    const QJsonArray nodes = QJsonDocument::fromJson(write("nodes.json"), &fault).array();
    ASSERT_EQ(fault.error, QJsonParseError::NoError) << fault.errorString();
    ASSERT_EQ(nodes.size(), 5);
    const QJsonObject odd = nodes.at(4).toObject();
    EXPECT_EQ(odd["name"].toString(), QString("odd \uFFFD\"name\",\n"));
    EXPECT_EQ(odd["value"].toObject()["Body"], "text");
    EXPECT_FALSE(nodes.at(0).toObject().contains("value"));
}

TEST_F(BranchExport, SaysWhatItCouldNotReadOrWrite)
{
    services->failCalls(NodeTable::Read, OpcUa_BadUserAccessDenied);
    EXPECT_EQ(write("nodes.csv").count('\n'), 6 + 3)
        << "one name has a line end, which stands in three columns";
    EXPECT_EQ(outcome.unread, 5U);
    job.cancel();
    EXPECT_EQ(write("cancelled.csv"), QByteArray());
    wish.details = {};
    NoWork other;
    wish.file = folder.filePath("nowhere/nodes.csv");
    EXPECT_FALSE(qlumExportNodes(other, services, index, wish, [](std::size_t) {}).error.isEmpty());
}
} // namespace
