#include <uawidgets/editors/qlumshowntext.h>

#include <app/api/qlumtext.h>
#include <uabase/structures/uaoptionsetdefinition.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uastring.h>
#include <uawidgets/editors/qlumnumbertext.h>
#include <uawidgets/editors/qlumvaluetext.h>

#include <QLocale>

namespace {
QString quoted(const UaString& text)
{
    return QLatin1Char('"') + toQString(text) + QLatin1Char('"');
}

QString bytesText(const UaByteString& bytes)
{
    return QStringLiteral("len=%1, 0x%2").arg(QString::number(bytes.length()), toQString(bytes.toHex()));
}

QString optionSetText(const UaVariant& value, const QlumTypeHint& hint, UaDataTypeDictionary* dictionary)
{
    const bool isBits = value.type() == OpcUaType_Byte || value.type() == OpcUaType_UInt16 ||
                        value.type() == OpcUaType_UInt32 || value.type() == OpcUaType_UInt64;
    if (!isBits)
        return QString();
    const UaOptionSetDefinition definition = qlumOptionSetDefinition(hint.dataTypeId, dictionary);
    const QString names = definition.isNull() ? QString() : toQString(definition.toString(value.toUInt64()));
    return names.isEmpty() ? QString() : QStringLiteral("%1 (%2)").arg(names).arg(value.toUInt64());
}

} // namespace

QString qlumStatusCodeText(OpcUa_StatusCode code)
{
    return QStringLiteral("%1 (0x%2)")
        .arg(qlumStatusText(code), QString::number(code, 16).toUpper().rightJustified(8, QLatin1Char('0')));
}

QString qlumShownText(const UaVariant& value, const QlumTypeHint& hint, UaDataTypeDictionary* dictionary)
{
    if (!hint.enumDefinition.isNull() && qlumMayBeEnumeration(value.type()))
        return qlumEnumerationText(value.toInt64(), hint.enumDefinition);
    if (const QString bits = optionSetText(value, hint, dictionary); !bits.isEmpty())
        return bits;
    switch (value.type()) {
    case OpcUaType_Boolean:
        return value.toBool() ? QStringLiteral("true") : QStringLiteral("false");
    case OpcUaType_SByte:
        return QString::number(value.toSByte());
    case OpcUaType_Byte:
        return QString::number(value.toByte());
    case OpcUaType_Float:
        return qlumFloatText(value.toFloat());
    case OpcUaType_Double:
        return QLocale::c().toString(value.toDouble(), 'g', QLocale::FloatingPointShortest);
    case OpcUaType_DateTime:
        return toQString(value.toDateTime().toString());
    case OpcUaType_Guid:
        return toQString(value.toGuid().toString());
    case OpcUaType_ByteString:
        return bytesText(value.toByteString());
    case OpcUaType_XmlElement: {
        const UaByteString xml = value.toXmlElement();
        return QString::fromUtf8(xml.view().data(), xml.length());
    }
    case OpcUaType_StatusCode:
        return qlumStatusCodeText(value.toStatusCode().code());
    case OpcUaType_QualifiedName: {
        const UaQualifiedName name = value.toQualifiedName();
        return QString::number(name.namespaceIndex()) + QLatin1String(", ") + quoted(name.name());
    }
    case OpcUaType_LocalizedText: {
        const UaLocalizedText text = value.toLocalizedText();
        return quoted(text.locale()) + QLatin1String(", ") + quoted(text.text());
    }
    default:
        return toQString(value.toString());
    }
}
