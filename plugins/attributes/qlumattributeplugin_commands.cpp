// What the user does with the node that is shown: going back, watching, editing in a window, copying.
#include <plugins/attributes/qlumattributeplugin.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumjob.h>
#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <plugins/attributes/qlumattributeactions.h>
#include <plugins/attributes/qlumattributemodel.h>
#include <plugins/attributes/qlumattributeview.h>
#include <plugins/attributes/qlumbrowsepath.h>
#include <uabase/values/uaexpandednodeid.h>
#include <uabase/values/uastatus.h>
#include <uawidgets/editors/qlumcontextreader.h>
#include <uawidgets/editors/qlumvaluecontext.h>
#include <uawidgets/editors/qlumvaluedialog.h>
#include <uawidgets/qlummessagebar.h>
#include <uawidgets/qlumviewheading.h>

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QMainWindow>
#include <QModelIndex>
#include <QString>

using namespace QlumAttributeNames;

void QlumAttributePlugin::showCommands()
{
    m_actions[Back]->setEnabled(m_visited.canGoBack());
    m_actions[Forward]->setEnabled(m_visited.canGoForward());
    m_actions[UndoWrite]->setEnabled(m_model->canUndo());
    m_actions[CompareNodes]->setEnabled(!m_kept.rows.empty());
}

// ---- where the user was

void QlumAttributePlugin::visit(const QlumVisitedNode& node)
{
    m_visited.visit(node);
    showCommands();
}

// All views follow; ours finds itself where it is already.
void QlumAttributePlugin::sltBack()
{
    if (!m_visited.canGoBack())
        return;
    const QlumVisitedNode node = m_visited.goBack();
    UaNodeId nodeId = node.nodeId;
    m_app->selectionChanged(node.serverId, &nodeId, node.nodeClass);
    showCommands();
}

void QlumAttributePlugin::sltForward()
{
    if (!m_visited.canGoForward())
        return;
    const QlumVisitedNode node = m_visited.goForward();
    UaNodeId nodeId = node.nodeId;
    m_app->selectionChanged(node.serverId, &nodeId, node.nodeClass);
    showCommands();
}

// ---- watching

void QlumAttributePlugin::sltLive(bool)
{
    dismiss(liveTopic);
    watchShown();
}

void QlumAttributePlugin::watchShown()
{
    const Node node = shown();
    const bool isVariable = m_followed.choice().nodeClass == OpcUa_NodeClass_Variable && node == selected();
    if (m_actions[Live]->isChecked() && isVariable && !node.isNone())
        m_live->watch(node.serverId, node.nodeId);
    else
        m_live->stop();
}

// What the user is typing is not taken from him.
void QlumAttributePlugin::sltShowLive(const UaDataValue& value)
{
    if (!m_heading || m_view->isEditing() || m_isReading)
        return;
    m_model->showValue(m_followed.serverId(), m_followed.nodeId(), value);
    m_heading->touch();
}

// ---- editing

void QlumAttributePlugin::sltUndoWrite()
{
    m_model->undo();
}

void QlumAttributePlugin::sltEditInWindow()
{
    editInWindow(m_view->currentIndex());
}

void QlumAttributePlugin::editInWindow(const QModelIndex& index)
{
    const QModelIndex row = index.siblingAtColumn(QlumAttributeModel::ValueColumn);
    const auto writer = m_model->partWriter(row);
    if (!writer)
        return;
    QlumValueContext context = m_model->editContext(row);
    context.browseNode = qlumNodeChoice(m_model->serverId());
    auto* dialog =
        new QlumValueDialog(context, m_app->mainWindow(), QStringLiteral("QlumAttributeValueDialog"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setHeading(tr("%1: %2, %3")
                           .arg(m_app->serverName(m_model->serverId()),
                                toQString(m_model->nodeId().toXmlString()), m_view->pathOf(row)));
    dialog->setValue(m_model->rowValue(row).value);
    const QString lock = m_model->lock(row);
    dialog->setReadOnly(!lock.isEmpty() || !m_model->nodeAt(row)->isWritable());
    dialog->setTaker(writer);
    dialog->show();
}

// ---- comparing

QlumComparisonWindow::Node QlumAttributePlugin::shownNode() const
{
    const Node node = shown();
    return {tr("%1: %2").arg(m_app->serverName(node.serverId), toQString(node.nodeId.toXmlString())),
            qlumShownRows(*m_model)};
}

void QlumAttributePlugin::sltKeepNode()
{
    if (!shown().isNone())
        m_kept = shownNode();
    showCommands();
}

void QlumAttributePlugin::sltCompareNodes()
{
    if (m_kept.rows.empty() || shown().isNone())
        return;
    auto* window = new QlumComparisonWindow(m_kept, shownNode(), m_app->mainWindow());
    window->setAttribute(Qt::WA_DeleteOnClose);
    window->show();
}

// ---- copying

void QlumAttributePlugin::sltCopyUriNodeId()
{
    const Node node = shown();
    if (node.isNone())
        return;
    const QString uri = m_app->namespaceUriFromIndex(node.serverId, node.nodeId.namespaceIndex());
    QGuiApplication::clipboard()->setText(
        toQString(UaExpandedNodeId(node.nodeId, toUaString(uri)).toString()));
}

void QlumAttributePlugin::sltCopyBrowsePath()
{
    const Node node = shown();
    if (node.isNone())
        return;
    dismiss(pathTopic);
    m_pool->add({tr("Reading a browse path"), node.serverId},
                [this, node, services = m_services](QlumJob& job) {
                    const std::shared_ptr<QlumSessionServices> session = services(node.serverId);
                    QString path;
                    UaStatus status(OpcUa_BadServerNotConnected);
                    if (session)
                        status = qlumReadBrowsePath(job, *session, node.nodeId, path);
                    job.post([this, status, path] {
                        if (status.isGood())
                            QGuiApplication::clipboard()->setText(path);
                        else if (m_messages)
                            m_messages->tell({QlumMessage::Error,
                                              pathTopic,
                                              tr("The browse path could not be read."),
                                              qlumResultInWords(status),
                                              {},
                                              {}});
                    });
                });
}
