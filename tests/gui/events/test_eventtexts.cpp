// What the view says and is called, where no test of what it does says so.
#include <app/api/qlumlog.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/events/qlumdetailsmodel.h>
#include <plugins/events/qlumeventfilter.h>
#include <plugins/events/qlumeventplugin.h>
#include <plugins/events/qlumeventwidget.h>
#include <tests/gui/events/eventtest.h>
#include <uabase/structures/uagenericunionvalue.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/structures/uatypedefinitionstore.h>
#include <uabase/values/uaarray.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadiagnosticinfo.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uaguid.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>

#include <QAction>
#include <QFile>
#include <QSettings>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <memory>
#include <string>
#include <utility>
#include <vector>

// outside of a namespace, where the macro finds them
static void initResources()
{
    Q_INIT_RESOURCE(eventplugin);
}

namespace {
class EventTexts : public testing::Test
{
protected:
    EventTexts()
    {
        plugin.init(&application);
        view.reset(qobject_cast<QlumEventWidget*>(plugin.createDocument("Event View")));
    }
    ~EventTexts() override
    {
        view.reset();
        plugin.shutdown();
    }

    EventApplication application;
    QlumEventPlugin plugin{[](unsigned int) { return nullptr; }};
    std::unique_ptr<QlumEventWidget> view;
};

TEST_F(EventTexts, NameThePluginItsDocumentAndItsActions)
{
    EXPECT_EQ(plugin.name(), "UA Events Plugin");
    EXPECT_EQ(
        plugin.description("Event View"),
        "This document type can be used to subscribe to events and alarms of the UA server. It supports "
        "the selection of event fields and can acknowledge and confirm alarms. It also supports reading "
        "of historical event data for a given time period.");
    for (const auto& [name, text] :
         {std::pair("removeItem", "Remove Monitored Item"), std::pair("acknowledge", "Acknowledge"),
          std::pair("confirm", "Confirm"), std::pair("addComment", "Add Comment")}) {
        const auto* const action = view->findChild<QAction*>(QLatin1String(name));
        ASSERT_NE(action, nullptr) << name;
        EXPECT_EQ(QString(action->text()).remove('&').toStdString(), text);
    }
}

TEST(EventPictures, AreThereUnderTheirNames)
{
    initResources();
    for (const char* const icon : {"ackall", "confirmall", "addcomment", "acked", "nonacked"})
        EXPECT_TRUE(QFile::exists(QStringLiteral(":/images/%1.png").arg(QLatin1String(icon)))) << icon;
}

TEST_F(EventTexts, KeepWhatTheViewIsSetToUnderTheirKeys)
{
    const QTemporaryDir folder;
    QSettings file(folder.filePath("p.uap"), QSettings::IniFormat);
    view->findChild<QAction*>("autoscroll")->setChecked(false);
    view->findChild<QAction*>("showRetainIfFalse")->setChecked(true);
    view->saveSettings(file);
    EXPECT_FALSE(file.value("Autoscroll").toBool());
    EXPECT_TRUE(file.value("ShowRetainIfFalse").toBool());
    EXPECT_LT(file.value("StartTime").toDateTime(), file.value("EndTime").toDateTime());
    view->findChild<QAction*>("autoscroll")->setChecked(true);
    view->findChild<QAction*>("showRetainIfFalse")->setChecked(false);
    view->loadSettings(file, {});
    EXPECT_FALSE(view->findChild<QAction*>("autoscroll")->isChecked());
    EXPECT_TRUE(view->findChild<QAction*>("showRetainIfFalse")->isChecked());
}

TEST_F(EventTexts, TellWhatTheServerSaysOfEachElementOfTheFilter)
{
    OpcUa_StatusCode operands[] = {OpcUa_Good, OpcUa_BadNodeIdUnknown};
    OpcUa_ContentFilterElementResult elements[2] = {};
    elements[1].StatusCode = OpcUa_BadFilterOperandInvalid;
    elements[1].NoOfOperandStatusCodes = 2;
    elements[1].OperandStatusCodes = operands;
    OpcUa_EventFilterResult filter = {};
    filter.WhereClauseResult.NoOfElementResults = 2;
    filter.WhereClauseResult.ElementResults = elements;
    UaExtensionObject result;
    ASSERT_TRUE(OpcUa_IsGood(result.setDecoded(OpcUa_EventFilterResult_EncodeableType, &filter)));
    qlumLogFilterResult(QlumLog("Event Plugin", 1), result);
    EXPECT_EQ(application.said().join('\n').toStdString(), "SelectClauseResult:\n"
                                                           "WhereClauseResult:\n"
                                                           "    Element [0]: Good\n"
                                                           "    Element [1]: BadFilterOperandInvalid\n"
                                                           "        OperandStatusCodes:\n"
                                                           "           Operand [0]: Good\n"
                                                           "           Operand [1]: BadNodeIdUnknown");
    view->items()->callRefresh(7);
    EXPECT_EQ(application.said("No ").join('|'), "No session exists for server 7, skip calling refresh.");
}

TEST(EventDetailTexts, TellOtherIdsUnionsAndWhatCannotBeShown)
{
    UaStructureDefinition either(UaString("Either"), UaNodeId(4, 2), UaNodeId(5, 2));
    either.setUnion(true);
    either.addField(UaStructureField(UaString("number"), UaNodeId(6), OpcUaType_Int32));
    auto definitions = std::make_shared<UaTypeDefinitionStore>();
    definitions->add(either);
    UaGenericUnionValue chosen(either);
    ASSERT_TRUE(chosen.setValue(1, UaVariant(OpcUa_Int32{7})).isGood());
    UaExtensionObject object;
    ASSERT_TRUE(chosen.encode(object).isGood());
    UaVariant diagnosis;
    diagnosis.setDiagnosticInfo(UaDiagnosticInfo());
    UaVariant list;
    list.setInt32Array(UaArray<OpcUa_Int32>(1u));
    const OpcUa_Byte opaque[] = {1, 2};
    const std::vector<std::pair<QString, UaVariant>> fields{
        {"Guid", UaVariant(UaNodeId(UaGuid::create(), 2))},
        {"Opaque", UaVariant(UaNodeId(UaByteString(opaque), 2))},
        {"Either", UaVariant(object)},
        {"Diagnosis", diagnosis},
        {"List", list},
        {"Off", UaVariant(false)}};
    QStringList names;
    UaVariantArray values(static_cast<OpcUa_UInt32>(fields.size()));
    for (OpcUa_UInt32 i = 0; i < values.length(); ++i) {
        names.append(fields[i].first);
        ASSERT_TRUE(OpcUa_IsGood(fields[i].second.copyTo(&values[i])));
    }
    QlumDetailsModel model;
    model.setEvent(QlumEventFields(std::make_shared<const QlumFieldNames>(names), values.rawData(),
                                   static_cast<OpcUa_Int32>(values.length())),
                   definitions);
    for (const int row : {0, 1, 2, 4})
        model.fetchMore(model.index(row, 0));
    EXPECT_EQ(model.index(1, 1, model.index(0, 0)).data(), "Guid");
    EXPECT_EQ(model.index(1, 1, model.index(1, 0)).data(), "Opaque");
    EXPECT_EQ(model.index(0, 0, model.index(2, 0)).data(), "Switch Field");
    EXPECT_EQ(model.index(0, 1, model.index(2, 0)).data(), "1");
    EXPECT_EQ(model.index(1, 1, model.index(2, 0)).data(), "7");
    EXPECT_EQ(model.index(3, 1).data(), "not yet implemented");
    EXPECT_EQ(model.index(4, 1).data(), "Array of Int32");
    EXPECT_EQ(model.index(0, 0, model.index(4, 0)).data(), "[0]");
    EXPECT_EQ(model.index(5, 1).data(), "False");
}
} // namespace
