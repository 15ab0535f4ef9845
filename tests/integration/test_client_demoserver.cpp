// The whole client on a real server: a project is opened, its server connects, nodes are found, shown and
// written, and what was saved opens again.
#include <app/log/qlumlogmodel.h>
#include <app/mainwindow/qlumtavelin.h>
#include <app/project/qlumprojectmodel.h>
#include <app/startup/qlumfolders.h>
#include <app/startup/qlumservices.h>
#include <app/startup/qlumstartup.h>
#include <certificates/qlumcertificates.h>
#include <opcua/opcua.h>
#include <tests/support/demoserverinfo.h>
#include <tests/support/dialogdriver.h>
#include <tests/support/owncertificate.h>
#include <uabase/system/uaplatformlayer.h>
#include <uabase/system/uaxmldocument.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/uasession.h>
#include <uaclientsdk/uasessioncallback.h>

#include <QAbstractItemView>
#include <QElapsedTimer>
#include <QFile>
#include <QModelIndex>
#include <QSettings>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QTest>
#include <QTextStream>
#include <QTreeView>
#include <QVariant>
#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {
constexpr int limit = 20000; // ms; far more than any step takes

class ClientOnDemoServer : public ::testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        QlumStartup::loadResources();
        UaXmlDocument::initParser();
        ASSERT_EQ(UaPlatformLayer::init(), 0);
        prepareFolders();
        ASSERT_EQ(provideOwnCertificate(), QString());
        ASSERT_EQ(QlumCertificates::instance(nullptr)->failure(), 0);
    }

    static void TearDownTestSuite()
    {
        QlumCertificates::cleanup();
        UaPlatformLayer::cleanup();
        UaXmlDocument::cleanupParser();
    }

    void SetUp() override
    {
        ASSERT_FALSE(demoserver::endpointUrl().empty()) << "the demo server has not been started";
        window = std::make_unique<QlumTavelin>(qlumServices());
        window->show();
    }

    QString writeProject(const QString& url) const
    {
        const QString file = folder.filePath(QStringLiteral("plant.uap"));
        QSettings project(file, QSettings::IniFormat);
        project.beginGroup(QStringLiteral("Servers/7"));
        project.setValue(QStringLiteral("Name"), QStringLiteral("Plant"));
        project.setValue(QStringLiteral("Connected"), true);
        project.setValue(QStringLiteral("ProjectServerId"), 7);
        project.setValue(QStringLiteral("ServerUrl"), url);
        project.setValue(QStringLiteral("MessageSecurityMode"), 1);
        project.setValue(QStringLiteral("SecurityPolicy"), QStringLiteral(OpcUa_SecurityPolicy_None));
        project.setValue(QStringLiteral("DisplayName"), QStringLiteral("Plant"));
        return file;
    }

    void openDemoProject()
    {
        window->loadProject(writeProject(QString::fromStdString(demoserver::endpointUrl())));
        ASSERT_EQ(window->projectServerIds().size(), 1);
        serverId = window->projectServerIds().first();
        ASSERT_TRUE(QTest::qWaitFor([this] { return tree("Address Space") != nullptr; }, limit)) << logText();
    }

    // The visible tree of that accessible name that has rows.
    QTreeView* tree(const char* name) const
    {
        for (QTreeView* view : window->findChildren<QTreeView*>())
            if (view->accessibleName() == QLatin1String(name) && view->isVisible() && view->model() &&
                view->model()->rowCount() > 0)
                return view;
        return nullptr;
    }

    // The index below parent whose first column reads text, fetched when need be.
    static QModelIndex child(QTreeView& view, const QModelIndex& parent, const QString& text)
    {
        if (view.model()->canFetchMore(parent))
            view.model()->fetchMore(parent);
        for (int row = 0; row < view.model()->rowCount(parent); ++row) {
            const QModelIndex index = view.model()->index(row, 0, parent);
            if (index.data().toString() == text)
                return index;
        }
        return {};
    }

    static QModelIndex find(QTreeView& view, const QStringList& path)
    {
        QModelIndex index;
        for (const QString& text : path) {
            index = child(view, index, text);
            if (!index.isValid())
                return {};
        }
        return index;
    }

    void select(const QStringList& path)
    {
        QTreeView* view = tree("Address Space");
        ASSERT_NE(view, nullptr);
        const QModelIndex index = find(*view, path);
        ASSERT_TRUE(index.isValid()) << path.join(QLatin1Char('>')).toStdString();
        view->setCurrentIndex(index);
    }

    // What the attribute window shows at a path of rows, once it shows the node.
    QString attribute(const QStringList& path, int column = 1) const
    {
        QTreeView* view = tree("Attributes");
        const QModelIndex index = view ? find(*view, path) : QModelIndex();
        return index.sibling(index.row(), column).data().toString();
    }

    bool waitForAttribute(const QStringList& path, const QString& text) const
    {
        return QTest::qWaitFor([&] { return attribute(path) == text; }, limit);
    }

    std::string logText() const
    {
        QString text;
        QTextStream stream(&text);
        window->logModel()->save(stream);
        return text.toStdString();
    }

    QTemporaryDir folder;
    std::unique_ptr<QlumTavelin> window;
    unsigned int serverId = qlumNoServer;
};

const QStringList doubleNode{QStringLiteral("Root"), QStringLiteral("Objects"), QStringLiteral("Demo"),
                             QStringLiteral("Scalar"), QStringLiteral("Double")};
const QStringList valueRow{QStringLiteral("Value"), QStringLiteral("Value")};

