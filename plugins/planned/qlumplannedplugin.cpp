#include <plugins/planned/qlumplannedplugin.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumdocksize.h>
#include <uawidgets/qlumemptydocument.h>

#include <QDockWidget>
#include <QMainWindow>
#include <QString>
#include <QStringList>
#include <QWidget>

QlumPlannedPlugin::QlumPlannedPlugin(const QlumPlannedTool& tool) : m_tool(tool)
{
    setObjectName(QLatin1String(tool.pluginClass));
}

void QlumPlannedPlugin::init(QlumApplicationInterface* app)
{
    if (m_tool.kind != QlumPlannedTool::Dock)
        return;
    const QString title = tr(m_tool.title);
    m_dock = new QDockWidget(title, app->mainWindow());
    m_dock->setObjectName(QLatin1String(m_tool.title) + QLatin1String(" Dock Widget"));
    m_dock->setWhatsThis(tr(m_tool.description));
    qlumSetInitialDockSize(m_dock, {0, 140}); // below another one
    m_dock->setWidget(new QlumEmptyDocument(title, tr(m_tool.hint)));
    app->mainWindow()->addDockWidget(Qt::RightDockWidgetArea, m_dock);
}

void QlumPlannedPlugin::shutdown()
{
    delete m_dock;
}

QString QlumPlannedPlugin::name()
{
    return QLatin1String(m_tool.name);
}

QStringList QlumPlannedDocumentPlugin::documentTypes()
{
    return {QLatin1String(tool().title)};
}

QWidget* QlumPlannedDocumentPlugin::createDocument(const QString& type)
{
    return documentTypes().contains(type) ? new QlumEmptyDocument(type, tr(tool().hint)) : nullptr;
}

QString QlumPlannedDocumentPlugin::description(const QString& type)
{
    return documentTypes().contains(type) ? tr(tool().description) : QString();
}
