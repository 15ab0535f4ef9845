#include <app/pluginloader/qlumpluginloader.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumdocumentinterface.h>
#include <app/api/qlumlog.h>
#include <app/api/qlumplugininterface.h>
#include <app/api/qlumtoolservices.h>
#include <app/pluginloader/qlumpluginnames.h>

#include <QCoreApplication>
#include <QDebug>
#include <QObject>
#include <QObjectList>
#include <QPluginLoader>

namespace {
class Text
{
    Q_DECLARE_TR_FUNCTIONS(QlumPluginLoader)
};

QlumLog loaderLog()
{
    return QlumLog(QStringLiteral("Tavelin"));
}

// Null, after a message, when the instance is no plugin of ours.
QlumPluginInterface* pluginInterface(QObject* instance, const QString& name)
{
    auto* plugin = qobject_cast<QlumPluginInterface*>(instance);
    if (!plugin) {
        qWarning().nospace().noquote() << "plugin '" << name << "' doesn't support QlumPluginInterface";
        loaderLog().error(
            Text::tr("Could not load %1: QlumPluginInterface is not supported by the plugin").arg(name));
    }
    return plugin;
}
} // namespace

QlumPluginLoader::QlumPluginLoader(const QString& programFolder) : m_programFolder(programFolder) {}

void QlumPluginLoader::loadPlugins(QlumApplicationInterface* app)
{
    loadStaticPlugins(app);
    m_folder.setPath(m_programFolder.isEmpty() ? QCoreApplication::applicationDirPath() : m_programFolder);
    if (!m_folder.cd(QStringLiteral("plugins")))
        return;
    const QStringList files = m_folder.entryList({QStringLiteral("*.so")}, QDir::Files, QDir::Unsorted);
    for (const QString& fileName : files)
        loadSharedObject(app, fileName);
}

void QlumPluginLoader::loadStaticPlugins(QlumApplicationInterface* app)
{
    const QObjectList instances = QPluginLoader::staticInstances();
    for (QObject* instance : instances) {
        if (QlumPluginInterface* plugin = pluginInterface(instance, instance->objectName())) {
            plugin->init(app);
            take(instance, QStringLiteral("%1 (Static Plugin)").arg(plugin->name()),
                 Text::tr("%1 (Static Plugin)").arg(qlumPluginShown(plugin->name())));
        }
    }
}

void QlumPluginLoader::loadSharedObject(QlumApplicationInterface* app, const QString& fileName)
{
    const QString path = m_folder.absoluteFilePath(fileName);
    qWarning().nospace().noquote() << "try to load plugin '" << path << "'";
    QPluginLoader loader(path);
    QObject* instance = loader.instance();
    if (!instance) {
        const QString error = loader.errorString();
        qWarning().nospace().noquote() << "loading plugin failed with error '" << error << "'";
        loaderLog().error(Text::tr("Could not load %1: %2").arg(fileName, error));
        return;
    }
    if (QlumPluginInterface* plugin = pluginInterface(instance, fileName)) {
        plugin->init(app);
        take(instance, fileName, fileName);
    }
}

void QlumPluginLoader::take(QObject* instance, const QString& key, const QString& shownName)
{
    m_keys.append(key);
    m_plugins.insert(key, instance);
    loaderLog().info(Text::tr("Loaded %1.").arg(shownName));
}

QlumDocumentInterface* QlumPluginLoader::pluginFromDocumentType(const QString& type) const
{
    for (QObject* instance : m_plugins) {
        auto* documents = qobject_cast<QlumDocumentInterface*>(instance);
        if (documents && documents->documentTypes().contains(type))
            return documents;
    }
    return nullptr;
}

void QlumPluginLoader::unloadPlugins()
{
    for (QObject* instance : qAsConst(m_plugins)) {
        if (auto* plugin = qobject_cast<QlumPluginInterface*>(instance)) {
            // from now on nobody has anything done by it
            if (QlumToolServices* services = QlumToolServices::instance())
                services->removeTakers(instance);
            plugin->shutdown();
            delete plugin;
        }
    }
    m_plugins.clear();
}
