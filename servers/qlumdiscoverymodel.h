#pragma once
#include <servers/qlumdiscoverylookup.h>
#include <uawidgets/models/qlumtreemodel.h>
#include <uawidgets/models/qlumtreenode.h>

#include <QModelIndex>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <map>
#include <memory>
#include <vector>

/// Where servers are looked for.
enum class QlumDiscoveryGroup { Local, Network, Custom, Directory, Recent };

/// A row of the discovery tree: a group, somebody who is asked about servers, or a server.
class QlumDiscoveryNode : public QlumTreeNode<QlumDiscoveryNode>
{
public:
    enum class Kind { Group, Source, Server };
    enum class State { Idle, Asking, Answered, Failed, Cancelled };

    Kind kind = Kind::Group;
    QlumDiscoveryGroup group = QlumDiscoveryGroup::Local;
    QString name; ///< as told; shown in one line
    QString url;  ///< as told
    QString details;
    State state = State::Idle;
    QString outcome; ///< what has happened to it
};

/// The places where servers can be found, those who are asked there, and the servers they have named, each
/// with what has come of it. Makes no call: whoever asks says so by begin(), and what was answered by take().
class QlumDiscoveryModel : public QlumTreeModel<QlumDiscoveryNode>
{
    Q_OBJECT
public:
    using Kind = QlumDiscoveryNode::Kind;
    using State = QlumDiscoveryNode::State;
    enum Column { Name, Address, Outcome, ColumnCount };

    explicit QlumDiscoveryModel(QObject* parent = nullptr);
    ~QlumDiscoveryModel() override;

    /// The URLs below a group, in its order: servers below "Recently used", else those who are asked. What is
    /// known of those that stay, stays.
    void setUrls(QlumDiscoveryGroup group, const QStringList& urls);

    [[nodiscard]] QModelIndex indexOfGroup(QlumDiscoveryGroup group) const;
    /// What can be asked at the row itself: the URL is that of the row.
    [[nodiscard]] bool isAskable(const QModelIndex& index) const;
    [[nodiscard]] QlumDiscoveryQuestion questionOf(const QModelIndex& index) const;
    /// Whether it is being asked, or was.
    [[nodiscard]] bool isAsked(const QModelIndex& index) const;
    /// The row of a server that can be connected.
    [[nodiscard]] bool isServer(const QModelIndex& index) const;
    /// One that the user has entered, and may take out.
    [[nodiscard]] bool isRemembered(const QModelIndex& index) const;

    /// The row is being asked; its servers of before go.
    void begin(const QModelIndex& index, QlumDiscoveryLookup::Ticket ticket);
    /// Ignores answers to questions that are not open any more.
    void take(QlumDiscoveryLookup::Ticket ticket, const QlumDiscoveryAnswer& answer);
    /// Nothing that was begun will be answered.
    void giveUp();
    /// What has come of asking a server itself for its endpoints.
    void setOutcome(const QModelIndex& index, bool isGood, const QString& outcome);

    /// Rows that were not asked yet may have children.
    [[nodiscard]] bool hasChildren(const QModelIndex& parent = QModelIndex()) const override;
    /// Servers with a URL that cannot be used are shown, and cannot be chosen.
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;

protected:
    [[nodiscard]] QVariant cell(const QlumDiscoveryNode& node, int column, int role) const override;

private:
    [[nodiscard]] static std::unique_ptr<QlumDiscoveryNode> makeNode(Kind kind, QlumDiscoveryGroup group,
                                                                     const QString& name, const QString& url);
    [[nodiscard]] QlumDiscoveryNode& groupNode(QlumDiscoveryGroup group) const;
    [[nodiscard]] static QString outcomeOf(const QlumDiscoveryAnswer& answer);
    [[nodiscard]] static QVariant text(const QlumDiscoveryNode& node, int column);
    [[nodiscard]] static QString toolTip(const QlumDiscoveryNode& node);
    void setState(QlumDiscoveryNode& node, State state, const QString& outcome);
    void dropTickets(const QlumDiscoveryNode& node);

    QlumDiscoveryNode m_root;
    std::map<QlumDiscoveryLookup::Ticket, QlumDiscoveryNode*> m_asking;
};
