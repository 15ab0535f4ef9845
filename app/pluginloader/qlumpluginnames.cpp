#include <app/pluginloader/qlumpluginnames.h>

#include <QCoreApplication>

namespace {
// Names of plugins are keys of project files; here they are read.
[[maybe_unused]] constexpr const char* pluginNames[] = {
    QT_TRANSLATE_NOOP("QlumPlugins", "Data Access Plugin"),
    QT_TRANSLATE_NOOP("QlumPlugins", "Data Logger Plugin"),
    QT_TRANSLATE_NOOP("QlumPlugins", "GDS Plugin"),
    QT_TRANSLATE_NOOP("QlumPlugins", "Image Viewer Plugin"),
    QT_TRANSLATE_NOOP("QlumPlugins", "Server Diagnostic Plugin"),
    QT_TRANSLATE_NOOP("QlumPlugins", "UA Attribute Plugin"),
    QT_TRANSLATE_NOOP("QlumPlugins", "UA Devices Plugin"),
    QT_TRANSLATE_NOOP("QlumPlugins", "UA Events Plugin"),
    QT_TRANSLATE_NOOP("QlumPlugins", "UA History Plugin"),
    QT_TRANSLATE_NOOP("QlumPlugins", "UA Method Plugin"),
    QT_TRANSLATE_NOOP("QlumPlugins", "UA Performance Plugin"),
    QT_TRANSLATE_NOOP("QlumPlugins", "UA Reference Plugin"),
};
} // namespace

QString qlumPluginShown(const QString& name)
{
    return QCoreApplication::translate("QlumPlugins", name.toUtf8().constData());
}
