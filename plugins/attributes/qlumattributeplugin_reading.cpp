// What is selected, what is read of it, and what the pane says meanwhile.
#include <plugins/attributes/qlumattributeplugin.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumtext.h>
#include <plugins/attributes/qlumattributeactions.h>
#include <plugins/attributes/qlumattributedetails.h>
#include <plugins/attributes/qlumattributemodel.h>
#include <plugins/attributes/qlumattributeview.h>
#include <plugins/attributes/qlumcustomnodeiddialog.h>
#include <plugins/attributes/qlumreadjob.h>
#include <uabase/values/uanodeid.h>
#include <uawidgets/qlummessagebar.h>
#include <uawidgets/qlumviewheading.h>

#include <QAction>
#include <QDialog>
#include <QIcon>
#include <QList>
#include <QPointer>
#include <QString>

#include <memory>
#include <utility>

using namespace QlumAttributeNames;

namespace {
QString textOf(const UaNodeId& nodeId)
{
    return toQString(nodeId.toXmlString());
}
} // namespace

// ---- what the pane says

bool QlumAttributePlugin::isUp(unsigned int serverId) const
{
    return m_followed.status(serverId) == QlumConnectionStatus::Connected;
}

QlumAttributePlugin::Node QlumAttributePlugin::selected() const
{
    return {m_followed.serverId(), m_followed.nodeId()};
}

QlumAttributePlugin::Node QlumAttributePlugin::shown() const
{
    return {m_model->serverId(), m_model->nodeId()};
}

// While reading is off the pane stays with its node, whatever is selected.
QlumAttributePlugin::Node QlumAttributePlugin::named() const
{
    return m_actions[OnOff]->isChecked() || m_isReading || shown().isNone() ? selected() : shown();
}

QlumAttributeModel::Standing QlumAttributePlugin::standing(const Node& node) const
{
    using Standing = QlumAttributeModel::Standing;
    if (shown().isNone())
        return Standing::Current;
    if (shown() != node)
        return Standing::Left;
    return m_isOutdated || !isUp(node.serverId) ? Standing::Outdated : Standing::Current;
}

void QlumAttributePlugin::showState()
{
    if (!m_heading)
        return; // the window has gone
    const Node node = named();
    if (std::exchange(m_named, node) != node)
        dismiss(writeTopic); // a node that is read again after a failed write keeps its message
    m_model->setStanding(standing(node));
    m_view->setEmptyText(emptyText());
    showHeading(node);
    watchShown();
}

void QlumAttributePlugin::dismiss(const QString& topic)
{
    if (m_messages)
        m_messages->dismiss(topic);
}

void QlumAttributePlugin::showHeading(const Node& node)
{
    if (node.serverId == qlumNoServer) {
        m_heading->clear();
        return;
    }
    m_heading->setServer(m_app->serverName(node.serverId));
    m_heading->setNode(node.nodeId.isNull() ? QString() : textOf(node.nodeId));
    m_heading->setStatus(m_followed.status(node.serverId));
    if (shown().isNone())
        m_heading->forget();
    if (m_isReading)
        m_heading->setActivity(tr("reading..."));
    else if (!m_actions[OnOff]->isChecked() && !selected().isNone())
        m_heading->setActivity(tr("reading is off"));
    else
        m_heading->setActivity({});
}

QString QlumAttributePlugin::emptyText() const
{
    if (!m_failure.isEmpty())
        return m_failure;
    if (selected().isNone())
        return tr("Select a node in the address space window.");
    const QString node = textOf(m_followed.nodeId());
    if (m_isReading)
        return tr("The attributes of %1 are being read...").arg(node);
    if (!m_actions[OnOff]->isChecked())
        return tr("Reading is off. Press On/Off to read the attributes of %1.").arg(node);
    return tr("The attributes of %1 are read when its server is connected.").arg(node);
}

// ---- what is selected

void QlumAttributePlugin::showSelected()
{
    m_custom = Node();
    m_failure.clear();
    if (const Node node = selected(); !node.isNone())
        visit({node.serverId, node.nodeId, m_followed.choice().nodeClass});
    stopReading(); // nobody waits for the node that was left
    dismiss(readTopic);
    if (m_actions[OnOff]->isChecked())
        readSelected();
    else
        showState();
}

void QlumAttributePlugin::selectionChanged(unsigned int serverId, UaNodeId* nodeId, OpcUa_NodeClass nodeClass,
                                           UaNodeId* parentId)
{
    if (nodeId && parentId)
        m_model->setFoundBelow(serverId, *nodeId, *parentId);
    m_followed.select(serverId, nodeId, nodeClass);
    showSelected();
}

