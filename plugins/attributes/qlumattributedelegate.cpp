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

QWidget* QlumAttributeDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem&,
                                             const QModelIndex& index) const
{
    return qlumCreateValueEditor(m_model.rowValue(index).value, m_model.editContext(index), parent);
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
