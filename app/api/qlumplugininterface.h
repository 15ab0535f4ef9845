#pragma once
#include <QString>
#include <QtPlugin>

class QlumApplicationInterface;

/// What every plugin offers. All calls come on the GUI thread.
class QlumPluginInterface
{
public:
    virtual ~QlumPluginInterface() = default;

    /// Called once, before anything else. The application outlives the plugin's shutdown().
    virtual void init(QlumApplicationInterface* app) = 0;
    /// Called once at exit, before the instance is deleted: end jobs, delete widgets, join threads.
    virtual void shutdown() = 0;
    /// Display name; also the name of the plugin's group in project files, so it must never change.
    virtual QString name() = 0;
};

#define QlumPluginInterface_iid "com.korvanda.UaClient.PluginInterface/2.0"
Q_DECLARE_INTERFACE(QlumPluginInterface, QlumPluginInterface_iid)
