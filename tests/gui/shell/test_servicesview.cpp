// The dock of service calls.
#include <app/api/qlumsecretfields.h>
#include <app/api/qlumservicerecorder.h>
#include <app/services/qlumservicesview.h>
#include <app/services/qlumservicetimeline.h>
#include <opcua/opcua_encodeable.h>
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_statuscodes.h>
#include <opcua/opcua_types.h>
#include <tests/support/modeltext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/servicewatch.h>

#include <QAbstractItemModel>
#include <QAction>
#include <QComboBox>
#include <QItemSelectionModel>
#include <QSpinBox>
#include <QString>
#include <QStringList>
#include <QTest>
#include <QTreeView>
#include <gtest/gtest.h>

#include <chrono>
#include <initializer_list>
#include <memory>

namespace {
using UaClientSdk::ServiceCall;
using UaClientSdk::ServiceOutcome;

class ServicesView : public testing::Test
{
protected:
    ServicesView()
    {
        view.findChild<QAction*>("observeServices")->setChecked(true);
        OpcUa_EncodeableObject_Initialize(&OpcUa_ReadRequest_EncodeableType, &read);
        OpcUa_EncodeableObject_Initialize(&OpcUa_ReadResponse_EncodeableType, &answer);
    }
    void begin(OpcUa_UInt64 number, const char* purpose = "")
    {
        const UaString text(purpose);
        tap->serviceBegun(number, {OpcUa_ReadRequest_EncodeableType, &read, text, nullptr});
    }
    void end(OpcUa_UInt64 number, OpcUa_StatusCode status = OpcUa_Good)
    {
        const auto passed = std::chrono::steady_clock::now() - std::chrono::milliseconds(5);
        ServiceOutcome outcome{
            status,
            &OpcUa_ReadResponse_EncodeableType,
            &answer,
            {},
            static_cast<OpcUa_UInt64>(passed.time_since_epoch() / std::chrono::nanoseconds(1)),
            {}};
        outcome.measure.BytesIn = 100;
        tap->serviceEnded(number, outcome);
    }
    QStringList shown(std::initializer_list<int> columns) const
    {
        QStringList lines;
        for (int row = 0; row < table->model()->rowCount(); ++row) {
            QStringList cells;
            for (const int column : columns)
                cells.append(table->model()->index(row, column).data().toString());
            lines.append(cells.join(' '));
        }
        return lines;
    }
    bool becomes(std::initializer_list<int> columns, const QStringList& wanted) const
    {
        return QTest::qWaitFor([&] { return shown(columns) == wanted; });
    }

