#pragma once
#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlummodelinterface.h>
#include <opcua/opcua_types.h>
#include <plugins/dataaccess/qlumdaages.h>
#include <plugins/dataaccess/qlumdataitem.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumvaluecontext.h>
#include <uawidgets/models/qlumtablemodel.h>
#include <uawidgets/table/qlumstatuslook.h>

#include <QHash>
#include <QModelIndex>
#include <QObject>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <unordered_map>
#include <utility>
#include <vector>

class QlumDaPart;
struct QlumDaDescription;

/// How the connection of a server stands, as the rows show it.
struct QlumDaServer
{
    /// What became of the items when the connection last came back.
    enum class Recovery : unsigned char {
        None,    ///< it was not lost
        Resumed, ///< the server had kept them
        Renewed  ///< they were created again in a new session
    };

    QlumConnectionStatus status = QlumConnectionStatus::Disconnected;
    Recovery recovery = Recovery::None;
    OpcUa_DateTime since = 0;     ///< when that status came
    OpcUa_DateTime recovered = 0; ///< when the connection last came back
};

/// A word on whether all values of a row have come, and what it is founded on.
struct QlumDaVerdict
{
    QString word;                                      ///< "complete", "3 overflows"
    QString reason;                                    ///< in a sentence or two
    QlumStatusLevel level = QlumStatusLevel::Inactive; ///< Inactive: it cannot be known
    std::shared_ptr<const QlumDataSettings> remedy;    ///< what would have sufficed; null when nothing would
};

/// The rows of a data access view, in the user's order. Values are taken without a signal for each: views
/// paint what they see when valuesTaken() comes.
class QlumDaModel : public QlumTableModel<QlumDataItem>, public QlumModelInterface
{
    Q_OBJECT
public:
    /// Its columns, in the order of the construction.
    enum Column {
        Number,
        Server,
        NodeId,
        DisplayName,
        BrowsePath,
        Value,
        NewValue,
        DataType,
        Unit,
        SourceTime,
        ServerTime,
        Received,
        Status,
        Verdict,
        Changes,
        Minimum,
        Maximum,
        SamplingAsked,
        SamplingRevised,
        Queue,
        Age,
        ColumnCount
    };
    /// Roles of its cells beside Qt's.
    enum Role {
        ValueRole = Qt::UserRole,          ///< UaVariant: what the row is about, in the column Value
        SortRole = Qt::UserRole + 1,       ///< what is compared
        DictionaryRole = Qt::UserRole + 2, ///< UaDataTypeDictionary*; null while it is not known
        KeyRole = Qt::UserRole + 3,        ///< of the row
        DataTypeRole = Qt::UserRole + 4    ///< UaNodeId: of what the row is about
    };
    /// The time, for tests.
    using Clock = std::function<OpcUa_DateTime()>;

    /// The application must outlive the model.
    explicit QlumDaModel(QlumApplicationInterface& application, QObject* parent = nullptr, Clock clock = {});

    // ---- rows

    /// At the end; their keys, in their order.
    std::vector<quint32> add(std::vector<QlumDataItem> items);
    /// Unresolved rows have these nodes now, or these problems, each the row of its key; told in one step.
    /// The keys of those that have a node.
    std::vector<quint32> resolve(std::vector<QlumDataItem> items);
    /// Unknown keys are passed over.
    void removeKeys(const std::vector<quint32>& keys);
    /// Moves the rows of these keys one place up or down, as a block to either end with a larger number.
    void moveKeys(const std::vector<quint32>& keys, int places);
    /// -1 when there is none.
    [[nodiscard]] int rowOf(quint32 key) const;
    /// Null when there is none.
    [[nodiscard]] const QlumDataItem* find(quint32 key) const;
    /// Changes what a row is, not its values; nothing for an unknown key.
    template <typename Change>
    void changeItem(quint32 key, Change&& apply)
    {
        if (const int row = rowOf(key); row >= 0)
            change(row, std::forward<Change>(apply));
    }
    /// The same for many, which are told of in one step: the function changes those that it is true for.
    template <typename Change>
    void changeItems(Change&& apply)
    {
        changeRows(std::forward<Change>(apply));
    }
    /// One copy of a text that many rows have.
    [[nodiscard]] QString shared(const QString& text);
    /// Finds the index of each row's namespace anew; the keys of rows that have another state or node now.
    std::vector<quint32> placeNamespaces(unsigned int serverId);
    /// What servers have said of nodes, by the keys of their rows.
    void describe(const std::unordered_map<quint32, const QlumDaDescription*>& byKey);
    /// How the application calls servers may be another.
    void tellServerNames() { tellColumnChanged(Server); }

