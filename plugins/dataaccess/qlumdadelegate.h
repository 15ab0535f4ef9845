#pragma once
#include <plugins/dataaccess/qlumdataitem.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumvaluecontext.h>
#include <uawidgets/editors/qlumvaluedelegate.h>

#include <QAbstractItemModel>
#include <QModelIndex>
#include <QObject>
#include <QStyleOptionViewItem>
#include <QWidget>

class QPainter;

/// Editors of values in cells. What one has to know is read before it opens.
class QlumDaDelegate : public QlumValueDelegate
{
    Q_OBJECT
public:
    using QlumValueDelegate::QlumValueDelegate;

    /// What the next editor begins with, and what is known of its value.
    void prepare(const UaVariant& value, QlumValueContext context);

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;
    /// With a line above the first row of each group.
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;

signals:
    /// The user has entered a value in a cell.
    void entered(const QModelIndex& index, const UaVariant& value) const;

private:
    UaVariant m_value;
    QlumValueContext m_context;
};
