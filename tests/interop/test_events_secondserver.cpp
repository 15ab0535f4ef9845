// Events and alarms of the second server in the whole client.
#include <app/api/qlumtext.h>
#include <app/api/qlumtoolservices.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/events/qlumalarmmodel.h>
#include <plugins/events/qlumeventwidget.h>
#include <tests/interop/clientonsecondserver.h>
#include <tests/support/dialogdriver.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uavariant.h>

#include <QDialog>
#include <QInputDialog>
#include <QString>
#include <QStringList>
#include <QTest>
#include <QTreeView>
#include <gtest/gtest.h>

#include <functional>
#include <string>

namespace {
class EventsOnSecondServer : public ClientOnSecondServer
{
protected:
    void SetUp() override
    {
        ClientOnSecondServer::SetUp();
        if (HasFatalFailure() || IsSkipped())
            return;
        const QlumToolNodes nodes{{serverId, UaNodeId(2253), OpcUa_NodeClass_Object, {}, "Server"}};
        ASSERT_TRUE(QlumToolServices::instance()->openNodes(QStringLiteral("Event View"), nodes));
        view = window->findChild<QlumEventWidget*>();
        ASSERT_NE(view, nullptr);
        ASSERT_TRUE(waitFor([this] { return view->log()->count() > 0; })) << logText();
    }
    OpcUa_StatusCode raise(const char* text, OpcUa_UInt16 severity, OpcUa_UInt32 count)
    {
        UaClientSdk::ServiceSettings settings;
        UaClientSdk::CallOut out;
        UaVariantArray inputs(3u);
        EXPECT_TRUE(OpcUa_IsGood(UaVariant(text).copyTo(&inputs[0])));
        EXPECT_TRUE(OpcUa_IsGood(UaVariant(severity).copyTo(&inputs[1])));
        EXPECT_TRUE(OpcUa_IsGood(UaVariant(count).copyTo(&inputs[2])));
        const UaStatus status = services->call(settings, {named("Methods"), numbered(60014), inputs}, out);
        return status.isGood() ? out.callResult.code() : status.code();
    }
    void writeLevel(const UaVariant& value)
    {
        UaWriteValues values(1u);
        ASSERT_TRUE(OpcUa_IsGood(named("Plant.Level").copyTo(&values[0].NodeId)));
        values[0].AttributeId = OpcUa_Attributes_Value;
        ASSERT_TRUE(OpcUa_IsGood(value.copyTo(&values[0].Value.Value)));
        UaStatusCodeArray results;
        UaClientSdk::ServiceSettings settings;
        ASSERT_TRUE(services->write(settings, values, results).isGood());
        ASSERT_EQ(results[0], OpcUa_Good);
    }
    int logged(const char* text, int severity) const
    {
        int count = 0;
        for (int row = 0; row < view->log()->rowCount(); ++row)
            if (view->log()->rowAt(row).text(QlumField::Message).startsWith(QLatin1String(text)) &&
                view->log()->rowAt(row).severity() == severity)
                ++count;
        return count;
    }
    int overflows() const
    {
        int count = 0;
        for (int row = 0; row < view->log()->rowCount(); ++row)
            if (view->log()->rowAt(row).eventType() == UaNodeId(OpcUaId_EventQueueOverflowEventType))
                ++count;
        return count;
    }
    int levelRow() const
    {
        for (int row = 0; row < view->alarms()->rowCount(); ++row)
            if (view->alarms()->conditionNodeId(row) == numbered(6003))
                return row;
        return -1;
    }

    std::string rowText() const
    {
        QStringList cells;
        for (int column = 0; column < QlumAlarmModel::ColumnCount && levelRow() >= 0; ++column)
            cells.append(view->alarms()->index(levelRow(), column).data().toString());
        return cells.join(QLatin1Char('|')).toStdString();
    }

    QlumEventWidget* view = nullptr;
};

// The server keeps a hundred for an item.
TEST_F(EventsOnSecondServer, BurstsAreCountedAndWhatTheQueueLostIsARow)
{
    for (const int severity : {1, 500, 1000}) {
        ASSERT_EQ(raise("burst", static_cast<OpcUa_UInt16>(severity), 60), OpcUa_Good);
        EXPECT_TRUE(waitFor([&] { return logged("burst", severity) == 60; }))
            << severity << ": " << logged("burst", severity);
    }
    EXPECT_EQ(overflows(), 0);
    ASSERT_EQ(raise("flood", 700, 5000), OpcUa_Good);
    EXPECT_TRUE(waitFor([this] { return overflows() > 0 && logged("flood", 700) > 0; }))
        << overflows() << " " << logged("flood", 700);
    EXPECT_LT(logged("flood", 700), 5000);
}

// Under limits it cannot tell what its own conditions are.
class AlarmsOnSecondServer : public EventsOnSecondServer
{
protected:
    [[nodiscard]] std::string environment() const override { return {}; }
    bool is(QlumField field, bool wanted) const
    {
        return levelRow() >= 0 && view->alarms()->rowAt(levelRow()).is(field, wanted);
    }
    // The state of a moment ago is refused while the server still sends what has changed.
    bool callUntil(void (QlumEventWidget::*method)(), const std::function<bool()>& isDone)
    {
        for (int attempt = 0; attempt < 4 && !isDone(); ++attempt) {
            QTreeView* const list = view->alarmView();
            for (int shown = 0; shown < list->model()->rowCount(); ++shown)
                if (list->model()->index(shown, 0).data() == view->alarms()->index(levelRow(), 0).data())
                    list->setCurrentIndex(list->model()->index(shown, 0));
            DialogDriver driver([](QDialog& dialog) {
                if (auto* const input = qobject_cast<QInputDialog*>(&dialog))
                    input->setTextValue("seen");
                dialog.accept();
            });
            (view->*method)();
            static_cast<void>(QTest::qWaitFor(isDone, limit / 4));
        }
        return isDone();
    }
};

TEST_F(AlarmsOnSecondServer, AnAlarmIsListedAcknowledgedAndConfirmed)
{
    writeLevel(UaVariant(50.0));
    writeLevel(UaVariant(99.0));
    ASSERT_TRUE(waitFor([this] { return is(QlumField::AckedId, false); })) << logText();
    EXPECT_TRUE(callUntil(&QlumEventWidget::sltAcknowledge, [this] { return is(QlumField::AckedId, true); }))
        << logText();
    writeLevel(UaVariant(50.0));
    EXPECT_TRUE(waitFor([this] { return is(QlumField::ActiveId, false); })) << rowText();
    EXPECT_TRUE(callUntil(&QlumEventWidget::sltConfirm, [this] { return is(QlumField::ConfirmedId, true); }))
        << rowText();
}
} // namespace
