#pragma once
#include <QHash>
#include <QKeySequence>
#include <QList>

#include <initializer_list>
#include <span>

class QAction;
class QObject;

/// One row of a table of actions. Texts are marked with QT_TRANSLATE_NOOP; those that may be empty are never
/// null.
struct QlumActionRow
{
    int id;           ///< by which QlumActionTable finds the action
    const char* name; ///< object name
    const char* text; ///< as in a menu, with its mnemonic
    const char* icon; ///< file below :/images, or a path that begins with ':'; empty for none
    QKeySequence::StandardKey shortcut; ///< qlumNoKey for none
    const char* toolTip;                ///< of tool bar and status bar; empty: the text without its mnemonic
    const char* whatsThis;              ///< rich text that explains the action; empty: what the tool tip says
    Qt::ShortcutContext context =
        Qt::WindowShortcut; ///< where the shortcut works; for a view's own: its widget
};

/// Stands in a row for no shortcut.
inline constexpr QKeySequence::StandardKey qlumNoKey = QKeySequence::UnknownKey;

/// The actions of a window or tool, made from a table and found by their ids. The actions belong to their
/// parent, so the table may be copied and must not outlive it.
class QlumActionTable
{
public:
    /// No actions.
    QlumActionTable() = default;
    /// Makes an action for each row. The texts are translated in the given context.
    QlumActionTable(std::span<const QlumActionRow> rows, const char* context, QObject* parent);

    /// Null for an id that is in no row.
    [[nodiscard]] QAction* operator[](int id) const { return m_actions.value(id); }
    /// The actions with these ids, in this order.
    [[nodiscard]] QList<QAction*> list(std::initializer_list<int> ids) const;

private:
    QHash<int, QAction*> m_actions;
};
