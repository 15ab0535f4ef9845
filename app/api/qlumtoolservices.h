#pragma once
#include <app/api/qlumapplicationinterface.h>
#include <opcua/opcua_types.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/useridentitytoken.h>

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QWidget>

#include <functional>
#include <memory>
#include <span>
#include <utility>
#include <vector>

namespace UaClientSdk {
class UaSession;
}

/// A node, where it is, and as much as its finder knows of it.
struct QlumToolNode
{
    unsigned int serverId = qlumNoServer;                    ///< that has it
    UaNodeId nodeId;                                         ///< as the server knows it
    OpcUa_NodeClass nodeClass = OpcUa_NodeClass_Unspecified; ///< Unspecified while it is not known
    UaNodeId parentId; ///< the node below which it was found, null for none; of a method, its object
    QString name;      ///< for the user; may be empty

    /// Equal in everything that is known.
    friend bool operator==(const QlumToolNode&, const QlumToolNode&) = default;
};
using QlumToolNodes = std::vector<QlumToolNode>;

/// Who the user of a session is; null has the user asked where that is needed.
using QlumIdentity = std::shared_ptr<const UaClientSdk::UaUserIdentityToken>;

/// How a session beside that of the project shall be secured.
struct QlumSideEndpoint
{
    QString url; ///< empty: that of the project's connection
    OpcUa_MessageSecurityMode mode = OpcUa_MessageSecurityMode_Invalid; ///< Invalid: that connection's
    QString securityPolicy;                                             ///< URI; empty: that connection's
};

/// The session, which lives as long as somebody holds it, or null and the reason.
using QlumSideSessionDone =
    std::function<void(std::shared_ptr<UaClientSdk::UaSession> session, const UaStatus& status)>;

/// Shows nodes in documents of one type.
struct QlumNodeTaker
{
    QString documentType;                             ///< of QlumDocumentInterface::documentTypes()
    std::function<bool(const QlumToolNode&)> accepts; ///< empty: every node
    std::function<void(QWidget* document, std::span<const QlumToolNode> nodes)>
        add; ///< gets only what it accepts
};

/// A command for nodes that a tool offers in every view that has some, in a menu with its like.
struct QlumNodeTool
{
    QString menu;                                  ///< title
    QString name;                                  ///< of the action
    QString text;                                  ///< for the user
    QString toolTip;                               ///< the same
    std::function<void(const QlumToolNodes&)> act; ///< on at least one node
};

/// A value of a recorded curve.
struct QlumToolSample
{
    OpcUa_DateTime time = 0;       ///< of the source
    double value = 0;              ///< not finite: a gap
    OpcUa_StatusCode status = 0;   ///< of the value
    OpcUa_DateTime serverTime = 0; ///< 0 where it is not known
};

/// What a tool has recorded of a variable.
struct QlumToolCurve
{
    QString name;                        ///< for the user
    QString unit;                        ///< may be empty
    bool isStepped = false;              ///< values hold until the next
    std::vector<QlumToolSample> samples; ///< in any order
};

/// Shows recorded curves in documents of one type.
struct QlumSampleTaker
{
    QString documentType; ///< of QlumDocumentInterface::documentTypes()
    std::function<void(QWidget* document, std::span<const QlumToolCurve> curves)> show; ///< in that document
};

/// Shows values of a kind in documents of one type.
struct QlumValueTaker
{
    QString documentType; ///< of QlumDocumentInterface::documentTypes()
    std::function<bool(const UaVariant& value, const UaNodeId& dataType)> accepts; ///< the kind
    std::function<void(QWidget* document, unsigned int serverId, const UaVariant& value,
                       const UaNodeId& dataType, const QlumToolNode& origin)>
        show; ///< in that document; the data type and the origin may be null
};

/// What tools do for each other without knowing each other: whoever can do a thing registers as its taker,
/// whoever wants it done asks here. A call without a taker answers false and does nothing; with several
/// takers the one that came last does it. A taker goes with its owner, as a rule the plugin, and when
/// removeTakers() is called for it. GUI thread only. A call may run a nested event loop and remove takers.
class QlumToolServices : public QObject
{
    Q_OBJECT
public:
    /// Without takers; becomes the instance.
    explicit QlumToolServices(QObject* parent = nullptr);
    ~QlumToolServices() override;

    /// Those of the running application; null before there is one and after it has gone.
    [[nodiscard]] static QlumToolServices* instance() noexcept;

    // ---- asking

