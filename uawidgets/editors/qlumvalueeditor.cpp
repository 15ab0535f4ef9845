#include <uawidgets/editors/qlumvalueeditor.h>

#include <app/api/qlumtext.h>
#include <uabase/structures/uaenumdefinition.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumcelleditors_p.h>
#include <uawidgets/editors/qlumvaluetext.h>
#include <uawidgets/editors/qlumvaluetype.h>

#include <QObject>
#include <QString>
#include <QWidget>

namespace {
// What a line lays out and checks within a keystroke.
constexpr int longestText = 4096;

int bytesOf(const OpcUa_String& text)
{
    return text.Length;
}

// Without making the text, which may be as long as a message.
bool isTooLong(const UaVariant& value)
{
    const auto& content = value.get()->Value;
    switch (value.type()) {
    case OpcUaType_String:
        return bytesOf(content.String) > longestText;
    case OpcUaType_ByteString:
    case OpcUaType_XmlElement:
        return content.ByteString.Length > longestText / 2;
    default:
        return qlumEditText(value).size() > longestText;
    }
}

QlumCellValue cellOf(const UaVariant& value, const QlumValueContext& context)
{
    const OpcUa_BuiltInType type = value.isNull() ? context.builtInType : value.type();
    return {value, type, context, qlumValueNames(type, context), qlumOptionSetDefinition(context)};
}

QWidget* makeEditor(const QlumCellValue& cell, QWidget* parent)
{
    QWidget* editor = nullptr;
    if (cell.type == OpcUaType_Boolean)
        editor = new QlumBoolCell(cell, parent);
    else if (cell.type == OpcUaType_StatusCode || cell.enumeration.valueCount() > 0)
        editor = new QlumNamesCell(cell, parent);
    else if (cell.type == OpcUaType_DateTime)
        editor = new QlumTimeCell(cell, parent);
    else
        editor = new QlumLineCell(cell, parent);
    editor->setObjectName(QStringLiteral("valueEditor"));
    editor->setAccessibleName(QObject::tr("Value"));
    return editor;
}

const QlumCellEditor* cellEditor(const QWidget* editor)
{
    return dynamic_cast<const QlumCellEditor*>(editor);
}

QlumCellEditor* cellEditor(QWidget* editor)
{
    return dynamic_cast<QlumCellEditor*>(editor);
}

} // namespace

QWidget* qlumCreateValueEditor(const UaVariant& value, const QlumValueContext& context, QWidget* parent)
{
    return qlumWhyNoValueEditor(value, context).isEmpty() ? makeEditor(cellOf(value, context), parent)
                                                          : nullptr;
}

QString qlumWhyNoValueEditor(const UaVariant& value, const QlumValueContext& context)
{
    const OpcUa_BuiltInType type = value.isNull() ? context.builtInType : value.type();
    if (type == OpcUaType_Null)
        return QObject::tr("It is empty, and its data type is not known here.");
    if (!value.isNull() && !value.isScalar())
        return QObject::tr("An array is changed by its elements.");
    if (type == OpcUaType_ExtensionObject)
        return QObject::tr("A structure is changed by its fields.");
    if (!qlumIsTextEditable(type))
        return QObject::tr("There is no editor for values of type %1.").arg(qlumBuiltinTypeName(type));
    if (isTooLong(value))
        return QObject::tr("It is too long for a line.");
    return qlumHasLineBreaks(value) ? QObject::tr("A text of several lines would lose its line breaks.")
                                    : QString();
}

QString qlumEditorFault(const QWidget* editor)
{
    const QlumCellEditor* cell = cellEditor(editor);
    return cell ? cell->fault() : QString();
}

QlumValueCheck qlumEditorCheck(const QWidget* editor)
{
    const QlumCellEditor* cell = cellEditor(editor);
    return cell ? cell->check() : QlumValueCheck();
}

bool qlumValueFromEditor(const QWidget* editor, UaVariant& value)
{
    const QlumCellEditor* cell = cellEditor(editor);
    return cell && cell->readChange(value);
}

void qlumOnEdited(QWidget* editor, QObject* receiver, const std::function<void()>& edited)
{
    if (QlumCellEditor* cell = cellEditor(editor))
        cell->onEdited(receiver, edited);
}

bool qlumSetEditorValue(QWidget* editor, const UaVariant& value)
{
    QlumCellEditor* cell = cellEditor(editor);
    if (!cell || cell->cell().type != value.type())
        return false;
    cell->enter(value);
    return true;
}

void qlumSetEditorBase(QWidget* editor, QlumNumberBase base)
{
    if (QlumCellEditor* cell = cellEditor(editor))
        cell->setBase(base);
}

void qlumSetEditorReadOnly(QWidget* editor, bool readOnly)
{
    if (QlumCellEditor* cell = cellEditor(editor))
        cell->setReadOnly(readOnly);
}
