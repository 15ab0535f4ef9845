#pragma once
#include <plugins/dataaccess/parts/qlumstagedwrite.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumvaluecontext.h>
#include <uawidgets/models/qlumtablemodel.h>
#include <uawidgets/table/qlumstatuslook.h>

#include <QHash>
#include <QModelIndex>
#include <QObject>
#include <QString>
#include <QTimer>
#include <QVariant>

#include <deque>
#include <memory>
#include <set>
#include <vector>

/// A value that the user wants written, and what speaks against it.
struct QlumStagedRow
{
    QlumStagedWrite write;  ///< its key is the row's own, given by the model
    quint32 item = 0;       ///< key of the row of the view; 0: it has none
    QString server;         ///< name, for the user
    QString place;          ///< node id, or what the user has given for one
    QString given;          ///< the text that is to become the value; empty when the value was edited as such
    bool isText = false;    ///< the text is not a value yet
    bool isChecked = false; ///< what follows is known
    QString fault;          ///< why it cannot be sent; empty when it can
    QString refused;        ///< why the server will refuse it by its own data; empty when nothing says so
    QString unusual;        ///< what is odd but legal
    std::shared_ptr<const QlumValueContext> context; ///< of its node; null while it is not known
};

/// The staged values in the order in which they are written. One for each row of the view at most.
class QlumStagedModel : public QlumTableModel<QlumStagedRow>
{
    Q_OBJECT
public:
    /// In the order of the construction.
    enum Column { Order, Server, Name, Node, Value, Check, Result, OldValue, ReadBack, ColumnCount };

    /// Empty.
    explicit QlumStagedModel(QObject* parent = nullptr);

    /// Adds them at the end, each in the place of what was staged for its row of the view; their keys.
    std::vector<quint64> stage(std::vector<QlumStagedRow> rows);
    /// Null when nothing is staged for the row of the view.
    [[nodiscard]] const QlumStagedRow* find(quint32 item) const;
    /// Null for an unknown key.
    [[nodiscard]] const QlumStagedRow* findKey(quint64 key) const;
    /// Those of these rows of the view are staged no more.
    void discard(const std::vector<quint32>& items);
    /// The same by place in the model.
    void discardRows(std::vector<int> places);
    /// All.
    void clear();
    /// Moves these one place up or down.
    void movePlaces(std::vector<int> places, bool isUp);
    /// The context of a staged value: reads what was given as text, and checks it.
    void check(quint64 key, std::shared_ptr<const QlumValueContext> context, const UaVariant& shown);
    /// Why it cannot be checked.
    void setFault(quint64 key, const QString& fault);
    /// Outcomes, told in one step; of unknown keys nothing.
    void setOutcomes(const std::vector<QlumStagedWrite>& writes);
    /// These have none yet.
    void forgetOutcomes(const std::vector<quint64>& keys);
    /// What was under way on the server is not known any more.
    void loseServer(unsigned int serverId, const std::vector<quint64>& underWay);

    /// In the order, those that can be sent and are not done; withDoubts: also what the checks object to.
    [[nodiscard]] std::vector<QlumStagedWrite> sendable(bool withDoubts) const;
    /// Those with an old value to put back, in the order of their writing.
    [[nodiscard]] std::vector<QlumStagedWrite> revertible() const;
    /// Whether there are such.
    [[nodiscard]] bool hasRevertible() const;
    /// So many that the checks object to would be sent by sendable(true) only.
    [[nodiscard]] int doubtful() const;
    /// So many cannot be sent.
    [[nodiscard]] int faulty() const;

    /// The staged value as a cell shows it.
    [[nodiscard]] static QString valueText(const QlumStagedRow& row);
    /// What speaks against it, in words; empty for nothing.
    [[nodiscard]] static QString checkText(const QlumStagedRow& row);
    /// How it stands.
    [[nodiscard]] static QlumStatusLevel level(const QlumStagedRow& row);

    Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;

signals:
    /// Something else is staged for these rows of the view, or its outcome is known. Twenty times a second at
    /// most.
    void itemsChanged(const std::vector<quint32>& items);

protected:
    [[nodiscard]] QVariant cell(const QlumStagedRow& row, int column, int role) const override;

private:
    void indexRows();
    [[nodiscard]] int rowOfKey(quint64 key) const;
    [[nodiscard]] QString text(const QlumStagedRow& row, int column) const;
    void tellItems(const std::vector<quint32>& items);
    void tellPlaces(const std::vector<int>& places);

    QTimer m_tellTimer; ///< many outcomes, few repaints
    std::set<quint32> m_untold;
    quint64 m_lastKey = 0;
    QHash<quint64, int> m_rowOfKey;
    QHash<quint32, int> m_rowOfItem;
};
