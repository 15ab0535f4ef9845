#pragma once
#include <uawidgets/qlumbasewidget.h>

#include <QList>
#include <QString>
#include <QTabWidget>
#include <QWidget>

/// A command that has a key.
struct QlumShortcutRow
{
    QString keys;    ///< as the desktop writes them
    QString command; ///< without mnemonic
    QString place;   ///< the window or view that has it
};

/// All commands with keys of a window and the views in it, sorted by place and command, each once.
[[nodiscard]] QList<QlumShortcutRow> qlumShortcutRows(const QWidget* window, const QTabWidget* documents);

/// Lists them, with a field to search in.
class QlumShortcutsDialog : public QlumBaseWidget
{
    Q_OBJECT
public:
    QlumShortcutsDialog(const QList<QlumShortcutRow>& rows, QWidget* parent = nullptr);
};
