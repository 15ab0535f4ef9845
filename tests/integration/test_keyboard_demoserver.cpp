// A day's work without a mouse, on a real server: every step of it is a key.
#include <app/api/qlumsessionservices.h>
#include <opcua/opcua_attributes.h>
#include <plugins/events/qlumalarmmodel.h>
#include <plugins/events/qlumeventwidget.h>
#include <tests/integration/clientondemoserver.h>
#include <tests/support/keyboard.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>

#include <QAbstractItemModel>
#include <QAbstractItemView>
#include <QApplication>
#include <QDialog>
#include <QFile>
#include <QGuiApplication>
#include <QModelIndex>
#include <QString>
#include <QStringList>
#include <QTest>
#include <QTreeView>
#include <QWidget>
#include <gtest/gtest.h>

#include <memory>

namespace {
using keyboard::press;

class KeyboardOnDemoServer : public ClientOnDemoServer
{
protected:
    void SetUp() override
    {
        ClientOnDemoServer::SetUp();
        QApplication::setActiveWindow(window.get());
    }

    void TearDown() override
    {
        // the window closed with Ctrl held down, which what is selected by later tests would depend on
        QWidget keyboard;
        QTest::keyRelease(&keyboard, Qt::Key_Control);
        EXPECT_EQ(QGuiApplication::keyboardModifiers(), Qt::NoModifier);
        write("Plant.Automatic", UaVariant(true));
    }

    // the plant's part
    void write(const char* name, const UaVariant& value)
    {
        const std::shared_ptr<QlumSessionServices> services = qlumApplicationServices()(serverId);
        if (!services)
            return;
        UaWriteValues values(1u);
        ASSERT_TRUE(OpcUa_IsGood(UaNodeId(UaString(name), 2).copyTo(&values[0].NodeId)));
        values[0].AttributeId = OpcUa_Attributes_Value;
        ASSERT_TRUE(OpcUa_IsGood(value.copyTo(&values[0].Value.Value)));
        UaStatusCodeArray results;
        UaClientSdk::ServiceSettings settings;
        ASSERT_TRUE(services->write(settings, values, results).isGood());
    }

    static void fillServerDialog(const QString& url)
    {
        ASSERT_TRUE(keyboard::tabTo("endpointUrl"));
        keyboard::type(url);
        press(Qt::Key_Return);
        ASSERT_TRUE(keyboard::tabTo("endpoints"));
        const QAbstractItemView* const endpoints = keyboard::view();
        ASSERT_TRUE(
            QTest::qWaitFor([endpoints] { return endpoints->model()->rowCount() > 1; }, keyboard::limit));
        press(Qt::Key_Home);
        ASSERT_TRUE(keyboard::downTo("None"));
        ASSERT_TRUE(keyboard::tabTo("displayName"));
        keyboard::type("Plant");
        press(Qt::Key_Return);
    }

    void addAndConnect()
    {
        ASSERT_TRUE(keyboard::tabTo("startAddServer")) << "from the start page";
        ASSERT_TRUE(
            keyboard::inDialog([] { press(Qt::Key_Space); },
                               [this](QDialog&) { fillServerDialog(QString::fromStdString(url())); }));
        ASSERT_EQ(window->projectServerIds().size(), 1);
        serverId = window->projectServerIds().first();
        press(Qt::Key_F, Qt::AltModifier);
        press(Qt::Key_Right);
        press(Qt::Key_Right);
        press(Qt::Key_C); // of the menu Server
        ASSERT_TRUE(QTest::qWaitFor([this] { return tree("Address Space") != nullptr; }, limit)) << logText();
    }

    bool isAcknowledged() const
    {
        const QlumAlarmModel& alarms = *window->findChild<QlumEventWidget*>()->alarms();
        for (int row = 0; row < alarms.rowCount(); ++row)
            if (alarms.conditionNodeId(row) == UaNodeId(UaString("Plant.LevelAlarm"), 2) &&
                alarms.rowAt(row).is(QlumField::AckedId, true))
                return true;
        return false;
    }

