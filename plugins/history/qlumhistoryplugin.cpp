#include <plugins/history/qlumhistoryplugin.h>

#include <uawidgets/qlumemptydocument.h>

namespace {
const auto kDocumentType = QStringLiteral("History Trend View");
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
    return {kDocumentType};
}

QWidget* QlumHistoryPlugin::createDocument(const QString& type)
{
    if (type != kDocumentType)
        return nullptr;
    return new QlumEmptyDocument(type, tr("The history trend view is not part of this version."));
}

QString QlumHistoryPlugin::description(const QString& type)
{
    return type == kDocumentType
               ? tr("<b>History Trend View</b><br>Reads the history of variables and plots it over time.")
               : QString();
}