    // ---- settings

    /// Those of rows that have none of their own.
    [[nodiscard]] const QlumDataSettings& viewSettings() const { return *m_viewSettings; }
    /// The same, to share.
    [[nodiscard]] const std::shared_ptr<const QlumDataSettings>& sharedViewSettings() const
    {
        return m_viewSettings;
    }
    /// Replaces them.
    void setViewSettings(const QlumDataSettings& settings);
    /// Of the row, or those of the view.
    [[nodiscard]] const QlumDataSettings& settingsOf(const QlumDataItem& item) const
    {
        return item.settings ? *item.settings : *m_viewSettings;
    }

    // ---- servers

    /// Its connection has another state; told at once.
    void setStatus(unsigned int serverId, QlumConnectionStatus status);
    /// As last told; disconnected for one that nobody told of.
    [[nodiscard]] QlumDaServer server(unsigned int serverId) const;
    /// Servers of the rows.
    [[nodiscard]] std::vector<unsigned int> serverIds() const { return summary().servers; }

    // ---- values

    /// A value that came for a row, with so many before it that nobody saw. Call tellValues() after the last.
    void takeValue(quint32 key, UaDataValue& value, quint32 merged, OpcUa_DateTime received);
    /// A value for the row comes soon: its memory is fetched meanwhile.
    void expectValue(quint32 key) const
    {
        if (key < m_rowOf.size() && m_rowOf[key] >= 0 && m_rowOf[key] < rowCount())
            fetch(rowAt(m_rowOf[key]));
    }
    /// The time by the model's clock.
    [[nodiscard]] OpcUa_DateTime now() const { return m_clock(); }
    /// How much later the newest value of a row came than the quickest of its server: the clocks of the two
    /// computers need not agree.
    [[nodiscard]] OpcUa_DateTime delay(const QlumDataItem& item) const;
    /// What became of the item of a row; told like values.
    void takeChange(quint32 key, const monitoring::ItemChange& change);
    /// The item of its server that watches a row; 0 for none.
    void setWatched(quint32 key, monitoring::ItemId item);
    /// Told like values.
    void setState(quint32 key, QlumDataState state);
    /// Views paint now.
    void tellValues();
    /// Counts, minimum and maximum of these rows, or of all without any, begin anew.
    void resetCounts(const std::vector<quint32>& keys);
    /// What is known of values of a data type, for texts.
    void setTypeContext(unsigned int serverId, const UaNodeId& dataType,
                        std::shared_ptr<const QlumValueContext> context);
    /// Whether somebody has told.
    [[nodiscard]] bool hasTypeContext(unsigned int serverId, const UaNodeId& dataType) const
    {
        return m_types.contains({serverId, dataType});
    }
    /// Null when nobody has told.
    [[nodiscard]] std::shared_ptr<const QlumValueContext> typeContext(const QlumDataItem& item) const;
    /// What the row is about: the field of a structure, an element of an array, or the whole value.
    [[nodiscard]] UaVariant shownValue(const QlumDataItem& item) const
    {
        return partOf(item, item.value.value());
    }
    /// The same of another value of the row's node.
    [[nodiscard]] UaVariant partOf(const QlumDataItem& item, const UaVariant& value) const;
    /// Why what the user has entered was not written; empty to take that back.
    void setWriteFault(quint32 key, const QString& why);
    /// As last told; empty for none.
    [[nodiscard]] QString writeFault(const QlumDataItem& item) const { return m_writeFaults.value(item.key); }
    /// What a row shows as a text for a cell.
    [[nodiscard]] QString valueText(const QlumDataItem& item) const;
    /// What there is of all rows together.
    struct Summary
    {
        std::vector<unsigned int> servers; ///< of the rows, each once
        int waiting = 0;                   ///< rows for a connection, or for their turn
        OpcUa_DateTime oldest = 0; ///< when the oldest of the newest values came; 0 while there is none
    };
    /// Rows are looked at only when some have come, gone or got another state since the last time.
    [[nodiscard]] Summary summary() const;

