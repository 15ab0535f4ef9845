#include <uawidgets/editors/qlumpartdelegate.h>

#include <app/api/qlummetatypes.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumvalueeditor.h>

#include <QAbstractItemModel>
#include <QVariant>

#include <utility>

QlumPartDelegate::QlumPartDelegate(ContextOf contextOf, QObject* parent)
    : QlumValueDelegate(parent), m_contextOf(std::move(contextOf))
{
}

QWidget* QlumPartDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem&,
                                        const QModelIndex& index) const
{
    const auto value = index.data(Qt::UserRole).value<UaVariant>();
    m_open = qlumCreateValueEditor(value, m_contextOf(index), parent);
    if (m_open)
        qlumOnEdited(m_open, const_cast<QlumPartDelegate*>(this), [this] { emit typing(); });
    return m_open;
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

QlumValueCheck QlumPartDelegate::openCheck() const
{
    return open() ? qlumEditorCheck(open()) : QlumValueCheck();
}

void QlumPartDelegate::commitOpen()
{
    if (open() && fault(open()).isEmpty())
        emit commitData(open());
}
