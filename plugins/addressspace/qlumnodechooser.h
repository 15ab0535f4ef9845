#pragma once
#include <uabase/values/uanodeid.h>
#include <uawidgets/qlumbasewidget.h>

#include <QString>
#include <QWidget>

#include <memory>

class QDialogButtonBox;
class QLabel;
class QTreeView;
class QlumAddressSpaceModel;

/// Has the user choose a node of a server in a tree of its address space.
class QlumNodeChooser : public QlumBaseWidget
{
    Q_OBJECT
public:
    /// The model is not null.
    QlumNodeChooser(std::unique_ptr<QlumAddressSpaceModel> model, const QString& serverName,
                    QWidget* parent = nullptr);
    ~QlumNodeChooser() override;

    /// Shows a node as the one that was chosen so far; null for none.
    void select(const UaNodeId& nodeId);
    /// Null while none is chosen.
    [[nodiscard]] UaNodeId nodeId() const;

private:
    void showChosen();

    std::unique_ptr<QlumAddressSpaceModel> m_model;
    QTreeView* m_tree;
    QLabel* m_chosen;
    QDialogButtonBox* m_buttons;
};
