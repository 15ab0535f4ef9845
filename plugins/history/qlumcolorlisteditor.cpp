#include <plugins/history/qlumcolorlisteditor.h>

#include <uawidgets/plot/qlumplotcolors.h>

#include <QAbstractItemModel>
#include <QColor>
#include <QComboBox>
#include <QModelIndex>
#include <QPalette>
#include <QString>
#include <QStyleOptionViewItem>
#include <QWidget>
#include <QtGlobal>

#include <array>

namespace {
constexpr std::array curveColorNames{
    QT_TRANSLATE_NOOP("QlumColorListEditor", "Blue"),   QT_TRANSLATE_NOOP("QlumColorListEditor", "Red"),
    QT_TRANSLATE_NOOP("QlumColorListEditor", "Green"),  QT_TRANSLATE_NOOP("QlumColorListEditor", "Violet"),
    QT_TRANSLATE_NOOP("QlumColorListEditor", "Orange"), QT_TRANSLATE_NOOP("QlumColorListEditor", "Cyan"),
    QT_TRANSLATE_NOOP("QlumColorListEditor", "Pink"),   QT_TRANSLATE_NOOP("QlumColorListEditor", "Grey")};
}

QlumColorListEditor::QlumColorListEditor(QWidget* parent) : QComboBox(parent)
{
    setObjectName(QStringLiteral("colorList"));
    setAccessibleName(tr("Colour of the curve"));
    const QlumPlotColors onLight((QPalette(Qt::white))), shown(palette());
    const auto add = [this](const QString& name, const QColor& color, const QColor& swatch) {
        addItem(name, color);
        setItemData(count() - 1, swatch, Qt::DecorationRole);
    };
    for (int number = 0; number < QlumPlotColors::curveCount(); ++number)
        add(tr(curveColorNames.at(static_cast<std::size_t>(number))), onLight.curve(number),
            shown.curve(number));
    for (const QString& name : QColor::colorNames())
        if (const QColor color(name); color.alpha() == 255)
            add(name, color, color);
}

QColor QlumColorListEditor::color() const
{
    return currentData().value<QColor>();
}

void QlumColorListEditor::setColor(const QColor& color)
{
    for (int row = 0; row < count(); ++row)
        if (itemData(row).value<QColor>().rgb() == color.rgb())
            return setCurrentIndex(row);
    addItem(color.name().toUpper(), color);
    setItemData(count() - 1, color, Qt::DecorationRole);
    setCurrentIndex(count() - 1);
}

QWidget* QlumColorDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem&,
                                         const QModelIndex&) const
{
    return new QlumColorListEditor(parent);
}

void QlumColorDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const
{
    if (auto* colors = qobject_cast<QlumColorListEditor*>(editor))
        colors->setColor(QColor(index.data(Qt::EditRole).toString()));
}

void QlumColorDelegate::setModelData(QWidget* editor, QAbstractItemModel* model,
                                     const QModelIndex& index) const
{
    if (const auto* colors = qobject_cast<QlumColorListEditor*>(editor))
        model->setData(index, colors->color().name(), Qt::EditRole);
}
