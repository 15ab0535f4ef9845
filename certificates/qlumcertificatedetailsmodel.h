#pragma once
#include <QAbstractItemModel>
#include <QModelIndex>
#include <QObject>
#include <QVariant>

class QlumCertificateChainNode;
class QlumCertificateDetailsNode;

/// The lines about one certificate, in groups. Values are cut to what a view can show; the whole text is
/// behind Qt::EditRole.
class QlumCertificateDetailsModel : public QAbstractItemModel
{
    Q_OBJECT
public:
    enum Column { NameColumn, ValueColumn, ColumnCount };

    explicit QlumCertificateDetailsModel(QObject* parent = nullptr);

    /// Shows that certificate, which must outlive it or be replaced by null.
    void setNode(const QlumCertificateChainNode* node);
    [[nodiscard]] const QlumCertificateChainNode* node() const { return m_node; }

    [[nodiscard]] QModelIndex index(int row, int column,
                                    const QModelIndex& parent = QModelIndex()) const override;
    [[nodiscard]] QModelIndex parent(const QModelIndex& index) const override;
    [[nodiscard]] int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role = Qt::DisplayRole) const override;

private:
    static const QlumCertificateDetailsNode* nodeOf(const QModelIndex& index);

    const QlumCertificateChainNode* m_node = nullptr;
};
