// Events and alarms of the demo server in the whole client.
#include <app/api/qlumsessionservices.h>
#include <app/api/qlumtext.h>
#include <app/api/qlumtoolservices.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/events/qlumeventwidget.h>
#include <tests/integration/clientondemoserver.h>
#include <tests/support/dialogdriver.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>

#include <QAbstractProxyModel>
#include <QAction>
#include <QDateTime>
#include <QDialog>
#include <QInputDialog>
#include <QModelIndex>
#include <QString>
#include <QTest>
#include <QTreeView>

#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {
UaNodeId named(const char* name)
{
    return UaNodeId(UaString(name), 2);
}

class EventsOnDemoServer : public ClientOnDemoServer
{
protected:
    void open()
    {
        ASSERT_NO_FATAL_FAILURE(openDemoProject());
        services = qlumApplicationServices()(serverId);
        ASSERT_NE(services, nullptr);
        const QlumToolNodes nodes{{serverId, UaNodeId(2253), OpcUa_NodeClass_Object, {}, "Server"},
                                  {serverId, named("Plant"), OpcUa_NodeClass_Object, {}, "Plant"}};
        ASSERT_TRUE(QlumToolServices::instance()->openNodes(QStringLiteral("Event View"), nodes));
        view = window->findChild<QlumEventWidget*>();
        ASSERT_NE(view, nullptr);
    }
    void write(const char* name, const UaVariant& value)
    {
        UaWriteValues values(1u);
        ASSERT_TRUE(OpcUa_IsGood(named(name).copyTo(&values[0].NodeId)));
        values[0].AttributeId = OpcUa_Attributes_Value;
        ASSERT_TRUE(OpcUa_IsGood(value.copyTo(&values[0].Value.Value)));
        UaStatusCodeArray results;
        UaClientSdk::ServiceSettings settings;
        ASSERT_TRUE(services->write(settings, values, results).isGood());
        ASSERT_EQ(results[0], OpcUa_Good) << name;
    }
    int rowOf(const QString& condition) const
    {
        for (int row = 0; row < view->alarms()->rowCount(); ++row)
            if (view->alarms()->rowAt(row).text(QlumField::ConditionName) == condition)
                return row;
        return -1;
    }
    // What the server says of a node below the alarm of the level.
    UaVariant ofAlarm(std::initializer_list<const char*> names)
    {
        UaRelativePathElements elements(static_cast<OpcUa_UInt32>(names.size()));
        OpcUa_UInt32 i = 0;
        for (const char* const name : names) {
            EXPECT_TRUE(
                OpcUa_IsGood(UaNodeId(OpcUaId_HierarchicalReferences).copyTo(&elements[i].ReferenceTypeId)));
            elements[i].IncludeSubtypes = OpcUa_True;
            EXPECT_TRUE(OpcUa_IsGood(UaQualifiedName(UaString(name), 0).copyTo(&elements[i++].TargetName)));
        }
        UaBrowsePaths paths(1u);
        EXPECT_TRUE(OpcUa_IsGood(named("Plant.LevelAlarm").copyTo(&paths[0].StartingNode)));
        elements.detach(&paths[0].RelativePath.NoOfElements, &paths[0].RelativePath.Elements);
        UaClientSdk::ServiceSettings settings;
        UaBrowsePathResults found;
        EXPECT_TRUE(services->translateBrowsePathsToNodeIds(settings, paths, found).isGood());
        if (found.length() != 1 || found[0].NoOfTargets == 0)
            return {};
        UaReadValueIds nodes(1u);
        EXPECT_TRUE(OpcUa_IsGood(UaNodeId(found[0].Targets[0].TargetId.NodeId).copyTo(&nodes[0].NodeId)));
        nodes[0].AttributeId = OpcUa_Attributes_Value;
        UaDataValues values;
        EXPECT_TRUE(services->read(settings, 0, OpcUa_TimestampsToReturn_Neither, nodes, values).isGood());
        return values.length() == 1 ? UaVariant(values[0].Value) : UaVariant();
    }
    // The row of the alarm itself, or of a branch of it, in the list as it is shown.
    bool select(bool isBranch)
    {
        for (int row = 0; row < view->alarms()->rowCount(); ++row)
            if (view->alarms()->conditionNodeId(row) == named("Plant.LevelAlarm") &&
                view->alarms()->rowAt(row).branchId().isNull() != isBranch) {
                const auto* filter = qobject_cast<const QAbstractProxyModel*>(view->alarmView()->model());
                view->alarmView()->setCurrentIndex(filter->mapFromSource(view->alarms()->index(row, 0)));
                return view->alarmView()->currentIndex().isValid();
            }
        return false;
    }
    // A server refuses the state of a moment ago, which the view may still show while the level is on its
    // way: then one looks again and repeats it.
    template <typename Ask, typename IsDone>
    static bool repeat(const Ask& ask, const IsDone& isDone)
    {
        for (int attempt = 0; attempt < 4 && !isDone(); ++attempt) {
            ask();
            static_cast<void>(QTest::qWaitFor(isDone, limit / 4));
        }
        return isDone();
    }
    static DialogDriver::Answer entering(const QString& text)
    {
        return [text](QDialog& dialog) {
            if (auto* const input = qobject_cast<QInputDialog*>(&dialog)) {
                input->setTextValue(text);
                input->setDoubleValue(text.toDouble());
            }
            dialog.accept();
        };
    }
    void trigger(const char* action)
    {
        auto* const found = view->findChild<QAction*>(QLatin1String(action));
        ASSERT_NE(found, nullptr) << action;
        ASSERT_TRUE(found->isEnabled()) << action;
        found->trigger();
    }
    bool waitFor(const std::function<bool()>& condition) { return QTest::qWaitFor(condition, limit); }

