// How pages and commands hang themselves into a data access view.
#pragma once
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlummonitoring.h>
#include <app/api/qlumsessionservices.h>
#include <plugins/dataaccess/qlumdataitem.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/qlummessagebar.h>

#include <QList>
#include <QMap>
#include <QObject>
#include <QString>
#include <QVariant>

#include <span>
#include <vector>

class QAction;
class QSettings;
class QWidget;
class QlumApplicationInterface;
class QlumDaModel;
class QlumJobPool;

/// What the view offers to its parts. GUI thread.
class QlumDaHost
{
public:
    virtual ~QlumDaHost() = default;

    [[nodiscard]] virtual QlumApplicationInterface& application() const = 0;
    [[nodiscard]] virtual const QlumSessionServicesProvider&
    services() const = 0;                                                       ///< of servers by their ids
    [[nodiscard]] virtual const QlumMonitoringProvider& monitoring() const = 0; ///< the same
    [[nodiscard]] virtual QlumJobPool& pool() = 0;  ///< for service calls; ends with the view or the server
    [[nodiscard]] virtual QlumDaModel& model() = 0; ///< the rows; find one by its key
    [[nodiscard]] virtual QWidget* widget() = 0;    ///< the view, as the parent of dialogs

    /// Keys of the selected rows, in the order on screen.
    [[nodiscard]] virtual std::vector<quint32> selectedKeys() const = 0;
    /// Of all rows that pass the filter, in the order on screen.
    [[nodiscard]] virtual std::vector<quint32> shownKeys() const = 0;
    /// Adds rows at the end and watches them; their keys. What is not known of them (names, type, unit, path)
    /// is asked for in the background, unresolved ones stay and show their problem.
    virtual std::vector<quint32> addItems(std::vector<QlumDataItem> items) = 0;
    /// Rows that named nothing until now become these, in their places, each the one of its key. What a row
    /// has of its own besides its node stays; keys of rows that are gone are passed over.
    virtual void resolveItems(std::vector<QlumDataItem> items) = 0;

    /// Adds a page beside the table; it belongs to the view then.
    virtual void addPage(QWidget* page, const QString& title) = 0;
    /// Brings it to the front.
    virtual void showPage(QWidget* page) = 0;
    /// Adds commands to the table's context menu and, below this title, to the view's menu. The actions keep
    /// their owner.
    virtual void addCommands(const QString& title, const QList<QAction*>& actions) = 0;
    /// What failed, in the view's message bar; see QlumMessageBar.
    virtual void tell(const QlumMessage& message) = 0;
    /// The matter has settled itself.
    virtual void dismiss(const QString& topic) = 0;
    /// What the project keeps of the view is another now.
    virtual void markModified() = 0;
};

/// Something that a view has besides its rows, staged writes for one. Belongs to its view. GUI thread.
class QlumDaPart : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    /// Into the view's group of the project; see QlumDocumentWidgetInterface. The view has stored its rows
    /// before; keys of rows do not outlive the program, places do: QlumDaModel::rowOf(key).
    virtual void saveSettings(QSettings&) {}
    /// The view has its rows again.
    virtual void loadSettings(QSettings&, const QMap<int, int>& /*serverIdMap*/) {}
    /// New values have come for some rows, twenty times a second at most.
    virtual void valuesChanged(std::span<const quint32> /*keys*/) {}
    /// Names, types, units or paths of some rows are known now.
    virtual void rowsDescribed() {}
    /// These are watched in another way now: settings, index range, or a namespace that is known at last.
    virtual void watchChanged(const std::vector<quint32>& /*keys*/) {}
    /// Of one of the servers.
    virtual void statusChanged(unsigned int /*serverId*/, QlumConnectionStatus) {}
    /// No call to it may be under way when this returns; the view has ended its pool's work for it before.
    virtual void serverRemoved(unsigned int /*serverId*/) {}

    // ---- the column "New Value"

    /// Whether this part fills that column: the first one that says so does.
    [[nodiscard]] virtual bool hasNewValues() const { return false; }
    /// What the column shows of a row.
    [[nodiscard]] virtual QVariant newValueCell(const QlumDataItem&, int /*role*/) const { return {}; }
    /// The staged value that an editor begins with; null for none.
    [[nodiscard]] virtual UaVariant newValue(const QlumDataItem&) const { return {}; }
    /// The user has entered a value there.
    virtual void takeNewValue(const QlumDataItem&, const UaVariant& /*value*/) {}

signals:
    /// The column shows something else for these.
    void newValuesChanged(const std::vector<quint32>& keys);
};
