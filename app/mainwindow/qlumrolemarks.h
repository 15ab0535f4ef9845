#pragma once
#include <app/api/qlumserverrole.h>

#include <QEvent>
#include <QObject>
#include <QString>

#include <optional>

class QLabel;
class QMainWindow;
class QTabWidget;
class QlumProjectModel;
class QlumServerNode;

/// Shows the roles of servers where the user cannot overlook them: the frame of the window and a word in the
/// status bar for the server that he works with, and the word on the tab of each document for the highest
/// role among its servers.
class QlumRoleMarks : public QObject
{
    Q_OBJECT
public:
    QlumRoleMarks(QMainWindow* window, QTabWidget* tabs, QlumProjectModel* project);

    /// The server that was selected last; null when there is none any more.
    void setServer(const QlumServerNode* server);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void update();
    void updateTabs();
    void paintFrame();
    [[nodiscard]] std::optional<QlumServerRole> roleOfTab(int tab) const;

    QMainWindow* m_window;
    QTabWidget* m_tabs;
    QlumProjectModel* m_project;
    QLabel* m_word;
    unsigned int m_serverId;
    std::optional<QlumServerRole> m_role; ///< of the frame
};
