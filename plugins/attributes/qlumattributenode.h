#pragma once
#include <opcua/opcua_platform.h>
#include <uawidgets/editors/qlumvaluepath.h>
#include <uawidgets/models/qlumtreenode.h>

#include <QString>

#include <memory>
#include <utility>

class QlumAttributeNode;

/// Makes the rows of an array when they are wanted.
class QlumRowSource
{
public:
    QlumRowSource() = default;
    virtual ~QlumRowSource() = default;
    QlumRowSource(const QlumRowSource&) = delete;
    QlumRowSource& operator=(const QlumRowSource&) = delete;

    /// Of all rows, the ones that are there already among them.
    [[nodiscard]] virtual int count() const = 0;
    /// Appends one row, which comes next.
    virtual void appendRow(QlumAttributeNode& parent, int index) = 0;
};

/// One row of the attribute view; owns its children.
class QlumAttributeNode : public QlumTreeNode<QlumAttributeNode>
{
public:
    explicit QlumAttributeNode(const QString& name, const QString& value = QString());
    ~QlumAttributeNode();

    /// A new last child; it inherits what is inherited: whether it can be written, and the status.
    QlumAttributeNode& append(const QString& name, const QString& value = QString(), QlumValueStep step = {});
    /// Those to be made later, too.
    void clearChildren();

    [[nodiscard]] const QString& name() const { return m_name; }
    [[nodiscard]] const QString& value() const { return m_value; }
    void setValue(const QString& value) { m_value = value; }
    /// From the value of the parent to that of this row.
    [[nodiscard]] QlumValueStep step() const { return m_step; }

    /// The attribute that the row shows as a whole; 0 for rows below one.
    [[nodiscard]] int attributeId() const { return m_attributeId; }
    void setAttributeId(int attributeId) { m_attributeId = attributeId; }

    /// Drives the colour.
    [[nodiscard]] OpcUa_StatusCode status() const { return m_status; }
    /// Of the row and of all below it.
    void setStatus(OpcUa_StatusCode status);
    /// An attribute that a node need not have.
    [[nodiscard]] bool isOptional() const { return m_optional; }
    void setOptional(bool optional) { m_optional = optional; }
    /// Whether the user can edit the value.
    [[nodiscard]] bool isWritable() const { return m_writable; }
    /// Of the row and of all below it.
    void setWritable(bool writable);
    /// An optional field of a structure that is not there.
    [[nodiscard]] bool isAbsent() const { return m_absent; }
    void setAbsent(bool absent) { m_absent = absent; }

    /// What the text alone does not tell.
    enum Remark : unsigned char {
        NoRemark,
        Null, ///< there is no value
        Empty ///< there is one, of length 0
    };
    [[nodiscard]] Remark remark() const { return m_remark; }
    void setRemark(Remark remark) { m_remark = remark; }

    /// Children that are made later, by fetchMore().
    void setSource(std::unique_ptr<QlumRowSource> source) { m_source = std::move(source); }
    /// How many children have not been made yet.
    [[nodiscard]] int pendingCount() const { return m_source ? m_source->count() - childCount() : 0; }
    /// Also when none has been made yet.
    [[nodiscard]] bool hasChildren() const { return childCount() > 0 || pendingCount() > 0; }
    /// Makes so many children, or fewer when fewer are pending.
    void fetchMore(int count);

private:
    QString m_name;
    QString m_value;
    OpcUa_StatusCode m_status = 0;
    QlumValueStep m_step;
    int m_attributeId = 0;
    Remark m_remark = NoRemark;
    bool m_optional : 1 = false;
    bool m_writable : 1 = false;
    bool m_absent : 1 = false;
    std::unique_ptr<QlumRowSource> m_source;
};
