#pragma once
#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumsessionservices.h>
#include <app/api/qlumtoolservices.h>
#include <plugins/dataaccess/parts/qlumcopyformats.h>

#include <QObject>
#include <QString>

#include <functional>
#include <map>
#include <span>
#include <vector>

class QlumJobPool;

/// A form in which nodes can be copied, for menus.
struct QlumCopyCommand
{
    QlumCopyFormat format;
    const char* name;    ///< of the action
    const char* text;    ///< for QlumNodeCopier::tr()
    const char* toolTip; ///< the same
};
/// All of them, in the order of the menus.
[[nodiscard]] std::span<const QlumCopyCommand> qlumCopyCommands();

/// Puts nodes onto the clipboard in the forms that other programs take. What a form needs and nobody knows is
/// read in the background. GUI thread.
class QlumNodeCopier : public QObject
{
    Q_OBJECT
public:
    /// Hears why something is missing of what was copied; of an empty text that nothing is.
    using Tell = std::function<void(const QString& what, const QString& why)>;

    /// A node on its way.
    struct Wanted
    {
        unsigned int serverId = qlumNoServer;
        QlumCopiedNode node;
        bool isToBeRead = false; ///< value and type are not known yet
    };

    /// The application must outlive this, and what the pool runs must end before.
    QlumNodeCopier(QlumApplicationInterface& application, QlumSessionServicesProvider services,
                   QlumJobPool& pool, Tell tell, QObject* parent = nullptr);

    /// What is known of the server of a node, to begin with. Asks each once for many nodes.
    [[nodiscard]] static QlumCopiedNode ofServer(QlumApplicationInterface& application,
                                                 const QlumSessionServicesProvider& services,
                                                 unsigned int serverId);
    /// At once, or when what is missing was read.
    void copy(std::vector<Wanted> wanted, QlumCopyFormat format);
    /// Nodes of any view, of which no more is known.
    void copyNodes(std::span<const QlumToolNode> nodes, QlumCopyFormat format);

private:
    QlumApplicationInterface& m_application;
    const QlumSessionServicesProvider m_services;
    QlumJobPool& m_pool;
    const Tell m_tell;
};