// Its tree comes into sight with the node that was selected in it.
void QlumAttributePlugin::serverSelectionChanged(unsigned int serverId)
{
    if (m_followed.selectServer(serverId))
        showSelected();
}

void QlumAttributePlugin::sltSetCustomNodeId()
{
    QPointer<QlumCustomNodeIdDialog> dialog =
        new QlumCustomNodeIdDialog(*m_app, m_followed.serverId(), m_app->mainWindow());
    const bool accepted = dialog->exec() == QDialog::Accepted;
    const Node chosen = dialog ? Node{dialog->serverId(), dialog->nodeId()} : Node();
    delete dialog;
    if (!accepted || chosen.isNone())
        return;
    m_custom = chosen;
    read(chosen, std::nullopt);
}

void QlumAttributePlugin::sltNodeClassRead(unsigned int serverId, const UaNodeId& nodeId,
                                           OpcUa_NodeClass nodeClass)
{
    if (m_custom != Node{serverId, nodeId})
        return; // the user has gone on
    m_custom = Node();
    m_followed.select(serverId, &nodeId, nodeClass);
    m_failure.clear();
    visit({serverId, nodeId, nodeClass});
    m_isReading = true; // the same job goes on with its attributes
    dismiss(readTopic);
    showState();
}

// ---- reading

void QlumAttributePlugin::sltRefresh()
{
    m_custom = Node();
    stopReading();
    readSelected();
}

void QlumAttributePlugin::sltOnOff(bool on)
{
    m_actions[OnOff]->setIcon(
        QIcon(on ? QStringLiteral(":/images/on.png") : QStringLiteral(":/images/off.png")));
    if (on)
        sltRefresh();
    else
        showState();
}

void QlumAttributePlugin::readAgain()
{
    if (m_custom.isNone())
        sltRefresh();
    else
        read(m_custom, std::nullopt);
}

// The selection that goes with every write has it read where reading is on. Where it is off the user wants to
// know nevertheless what became of his value.
void QlumAttributePlugin::readBack(bool isSelected)
{
    if (shown() == selected() && !(isSelected && m_actions[OnOff]->isChecked()))
        sltRefresh();
}

// A server that is known to be away is not asked: ids may mean something else when it is back. One whose link
// is only interrupted may answer.
void QlumAttributePlugin::readSelected()
{
    m_isDue = false;
    const Node node = selected();
    if (!node.isNone() && m_followed.canAsk()) {
        m_failure.clear();
        m_isReading = true;
        read(node, m_followed.choice().nodeClass);
    } else if (!shown().isNone() && shown() != node) {
        m_model->clear();
    }
    showState();
}

void QlumAttributePlugin::stopReading()
{
    m_pool->cancelAll();
    m_isReading = false;
}

void QlumAttributePlugin::read(const Node& node, std::optional<OpcUa_NodeClass> nodeClass)
{
    auto made = std::make_unique<QlumReadJob>(node.serverId, node.nodeId, nodeClass, m_services);
    QlumReadJob* job = made.get();
    const auto nodeClassRead = [this, job](unsigned int serverId, const UaNodeId& nodeId,
                                           OpcUa_NodeClass read) {
        job->post([this, serverId, nodeId, read] { sltNodeClassRead(serverId, nodeId, read); });
    };
    const auto newData = [this, job, node](unsigned int, const UaNodeId&, OpcUa_NodeClass read, int count,
                                           const QList<int>& attributeIds, OpcUa_DataValue* results) {
        UaDataValues values;
        values.attach(count, results); // freed when nobody waits for them any more
        job->post([=, this, values = std::move(values)]() mutable {
            takeResult(node, read, attributeIds, values);
        });
    };
    const auto detailsRead = [this, job](unsigned int serverId, const UaNodeId& nodeId,
                                         const QlumAttributeDetails& details) {
        job->post([this, serverId, nodeId, details] { m_model->addDetails(serverId, nodeId, details); });
    };
    const auto failed = [this, job, node](unsigned int, const UaNodeId&, const QString& why) {
        job->post([this, node, why] { readFailed(node, why); });
    };
    connect(job, &QlumReadJob::failed, job, failed, Qt::DirectConnection);
    connect(job, &QlumReadJob::nodeClassRead, job, nodeClassRead, Qt::DirectConnection);
    connect(job, &QlumReadJob::detailsRead, job, detailsRead, Qt::DirectConnection);
    connect(job, &QlumReadJob::newData, job, newData, Qt::DirectConnection);
    m_pool->add({tr("Reading attributes"), node.serverId}, std::move(made),
                [this, node](QlumWorkEnd end) { readEnded(node, end); });
}

