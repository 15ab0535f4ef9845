#include <uawidgets/editors/qlumdatafield.h>

#include <app/api/qlumcallnote.h>
#include <app/api/qlumjob.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_statuscodes.h>
#include <uabase/structures/uagenericstructurevalue.h>
#include <uabase/structures/uagenericunionvalue.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uastatuscode.h>
#include <uawidgets/editors/qlumcontextreader.h>
#include <uawidgets/editors/qlumvaluetype.h>

#include <QString>
#include <QStringList>

#include <algorithm>
#include <cstddef>
#include <span>
#include <vector>

namespace {

UaStructureDefinition definitionOf(const UaVariant& value, const QlumValueContext& context)
{
    QlumTypeHint hint;
    hint.dataTypeId = context.dataType;
    return qlumStructureDefinition(value.toExtensionObject(), hint, context.dictionary.get());
}

template <typename Decoded>
bool decode(const UaVariant& value, const UaStructureDefinition& definition, const QlumValueContext& context,
            Decoded& decoded)
{
    UaByteString body;
    return OpcUa_IsNotBad(value.toExtensionObject().binaryBody(body)) &&
           decoded.decode(body, definition, context.dictionary.get()).isNotBad();
}

int fieldNamed(const UaStructureDefinition& definition, const QString& name)
{
    for (int i = 0; i < definition.fieldCount(); ++i)
        if (toQString(definition.field(i).name()) == name)
            return i;
    return -1;
}

UaVariant stepIntoField(const UaVariant& whole, const QString& name, QlumValueContext& context)
{
    if (whole.type() != OpcUaType_ExtensionObject || !whole.isScalar())
        return {};
    const UaStructureDefinition definition = definitionOf(whole, context);
    const int index = definition.isNull() ? -1 : fieldNamed(definition, name);
    if (index < 0)
        return {};
    UaVariant part;
    UaGenericStructureValue fields;
    UaGenericUnionValue selected;
    if (decode(whole, definition, context, fields))
        part = fields.value(index);
    else if (decode(whole, definition, context, selected) && toQString(selected.field().name()) == name)
        part = selected.value();
    context = qlumFieldContext(context, definition.field(index));
    return part;
}

UaVariant stepIntoElement(const UaVariant& whole, const QString& index, QlumValueContext& context)
{
    bool isNumber = false;
    const uint place = index.toUInt(&isNumber);
    context = qlumElementContext(context);
    return isNumber && place < whole.elementCount() ? whole.at(place) : UaVariant();
}

// One step of a path: the name of a field, or the index of an element.
struct PathStep
{
    bool isElement = false;
    QString name;
};

std::vector<PathStep> stepsOf(const QString& path)
{
    std::vector<PathStep> steps;
    for (int at = 0; at < path.size();) {
        if (path.at(at) == QLatin1Char('[')) {
            const int end = path.indexOf(QLatin1Char(']'), at);
            steps.push_back({true, path.mid(at + 1, end - at - 1)});
            at = end < 0 ? path.size() : end + 1;
            continue;
        }
        const int start = path.at(at) == QLatin1Char('.') ? at + 1 : at;
        int end = start;
        while (end < path.size() && path.at(end) != QLatin1Char('.') && path.at(end) != QLatin1Char('['))
            ++end;
        steps.push_back({false, path.mid(start, end - start)});
        at = end;
    }
    return steps;
}

UaVariant stepInto(const UaVariant& whole, const PathStep& step, QlumValueContext& context)
{
    return step.isElement ? stepIntoElement(whole, step.name, context)
                          : stepIntoField(whole, step.name, context);
}

// ---- putting a part in

UaStatus putElement(UaVariant& whole, const QString& index, const UaVariant& part)
{
    bool isNumber = false;
    const uint place = index.toUInt(&isNumber);
    if (!isNumber || place >= whole.elementCount())
        return UaStatus(OpcUa_BadNoMatch);
    return UaStatus(whole.setAt(place, part));
}

UaStatus putField(UaVariant& whole, const QString& name, const UaVariant& part,
                  const QlumValueContext& context)
{
    if (whole.type() != OpcUaType_ExtensionObject || !whole.isScalar())
        return UaStatus(OpcUa_BadNoMatch);
    const UaStructureDefinition definition = definitionOf(whole, context);
    const int index = definition.isNull() ? -1 : fieldNamed(definition, name);
    if (index < 0)
        return UaStatus(OpcUa_BadNoMatch);
    UaGenericStructureValue fields;
    UaGenericUnionValue selected;
    UaExtensionObject encoded;
    UaStatusCode status;
    if (decode(whole, definition, context, fields)) {
        status = fields.setField(index, part);
        if (status.isGood())
            status = fields.encode(encoded);
    } else if (decode(whole, definition, context, selected)) {
        status = selected.setValue(toUaString(name), part);
        if (status.isGood())
            status = selected.encode(encoded);
    } else {
        return UaStatus(OpcUa_BadDecodingError);
    }
    if (status.isGood())
        whole.setExtensionObject(encoded);
    return UaStatus(status.code());
}

UaStatus putPart(UaVariant& whole, std::span<const PathStep> steps, const UaVariant& part,
                 const QlumValueContext& context)
{
    if (steps.empty()) {
        whole = part;
        return {};
    }
    QlumValueContext below = context;
    UaVariant inner = stepInto(whole, steps.front(), below);
    if (steps.size() > 1 && inner.isNull())
        return UaStatus(OpcUa_BadNoMatch);
    if (const UaStatus status = putPart(inner, steps.subspan(1), part, below); status.isBad())
        return status;
    return steps.front().isElement ? putElement(whole, steps.front().name, inner)
                                   : putField(whole, steps.front().name, inner, context);
}

bool isOneElement(const QString& indexRange)
{
    return !indexRange.isEmpty() && !indexRange.contains(QLatin1Char(':'));
}

} // namespace

