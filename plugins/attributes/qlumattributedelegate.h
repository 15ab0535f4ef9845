#pragma once
#include <uawidgets/editors/qlumvaluedelegate.h>

#include <QAbstractItemModel>
#include <QModelIndex>
#include <QObject>
#include <QString>
#include <QStyleOptionViewItem>
#include <QWidget>

class QlumAttributeModel;

/// Edits values in the cells of the attribute view, and shows at them why one was not written.
class QlumAttributeDelegate : public QlumValueDelegate
{
    Q_OBJECT
public:
    /// The model must outlive it.
    explicit QlumAttributeDelegate(const QlumAttributeModel& model, QObject* parent = nullptr);

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;
    /// Also while the node cannot be written, when something was changed.
    [[nodiscard]] QString fault(const QWidget* editor) const override;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;

private:
    const QlumAttributeModel& m_model;
};
