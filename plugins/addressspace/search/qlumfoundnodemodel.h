#pragma once
#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumtoolservices.h>
#include <plugins/addressspace/search/qlumnodeindex.h>
#include <plugins/addressspace/search/qlumnodesearch.h>
#include <uawidgets/models/qlumtablemodel.h>

#include <QMimeData>
#include <QModelIndex>
#include <QModelIndexList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <memory>

/// The nodes that a search has found; they are dragged as from the tree. Texts stay in the index.
class QlumFoundNodeModel : public QlumTableModel<QlumSearchHit>
{
    Q_OBJECT
public:
    /// What a node shows.
    enum Column { Name, NodeId, NodeClass, TypeDefinition, Path, Description, DataType, Unit, Access };

    /// Empty.
    explicit QlumFoundNodeModel(QObject* parent = nullptr);

    /// Empties it; what is added from now on is of that index.
    void begin(unsigned int serverId, std::shared_ptr<const QlumNodeIndex> index);
    /// Shows more nodes.
    void add(const QlumSearchHits& nodes);
    /// Shows whether the server can be asked about the nodes.
    void setGrey(bool grey);
    /// The node of a row, for other tools.
    [[nodiscard]] QlumToolNode node(const QModelIndex& index) const;

    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;
    [[nodiscard]] QStringList mimeTypes() const override;
    [[nodiscard]] QMimeData* mimeData(const QModelIndexList& indexes) const override;

protected:
    [[nodiscard]] QVariant cell(const QlumSearchHit& row, int column, int role) const override;

private:
    [[nodiscard]] QString text(const QlumSearchHit& row, int column) const;

    unsigned int m_serverId = qlumNoServer;
    std::shared_ptr<const QlumNodeIndex> m_index;
    bool m_isGrey = false;
};
