// Values that the pages have put together, judged by a server that is not ours and by another session.
#include <opcua/opcua.h>
#include <tests/support/demoserverinfo.h>
#include <uabase/structures/uadatatypedictionary.h>
#include <uabase/structures/uagenericstructurevalue.h>
#include <uabase/structures/uagenericunionvalue.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/system/uaplatformlayer.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uaexpandednodeid.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uaguid.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/uaclient.h>
#include <uaclientsdk/uasession.h>
#include <uaclientsdk/uasessioncallback.h>
#include <uawidgets/editors/qlumarraypage.h>
#include <uawidgets/editors/qlummatrixpage.h>
#include <uawidgets/editors/qlumstructuremodel.h>
#include <uawidgets/editors/qlumstructurepage.h>
#include <uawidgets/editors/qlumvaluecontext.h>
#include <uawidgets/editors/qlumvaluepage.h>
#include <uawidgets/editors/qlumvaluewidget.h>

#include <QComboBox>
#include <QDateTime>
#include <QDateTimeEdit>
#include <QLineEdit>
#include <QModelIndex>
#include <QPlainTextEdit>
#include <QString>
#include <QStringList>
#include <QTest>
#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <memory>
#include <span>
#include <utility>
#include <vector>

namespace {

using namespace UaClientSdk;

class QuietCallback : public UaSessionCallback
{
public:
    void connectionStatusChanged(OpcUa_UInt32, UaClient::ServerStatus) override {}
};

class PagesOnDemoServer : public testing::Test
{
protected:
    static void SetUpTestSuite() { ASSERT_EQ(UaPlatformLayer::init(), 0); }
    static void TearDownTestSuite() { UaPlatformLayer::cleanup(); }

    void SetUp() override
    {
        for (UaSession* session : {&writer, &judge}) {
            SessionConnectInfo info;
            info.sessionName = UaString("value pages");
            const UaStatus status = session->connect(UaString(demoserver::endpointUrl().c_str()), info,
                                                     SessionSecurityInfo(), &callback);
            ASSERT_TRUE(status.isGood()) << status.toString().toUtf8();
        }
    }
    void TearDown() override
    {
        for (const auto& [node, value] : before)
            EXPECT_EQ(write(node, value), static_cast<OpcUa_StatusCode>(OpcUa_Good)) << "put back";
        for (UaSession* session : {&writer, &judge})
            EXPECT_TRUE(session->disconnect(settings, true).isGood());
    }

