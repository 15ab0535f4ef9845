#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumservernode.h>
#include <plugins/addressspace/qlumaddressspacemodel.h>
#include <plugins/addressspace/qlumaddressspacepage.h>
#include <tests/support/modeltext.h>
#include <tests/support/scriptedservices.h>
#include <tests/support/stubapplication.h>
#include <tests/support/stubservernode.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>

#include <QAction>
#include <QClipboard>
#include <QColor>
#include <QComboBox>
#include <QGuiApplication>
#include <QItemSelectionModel>
#include <QLabel>
#include <QModelIndex>
#include <QObject>
#include <QPalette>
#include <QPersistentModelIndex>
#include <QString>
#include <QStringList>
#include <QTest>
#include <QTreeView>
#include <gtest/gtest.h>

#include <memory>

namespace {
class AddressSpacePage : public testing::Test
{
protected:
    AddressSpacePage() : services(std::make_shared<ScriptedServices>())
    {
        services->browses[UaNodeId(84)] = {{{{"ALPHA", UaNodeId(1, 1)},
                                             {"alpha 10", UaNodeId(2, 1)},
                                             {"alpha 9", UaNodeId(3, 1)},
                                             {"Beta", UaNodeId(UaString("b"), 2)},
                                             {"\xC3\x84pfel", UaNodeId(5, 1)}}}};
        services->browses[UaNodeId(1, 1)] = {{{{"z", UaNodeId(10, 1)}, {"B", UaNodeId(11, 1)}}}};
        page = makePage();
        page->show();
    }
    std::unique_ptr<QlumAddressSpacePage> makePage()
    {
        return std::make_unique<QlumAddressSpacePage>(
            &server,
            [this](QlumServerNode* node, QComboBox* combo, QObject* parent) {
                return model = new QlumAddressSpaceModel(node, combo, parent, services);
            },
            &rebrowse);
    }
    QAction* action(const QlumAddressSpacePage& of, const char* name) const
    {
        return of.tree()->findChild<QAction*>(QString::fromLatin1(name));
    }

    StubApplication application;
    StubServerNode server;
    std::shared_ptr<ScriptedServices> services;
    QAction rebrowse;
    QlumAddressSpaceModel* model = nullptr;
    std::unique_ptr<QlumAddressSpacePage> page;
};

TEST_F(AddressSpacePage, TenComesAfterNineAndUmlautsStandInTheAlphabetWhenTheUserWantsIt)
{
    const auto codeUnits = "Root\n  ALPHA\n    B\n    z\n  Beta\n  alpha 10\n  alpha 9\n  \xC3\x84pfel\n";
    page->tree()->expand(model->index(0, 0, model->index(0, 0)));
    ASSERT_EQ(modelText(*model), codeUnits);
    const QPersistentModelIndex beta(model->index(1, 0, model->index(0, 0)));
    const QlumAddressSpaceModel* first = model;
    action(*page, "readingOrder")->setChecked(true);
    EXPECT_EQ(modelText(*first),
              "Root\n  ALPHA\n    B\n    z\n  alpha 9\n  alpha 10\n  \xC3\x84pfel\n  Beta\n");
    EXPECT_EQ(beta.data().toString(), "Beta");

    const auto second = makePage();
    EXPECT_TRUE(action(*second, "readingOrder")->isChecked()) << "one switch for all servers";
    action(*second, "readingOrder")->setChecked(false);
    page->hide();
    page->show();
    EXPECT_EQ(modelText(*first), codeUnits);
}

TEST_F(AddressSpacePage, IdNameAndPathCanBeTakenAlong)
{
    const QModelIndex root = model->index(0, 0);
    page->tree()->setCurrentIndex(model->index(1, 0, root));
    const auto copied = [this](const char* name) {
        action(*page, name)->trigger();
        return QGuiApplication::clipboard()->text();
    };
    EXPECT_EQ(copied("copyNodeId"), "ns=2;s=b");
    EXPECT_EQ(copied("copyName"), "Beta");
    EXPECT_EQ(copied("copyPath"), "Root/Beta");
    page->tree()->selectionModel()->select(model->index(0, 0, root), QItemSelectionModel::Select);
    EXPECT_EQ(copied("copyNodeId"), "ns=2;s=b\nns=1;i=1");
}

TEST_F(AddressSpacePage, StaysReadableButAsksForNothingWhileTheConnectionIsLost)
{
    const QModelIndex root = model->index(0, 0);
    const QModelIndex alpha = model->index(0, 0, root);
    const auto before = modelText(*model);
    const auto* line = page->findChild<QLabel*>("connectionLost");
    const auto color = [this] { return page->tree()->palette().color(QPalette::Active, QPalette::Text); };
    const QColor usual = color();
    EXPECT_FALSE(line->isVisible());
    services->journal.clear();
    server.announce(QlumConnectionStatus::ConnectionError);
    EXPECT_TRUE(line->isVisible());
    EXPECT_TRUE(line->text().startsWith("Server 'stub': connection lost since ")) << line->text();
    EXPECT_NE(color(), usual);
    EXPECT_TRUE(page->tree()->isEnabled()) << "it is to be read";

    page->tree()->expand(alpha);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !page->tree()->isExpanded(alpha); }));
    model->rebrowseNodeIndex(root);
    EXPECT_FALSE(page->reveal(UaNodeId(77, 1)));
    EXPECT_EQ(modelText(*model), before);
    EXPECT_EQ(services->journal, QStringList()) << "each call would wait in vain";
    EXPECT_EQ(application.entries().back().text,
              "'Root' is not browsed: the connection to the server is lost.");
    const QString since = line->text();
    server.announce(QlumConnectionStatus::ConnectionError);
    EXPECT_EQ(line->text(), since);

    server.announce(QlumConnectionStatus::Connected);
    EXPECT_FALSE(line->isVisible());
    EXPECT_EQ(color(), usual);
    page->tree()->expand(alpha);
    EXPECT_EQ(model->rowCount(alpha), 2);
}
} // namespace