    std::shared_ptr<QlumServiceRecorder> recorder = std::make_shared<QlumServiceRecorder>();
    std::shared_ptr<UaClientSdk::ServiceObserver> tap =
        recorder->observerOf(7, [] { return QStringLiteral("Plc"); });
    QlumServicesView view{recorder};
    QTreeView* table = view.findChild<QTreeView*>("servicesTable");
    OpcUa_ReadRequest read;
    OpcUa_ReadResponse answer;
};

TEST_F(ServicesView, ShowsCallsAsTheyBeginAndEndInWhateverOrder)
{
    begin(1, "Reading attributes");
    begin(2);
    EXPECT_TRUE(becomes({1, 2, 5, 8}, {"Plc Read waiting Reading attributes", "Plc Read waiting Session"}))
        << shown({1, 2, 5, 8}).join('\n').toStdString();
    end(2, OpcUa_BadTimeout);
    EXPECT_TRUE(becomes({5}, {"waiting", "BadTimeout"}));
    view.findChild<QComboBox*>("outcome")->setCurrentText("Waiting");
    EXPECT_EQ(shown({8}), QStringList{"Reading attributes"});
    end(1);
    EXPECT_TRUE(becomes({8}, {}));
    view.findChild<QComboBox*>("outcome")->setCurrentText("Good");
    EXPECT_EQ(shown({5}), QStringList{"Good"});
    auto* duration = view.findChild<QSpinBox*>("duration");
    duration->setValue(2);
    EXPECT_EQ(shown({5}), QStringList{"Good"});
    duration->setValue(600000);
    EXPECT_EQ(shown({5}), QStringList());
}

TEST_F(ServicesView, OffItWantsNothingAndForgetsNothing)
{
    EXPECT_TRUE(tap->isLooking());
    begin(1);
    view.findChild<QAction*>("observeServices")->setChecked(false);
    EXPECT_FALSE(tap->isLooking());
    EXPECT_FALSE(recorder->observerOf(8, [] { return QString(); })->isLooking());
    end(1);
    EXPECT_TRUE(becomes({5}, {"Good"})) << "what had begun still ends";
    view.findChild<QAction*>("clearServices")->trigger();
    EXPECT_EQ(shown({5}).size(), 0);
    end(1);
    EXPECT_EQ(recorder->take().size(), 0u) << "a call ends once";
}

TEST_F(ServicesView, TimelineTellsWorkFromWaitingOnTheScaleOfWhatIsSelected)
{
    QlumServiceRecord record;
    record.passed = 1000;
    const auto phases = [&record] {
        QStringList texts;
        for (const QlumServicePhase& phase : qlumServicePhases(record, 1500))
            texts.append(
                QString("%1-%2%3").arg(phase.from).arg(phase.to).arg(phase.isWaiting ? " waiting" : ""));
        return texts.join(", ").toStdString();
    };
    EXPECT_EQ(phases(), "0-500 waiting");
    record.hasEnded = true;
    record.times = {10, 20, 120, 130, 140};
    EXPECT_EQ(phases(), "0-20, 20-120 waiting, 120-140");
    record.times = {10, 20, -1, -1, 140};
    EXPECT_EQ(phases(), "0-20, 20-140 waiting") << "no answer came";
    record.times = {-1, -1, -1, -1, 140};
    EXPECT_EQ(phases(), "0-140 waiting") << "nobody measured";

    for (const int number : {1, 2, 3})
        begin(static_cast<OpcUa_UInt64>(number));
    EXPECT_TRUE(becomes({5}, {"waiting", "waiting", "waiting"}));
    const auto* timeline = view.findChild<QlumServiceTimeline*>();
    const qint64 first = timeline->begin();
    table->selectAll();
    EXPECT_EQ(timeline->begin(), first);
    table->selectionModel()->select(table->model()->index(0, 0),
                                    QItemSelectionModel::Deselect | QItemSelectionModel::Rows);
    EXPECT_GT(timeline->begin(), first);
    EXPECT_EQ(table->model()->index(0, 4).data().toString(), "+0.00 ms");
}

TEST_F(ServicesView, DetailsLeaveSecretsOut)
{
    OpcUa_ActivateSessionRequest activate;
    OpcUa_EncodeableObject_Initialize(&OpcUa_ActivateSessionRequest_EncodeableType, &activate);
    OpcUa_UserNameIdentityToken token{};
    token.Password = {5, reinterpret_cast<OpcUa_Byte*>(const_cast<char*>("hush!"))};
    activate.RequestHeader.AuthenticationToken.Identifier.Numeric = 4711;
    activate.UserIdentityToken.Encoding = OpcUa_ExtensionObjectEncoding_EncodeableObject;
    activate.UserIdentityToken.Body.EncodeableObject = {&token, &OpcUa_UserNameIdentityToken_EncodeableType};
    const UaString purpose;
    tap->serviceBegun(1, {OpcUa_ActivateSessionRequest_EncodeableType, &activate, purpose, nullptr});

    OpcUa_CallMethodRequest method{};
    method.MethodId.Identifier.Numeric = OpcUaId_UserManagement_AddUser;
    const UaVariant name("joe");
    const UaVariant password("hush!");
    OpcUa_Variant arguments[] = {*name.get(), *password.get()};
    method.NoOfInputArguments = 2;
    method.InputArguments = arguments;
    OpcUa_CallRequest call;
    OpcUa_EncodeableObject_Initialize(&OpcUa_CallRequest_EncodeableType, &call);
    call.NoOfMethodsToCall = 1;
    call.MethodsToCall = &method;
    tap->serviceBegun(2, {OpcUa_CallRequest_EncodeableType, &call, purpose, nullptr});
    ASSERT_TRUE(becomes({2}, {"ActivateSession", "Call"}));
    auto* details = view.findChild<QTreeView*>("serviceDetails");
    QString text;
    for (int row = 0; row < 2; ++row) {
        table->setCurrentIndex(table->model()->index(row, 0));
        text += QString::fromStdString(modelText(*details->model()));
    }
    EXPECT_TRUE(text.contains("joe")) << text.toStdString();
    EXPECT_TRUE(text.contains(qlumBlanked()));
    EXPECT_FALSE(text.contains("hush!") || text.contains("68757368") || text.contains("4711"))
        << text.toStdString();
}
} // namespace