    UaVariant read(UaSession& session, const UaNodeId& node)
    {
        UaReadValueIds nodes(1u);
        EXPECT_TRUE(OpcUa_IsGood(node.copyTo(&nodes[0].NodeId)));
        nodes[0].AttributeId = OpcUa_Attributes_Value;
        UaDataValues values;
        UaDiagnosticInfos diagnostics;
        EXPECT_TRUE(session.read(settings, 0.0, OpcUa_TimestampsToReturn_Neither, nodes, values, diagnostics)
                        .isGood());
        return values.isEmpty() ? UaVariant() : UaVariant(values[0].Value);
    }
    OpcUa_StatusCode write(const UaNodeId& node, const UaVariant& value)
    {
        UaWriteValues nodes(1u);
        EXPECT_TRUE(OpcUa_IsGood(node.copyTo(&nodes[0].NodeId)));
        nodes[0].AttributeId = OpcUa_Attributes_Value;
        EXPECT_TRUE(OpcUa_IsGood(value.copyTo(&nodes[0].Value.Value)));
        UaStatusCodeArray results;
        UaDiagnosticInfos diagnostics;
        EXPECT_TRUE(writer.write(settings, nodes, results, diagnostics).isGood());
        return results.isEmpty() ? OpcUa_BadUnexpectedError : results[0];
    }
    // Shows what the node has.
    UaVariant load(const UaNodeId& node, QlumValuePage& page)
    {
        const UaVariant value = read(writer, node);
        before.emplace_back(node, value);
        page.setValue(value);
        return value;
    }
    // Writes what the page holds; answers what another session reads then.
    UaVariant send(const UaNodeId& node, const QlumValuePage& page)
    {
        UaVariant value;
        EXPECT_TRUE(page.value(value)) << page.fault().toStdString();
        EXPECT_EQ(write(node, value), static_cast<OpcUa_StatusCode>(OpcUa_Good));
        return read(judge, node);
    }
    QlumValueContext contextOf(OpcUa_BuiltInType type, OpcUa_Int32 rank)
    {
        QlumValueContext context;
        context.builtInType = type;
        context.valueRank = rank;
        context.dictionary = std::shared_ptr<UaDataTypeDictionary>(std::shared_ptr<void>(), &writer);
        return context;
    }
    static QModelIndex field(QlumStructureModel& model, const QStringList& path)
    {
        QModelIndex found;
        for (const QString& name : path) {
            if (model.canFetchMore(found))
                model.fetchMore(found);
            QModelIndex next;
            for (int row = 0; row < model.rowCount(found); ++row)
                if (model.index(row, 0, found).data().toString() == name)
                    next = model.index(row, 0, found);
            found = next;
        }
        EXPECT_TRUE(found.isValid()) << path.join('.').toStdString();
        return found;
    }
    static bool enter(QlumStructureModel& model, const QStringList& path, const QString& text)
    {
        return model.setData(field(model, path).siblingAtColumn(QlumStructureModel::ValueColumn), text);
    }

