// The table of the planned tools. Whoever writes one gives it the folder plugins/<tool> with a plugin class
// of the name in its row, and deletes the row, the line of its export at the end, and its pictures from
// CMakeLists.txt; the list of built-in plugins stays as it is. A row that is left behind ends in a symbol
// defined twice.
#include <plugins/planned/qlumplannedplugin.h>

#include <QObject>
#include <QPointer>
#include <QStaticPlugin>
#include <QtPlugin>

#include <array>
#include <string_view>

auto qt_static_plugin_QlumPlannedMetaData() -> const QStaticPlugin; // made by moc

namespace {
constexpr std::array<QlumPlannedTool, 1> tools{{
    {QlumPlannedTool::Document, "QlumDevicesPlugin", "UA Devices Plugin", "Devices View",
     QT_TRANSLATE_NOOP(
         "QlumPlannedPlugin",
         "The devices view is not part of this version. Devices can be browsed in the address space."),
     QT_TRANSLATE_NOOP("QlumPlannedPlugin",
                       "<b>Devices View</b><br>Shows the devices of a server with their parameters, methods "
                       "and identification, and configures them.")},
}};

// Does not compile for a class without a row.
consteval std::size_t rowOf(std::string_view pluginClass)
{
    std::size_t row = 0;
    while (tools.at(row).pluginClass != pluginClass)
        ++row;
    return row;
}

QObject* newPlugin(const QlumPlannedTool& tool)
{
    if (tool.kind == QlumPlannedTool::Document)
        return new QlumPlannedDocumentPlugin(tool);
    return new QlumPlannedPlugin(tool);
}

// As Qt does it for a plugin class of its own: one instance, which its loader may delete.
template <std::size_t row>
QObject* instance()
{
    static QPointer<QObject> plugin;
    if (!plugin)
        plugin = newPlugin(tools[row]);
    return plugin;
}

template <std::size_t row>
QStaticPlugin exported()
{
    QStaticPlugin plugin = qt_static_plugin_QlumPlannedMetaData();
    plugin.instance = instance<row>;
    return plugin;
}
} // namespace

// Gives the row the function by which Q_IMPORT_PLUGIN finds the class.
#define QLUM_EXPORT_PLANNED_PLUGIN(PluginClass)                                                              \
    const QStaticPlugin qt_static_plugin_##PluginClass();                                                    \
    const QStaticPlugin qt_static_plugin_##PluginClass()                                                     \
    {                                                                                                        \
        return exported<rowOf(#PluginClass)>();                                                              \
    }

QLUM_EXPORT_PLANNED_PLUGIN(QlumDevicesPlugin)
