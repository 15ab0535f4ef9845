#pragma once
#include <plugins/dataaccess/qlumdataitem.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumvaluecontext.h>
#include <uawidgets/editors/qlumvaluedelegate.h>

#include <QAbstractItemModel>
#include <QHash>
#include <QModelIndex>
#include <QObject>
#include <QString>
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

    /// What stands above rows, by their places in the view; these have room for it at their top.
    void setHeadings(const QHash<int, QString>& headings) { m_headings = headings; }

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;
    /// With the heading of its group above a row that has one.
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    /// Below the heading.
    void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const override;

signals:
    /// The user has entered a value in a cell.
    void entered(const QModelIndex& index, const UaVariant& value) const;

private:
    UaVariant m_value;
    QlumValueContext m_context;
    QHash<int, QString> m_headings;
};
