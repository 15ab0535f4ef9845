// References and methods of the second server in the windows of the whole client.
#include <app/api/qlumtoolservices.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/methods/qlummethoddialog.h>
#include <plugins/references/qlumreferencemodel.h>
#include <tests/interop/clientonsecondserver.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumargumentpanel.h>

#include <QAbstractItemModel>
#include <QComboBox>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QString>
#include <QStringList>
#include <QTest>
#include <QTreeView>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace {
class ToolsOnSecondServer : public ClientOnSecondServer
{
protected:
    // ---- references

    void reveal(const UaNodeId& id) { ASSERT_TRUE(QlumToolServices::instance()->revealNode(serverId, id)); }
    QStringList references() const
    {
        QStringList rows;
        const auto* table = window->findChild<QTreeView*>(QStringLiteral("referenceTable"));
        for (int row = 0; row < table->model()->rowCount(); ++row)
            rows.append(QStringList{text(*table, row, QlumReferenceModel::TypeColumn),
                                    text(*table, row, QlumReferenceModel::DirectionColumn),
                                    text(*table, row, QlumReferenceModel::TargetColumn)}
                            .join(QLatin1Char('|')));
        return rows;
    }
    static QString text(const QTreeView& table, int row, int column)
    {
        return table.model()->index(row, column).data().toString();
    }

    // ---- methods

    void open(OpcUa_UInt32 method)
    {
        delete dialog;
        ASSERT_TRUE(QlumToolServices::instance()->callMethod(serverId, named("Methods"), numbered(method)));
        dialog = window->findChild<QlumMethodDialog*>();
        ASSERT_TRUE(dialog);
        ASSERT_TRUE(waitUntilReady()) << logText();
    }
    bool waitUntilReady()
    {
        return waitFor([this] { return button("callMethodNow")->isEnabled(); });
    }
    QPushButton* button(const char* name) { return dialog->findChild<QPushButton*>(name); }
    QlumArgumentPanel& inputs() { return *dialog->findChild<QlumArgumentPanel*>("methodInputs"); }
    QlumArgumentPanel& outputs() { return *dialog->findChild<QlumArgumentPanel*>("methodOutputs"); }
    std::string outcome() { return dialog->findChild<QLabel*>("methodOutcome")->text().toStdString(); }
    std::string call()
    {
        button("callMethodNow")->click();
        EXPECT_TRUE(waitUntilReady());
        return outcome();
    }

    QPointer<QlumMethodDialog> dialog;
};

// It gives five references at a time.
TEST_F(ToolsOnSecondServer, ReferencesOfBothDirectionsAreShownAndLeadToTheirTargets)
{
    reveal(named("the.answer"));
    for (const QString name : {"Demo", "Scalar", "Objects"})
        EXPECT_TRUE(waitFor([&] { return !references().filter("|Inverse|" + name).isEmpty(); }))
            << references().join(QLatin1Char('\n')).toStdString();

    reveal(named("Methods"));
    ASSERT_TRUE(waitFor([&] { return references().contains("HasComponent|Forward|Echo"); }))
        << references().join(QLatin1Char('\n')).toStdString();
    auto* const table = window->findChild<QTreeView*>(QStringLiteral("referenceTable"));
    for (int row = 0; row < table->model()->rowCount(); ++row)
        if (text(*table, row, QlumReferenceModel::TargetColumn) == "Echo")
            emit table->activated(table->model()->index(row, 0));
    EXPECT_EQ(tree("Address Space")->currentIndex().data().toString(), "Echo");
    EXPECT_TRUE(waitFor([&] { return references().contains("HasProperty|Forward|InputArguments"); }))
        << references().join(QLatin1Char('\n')).toStdString();
}

TEST_F(ToolsOnSecondServer, MethodsAreCalledWithArgumentsOfEveryKind)
{
    open(60010); // Add
    inputs().setValue(0, UaVariant(1.5));
    inputs().setValue(1, UaVariant(-4.0));
    EXPECT_TRUE(call().starts_with("Called. ")) << outcome();
    EXPECT_EQ(outputs().value(0), UaVariant(-2.5));

    // nine kinds, a structure and an enumeration of the server's own among them; it takes the number of the
    // enumeration for a wrong type, and says so of this input alone
    open(60013); // Echo
    ASSERT_EQ(inputs().count(), 9);
    UaVariant doubles;
    EXPECT_TRUE(
        OpcUa_IsGood(doubles.setArray(OpcUaType_Double, std::vector{UaVariant(0.5), UaVariant(-2.0)})));
    inputs().setValue(4, doubles);
    inputs().setValue(8, UaVariant(UaLocalizedText(UaString("de"), UaString("gr\xC3\xBC\xC3\x9F dich"))));
    EXPECT_EQ(inputs().values()[6].type(), OpcUaType_ExtensionObject);
    if (call().starts_with("Called. ")) {
        EXPECT_EQ(outputs().values(), inputs().values());
        return;
    }
    EXPECT_NE(outcome().find("BadInvalidArgument"), std::string::npos) << outcome();
    for (int input = 0; input < 9; ++input) {
        const auto* note = dialog->findChild<QLabel*>(QStringLiteral("methodInputs.%1.note").arg(input));
        EXPECT_EQ(note->text().contains("BadTypeMismatch"), input == 5) << note->text().toStdString();
    }
}

TEST_F(ToolsOnSecondServer, MethodsThatFailOrTakeLongAreToldApart)
{
    open(60012); // Fail
    inputs().setValue(0, UaVariant(OpcUa_UInt32{OpcUa_BadDeviceFailure}));
    EXPECT_NE(call().find("BadDeviceFailure"), std::string::npos) << outcome();
    open(60015); // NotExecutable
    EXPECT_EQ(call().find("Called. "), std::string::npos) << outcome();
    EXPECT_NE(outcome().find("Bad"), std::string::npos) << outcome();
    open(60011); // Slow
    inputs().setValue(0, UaVariant(3.0));
    button("callMethodNow")->click();
    ASSERT_TRUE(waitFor([this] { return button("cancelCall")->isEnabled(); }));
    button("cancelCall")->click();
    EXPECT_TRUE(waitUntilReady());
    EXPECT_NE(outcome().find("may still"), std::string::npos) << outcome();
}
} // namespace
