#pragma once
#include <uawidgets/editors/qlumvaluechecks.h>
#include <uawidgets/editors/qlumvaluecontext.h>
#include <uawidgets/editors/qlumvaluedelegate.h>

#include <QModelIndex>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStyleOptionViewItem>
#include <QWidget>

#include <functional>

class QAbstractItemModel;

/// Edits cells of models that carry the value of a cell in Qt::UserRole. Knows the editor that is open, so
/// that what is in it counts before it is closed. GUI thread.
class QlumPartDelegate : public QlumValueDelegate
{
    Q_OBJECT
public:
    /// What is known of a cell's place.
    using ContextOf = std::function<QlumValueContext(const QModelIndex& index)>;

    /// The function is asked whenever an editor is opened.
    QlumPartDelegate(ContextOf contextOf, QObject* parent);

    /// Null where the value is not one for a cell.
    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    /// Leaves what the user types when the model changes.
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    /// Only what the user has changed.
    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;

    /// Why what the open editor holds is no value; empty when it is one, and without an open editor.
    [[nodiscard]] QString openFault() const;
    /// Whether an editor is open in which the user has entered another value.
    [[nodiscard]] bool isOpenChanged() const;
    /// What the server will refuse of that value, and what is unusual about it.
    [[nodiscard]] QlumValueCheck openCheck() const;
    /// Puts the value of the open editor into the model, as closing it would. Nothing while it is none.
    void commitOpen();

signals:
    /// The user changed what the open editor holds.
    void typing() const;

private:
    [[nodiscard]] QWidget* open() const;

    const ContextOf m_contextOf;
    mutable QPointer<QWidget> m_open;
};
