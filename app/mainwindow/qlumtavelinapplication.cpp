// What the main window answers as the application that plugins and servers ask.
#include <app/api/qlumservernode.h>
#include <app/api/qlumtext.h>
#include <app/log/qlumlogentry.h>
#include <app/log/qlumlogmodel.h>
#include <app/log/qlumtracewords.h>
#include <app/mainwindow/qlumaddressspacepages.h>
#include <app/mainwindow/qlumprojectsession.h>
#include <app/mainwindow/qlumtavelin.h>
#include <app/pluginloader/qlumdirector.h>
#include <app/project/qlumprojectmodel.h>
#include <app/recovery/qlumcrashhandler.h>
#include <app/settings/qlumsettingsmodel.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/addressspace/qlumaddressspacemodel.h>
#include <plugins/addressspace/qlumnodemimedata.h>
#include <uabase/structures/uaenumdefinition.h>
#include <uabase/system/uatrace.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uaclientsdk/uasession.h>

#include <QAction>
#include <QDateTime>
#include <QDockWidget>
#include <QIcon>
#include <QList>
#include <QMainWindow>
#include <QMimeData>
#include <QString>
#include <QStringList>
#include <QTabWidget>
#include <QVariant>

#include <memory>
#include <utility>

namespace {
// Qt wraps what other programs offer; what is dragged within one arrives as the object that was made for it.
bool isFromAnotherProgram(const QMimeData& data)
{
    return data.inherits("QInternalMimeData");
}
} // namespace

QlumServerNode* QlumTavelin::findServer(unsigned int serverId) const
{
    return m_project->findServer(serverId);
}

void QlumTavelin::setSettingsValue(const QString& key, const QVariant& value)
{
    m_settings->setValue(key, value);
}

QVariant QlumTavelin::settingsValue(const QString& key, const QVariant& defaultValue) const
{
    return m_settings->value(key, defaultValue);
}

QMainWindow* QlumTavelin::mainWindow()
{
    return this;
}

QTabWidget* QlumTavelin::centralTabWidget()
{
    return m_tabs;
}

QDockWidget* QlumTavelin::addressSpaceDockWidget()
{
    return m_addressSpaceDock;
}

UaClientSdk::UaSession* QlumTavelin::session(unsigned int serverId)
{
    return m_project->registry().session(serverId);
}

QString QlumTavelin::serverName(unsigned int serverId)
{
    return m_project->registry().name(serverId);
}

unsigned int QlumTavelin::readDataTypeId(unsigned int serverId, const UaNodeId* nodeId, UaNodeId* dataType,
                                         int* valueRank, UaUInt32Array* arrayDimensions, QString* typeName,
                                         UaLocalizedText* displayName)
{
    QlumServerNode* server = findServer(serverId);
    return server
               ? server->readDataTypeId(nodeId, dataType, valueRank, arrayDimensions, typeName, displayName)
               : OpcUa_BadServerIndexInvalid;
}

QString QlumTavelin::typeName(unsigned int serverId, const UaNodeId* dataType, bool withNamespace)
{
    QlumServerNode* server = findServer(serverId);
    return server && dataType ? server->typeName(dataType, withNamespace) : QString();
}

bool QlumTavelin::isEnum(unsigned int serverId, const UaNodeId* dataType)
{
    QlumServerNode* server = findServer(serverId);
    return server && server->isEnum(dataType);
}

UaEnumDefinition QlumTavelin::getEnumDefinition(unsigned int serverId, const UaNodeId* dataType)
{
    QlumServerNode* server = findServer(serverId);
    return server ? server->getEnumDefinition(dataType) : UaEnumDefinition();
}

bool QlumTavelin::hasIcon(unsigned int serverId, const UaNodeId* nodeId)
{
    QlumServerNode* server = findServer(serverId);
    return server && server->hasIcon(nodeId);
}

QIcon QlumTavelin::getIcon(unsigned int serverId, const UaNodeId* nodeId)
{
    QlumServerNode* server = findServer(serverId);
    return server ? server->getIcon(nodeId) : QIcon();
}

