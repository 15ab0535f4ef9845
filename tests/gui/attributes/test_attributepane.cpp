// What the pane says while nodes are selected, read, and lost.
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumrunningwork.h>
#include <plugins/attributes/qlumattributemodel.h>
#include <plugins/attributes/qlumattributeplugin.h>
#include <plugins/attributes/qlumattributeview.h>
#include <tests/gui/attributes/attributepluginfixture.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/qlummessagebar.h>

#include <QAction>
#include <QClipboard>
#include <QColor>
#include <QCoreApplication>
#include <QDockWidget>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QModelIndex>
#include <QPalette>
#include <QPushButton>
#include <QString>
#include <QStringList>
#include <QTest>
#include <QWidget>

#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace {
using Status = QlumConnectionStatus;

class AttributePane : public AttributePlugin
{
protected:
    QString heading(const char* name) const
    {
        return plugin.dock()->findChild<QWidget*>("viewHeading")->findChild<QLabel*>(name)->text();
    }
    QString emptyText() const { return plugin.dock()->findChild<QLabel*>("emptyText")->text(); }
    QModelIndex value() const
    {
        const QModelIndex top = plugin.model()->index(7, 0);
        return plugin.model()->index(0, 1, top);
    }
    bool isGrey() const
    {
        QColor grey = QGuiApplication::palette().color(QPalette::Text);
        grey.setAlpha(grey.alpha() - 150);
        return value().data(Qt::ForegroundRole).value<QColor>() == grey;
    }
    bool mayBeWritten() const { return plugin.model()->flags(value()) & Qt::ItemIsEditable; }
    bool write(const char* text) { return plugin.model()->setData(value(), text, Qt::EditRole); }
    bool waitForReads(int count)
    {
        return QTest::qWaitFor([this, count] { return services->journal.size() >= count; });
    }
    // From now on reads are answered when the test says so.
    std::shared_ptr<SlowServices> slowDown()
    {
        auto slow = std::make_shared<SlowServices>();
        slow->attributes = services->attributes;
        services = slow;
        return slow;
    }
    void change(Status status, const NamespaceMap& namespaces = {})
    {
        plugin.sessionStatusChanged(5, status, namespaces);
    }
};

TEST_F(AttributePane, ANodeThatWasLeftDoesNotStandUnderTheNewSelection)
{
    select(1);
    ASSERT_TRUE(waitFor(1));
    EXPECT_TRUE(mayBeWritten());
    plugin.dock()->show();
    view()->edit(value());
    ASSERT_TRUE(view()->isEditing());
    view()->findChild<QLineEdit*>("valueEditor")->setText("half a wo");
    const auto slow = slowDown();
    select(2);
    EXPECT_EQ(heading("server") + " " + heading("node") + " " + heading("activity"),
              "Plc ns=2;i=2 reading...");
    EXPECT_TRUE(isGrey()) << "at once";
    EXPECT_FALSE(view()->isEditing()) << "what was typed was for the other node";
    EXPECT_FALSE(mayBeWritten());
    EXPECT_FALSE(write("for 1 or 2?"));
    QGuiApplication::clipboard()->setText("before");
    view()->sltCopyNodeId();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "before") << "the heading names another one";
    EXPECT_TRUE(plugin.model()->nodeIn(plugin.model()->index(0, 0)).nodeId.isNull());
    slow->mayGoOn = true;
    ASSERT_TRUE(waitFor(2));
    EXPECT_EQ(value().data().toString(), "value 2");
    EXPECT_EQ(heading("activity"), "");
    EXPECT_FALSE(isGrey());
    EXPECT_TRUE(write("for 2"));
    EXPECT_EQ(services->journal.filter("write"), QStringList{"write ns=2;i=2"});
    EXPECT_EQ(services->written, std::vector<UaVariant>{UaVariant("for 2")});
}

TEST_F(AttributePane, AFailedReadDoesNotKeepTheNodeBeforeNorAsksToSelectOne)
{
    select(1);
    ASSERT_TRUE(waitFor(1));
    application.window.show();
    EXPECT_EQ(heading("age"), "received now");
    services->callStatus = OpcUa_BadTimeout;
    action("refresh")->trigger();
    const auto* bar = plugin.dock()->findChild<QlumMessageBar*>("messageBar");
    ASSERT_TRUE(QTest::qWaitFor([bar] { return !bar->isHidden(); }));
    EXPECT_EQ(plugin.model()->nodeId(), node(1)) << "of the selected node, and it says that it is old";
    EXPECT_TRUE(isGrey());
    EXPECT_FALSE(mayBeWritten());
    select(2);
    ASSERT_TRUE(QTest::qWaitFor([this] { return plugin.model()->rowCount() == 0; }));
    EXPECT_EQ(emptyText(), "The attributes of ns=2;i=2 could not be read.");
    EXPECT_EQ(heading("node") + heading("activity") + heading("age"), "ns=2;i=2");
    services->callStatus = 0;
    bar->findChild<QPushButton*>("help")->click();
    ASSERT_TRUE(waitFor(2));
    EXPECT_FALSE(isGrey());

    const auto gone = std::exchange(services, nullptr); // no session at all
    select(1);
    ASSERT_TRUE(QTest::qWaitFor([this] { return application.texts().contains("Session not valid."); }));
    ASSERT_TRUE(QTest::qWaitFor([this] { return plugin.model()->rowCount() == 0; }));
    services = gone;
}

