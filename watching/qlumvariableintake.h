// Nodes that are dropped on a view of values.
#pragma once
#include <app/api/qlumsessionservices.h>
#include <app/api/qlumtoolservices.h>
#include <uawidgets/qlummessagebar.h>
#include <watching/qlumdadescriber.h>

#include <QObject>
#include <QString>

#include <cstddef>
#include <functional>
#include <span>

class QDropEvent;
class QMimeData;
class QWidget;
class QlumApplicationInterface;
class QlumJobPool;

/// Finds out which of the nodes that come are variables. Of all others the variables below are counted, and
/// the user is asked whether he wants them all. GUI thread.
class QlumVariableIntake : public QObject
{
    Q_OBJECT
public:
    /// Whose view it is. The pool goes before this does.
    struct Owner
    {
        QWidget* widget = nullptr;
        QlumSessionServicesProvider services;
        QlumJobPool* pool = nullptr;
        std::function<std::size_t()> branchLimit;                                   ///< variables
        std::function<void(unsigned int serverId, const QlumToolNodes& nodes)> add; ///< variables
        std::function<void(const QlumMessage&)> tell;
        std::function<void(const QString& topic)> dismiss;
    };

    /// Of one view.
    explicit QlumVariableIntake(Owner owner, QObject* parent);

    /// Whether a drag may bring nodes.
    [[nodiscard]] static bool canTake(const QMimeData* data);
    /// What was dropped, as take() does it.
    void takeDrop(QlumApplicationInterface& application, QDropEvent* event);
    /// Of any servers.
    void take(std::span<const QlumToolNode> nodes);

private:
    void addNodesOf(unsigned int serverId, const QlumToolNodes& nodes);
    void countBranches(unsigned int serverId, const QlumToolNodes& roots);
    void askAboutBranch(unsigned int serverId, const QString& name, const QlumDaBranch::Result& found);

    const Owner m_owner;
};
