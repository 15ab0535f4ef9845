#pragma once
#include <servers/qlumendpoint.h>
#include <uawidgets/models/qlumtablemodel.h>

#include <QModelIndex>
#include <QObject>
#include <QString>
#include <QVariant>
#include <QVector>

/// A server's endpoints as a table: how each is secured, who may log in, and what is to be said against it.
class QlumEndpointModel : public QlumTableModel<QlumEndpoint>
{
    Q_OBJECT
public:
    enum Column { Policy, Mode, Level, Transport, Users, Remark, Url, ColumnCount };
    /// Role by which a proxy sorts.
    static constexpr int sortRole = Qt::UserRole + 1;

    explicit QlumEndpointModel(QObject* parent = nullptr);

    /// The row of the one that is proposed is marked; -1 marks none.
    void setEndpoints(const QVector<QlumEndpoint>& endpoints, int proposed = -1);
    /// Host names are not compared; -1 when none has all three.
    [[nodiscard]] int rowOf(const QString& url, const QString& securityPolicyUri, int securityMode) const;

    /// Endpoints that cannot be used are shown, and cannot be chosen.
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;

protected:
    [[nodiscard]] QVariant cell(const QlumEndpoint& endpoint, int column, int role) const override;

private:
    [[nodiscard]] QString text(const QlumEndpoint& endpoint, int column) const;
    [[nodiscard]] QString remark(const QlumEndpoint& endpoint) const;
    [[nodiscard]] static QString toolTip(const QlumEndpoint& endpoint);

    int m_proposed = -1;
};