void QlumAttributePlugin::takeResult(const Node& node, OpcUa_NodeClass nodeClass,
                                     const QList<int>& attributeIds, UaDataValues& results)
{
    if (node != selected())
        return; // the user has gone on
    m_isReading = false;
    m_isOutdated = false;
    m_failure.clear();
    const int count = static_cast<int>(results.length());
    m_model->setData(node.serverId, node.nodeId, nodeClass, count, attributeIds, results.detach());
    if (m_heading)
        m_heading->touch();
    dismiss(readTopic);
    showState();
}

void QlumAttributePlugin::readFailed(const Node& node, const QString& why)
{
    if (!m_messages || (selected() != node && m_custom != node))
        return; // the user has gone on
    const QString what = tr("The attributes of %1 could not be read.").arg(textOf(node.nodeId));
    if (selected() == node) {
        m_isReading = false;
        m_isOutdated = true;
        m_failure = what;
        if (shown() != node)
            m_model->clear();
    }
    m_messages->tell({QlumMessage::Error, readTopic, what,
                      tr("%1: %2").arg(m_app->serverName(node.serverId), why), tr("Try &Again"),
                      [this] { readAgain(); }});
    showState();
}

// The user may end the work, and it may fail in a way that says nothing to us.
void QlumAttributePlugin::readEnded(const Node& node, QlumWorkEnd end)
{
    if (node == selected() ? m_isReading : end != QlumWorkEnd::Done)
        readFailed(node, end == QlumWorkEnd::Cancelled ? tr("The reading was cancelled.")
                                                       : tr("The reading failed; the log says more."));
}

// ---- servers

void QlumAttributePlugin::sessionStatusChanged(unsigned int serverId, QlumConnectionStatus status,
                                               const NamespaceMap& namespaceMap)
{
    const bool isSelected = m_followed.serverId() == serverId;
    const Node before = selected();
    if (isSelected && (status == QlumConnectionStatus::NewSessionCreated || !namespaceMap.isEmpty()))
        stopReading(); // by ids of the session that has gone
    const bool isBack = m_followed.statusChanged(serverId, status, namespaceMap);
    if (!isUp(serverId) && shown().serverId == serverId)
        m_isOutdated = true;
    if (!namespaceMap.isEmpty())
        forgetOldIds(serverId);
    if (isSelected && !before.isNone() && selected().isNone())
        m_failure = tr("The node %1 is not on the server any more: its namespace has gone.")
                        .arg(textOf(before.nodeId));
    if (isBack && !selected().isNone() && m_actions[OnOff]->isChecked())
        readOnReturn();
    else
        showState(); // the server's name may be another one, too
}

// What the user is typing outlives a short interruption; the rows are made anew when he has done.
void QlumAttributePlugin::readOnReturn()
{
    m_isDue = m_heading && m_view->isEditing() && shown() == selected(); // the window may have gone
    if (m_isDue) {
        m_isOutdated = false;
        showState();
        return;
    }
    stopReading();
    readSelected();
}

void QlumAttributePlugin::readWhatIsDue()
{
    if (std::exchange(m_isDue, false))
        sltRefresh();
}

// They are other nodes now.
void QlumAttributePlugin::forgetOldIds(unsigned int serverId)
{
    m_visited.forgetServer(serverId);
    m_model->setFoundBelow(qlumNoServer, {}, {});
    showCommands();
    if (m_custom.serverId == serverId)
        m_custom = Node();
    if (m_model->serverId() == serverId)
        m_model->clear();
}

void QlumAttributePlugin::sessionRemoved(unsigned int serverId)
{
    m_pool->endServer(serverId); // also what reads a node that was left
    m_visited.forgetServer(serverId);
    showCommands();
    const bool wasSelected = m_followed.removeServer(serverId);
    if (m_messages && (wasSelected || m_custom.serverId == serverId))
        m_messages->dismiss();
    if (m_custom.serverId == serverId)
        m_custom = Node();
    if (wasSelected) {
        m_isReading = false;
        m_failure.clear();
    }
    if (m_model->serverId() == serverId)
        emit sigClear();
    showState();
}

// The view keeps what is open and selected. A node that is just being read needs no second read: rows are
// made by the definitions of that moment.
void QlumAttributePlugin::dataTypesLoaded(unsigned int serverId)
{
    if (serverId == m_followed.serverId() && selected() == shown() && m_custom.isNone() &&
        m_actions[OnOff]->isChecked() && m_heading && !m_view->isEditing())
        sltRefresh();
}
