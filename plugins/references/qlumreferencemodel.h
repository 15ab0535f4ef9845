#pragma once
#include <app/api/qlummodelinterface.h>
#include <plugins/references/qlumreference.h>
#include <uawidgets/models/qlumtablemodel.h>

#include <QObject>
#include <QVariant>

#include <deque>
#include <utility>

/// The references of one node as rows.
class QlumReferenceModel : public QlumTableModel<QlumReference>, public QlumModelInterface
{
    Q_OBJECT
public:
    enum Column {
        TypeColumn,
        DirectionColumn,
        TargetColumn,
        ClassColumn,
        NodeIdColumn,
        TypeDefinitionColumn,
        BrowseNameColumn
    };

    /// Empty.
    explicit QlumReferenceModel(QObject* parent = nullptr);

    /// Replaces all rows.
    void setReferences(std::deque<QlumReference> references) { reset(std::move(references)); }
    /// Adds those that come next.
    void addReferences(std::deque<QlumReference> references) { append(std::move(references)); }
    /// What is not of the node that is named any more is grey.
    void setOutdated(bool isOutdated);

protected:
    [[nodiscard]] QVariant cell(const QlumReference& reference, int column, int role) const override;

private:
    bool m_isOutdated = false;
};
