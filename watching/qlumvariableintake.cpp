#include <watching/qlumvariableintake.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumdroppednodes.h>
#include <app/api/qlumjob.h>
#include <app/api/qlumjobpool.h>
#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_attributes.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/qlummessagebar.h>
#include <watching/qlumdadescriber.h>

#include <QAbstractButton>
#include <QDropEvent>
#include <QMessageBox>
#include <QMimeData>
#include <QObject>
#include <QPushButton>
#include <QString>

#include <algorithm>
#include <cstddef>
#include <map>
#include <memory>
#include <span>
#include <utility>
#include <vector>

namespace {
const QString topic = QStringLiteral("drop");
}

QlumVariableIntake::QlumVariableIntake(Owner owner, QObject* parent)
    : QObject(parent), m_owner(std::move(owner))
{
}

bool QlumVariableIntake::canTake(const QMimeData* data)
{
    return qlumMayHaveNodes(data);
}

void QlumVariableIntake::takeDrop(QlumApplicationInterface& application, QDropEvent* event)
{
    const QlumToolNodes nodes = qlumDroppedNodes(application, event->mimeData());
    if (nodes.empty()) {
        m_owner.tell({QlumMessage::Error,
                      topic,
                      tr("What was dropped cannot be read."),
                      tr("It does not come from an address space of this program, or it is damaged."),
                      {},
                      {}});
        return;
    }
    const unsigned int serverId = nodes.front().serverId;
    if (application.serverName(serverId).isEmpty() && !application.projectServerIds().contains(serverId)) {
        m_owner.tell({QlumMessage::Error,
                      topic,
                      tr("What was dropped belongs to no server of this project."),
                      tr("Nodes of another window of the program have to be looked for here first."),
                      {},
                      {}});
        return;
    }
    event->acceptProposedAction();
    take(nodes);
}

void QlumVariableIntake::take(std::span<const QlumToolNode> nodes)
{
    m_owner.dismiss(topic);
    std::map<unsigned int, QlumToolNodes> byServer;
    for (const QlumToolNode& node : nodes)
        byServer[node.serverId].push_back(node);
    for (const auto& [serverId, ofServer] : byServer)
        addNodesOf(serverId, ofServer);
}

// Whether a node is a variable has to be asked where nobody has said so. Without a connection that waits: the
// row says then what the server makes of it.
void QlumVariableIntake::addNodesOf(unsigned int serverId, const QlumToolNodes& nodes)
{
    const std::shared_ptr<QlumSessionServices> services = m_owner.services(serverId);
    const bool areVariables = std::all_of(nodes.begin(), nodes.end(), [](const QlumToolNode& node) {
        return node.nodeClass == OpcUa_NodeClass_Variable;
    });
    if (areVariables || !services || !services->isConnected()) {
        m_owner.add(serverId, nodes);
        return;
    }
    const auto work = [this, serverId, services, nodes](QlumJob& job) {
        UaReadValueIds ids(static_cast<OpcUa_UInt32>(nodes.size()) * 2);
        for (OpcUa_UInt32 i = 0; i < ids.length(); ++i) {
            static_cast<void>(nodes[i / 2].nodeId.copyTo(&ids[i].NodeId)); // else null, which is refused
            ids[i].AttributeId = i % 2 == 0 ? OpcUa_Attributes_NodeClass : OpcUa_Attributes_DisplayName;
        }
        UaClientSdk::ServiceSettings settings = job.serviceSettings();
        UaDataValues values;
        const UaStatus status = services->read(settings, 0, OpcUa_TimestampsToReturn_Neither, ids, values);
        QlumToolNodes variables, branches;
        for (OpcUa_UInt32 i = 0; i < nodes.size(); ++i) {
            QlumToolNode node = nodes[i];
            const bool isKnown = status.isGood() && values.length() == ids.length();
            if (isKnown && node.name.isEmpty())
                node.name = toQString(UaVariant(values[i * 2 + 1].Value).toLocalizedText().text());
            const bool isBranch = isKnown && OpcUa_IsGood(values[i * 2].StatusCode) &&
                                  UaVariant(values[i * 2].Value).toInt32() !=
                                      static_cast<OpcUa_Int32>(OpcUa_NodeClass_Variable);
            (isBranch ? branches : variables).push_back(node);
        }
        job.post([this, serverId, variables, branches] {
            m_owner.add(serverId, variables);
            if (!branches.empty())
                countBranches(serverId, branches);
        });
    };
    m_owner.pool->add({tr("Looking at what was dropped"), serverId}, work);
}

void QlumVariableIntake::countBranches(unsigned int serverId, const QlumToolNodes& roots)
{
    const std::shared_ptr<QlumSessionServices> services = m_owner.services(serverId);
    if (!services)
        return;
    std::vector<UaNodeId> ids;
    for (const QlumToolNode& root : roots)
        ids.push_back(root.nodeId);
    const QString name =
        !roots.front().name.isEmpty() ? roots.front().name : toQString(roots.front().nodeId.toXmlString());
    const auto limit = m_owner.branchLimit();
    const auto work = [this, serverId, services, ids, name, limit](QlumJob& job) {
        QlumDaBranch::Result found = QlumDaBranch(*services, job, limit).find(ids);
        job.post([this, serverId, name, found = std::move(found)] { askAboutBranch(serverId, name, found); });
    };
    m_owner.pool->add({tr("Counting the variables below %1").arg(name), serverId}, work);
}

void QlumVariableIntake::askAboutBranch(unsigned int serverId, const QString& name,
                                        const QlumDaBranch::Result& found)
{
    if (found.variables.empty()) {
        m_owner.tell({found.status.isBad() ? QlumMessage::Error : QlumMessage::Note,
                      topic,
                      tr("No variables were found below \"%1\".").arg(name),
                      found.status.isBad() ? qlumResultInWords(found.status)
                                           : tr("There are objects, methods or properties only."),
                      {},
                      {}});
        return;
    }
    auto* box = new QMessageBox(
        QMessageBox::Question, tr("Add a Branch"),
        tr("Below \"%1\" are %n variable(s).", nullptr, static_cast<int>(found.variables.size())).arg(name),
        QMessageBox::Yes | QMessageBox::Cancel, m_owner.widget);
    QString more = tr("Shall they all be added to this view?");
    if (found.isCut)
        more = tr("There may be more: looking ended there.") + QLatin1Char(' ') + more;
    if (found.status.isBad())
        more = tr("Looking ended early (%1).").arg(qlumResultInWords(found.status)) + QLatin1Char(' ') + more;
    box->setObjectName(QStringLiteral("addBranch"));
    box->setTextFormat(Qt::PlainText);
    box->setInformativeText(more);
    box->button(QMessageBox::Yes)->setText(tr("&Add"));
    box->setAttribute(Qt::WA_DeleteOnClose);
    connect(box, &QMessageBox::finished, this, [this, serverId, variables = found.variables](int answer) {
        if (answer != QMessageBox::Yes)
            return;
        QlumToolNodes nodes;
        nodes.reserve(variables.size());
        for (const QlumDaBranch::Variable& one : variables)
            nodes.push_back({serverId, one.nodeId, OpcUa_NodeClass_Variable, {}, one.name});
        m_owner.add(serverId, nodes);
    });
    box->open();
}
