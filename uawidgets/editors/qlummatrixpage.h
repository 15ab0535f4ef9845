#pragma once
#include <app/api/qlumactiontable.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlummatrixmodel.h>
#include <uawidgets/editors/qlumvaluechecks.h>
#include <uawidgets/editors/qlumvaluecontext.h>
#include <uawidgets/editors/qlumvaluepage.h>

#include <QModelIndex>
#include <QString>
#include <QWidget>

#include <optional>
#include <vector>

class QHBoxLayout;
class QLabel;
class QSpinBox;
class QTableView;
class QToolBar;
class QlumMessageBar;
class QlumPartDelegate;

/// Edits a matrix as a grid, with a choice of the slice where there are more than two dimensions; fills,
/// copies and pastes blocks of spreadsheets. GUI thread.
class QlumMatrixPage : public QlumValuePage
{
    Q_OBJECT
public:
    /// Empty until setValue().
    explicit QlumMatrixPage(const QlumValueContext& context, QWidget* parent = nullptr);

    void setValue(const UaVariant& value) override;
    [[nodiscard]] bool value(UaVariant& value) const override;
    [[nodiscard]] bool isModified() const override;
    [[nodiscard]] QString fault() const override;
    [[nodiscard]] QString remark() const override;
    [[nodiscard]] QString refusal() const override;
    void setReadOnly(bool readOnly) override;

    /// For those who show more of it.
    [[nodiscard]] QlumMatrixModel& model() const { return *m_model; }
    /// The same.
    [[nodiscard]] QTableView& view() const { return *m_view; }

private:
    QToolBar* makeActions();
    void makeView();
    void makeSlices();
    void showSlice();
    void updateHead();
    void updateActions();
    [[nodiscard]] const QlumValueCheck& check() const;
    [[nodiscard]] std::vector<QlumMatrixModel::Block> selected() const;
    void sltFill();
    void sltCopy();
    void sltPaste();
    void sltOpen(const QModelIndex& index);

    const QlumValueContext m_context;
    QlumMatrixModel* m_model;
    QlumPartDelegate* m_delegate;
    QlumMessageBar* m_messages;
    QTableView* m_view;
    QLabel* m_summary;
    QWidget* m_sliceRow;
    std::vector<QSpinBox*> m_slices;
    QlumActionTable m_actions;
    mutable std::optional<QlumValueCheck> m_check; ///< kept until something changes
};
