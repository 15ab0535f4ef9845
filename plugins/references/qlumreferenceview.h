#pragma once
#include <plugins/references/qlumreference.h>
#include <plugins/references/qlumreferencemodel.h>
#include <uabase/values/uanodeid.h>
#include <uawidgets/table/qlumtablefilter.h>

#include <QModelIndex>
#include <QString>
#include <QWidget>

#include <memory>
#include <vector>

class QAction;
class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTreeView;
class QlumEmptyText;
class QlumViewState;
struct QlumToolNode;

/// The table of references, with the choice of what it shows.
class QlumReferenceView : public QWidget
{
    Q_OBJECT
public:
    /// The model must outlive it.
    explicit QlumReferenceView(QlumReferenceModel* model, QAction* refresh, QWidget* parent = nullptr);
    ~QlumReferenceView() override;

    /// Which references are wanted: direction, type and subtypes of the query.
    [[nodiscard]] QlumReferenceQuery options() const;
    /// Shows these options without telling of it. A type that is not offered yet is offered by its id.
    void setOptions(const QlumReferenceQuery& options);
    /// Offers the reference types of the server besides those that every server has; the choice stays.
    void setTypes(const std::vector<QlumReferenceType>& types);
    /// The node whose references are shown, for the commands of nodes; qlumNoServer for none.
    void setNode(unsigned int serverId, const UaNodeId& nodeId);
    /// What is said while there are no rows; plain.
    void setEmptyText(const QString& text);
    /// Whether the server has more than what is shown.
    void setMore(bool hasMore, bool isReading);

signals:
    /// Others are wanted than before.
    void optionsChanged();
    /// The next ones are wanted, too.
    void moreWanted();
    /// The user wants to go to the target of the reference.
    void jumpWanted(const QlumReference& reference);

private:
    QWidget* makeBar(QAction* refresh);
    QWidget* makeMoreBar();
    void setupTable();
    void addType(const QString& name, const UaNodeId& id);
    [[nodiscard]] int indexOf(const UaNodeId& id) const;
    [[nodiscard]] const QlumReference* referenceAt(const QModelIndex& index) const;
    [[nodiscard]] std::vector<QlumToolNode> selectedNodes() const;
    void sltFilter(const QString& text);
    void sltCopyNodeId() const;

    QlumReferenceModel* m_model;
    QlumTableFilter* m_filter;
    QTreeView* m_table;
    QComboBox* m_direction;
    QComboBox* m_type;
    QCheckBox* m_subtypes;
    QLineEdit* m_text;
    QWidget* m_moreBar = nullptr;
    QLabel* m_moreText = nullptr;
    QPushButton* m_more = nullptr;
    QlumEmptyText* m_empty = nullptr;
    QString m_emptyText;
    std::unique_ptr<QlumViewState> m_state;
    unsigned int m_serverId = qlumNoServer;
    UaNodeId m_nodeId;
};
