#pragma once
#include <QCursor>
#include <QGuiApplication>

/// Shows the wait cursor while it lives. GUI thread.
class QlumWaitCursor
{
public:
    /// Takes the wait cursor away while the user is asked something in the middle of the work.
    class Pause
    {
    public:
        Pause() { QGuiApplication::restoreOverrideCursor(); }
        ~Pause() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
        Pause(const Pause&) = delete;
        Pause& operator=(const Pause&) = delete;
    };

    QlumWaitCursor() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
    ~QlumWaitCursor() { QGuiApplication::restoreOverrideCursor(); }
    QlumWaitCursor(const QlumWaitCursor&) = delete;
    QlumWaitCursor& operator=(const QlumWaitCursor&) = delete;
};
