#include <plugins/history/qlumhistoryplugin.h>

#include <app/api/qlumapplicationinterface.h>
#include <uawidgets/qlumemptydocument.h>

#include <QString>
#include <QStringList>
#include <QWidget>

namespace {
const auto documentType = QStringLiteral("History Trend View");
}

QlumHistoryPlugin::QlumHistoryPlugin()
{
    setObjectName(QStringLiteral("QlumHistoryPlugin"));
}

void QlumHistoryPlugin::init(QlumApplicationInterface* app)
{
    m_app = app;
}

void QlumHistoryPlugin::shutdown()
{
    m_app = nullptr;
}

QString QlumHistoryPlugin::name()
{
    return QStringLiteral("UA History Plugin");
}

QStringList QlumHistoryPlugin::documentTypes()
{
    return {documentType};
}

QWidget* QlumHistoryPlugin::createDocument(const QString& type)
{
    if (type != documentType)
        return nullptr;
    return new QlumEmptyDocument(type, tr("The history trend view is not part of this version."));
}

QString QlumHistoryPlugin::description(const QString& type)
{
    return type == documentType
               ? tr("<b>History Trend View</b><br>Reads the history of variables and plots it over time.")
               : QString();
}
