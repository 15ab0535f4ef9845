// What a user does who has no mouse: every step is a key on what has the focus.
#pragma once
#include <QAbstractItemModel>
#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QMainWindow>
#include <QMenu>
#include <QModelIndex>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTest>
#include <QTimer>
#include <QWidget>
#include <gtest/gtest.h>

#include <functional>

namespace keyboard {
constexpr int limit = 20000; // ms; far more than any step takes

/// Where keys go: what is open above all else first.
inline QWidget* receiver()
{
    if (QWidget* popup = QApplication::activePopupWidget())
        return popup;
    // the window manager's part, which an offscreen platform does not play
    QWidget* wanted = QApplication::activeModalWidget();
    for (QWidget* top : QApplication::topLevelWidgets())
        if (!wanted && top->isVisible() && qobject_cast<QMainWindow*>(top))
            wanted = top;
    const QWidget* active = QApplication::activeWindow();
    if (wanted && active != wanted && (!active || !active->isVisible() || wanted->isModal()))
        QApplication::setActiveWindow(wanted);
    QWidget* focus = QApplication::focusWidget();
    return focus ? focus : QApplication::activeWindow();
}

inline void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    QTest::keyClick(receiver(), static_cast<Qt::Key>(key), modifiers);
}

/// In place of what the field held.
inline void type(const QString& text)
{
    press(Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(receiver(), text);
}

/// Moves the focus on until it is where it is wanted; false when it never gets there.
inline bool tabTo(const std::function<bool(const QWidget&)>& isThere)
{
    constexpr int most = 200;
    for (int i = 0; i < most; ++i) {
        if (const QWidget* focus = QApplication::focusWidget(); focus && isThere(*focus))
            return true;
        press(Qt::Key_Tab);
    }
    const QWidget* focus = QApplication::focusWidget();
    ADD_FAILURE() << "the focus stays at " << (focus ? focus->objectName().toStdString() : "nothing")
                  << " in " << receiver()->metaObject()->className();
    return false;
}

inline bool tabTo(const QString& name)
{
    return tabTo([&name](const QWidget& focus) { return focus.objectName() == name; });
}

/// The view that has the focus.
inline QAbstractItemView* view()
{
    return qobject_cast<QAbstractItemView*>(QApplication::focusWidget());
}

/// Down to the row whose cell of that column reads text, below the row that was current; waits for rows.
inline bool downTo(const QString& text, int column = 0)
{
    QAbstractItemView* const rows = view();
    if (!rows)
        return false;
    return QTest::qWaitFor(
        [&] {
            const QModelIndex before = rows->currentIndex();
            if (before.isValid() && before.sibling(before.row(), column).data().toString() == text)
                return true;
            press(Qt::Key_Down);
            if (rows->currentIndex() == before)
                QTest::qWait(1); // the last row of those that are there
            return false;
        },
        limit);
}

/// From the first row on through the path, opening each row but the last.
inline bool walk(const QStringList& path)
{
    press(Qt::Key_Home);
    for (const QString& name : path) {
        if (!downTo(name))
            return false;
        if (&name == &path.last())
            break;
        press(Qt::Key_Right);
    }
    return true;
}

/// An entry of the context menu of what has the focus, by the arrow keys.
inline bool fromMenu(const QString& name)
{
    bool isChosen = false;
    QTimer timer; // runs within the menu's own event loop
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (!menu)
            return;
        timer.stop();
        for (int i = 0; i <= menu->actions().size() && !isChosen; ++i) {
            press(Qt::Key_Down);
            const QAction* action = menu->activeAction();
            isChosen = action && action->objectName() == name;
        }
        press(isChosen ? Qt::Key_Return : Qt::Key_Escape);
    });
    timer.start(1);
    press(Qt::Key_F10, Qt::ShiftModifier);
    return isChosen;
}

/// Does what opens a dialog, and in that dialog what it is told; false when none came or it is still open.
inline bool inDialog(const std::function<void()>& opening, const std::function<void(QDialog&)>& steps)
{
    bool isDone = false;
    const QWidget* const before = QApplication::activeModalWidget();
    QTimer timer; // runs within the dialog's own event loop
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (!dialog || dialog == before || !dialog->isVisible())
            return;
        timer.stop();
        QApplication::setActiveWindow(dialog);
        steps(*dialog);
        isDone = true;
        if (dialog->isVisible()) { // a step has failed: nobody else would end it
            ADD_FAILURE() << "still open: " << dialog->windowTitle().toStdString();
            dialog->reject();
        }
    });
    timer.start(1);
    opening();
    return QTest::qWaitFor([&isDone] { return isDone; }, limit);
}

/// By the command palette; what the letters find first.
inline bool command(const QString& letters)
{
    return inDialog([] { press(Qt::Key_P, Qt::ControlModifier | Qt::ShiftModifier); },
                    [&letters](QDialog&) {
                        type(letters);
                        press(Qt::Key_Return);
                    });
}
} // namespace keyboard