UaVariant qlumFieldOf(const UaVariant& whole, const QString& path, QlumValueContext& context)
{
    UaVariant part = whole;
    for (const PathStep& step : stepsOf(path))
        if (!part.isNull())
            part = stepInto(part, step, context);
    return part;
}

UaStatus qlumSetFieldOf(UaVariant& whole, const QString& path, const UaVariant& part,
                        const QlumValueContext& context)
{
    return putPart(whole, stepsOf(path), part, context);
}

QStringList qlumFieldsOf(const UaVariant& whole, const QlumValueContext& context, int maximum)
{
    QStringList paths;
    if (!whole.isScalar()) {
        const int count = std::min(maximum, static_cast<int>(whole.elementCount()));
        for (int i = 0; i < count; ++i)
            paths.append(QStringLiteral("[%1]").arg(i));
    } else if (whole.type() == OpcUaType_ExtensionObject) {
        const UaStructureDefinition definition = definitionOf(whole, context);
        const int count = definition.isNull() ? 0 : std::min(maximum, definition.fieldCount());
        for (int i = 0; i < count; ++i)
            paths.append(toQString(definition.field(i).name()));
    }
    return paths;
}

// ---- at servers

UaVariant qlumElementOf(const UaVariant& value, const QString& indexRange)
{
    return isOneElement(indexRange) && value.elementCount() == 1 ? value.at(0) : value;
}

bool qlumWrapElement(const QString& indexRange, OpcUa_BuiltInType type, UaVariant& value)
{
    UaVariant array;
    const std::vector<OpcUa_Int32> ones(static_cast<std::size_t>(indexRange.count(QLatin1Char(','))) + 1, 1);
    if (!isOneElement(indexRange) || OpcUa_IsBad(array.setArray(type, std::span(&value, 1))) ||
        (ones.size() > 1 && OpcUa_IsBad(array.setDimensions(ones))))
        return false;
    value = array;
    return true;
}

bool QlumPartAccess::copyRange(OpcUa_String& range) const
{
    return m_place.indexRange.isEmpty() || OpcUa_IsNotBad(toUaString(m_place.indexRange).copyTo(&range));
}

