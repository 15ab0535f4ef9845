#include <servers/qlumdiscoverymodel.h>

#include <app/api/qlumdisplaytext.h>
#include <opcua/opcua_statuscodes.h>
#include <servers/qlumconnectfailure.h>
#include <servers/qlumendpointchoice.h>
#include <uawidgets/table/qlumstatuslook.h>

#include <QFont>
#include <QIcon>
#include <QLocale>
#include <QModelIndex>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <algorithm>
#include <utility>

namespace {
using Group = QlumDiscoveryGroup;

// Where discovery servers of a machine listen.
QString localUrl()
{
    return QStringLiteral("opc.tcp://localhost:4840");
}
} // namespace

QlumDiscoveryModel::QlumDiscoveryModel(QObject* parent)
    : QlumTreeModel({tr("Server"), tr("Address"), tr("Result")}, parent)
{
    const QString names[] = {tr("Local"), tr("Network"), tr("Custom Discovery"),
                             tr("Global Discovery Servers"), tr("Recently used")};
    const QString details[] = {
        tr("Servers that the discovery server of this machine knows, at port 4840."),
        tr("Servers that known discovery servers have heard of in their networks."),
        tr("Discovery servers that you have entered. They are kept for the next time."),
        tr("Global discovery servers that you have entered, whose directory is read."),
        tr("Addresses of servers that you have used, the latest first."),
    };
    for (int i = 0; i < 5; ++i) {
        auto node = makeNode(Kind::Group, static_cast<Group>(i), names[i], QString());
        node->details = details[i];
        m_root.appendChild(std::move(node));
    }
    groupNode(Group::Local).url = localUrl();
    setRoot(&m_root);
}

QlumDiscoveryModel::~QlumDiscoveryModel() = default;

std::unique_ptr<QlumDiscoveryNode> QlumDiscoveryModel::makeNode(Kind kind, QlumDiscoveryGroup group,
                                                                const QString& name, const QString& url)
{
    auto node = std::make_unique<QlumDiscoveryNode>();
    node->kind = kind;
    node->group = group;
    node->name = name;
    node->url = url;
    return node;
}

QlumDiscoveryNode& QlumDiscoveryModel::groupNode(QlumDiscoveryGroup group) const
{
    return *m_root.child(static_cast<int>(group));
}

void QlumDiscoveryModel::setUrls(QlumDiscoveryGroup group, const QStringList& urls)
{
    QlumDiscoveryNode& parent = groupNode(group);
    QStringList there;
    for (int row = parent.childCount() - 1; row >= 0; --row) {
        const QlumDiscoveryNode& child = *parent.child(row);
        if (urls.contains(child.url)) {
            there.append(child.url);
            continue;
        }
        dropTickets(child);
        removeNodes(parent, row, 1);
    }
    const Kind kind = group == Group::Recent ? Kind::Server : Kind::Source;
    for (int i = 0; i < urls.size(); ++i) {
        if (there.contains(urls.at(i)))
            continue;
        std::vector<std::unique_ptr<QlumDiscoveryNode>> added;
        added.push_back(makeNode(kind, group, urls.at(i), urls.at(i)));
        insertNodes(parent, std::min(i, parent.childCount()), std::move(added));
    }
    tellChanged(parent);
}

// ---- what a row is

QModelIndex QlumDiscoveryModel::indexOfGroup(QlumDiscoveryGroup group) const
{
    return indexOf(&groupNode(group));
}

bool QlumDiscoveryModel::isAskable(const QModelIndex& index) const
{
    const QlumDiscoveryNode* node = nodeAt(index);
    return node && (node->kind == Kind::Source || (node->kind == Kind::Group && node->group == Group::Local));
}

QlumDiscoveryQuestion QlumDiscoveryModel::questionOf(const QModelIndex& index) const
{
    const QlumDiscoveryNode* node = nodeAt(index);
    if (node && node->group == Group::Network)
        return QlumDiscoveryQuestion::Network;
    return node && node->group == Group::Directory ? QlumDiscoveryQuestion::Directory
                                                   : QlumDiscoveryQuestion::Servers;
}

bool QlumDiscoveryModel::isAsked(const QModelIndex& index) const
{
    const QlumDiscoveryNode* node = nodeAt(index);
    return node && node->state != State::Idle;
}

bool QlumDiscoveryModel::isServer(const QModelIndex& index) const
{
    const QlumDiscoveryNode* node = nodeAt(index);
    return node && node->kind == Kind::Server && qlumIsUsableUrl(node->url);
}

bool QlumDiscoveryModel::isRemembered(const QModelIndex& index) const
{
    const QlumDiscoveryNode* node = nodeAt(index);
    if (!node || !node->parent() || node->parent()->kind != Kind::Group || node->kind == Kind::Group)
        return false;
    return node->group == Group::Custom || node->group == Group::Directory || node->group == Group::Recent;
}

