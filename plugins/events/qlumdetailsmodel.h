#pragma once
#include <plugins/events/qlumevent.h>
#include <uabase/structures/uadatatypedictionary.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/models/qlumtreemodel.h>
#include <uawidgets/models/qlumtreenode.h>

#include <QModelIndex>
#include <QObject>
#include <QString>
#include <QVariant>

#include <memory>
#include <utility>
#include <vector>

/// A field of an event, or a part of one. Its own parts are made when somebody wants to see them.
class QlumDetailsNode : public QlumTreeNode<QlumDetailsNode>
{
public:
    QlumDetailsNode(QString name, QString text, UaVariant value = UaVariant(), int parts = 0)
        : m_name(std::move(name)), m_text(std::move(text)), m_value(std::move(value)), m_parts(parts)
    {
    }

    [[nodiscard]] const QString& name() const { return m_name; }
    [[nodiscard]] const QString& text() const { return m_text; }
    /// Whole, with all its parts.
    [[nodiscard]] const UaVariant& value() const { return m_value; }
    /// How many parts it has, whether they are made or not; -1 while nobody has counted.
    [[nodiscard]] int parts() const { return m_parts; }
    void setParts(int parts) { m_parts = parts; }
    void setText(const QString& text) { m_text = text; }

private:
    QString m_name;
    QString m_text;
    UaVariant m_value;
    int m_parts;
};

/// All fields of an event, each a tree as deep as its value; decoded as it is opened.
class QlumDetailsModel : public QlumTreeModel<QlumDetailsNode>
{
    Q_OBJECT
public:
    enum Column { Name, Value, ColumnCount };

    explicit QlumDetailsModel(QObject* parent = nullptr);
    ~QlumDetailsModel() override;

    /// The dictionary tells what structures consist of and may be null; the owner keeps it alive.
    void setEvent(const QlumEventFields& fields, std::shared_ptr<UaDataTypeDictionary> dictionary);
    void clear();

    [[nodiscard]] bool hasChildren(const QModelIndex& parent = QModelIndex()) const override;
    [[nodiscard]] bool canFetchMore(const QModelIndex& parent) const override;
    /// The next portion of an array, or everything else that is there.
    void fetchMore(const QModelIndex& parent) override;

protected:
    QVariant cell(const QlumDetailsNode& node, int column, int role) const override;

private:
    using Nodes = std::vector<std::unique_ptr<QlumDetailsNode>>;

    [[nodiscard]] std::unique_ptr<QlumDetailsNode> makeNode(const QString& name,
                                                            const UaVariant& value) const;
    [[nodiscard]] Nodes partsOf(const QlumDetailsNode& node) const;
    [[nodiscard]] Nodes elementsOf(const QlumDetailsNode& node, int first) const;
    [[nodiscard]] Nodes fieldsOf(const UaExtensionObject& object) const;

    std::unique_ptr<QlumDetailsNode> m_tree;
    std::shared_ptr<UaDataTypeDictionary> m_dictionary;
};