TEST_F(ClientOnDemoServer, WritesAValueAndShowsWhatTheServerHas)
{
    openDemoProject();
    EXPECT_EQ(window->windowTitle().contains(QLatin1String("Korvanda Tavelin")), true);
    select(doubleNode);
    ASSERT_TRUE(waitForAttribute({QStringLiteral("BrowseName")}, QStringLiteral("2, \"Double\"")))
        << logText();
    QTreeView* attributes = tree("Attributes");
    for (const char* text : {"3.25", "-0.5"}) {
        const QModelIndex value = find(*attributes, valueRow);
        ASSERT_TRUE(value.isValid());
        EXPECT_TRUE(attributes->model()->setData(value.sibling(value.row(), 1), QString::fromLatin1(text),
                                                 Qt::EditRole));
        EXPECT_TRUE(waitForAttribute(valueRow, QString::fromLatin1(text))) << logText();
    }
    // asked behind the view's back: it is the server's value
    UaReadValueIds nodes(1u);
    EXPECT_TRUE(OpcUa_IsGood(UaNodeId(UaString("Scalar.Double"), 2).copyTo(&nodes[0].NodeId)));
    nodes[0].AttributeId = OpcUa_Attributes_Value;
    UaDataValues values;
    UaDiagnosticInfos infos;
    UaClientSdk::ServiceSettings settings;
    ASSERT_TRUE(window->session(serverId)
                    ->read(settings, 0, OpcUa_TimestampsToReturn_Neither, nodes, values, infos)
                    .isGood());
    EXPECT_EQ(UaVariant(values[0].Value).toDouble(), -0.5);
}

TEST_F(ClientOnDemoServer, ShowsArraysAndStructuresAsWhatTheyAre)
{
    openDemoProject();
    const QStringList demo = doubleNode.mid(0, 3);
    select(demo + QStringList{QStringLiteral("Array"), QStringLiteral("Int32")});
    EXPECT_TRUE(waitForAttribute(valueRow, QStringLiteral("Int32 Array[3]")))
        << attribute(valueRow).toStdString();
    select(demo + QStringList{QStringLiteral("Structure"), QStringLiteral("NamedPoint")});
    ASSERT_TRUE(waitForAttribute({QStringLiteral("BrowseName")}, QStringLiteral("3, \"NamedPoint\"")))
        << attribute({QStringLiteral("BrowseName")}).toStdString();
    QTreeView* attributes = tree("Attributes");
    const QModelIndex value = find(*attributes, valueRow);
    QStringList fields;
    for (int row = 0; row < attributes->model()->rowCount(value); ++row)
        fields += attributes->model()->index(row, 0, value).data().toString();
    EXPECT_TRUE(fields.contains(QLatin1String("X"), Qt::CaseInsensitive)) << fields.join(',').toStdString();
    EXPECT_TRUE(fields.contains(QLatin1String("Name"), Qt::CaseInsensitive))
        << fields.join(',').toStdString();
    select(demo + QStringList{QStringLiteral("Structure"), QStringLiteral("DeviceFlags")});
    EXPECT_TRUE(waitForAttribute(valueRow, QStringLiteral("Running | Fault (5)")))
        << attribute(valueRow).toStdString();
}

TEST_F(ClientOnDemoServer, TypesComeBesideTheConnection)
{
    openDemoProject();
    EXPECT_TRUE(QTest::qWaitFor(
        [this] { return logText().find("Data types of server 'Plant' loaded") != std::string::npos; }, limit))
        << logText();
}

TEST_F(ClientOnDemoServer, WhatIsShownIsDecodedWhenItsTypesComeLater)
{
    const auto mode = QStringLiteral("General.TypeDictionaryMode");
    const QVariant before = window->settingsValue(mode);
    window->setSettingsValue(mode, QStringLiteral("Manual"));
    openDemoProject();
    window->setSettingsValue(mode, before);
    select(doubleNode.mid(0, 3) + QStringList{QStringLiteral("Structure"), QStringLiteral("NamedPoint")});
    ASSERT_TRUE(waitForAttribute(valueRow, QStringLiteral("ExtensionObject")))
        << attribute(valueRow).toStdString();
    ASSERT_TRUE(window->session(serverId)->loadDataTypeDictionaries().isGood());
    auto* told = dynamic_cast<UaClientSdk::UaSessionCallback*>(window->projectModel()->findServer(serverId));
    ASSERT_NE(told, nullptr);
    told->dataTypesLoaded(serverId, UaStatus()); // as from the session
    EXPECT_TRUE(waitForAttribute(valueRow, QStringLiteral("NamedPoint")))
        << attribute(valueRow).toStdString();
}

TEST_F(ClientOnDemoServer, SavedProjectOpensAgainAndConnects)
{
    openDemoProject();
    const QString file = folder.filePath(QStringLiteral("again.uap"));
    ASSERT_TRUE(window->saveProject(file));
    window->clearProject();
    EXPECT_TRUE(window->projectServerIds().isEmpty());
    window->loadProject(file);
    ASSERT_EQ(window->projectServerIds().size(), 1);
    EXPECT_NE(window->projectServerIds().first(), serverId); // ids are new, what refers to them is mapped
    EXPECT_TRUE(QTest::qWaitFor([this] { return tree("Address Space") != nullptr; }, limit)) << logText();
    EXPECT_GT(window->namespaceTable(window->projectServerIds().first()).size(), 4);
}

TEST_F(ClientOnDemoServer, UnreachableServerEndsInTheLogAndTheProgramGoesOn)
{
    window->loadProject(writeProject(QStringLiteral("opc.tcp://127.0.0.1:1")));
    EXPECT_TRUE(QTest::qWaitFor(
        [this] { return logText().find("Could not connect to server: ") != std::string::npos; }, limit))
        << logText();
    window->clearProject();
    openDemoProject();
}
} // namespace