bool QlumTavelin::nodeIdsFromMimeData(const QMimeData* mimeData, unsigned int* serverId, unsigned int* count,
                                      UaNodeId** nodeIds)
{
    QlumDraggedNodes dragged;
    // servers are numbered in each window from one on: its node would be looked for on a server of ours
    if (mimeData && mimeData->hasFormat(qlumNodeMimeType()) && isFromAnotherProgram(*mimeData)) {
        constexpr int warning = 50;
        log(warning,
            tr("The nodes come from another window of the program. Drag them from an address space of this "
               "one."),
            qlumNoServer, QStringLiteral("Tavelin"));
        return false;
    }
    if (!mimeData || !qlumDecodeNodes(mimeData->data(qlumNodeMimeType()), dragged) || dragged.nodes.empty())
        return false;
    *serverId = dragged.serverId;
    *count = static_cast<unsigned int>(dragged.nodes.size());
    *nodeIds = new UaNodeId[dragged.nodes.size()];
    for (std::size_t i = 0; i < dragged.nodes.size(); ++i)
        (*nodeIds)[i] = std::move(dragged.nodes[i].nodeId);
    return true;
}

QString QlumTavelin::builtinTypeName(unsigned int builtInType)
{
    return qlumBuiltinTypeName(builtInType);
}

void QlumTavelin::log(int level, const QString& text, unsigned int serverId, const QString& source)
{
    QlumCrashHandler::note(source + QStringLiteral(": ") + text); // also what is too small for the window
    if (level < m_minimumLogLevel.load())
        return;
    auto entry = std::make_unique<QlumLogEntry>();
    entry->timestamp = QDateTime::currentDateTime();
    entry->level = level;
    entry->source = source;
    if (serverId != qlumNoServer)
        entry->server = serverName(serverId);
    entry->message = text;
    m_logModel->addLog(std::move(entry));
}

void QlumTavelin::traceOutput(UaTrace::TraceLevel level, const char* text, int)
{
    if (level == UaTrace::Errors || level == UaTrace::Warning)
        log(QlumLogLevel::Error, qlumTraceInWords(QString::fromUtf8(text)), qlumNoServer,
            QStringLiteral("General"));
}

QDateTime QlumTavelin::dateTimeFromUaDateTime(OpcUa_DateTime* value)
{
    return value ? qlumDateTime(*value) : QDateTime();
}

void QlumTavelin::dateTimeToUaDateTime(const QDateTime& value, OpcUa_DateTime* result)
{
    *result = qlumUaDateTime(value);
}

QString QlumTavelin::errorMessage(unsigned int statusCode)
{
    return qlumStatusText(statusCode);
}

QlumAddressSpaceModel* QlumTavelin::createAddressSpaceModel(unsigned int serverId, const UaNodeId* startNode)
{
    QlumServerNode* server = findServer(serverId);
    return server && startNode && m_services.createSubTreeModel
               ? m_services.createSubTreeModel(server, *startNode)
               : nullptr;
}

void QlumTavelin::addAction(QAction* action)
{
    m_pages->addAction(action);
}

void QlumTavelin::removeAction(QAction* action)
{
    m_pages->removeAction(action);
}

void QlumTavelin::selectionChanged(unsigned int serverId, UaNodeId* nodeId, OpcUa_NodeClass nodeClass)
{
    m_director->selectionChanged(serverId, nodeId, nodeClass, nullptr);
}

void QlumTavelin::setModified()
{
    if (!m_loading)
        m_session->setModified();
}

int QlumTavelin::namespaceIndexFromUri(unsigned int serverId, const QString& uri)
{
    const QlumServerNode* server = findServer(serverId);
    return server ? server->namespaceIndexFromUri(uri) : -1;
}

QString QlumTavelin::namespaceUriFromIndex(unsigned int serverId, int index)
{
    const QlumServerNode* server = findServer(serverId);
    return server ? server->namespaceUriFromIndex(index) : QString();
}

QList<unsigned int> QlumTavelin::projectServerIds()
{
    return m_project->registry().ids();
}

QStringList QlumTavelin::namespaceTable(unsigned int serverId)
{
    const QlumServerNode* server = findServer(serverId);
    return server ? server->namespaceTable() : QStringList();
}
