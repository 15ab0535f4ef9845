#include <uawidgets/editors/qlumelementcell.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlummetatypes.h>
#include <uabase/structures/uadatatypedictionary.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumcelltext.h>
#include <uawidgets/editors/qlumvaluetype.h>

#include <QCoreApplication>
#include <QString>

namespace {
constexpr int elementTipLength = 2000;

UaVariant beginningOf(const QlumElementList& elements, int index, OpcUa_Int32& length)
{
    if (elements.type() != OpcUaType_Variant)
        return qlumBeginningOf(elements.type(), elements.elementAt(index), length);
    return qlumBeginningOf(elements.at(index), length);
}

QString elementText(const QlumElementList& elements, int index, const QlumValueContext& context)
{
    OpcUa_Int32 length = 0;
    const UaVariant beginning = beginningOf(elements, index, length);
    return beginning.isNull() ? qlumCellText(elements.at(index), context)
                              : QCoreApplication::translate("QlumElementCell", "%1 (%2 bytes)")
                                    .arg(qlumCellText(beginning, context), QString::number(length));
}

QString elementTip(const QlumElementList& elements, int index, const QlumValueContext& context)
{
    OpcUa_Int32 length = 0;
    const UaVariant beginning = beginningOf(elements, index, length);
    const UaVariant told = beginning.isNull() ? elements.at(index) : beginning;
    return qlumPlainToolTip(qlumCutText(qlumCopyText(told, context), elementTipLength));
}
} // namespace

QVariant qlumElementCell(const QlumElementList& elements, int index, const QlumValueContext& context,
                         int role)
{
    switch (role) {
    case Qt::DisplayRole:
        return elementText(elements, index, context);
    case Qt::EditRole:
        return qlumCopyText(elements.at(index), context);
    case Qt::ToolTipRole:
        return elementTip(elements, index, context);
    case Qt::TextAlignmentRole: {
        const bool isNumber = elements.type() >= OpcUaType_SByte && elements.type() <= OpcUaType_Double;
        return isNumber ? QVariant(Qt::AlignRight | Qt::AlignVCenter) : QVariant();
    }
    case Qt::UserRole:
        return QVariant::fromValue(elements.at(index));
    case Qt::UserRole + 2:
        return QVariant::fromValue(context.dictionary.get());
    case Qt::UserRole + 4:
        return QVariant::fromValue(context.dataType);
    default:
        return {};
    }
}

bool qlumIsElementEditable(const QlumElementList& elements, int index)
{
    OpcUa_Int32 length = 0;
    static_cast<void>(beginningOf(elements, index, length));
    if (elements.type() != OpcUaType_Variant)
        return qlumFitsCellEditor(elements.type(), length);
    const UaVariant element = elements.at(index);
    return element.isScalar() && qlumFitsCellEditor(element.type(), length);
}

QlumValueCheck qlumCheckGiven(const QlumElementList& elements, const UaArray<OpcUa_Int32>& lengths,
                              const QlumValueContext& context)
{
    constexpr int mostLooks = 1000; // at elements, so that a check is not felt
    QlumValueCheck check{qlumCheckLengths(lengths, context), {}};
    check.add({qlumCheckType(elements.type(), context), {}});
    if (!check.refused.isEmpty())
        return check;
    const QlumValueContext place = qlumElementContext(context);
    elements.visitGiven(mostLooks, [&](int index, const UaVariant& element) {
        const QlumValueCheck one = qlumCheckElement(element, place);
        const QString name = qlumElementName(index, lengths) + QLatin1String(": ");
        if (check.refused.isEmpty() && !one.refused.isEmpty())
            check.refused = name + one.refused;
        if (check.unusual.isEmpty() && !one.unusual.isEmpty())
            check.unusual = name + one.unusual;
        return check.refused.isEmpty() || check.unusual.isEmpty();
    });
    return check;
}

bool qlumReadElement(const QString& text, OpcUa_BuiltInType arrayType, const QlumValueContext& context,
                     UaVariant& value)
{
    const bool isTyped = arrayType == OpcUaType_Variant && value.isScalar() && !value.isNull();
    return qlumReadCell(text, isTyped ? value.type() : arrayType, context, value);
}