    /// Selects the node in the address space view. False when it cannot be found there.
    bool revealNode(unsigned int serverId, const UaNodeId& nodeId);
    /// The document types that take nodes, in the order of registration.
    [[nodiscard]] QStringList documentTypes() const;
    /// Those that accept at least one of the nodes.
    [[nodiscard]] QStringList documentTypes(std::span<const QlumToolNode> nodes) const;
    /// Commands of tools for nodes, in the order of registration.
    [[nodiscard]] std::vector<QlumNodeTool> nodeTools() const;
    /// Gives the nodes to a document of that type, which is opened when there is none. False when the type
    /// takes none of them, or no document can be opened.
    bool openNodes(const QString& documentType, std::span<const QlumToolNode> nodes);
    /// Shows recorded curves in a document that can, which is opened when there is none. False when none can.
    bool showSamples(std::span<const QlumToolCurve> curves);
    /// Offers the user to call a method of an object.
    bool callMethod(unsigned int serverId, const UaNodeId& objectId, const UaNodeId& methodId);
    /// Shows a certificate, or one with its chain behind it; it is not judged.
    bool showCertificate(const UaByteString& der);
    /// Shows a value in full: in a document for values of its kind where there is one, else in a window. The
    /// data type is a node of the server, null when it is not known; the origin is the variable whose Value
    /// it is, null for a part of one.
    bool showValue(unsigned int serverId, const UaVariant& value, const UaNodeId& dataType,
                   const QlumToolNode& origin = {});
    /// Opens a session beside that of the project, asking about trust and password. On true the receiver is
    /// told once how it ended, on this thread and perhaps before this returns, unless it goes before.
    bool sideSession(unsigned int serverId, const QlumSideEndpoint& endpoint, const QlumIdentity& identity,
                     QObject* receiver, const QlumSideSessionDone& done);
    /// Connects the server of the project anew with another security mode and user.
    bool reconnectWith(unsigned int serverId, OpcUa_MessageSecurityMode mode, const QlumIdentity& identity);
    /// As whom the project's session with the server is logged in; empty for an anonymous one, and when
    /// nobody can tell.
    [[nodiscard]] QString sessionUser(unsigned int serverId) const;

    /// Has the user choose a node of a server in a window above the parent, start being the one chosen so
    /// far. Null when he gave up, and without a taker. Runs a nested event loop.
    [[nodiscard]] UaNodeId chooseNode(QWidget* parent, unsigned int serverId, const UaNodeId& start);

    /// Whether somebody would take it.
    [[nodiscard]] bool canChooseNode() const { return m_chooseNode.has(); }
    /// Whether somebody would take it.
    [[nodiscard]] bool canReveal() const { return m_reveal.has(); }
    /// Whether somebody would take it.
    [[nodiscard]] bool canCallMethod() const { return m_callMethod.has(); }
    /// Whether somebody would take it.
    [[nodiscard]] bool canShowSamples() const { return m_samples.has() && m_documents.has(); }
    /// Whether a document would take the value as one of its kind.
    [[nodiscard]] bool canShowInDocument(const UaVariant& value, const UaNodeId& dataType) const;
    /// Whether somebody would take it.
    [[nodiscard]] bool canShowCertificate() const { return m_showCertificate.has(); }
    /// Whether somebody would take it.
    [[nodiscard]] bool canShowValue() const { return m_showValue.has(); }
    /// Whether somebody would take it.
    [[nodiscard]] bool canOpenSideSession() const { return m_sideSession.has(); }
    /// Whether somebody would take it.
    [[nodiscard]] bool canReconnectWith() const { return m_reconnectWith.has(); }

    // ---- taking

    /// The node, or null when the user gave up.
    using ChooseNode = std::function<UaNodeId(QWidget* parent, unsigned int serverId, const UaNodeId& start)>;
    /// True when the node was found and selected.
    using Reveal = std::function<bool(unsigned int serverId, const UaNodeId& nodeId)>;
    /// Asks for the arguments and calls.
    using CallMethod =
        std::function<void(unsigned int serverId, const UaNodeId& objectId, const UaNodeId& methodId)>;
    /// Shows the bytes, or that they are no certificate.
    using ShowCertificate = std::function<void(const UaByteString& der)>;
    /// The data type may be null.
    using ShowValue =
        std::function<void(unsigned int serverId, const UaVariant& value, const UaNodeId& dataType)>;
    /// Calls done once, whatever happens.
    using SideSession = std::function<void(unsigned int serverId, const QlumSideEndpoint& endpoint,
                                           const QlumIdentity& identity, QlumSideSessionDone done)>;
    /// False when it refuses.
    using ReconnectWith = std::function<bool(unsigned int serverId, OpcUa_MessageSecurityMode mode,
                                             const QlumIdentity& identity)>;
    /// Empty for an anonymous one.
    using SessionUser = std::function<QString(unsigned int serverId)>;
    /// A document of the type to show more in: the one in front, else another, else a new one; null when
    /// there is no such type.
    using Documents = std::function<QWidget*(const QString& documentType)>;

