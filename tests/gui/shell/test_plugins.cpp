#include <app/api/qlumappeventinterface.h>
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumdocumentinterface.h>
#include <app/api/qlumdocumentwidgetinterface.h>
#include <app/pluginloader/qlumdirector.h>
#include <app/pluginloader/qlumplugindialog.h>
#include <app/pluginloader/qlumpluginloader.h>
#include <tests/support/stubapplication.h>

#include <QDir>
#include <QFile>
#include <QLibraryInfo>
#include <QObject>
#include <QRegularExpression>
#include <QSettings>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QTreeWidget>
#include <QTreeWidgetItem>
#include <QWidget>
#include <gtest/gtest.h>

#include <memory>

namespace {
const QStringList names{QStringLiteral("UA Devices Plugin"),   QStringLiteral("UA Attribute Plugin"),
                        QStringLiteral("UA Reference Plugin"), QStringLiteral("Data Access Plugin"),
                        QStringLiteral("UA History Plugin"),   QStringLiteral("UA Events Plugin"),
                        QStringLiteral("UA Method Plugin"),    QStringLiteral("UA Performance Plugin"),
                        QStringLiteral("Image Viewer Plugin"), QStringLiteral("Server Diagnostic Plugin"),
                        QStringLiteral("Data Logger Plugin"),  QStringLiteral("GDS Plugin")};

class Plugins : public ::testing::Test
{
protected:
    void TearDown() override { loader.unloadPlugins(); }

    QTemporaryDir folder;
    StubApplication application;
    QlumPluginLoader loader{folder.path()};
};

} // namespace

TEST_F(Plugins, LoadInTheOrderOfTheList)
{
    loader.loadPlugins(&application);
    QStringList keys;
    QStringList messages;
    for (const QString& name : names) {
        keys.append(name + QStringLiteral(" (Static Plugin)"));
        messages.append(QStringLiteral("Loaded %1 (Static Plugin).").arg(name));
    }
    EXPECT_EQ(loader.filenames(), keys);
    EXPECT_EQ(application.texts(), messages);
    for (const auto& entry : application.entries()) {
        EXPECT_EQ(entry.level, 30);
        EXPECT_EQ(entry.serverId, 0xFFFFFFFFu);
        EXPECT_EQ(entry.source, QStringLiteral("Tavelin"));
    }
}

TEST_F(Plugins, DocumentTypesFindTheirPlugin)
{
    loader.loadPlugins(&application);
    for (const char* type :
         {"Data Access View", "History Trend View", "Event View", "Performance View", "Image Viewer",
          "Server Diagnostics View", "Data Logger View", "GDS View (Push Model)"}) {
        QlumDocumentInterface* plugin = loader.pluginFromDocumentType(QLatin1String(type));
        ASSERT_NE(plugin, nullptr) << type;
        const std::unique_ptr<QWidget> document(plugin->createDocument(QLatin1String(type)));
        ASSERT_NE(document, nullptr) << type;
        EXPECT_EQ(document->parent(), nullptr);
        EXPECT_NE(qobject_cast<QlumDocumentWidgetInterface*>(document.get()), nullptr) << type;
        EXPECT_FALSE(plugin->description(QLatin1String(type)).isEmpty()) << type;
    }
    auto* events = dynamic_cast<QObject*>(loader.pluginFromDocumentType(QStringLiteral("Event View")));
    EXPECT_EQ(events, loader.plugin(QStringLiteral("UA Events Plugin (Static Plugin)")));
    EXPECT_EQ(loader.pluginFromDocumentType(QStringLiteral("event view")), nullptr);
    EXPECT_EQ(loader.pluginFromDocumentType(QString()), nullptr);
}

TEST_F(Plugins, SharedObjectThatIsNoPluginIsToldAndSkipped)
{
    ASSERT_TRUE(QDir(folder.path()).mkdir(QStringLiteral("plugins")));
    QFile bogus(folder.filePath(QStringLiteral("plugins/bogus.so")));
    ASSERT_TRUE(bogus.open(QIODevice::WriteOnly));
    bogus.write("no shared object");
    bogus.close();
    // a plugin indeed, but of another program: what it implements is not ours, or not in this version
    const QDir foreign(QLibraryInfo::location(QLibraryInfo::PluginsPath) + QStringLiteral("/imageformats"));
    const QString image = foreign.entryList({QStringLiteral("*.so")}, QDir::Files).value(0);
    ASSERT_TRUE(QFile::copy(foreign.filePath(image), folder.filePath(QStringLiteral("plugins/other.so"))));
    loader.loadPlugins(&application);
    EXPECT_EQ(loader.filenames().size(), 12);
    const QString told = application.texts().mid(12).join(QLatin1Char('\n'));
    EXPECT_EQ(application.entries().last().level, 100);
    EXPECT_TRUE(told.contains(QRegularExpression(QStringLiteral("Could not load bogus.so: .{5,}"))))
        << told.toStdString();
    EXPECT_TRUE(told.contains(
        QStringLiteral("Could not load other.so: QlumPluginInterface is not supported by the plugin")))
        << told.toStdString();
    EXPECT_EQ(loader.plugin(QStringLiteral("bogus.so")), nullptr);
}

TEST_F(Plugins, DirectorReachesEveryPluginAndUnloadingTakesThemAway)
{
    loader.loadPlugins(&application);
    QlumDirector director(&loader);
    QSettings settings(folder.filePath(QStringLiteral("all.ini")), QSettings::IniFormat);
    settings.setValue(QStringLiteral("UA Attribute Plugin/Act_OnOff_Checked"), true);
    director.loadSettings(settings, {});
    settings.clear();
    director.saveSettings(settings);
    director.sessionStatusChanged(7, QlumConnectionStatus::Connected, {});
    director.sessionRemoved(7);
    for (const QString& group : settings.childGroups())
        EXPECT_TRUE(names.contains(group)) << group.toStdString();
    EXPECT_TRUE(settings.childKeys().isEmpty()); // every plugin stays in its group
    loader.unloadPlugins();
    EXPECT_EQ(loader.plugin(loader.filenames().first()), nullptr);
    director.serverSelectionChanged(7); // nobody is left, and nobody is called
}

TEST_F(Plugins, DialogListsInterfacesAndDocumentTypes)
{
    loader.loadPlugins(&application);
    const QlumPluginDialog dialog(loader.path(), loader.filenames());
    const auto* tree = dialog.findChild<QTreeWidget*>(QStringLiteral("plugins"));
    ASSERT_EQ(tree->topLevelItemCount(), 12);
    const QTreeWidgetItem* events = tree->topLevelItem(5);
    EXPECT_EQ(events->text(0), QStringLiteral("UA Events Plugin (Static Plugin)"));
    ASSERT_EQ(events->childCount(), 3);
    EXPECT_EQ(events->child(0)->text(0), QStringLiteral("PluginInterface"));
    EXPECT_EQ(events->child(1)->text(0), QStringLiteral("ApplicationEventInterface"));
    EXPECT_EQ(events->child(2)->text(0), QStringLiteral("DocumentInterface"));
    EXPECT_EQ(events->child(2)->child(0)->text(0), QStringLiteral("Event View"));
    EXPECT_EQ(tree->topLevelItem(1)->childCount(), 2); // the attribute view has no documents
}
