#include <app/mainwindow/qlumaccess.h>

#include <QApplication>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QPoint>
#include <QRect>
#include <QString>
#include <QVariant>
#include <QWidget>

QlumAccess::QlumAccess(QObject* parent) : QObject(parent)
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool QlumAccess::eventFilter(QObject* watched, QEvent* event)
{
    const bool isKey = event->type() == QEvent::KeyPress;
    if (!isKey && event->type() != QEvent::Polish)
        return false;
    auto* widget = qobject_cast<QWidget*>(watched);
    if (!widget)
        return false;
    if (!isKey) {
        name(*widget);
        return false;
    }
    const auto* key = static_cast<QKeyEvent*>(event);
    if (key->key() != Qt::Key_F10 || key->modifiers() != Qt::ShiftModifier ||
        widget != QApplication::focusWidget() || QApplication::activePopupWidget())
        return false;
    return openMenu(*widget);
}

void QlumAccess::name(QWidget& widget)
{
    if (widget.objectName() == QLatin1String("qt_toolbar_ext_button"))
        widget.setAccessibleName(tr("More commands"));
    else if (widget.objectName() == QLatin1String("lookInCombo")) // of file dialogs
        widget.setAccessibleName(tr("Folder"));
    else if (widget.objectName() == QLatin1String("fileTypeCombo"))
        widget.setAccessibleName(tr("Type of files"));
    if (qobject_cast<QComboBox*>(&widget) && widget.accessibleDescription().isEmpty() &&
        widget.toolTip().isEmpty())
        widget.setAccessibleDescription(widget.accessibleName());
}

// As the platform does for the key of its own: at the cell or the letter that is current.
bool QlumAccess::openMenu(QWidget& widget)
{
    const QPoint at = widget.inputMethodQuery(Qt::ImCursorRectangle).toRect().center();
    QContextMenuEvent menu(QContextMenuEvent::Keyboard, at, widget.mapToGlobal(at));
    QCoreApplication::sendEvent(&widget, &menu);
    return menu.isAccepted();
}
