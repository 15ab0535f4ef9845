#include <plugins/attributes/qlumattributedelegate.h>

#include <app/api/qlumtext.h>
#include <plugins/attributes/qlumattributemodel.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumvalueeditor.h>
#include <uawidgets/editors/qlumvaluetext.h>
#include <uawidgets/table/qlumstatuslook.h>

#include <QAbstractItemModel>
#include <QModelIndex>
#include <QPalette>
#include <QSize>
#include <QString>
#include <QStyleOptionViewItem>
#include <QVariant>
#include <QWidget>

QlumAttributeDelegate::QlumAttributeDelegate(const QlumAttributeModel& model, QObject* parent)
    : QlumValueDelegate(parent), m_model(model)
{
}

// ---- editing

// A node without a value has nothing that tells which editor fits; its data type does.
QWidget* QlumAttributeDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem&,
                                             const QModelIndex& index) const
{
    const QlumTypedValue shown = m_model.rowValue(index);
    return shown.value.isNull()
               ? qlumCreateValueEditor(m_model.rowType(index), shown.hint.enumDefinition, parent)
               : qlumCreateValueEditor(shown.value, shown.hint.enumDefinition, parent);
}

void QlumAttributeDelegate::setEditorData(QWidget*, const QModelIndex&) const
{
    // Editors are made with their value; one that arrives meanwhile must not replace what the user types.
}

void QlumAttributeDelegate::setModelData(QWidget* editor, QAbstractItemModel* model,
                                         const QModelIndex& index) const
{
    UaVariant part;
    UaVariant whole;
    if (qlumValueFromEditor(editor, part) && m_model.valueWithRow(index, part, whole).isNotBad())
        model->setData(index, QVariant::fromValue(part), QlumAttributeModel::PartRole);
}

QString QlumAttributeDelegate::fault(const QWidget* editor) const
{
    const QString why = QlumValueDelegate::fault(editor);
    UaVariant ignored;
    if (!why.isEmpty() || m_model.standing() == QlumAttributeModel::Standing::Current ||
        !qlumValueFromEditor(editor, ignored))
        return why;
    return tr("The server cannot be asked at the moment.");
}

QString QlumAttributeDelegate::whyNoEditor(const QModelIndex& index) const
{
    const UaVariant value = m_model.rowValue(index).value;
    const OpcUa_BuiltInType type = m_model.rowType(index);
    if (type == OpcUaType_Null)
        return tr("It is empty, and its data type is not known here.");
    if (!value.isNull() && !value.isScalar())
        return tr("An array is changed by its elements.");
    if (type == OpcUaType_ExtensionObject)
        return tr("A structure is changed by its fields.");
    if (!qlumIsTextEditable(type))
        return tr("There is no editor for values of type %1.").arg(qlumBuiltinTypeName(type));
    return qlumHasLineBreaks(value) ? tr("A text of several lines would lose its line breaks.") : QString();
}

// ---- how it looks

void QlumAttributeDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const
{
    QlumValueDelegate::initStyleOption(option, index);
    const QString fault = index.data(QlumAttributeModel::FaultRole).toString();
    if (fault.isEmpty())
        return;
    option->features |= QStyleOptionViewItem::HasDecoration;
    option->icon = qlumStatusIcon(QlumStatusLevel::Bad);
    option->decorationSize = option->decorationSize.isValid() ? option->decorationSize : QSize(16, 16);
    option->text = tr("%1 (not written: %2)").arg(option->text, fault);
    option->palette.setColor(QPalette::Text, qlumStatusColor(QlumStatusLevel::Bad, option->palette));
}
