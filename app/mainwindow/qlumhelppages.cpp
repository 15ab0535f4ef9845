#include <app/mainwindow/qlumhelppages.h>

#include <QHash>
#include <QVariant>
#include <QWidget>

namespace {
constexpr const char* toolProperty = "helpTool";

const QHash<QString, QString>& pages()
{
    static const QHash<QString, QString> table = {
        {QStringLiteral("Project Dock Widget"), QStringLiteral("project")},
        {QStringLiteral("Address Space Dock Widget"), QStringLiteral("addressspace")},
        {QStringLiteral("Attributes Dock Widget"), QStringLiteral("attributes")},
        {QStringLiteral("References Dock Widget"), QStringLiteral("references")},
        {QStringLiteral("Find Node Dock Widget"), QStringLiteral("search")},
        {QStringLiteral("Log Dock Widget"), QStringLiteral("log")},
        {QStringLiteral("Services Dock Widget"), QStringLiteral("log")},
        {QStringLiteral("Data Access View"), QStringLiteral("dataaccess")},
        {QStringLiteral("Data Logger View"), QStringLiteral("datalogger")},
        {QStringLiteral("Devices View"), QStringLiteral("devices")},
        {QStringLiteral("Event View"), QStringLiteral("events")},
        {QStringLiteral("GDS View (Push Model)"), QStringLiteral("gds")},
        {QStringLiteral("History Trend View"), QStringLiteral("history")},
        {QStringLiteral("Image Viewer"), QStringLiteral("imageviewer")},
        {QStringLiteral("Performance View"), QStringLiteral("performance")},
        {QStringLiteral("Server Diagnostics View"), QStringLiteral("serverdiagnostics")},
    };
    return table;
}
} // namespace

QString qlumHelpPageOfTool(const QString& tool)
{
    return pages().value(tool);
}

void qlumSetHelpTool(QWidget* widget, const QString& tool)
{
    widget->setProperty(toolProperty, tool);
}

QUrl qlumHelpPage(const QString& name)
{
    return QUrl(QStringLiteral("qrc:/help/%1.html").arg(name));
}

QUrl qlumHelpPageOf(const QWidget* widget)
{
    for (; widget; widget = widget->parentWidget()) {
        const QVariant tool = widget->property(toolProperty);
        const QString page = qlumHelpPageOfTool(tool.isValid() ? tool.toString() : widget->objectName());
        if (!page.isEmpty())
            return qlumHelpPage(page);
    }
    return qlumHelpPage(QStringLiteral("index"));
}
