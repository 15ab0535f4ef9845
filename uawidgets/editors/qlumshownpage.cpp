#include <uawidgets/editors/qlumshownpage.h>

#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <uabase/structures/uagenericstructurevalue.h>
#include <uabase/structures/uagenericunionvalue.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uadiagnosticinfo.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumpagedbytes.h>
#include <uawidgets/editors/qlumvaluetext.h>

#include <QByteArray>
#include <QCoreApplication>
#include <QLabel>
#include <QString>
#include <QStringList>
#include <QVBoxLayout>
#include <QWidget>

namespace {
constexpr int mostInner = 10; // as deep as a diagnosis may be

QString timeText(const UaDateTime& time, OpcUa_UInt16 picoseconds)
{
    const QString text = toQString(time.toFullString());
    return picoseconds == 0 ? text : QlumShownPage::tr("%1 + %2 ps").arg(text).arg(10 * picoseconds);
}

QString dataValueText(const UaDataValue& value)
{
    QStringList lines;
    lines << QlumShownPage::tr("Type: %1").arg(qlumBuiltinTypeName(value.value().type()))
          << QlumShownPage::tr("Value: %1").arg(toQString(value.value().toString()))
          << QlumShownPage::tr("Status: %1").arg(qlumStatusEditText(value.statusCode()));
    if (!value.sourceTimestamp().isNull())
        lines << QlumShownPage::tr("Source time: %1")
                     .arg(timeText(value.sourceTimestamp(), value.sourcePicoseconds()));
    if (!value.serverTimestamp().isNull())
        lines << QlumShownPage::tr("Server time: %1")
                     .arg(timeText(value.serverTimestamp(), value.serverPicoseconds()));
    return lines.join(QLatin1Char('\n'));
}

QString diagnosisText(const UaDiagnosticInfo& info, int depth)
{
    const QString indent(2 * depth, QLatin1Char(' '));
    QStringList lines;
    const auto add = [&](const QString& name, OpcUa_Int32 index) {
        if (index >= 0)
            lines << indent + QlumShownPage::tr("%1: entry %2 of the string table").arg(name).arg(index);
    };
    add(QlumShownPage::tr("Symbolic id"), info.symbolicId());
    add(QlumShownPage::tr("Namespace"), info.namespaceUri());
    add(QlumShownPage::tr("Locale"), info.locale());
    add(QlumShownPage::tr("Text"), info.localizedText());
    if (!info.additionalInfo().isEmpty())
        lines << indent + QlumShownPage::tr("Additional: %1").arg(toQString(info.additionalInfo()));
    lines << indent + QlumShownPage::tr("Inner status: %1").arg(qlumStatusEditText(info.innerStatusCode()));
    if (info.hasInner() && depth < mostInner)
        lines << indent + QlumShownPage::tr("Inner diagnosis:") << diagnosisText(info.inner(), depth + 1);
    return lines.join(QLatin1Char('\n'));
}
} // namespace

QString qlumPartsText(const UaVariant& value)
{
    if (!value.isScalar())
        return {};
    if (value.type() == OpcUaType_DataValue)
        return dataValueText(value.toDataValue());
    return value.type() == OpcUaType_DiagnosticInfo ? diagnosisText(value.toDiagnosticInfo(), 0) : QString();
}

QlumShownPage::QlumShownPage(const QlumValueContext& context, QWidget* parent)
    : QlumValuePage(parent), m_context(context), m_reason(new QLabel(this)),
      m_content(new QlumPagedBytes(this))
{
    m_reason->setObjectName(QStringLiteral("reason"));
    m_reason->setTextFormat(Qt::PlainText);
    m_reason->setWordWrap(true);
    m_content->setReadOnly(true);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_reason);
    layout->addWidget(m_content, 1);
    setFocusProxy(m_content);
}

void QlumShownPage::setValue(const UaVariant& value)
{
    m_value = value;
    m_content->setVisible(!value.isNull());
    if (value.isNull()) {
        m_reason->setText(m_context.builtInType == OpcUaType_Null
                              ? tr("There is no value yet: choose its type.")
                              : tr("There is no value yet. One can be given as JSON text only."));
        return;
    }
    if (value.isScalar() && value.type() == OpcUaType_ExtensionObject)
        return showBody(value);
    const QString parts = qlumPartsText(value);
    m_reason->setText(tr("It is only shown here. Its JSON text can be edited."));
    static_cast<void>(m_content->setForm(QlumPagedBytes::Form::Text));
    m_content->setBytes(parts.isEmpty() ? toQString(value.toString()).toUtf8() : parts.toUtf8());
}

bool QlumShownPage::value(UaVariant& value) const
{
    value = m_value;
    return !m_value.isNull();
}

void QlumShownPage::showBody(const UaVariant& value)
{
    m_reason->setText(whyNoFields(value));
    const UaExtensionObject object = value.toExtensionObject();
    UaByteString body;
    const bool isXml = object.encoding() == OpcUa_ExtensionObjectEncoding_Xml;
    if (isXml)
        body = object.xmlBody();
    else if (OpcUa_IsBad(object.binaryBody(body)))
        body = UaByteString();
    static_cast<void>(
        m_content->setForm(isXml ? QlumPagedBytes::Form::Text : QlumPagedBytes::Form::Hexadecimal));
    m_content->setBytes(QByteArray(body.view().data(), body.length()));
}

QString QlumShownPage::whyNoFields(const UaVariant& value) const
{
    const UaExtensionObject object = value.toExtensionObject();
    if (object.isNull())
        return tr("The structure is empty: it has neither a type nor a body.");
    const QString id = toQString(object.typeId().toString());
    if (object.encoding() == OpcUa_ExtensionObjectEncoding_Xml)
        return tr("Its body is XML, of the type with the encoding %1.").arg(id);
    const UaStructureDefinition definition =
        m_context.dictionary ? m_context.dictionary->structureDefinition(object.encodingId())
                             : UaStructureDefinition();
    if (definition.isNull())
        return tr("The fields are not known: the server gave no definition for the encoding %1. These are "
                  "its bytes.")
            .arg(id);
    UaGenericStructureValue fields;
    UaGenericUnionValue field;
    const UaStatusCode status = definition.isUnion()
                                    ? field.decode(object, definition, m_context.dictionary.get())
                                    : fields.decode(object, definition, m_context.dictionary.get());
    return status.isGood()
               ? tr("It is only shown here: these are its bytes. Its JSON text can be edited.")
               : tr("The bytes do not match the definition that the server gave for the encoding %1: %2.")
                     .arg(id, qlumStatusWords(qlumStatusText(status.code())));
}
