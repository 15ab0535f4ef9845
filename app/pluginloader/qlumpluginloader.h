#pragma once
#include <QDir>
#include <QMap>
#include <QString>
#include <QStringList>

class QObject;
class QlumApplicationInterface;
class QlumDocumentInterface;

/// Finds the plugins, those of the program first and then shared objects in the folder "plugins", and holds
/// them. What cannot be loaded is told in the log and left out.
class QlumPluginLoader
{
public:
    /// Shared objects are looked for below this folder; empty stands for the program's own.
    explicit QlumPluginLoader(const QString& programFolder = QString());

    void loadPlugins(QlumApplicationInterface* app);
    void unloadPlugins();

    [[nodiscard]] QString path() const { return m_folder.path(); }
    /// Keys of the plugins in the order of loading.
    [[nodiscard]] QStringList filenames() const { return m_keys; }
    /// Null for an unknown key.
    [[nodiscard]] QObject* plugin(const QString& key) const { return m_plugins.value(key); }
    /// The first plugin, by key, that has the document type; null when none has.
    [[nodiscard]] QlumDocumentInterface* pluginFromDocumentType(const QString& type) const;

private:
    void loadStaticPlugins(QlumApplicationInterface* app);
    void loadSharedObject(QlumApplicationInterface* app, const QString& fileName);
    void take(QObject* instance, const QString& key, const QString& shownName);

    QString m_programFolder;
    QDir m_folder;
    QStringList m_keys;
    QMap<QString, QObject*> m_plugins;
};
