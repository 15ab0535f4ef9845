#include <plugins/attributes/qlumattributedelegate.h>

#include <plugins/attributes/qlumattributemodel.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumvalueeditor.h>

#include <QAbstractItemModel>
#include <QLineEdit>
#include <QModelIndex>
#include <QString>
#include <QStyleOptionViewItem>
#include <QVariant>
#include <QWidget>

namespace {
// A node without a value has nothing that tells which editor fits; its data type decides when the text is
// written.
bool hasNoValueYet(const QModelIndex& index)
{
    return index.data(QlumAttributeModel::ValueRole).value<UaVariant>().isNull();
}
} // namespace

QWidget* QlumAttributeDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem&,
                                             const QModelIndex& index) const
{
    const auto* model = qobject_cast<const QlumAttributeModel*>(index.model());
    if (!model)
        return nullptr;
    if (hasNoValueYet(index)) {
        auto* editor = new QLineEdit(parent);
        editor->setObjectName(QStringLiteral("valueEditor"));
        editor->setAccessibleName(tr("Value"));
        return editor;
    }
    const QlumTypedValue shown = model->rowValue(index);
    return shown.value.isNull() ? nullptr
                                : qlumCreateValueEditor(shown.value, shown.hint.enumDefinition, parent);
}

void QlumAttributeDelegate::setEditorData(QWidget*, const QModelIndex&) const
{
    // Editors are made with their value; one that arrives meanwhile must not replace what the user types.
}

void QlumAttributeDelegate::setModelData(QWidget* editor, QAbstractItemModel* model,
                                         const QModelIndex& index) const
{
    auto* attributes = qobject_cast<QlumAttributeModel*>(model);
    if (!attributes)
        return;
    if (hasNoValueYet(index)) {
        const auto* line = qobject_cast<QLineEdit*>(editor);
        if (line && !line->text().isEmpty())
            model->setData(index, line->text(), Qt::EditRole);
        return;
    }
    UaVariant part;
    UaVariant whole;
    if (qlumValueFromEditor(editor, part) && attributes->valueWithRow(index, part, whole).isNotBad())
        model->setData(index, QVariant::fromValue(whole), QlumAttributeModel::ValueRole);
}
