#pragma once
#include <servers/qlumendpoint.h>

#include <QAbstractTableModel>
#include <QModelIndex>
#include <QString>
#include <QVariant>
#include <QVector>

/// A server's endpoints as a table: URL, policy, mode, security level.
class QlumEndpointModel : public QAbstractTableModel
{
    Q_OBJECT
public:
    enum Column { Policy, Mode, Url, Level, ColumnCount };
    /// Role by which a proxy sorts.
    static constexpr int sortRole = Qt::UserRole + 1;

    using QAbstractTableModel::QAbstractTableModel;

    void setEndpoints(const QVector<QlumEndpoint>& endpoints);
    [[nodiscard]] const QVector<QlumEndpoint>& endpoints() const { return m_endpoints; }
    /// Host names are not compared; -1 when none has all three.
    [[nodiscard]] int rowOf(const QString& url, const QString& securityPolicyUri, int securityMode) const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    [[nodiscard]] static QString text(const QlumEndpoint& endpoint, int column);
    [[nodiscard]] static QString toolTip(const QlumEndpoint& endpoint);

    QVector<QlumEndpoint> m_endpoints;
};
