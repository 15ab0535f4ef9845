#pragma once
#include <app/api/qlumapplicationinterface.h>
#include <plugins/datalogger/qlumloggeritem.h>
#include <uawidgets/models/qlumtablemodel.h>

#include <QObject>
#include <QSet>
#include <QString>
#include <QVariant>

#include <unordered_map>
#include <vector>

/// The items of a data logger view.
class QlumLoggerModel : public QlumTableModel<QlumLoggerItem>
{
    Q_OBJECT
public:
    /// In the order of the titles.
    enum Column {
        Server,
        Name,
        NodeId,
        Path,
        DataType,
        State,
        Value,
        Status,
        Received,
        Records,
        Overflows,
        Interruptions,
        Watched
    };
    /// Answered by every cell.
    enum Role { KeyRole = Qt::UserRole, SortRole };

    /// The application must outlive it.
    explicit QlumLoggerModel(QlumApplicationInterface& application, QObject* parent = nullptr);

    /// The keys that they get.
    std::vector<quint32> add(std::vector<QlumLoggerItem> items);
    /// Those that are there.
    void removeKeys(const std::vector<quint32>& keys);
    /// Null for a key that is none.
    [[nodiscard]] const QlumLoggerItem* find(quint32 key) const;
    /// Changes an item and tells of it.
    template <typename Change>
    void changeItem(quint32 key, const Change& apply)
    {
        const auto found = m_places.find(key);
        if (found != m_places.end())
            change(found->second, apply);
    }
    /// Changes items for which the function is true, told in one step.
    template <typename Change>
    void changeItems(const Change& apply)
    {
        changeRows(apply);
    }
    /// Whether values of this server can come.
    void setConnected(unsigned int serverId, bool isConnected);
    /// Whether what comes is not written for the time being, so that nothing is known of items.
    void setHeld(bool isHeld);
    /// Of rows with a number in the recording.
    void takeFigures(const std::vector<recording::ItemFigures>& figures);

    [[nodiscard]] const QlumDataSettings& settingsOf(const QlumLoggerItem& item) const
    {
        return item.settings ? *item.settings : m_viewSettings;
    }
    [[nodiscard]] const QlumDataSettings& viewSettings() const { return m_viewSettings; } ///< of all others
    void setViewSettings(const QlumDataSettings& settings);                               ///< the same
    [[nodiscard]] std::vector<unsigned int> serverIds() const;                            ///< each once
    [[nodiscard]] QString serverName(unsigned int serverId) const;                        ///< for the user
    /// Of how many items, that would be recorded, nothing comes, since their server is not connected.
    [[nodiscard]] int cutOffCount() const;

protected:
    [[nodiscard]] QVariant cell(const QlumLoggerItem& row, int column, int role) const override;

private:
    [[nodiscard]] QVariant shown(const QlumLoggerItem& row, int column) const;
    [[nodiscard]] QString stateText(const QlumLoggerItem& row) const;
    void placeRows();
    [[nodiscard]] bool isCutOff(const QlumLoggerItem& row) const
    {
        return row.state == QlumLoggerState::Recorded && !m_connected.contains(row.serverId);
    }

    QlumApplicationInterface& m_application;
    QlumDataSettings m_viewSettings;
    QSet<unsigned int> m_connected; ///< servers
    bool m_isHeld = false;
    std::unordered_map<quint32, int> m_places;
    quint32 m_lastKey = 0;
};
