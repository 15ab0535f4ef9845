#pragma once
#include <app/api/qlumactiontable.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumpartspage.h>
#include <uawidgets/editors/qlumstructuremodel.h>
#include <uawidgets/editors/qlumvaluecontext.h>

#include <QModelIndex>
#include <QString>
#include <QWidget>

class QToolButton;
class QTreeView;

/// Edits a structure or union as a tree of its fields: values in place, optional fields and members of unions
/// by their boxes, types that are open by a list, arrays and long values in a window. GUI thread.
class QlumStructurePage : public QlumPartsPage
{
    Q_OBJECT
public:
    /// Empty until setValue().
    explicit QlumStructurePage(const QlumValueContext& context, QWidget* parent = nullptr);

    /// Of a null value the fields of the declared type.
    void setValue(const UaVariant& value) override;
    [[nodiscard]] bool value(UaVariant& value) const override;
    void setReadOnly(bool readOnly) override;

    /// For those who show more of it.
    [[nodiscard]] QlumStructureModel& model() const { return *m_model; }
    /// The same.
    [[nodiscard]] QTreeView& view() const { return *m_view; }

protected:
    [[nodiscard]] bool arePartsModified() const override;
    [[nodiscard]] QlumValueCheck checkParts() const override;
    [[nodiscard]] QString placeOf(const QModelIndex& index) const override;
    void showAround() override;

private:
    void makeView();
    void updateHead();
    void updateActions();
    void fillTypes();
    void sltOpen(const QModelIndex& index);

    QlumStructureModel* m_model;
    QTreeView* m_view;
    QToolButton* m_type;
    QlumActionTable m_actions;
};