    // ---- what others add

    /// Who judges rows; asked when a cell is painted.
    void setJudge(std::function<QlumDaVerdict(const QlumDataItem&)> judge) { m_judge = std::move(judge); }
    /// Who fills the column "New Value"; null for nobody. It must outlive the model or be taken away.
    void setNewValues(QlumDaPart* part);
    /// The judgement of a row.
    [[nodiscard]] QlumDaVerdict verdict(const QlumDataItem& item) const;
    /// What the state of a row and its last value come to, in words.
    [[nodiscard]] QString statusText(const QlumDataItem& item) const;
    /// How bad that is.
    [[nodiscard]] QlumStatusLevel level(const QlumDataItem& item) const;

    Qt::ItemFlags flags(const QModelIndex& index) const override;

signals:
    /// Rows have new values; each key once.
    void valuesTaken(const std::vector<quint32>& keys);

protected:
    [[nodiscard]] QVariant cell(const QlumDataItem& item, int column, int role) const override;

private:
    [[nodiscard]] QVariant text(const QlumDataItem& item, int column) const;
    [[nodiscard]] QVariant timeText(const QlumDataItem& item, int column) const;
    [[nodiscard]] QVariant typedValue(const QlumDataItem& item, int role) const;
    [[nodiscard]] QVariant settingText(const QlumDataItem& item, int column) const;
    [[nodiscard]] QVariant sortKey(const QlumDataItem& item, int column) const;
    [[nodiscard]] QVariant look(const QlumDataItem& item, int column, int role) const;
    [[nodiscard]] QString toolTip(const QlumDataItem& item, int column) const;
    [[nodiscard]] static QString recoveryText(const QlumDaServer& server);
    [[nodiscard]] bool isOffline(const QlumDataItem& item) const;
    void indexRows() const;
    void summariseRows() const;
    static void fetch(const QlumDataItem& item)
    {
        constexpr std::size_t line = 64; // bytes
        for (std::size_t offset = 0; offset < offsetof(QlumDataItem, attributeId); offset += line)
            __builtin_prefetch(reinterpret_cast<const char*>(&item) + offset, 1);
    }

    QlumApplicationInterface& m_application;
    const Clock m_clock;
    std::shared_ptr<const QlumDataSettings> m_viewSettings = std::make_shared<QlumDataSettings>();
    std::map<unsigned int, QlumDaServer> m_servers;
    std::map<std::pair<unsigned int, UaNodeId>, std::shared_ptr<const QlumValueContext>> m_types;
    std::function<QlumDaVerdict(const QlumDataItem&)> m_judge;
    QlumDaPart* m_newValues = nullptr;
    QHash<quint32, QString> m_writeFaults;
    QSet<QString> m_texts;
    quint32 m_lastKey = 0;
    mutable std::vector<int> m_rowOf;                     ///< by key; -1 for none
    mutable int m_indexed = 0;                            ///< rows when that was made
    std::map<unsigned int, OpcUa_DateTime> m_leastDelays; ///< between a server's clock and ours
    std::vector<quint32> m_taken;                         ///< since the last tellValues()
    mutable Summary m_summary;                            ///< but for the oldest value
    mutable QlumDaAges m_ages;                            ///< of the rows' values
    mutable bool m_isSummaryOld = true;                   ///< and the ages, too
};

/// The number that a value is, for plots and extremes; nothing for what is none.
[[nodiscard]] std::optional<double> qlumDaNumber(const UaVariant& value);
/// "0.4 s", "3 min 20 s" for a time in units of 100 ns.
[[nodiscard]] QString qlumDaSpan(OpcUa_DateTime span);
