#include <app/mainwindow/qlumwindowhelp.h>

#include <app/mainwindow/qlumhelppages.h>

#include <QApplication>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QString>
#include <QWidget>

QlumWindowHelp::QlumWindowHelp(QMainWindow* window, QlumHelpViewer* viewer)
    : QObject(window), m_window(window), m_viewer(viewer)
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool QlumWindowHelp::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::KeyPress)
        return false;
    const auto* key = static_cast<QKeyEvent*>(event);
    const QWidget* focus = QApplication::focusWidget();
    if (key->key() != Qt::Key_F1 || key->modifiers() != Qt::NoModifier || !focus || watched != focus ||
        focus->window() == m_window || qobject_cast<QlumHelpViewer*>(focus->window()))
        return false;
    QlumHelpViewer* viewer = m_viewer;
    if (QWidget* modal = QApplication::activeModalWidget()) {
        viewer = modal->findChild<QlumHelpViewer*>(QString(), Qt::FindDirectChildrenOnly);
        if (!viewer)
            viewer = new QlumHelpViewer(modal);
    }
    if (viewer)
        viewer->showPageInFront(qlumHelpPageOf(focus));
    return viewer != nullptr;
}
