#include <plugins/references/qlumreferencemodel.h>

#include <app/api/qlumdisplaytext.h>
#include <uawidgets/qlumnodelook.h>
#include <uawidgets/table/qlumstatuslook.h>

#include <QString>

namespace {
QString textOf(const QlumReference& reference, int column)
{
    switch (column) {
    case QlumReferenceModel::TypeColumn:
        return reference.typeName;
    case QlumReferenceModel::DirectionColumn:
        return reference.isForward ? QlumReferenceModel::tr("Forward") : QlumReferenceModel::tr("Inverse");
    case QlumReferenceModel::TargetColumn:
        if (!reference.displayName.isEmpty())
            return reference.displayName;
        return reference.browseName.isEmpty() ? reference.targetText : reference.browseName;
    case QlumReferenceModel::ClassColumn:
        return reference.nodeClass == OpcUa_NodeClass_Unspecified ? QString()
                                                                  : qlumNodeClassText(reference.nodeClass);
    case QlumReferenceModel::NodeIdColumn:
        return reference.targetText;
    case QlumReferenceModel::TypeDefinitionColumn:
        return reference.typeDefinitionName;
    default:
        return reference.browseName;
    }
}
} // namespace

QlumReferenceModel::QlumReferenceModel(QObject* parent)
    : QlumTableModel({tr("Reference"), tr("Direction"), tr("Target"), tr("Class"), tr("Node Id"),
                      tr("Type Definition"), tr("Browse Name")},
                     parent)
{
}

void QlumReferenceModel::setOutdated(bool isOutdated)
{
    if (isOutdated == m_isOutdated)
        return;
    m_isOutdated = isOutdated;
    for (int column = 0; column < columnCount(); ++column)
        tellColumnChanged(column, {Qt::ForegroundRole});
}

QVariant QlumReferenceModel::cell(const QlumReference& reference, int column, int role) const
{
    switch (role) {
    case Qt::DisplayRole:
        return qlumCutText(qlumSingleLine(textOf(reference, column)));
    case Qt::EditRole:
        return textOf(reference, column);
    case Qt::ToolTipRole:
        return qlumPlainToolTip(reference.target.isNull() && column == TargetColumn
                                    ? tr("%1: a node of another server").arg(reference.targetText)
                                    : textOf(reference, column));
    case Qt::DecorationRole:
        return column == TargetColumn ? qlumNodeIcon(reference.nodeClass, reference.typeDefinition)
                                      : QVariant();
    case Qt::ForegroundRole:
        return m_isOutdated ? qlumStatusCell(QlumStatusLevel::Inactive, role) : QVariant();
    default:
        return {};
    }
}
