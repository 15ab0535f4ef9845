#pragma once
#include <app/mainwindow/qlumhelpviewer.h>

#include <QEvent>
#include <QMainWindow>
#include <QObject>
#include <QPointer>

/// F1 outside of the main window, whose own command does not reach there. Beside a dialog that blocks all
/// other windows the page is shown in a window of the dialog's own, which can be read while the dialog is
/// filled in.
class QlumWindowHelp : public QObject
{
    Q_OBJECT
public:
    /// The object belongs to the window; the viewer is that of the whole program.
    QlumWindowHelp(QMainWindow* window, QlumHelpViewer* viewer);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QMainWindow* m_window;
    QPointer<QlumHelpViewer> m_viewer;
};
