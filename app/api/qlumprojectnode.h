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
    enum Type { Folder = 0, Server = 1, Document = 2 };

    explicit QlumProjectNode(const QString& displayName);
    ~QlumProjectNode() override;

    [[nodiscard]] virtual int type() const;
    [[nodiscard]] virtual Qt::ItemFlags flags() const;
    /// Takes an edited value; false when it is refused.
    virtual bool setData(const QVariant& value, int role);
    [[nodiscard]] virtual QIcon icon() const;
    virtual void setDisplayName(const QString& name);

    [[nodiscard]] QString displayName() const { return m_displayName; }
    [[nodiscard]] QlumProjectNode* parentNode() const { return m_parent; }
    [[nodiscard]] const QList<QlumProjectNode*>& childNodes() const { return m_children; }
    /// Position among the parent's children; 0 for the root.
    [[nodiscard]] int row() const;

    /// Takes ownership.
    void appendChild(QlumProjectNode* child);
    /// Gives ownership back; the node has no parent afterwards.
    void takeChild(QlumProjectNode* child);

private:
    QString m_displayName;
    QList<QlumProjectNode*> m_children;
    QlumProjectNode* m_parent = nullptr;
};
