#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumservernode.h>
#include <plugins/addressspace/qlumaddressspacemodel.h>
#include <plugins/addressspace/qlumaddressspacepage.h>
#include <tests/support/modeltext.h>
#include <tests/support/scriptedservices.h>
#include <tests/support/stubapplication.h>
#include <tests/support/stubservernode.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QEvent>
#include <QLabel>
#include <QModelIndex>
#include <QObject>
#include <QPointer>
#include <QProgressDialog>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QTreeView>
#include <QWidget>
#include <gtest/gtest.h>

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>

namespace {
// Answers as long as it is awake.
class SleepyServices : public ScriptedServices
{
public:
    UaStatus browse(UaClientSdk::ServiceSettings& settings, const UaNodeId& node,
                    const UaClientSdk::BrowseContext& context, UaByteString& continuationPoint,
                    UaReferenceDescriptions& references) override
    {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return m_awake; });
        return ScriptedServices::browse(settings, node, context, continuationPoint, references);
    }
    UaStatus browseNext(UaClientSdk::ServiceSettings& settings, bool release, UaByteString& continuationPoint,
                        UaReferenceDescriptions& references) override
    {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this, release] { return m_awake || release; });
        const UaStatus status =
            ScriptedServices::browseNext(settings, release, continuationPoint, references);
        m_releases += release ? 1 : 0;
        return status;
    }
    void setAwake(bool awake)
    {
        const std::lock_guard lock(m_mutex);
        m_awake = awake;
        m_changed.notify_all();
    }
    int releases() const
    {
        const std::lock_guard lock(m_mutex);
        return m_releases;
    }

private:
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_awake = true;
    int m_releases = 0;
};

QProgressDialog* waitingDialog()
{
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (widget->objectName() == "browseWaiting" && widget->isVisible())
            return qobject_cast<QProgressDialog*>(widget);
    return nullptr;
}

class PaintCounter : public QObject
{
public:
    bool eventFilter(QObject*, QEvent* event) override
    {
        count += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
    int count = 0;
};

class SilentServer : public testing::Test
{
protected:
    SilentServer() : services(std::make_shared<SleepyServices>())
    {
        services->browses[UaNodeId(84)] = {{{{"a", UaNodeId(1, 1)}, {"b", UaNodeId(2, 1)}}}};
        services->browses[UaNodeId(1, 1)] = {{{{"a1", UaNodeId(11, 1)}}}, {{{"a2", UaNodeId(12, 1)}}}};
        services->browses[UaNodeId(2, 1)] = {{{{"b1", UaNodeId(21, 1)}}}};
        page = new QlumAddressSpacePage(
            &server,
            [this](QlumServerNode* node, QComboBox* combo, QObject* parent) {
                return model = new QlumAddressSpaceModel(node, combo, parent, services);
            },
            &rebrowse, &window);
        window.show();
    }
    ~SilentServer() override { services->setAwake(true); }

    QModelIndex row(int number) const { return model->index(number, 0, model->index(0, 0)); }
    // Expands a while the server is silent; what the user does then is the function's part.
    void expandSilently(std::function<void(QProgressDialog& dialog)> meanwhile)
    {
        services->setAwake(false);
        services->journal.clear();
        bool wasShown = false;
        QTimer poll;
        QObject::connect(&poll, &QTimer::timeout, &poll, [&] {
            if (QProgressDialog* dialog = waitingDialog()) {
                poll.stop();
                wasShown = true;
                meanwhile(*dialog);
            }
        });
        poll.start(5);
        page->tree()->expand(row(0));
        EXPECT_TRUE(wasShown);
        EXPECT_EQ(waitingDialog(), nullptr);
    }

    StubApplication application;
    StubServerNode server;
    std::shared_ptr<SleepyServices> services;
    QAction rebrowse;
    QWidget window;
    QlumAddressSpaceModel* model = nullptr;
    QPointer<QlumAddressSpacePage> page;
};

TEST_F(SilentServer, DoesNotFreezeTheWindowAndTheUserCanGiveUp)
{
    PaintCounter paints;
    window.installEventFilter(&paints);
    expandSilently([&](QProgressDialog& dialog) {
        paints.count = 0;
        window.update();
        EXPECT_TRUE(QTest::qWaitFor([&] { return paints.count > 0; })) << "the window paints itself";
        dialog.findChild<QPushButton*>()->click();
    });
    EXPECT_EQ(modelText(*model), "Root\n  a\n  b\n");
    EXPECT_TRUE(model->canFetchMore(row(0))) << "it can be tried again";
    EXPECT_EQ(application.texts().filter("cancelled by user").size(), 1) << "not asked for twice";
    EXPECT_TRUE(QTest::qWaitFor([this] { return !page->tree()->isExpanded(row(0)); }));
    services->setAwake(true);
    EXPECT_TRUE(QTest::qWaitFor([this] { return services->releases() == 1; }))
        << "nobody continues from what came too late";
    model->fetchMore(row(0));
    EXPECT_EQ(modelText(*model), "Root\n  a\n    a1\n    a2\n  b\n");
}

TEST_F(SilentServer, LosesItsConnectionWithoutMovingTheTreeThatWaits)
{
    const auto* line = page->findChild<QLabel*>("connectionLost");
    expandSilently([&](QProgressDialog& dialog) {
        server.announce(QlumConnectionStatus::ConnectionError);
        EXPECT_FALSE(line->isVisible());
        dialog.findChild<QPushButton*>()->click();
    });
    EXPECT_TRUE(QTest::qWaitFor([&] { return line->isVisible(); }));
}

TEST_F(SilentServer, FindsTheTreeAsItWasAndWhatCameMeanwhileIsDoneAfterwards)
{
    expandSilently([this](QProgressDialog&) {
        model->fetchMore(row(1));
        model->serverModelChanged(UaNodeId(84), 4);
        server.announce(QlumConnectionStatus::Connected, {{0, 0}, {1, 3}});
        EXPECT_FALSE(model->reveal(UaNodeId(2, 1)).isValid());
        EXPECT_EQ(modelText(*model), "Root\n  a\n  b\n");
        EXPECT_EQ(model->node(row(0))->nodeId(), UaNodeId(1, 1));
        services->setAwake(true);
    });
    EXPECT_EQ(model->rowCount(row(0)), 2) << "expanding returns with the rows";
    EXPECT_EQ(model->rowCount(row(1)), 0);
    EXPECT_TRUE(QTest::qWaitFor([this] { return model->node(row(0))->nodeId() == UaNodeId(1, 3); }));
    EXPECT_EQ(services->journal.filter("browse").join(','), "browse ns=1;i=1,browse ns=1;i=2,browse i=84");
}

TEST_F(SilentServer, IsTakenAwayOnlyWhenNobodyWaitsForItAnyMore)
{
    expandSilently([this](QProgressDialog&) {
        page->retire();
        EXPECT_FALSE(page.isNull()) << "its tree is in the middle of expanding";
        services->setAwake(true);
    });
    EXPECT_TRUE(QTest::qWaitFor([this] { return page.isNull(); }));
}
} // namespace
