#pragma once
#include <uabase/values/uavariant.h>

#include <QEvent>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStyledItemDelegate>
#include <QWidget>

/// A delegate for value editors: one whose text is no value stays open and says why, instead of losing what
/// was typed; Escape gives it up. What the server will refuse by its own data it says too, and sends it on
/// the second Enter. A view that closes editors when another row becomes current asks fault(). GUI thread.
class QlumValueDelegate : public QStyledItemDelegate
{
    Q_OBJECT
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    /// Why what the editor holds cannot be taken, in words; empty when it can.
    [[nodiscard]] virtual QString fault(const QWidget* editor) const;
    /// Why the server will refuse what the editor holds, in words; empty when nothing speaks for that.
    [[nodiscard]] virtual QString refusal(const QWidget* editor) const;

signals:
    /// The user wanted to end editing, and this is wrong with what he has entered.
    void refused(const QString& why) const;

protected:
    /// Keeps such an editor open.
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    [[nodiscard]] QString objection(const QWidget* editor, const QEvent& event);

    QPointer<const QWidget> m_warned; ///< the editor whose user has been told
    UaVariant m_warnedValue;          ///< and of what
};