TEST_F(AttributePane, AnotherServerDoesNotShowTheNodeOfTheOneBefore)
{
    select(1);
    ASSERT_TRUE(waitFor(1));
    plugin.serverSelectionChanged(6);
    EXPECT_EQ(plugin.model()->rowCount(), 0);
    EXPECT_EQ(heading("node"), "");
    EXPECT_EQ(emptyText(), "Select a node in the address space window.");
    UaNodeId other = node(2);
    plugin.selectionChanged(6, &other, OpcUa_NodeClass_Variable, nullptr);
    ASSERT_TRUE(waitFor(2));
    plugin.serverSelectionChanged(5); // whose tree shows node 1 as selected
    EXPECT_EQ(heading("node"), "ns=2;i=1");
    ASSERT_TRUE(waitFor(1));
    EXPECT_EQ(plugin.model()->serverId(), 5u);
    plugin.serverSelectionChanged(5);
    QCoreApplication::processEvents();
    EXPECT_EQ(services->journal, (QStringList{"read ns=2;i=1", "read ns=2;i=2", "read ns=2;i=1"}));
}

TEST_F(AttributePane, ADisconnectedServersValuesAreNotShownAsIfTheyWereOfNow)
{
    select(1);
    ASSERT_TRUE(waitFor(1));
    change(Status::Disconnected);
    EXPECT_TRUE(isGrey());
    EXPECT_EQ(heading("status"), "disconnected");
    EXPECT_FALSE(mayBeWritten());
    EXPECT_FALSE(write("x"));
    select(2); // as another tool may ask
    EXPECT_EQ(plugin.model()->rowCount(), 0);
    EXPECT_EQ(emptyText(), "The attributes of ns=2;i=2 are read when its server is connected.");
    change(Status::Connecting);
    EXPECT_EQ(services->journal.size(), 1);
    change(Status::Connected);
    ASSERT_TRUE(waitFor(2));
    EXPECT_FALSE(isGrey());

    change(Status::ConnectionError);
    EXPECT_TRUE(isGrey());
    change(Status::Connected); // nobody has selected anything
    ASSERT_TRUE(QTest::qWaitFor([this] { return !isGrey(); }));
    EXPECT_EQ(services->journal, (QStringList{"read ns=2;i=1", "read ns=2;i=2", "read ns=2;i=2"}));
    action("onOff")->setChecked(false);
    change(Status::ConnectionError);
    change(Status::Connected);
    EXPECT_TRUE(isGrey()) << "not read since";
}

TEST_F(AttributePane, NoIdOfTheOldNamespaceTableIsReadOrWritten)
{
    addVariable(UaNodeId(1, 5), "moved");
    select(1);
    ASSERT_TRUE(waitFor(1));
    plugin.serverSelectionChanged(6); // the node of server 5 is remembered
    plugin.serverSelectionChanged(5);
    ASSERT_TRUE(waitFor(1));
    services->journal.clear();
    change(Status::ConnectionError);
    change(Status::NewSessionCreated);
    action("refresh")->trigger(); // too early
    EXPECT_FALSE(write("x"));
    change(Status::Connected, {{0, 0}, {1, 1}, {2, 5}});
    ASSERT_TRUE(QTest::qWaitFor([this] { return plugin.model()->nodeId() == UaNodeId(1, 5); }));
    EXPECT_EQ(value().data().toString(), "moved");
    EXPECT_EQ(heading("node"), "ns=5;i=1");
    plugin.serverSelectionChanged(6);
    plugin.serverSelectionChanged(5);
    ASSERT_TRUE(waitForReads(2));
    EXPECT_EQ(services->journal, (QStringList{"read ns=5;i=1", "read ns=5;i=1"}));

    change(Status::NewSessionCreated);
    change(Status::Connected, {{0, 0}, {1, 1}});
    EXPECT_EQ(plugin.model()->rowCount(), 0);
    EXPECT_EQ(emptyText(), "The node ns=5;i=1 is not on the server any more: its namespace has gone.");
    action("refresh")->trigger();
    QCoreApplication::processEvents();
    EXPECT_EQ(services->journal.size(), 2);
}

TEST_F(AttributePane, AReadThatTheUserEndsDoesNotSayReadingForEver)
{
    const auto slow = slowDown();
    select(1);
    ASSERT_TRUE(QTest::qWaitFor([&] { return slow->entered.load(); }));
    EXPECT_EQ(emptyText(), "The attributes of ns=2;i=1 are being read...");
    QlumRunningWork::instance().cancelServer(5);
    slow->mayGoOn = true;
    ASSERT_TRUE(QTest::qWaitFor([this] { return heading("activity").isEmpty(); }));
    EXPECT_EQ(emptyText(), "The attributes of ns=2;i=1 could not be read.");
}

TEST_F(AttributePane, AReadThatThrowsEndsNeitherTheProcessNorInReading)
{
    class Throwing : public AttributeServices
    {
    public:
        UaStatus read(UaClientSdk::ServiceSettings&, double, OpcUa_TimestampsToReturn, const UaReadValueIds&,
                      UaDataValues&) override
        {
            throw std::runtime_error("no memory");
        }
    };
    services = std::make_shared<Throwing>();
    select(1);
    ASSERT_TRUE(QTest::qWaitFor([this] { return heading("activity").isEmpty(); }));
    EXPECT_EQ(emptyText(), "The attributes of ns=2;i=1 could not be read.");
}

TEST_F(AttributePane, APaneThatIsOffSaysSoInsteadOfAskingForANode)
{
    action("onOff")->setChecked(false);
    select(1);
    EXPECT_EQ(emptyText(), "Reading is off. Press On/Off to read the attributes of ns=2;i=1.");
    action("refresh")->trigger();
    ASSERT_TRUE(waitFor(1));
    select(2);
    EXPECT_EQ(heading("node") + ", " + heading("activity"), "ns=2;i=1, reading is off");
    EXPECT_TRUE(mayBeWritten()) << "the heading names the node";
}
} // namespace
