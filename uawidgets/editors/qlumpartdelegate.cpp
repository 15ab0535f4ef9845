#include <uawidgets/editors/qlumpartdelegate.h>

#include <app/api/qlummetatypes.h>
#include <uabase/structures/uadatatypedictionary.h>
#include <uabase/structures/uaenumdefinition.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumvalueeditor.h>
#include <uawidgets/editors/qlumvaluetext.h>
#include <uawidgets/editors/qlumvaluetype.h>

#include <QAbstractItemModel>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QLineEdit>
#include <QVariant>

QWidget* QlumPartDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem&,
                                        const QModelIndex& index) const
{
    const auto value = index.data(Qt::UserRole).value<UaVariant>();
    auto* dictionary = index.data(Qt::UserRole + 2).value<UaDataTypeDictionary*>();
    const auto dataType = index.data(Qt::UserRole + 4).value<UaNodeId>();
    UaEnumDefinition names;
    if (qlumMayBeEnumeration(value.type()) && !dataType.isNull())
        names = qlumEnumDefinition(dataType, dictionary);
    QWidget* editor = qlumCreateValueEditor(value, names, parent);
    m_open = editor;
    if (auto* line = qobject_cast<QLineEdit*>(editor))
        connect(line, &QLineEdit::textEdited, this, &QlumPartDelegate::typing);
    else if (auto* box = qobject_cast<QComboBox*>(editor))
        connect(box, &QComboBox::currentTextChanged, this, &QlumPartDelegate::typing);
    else if (auto* time = qobject_cast<QDateTimeEdit*>(editor))
        connect(time, &QDateTimeEdit::dateTimeChanged, this, &QlumPartDelegate::typing);
    return editor;
}

void QlumPartDelegate::setEditorData(QWidget*, const QModelIndex&) const {}

void QlumPartDelegate::setModelData(QWidget* editor, QAbstractItemModel* model,
                                    const QModelIndex& index) const
{
    UaVariant value;
    if (qlumValueFromEditor(editor, value))
        model->setData(index, QVariant::fromValue(value), Qt::UserRole);
}

// An editor that the view has closed lives on, hidden, until the event loop deletes it.
QWidget* QlumPartDelegate::open() const
{
    return m_open && !m_open->isHidden() ? m_open.data() : nullptr;
}

QString QlumPartDelegate::openFault() const
{
    return open() ? fault(open()) : QString();
}

bool QlumPartDelegate::isOpenChanged() const
{
    UaVariant ignored;
    return open() && (!fault(open()).isEmpty() || qlumValueFromEditor(open(), ignored));
}

void QlumPartDelegate::commitOpen()
{
    if (open() && fault(open()).isEmpty())
        emit commitData(open());
}
