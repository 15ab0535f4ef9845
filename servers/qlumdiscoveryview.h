#pragma once
#include <servers/qlumdiscoverylookup.h>
#include <servers/qlumdiscoverymodel.h>

#include <QModelIndex>
#include <QPersistentModelIndex>
#include <QString>
#include <QWidget>

class QLabel;
class QPushButton;
class QTreeView;

/// The tree of servers that can be found, and of where they are looked for. A row is asked when it is opened;
/// many are asked side by side, and none holds up the others.
class QlumDiscoveryView : public QWidget
{
    Q_OBJECT
public:
    /// Null: asks the servers themselves.
    explicit QlumDiscoveryView(QlumDiscoveryLookup::Asker asker = nullptr, QWidget* parent = nullptr);

    /// Opens the servers of this machine.
    void lookAtLocal();
    /// What has come of asking the server that was chosen last for its endpoints; another one's is ignored.
    void setOutcome(const QString& url, bool isGood, const QString& outcome);

signals:
    /// The user has gone to a server.
    void selected(const QString& url);
    /// The user has pressed a server, or the Enter key on it.
    void chosen(const QString& url);

private:
    void createButtons();
    void load();
    void open(const QModelIndex& index);
    void ask(const QModelIndex& index);
    void askAll(const QModelIndex& parent);
    void refresh();
    void stop();
    void add();
    void addUrl(bool isDirectory, const QString& text);
    void remove();
    void goTo(const QModelIndex& index);
    void press(const QModelIndex& index);
    void updateControls();

    QlumDiscoveryModel* m_model;
    QTreeView* m_tree;
    QLabel* m_progress;
    QPushButton* m_add;
    QPushButton* m_remove;
    QPushButton* m_refresh;
    QPushButton* m_stop;
    QPersistentModelIndex m_chosen;
    int m_asked = 0;              ///< since nothing was pending
    QlumDiscoveryLookup m_lookup; ///< last: it calls nobody any more when the others go
};
