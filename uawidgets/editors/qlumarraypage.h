#pragma once
#include <app/api/qlumactiontable.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumarraymodel.h>
#include <uawidgets/editors/qlumvaluechecks.h>
#include <uawidgets/editors/qlumvaluecontext.h>
#include <uawidgets/editors/qlumvaluepage.h>

#include <QModelIndex>
#include <QString>
#include <QWidget>

#include <optional>
#include <vector>

class QLabel;
class QSpinBox;
class QTableView;
class QToolBar;
class QlumMessageBar;
class QlumPartDelegate;

/// Edits an array: elements in place, those that are structures or arrays themselves in a dialog; inserts,
/// removes, moves, fills, sorts, copies and pastes columns of spreadsheets. GUI thread.
class QlumArrayPage : public QlumValuePage
{
    Q_OBJECT
public:
    /// Empty until setValue().
    explicit QlumArrayPage(const QlumValueContext& context, QWidget* parent = nullptr);

    /// A null value is an array without elements.
    void setValue(const UaVariant& value) override;
    [[nodiscard]] bool value(UaVariant& value) const override;
    [[nodiscard]] bool isModified() const override;
    [[nodiscard]] QString fault() const override;
    [[nodiscard]] QString remark() const override;
    [[nodiscard]] QString refusal() const override;
    void setReadOnly(bool readOnly) override;

    /// For those who show more of it.
    [[nodiscard]] QlumArrayModel& model() const { return *m_model; }
    /// The same.
    [[nodiscard]] QTableView& view() const { return *m_view; }

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
    [[nodiscard]] const QlumValueCheck& check() const;

    const QlumValueContext m_context;
    QlumArrayModel* m_model;
    QlumPartDelegate* m_delegate;
    QlumMessageBar* m_messages;
    QTableView* m_view;
    QLabel* m_summary;
    QSpinBox* m_length;
    QSpinBox* m_goTo;
    QlumActionTable m_actions;
    mutable std::optional<QlumValueCheck> m_check; ///< kept until something changes
};
