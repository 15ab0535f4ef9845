#pragma once
#include <certificates/qlumcertificatechainnode.h>
#include <certificates/qlumcertificatedetailsnode.h>
#include <uawidgets/models/qlumtreemodel.h>

#include <QObject>
#include <QVariant>

/// The groups at the top belong to the certificate, which is no node of this tree.
template <>
struct QlumTreeAccess<QlumCertificateDetailsNode>
{
    using Node = QlumCertificateDetailsNode;
    static Node* parent(const Node& node) { return node.parent(); }
    static Node* child(const Node& node, int row)
    {
        return row < node.childCount() ? node.child(row) : nullptr;
    }
    static int childCount(const Node& node) { return node.childCount(); }
    static int row(const Node& node)
    {
        return node.parent() ? node.parent()->indexOf(&node) : node.chainNode().indexOf(&node);
    }
};

/// The lines about one certificate, in groups. Values are cut to what a view can show; the whole text is
/// behind Qt::EditRole.
class QlumCertificateDetailsModel : public QlumTreeModel<QlumCertificateDetailsNode>
{
    Q_OBJECT
public:
    enum Column { NameColumn, ValueColumn, ColumnCount };

    explicit QlumCertificateDetailsModel(QObject* parent = nullptr);

    /// Shows that certificate, which must outlive it or be replaced by null.
    void setNode(const QlumCertificateChainNode* node);
    [[nodiscard]] const QlumCertificateChainNode* node() const { return m_node; }

protected:
    [[nodiscard]] int topCount() const override;
    [[nodiscard]] QlumCertificateDetailsNode* top(int row) const override;
    [[nodiscard]] QVariant cell(const QlumCertificateDetailsNode& node, int column, int role) const override;

private:
    const QlumCertificateChainNode* m_node = nullptr;
};
