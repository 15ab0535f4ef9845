#pragma once
#include <QObject>

class QAbstractItemView;
class QHeaderView;
class QMenu;

/// Lets the user choose which columns a table or tree shows and in which order: by a menu of the header, by
/// "Columns" in the context menu of the view, and by dragging. Belongs to the view.
class QlumColumnChooser : public QObject
{
    Q_OBJECT
public:
    /// The view has its model, and what was kept of its header is restored.
    explicit QlumColumnChooser(QAbstractItemView* view);

    /// Filled when it is about to be shown.
    [[nodiscard]] QMenu* menu() const { return m_menu; }

private:
    void fillMenu();
    /// There is always one: a table without columns has no header to get them back by.
    void showColumn(int column, bool show);
    void showAll();

    QHeaderView* m_header;
    QMenu* m_menu;
};
