// The document that shows images.
#pragma once
#include <app/api/qlumactiontable.h>
#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumdocumentwidgetinterface.h>
#include <app/api/qlumjobpool.h>
#include <app/api/qlummonitoring.h>
#include <app/api/qlumsessionservices.h>
#include <app/api/qlumtoolservices.h>
#include <plugins/imageviewer/qlumimagefeed.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uavariant.h>

#include <QAction>
#include <QHash>
#include <QMap>
#include <QSettings>
#include <QString>
#include <QTimer>
#include <QWidget>

#include <functional>
#include <span>
#include <vector>

class QComboBox;
class QDragEnterEvent;
class QDropEvent;
class QGridLayout;
class QStackedWidget;
class QTableView;
class QToolBar;
class QlumImageFactsModel;
class QlumImageTile;
class QlumMessageBar;
class QlumViewHeading;
class QlumViewState;

/// Images side by side, and beside them what is known of the current one.
class QlumImageView : public QWidget, public QlumDocumentWidgetInterface
{
    Q_OBJECT
    Q_INTERFACES(QlumDocumentWidgetInterface)
public:
    /// Images of one document.
    static constexpr int mostImages = 16;

    /// All must outlive the document. The monitoring may be null: then nothing is watched.
    QlumImageView(QlumApplicationInterface& application, QlumSessionServicesProvider services,
                  QlumMonitoringProvider monitoring, QWidget* parent = nullptr);
    ~QlumImageView() override;

    void saveSettings(QSettings& settings) override;
    void loadSettings(QSettings& settings, const QMap<int, int>& serverIdMap) override;

    /// Variables that another view sends, or that are dropped.
    void addNodes(std::span<const QlumToolNode> nodes);
    /// A value that another view has shown; of a whole variable it is watched from now on.
    void showValue(unsigned int serverId, const UaVariant& value, const UaNodeId& dataType,
                   const QlumToolNode& origin);
    /// What the application tells its plugins.
    void sessionStatusChanged(unsigned int serverId, QlumConnectionStatus status,
                              const QMap<quint16, quint16>& map);
    /// The same: nothing of the server is used any more when this returns.
    void sessionRemoved(unsigned int serverId);

    /// In the order in which they came.
    [[nodiscard]] const std::vector<QlumImageTile*>& tiles() const { return m_tiles; }
    /// The one that commands work on; null while there is none.
    [[nodiscard]] QlumImageTile* current() const { return m_current; }
    /// Writes the bytes of the current image as they were received, all or nothing.
    void saveAs(const QString& path);

    /// What the user can do.
    enum Command {
        ReadAgain,
        Watch,
        Fit,
        OneToOne,
        ZoomIn,
        ZoomOut,
        Play,
        CopyImage,
        SaveImage,
        OpenElements,
        RemoveImage
    };
    /// Its action.
    [[nodiscard]] QAction* action(Command command) const { return m_actions[command]; }

protected:
    /// Variables are welcome everywhere.
    void dragEnterEvent(QDragEnterEvent* event) override;
    /// The same.
    void dropEvent(QDropEvent* event) override;

private:
    void makeActions();
    [[nodiscard]] QToolBar* makeBar();
    [[nodiscard]] QWidget* makeFacts();
    void run(Command command);
    void copyImage();
    void askWhereToSave();
    void openElements();

    [[nodiscard]] QlumImageTile* tileOf(const std::function<bool(const QlumImageFeed&)>& isWanted) const;
    QlumImageTile* addTile(const QlumImageSource& source);
    void removeTile(QlumImageTile* tile);
    void arrange();
    void setCurrent(QlumImageTile* tile);
    [[nodiscard]] bool hasRoom();
    [[nodiscard]] qint64 memoryLeft(const QlumImageFeed& feed) const;
    [[nodiscard]] QString namespaceUriOf(const QlumImageSource& source) const;
    void place(QlumImageFeed& feed, const QMap<quint16, quint16>& map);

    void restoreImage(const QSettings& settings, unsigned int serverId);
    void showCurrent();
    void showCommands();
    void showHeading();
    void setInterval(int milliseconds);
    void markModified();

    QlumApplicationInterface& m_application;
    const QlumSessionServicesProvider m_services;
    const QlumMonitoringProvider m_monitoring;
    QlumJobPool m_reads;
    QlumJobPool m_decodes{2};
    QlumViewState* m_state;
    QlumImageFactsModel* m_facts;
    QlumViewHeading* m_heading;
    QlumMessageBar* m_messages;
    QlumActionTable m_actions;
    QStackedWidget* m_pages = nullptr;
    QWidget* m_area = nullptr;
    QGridLayout* m_grid = nullptr;
    QTableView* m_factsView = nullptr;
    QComboBox* m_intervals = nullptr;
    std::vector<QlumImageTile*> m_tiles;
    QlumImageTile* m_current = nullptr;
    QHash<unsigned int, QlumConnectionStatus> m_status;
    QTimer m_second;
    int m_interval;
    bool m_isLoading = false;
};
