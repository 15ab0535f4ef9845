#pragma once
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumjobpool.h>
#include <plugins/dataaccess/parts/qlumstagedmodel.h>
#include <plugins/dataaccess/parts/qlumstagedwrite.h>
#include <plugins/dataaccess/qlumdapart.h>
#include <plugins/dataaccess/qlumdataitem.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumvaluecontext.h>

#include <QLatin1String>
#include <QMap>
#include <QPointer>
#include <QString>
#include <QTimer>
#include <QVariant>

#include <atomic>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <span>
#include <utility>
#include <vector>

class QAction;
class QSettings;
class QlumStagedPage;

/// A staged value whose node is to be described.
struct QlumToDescribe
{
    quint64 key = 0; ///< of the staged value
    UaNodeId nodeId;
};

/// Values that wait in the column "New Value" until the user has them written.
class QlumStagedPart final : public QlumDaPart
{
    Q_OBJECT
public:
    /// Adds its page and its commands to the host, which outlives it.
    explicit QlumStagedPart(QlumDaHost& host);
    ~QlumStagedPart() override;

    /// A text for each row of the view, to become its new value.
    using Texts = std::vector<std::pair<quint32, QString>>;
    /// Stages them, the later one where a row comes twice.
    void stageTexts(const Texts& texts);
    /// Values as they are.
    void stageValues(const std::vector<std::pair<quint32, UaVariant>>& values);
    /// Lines of a list that name no row, with the reason: they stay in the list of staged values.
    void stageFaults(const std::vector<QlumStagedRow>& rows);
    /// Brings its page to the front.
    void show();
    /// Stages the cells of the first column, one after the other, from the selected row downward or into the
    /// selected ones.
    void pasteColumn(const QString& clipboard);
    /// Writes what can be sent.
    void apply(bool withDoubts);
    /// Puts the old values back.
    void revert();

    void saveSettings(QSettings& settings) override;
    void loadSettings(QSettings& settings, const QMap<int, int>& serverIdMap) override;
    void valuesChanged(std::span<const quint32> keys) override;
    void rowsDescribed() override;
    void watchChanged(const std::vector<quint32>& keys) override;
    void statusChanged(unsigned int serverId, QlumConnectionStatus status) override;
    void serverRemoved(unsigned int serverId) override;
    bool hasNewValues() const override { return true; }
    QVariant newValueCell(const QlumDataItem& item, int role) const override;
    UaVariant newValue(const QlumDataItem& item) const override;
    void takeNewValue(const QlumDataItem& item, const UaVariant& value) override;

private:
    struct Outcomes;
    static constexpr QLatin1String stagedTopic{"staged", 6};

    void makeCommands();
    [[nodiscard]] QlumStagedRow rowFor(const QlumDataItem& item) const;
    void readContexts(const std::vector<quint64>& keys);
    void startDescribing(unsigned int serverId);
    [[nodiscard]] std::vector<QlumToDescribe> nextToDescribe(unsigned int serverId);
    void takeDescription(quint64 key, const std::shared_ptr<const QlumValueContext>& context,
                         const QString& fault);
    void described(unsigned int serverId, QlumWorkEnd end);
    [[nodiscard]] std::vector<QlumStagedWrite> placed(std::vector<QlumStagedWrite> writes) const;
    void run(std::vector<QlumStagedWrite> writes, bool isRevert);
    bool takeSomeOutcomes();
    void takeOutcomes();
    void finished();
    void lookAgain(const std::vector<quint32>& items);
    void askSameValue();
    [[nodiscard]] bool store(QSettings& settings, const QlumStagedRow& row, int place) const;
    [[nodiscard]] bool restore(QSettings& settings, QlumStagedRow& row) const;
    void tellLeftOut(int count);

    QlumDaHost& m_host;
    QlumStagedPage* m_page; ///< the view's
    std::shared_ptr<std::atomic<bool>> m_stopped;
    std::vector<quint64> m_underWay;
    std::shared_ptr<Outcomes> m_outcomes; ///< that the job has told of; null before the first job
    QTimer m_outcomeTimer;                ///< many outcomes, few changes of the list
    bool m_hasJobEnded = false;           ///< the list may still lack outcomes
    bool m_isRevert = false;              ///< what is under way
    bool m_withDoubts = false;            ///< the same: also what the checks object to
    /// Rows whose field is not known yet; true: since they have no value.
    std::map<quint32, bool> m_openFields;
    std::map<unsigned int, std::deque<quint64>> m_toDescribe; ///< staged values to be looked at, by server
    std::set<unsigned int> m_describing; ///< servers that a job looks at staged values of
    std::optional<bool> m_wanted;        ///< to be written when they have: with doubts or without
};
