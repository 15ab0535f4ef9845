#include <app/api/qlumtoolservices.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/methods/qlummethodcallmodel.h>
#include <plugins/methods/qlummethoddialog.h>
#include <plugins/methods/qlummethodplugin.h>
#include <tests/support/stubapplication.h>
#include <tests/support/tableservices.h>
#include <tests/support/temporaryfolder.h>
#include <uabase/structures/uagenericstructurevalue.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumargumentpanel.h>

#include <QAbstractItemModel>
#include <QCoreApplication>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QSettings>
#include <QString>
#include <QTest>
#include <QTreeView>
#include <QWidget>
#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <mutex>
#include <string>

namespace {
class MethodServices : public TableServices
{
public:
    UaStatus call(Settings& settings, const UaClientSdk::CallIn& in, UaClientSdk::CallOut& out) override
    {
        {
            const std::lock_guard lock(m_mutex);
            m_object = in.objectId;
            m_count = in.inputArguments.length();
        }
        const UaStatus status = TableServices::call(settings, in, out);
        if (refusedInput != OpcUa_Good && out.inputArgumentResults.create(2))
            out.inputArgumentResults[1] = refusedInput;
        return status;
    }
    UaNodeId lastObject() const
    {
        const std::lock_guard lock(m_mutex);
        return m_object;
    }
    OpcUa_UInt32 lastCount() const
    {
        const std::lock_guard lock(m_mutex);
        return m_count;
    }

    OpcUa_StatusCode refusedInput = OpcUa_Good;

private:
    mutable std::mutex m_mutex;
    UaNodeId m_object;
    OpcUa_UInt32 m_count = 0;
};

class Methods : public testing::Test
{
protected:
    Methods() : plugin([this](unsigned int) { return services; })
    {
        NodeTable& table = services->table;
        table.object(plant, "Plant");
        table.method(add, "Add", plant,
                     {{{"a", UaNodeId(OpcUaId_Double)}, {"Password", UaNodeId(OpcUaId_Double)}},
                      {{"sum", UaNodeId(OpcUaId_Double)}},
                      [this](const UaVariantArray& in, UaVariantArray& out) -> OpcUa_StatusCode {
                          if (result != OpcUa_Good)
                              return result;
                          const double sum = UaVariant(in[0]).toDouble() + UaVariant(in[1]).toDouble();
                          return UaVariant(sum).copyTo(&out[0]);
                      }});
        plugin.init(&application);
        dialog = plugin.open(5, plant, add);
    }
    ~Methods() override
    {
        services->disconnect();
        plugin.shutdown();
    }

    template <typename Widget>
    Widget* widget(const char* name)
    {
        return dialog->findChild<Widget*>(name);
    }
    QlumArgumentPanel& inputs() { return *widget<QlumArgumentPanel>("methodInputs"); }
    QlumArgumentPanel& outputs() { return *widget<QlumArgumentPanel>("methodOutputs"); }
    std::string outcome() { return widget<QLabel>("methodOutcome")->text().toStdString(); }
    bool waitUntilReady()
    {
        return QTest::qWaitFor([this] { return widget<QPushButton>("callMethodNow")->isEnabled(); });
    }
    std::string outcomeOfCall()
    {
        EXPECT_TRUE(waitUntilReady());
        widget<QPushButton>("callMethodNow")->click();
        EXPECT_TRUE(waitUntilReady());
        return outcome();
    }
    void callForLong()
    {
        services->clock.hold();
        services->delay(NodeTable::Call, 5000);
        widget<QPushButton>("callMethodNow")->click();
        ASSERT_TRUE(QTest::qWaitFor([this] { return services->clock.waiting() == 1; }));
    }

    const UaNodeId plant{1, 2};
    const UaNodeId add{2, 2};
    OpcUa_StatusCode result = OpcUa_Good;
    StubApplication application;
    std::shared_ptr<MethodServices> services = std::make_shared<MethodServices>();
    QlumMethodPlugin plugin;
    QPointer<QlumMethodDialog> dialog;
};
} // namespace

TEST_F(Methods, AreCalledWithWhatIsEnteredAndEveryCallIsKept)
{
    ASSERT_TRUE(waitUntilReady());
    inputs().setValue(0, UaVariant(1.5));
    inputs().setValue(1, UaVariant(2.0));
    EXPECT_TRUE(outcomeOfCall().starts_with("Called. Duration: "));
    ASSERT_EQ(outputs().count(), 1);
    EXPECT_EQ(outputs().value(0), UaVariant(3.5));
    EXPECT_EQ(services->lastPurpose(), "Call Add");
    inputs().setValue(0, UaVariant(10.0));
    outcomeOfCall();
    QAbstractItemModel* calls = widget<QTreeView>("methodCalls")->model();
    ASSERT_EQ(calls->rowCount(), 2);
    EXPECT_EQ(calls->index(0, QlumMethodCallModel::OutputsColumn).data().toString(), "12");
    EXPECT_EQ(calls->index(1, QlumMethodCallModel::InputsColumn).data().toString(), "1.5; 2");
}

