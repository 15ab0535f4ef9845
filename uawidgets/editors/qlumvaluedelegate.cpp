#include <uawidgets/editors/qlumvaluedelegate.h>

#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumvalueeditor.h>

#include <QFocusEvent>
#include <QKeyEvent>

namespace {
bool endsEditing(const QEvent& event)
{
    if (event.type() == QEvent::FocusOut)
        return static_cast<const QFocusEvent&>(event).reason() != Qt::PopupFocusReason;
    if (event.type() != QEvent::KeyPress)
        return false;
    const int key = static_cast<const QKeyEvent&>(event).key();
    return key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Tab || key == Qt::Key_Backtab;
}
} // namespace

QString QlumValueDelegate::fault(const QWidget* editor) const
{
    return qlumEditorFault(editor);
}

QString QlumValueDelegate::refusal(const QWidget* editor) const
{
    return qlumEditorCheck(editor).refused;
}

// What keeps the editor open. A warning does so once for a value, and only a key shows that it was read.
QString QlumValueDelegate::objection(const QWidget* editor, const QEvent& event)
{
    const QString wrong = fault(editor);
    if (!wrong.isEmpty())
        return wrong;
    const QString why = refusal(editor);
    UaVariant entered;
    if (why.isEmpty() || !qlumValueFromEditor(editor, entered))
        return {};
    const bool isKey = event.type() == QEvent::KeyPress;
    if (isKey && m_warned == editor && m_warnedValue == entered)
        return {};
    if (isKey) {
        m_warned = editor;
        m_warnedValue = entered;
    }
    return tr("%1 Press Enter again to send it all the same.").arg(why);
}

bool QlumValueDelegate::eventFilter(QObject* object, QEvent* event)
{
    const auto* editor = qobject_cast<QWidget*>(object);
    const QString why = editor && endsEditing(*event) ? objection(editor, *event) : QString();
    if (why.isEmpty())
        return QStyledItemDelegate::eventFilter(object, event);
    emit refused(why);
    return event->type() == QEvent::KeyPress; // the focus may go; the editor has to hear of that
}
