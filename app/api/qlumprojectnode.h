#pragma once
#include <QIcon>
#include <QList>
#include <QObject>
#include <QString>
#include <QVariant>

/// One node of the project tree: a folder as it stands, servers and documents by derivation. A node owns its
/// children. GUI thread only.
class QlumProjectNode : public QObject
{
    Q_OBJECT
public:
    /// What a node stands for.
    enum Type {
        Folder = 0,  ///< a node that only groups others
        Server = 1,  ///< a QlumServerNode
        Document = 2 ///< an open document
    };

    /// A node without parent.
    explicit QlumProjectNode(const QString& displayName);
    ~QlumProjectNode() override;

    /// One of Type.
    [[nodiscard]] virtual int type() const;
    /// What the user may do with the node in the project tree.
    [[nodiscard]] virtual Qt::ItemFlags flags() const;
    /// Takes an edited value; false when it is refused.
    virtual bool setData(const QVariant& value, int role);
    /// Icon in the project tree.
    [[nodiscard]] virtual QIcon icon() const;
    /// What the project tree says of the node beside its name; plain text.
    [[nodiscard]] virtual QString toolTip() const { return m_displayName; }
    /// Changes the name that the user sees.
    virtual void setDisplayName(const QString& name);

    /// The name that the user sees.
    [[nodiscard]] QString displayName() const { return m_displayName; }
    /// Null for the root.
    [[nodiscard]] QlumProjectNode* parentNode() const { return m_parent; }
    /// The children in their order.
    [[nodiscard]] const QList<QlumProjectNode*>& childNodes() const { return m_children; }
    /// Position among the parent's children; 0 for the root.
    [[nodiscard]] int row() const;

    /// Adds a child behind the others and takes its ownership.
    void appendChild(QlumProjectNode* child);
    /// Takes a child out and gives its ownership to the caller; the child has no parent afterwards.
    void takeChild(QlumProjectNode* child);

private:
    QString m_displayName;
    QList<QlumProjectNode*> m_children;
    QlumProjectNode* m_parent = nullptr;
};
