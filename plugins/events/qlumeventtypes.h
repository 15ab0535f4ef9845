#pragma once
#include <app/api/qlumjobpool.h>
#include <app/api/qlumsessionservices.h>
#include <plugins/events/qlumeventtypetree.h>
#include <uabase/values/uanodeid.h>

#include <QObject>
#include <QString>

#include <map>
#include <memory>
#include <set>

/// The event types of the servers, read once for all views and kept until the session is another one or the
/// types have changed. GUI thread.
class QlumEventTypes : public QObject
{
    Q_OBJECT
public:
    /// A tree that nobody changes.
    using Tree = std::shared_ptr<const QlumEventNodeTypeTree>;

    explicit QlumEventTypes(QlumSessionServicesProvider services, QObject* parent = nullptr);
    ~QlumEventTypes() override;

    /// Null while it is not there.
    [[nodiscard]] Tree tree(unsigned int serverId) const;
    /// Reads it in the background, unless it is there or being read; answered by one of the signals.
    void request(unsigned int serverId);
    /// Why the tree is not complete; empty for one that is, or for none. request() reads one again of which
    /// something failed.
    [[nodiscard]] QString gap(unsigned int serverId) const;
    [[nodiscard]] bool isReading(unsigned int serverId) const { return m_reading.count(serverId) != 0; }
    /// What was read holds no more.
    void forget(unsigned int serverId);
    /// The address space has changed at a node; forgets the tree when it is one of the types.
    void nodeChanged(unsigned int serverId, const UaNodeId& nodeId);
    /// Whether an event type is another one or below it, as far as the tree is there.
    [[nodiscard]] bool derives(unsigned int serverId, const UaNodeId& type, const UaNodeId& base) const;
    /// Nothing of that server is called any more.
    void sessionRemoved(unsigned int serverId);

    /// The name of an event type; its id until the name was read, which is then told by namesRead().
    [[nodiscard]] QString typeName(unsigned int serverId, const UaNodeId& typeId);

signals:
    /// tree() is there.
    void treeRead(unsigned int serverId);
    /// It could not be read, or nobody wanted it any more.
    void treeFailed(unsigned int serverId, const QString& why);
    /// What was kept of the server's types was forgotten.
    void treeForgotten(unsigned int serverId);
    /// typeName() knows more than before.
    void namesRead();

private:
    struct Kept
    {
        Tree tree;
        QString gap;            ///< what is missing of it
        bool hasFailed = false; ///< it may be read completely another time
        UaNodeId session;       ///< in which it was read
        std::map<UaNodeId, QString> names;
        std::set<UaNodeId> asked; ///< names that are being read, or cannot be
    };

    void take(unsigned int serverId, Kept read);
    void giveUp(unsigned int serverId, const QString& why);
    void askName(unsigned int serverId, const UaNodeId& typeId);

    const QlumSessionServicesProvider m_services;
    std::map<unsigned int, Kept> m_kept;
    std::map<unsigned int, QlumJobPool::Ticket> m_reading;
    QlumJobPool m_pool; ///< last: joined first
};
