#include <uawidgets/editors/qlumvaluedelegate.h>

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

bool QlumValueDelegate::eventFilter(QObject* object, QEvent* event)
{
    const auto* editor = qobject_cast<QWidget*>(object);
    const QString why = editor && endsEditing(*event) ? fault(editor) : QString();
    if (why.isEmpty())
        return QStyledItemDelegate::eventFilter(object, event);
    emit refused(why);
    return event->type() == QEvent::KeyPress; // the focus may go; the editor has to hear of that
}
