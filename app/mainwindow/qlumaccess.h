#pragma once
#include <QEvent>
#include <QObject>

class QWidget;

/// What Qt leaves out for those who work without a mouse or without seeing the screen, for all windows of the
/// program. Shift+F10 opens the context menu of what has the focus: many keyboards have no key of their own
/// for it, and tools have commands that are in no other menu. Parts that Qt makes itself get a name for
/// screen readers, and combo boxes tell theirs, in whose place Qt tells the entry that is chosen.
class QlumAccess : public QObject
{
    Q_OBJECT
public:
    explicit QlumAccess(QObject* parent);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    static bool openMenu(QWidget& widget);
    static void name(QWidget& widget);
};