    // the server refuses a state of a moment ago, as it may be while the level is on its way
    void acknowledge()
    {
        constexpr int attempts = 4;
        for (int i = 0; i < attempts && !isAcknowledged(); ++i) {
            press(Qt::Key_Home);
            ASSERT_TRUE(keyboard::downTo("LevelAlarm"));
            ASSERT_TRUE(keyboard::inDialog([] { EXPECT_TRUE(keyboard::fromMenu("acknowledge")); },
                                           [](QDialog&) {
                                               keyboard::type("seen");
                                               press(Qt::Key_Return);
                                           }));
            static_cast<void>(QTest::qWaitFor([this] { return isAcknowledged(); }, limit / attempts));
        }
        EXPECT_TRUE(isAcknowledged()) << logText();
    }

    static bool isTab(const QWidget& focus)
    {
        return focus.inherits("QTabBar") && focus.parentWidget()->objectName() == QLatin1String("eventTabs");
    }
};

TEST_F(KeyboardOnDemoServer, IsEnoughForTheMainJob)
{
    ASSERT_NO_FATAL_FAILURE(addAndConnect());
    ASSERT_TRUE(keyboard::tabTo("addressSpaceTree"));
    ASSERT_TRUE(keyboard::walk({"Root", "Objects", "Demo", "Scalar", "Double"}));
    ASSERT_TRUE(waitForAttribute({"BrowseName"}, "2, \"Double\"")) << logText();

    ASSERT_TRUE(keyboard::tabTo("attributeView"));
    ASSERT_TRUE(keyboard::walk({"Value", "Value"}));
    for (const char* text : {"7.5", "-0.25"}) {
        press(Qt::Key_F2);
        ASSERT_NE(QApplication::focusWidget(), tree("Attributes")) << "no editor";
        keyboard::type(text);
        press(Qt::Key_Return);
        ASSERT_TRUE(waitForAttribute({"Value", "Value"}, text)) << logText();
    }

    ASSERT_TRUE(keyboard::tabTo("addressSpaceTree"));
    ASSERT_TRUE(keyboard::command("Add to Data Access View"));
    ASSERT_TRUE(keyboard::tabTo("dataItems"));
    const QAbstractItemModel* const watched = keyboard::view()->model();
    ASSERT_EQ(watched->rowCount(), 1);
    EXPECT_TRUE(QTest::qWaitFor(
        [watched] {
            for (int column = 0; column < watched->columnCount(); ++column)
                if (watched->index(0, column).data() == "-0.25")
                    return true;
            return false;
        },
        limit));

    ASSERT_TRUE(keyboard::command("New Event View"));
    ASSERT_TRUE(keyboard::tabTo("addressSpaceTree"));
    ASSERT_TRUE(keyboard::walk({"Root", "Objects", "Demo", "Plant"}));
    ASSERT_TRUE(keyboard::fromMenu("openNodes.Event View"));
    write("Plant.Automatic", UaVariant(false));
    write("Plant.Level", UaVariant(50.0));
    write("Plant.Level", UaVariant(95.0));
    ASSERT_TRUE(keyboard::tabTo(isTab));
    press(Qt::Key_Right);
    ASSERT_TRUE(keyboard::tabTo("alarmList"));
    QAbstractItemView* const alarms = keyboard::view();
    ASSERT_TRUE(QTest::qWaitFor([alarms] { return alarms->model()->rowCount() > 0; }, limit)) << logText();
    acknowledge();

    const QString file = folder.filePath("plant.uap");
    ASSERT_TRUE(keyboard::inDialog([] { press(Qt::Key_S, Qt::ControlModifier); },
                                   [&file](QDialog&) {
                                       keyboard::type(file);
                                       press(Qt::Key_Return);
                                   }));
    EXPECT_TRUE(QFile::exists(file));
    EXPECT_FALSE(window->isWindowModified());
    press(Qt::Key_Q, Qt::ControlModifier);
    EXPECT_FALSE(window->isVisible());
}
} // namespace
