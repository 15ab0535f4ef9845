// References and methods of a server that is not ours, in the windows of the whole client.
#include <app/api/qlumtext.h>
#include <app/api/qlumtoolservices.h>
#include <plugins/addressspace/qlumnodechooser.h>
#include <plugins/methods/qlummethoddialog.h>
#include <tests/integration/clientondemoserver.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumargumentpanel.h>

#include <QElapsedTimer>
#include <QLabel>
#include <QObject>
#include <QPointer>
#include <QPushButton>
#include <QString>
#include <QTest>
#include <QTimer>
#include <QTreeView>
#include <QWidget>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {
UaNodeId demo(const char* id)
{
    return UaNodeId(UaString(id), 2);
}

class ToolsOnDemoServer : public ClientOnDemoServer
{
protected:
    void open(const char* object, const char* method)
    {
        delete dialog;
        ASSERT_TRUE(QlumToolServices::instance()->callMethod(serverId, demo(object), demo(method)));
        dialog = window->findChild<QlumMethodDialog*>();
        ASSERT_TRUE(dialog);
        ASSERT_TRUE(waitUntilReady()) << logText();
    }
    bool waitUntilReady()
    {
        return QTest::qWaitFor([this] { return callButton()->isEnabled(); }, limit);
    }
    QPushButton* callButton() { return dialog->findChild<QPushButton*>("callMethodNow"); }
    QlumArgumentPanel& inputs() { return *dialog->findChild<QlumArgumentPanel*>("methodInputs"); }
    QlumArgumentPanel& outputs() { return *dialog->findChild<QlumArgumentPanel*>("methodOutputs"); }
    std::string call()
    {
        callButton()->click();
        EXPECT_TRUE(waitUntilReady());
        return dialog->findChild<QLabel*>("methodOutcome")->text().toStdString();
    }

    QPointer<QlumMethodDialog> dialog;
};

TEST_F(ToolsOnDemoServer, ShowsTheReferencesOfTheSelectedNode)
{
    openDemoProject();
    select({"Root", "Objects", "Demo", "Methods"});
    const auto isShown = [this] {
        QTreeView* view = tree("References");
        for (int row = 0; view && row < view->model()->rowCount(); ++row)
            if (view->model()->index(row, 2).data() == "Mixed")
                return view->model()->index(row, 0).data() == "HasComponent";
        return false;
    };
    EXPECT_TRUE(QTest::qWaitFor(isShown, limit)) << logText();
}

TEST_F(ToolsOnDemoServer, CallsAMethodWithStructuredArguments)
{
    openDemoProject();
    open("Methods", "Methods.Mixed");
    ASSERT_EQ(inputs().count(), 4);
    UaVariant values;
    EXPECT_TRUE(
        OpcUa_IsGood(values.setArray(OpcUaType_Double, std::vector{UaVariant(1.5), UaVariant(-2.0)})));
    inputs().setValue(1, UaVariant(OpcUa_Int32{2}));
    inputs().setValue(2, UaVariant(OpcUa_UInt32{5}));
    inputs().setValue(3, values);
    EXPECT_EQ(inputs().values()[0].type(), OpcUaType_ExtensionObject)
        << "of the declared type, from the beginning";
    // its fields come with the definition of the type
    ASSERT_TRUE(QTest::qWaitFor([&] { return !inputs().values()[0].toExtensionObject().isNull(); }, limit));
    EXPECT_TRUE(call().starts_with("Called. ")) << logText();
    const std::vector<UaVariant> sent = inputs().values();
    const std::vector<UaVariant> answered = outputs().values();
    ASSERT_EQ(answered.size(), sent.size());
    for (std::size_t i = 0; i < sent.size(); ++i)
        EXPECT_EQ(answered[i], sent[i]) << toQString(answered[i].toString()).toStdString() << " for "
                                        << toQString(sent[i].toString()).toStdString();
}

TEST_F(ToolsOnDemoServer, CallsAMethodWhosePropertiesAreWrong)
{
    openDemoProject();
    open("Methods", "Methods.TooFew");
    EXPECT_NE(call().find("BadArgumentsMissing"), std::string::npos);
    dialog->findChild<QPushButton*>("addArgument")->click();
    inputs().setValue(0, UaVariant(1.5));
    inputs().setValue(1, UaVariant(2.0));
    EXPECT_TRUE(call().starts_with("Called. "));
    EXPECT_EQ(outputs().value(0), UaVariant(3.5));
    open("Methods", "Methods.UnknownType");
    ASSERT_EQ(inputs().count(), 2);
    inputs().setValue(1, UaVariant(2.0));
    EXPECT_TRUE(call().starts_with("Called. "));
}

// The server does not tell which objects a type has.
TEST_F(ToolsOnDemoServer, CallsAMethodOfATypeOnAnObjectThatIsChosen)
{
    openDemoProject();
    ASSERT_TRUE(QlumToolServices::instance()->callMethod(serverId, demo("PumpType"), demo("PumpType.Prime")));
    dialog = window->findChild<QlumMethodDialog*>();
    auto* choose = dialog->findChild<QPushButton*>("chooseObject");
    ASSERT_TRUE(QTest::qWaitFor([&] { return choose->isVisible(); }, limit)) << logText();
    EXPECT_FALSE(callButton()->isEnabled());
    QObject owner;
    QlumToolServices::instance()->takeChooseNode(
        &owner, [](QWidget*, unsigned int, const UaNodeId&) { return demo("Icon.MarkedPump"); });
    choose->click();
    EXPECT_TRUE(call().starts_with("Called. "));
    EXPECT_EQ(outputs().value(0), UaVariant("MarkedPump"));
}

// As editors of node ids have it.
TEST_F(ToolsOnDemoServer, LetsTheUserChooseANodeInATree)
{
    openDemoProject();
    QTimer look; // the dialog waits for it in its event loop
    QElapsedTimer since;
    since.start();
    QObject::connect(&look, &QTimer::timeout, [&] {
        auto* chooser = window->findChild<QlumNodeChooser*>();
        if (chooser && chooser->isVisible() &&
            (chooser->nodeId() == demo("Methods") || since.hasExpired(limit)))
            chooser->accept();
    });
    look.start(10);
    EXPECT_EQ(QlumToolServices::instance()->chooseNode(window.get(), serverId, demo("Methods")),
              demo("Methods"));
}
} // namespace