    ServiceSettings settings;
    QuietCallback callback;
    UaSession writer;
    UaSession judge;
    std::vector<std::pair<UaNodeId, UaVariant>> before;
};

// What a user enters for one type, and what has to be on the server then.
struct Entry
{
    const char* node;
    const char* text;
    UaVariant expected;
    OpcUa_UInt32 dataType = 0; // where it is another than that of the value
};

UaByteString bytesOf(const char* text)
{
    return UaByteString(std::span(reinterpret_cast<const OpcUa_Byte*>(text), std::strlen(text)));
}

UaVariant xmlOf(const char* text)
{
    UaVariant xml;
    xml.setXmlElement(bytesOf(text));
    return xml;
}

std::vector<Entry> entries()
{
    const char* const guid = "72962b91-fa75-4ae6-8d28-b404dc7daf64";
    static constexpr OpcUa_Byte opaque[] = {255, 0};
    return {
        {"Scalar.Boolean", "false", UaVariant(false)},
        {"Scalar.SByte", "-128", UaVariant(OpcUa_SByte{-128})},
        {"Scalar.Byte", "0xFF", UaVariant(OpcUa_Byte{255})},
        {"Scalar.Int16", "-0x8000", UaVariant(OpcUa_Int16{-32768})},
        {"Scalar.UInt16", "0b1000000000000001", UaVariant(OpcUa_UInt16{0x8001})},
        {"Scalar.Int32", "-2147483648", UaVariant(std::numeric_limits<OpcUa_Int32>::min())},
        {"Scalar.UInt32", "4294967295", UaVariant(std::numeric_limits<OpcUa_UInt32>::max())},
        {"Scalar.Int64", "-9223372036854775808", UaVariant(std::numeric_limits<OpcUa_Int64>::min())},
        {"Scalar.UInt64", "18446744073709551615", UaVariant(std::numeric_limits<OpcUa_UInt64>::max())},
        {"Scalar.Float", "0.1", UaVariant(0.1f)},
        {"Scalar.Double", "4.9e-324", UaVariant(std::numeric_limits<double>::denorm_min())},
        {"Scalar.String",
         "Gr\xC3\xBC\xC3\x9F"
         "e\nzwei",
         UaVariant("Gr\xC3\xBC\xC3\x9F"
                   "e\nzwei")},
        {"Scalar.DateTime", "2031-12-24T18:30:15.123Z",
         UaVariant(UaDateTime::fromString("2031-12-24T18:30:15.123Z"))},
        {"Scalar.Guid", guid, UaVariant(UaGuid::fromString(guid))},
        {"Scalar.ByteString", "74 65 78 74", UaVariant(bytesOf("text"))},
        {"Scalar.XmlElement", "<b>neu</b>", xmlOf("<b>neu</b>")},
        {"Scalar.NodeId", "ns=3;s=a;b", UaVariant(UaNodeId(UaString("a;b"), 3))},
        // the server keeps neither URIs nor server indexes, whoever writes them
        {"Scalar.ExpandedNodeId",
         "ns=3;b=/wA=", UaVariant(UaExpandedNodeId(UaNodeId(UaByteString(std::span(opaque)), 3)))},
        {"Scalar.StatusCode", "BadNotWritable", UaVariant(UaStatusCode(OpcUa_BadNotWritable))},
        {"Scalar.QualifiedName", "2:a:b", UaVariant(UaQualifiedName(UaString("a:b"), 2))},
        {"Scalar.LocalizedText", "Kessel", UaVariant(UaLocalizedText(UaString("de-DE"), UaString("Kessel")))},
        {"Scalar.Enumeration", "Suspended", UaVariant(OpcUa_Int32{3}), 852},
        {"Scalar.Duration", "0.5", UaVariant(0.5), 290},
    };
}

// Into the editor that there is for the type, as far as a user types.
void enterText(const QlumValueWidget& editor, const QString& text)
{
    if (auto* names = editor.findChild<QComboBox*>("valueEditor"))
        names->isEditable() ? names->setEditText(text) : names->setCurrentText(text);
    else if (auto* line = editor.findChild<QLineEdit*>("valueEditor"))
        line->setText(text);
    else if (auto* time = editor.findChild<QDateTimeEdit*>("time"))
        time->setDateTime(QDateTime::fromString(text, Qt::ISODateWithMs));
    else if (auto* field = editor.findChild<QPlainTextEdit*>("text"))
        field->setPlainText(text);
    if (auto* locale = editor.findChild<QLineEdit*>("locale")) {
        locale->clear();
        QTest::keyClicks(locale, "de-DE");
    }
}

TEST_F(PagesOnDemoServer, ScalarsOfEveryTypeArriveAsTheyWereEntered)
{
    for (const Entry& entry : entries()) {
        QlumValueContext context = contextOf(entry.expected.type(), -1);
        context.dataType =
            UaNodeId(entry.dataType != 0 ? entry.dataType : static_cast<OpcUa_UInt32>(entry.expected.type()));
        QlumValueWidget editor(context);
        const UaNodeId node(UaString(entry.node), 2);
        EXPECT_NE(load(node, editor), entry.expected) << entry.node;
        enterText(editor, QString::fromUtf8(entry.text));
        EXPECT_EQ(editor.remark(), QString()) << entry.node;
        const UaVariant arrived = send(node, editor);
        EXPECT_EQ(arrived, entry.expected) << entry.node << ' ' << arrived.toString().toUtf8();
    }
}

TEST_F(PagesOnDemoServer, AVariantArrivesWithTheTypeThatWasChosen)
{
    QlumValueContext context = contextOf(OpcUaType_Null, -2);
    context.dataType = UaNodeId(OpcUaType_Variant);
    QlumValueWidget editor(context);
    const UaNodeId node(UaString("Scalar.Variant"), 2);
    load(node, editor);
    auto* type = editor.findChild<QComboBox*>("type");
    ASSERT_NE(type, nullptr);
    type->setCurrentIndex(type->findData(OpcUaType_UInt64));
    emit type->activated(type->currentIndex());
    EXPECT_EQ(send(node, editor), UaVariant(OpcUa_UInt64{42})) << "what was there, in the other type";
}

TEST_F(PagesOnDemoServer, FieldsOfStructuresAndUnionsArrive)
{
    QlumStructurePage page(contextOf(OpcUaType_ExtensionObject, -1));
    const UaNodeId sample(UaString("Structure.SampleBare"), 3);
    load(sample, page);
    ASSERT_TRUE(enter(page.model(), {"Id"}, "4711"));
    ASSERT_TRUE(page.model().setData(field(page.model(), {"Place"}), Qt::Checked, Qt::CheckStateRole));
    ASSERT_TRUE(enter(page.model(), {"Place", "Y"}, "-2.75"));
    const UaExtensionObject object = send(sample, page).toExtensionObject();
    UaGenericStructureValue fields;
    ASSERT_TRUE(fields.decode(object, judge.structureDefinition(object.encodingId()), &judge).isGood());
    EXPECT_EQ(fields.value(UaString("Id")), UaVariant(OpcUa_UInt32{4711}));
    EXPECT_FALSE(fields.isFieldSet(fields.definition().fieldIndex(UaString("Weight"))));
    const UaGenericStructureValue place = fields.structure(3, -1, &judge);
    EXPECT_EQ(place.value(UaString("Y")), UaVariant(-2.75));

    const UaNodeId measurement(UaString("Structure.MeasurementText"), 3);
    load(measurement, page);
    ASSERT_TRUE(page.model().setData(field(page.model(), {"Number"}), Qt::Checked, Qt::CheckStateRole));
    ASSERT_TRUE(enter(page.model(), {"Number"}, "0.1"));
    const UaExtensionObject chosen = send(measurement, page).toExtensionObject();
    UaGenericUnionValue member;
    ASSERT_TRUE(member.decode(chosen, judge.structureDefinition(chosen.encodingId()), &judge).isGood());
    EXPECT_EQ(member.value(), UaVariant(0.1));
}

TEST_F(PagesOnDemoServer, ElementsOfArraysAndMatricesArrive)
{
    QlumArrayPage page(contextOf(OpcUaType_Double, 1));
    const UaNodeId doubles(UaString("Array.Double"), 2);
    const int length = static_cast<int>(load(doubles, page).elementCount());
    ASSERT_GT(length, 1);
    ASSERT_TRUE(page.model().insertRows(1, 2));
    EXPECT_EQ(page.model().paste(1, {"0.1", "1e300", "-2"}).refused, 0);
    const UaVariant sent = send(doubles, page);
    EXPECT_EQ(static_cast<int>(sent.elementCount()), length + 2);
    EXPECT_EQ(sent.at(1), UaVariant(0.1));
    EXPECT_EQ(sent.at(2), UaVariant(1e300));
    EXPECT_EQ(sent.at(3), UaVariant(-2.0));
    EXPECT_EQ(sent.at(0), before.back().second.at(0));

    QlumArrayPage points(contextOf(OpcUaType_ExtensionObject, 1));
    const UaNodeId pointArray(UaString("Structure.PointArray"), 3);
    const UaVariant were = load(pointArray, points);
    ASSERT_TRUE(points.model().moveRows({}, 2, 1, {}, 0));
    const UaVariant moved = send(pointArray, points);
    EXPECT_EQ(moved.at(0), were.at(2));
    EXPECT_EQ(moved.at(1), were.at(0));

    QlumMatrixPage cube(contextOf(OpcUaType_Int32, 3));
    const UaNodeId cubeId(UaString("Cube.Int32"), 2);
    load(cubeId, cube);
    cube.model().setSlice({1});
    ASSERT_TRUE(cube.model().setData(cube.model().index(1, 2), "-7"));
    const UaVariant written = send(cubeId, cube);
    EXPECT_EQ(written.dimensions().length(), 3u);
    EXPECT_EQ(written.at(11), UaVariant(OpcUa_Int32{-7}));
    EXPECT_EQ(written.at(5), before.back().second.at(5));
}

} // namespace
