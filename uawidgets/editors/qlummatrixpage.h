#pragma once
#include <app/api/qlumactiontable.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlummatrixmodel.h>
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

/// Edits a matrix as a grid, with a choice of the slice where there are more than two dimensions; fills,
/// copies and pastes blocks of spreadsheets. GUI thread.
class QlumMatrixPage : public QlumPartsPage
{
    Q_OBJECT
public:
    /// Empty until setValue().
    explicit QlumMatrixPage(const QlumValueContext& context, QWidget* parent = nullptr);

    void setValue(const UaVariant& value) override;
    [[nodiscard]] bool value(UaVariant& value) const override;
    void setReadOnly(bool readOnly) override;

    /// For those who show more of it.
    [[nodiscard]] QlumMatrixModel& model() const { return *m_model; }
    /// The same.
    [[nodiscard]] QTableView& view() const { return *m_view; }

protected:
    [[nodiscard]] bool arePartsModified() const override;
    [[nodiscard]] QlumValueCheck checkParts() const override;
    [[nodiscard]] QString placeOf(const QModelIndex& index) const override;
    void showAround() override;

private:
    QToolBar* makeActions();
    void makeView();
    void makeSlices();
    void showSlice();
    void updateHead();
    void updateActions();
    [[nodiscard]] std::vector<QlumMatrixModel::Block> selected() const;
    void sltFill();
    void sltCopy();
    void sltPaste();
    void sltOpen(const QModelIndex& index);

    QlumMatrixModel* m_model;
    QTableView* m_view;
    QWidget* m_sliceRow;
    std::vector<QSpinBox*> m_slices;
    QlumActionTable m_actions;
};
