#pragma once
#include <QEvent>
#include <QObject>
#include <QString>
#include <QStyledItemDelegate>
#include <QWidget>

/// A delegate for value editors: one whose text is no value stays open and says why, instead of losing what
/// was typed; Escape gives it up. A view that closes editors when another row becomes current asks fault(),
/// too. GUI thread.
class QlumValueDelegate : public QStyledItemDelegate
{
    Q_OBJECT
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    /// Why what the editor holds cannot be taken, in words; empty when it can.
    [[nodiscard]] virtual QString fault(const QWidget* editor) const;

signals:
    /// The user wanted to end editing, and this is wrong with what he has entered.
    void refused(const QString& why) const;

protected:
    /// Keeps such an editor open.
    bool eventFilter(QObject* object, QEvent* event) override;
};
