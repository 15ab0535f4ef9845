#include <plugins/dataaccess/qlumdadelegate.h>

#include <plugins/dataaccess/qlumdafilter.h>
#include <uawidgets/editors/qlumvalueeditor.h>

#include <QPainter>
#include <QPalette>
#include <QRect>
#include <QWidget>

#include <utility>

void QlumDaDelegate::prepare(const UaVariant& value, QlumValueContext context)
{
    m_value = value;
    m_context = std::move(context);
}

QWidget* QlumDaDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem&, const QModelIndex&) const
{
    QWidget* const editor = qlumCreateValueEditor(m_value, m_context, parent);
    if (editor != nullptr)
        editor->setAutoFillBackground(true);
    return editor;
}

void QlumDaDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                           const QModelIndex& index) const
{
    QlumValueDelegate::paint(painter, option, index);
    const auto* filter = qobject_cast<const QlumDaFilter*>(index.model());
    if (filter == nullptr || index.row() == 0 || !filter->beginsGroup(index.row()))
        return;
    painter->fillRect(QRect(option.rect.left(), option.rect.top(), option.rect.width(), 2),
                      option.palette.color(QPalette::Text));
}

void QlumDaDelegate::setEditorData(QWidget*, const QModelIndex&) const
{
    // Editors are made with their value; one that arrives meanwhile must not replace what the user types.
}

void QlumDaDelegate::setModelData(QWidget* editor, QAbstractItemModel*, const QModelIndex& index) const
{
    UaVariant value;
    if (qlumValueFromEditor(editor, value))
        emit entered(index, value);
}
