#pragma once
#include <plugins/events/qlumevent.h>
#include <uawidgets/models/qlumtablemodel.h>

#include <QModelIndex>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariant>

/// Events in columns of a list, and any of their fields in further ones.
class QlumEventTable : public QlumTableModel<QlumEvent>
{
    Q_OBJECT
public:
    /// The severity of a row as a number; 0 where it is not known.
    static constexpr int severityRole = Qt::UserRole + 1;
    /// By which tables sort; times as such.
    static constexpr int sortRole = Qt::UserRole + 2;
    /// Whether a refresh has sent the event again.
    static constexpr int refreshedRole = Qt::UserRole + 3;
    /// The name of the type.
    static constexpr int typeRole = Qt::UserRole + 4;

    /// Further columns, each a field by its name.
    void setExtraFields(const QStringList& fields);
    [[nodiscard]] const QStringList& extraFields() const { return m_extraFields; }

    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role = Qt::DisplayRole) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = QModelIndex()) const override;

protected:
    explicit QlumEventTable(const QStringList& titles, QObject* parent);

    /// Of a column behind those with titles.
    [[nodiscard]] QString extraText(const QlumEvent& event, int column) const;

private:
    QStringList m_extraFields;
};
