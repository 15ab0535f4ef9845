#pragma once
#include <app/api/qlumactiontable.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumstructuremodel.h>
#include <uawidgets/editors/qlumvaluecontext.h>
#include <uawidgets/editors/qlumvaluepage.h>

#include <QModelIndex>
#include <QString>
#include <QWidget>

class QLabel;
class QToolButton;
class QTreeView;
class QlumMessageBar;
class QlumPartDelegate;

/// Edits a structure or union as a tree of its fields: values in place, optional fields and members of unions
/// by their boxes, types that are open by a list, arrays and long values in a window. GUI thread.
class QlumStructurePage : public QlumValuePage
{
    Q_OBJECT
public:
    /// Empty until setValue().
    explicit QlumStructurePage(const QlumValueContext& context, QWidget* parent = nullptr);

    /// Of a null value the fields of the declared type.
    void setValue(const UaVariant& value) override;
    [[nodiscard]] bool value(UaVariant& value) const override;
    [[nodiscard]] bool isModified() const override;
    [[nodiscard]] QString fault() const override;
    [[nodiscard]] QString remark() const override;
    [[nodiscard]] QString refusal() const override;
    void setReadOnly(bool readOnly) override;

    /// For those who show more of it.
    [[nodiscard]] QlumStructureModel& model() const { return *m_model; }
    /// The same.
    [[nodiscard]] QTreeView& view() const { return *m_view; }

private:
    void makeView();
    void updateHead();
    void updateActions();
    void fillTypes();
    void sltOpen(const QModelIndex& index);

    const QlumValueContext m_context;
    QlumStructureModel* m_model;
    QlumPartDelegate* m_delegate;
    QlumMessageBar* m_messages;
    QTreeView* m_view;
    QLabel* m_summary;
    QToolButton* m_type;
    QlumActionTable m_actions;
};
