#pragma once
#include <servers/qlumendpoint.h>
#include <uawidgets/models/qlumtablemodel.h>

#include <QModelIndex>
#include <QObject>
#include <QString>
#include <QVariant>
#include <QVector>

/// A server's endpoints as a table: URL, policy, mode, security level.
class QlumEndpointModel : public QlumTableModel<QlumEndpoint>
{
    Q_OBJECT
public:
    enum Column { Policy, Mode, Url, Level, ColumnCount };
    /// Role by which a proxy sorts.
    static constexpr int sortRole = Qt::UserRole + 1;

    explicit QlumEndpointModel(QObject* parent = nullptr);

    void setEndpoints(const QVector<QlumEndpoint>& endpoints) { reset({endpoints.begin(), endpoints.end()}); }
    /// Host names are not compared; -1 when none has all three.
    [[nodiscard]] int rowOf(const QString& url, const QString& securityPolicyUri, int securityMode) const;

    /// Endpoints that cannot be used are shown, and cannot be chosen.
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;

protected:
    [[nodiscard]] QVariant cell(const QlumEndpoint& endpoint, int column, int role) const override;

private:
    [[nodiscard]] static QString text(const QlumEndpoint& endpoint, int column);
    [[nodiscard]] static QString toolTip(const QlumEndpoint& endpoint);
};