bool QlumDiscoveryModel::hasChildren(const QModelIndex& parent) const
{
    if (rowCount(parent) > 0)
        return true;
    return isAskable(parent) && parent.column() == 0 && !isAsked(parent);
}

Qt::ItemFlags QlumDiscoveryModel::flags(const QModelIndex& index) const
{
    const Qt::ItemFlags usual = QlumTreeModel::flags(index);
    const QlumDiscoveryNode* node = nodeAt(index);
    return node && node->kind == Kind::Server && !qlumIsUsableUrl(node->url)
               ? usual & ~(Qt::ItemIsEnabled | Qt::ItemIsSelectable)
               : usual;
}

// ---- asking and answers

void QlumDiscoveryModel::begin(const QModelIndex& index, QlumDiscoveryLookup::Ticket ticket)
{
    QlumDiscoveryNode& node = *nodeAt(index);
    dropTickets(node);
    removeNodes(node, 0, node.childCount());
    m_asking[ticket] = &node;
    setState(node, State::Asking, tr("Asking..."));
}

void QlumDiscoveryModel::take(QlumDiscoveryLookup::Ticket ticket, const QlumDiscoveryAnswer& answer)
{
    const auto found = m_asking.find(ticket);
    if (found == m_asking.end())
        return;
    QlumDiscoveryNode& node = *found->second;
    m_asking.erase(found);
    if (OpcUa_IsBad(answer.status))
        return setState(node, State::Failed, outcomeOf(answer));
    std::vector<std::unique_ptr<QlumDiscoveryNode>> servers;
    servers.reserve(static_cast<std::size_t>(answer.servers.size()));
    for (const QlumFoundServer& server : answer.servers) {
        servers.push_back(makeNode(Kind::Server, node.group, server.name, server.url));
        servers.back()->details = server.details;
        if (!qlumIsUsableUrl(server.url))
            servers.back()->outcome = tr("This address cannot be used here.");
    }
    insertNodes(node, 0, std::move(servers));
    setState(node, State::Answered, outcomeOf(answer));
}

QString QlumDiscoveryModel::outcomeOf(const QlumDiscoveryAnswer& answer)
{
    if (OpcUa_IsBad(answer.status))
        return qlumFailureReason(answer.status);
    if (answer.told == 0)
        return tr("It knows no servers.");
    const QLocale locale;
    if (answer.told > QlumDiscoveryLimits::servers)
        return tr("More than %1 servers, of which %1 are shown.")
            .arg(locale.toString(QlumDiscoveryLimits::servers));
    return tr("%n server(s)", nullptr, answer.told);
}

void QlumDiscoveryModel::giveUp()
{
    for (const auto& [ticket, node] : std::exchange(m_asking, {}))
        setState(*node, State::Cancelled, tr("Cancelled"));
}

void QlumDiscoveryModel::setOutcome(const QModelIndex& index, bool isGood, const QString& outcome)
{
    if (QlumDiscoveryNode* node = nodeAt(index); node && node->kind == Kind::Server)
        setState(*node, isGood ? State::Answered : State::Failed, outcome);
}

void QlumDiscoveryModel::setState(QlumDiscoveryNode& node, State state, const QString& outcome)
{
    node.state = state;
    node.outcome = outcome;
    tellChanged(node);
}

void QlumDiscoveryModel::dropTickets(const QlumDiscoveryNode& node)
{
    std::erase_if(
        m_asking, [&](const auto& asked) { return asked.second == &node; });
}

// ---- what a row shows

QVariant QlumDiscoveryModel::cell(const QlumDiscoveryNode& node, int column, int role) const
{
    switch (role) {
    case Qt::DisplayRole:
        return text(node, column);
    case Qt::ToolTipRole:
        return qlumPlainToolTip(toolTip(node));
    default:
        break;
    }
    if (column != Outcome || node.outcome.isEmpty())
        return {};
    if (node.state == State::Failed)
        return qlumStatusCell(QlumStatusLevel::Bad, role);
    return node.state == State::Answered ? qlumStatusCell(QlumStatusLevel::Good, role) : QVariant();
}

QVariant QlumDiscoveryModel::text(const QlumDiscoveryNode& node, int column)
{
    const auto line = [](const QString& text) { return qlumCutText(qlumSingleLine(text)); };
    switch (column) {
    case Name:
        return node.name.isEmpty() ? tr("(without a name)") : line(node.name);
    case Address:
        return node.url == node.name ? QString() : line(node.url);
    case Outcome:
        if (node.kind == Kind::Group && node.outcome.isEmpty() && node.group != Group::Local)
            return node.childCount() == 0 ? tr("None yet") : QString();
        return node.outcome;
    default:
        return {};
    }
}

QString QlumDiscoveryModel::toolTip(const QlumDiscoveryNode& node)
{
    QStringList lines;
    for (const QString& part : {node.name, node.url, node.details, node.outcome})
        if (!part.isEmpty() && !lines.contains(part))
            lines.append(qlumCutText(part));
    return lines.join(QLatin1Char('\n'));
}
