#pragma once
#include <app/api/qlummodelinterface.h>
#include <plugins/devices/qlumdeviceclient.h>
#include <plugins/devices/qlumdevicedata.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/models/qlumtablemodel.h>
#include <uawidgets/table/qlumstatuslook.h>
#include <uawidgets/table/qlumtablefilter.h>

#include <QModelIndex>
#include <QObject>
#include <QString>
#include <QVariant>

#include <optional>
#include <vector>

/// A parameter, what the user has made of it, and what became of that.
struct QlumParameterRow
{
    QlumDeviceParameter parameter;
    std::optional<UaVariant> changed; ///< by the user, and not written yet
    QString outcome;                  ///< of the last write; empty for none
    QlumStatusLevel level = QlumStatusLevel::Good;
    bool isWatched = false;
};

/// The parameters of a device, edited as a set: changed cells wait until all are written in one go.
class QlumParameterModel : public QlumTableModel<QlumParameterRow>, public QlumModelInterface
{
    Q_OBJECT
public:
    /// In the order of the construction.
    enum Column { Name, Value, Unit, State, Groups, Range, Access, Default, ColumnCount };
    /// Besides Qt::UserRole, which is the value as a UaVariant.
    enum Role {
        DictionaryRole = Qt::UserRole + 2, ///< UaDataTypeDictionary*; the context of the row keeps it
        DataTypeRole = Qt::UserRole + 4    ///< UaNodeId: of the parameter
    };

    explicit QlumParameterModel(QObject* parent = nullptr);

    /// Replaces all. What the user has changed of a parameter that is there again stays changed.
    void setDetails(const QlumDeviceDetails& details, bool keepsChanges);
    void clear() { reset(); }
    /// Why nothing can be edited just now, in words; empty when it can.
    void setObstacle(const QString& why) { m_obstacle = why; }
    /// A value that was read or has come by itself.
    void setValue(int row, const UaDataValue& value);
    void setWatched(int row, bool isWatched);

    /// Wants a row to have another value; empty when it is taken, else why not.
    QString stage(int row, const UaVariant& value);
    /// The same of what was wanted before, whatever stands against it now.
    void restage(int row, const UaVariant& value);
    /// Forgets what the user has changed.
    void discardChanges();
    /// In the order of the rows.
    [[nodiscard]] std::vector<QlumParameterWrite> changes() const;
    [[nodiscard]] int changeCount() const;
    /// Takes over what the writes came to; those that were taken are not changed any more.
    void setOutcomes(const QlumParameterOutcomes& outcomes);
    /// -1 for no row.
    [[nodiscard]] int find(const UaNodeId& id) const;
    /// For the user.
    [[nodiscard]] static QString valueText(const QlumParameterRow& row, const UaVariant& value);
    /// What the user sees: his own value, else the server's.
    [[nodiscard]] static const UaVariant& shown(const QlumParameterRow& row);
    /// Why the row cannot be edited, in words; empty when it can.
    [[nodiscard]] QString obstacle(int row) const;

    Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;

signals:
    /// Another number of values waits to be written.
    void changesChanged();

protected:
    [[nodiscard]] QVariant cell(const QlumParameterRow& row, int column, int role) const override;

private:
    [[nodiscard]] QString text(const QlumParameterRow& row, int column) const;
    [[nodiscard]] static QString stateText(const QlumParameterRow& row);
    [[nodiscard]] static QlumStatusLevel levelOf(const QlumParameterRow& row);

    QString m_obstacle;
};

/// Shows the parameters of one functional group, and those with a text.
class QlumParameterFilter : public QlumTableFilter
{
    Q_OBJECT
public:
    using QlumTableFilter::QlumTableFilter;

    /// Empty: all groups.
    void setGroup(const QString& group);

protected:
    [[nodiscard]] bool acceptsRow(int row, const QModelIndex& parent) const override;

private:
    QString m_group;
};
