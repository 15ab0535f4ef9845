#include <uawidgets/editors/qlumvaluepages.h>

#include <uawidgets/editors/qlumarraypage.h>
#include <uawidgets/editors/qlummatrixpage.h>
#include <uawidgets/editors/qlumstructurepage.h>
#include <uawidgets/editors/qlumvaluetype.h>

#include <QWidget>

QlumValueKind qlumKindOf(const UaVariant& value, const QlumValueContext& context)
{
    if (value.isMatrix())
        return QlumValueKind::Matrix;
    if (value.isArray())
        return QlumValueKind::Array;
    // bits are ticked, in whichever form they are sent
    const bool isBits = !qlumOptionSetDefinition(context).isNull();
    if (value.type() == OpcUaType_ExtensionObject)
        return isBits ? QlumValueKind::Scalar : QlumValueKind::Structure;
    if (!value.isNull())
        return QlumValueKind::Scalar;
    // a matrix needs lengths to begin with
    if (context.valueRank > 1 && context.arrayDimensions.size() > 1)
        return QlumValueKind::Matrix;
    if (context.valueRank >= 0)
        return QlumValueKind::Array;
    const OpcUa_BuiltInType type = context.builtInType == OpcUaType_Null
                                       ? qlumBuiltInTypeOf(context.dataType, context.dictionary.get())
                                       : context.builtInType;
    return type == OpcUaType_ExtensionObject && !isBits ? QlumValueKind::Structure : QlumValueKind::Scalar;
}

QlumValuePage* qlumCreatePartsPage(QlumValueKind kind, const QlumValueContext& context, QWidget* parent)
{
    switch (kind) {
    case QlumValueKind::Array:
        return new QlumArrayPage(context, parent);
    case QlumValueKind::Matrix:
        return new QlumMatrixPage(context, parent);
    case QlumValueKind::Structure:
        return new QlumStructurePage(context, parent);
    case QlumValueKind::Scalar:
        break;
    }
    return nullptr;
}
