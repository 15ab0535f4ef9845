#include <opcua/opcua_statuscodes.h>
#include <plugins/dataaccess/parts/qlumsnapshot.h>
#include <tests/support/modeltext.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uavariant.h>

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>

namespace {

QlumSnapshotRow row(const char* id, const UaVariant& value, OpcUa_StatusCode status = OpcUa_Good,
                    const char* path = "", const char* server = "Plc", const char* uri = "urn:plant")
{
    QlumSnapshotRow made;
    made.server = server;
    made.namespaceUri = uri;
    made.nodeId = id;
    made.name = id;
    made.browsePath = path;
    made.hasValue = true;
    made.value = UaDataValue(value, UaStatusCode(status), UaDateTime::now());
    return made;
}

std::string differences(const QlumSnapshot& before, const QlumSnapshot& after)
{
    static const char* const words[] = {"same", "changed", "status", "gone", "new"};
    std::string text;
    for (const QlumDifferenceRow& found : qlumCompare(before, after)) {
        const bool isGone = found.kind == QlumDifferenceKind::Gone;
        text += (isGone ? found.before : found.after).name.toStdString() + " " +
                words[static_cast<int>(found.kind)] + (found.isByPath ? " by path\n" : "\n");
    }
    return text;
}

TEST(Snapshots, ComeBackFromTextAsTheyWere)
{
    QlumSnapshot snapshot{"Before <start>", QDateTime::currentDateTime(), {}};
    snapshot.rows.push_back(row("s=a", UaVariant(std::numeric_limits<OpcUa_UInt64>::max())));
    snapshot.rows.push_back(row("s=b", UaVariant(std::numeric_limits<double>::quiet_NaN()),
                                OpcUa_UncertainLastUsableValue, "/Objects/2:B"));
    snapshot.rows.push_back({});
    snapshot.rows.back().indexRange = "1:2";
    QlumSnapshot read;
    QString fault;
    int unreadable = -1;
    ASSERT_TRUE(qlumReadSnapshot(qlumSnapshotText(snapshot), read, fault, unreadable)) << fault;
    EXPECT_EQ(unreadable, 0);
    EXPECT_EQ(read.name, snapshot.name);
    EXPECT_EQ(read.taken, snapshot.taken);
    ASSERT_EQ(read.rows.size(), 3U);
    EXPECT_EQ(read.rows[0].value, snapshot.rows[0].value) << "no digit is lost";
    EXPECT_FALSE(read.rows[2].hasValue);
    EXPECT_EQ(read.rows[2].indexRange, "1:2");
    EXPECT_EQ(differences(snapshot, read), "s=a same\ns=b same\n same\n") << "NaN, and a row without a node";
}

TEST(Snapshots, FromAnywhereAreRefusedWithAReason)
{
    QlumSnapshot read;
    int unreadable = 0;
    const auto faultOf = [&](const QByteArray& text) {
        QString fault;
        EXPECT_FALSE(qlumReadSnapshot(text, read, fault, unreadable));
        return fault.toStdString();
    };
    EXPECT_NE(faultOf("Node Id,Value\n").find("This is no snapshot: "), std::string::npos);
    EXPECT_EQ(faultOf("{\"rows\":[]}"), "This is no snapshot of a data access view.");
    EXPECT_EQ(faultOf("{\"format\":\"Tavelin snapshot\",\"version\":2}"),
              "The snapshot was written by a newer version of the program.");
    QString fault;
    EXPECT_TRUE(qlumReadSnapshot("{\"format\":\"Tavelin snapshot\",\"version\":1,"
                                 "\"rows\":[{\"value\":\"nonsense\"},7]}",
                                 read, fault, unreadable));
    EXPECT_EQ(unreadable, 1);
}

TEST(Snapshots, AreComparedRowByRow)
{
    const QlumSnapshot before{"a",
                              {},
                              {row("s=same", UaVariant(1)), row("s=value", UaVariant(1)),
                               row("s=status", UaVariant(1)), row("s=gone", UaVariant(1)),
                               row("s=type", UaVariant(1))}};
    const QlumSnapshot after{"b",
                             {},
                             {row("s=new", UaVariant(1)), row("s=type", UaVariant(1.0)),
                              row("s=status", UaVariant(1), OpcUa_BadSensorFailure),
                              row("s=value", UaVariant(2)), row("s=same", UaVariant(1))}};
    EXPECT_EQ(differences(before, after), "s=new new\ns=type changed\ns=status status\ns=value changed\n"
                                          "s=same same\ns=gone gone\n");
}

TEST(Snapshots, FindTheSameNodeUnderAnotherIdOrServer)
{
    const QlumSnapshot before{
        "a",
        {},
        {row("i=1", UaVariant(1), OpcUa_Good, "/Plant/A"), row("i=2", UaVariant(1), OpcUa_Good, "/Plant/B")}};
    // an id that was given anew is another node where the one with the path is there, too
    const QlumSnapshot after{"b",
                             {},
                             {row("i=9", UaVariant(1), OpcUa_Good, "/Plant/A"),
                              row("i=8", UaVariant(1), OpcUa_Good, "/Plant/B", "Plc", "urn:other")}};
    EXPECT_EQ(differences(before, after), "i=9 same by path\ni=8 new\ni=2 gone\n");
    // another name of the server, or two servers that are the same inside
    const QlumSnapshot renamed{"c", {}, {row("i=1", UaVariant(1), OpcUa_Good, "", "Line 4")}};
    EXPECT_EQ(differences(before, renamed), "i=1 same\ni=2 gone\n");
    const QlumSnapshot twins{
        "d",
        {},
        {row("i=1", UaVariant(5), OpcUa_Good, "", "Twin"), row("i=1", UaVariant(1), OpcUa_Good, "", "Plc")}};
    EXPECT_EQ(differences(before, twins), "i=1 new\ni=1 same\ni=2 gone\n");
}

} // namespace
