#include <plugins/dataaccess/qlumdadelegate.h>

#include <uawidgets/editors/qlumvalueeditor.h>

#include <QFont>
#include <QPainter>
#include <QPalette>
#include <QRect>
#include <QWidget>

#include <utility>

namespace {
// Rows with a heading are twice as high as others.
QRect belowHeading(const QRect& rect)
{
    return rect.adjusted(0, rect.height() - rect.height() / 2, 0, 0);
}
} // namespace

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

// The heading goes over all columns: each cell paints its piece of the same text, which begins at the left
// of what can be seen.
void QlumDaDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                           const QModelIndex& index) const
{
    const auto heading = m_headings.constFind(index.row());
    if (heading == m_headings.constEnd()) {
        QlumValueDelegate::paint(painter, option, index);
        return;
    }
    constexpr int margin = 6;
    QStyleOptionViewItem below = option;
    below.rect = belowHeading(option.rect);
    QlumValueDelegate::paint(painter, below, index);
    const QRect strip(option.rect.left(), option.rect.top(), option.rect.width(),
                      option.rect.height() - below.rect.height());
    painter->save();
    painter->setClipRect(strip);
    painter->fillRect(strip, option.palette.brush(QPalette::Button));
    QFont font = option.font;
    font.setBold(true);
    painter->setFont(font);
    painter->setPen(option.palette.color(QPalette::ButtonText));
    const int width = option.widget != nullptr ? option.widget->width() : strip.right();
    painter->drawText(QRect(margin, strip.top(), width, strip.height()), Qt::AlignLeft | Qt::AlignVCenter,
                      *heading);
    painter->restore();
}

void QlumDaDelegate::updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                                          const QModelIndex& index) const
{
    QStyleOptionViewItem below = option;
    if (m_headings.contains(index.row()))
        below.rect = belowHeading(option.rect);
    QlumValueDelegate::updateEditorGeometry(editor, below, index);
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
