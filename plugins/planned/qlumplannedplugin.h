// Tools that have their name, their place and their texts, but do not work yet.
#pragma once
#include <app/api/qlumappeventadapter.h>
#include <app/api/qlumappeventinterface.h>
#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumdocumentinterface.h>
#include <app/api/qlumplugininterface.h>

#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QWidget>

class QDockWidget;

/// A tool as long as nobody has written it. Title, hint and description go through tr(), in the context
/// QlumPlannedPlugin; where a text is for what the tool does not have, it is null.
struct QlumPlannedTool
{
    enum Kind {
        Document, ///< has one document type
        Dock,     ///< has a dock window
        Bare      ///< has neither
    };
    Kind kind = Bare;
    const char* pluginClass =
        nullptr;                 ///< of the tool when it is written; the list of built-in plugins names it
    const char* name = nullptr;  ///< key of the project file, so it must never change
    const char* title = nullptr; ///< the document type, a key of the project file too, or the dock's title
    const char* hint = nullptr;  ///< in place of the content: what the user can do instead
    const char* description = nullptr; ///< rich text: what the document or the dock is for
};

/// The plugin of a planned tool: takes the tool's place in the order of loading and in project files, and
/// says what is missing where the tool will be.
class QlumPlannedPlugin : public QObject, public QlumPluginInterface, public QlumAppEventAdapter
{
    Q_OBJECT
    Q_INTERFACES(QlumPluginInterface QlumAppEventInterface)
public:
    /// The tool must outlive the plugin.
    explicit QlumPlannedPlugin(const QlumPlannedTool& tool);

    void init(QlumApplicationInterface* app) override;
    void shutdown() override;
    QString name() override;

protected:
    [[nodiscard]] const QlumPlannedTool& tool() const { return m_tool; }

private:
    const QlumPlannedTool& m_tool;
    QPointer<QDockWidget> m_dock; ///< owned by the main window once it is docked
};

/// The same for a tool with a document type. Its documents are empty; a project keeps them.
class QlumPlannedDocumentPlugin : public QlumPlannedPlugin, public QlumDocumentInterface
{
    Q_OBJECT
    Q_INTERFACES(QlumDocumentInterface)
public:
    using QlumPlannedPlugin::QlumPlannedPlugin;

    QStringList documentTypes() override;
    QWidget* createDocument(const QString& type) override;
    QString description(const QString& type) override;
};

/// Lends its metadata to all planned tools: Qt makes them for one class only. Nobody makes an object of it.
class QlumPlannedMetaData : public QObject
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QlumPluginInterface_iid)
};
