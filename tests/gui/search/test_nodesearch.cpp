// What a search finds in an index, and what it reads for that.
#include <app/api/qlumtext.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/addressspace/search/qlumcrawl.h>
#include <plugins/addressspace/search/qlumnodeindex.h>
#include <plugins/addressspace/search/qlumnodesearch.h>
#include <plugins/addressspace/search/qlumtextpattern.h>
#include <tests/gui/search/nowork.h>
#include <tests/support/modeltext.h>
#include <tests/support/tableservices.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTest>
#include <gtest/gtest.h>

#include <memory>
#include <utility>

namespace {
constexpr int limit = 20000; // ms

UaNodeId node(const char* name)
{
    return UaNodeId(UaString(name), 2);
}

class NodeSearch : public testing::Test
{
protected:
    NodeSearch() : services(std::make_shared<TableServices>())
    {
        NodeTable& table = services->table;
        table.object(UaNodeId(58), "BaseObjectType", UaNodeId(86));
        table.object(node("Boiler"), "Boiler");
        table.variable(node("Boiler.Temperature"), "Temperature", UaVariant(20.5), node("Boiler"));
        table.variable(node("Boiler.Level"), "Level", UaVariant(OpcUa_Int32{3}), node("Boiler"));
        table.object(node("Mixer"), "Mixer");
        table.variable(node("Mixer.Temperature"), "temperature 2", UaVariant(21.5), node("Mixer"));
        table.setAttribute(node("Mixer.Temperature"), OpcUa_Attributes_UserAccessLevel,
                           UaDataValue(UaVariant(OpcUa_Byte{1})));
        table.setAttribute(
            node("Boiler.Level"), OpcUa_Attributes_Description,
            UaDataValue(UaVariant(UaLocalizedText(UaString("en"), UaString("above the grate")))));
        QObject::connect(&search, &QlumNodeSearch::found, &search, [this](const QlumSearchHits& nodes) {
            for (const QlumSearchHit& found : nodes)
                names.append(index->copy(found.number).name);
        });
        crawl();
    }
    void crawl()
    {
        NoWork job;
        QlumCrawlControl control;
        QlumCrawl(job, *services, *index, control, nullptr).run();
    }
    QString find(const QlumNodeQuery& query, const UaNodeId& branch = UaNodeId(85))
    {
        names.clear();
        if (!search.start(7, index, query, index->find(branch)))
            return "refused";
        if (!QTest::qWaitFor([this] { return !search.isRunning(); }, limit))
            return "never ends";
        names.sort();
        return names.join(", ");
    }
    static QlumNodeQuery byText(const QString& text, QlumNodeQuery::Field field = QlumNodeQuery::Name)
    {
        QlumNodeQuery query;
        query.text = text;
        query.field = field;
        return query;
    }

    std::shared_ptr<TableServices> services;
    std::shared_ptr<QlumNodeIndex> index =
        std::make_shared<QlumNodeIndex>(UaNodeId(85), "Objects", OpcUa_NodeClass_Object);
    QlumNodeSearch search{[this](unsigned int) { return services; }};
    QStringList names;
};

TEST_F(NodeSearch, FindsByNameIdPathClassAndTypeWithoutAskingTheServer)
{
    const int reads = services->calls(NodeTable::Read);
    EXPECT_EQ(find(byText("TEMPER")), "Temperature, temperature 2");
    EXPECT_EQ(find(byText("*ture")), "Temperature");
    EXPECT_EQ(find(byText("?evel")), "Level");
    EXPECT_EQ(find(byText("s=Mixer", QlumNodeQuery::NodeId)), "Mixer, temperature 2");
    EXPECT_EQ(find(byText("Objects/Boiler/*", QlumNodeQuery::Path)), "Level, Temperature");
    EXPECT_EQ(find(byText("")), "Boiler, Level, Mixer, Objects, Temperature, temperature 2");
    EXPECT_EQ(find(byText("tem"), node("Boiler")), "Temperature");

    QlumNodeQuery query = byText("[a-z]+ \\d");
    query.isExpression = query.isCaseSensitive = true;
    EXPECT_EQ(find(query), "temperature 2");
    query.text = "(unclosed";
    EXPECT_EQ(find(query), "refused");
    EXPECT_TRUE(search.patternError().contains("letter")) << search.patternError();

    query = {};
    query.nodeClasses = OpcUa_NodeClass_Object;
    query.typeDefinition = "baseobject*";
    EXPECT_EQ(find(query), "Boiler, Mixer");
    EXPECT_EQ(services->calls(NodeTable::Read), reads);
}

TEST_F(NodeSearch, ReadsWhatTheSearchAsksForOfThoseThatPassOtherwise)
{
    QlumNodeQuery query;
    query.description = "grate";
    EXPECT_EQ(find(query), "Level");
    query = byText("temper");
    query.mustBeWritable = true;
    EXPECT_EQ(find(query), "Temperature");
    query = {};
    query.dataType = "int32";
    EXPECT_EQ(find(query), "Level");

    services->failCalls(NodeTable::Read, OpcUa_BadTooManyOperations);
    EXPECT_EQ(find(query), "");
    EXPECT_TRUE(search.failure().startsWith("BadTooManyOperations")) << search.failure();
}

TEST_F(NodeSearch, FollowsAnIndexThatGrows)
{
    EXPECT_EQ(find(byText("temper")), "Temperature, temperature 2");
    services->table.variable(node("New"), "New temperature", UaVariant(1.0));
    crawl(); // adds what is new
    search.goOn();
    ASSERT_TRUE(QTest::qWaitFor([this] { return !search.isRunning(); }, limit));
    EXPECT_EQ(names.last(), "New temperature");
    EXPECT_EQ(names.size(), 3) << "nothing twice";
}

TEST(TextPattern, GivesAnExpressionUpThatWouldNotEnd)
{
    const QlumTextPattern pattern("(a+)+$", QlumTextPattern::Expression, Qt::CaseSensitive);
    QElapsedTimer time;
    time.start();
    EXPECT_EQ(pattern.match(QString(60, 'a') + '!'), QlumTextPattern::TooHard);
    EXPECT_LT(time.elapsed(), 2000);
    EXPECT_EQ(pattern.match("aaa"), QlumTextPattern::Yes);
    const QlumTextPattern stars("*a*a*a*a*a*a*a*a*a*a*b", QlumTextPattern::Wildcards, Qt::CaseInsensitive);
    EXPECT_EQ(stars.match(QString(1000, 'A')), QlumTextPattern::No);
    EXPECT_EQ(stars.match(QString(1000, 'A') + 'B'), QlumTextPattern::Yes);
}
} // namespace
