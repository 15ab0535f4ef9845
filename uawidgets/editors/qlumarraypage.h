#pragma once
#include <app/api/qlumactiontable.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumarraymodel.h>
#include <uawidgets/editors/qlumpartspage.h>
#include <uawidgets/editors/qlumvaluechecks.h>
#include <uawidgets/editors/qlumvaluecontext.h>

#include <QModelIndex>
#include <QString>
#include <QWidget>

#include <vector>

class QSpinBox;
class QTableView;
class QToolBar;

/// Edits an array: elements in place, those that are structures or arrays themselves in a dialog; inserts,
/// removes, moves, fills, sorts, copies and pastes columns of spreadsheets. GUI thread.
class QlumArrayPage : public QlumPartsPage
{
    Q_OBJECT
public:
    /// Empty until setValue().
    explicit QlumArrayPage(const QlumValueContext& context, QWidget* parent = nullptr);

    /// A null value is an array without elements.
    void setValue(const UaVariant& value) override;
    [[nodiscard]] bool value(UaVariant& value) const override;
    void setReadOnly(bool readOnly) override;

    /// For those who show more of it.
    [[nodiscard]] QlumArrayModel& model() const { return *m_model; }
    /// The same.
    [[nodiscard]] QTableView& view() const { return *m_view; }

protected:
    [[nodiscard]] bool arePartsModified() const override;
    [[nodiscard]] QlumValueCheck checkParts() const override;
    [[nodiscard]] QString placeOf(const QModelIndex& index) const override;
    void showAround() override;

private:
    /// Rows that follow one another.
    struct Range
    {
        int first;
        int count;
    };

    QToolBar* makeActions();
    void makeView();
    void makeHead();
    [[nodiscard]] std::vector<Range> selected() const;
    [[nodiscard]] Range sortedRange() const;
    void select(int first, int count);
    void updateActions();
    void updateHead();
    void sltInsert(bool atEnd);
    void sltRemove();
    void sltMove(bool up);
    void sltFill();
    void sltSort(Qt::SortOrder order);
    void sltCopy();
    void sltPaste();
    void sltOpen(const QModelIndex& index);
    void sltResize(int length);

    QlumArrayModel* m_model;
    QTableView* m_view;
    QSpinBox* m_length;
    QSpinBox* m_goTo;
    QlumActionTable m_actions;
};