    std::shared_ptr<QlumSessionServices> services;
    QlumEventWidget* view = nullptr;
};

TEST_F(EventsOnDemoServer, AreListedAcknowledgedAnsweredAndFoundInThePast)
{
    ASSERT_NO_FATAL_FAILURE(open());
    ASSERT_TRUE(waitFor([this] { return view->log()->count() >= 2; })) << logText();
    // the fields of 500 types of its own among them
    ASSERT_TRUE(waitFor([this] {
        view->findChild<QTreeView*>(QStringLiteral("monitoredItems"))
            ->setCurrentIndex(view->items()->index(0, 0));
        return view->fields()->rowCount() == 3;
    })) << logText();

    write("Plant.Automatic", UaVariant(false));
    write("Plant.Level", UaVariant(50.0));
    write("Plant.Level", UaVariant(95.0));
    ASSERT_TRUE(waitFor([this] {
        const int row = rowOf("LevelAlarm");
        return row >= 0 && view->alarms()->rowAt(row).is(QlumField::AckedId, false);
    })) << logText();
    const QModelIndex row = view->alarms()->index(rowOf("LevelAlarm"), 0);
    EXPECT_EQ(view->alarms()->conditionNodeId(row.row()), named("Plant.LevelAlarm"));
    QTreeView* const list = view->alarmView();
    // the condition may have branches, each with a row of its own
    int attempt = 0;
    const auto select = [list, &attempt] {
        std::vector<QModelIndex> found;
        for (int shown = 0; shown < list->model()->rowCount(); ++shown)
            if (list->model()->index(shown, 0).data() == "LevelAlarm")
                found.push_back(list->model()->index(shown, 0));
        if (!found.empty())
            list->setCurrentIndex(found.at(static_cast<std::size_t>(attempt) % found.size()));
        return !found.empty();
    };
    const auto isAcknowledged = [this] {
        for (int now = 0; now < view->alarms()->rowCount(); ++now)
            if (view->alarms()->conditionNodeId(now) == named("Plant.LevelAlarm") &&
                view->alarms()->rowAt(now).is(QlumField::AckedId, true))
                return true;
        return false;
    };
    {
        const DialogDriver driver(entering("seen"));
        const auto ask = [&] {
            if (waitFor(select))
                view->sltAcknowledge();
            ++attempt;
        };
        ASSERT_TRUE(repeat(ask, isAcknowledged)) << logText();
    }

    UaClientSdk::ServiceSettings settings;
    UaClientSdk::CallOut out;
    ASSERT_TRUE(services->call(settings, {named("Plant"), named("Plant.Ask"), {}}, out).isGood());
    ASSERT_TRUE(out.callResult.isGood());
    ASSERT_TRUE(waitFor([this] { return !view->openDialogs().isEmpty(); })) << logText();
    view->openDialogs().first()->setDefaultResponse(1);
    view->openDialogs().first()->sltRespond();
    ASSERT_TRUE(waitFor([this] { return view->openDialogs().isEmpty(); })) << logText();
    EXPECT_TRUE(logText().find("Call succeeded") != std::string::npos) << logText();

    const QDateTime now = QDateTime::currentDateTime();
    view->items()->readEventHistory(now.addSecs(-7200), now);
    EXPECT_TRUE(waitFor([this] { return view->history()->count() > 300; })) << logText();
    write("Plant.Automatic", UaVariant(true));
}