TEST_F(Methods, TellWhoseStatusItIsThatACallEndsWith)
{
    result = OpcUa_BadInvalidState;
    EXPECT_NE(outcomeOfCall().find("The method was refused or failed: "), std::string::npos) << outcome();
    EXPECT_NE(outcome().find("BadInvalidState"), std::string::npos) << outcome();
    result = OpcUa_BadArgumentsMissing;
    EXPECT_NE(outcomeOfCall().find("2 argument(s) were sent."), std::string::npos) << outcome();
    services->refusedInput = OpcUa_BadTypeMismatch;
    outcomeOfCall();
    EXPECT_FALSE(widget<QLabel>("methodInputs.0.note")->isVisible());
    EXPECT_TRUE(widget<QLabel>("methodInputs.1.note")->text().contains("BadTypeMismatch"));
    services->failCalls(NodeTable::Call, OpcUa_BadTimeout);
    EXPECT_NE(outcomeOfCall().find("The method may have run"), std::string::npos) << outcome();
}

// Whose description is wrong is called all the same, with as many arguments as it wants.
TEST_F(Methods, WithAWrongDescriptionGetMoreOrFewerArguments)
{
    ASSERT_TRUE(waitUntilReady());
    widget<QPushButton>("addArgument")->click();
    EXPECT_EQ(inputs().count(), 3);
    outcomeOfCall();
    EXPECT_EQ(services->lastCount(), 3U);
    for (int i = 0; i < 3; ++i)
        widget<QPushButton>("removeArgument")->click();
    outcomeOfCall();
    EXPECT_EQ(services->lastCount(), 0U);
}

TEST_F(Methods, ThatRunForLongAreGivenUpAndTheServerIsAskedToEndThem)
{
    ASSERT_TRUE(waitUntilReady());
    callForLong();
    EXPECT_FALSE(widget<QPushButton>("callMethodNow")->isEnabled());
    widget<QPushButton>("cancelCall")->click();
    EXPECT_TRUE(QTest::qWaitFor([this] { return outcome().find("ended the request") != std::string::npos; }));
    EXPECT_NE(outcome().find("The method may still run"), std::string::npos) << outcome();
    EXPECT_TRUE(widget<QPushButton>("callMethodNow")->isEnabled());
    EXPECT_EQ(outputs().count(), 0);
}

TEST_F(Methods, OfAServerThatIsRemovedCanBeLookedAtButNotCalled)
{
    ASSERT_TRUE(waitUntilReady());
    callForLong();
    services->disconnect();
    plugin.sessionRemoved(5);
    QCoreApplication::processEvents();
    EXPECT_FALSE(widget<QPushButton>("callMethodNow")->isEnabled());
    EXPECT_EQ(widget<QTreeView>("methodCalls")->model()->rowCount(), 1);
}

TEST_F(Methods, AreGivenUpWhenTheirWindowIsClosed)
{
    ASSERT_TRUE(waitUntilReady());
    callForLong();
    dialog->close();
    EXPECT_TRUE(QTest::qWaitFor([this] { return dialog.isNull(); }));
}

TEST_F(Methods, RememberWhatTheyWereGivenButNoSecretsUnderTheNewIdOfTheirServer)
{
    ASSERT_TRUE(waitUntilReady());
    inputs().setValue(0, UaVariant(7.25));
    inputs().setValue(1, UaVariant(8.0));
    outcomeOfCall();
    const TemporaryFolder folder;
    QSettings settings(QString::fromStdString(folder.path()) + "/project.uap", QSettings::IniFormat);
    plugin.saveSettings(settings);
    QlumMethodPlugin other([this](unsigned int) { return services; });
    other.init(&application);
    other.loadSettings(settings, {{5, 9}});
    dialog = other.open(9, plant, add);
    EXPECT_TRUE(waitUntilReady());
    EXPECT_EQ(inputs().value(0), UaVariant(7.25));
    EXPECT_EQ(inputs().value(1), UaVariant(0.0));
    other.shutdown();
}

