#pragma once
#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumdocumentwidgetinterface.h>
#include <app/api/qlumjobpool.h>
#include <app/api/qlummonitoring.h>
#include <app/api/qlumsessionservices.h>
#include <app/api/qlumtoolservices.h>
#include <plugins/dataaccess/qlumdamodel.h>
#include <plugins/dataaccess/qlumdapart.h>
#include <plugins/dataaccess/qlumdataitem.h>
#include <uawidgets/qlummessagebar.h>

#include <QList>
#include <QMap>
#include <QPersistentModelIndex>
#include <QSettings>
#include <QString>
#include <QTimer>
#include <QWidget>

#include <memory>
#include <span>
#include <vector>

class QAction;
class QDragEnterEvent;
class QDropEvent;
class QLabel;
class QLineEdit;
class QMenu;
class QTabWidget;
class QTableView;
class QlumTableFilter;
class QlumViewState;

/// The document that watches variables: a table of their values, with pages and commands of its parts.
class QlumDaView : public QWidget, public QlumDocumentWidgetInterface, public QlumDaHost
{
    Q_OBJECT
    Q_INTERFACES(QlumDocumentWidgetInterface)
public:
    /// The application must outlive the view.
    QlumDaView(QlumApplicationInterface& application, QlumSessionServicesProvider services,
               QlumMonitoringProvider monitoring, QWidget* parent = nullptr);
    ~QlumDaView() override;

    void saveSettings(QSettings& settings) override;
    void loadSettings(QSettings& settings, const QMap<int, int>& serverIdMap) override;

    /// Nodes that the user drops or another view sends.
    void addNodes(std::span<const QlumToolNode> nodes);
    /// What the application tells its plugins.
    void sessionStatusChanged(unsigned int serverId, QlumConnectionStatus status);
    /// The same: nothing of the server is used any more when this returns.
    void sessionRemoved(unsigned int serverId);

    // ---- for parts
    QlumApplicationInterface& application() const override { return m_application; }
    const QlumSessionServicesProvider& services() const override { return m_services; }
    const QlumMonitoringProvider& monitoring() const override { return m_monitoring; }
    QlumJobPool& pool() override { return *m_pool; }
    QlumDaModel& model() override { return *m_model; }
    QWidget* widget() override { return this; }
    std::vector<quint32> selectedKeys() const override;
    std::vector<quint32> shownKeys() const override;
    std::vector<quint32> addItems(std::vector<QlumDataItem> items) override;
    void addPage(QWidget* page, const QString& title) override;
    void showPage(QWidget* page) override;
    void addCommands(const QString& title, const QList<QAction*>& actions) override;
    void tell(const QlumMessage& message) override;
    void dismiss(const QString& topic) override;
    void markModified() override;

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void makeTable();
    [[nodiscard]] QWidget* makeBar();
    void tellServers();

    QlumApplicationInterface& m_application;
    const QlumSessionServicesProvider m_services;
    const QlumMonitoringProvider m_monitoring;
    QlumViewState* m_state;
    std::unique_ptr<QlumJobPool> m_pool;
    QlumDaModel* m_model;
    QlumTableFilter* m_filter;
    QlumMessageBar* m_messages;
    QTableView* m_table = nullptr;
    QTabWidget* m_pages = nullptr;
    QLineEdit* m_filterText = nullptr;
    QMenu* m_menu = nullptr;
    std::vector<std::unique_ptr<QlumDaPart>> m_parts;
    bool m_isLoading = false;
};