TEST_F(EventsOnDemoServer, AreCommentedShelvedAndHandledTogetherWithTheirBranches)
{
    ASSERT_NO_FATAL_FAILURE(open());
    ASSERT_TRUE(waitFor([this] { return view->log()->count() >= 1; })) << logText();
    write("Plant.Automatic", UaVariant(false));
    write("Plant.Level", UaVariant(50.0));
    write("Plant.Level", UaVariant(95.0));
    ASSERT_TRUE(waitFor([this] {
        const int row = rowOf("LevelAlarm");
        return row >= 0 && view->alarms()->rowAt(row).is(QlumField::ActiveId, true) && select(false);
    })) << logText();
    {
        const DialogDriver driver(entering("the valve leaks"));
        const auto ask = [this] {
            if (waitFor([this] { return select(false); }))
                view->sltAddComment();
        };
        const auto isThere = [this] {
            return ofAlarm({"Comment"}).toLocalizedText().text() == UaString("the valve leaks");
        };
        EXPECT_TRUE(repeat(ask, isThere)) << logText();
    }

    const auto isShelved = [this](const char* state) {
        return waitFor([&] {
            return ofAlarm({"ShelvingState", "CurrentState"}).toLocalizedText().text() == UaString(state);
        });
    };
    ASSERT_TRUE(waitFor([this] { return select(false); }));
    ASSERT_NO_FATAL_FAILURE(trigger("shelveOnce"));
    EXPECT_TRUE(isShelved("OneShotShelved")) << logText();
    ASSERT_TRUE(waitFor([this] { return select(false); }));
    ASSERT_NO_FATAL_FAILURE(trigger("unshelve"));
    EXPECT_TRUE(isShelved("Unshelved")) << logText();
    ASSERT_TRUE(waitFor([this] { return select(false); }));
    {
        const DialogDriver driver(entering("10")); // minutes
        ASSERT_NO_FATAL_FAILURE(trigger("timedShelve"));
        EXPECT_TRUE(isShelved("TimedShelved")) << logText();
    }
    const double left = ofAlarm({"ShelvingState", "UnshelveTime"}).toDouble();
    EXPECT_GT(left, 500'000.0);
    EXPECT_LE(left, 600'000.0);
    ASSERT_TRUE(waitFor([this] { return select(false); }));
    ASSERT_NO_FATAL_FAILURE(trigger("unshelve"));
    EXPECT_TRUE(isShelved("Unshelved")) << logText();

    // gone before anybody has acknowledged it: what was not seen stays as a branch
    write("Plant.Level", UaVariant(50.0));
    ASSERT_TRUE(waitFor([this] { return select(true); })) << logText();
    const auto isDone = [this](QlumField field) {
        for (int row = 0; row < view->alarms()->rowCount(); ++row)
            if (view->alarms()->conditionNodeId(row) == named("Plant.LevelAlarm") &&
                view->alarms()->rowAt(row).is(field, false))
                return false;
        return true;
    };
    for (const auto& [field, all] : {std::pair(QlumField::AckedId, &QlumEventWidget::sltAcknowledgeAll),
                                     std::pair(QlumField::ConfirmedId, &QlumEventWidget::sltConfirmAll)}) {
        EXPECT_FALSE(isDone(field));
        const DialogDriver driver(entering("all of them"));
        EXPECT_TRUE(repeat([&, all = all] { (view->*all)(); }, [&, field = field] { return isDone(field); }))
            << logText();
    }
    write("Plant.Automatic", UaVariant(true));
}
} // namespace