// The server refuses a call on the type itself.
TEST_F(Methods, OfATypeAreCalledOnAnObjectOfIt)
{
    const UaNodeId type(10, 2);
    const UaNodeId pump(11, 2);
    services->table.object(type, "PumpType", UaNodeId());
    services->table.setAttribute(type, OpcUa_Attributes_NodeClass,
                                 UaDataValue(UaVariant(OpcUa_Int32{OpcUa_NodeClass_ObjectType})));
    services->table.object(pump, "Pump1", UaNodeId());
    services->table.reference(pump, UaNodeId(OpcUaId_HasTypeDefinition), type);
    dialog = plugin.open(5, type, add);
    outcomeOfCall();
    EXPECT_EQ(services->lastObject(), pump);
}

// They would keep structures without fields otherwise until they are opened again.
TEST_F(Methods, WaitForTypesThatAreStillBeingReadAndSaySo)
{
    ASSERT_TRUE(waitUntilReady());
    const UaNodeId move(3, 2);
    const UaNodeId pointType(20, 2);
    services->table.method(move, "Move", plant, {{{"to", pointType}}, {}, [](const auto&, auto&) {
                                                     return OpcUa_StatusCode{OpcUa_Good};
                                                 }});
    std::atomic<int> asked = 0;
    std::atomic<bool> come = false;
    services->typesHaveCome = [&] { return ++asked > 0 && come; };
    dialog = plugin.open(5, plant, move);
    const auto activity = [this] { return widget<QLabel>("activity")->text().toStdString(); };
    ASSERT_TRUE(QTest::qWaitFor([&] { return activity() == "data types are being read..."; })) << activity();
    EXPECT_FALSE(widget<QPushButton>("callMethodNow")->isEnabled());
    const auto says = [](const QWidget& part, const char* words) {
        for (const QLabel* label : part.findChildren<QLabel*>())
            if (label->text().contains(words))
                return true;
        return false;
    };
    EXPECT_TRUE(says(inputs(), "The data types of the server are being read"));
    UaStructureDefinition point(UaString("Point"), pointType, UaNodeId(21, 2));
    point.addField(UaStructureField(UaString("X"), UaNodeId(OpcUaId_Double), OpcUaType_Double));
    services->structures[pointType] = point;
    come = true;
    ASSERT_TRUE(waitUntilReady());
    EXPECT_EQ(inputs().argument(0).context.builtInType, OpcUaType_ExtensionObject);
    EXPECT_EQ(activity(), "");
    EXPECT_FALSE(says(inputs(), "being read"));

    // what it answers may be of a type that nobody has declared
    UaExtensionObject object;
    ASSERT_TRUE(UaGenericStructureValue(point).encode(object).isGood());
    come = false;
    const UaNodeId where(4, 2);
    services->table.method(where, "Where", plant,
                           {{}, {{"at", UaNodeId(OpcUaId_BaseDataType)}}, [&](const auto&, auto& out) {
                                return UaVariant(object).copyTo(&out[0]);
                            }});
    dialog = plugin.open(5, plant, where);
    ASSERT_TRUE(waitUntilReady());
    widget<QPushButton>("callMethodNow")->click();
    ASSERT_TRUE(QTest::qWaitFor([&] { return outcome().starts_with("The method has answered."); }))
        << outcome();
    EXPECT_EQ(activity(), "data types are being read...");
    const int cancels = services->calls(NodeTable::Cancel);
    widget<QPushButton>("cancelCall")->click(); // of the waiting; there is nothing else to be ended
    EXPECT_TRUE(outcome().starts_with("Called. ")) << outcome();
    EXPECT_EQ(services->calls(NodeTable::Cancel), cancels);
    ASSERT_EQ(outputs().count(), 1);
    EXPECT_EQ(outputs().value(0), UaVariant(object));
    widget<QPushButton>("callMethodNow")->click();
    ASSERT_TRUE(QTest::qWaitFor([&] { return outcome().starts_with("The method has answered."); }));
    come = true;
    ASSERT_TRUE(waitUntilReady());
    EXPECT_TRUE(outcome().starts_with("Called. ")) << outcome();
    EXPECT_EQ(activity(), "");
    services->typesHaveCome = {};
}

TEST_F(Methods, ThatAreGoneSayWhyTheyCannotBeCalled)
{
    ASSERT_TRUE(waitUntilReady());
    dialog = plugin.open(5, plant, UaNodeId(99, 2));
    const auto told = [this] {
        for (const QLabel* label : dialog->findChildren<QLabel*>())
            if (label->text().contains("BadNodeIdUnknown"))
                return true;
        return false;
    };
    EXPECT_TRUE(QTest::qWaitFor(told));
    EXPECT_FALSE(widget<QPushButton>("callMethodNow")->isEnabled());
}
