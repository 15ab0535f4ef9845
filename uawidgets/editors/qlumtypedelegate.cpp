#include <uawidgets/editors/qlumtypedelegate.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlummetatypes.h>
#include <uabase/values/uanodeid.h>
#include <uawidgets/editors/qlumstructuremodel.h>
#include <uawidgets/editors/qlumvaluecontext.h>
#include <uawidgets/editors/qlumvaluetype.h>

#include <QAbstractItemModel>
#include <QComboBox>
#include <QString>
#include <QVariant>

QlumTypeDelegate::QlumTypeDelegate(QlumStructureModel& model, QObject* parent)
    : QlumPartDelegate([&model](const QModelIndex& index) { return model.contextOf(index); }, parent),
      m_model(model)
{
}

QWidget* QlumTypeDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                                        const QModelIndex& index) const
{
    if (index.column() != QlumStructureModel::TypeColumn)
        return QlumPartDelegate::createEditor(parent, option, index);
    auto* types = new QComboBox(parent);
    types->setObjectName(QStringLiteral("typeEditor"));
    types->setAccessibleName(tr("Type"));
    const QlumValueContext context = m_model.contextOf(index);
    for (const UaNodeId& type : m_model.choices(index))
        types->addItem(qlumSingleLine(qlumTypeNameOf(type, context)), QVariant::fromValue(type));
    types->setCurrentIndex(types->findText(index.data().toString()));
    return types;
}

void QlumTypeDelegate::setModelData(QWidget* editor, QAbstractItemModel* model,
                                    const QModelIndex& index) const
{
    const auto* types = qobject_cast<const QComboBox*>(editor);
    if (index.column() != QlumStructureModel::TypeColumn || !types)
        return QlumPartDelegate::setModelData(editor, model, index);
    if (types->currentIndex() >= 0 && types->currentText() != index.data().toString())
        m_model.choose(index.siblingAtColumn(QlumStructureModel::NameColumn),
                       types->currentData().value<UaNodeId>());
}
