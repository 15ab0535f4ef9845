#pragma once
#include <QList>
#include <QWidget>

class QAction;
class QComboBox;
class QHeaderView;
class QLineEdit;
class QToolBar;
class QTreeView;
class QlumLogFilter;
class QlumLogModel;

/// Content of the log dock: the entries, a filter by level and text, and the log's actions.
class QlumLogView : public QWidget
{
    Q_OBJECT
public:
    QlumLogView(QlumLogModel* model, const QList<QAction*>& actions, QWidget* parent = nullptr);

    /// Column widths, to be kept by the main window.
    [[nodiscard]] QHeaderView* header() const;

private slots:
    void sltFilterChanged();
    void sltScrolled(int value);
    void sltScrollRangeChanged(int minimum, int maximum);

private:
    QToolBar* makeToolBar(const QList<QAction*>& actions);

    QTreeView* m_view;
    QComboBox* m_level;
    QLineEdit* m_text;
    QlumLogFilter* m_filter;
    bool m_follow = true; ///< new entries are shown as they come
};
