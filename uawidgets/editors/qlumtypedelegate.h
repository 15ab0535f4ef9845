#pragma once
#include <uawidgets/editors/qlumpartdelegate.h>

#include <QModelIndex>
#include <QObject>
#include <QStyleOptionViewItem>
#include <QWidget>

class QAbstractItemModel;
class QlumStructureModel;

/// Edits the fields of a structure, and offers the types of those whose type is open. GUI thread.
class QlumTypeDelegate : public QlumPartDelegate
{
    Q_OBJECT
public:
    /// The model must outlive it.
    QlumTypeDelegate(QlumStructureModel& model, QObject* parent);

    /// In the column of types a list of those that can be chosen.
    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    /// A chosen type gives the field an empty value of it; the one that it has changes nothing.
    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;

private:
    QlumStructureModel& m_model;
};
