#pragma once
#include <QColor>
#include <QComboBox>
#include <QStyledItemDelegate>
#include <QWidget>

class QAbstractItemModel;
class QModelIndex;
class QStyleOptionViewItem;

/// A choice of colours for curves: those that curves get by themselves first, then others by their names.
class QlumColorListEditor : public QComboBox
{
    Q_OBJECT
    Q_PROPERTY(QColor color READ color WRITE setColor USER true)
public:
    /// The first colour is chosen.
    explicit QlumColorListEditor(QWidget* parent = nullptr);

    [[nodiscard]] QColor color() const; ///< that is chosen
    /// Chooses a colour; one that is not in the list is put at its end.
    void setColor(const QColor& color);
};

/// Edits a column of colours by a QlumColorListEditor.
class QlumColorDelegate : public QStyledItemDelegate
{
    Q_OBJECT
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;
};