UaStatus QlumPartAccess::readWhole(UaVariant& value)
{
    UaReadValueIds nodes(1);
    nodes[0].AttributeId = m_place.attributeId;
    if (OpcUa_IsBad(m_place.nodeId.copyTo(&nodes[0].NodeId)) || !copyRange(nodes[0].IndexRange))
        return UaStatus(OpcUa_BadOutOfMemory);
    m_isAnswered = false;
    if (!m_session)
        return UaStatus(OpcUa_BadNotConnected);
    UaClientSdk::ServiceSettings settings = m_job.serviceSettings();
    UaDataValues values;
    const UaStatus status = m_session->read(settings, 0, OpcUa_TimestampsToReturn_Neither, nodes, values);
    if (status.isBad() || values.length() != 1)
        return status.isBad() ? status : UaStatus(OpcUa_BadUnknownResponse);
    m_isAnswered = true;
    if (OpcUa_IsBad(values[0].StatusCode))
        return UaStatus(values[0].StatusCode);
    value = UaVariant(values[0].Value);
    return {};
}

// With definitions of its own: those that the GUI thread has are not read elsewhere.
UaStatus QlumPartAccess::readContext()
{
    if (m_context || !m_session)
        return {};
    std::vector<QlumValueContext> contexts;
    QlumContextReader reader(m_session, m_job);
    const UaStatus status = reader.read(std::span(&m_place.nodeId, 1), contexts);
    if (status.isBad() || contexts.empty())
        return status.isBad() ? status : UaStatus(OpcUa_BadUnknownResponse);
    m_context = std::make_shared<QlumValueContext>(std::move(contexts.front()));
    return {};
}

UaStatus QlumPartAccess::read(UaVariant& value)
{
    UaStatus status = readWhole(value);
    if (status.isBad() || m_place.fieldPath.isEmpty())
        return status;
    if (status = readContext(); status.isBad())
        return status;
    QlumValueContext context = *m_context;
    value = qlumFieldOf(qlumElementOf(value, m_place.indexRange), m_place.fieldPath, context);
    return value.isNull() ? UaStatus(OpcUa_BadNoMatch) : UaStatus();
}

UaStatus QlumPartAccess::write(const UaVariant& value, const UaVariant& shown)
{
    m_isSent = m_hasCallFailed = false;
    UaVariant sent = value, before = shown;
    if (!m_place.fieldPath.isEmpty()) {
        UaStatus status = readWhole(before);
        if (status.isNotBad())
            status = readContext();
        if (status.isNotBad()) {
            sent = qlumElementOf(before, m_place.indexRange);
            status = qlumSetFieldOf(sent, m_place.fieldPath, value, *m_context);
        }
        if (status.isBad())
            return status;
    }
    if (sent.isScalar() && isOneElement(m_place.indexRange) &&
        !qlumWrapElement(m_place.indexRange, sent.type(), sent))
        return UaStatus(OpcUa_BadTypeMismatch);
    UaWriteValues nodes(1);
    nodes[0].AttributeId = m_place.attributeId;
    if (OpcUa_IsBad(m_place.nodeId.copyTo(&nodes[0].NodeId)) ||
        OpcUa_IsBad(sent.copyTo(&nodes[0].Value.Value)) || !copyRange(nodes[0].IndexRange))
        return UaStatus(OpcUa_BadOutOfMemory); // a null value must not be written instead
    if (!m_session)
        return UaStatus(OpcUa_BadNotConnected);
    UaClientSdk::ServiceSettings settings = m_job.serviceSettings();
    qlumTellShown(settings, {{m_place.nodeId, m_place.attributeId, before, m_place.name}});
    UaStatusCodeArray results;
    const UaStatus status = m_session->write(settings, nodes, results);
    m_isSent = true;
    m_hasCallFailed = status.isBad() || results.length() != 1;
    if (status.isBad())
        return status;
    return results.length() == 1 ? UaStatus(results[0]) : UaStatus(OpcUa_BadUnknownResponse);
}
