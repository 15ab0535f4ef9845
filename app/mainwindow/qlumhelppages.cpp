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
        // dialogs that do not belong to a tool that has a page
        {QStringLiteral("QlumSettingsDialog"), QStringLiteral("settings")},
        {QStringLiteral("QlumUpdateDialog"), QStringLiteral("settings")},
        {QStringLiteral("QlumShortcutsDialog"), QStringLiteral("shortcuts")},
        {QStringLiteral("commandPalette"), QStringLiteral("palette")},
        {QStringLiteral("QlumDocumentDialog"), QStringLiteral("project")},
        {QStringLiteral("recoveryDialog"), QStringLiteral("recovery")},
        {QStringLiteral("QlumSupportDialog"), QStringLiteral("trouble")},
        {QStringLiteral("QlumJournalWindow"), QStringLiteral("log")},
        {QStringLiteral("QlumServerSettingsDialog"), QStringLiteral("connect")},
        {QStringLiteral("QlumIdentityDialog"), QStringLiteral("connect")},
        {QStringLiteral("QlumDoctorDialog"), QStringLiteral("doctor")},
        {QStringLiteral("QlumChangedCertificateDialog"), QStringLiteral("certificates")},
        {QStringLiteral("QlumCertificateManagerDialog"), QStringLiteral("certificates")},
        {QStringLiteral("QlumCertificateDialog"), QStringLiteral("certificates")},
        {QStringLiteral("QlumNewCertificateDlg"), QStringLiteral("certificates")},
        {QStringLiteral("QlumCertificateViewer"), QStringLiteral("certificates")},
        {QStringLiteral("QlumComparisonWindow"), QStringLiteral("attributes")},
        {QStringLiteral("QlumCustomNodeIdDialog"), QStringLiteral("attributes")},
        {QStringLiteral("QlumMethodDialog"), QStringLiteral("methods")},
        {QStringLiteral("ConditionDialog"), QStringLiteral("events")},
        {QStringLiteral("QlumRecordingWindow"), QStringLiteral("datalogger")},
        {QStringLiteral("QlumLoggerSetupDialog"), QStringLiteral("datalogger")},
        {QStringLiteral("PushLoginDialog"), QStringLiteral("gds")},
        {QStringLiteral("PushPlanDialog"), QStringLiteral("gds")},
        {QStringLiteral("QlumNodeChooser"), QStringLiteral("addressspace")},
        {QStringLiteral("ExportBranch"), QStringLiteral("search")},
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
