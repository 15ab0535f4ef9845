#pragma once
#include <opcua/opcua_types.h>
#include <uabase/values/uadatavalue.h>
#include <uawidgets/editors/qlumvaluecontext.h>
#include <uawidgets/models/qlumtablemodel.h>

#include <QObject>
#include <QString>
#include <QVariant>

#include <memory>
#include <utility>

/// What the changes of one row have in common.
struct QlumLoggedItem
{
    QString server;                                  ///< name in the project
    QString nodeId;                                  ///< with the index range
    QString name;                                    ///< for the user
    QString unit;                                    ///< for the user
    std::shared_ptr<const QlumValueContext> context; ///< null while nothing is known of the type
};

/// A value that came.
struct QlumLoggedChange
{
    std::shared_ptr<const QlumLoggedItem> item; ///< never null
    UaDataValue value;                          ///< as it was sent
    OpcUa_DateTime received = 0;                ///< by this computer
};

/// The changes of the rows that are logged, the oldest first. When there are too many the oldest go, and are
/// counted.
class QlumChangeLogModel : public QlumTableModel<QlumLoggedChange>
{
    Q_OBJECT
public:
    /// In the order of the construction.
    enum Column { Received, SourceTime, ServerTime, Server, NodeId, Name, Value, Unit, Status, ColumnCount };

    /// Empty, for so many changes.
    explicit QlumChangeLogModel(int maximum, QObject* parent = nullptr);

    /// Views see it with the next portion.
    void add(QlumLoggedChange change) { gather(std::move(change)); }
    /// So many were lost before they came here.
    void addLost(quint64 count);
    /// Forgets everything.
    void clear();
    /// Oldest changes that had to go.
    [[nodiscard]] quint64 dropped() const { return m_dropped; }
    /// Changes that never came.
    [[nodiscard]] quint64 lost() const { return m_lost; }

signals:
    /// There are more or fewer, or others went.
    void counted();

protected:
    void flush() override;
    [[nodiscard]] QVariant cell(const QlumLoggedChange& change, int column, int role) const override;

private:
    [[nodiscard]] QString text(const QlumLoggedChange& change, int column) const;

    const std::size_t m_maximum;
    quint64 m_dropped = 0;
    quint64 m_lost = 0;
};
