#pragma once
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumservernode.h>
#include <app/api/qlumsessionservices.h>
#include <app/api/qlumtoolservices.h>
#include <opcua/opcua_types.h>
#include <plugins/addressspace/search/qlumnodeindex.h>
#include <plugins/addressspace/search/qlumnodesearch.h>
#include <uabase/values/uanodeid.h>

#include <QList>
#include <QPointer>
#include <QString>
#include <QWidget>

#include <map>
#include <memory>

class QComboBox;
class QLabel;
class QLayout;
class QPushButton;
class QToolButton;
class QTreeView;
class QlumFindNodeForm;
class QlumFoundNodeModel;
class QlumMessageBar;
class QlumServerCrawl;
class QlumTableFilter;
class QlumViewHeading;
class QlumViewState;

/// Searches the nodes of a server, all or those of a branch, and shows what is found as it comes. What a
/// search has found out of a server is kept for its session, so that the next one answers at once.
class QlumFindNodeView : public QWidget
{
    Q_OBJECT
public:
    /// Where a search begins.
    struct Branch
    {
        UaNodeId id;                                     ///< null: the whole server
        QString name;                                    ///< for the user
        OpcUa_UInt32 nodeClass = OpcUa_NodeClass_Object; ///< as browsed
    };

    /// Without servers.
    explicit QlumFindNodeView(QlumSessionServicesProvider services, QWidget* parent = nullptr);
    ~QlumFindNodeView() override;

    /// The servers that can be searched; of others everything is forgotten.
    void setServers(const QList<QlumServerNode*>& servers);
    /// Offers to search the server below the branch, for the text when it is not empty.
    void offer(unsigned int serverId, const Branch& branch, const QString& text = QString());
    /// A server's connection changed its state.
    void serverNodeChanged(unsigned int serverId, QlumConnectionStatus status,
                           const NamespaceMap& namespaces);
    /// A server told that its address space has changed.
    void serverModelChanged(unsigned int serverId);

public slots:
    /// Searches for what the fields say.
    void find();

private:
    QLayout* makePlaceRow();
    QLayout* makeButtons();
    void makeTable();
    [[nodiscard]] QlumServerNode* server() const;
    [[nodiscard]] QlumServerNode* server(unsigned int serverId) const;
    [[nodiscard]] QlumServerCrawl* crawl(unsigned int serverId);
    [[nodiscard]] Branch wantedBranch() const;
    [[nodiscard]] QlumToolNodes selectedNodes() const;
    void setBranch(const Branch& branch);
    void leave();
    void search(QlumServerCrawl& crawl, QlumNodeIndex::Number begin);
    void readAgain();
    void cancel();
    void sltServerChanged();
    void sltCrawled(unsigned int serverId, bool hasEnded);
    void reveal();
    void tellEnd();
    void showState();
    [[nodiscard]] QString stateText() const;
    [[nodiscard]] QString crawlText(const QlumServerCrawl& crawl) const;

    const QlumSessionServicesProvider m_services;
    QlumViewState* m_state;
    QList<QPointer<QlumServerNode>> m_servers;
    std::map<unsigned int, std::unique_ptr<QlumServerCrawl>> m_crawls;
    QlumFoundNodeModel* m_model;
    QlumTableFilter* m_sorted;
    QComboBox* m_server;
    QLabel* m_branchName;
    QToolButton* m_wholeServer;
    QlumFindNodeForm* m_form;
    QPushButton* m_find;
    QPushButton* m_pause;
    QPushButton* m_cancel;
    QPushButton* m_again;
    QlumViewHeading* m_heading;
    QlumMessageBar* m_messages;
    QTreeView* m_table;
    QLabel* m_count;
    Branch m_branch;                        ///< of the next search
    unsigned int m_searched = qlumNoServer; ///< whose nodes are shown
    QlumNodeSearch* m_search;
};