    /// Registers a taker of chooseNode().
    void takeChooseNode(QObject* owner, ChooseNode taker) { take(m_chooseNode, owner, std::move(taker)); }
    /// Registers a taker of revealNode().
    void takeReveal(QObject* owner, Reveal taker) { take(m_reveal, owner, std::move(taker)); }
    /// Registers a taker of openNodes(), for its type of document.
    void takeNodes(QObject* owner, QlumNodeTaker taker) { take(m_nodes, owner, std::move(taker)); }
    /// Offers a command for nodes.
    void takeNodeTool(QObject* owner, QlumNodeTool tool) { take(m_nodeTools, owner, std::move(tool)); }
    /// Registers a taker of showSamples(), for its type of document.
    void takeSamples(QObject* owner, QlumSampleTaker taker) { take(m_samples, owner, std::move(taker)); }
    /// Registers a taker of callMethod().
    void takeCallMethod(QObject* owner, CallMethod taker) { take(m_callMethod, owner, std::move(taker)); }
    /// Registers a taker of showCertificate().
    void takeShowCertificate(QObject* owner, ShowCertificate taker)
    {
        take(m_showCertificate, owner, std::move(taker));
    }
    /// Registers a taker of showValue().
    void takeShowValue(QObject* owner, ShowValue taker) { take(m_showValue, owner, std::move(taker)); }
    /// Registers a taker of showValue(), for values of its kind.
    void takeValues(QObject* owner, QlumValueTaker taker) { take(m_values, owner, std::move(taker)); }
    /// Registers a taker of sideSession().
    void takeSideSession(QObject* owner, SideSession taker) { take(m_sideSession, owner, std::move(taker)); }
    /// Registers a taker of reconnectWith().
    void takeReconnectWith(QObject* owner, ReconnectWith taker)
    {
        take(m_reconnectWith, owner, std::move(taker));
    }
    /// Registers a taker of sessionUser().
    void takeSessionUser(QObject* owner, SessionUser taker) { take(m_sessionUser, owner, std::move(taker)); }
    /// Of the application, which owns the documents.
    void takeDocuments(QObject* owner, Documents taker) { take(m_documents, owner, std::move(taker)); }

    /// Nothing is handed to the owner any more.
    void removeTakers(QObject* owner);

signals:
    /// Another command may make sense now, or one no more.
    void takersChanged();

private:
    template <typename Taker>
    struct Takers
    {
        std::vector<std::pair<QObject*, Taker>> entries;

        [[nodiscard]] bool has() const { return !entries.empty(); }
        /// A copy, since whoever is called may go meanwhile. Only while there is one.
        [[nodiscard]] Taker last() const { return entries.back().second; }
        bool remove(const QObject* owner)
        {
            return std::erase_if(
                       entries, [owner](const auto& entry) { return entry.first == owner; }) > 0;
        }
    };

    template <typename Taker>
    void take(Takers<Taker>& takers, QObject* owner, Taker taker)
    {
        takers.entries.emplace_back(owner, std::move(taker));
        watch(owner);
    }
    void watch(QObject* owner);
    [[nodiscard]] const QlumNodeTaker* nodeTaker(const QString& documentType) const;
    [[nodiscard]] const QlumValueTaker* valueTaker(const UaVariant& value, const UaNodeId& dataType) const;

    Takers<ChooseNode> m_chooseNode;
    Takers<Reveal> m_reveal;
    Takers<QlumNodeTaker> m_nodes;
    Takers<QlumNodeTool> m_nodeTools;
    Takers<QlumSampleTaker> m_samples;
    Takers<CallMethod> m_callMethod;
    Takers<ShowCertificate> m_showCertificate;
    Takers<ShowValue> m_showValue;
    Takers<QlumValueTaker> m_values;
    Takers<SideSession> m_sideSession;
    Takers<ReconnectWith> m_reconnectWith;
    Takers<SessionUser> m_sessionUser;
    Takers<Documents> m_documents;
    QList<QObject*> m_owners;
};
