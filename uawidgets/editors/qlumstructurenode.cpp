#include <uawidgets/editors/qlumstructurenode.h>

#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_statuscodes.h>
#include <uabase/structures/uaenumdefinition.h>
#include <uabase/structures/uaoptionsetdefinition.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uanodeid.h>
#include <uawidgets/editors/qlumnumbertext.h>
#include <uawidgets/editors/qlumvaluetype.h>

#include <algorithm>
#include <span>
#include <utility>

namespace {
bool isNullStructure(const UaVariant& value)
{
    const OpcUa_ExtensionObject* object = value.get()->Value.ExtensionObject;
    return !object || (object->Encoding == OpcUa_ExtensionObjectEncoding_None &&
                       qlumWithoutBody(value).typeId().isNull());
}
} // namespace

QlumStructureNode::QlumStructureNode(const QlumValueContext& whole, const UaVariant& value) : m_whole(&whole)
{
    adopt(value);
}

QlumStructureNode::QlumStructureNode(const QlumStructureNode& parent, Part part, int place)
    : m_whole(parent.m_whole), m_part(part), m_place(place), m_depth(parent.m_depth + 1)
{
}

// ---- what it is

QString QlumStructureNode::name() const
{
    switch (m_part) {
    case Part::Element:
        return qlumElementName(m_place, parent() ? parent()->m_value.dimensions() : UaArray<OpcUa_Int32>());
    case Part::Bit:
    case Part::Note:
        return m_title;
    default:
        return toQString(m_field.name());
    }
}

QlumValueContext QlumStructureNode::context() const
{
    const QlumValueContext declared = m_field.isNull() ? *m_whole : qlumFieldContext(*m_whole, m_field);
    return m_part == Part::Element ? qlumElementContext(declared) : declared;
}

bool QlumStructureNode::isOptional() const
{
    return m_part == Part::Member || m_part == Part::Bit || (m_part == Part::Field && m_field.isOptional());
}

bool QlumStructureNode::isPresent() const
{
    if (m_part != Part::Bit)
        return m_present;
    const auto* bits = parent() ? std::get_if<UaGenericOptionSetValue>(&parent()->m_content) : nullptr;
    return bits && bits->isSet(static_cast<OpcUa_UInt32>(m_place));
}

bool QlumStructureNode::isOpenType() const
{
    if (m_part == Part::Bit || m_part == Part::Note || !m_present || !m_value.isScalar())
        return false;
    if (m_field.isNull())
        return true; // the one who declared it knows
    return m_field.builtInType() == OpcUaType_Variant || m_field.allowSubTypes() ||
           (m_field.builtInType() == OpcUaType_ExtensionObject && !m_field.isNestedStructure());
}

UaStructureDefinition QlumStructureNode::definition() const
{
    const UaExtensionObject object = qlumWithoutBody(m_value);
    const QlumTypeHint hint{m_field.isNull() ? m_whole->dataType : m_field.dataTypeId(), {}};
    const UaStructureDefinition found = qlumStructureDefinition(object, hint, m_whole->dictionary.get());
    return found.isNull() ? m_field.structureDefinition() : found;
}

QlumStructureNode::Kind QlumStructureNode::kindOf(const UaVariant& value) const
{
    if (value.isNull() || !m_present || m_part == Part::Note)
        return Kind::Plain;
    if (!value.isScalar())
        return value.elementCount() > 0 ? Kind::Array : Kind::Plain;
    if (value.type() == OpcUaType_ExtensionObject) {
        if (isNullStructure(value))
            return Kind::Plain;
        const UaStructureDefinition type = definition();
        if (type.isNull() || m_depth >= maximumDepth)
            return Kind::Undecoded;
        if (type.isOptionSet() &&
            !qlumOptionSetDefinition(type.dataTypeId(), m_whole->dictionary.get()).isNull())
            return Kind::Bits;
        if (type.isUnion())
            return Kind::Union;
        return type.fieldCount() > 0 ? Kind::Structure : Kind::Plain;
    }
    if (!qlumIsUnsigned(value.type()))
        return Kind::Plain;
    const UaNodeId type = m_field.isNull() ? m_whole->dataType : m_field.dataTypeId();
    return type.isNumeric(value.type()) || qlumOptionSetDefinition(type, m_whole->dictionary.get()).isNull()
               ? Kind::Plain
               : Kind::Bits;
}

void QlumStructureNode::adopt(const UaVariant& value)
{
    m_value = value;
    m_kind = kindOf(value);
    m_waiting = m_kind != Kind::Plain;
    m_edited = false;
    m_reason.clear();
    m_content = std::monostate();
    if (m_kind == Kind::Undecoded)
        m_reason = m_depth >= maximumDepth
                       ? tr("Here are more than %1 levels of values within values.").arg(maximumDepth)
                       : tr("There is no definition of its type here.");
}

// ---- taking apart

std::vector<std::unique_ptr<QlumStructureNode>> QlumStructureNode::makeChildren()
{
    Children children;
    if (!m_waiting)
        return children;
    m_waiting = false;
    if (m_kind == Kind::Structure)
        addFields(children);
    else if (m_kind == Kind::Union)
        addMembers(children);
    else if (m_kind == Kind::Array)
        addElements(children);
    else if (m_kind == Kind::Bits)
        addBits(children);
    if (m_kind == Kind::Undecoded)
        addBytes(children);
    return children;
}

void QlumStructureNode::fail(UaStatusCode status)
{
    m_kind = Kind::Undecoded;
    m_content = std::monostate();
    if (status.code() == OpcUa_BadDataTypeIdUnknown)
        m_reason = tr("There is no definition of a type within it here.");
    else if (status.code() == OpcUa_BadEncodingLimitsExceeded)
        m_reason = tr("It is nested too deep, or its definition contains itself.");
    else if (status.code() == OpcUa_BadDecodingError)
        m_reason = tr("Its bytes do not fit the definition of %1.").arg(toQString(definition().name()));
    else
        m_reason = qlumStatusWords(qlumStatusText(status.code()));
}

void QlumStructureNode::addFields(Children& children)
{
    UaGenericStructureValue fields;
    UaByteString body;
    UaStatusCode status = m_value.toExtensionObject().binaryBody(body);
    if (status.isNotBad() || status.code() == OpcUa_BadNoData)
        status = fields.decode(body, definition(), m_whole->dictionary.get());
    if (status.isBad())
        return fail(status);
    const UaStructureDefinition type = fields.definition();
    children.reserve(static_cast<std::size_t>(type.fieldCount()));
    for (int i = 0; i < type.fieldCount(); ++i) {
        children.emplace_back(new QlumStructureNode(*this, Part::Field, i));
        QlumStructureNode& child = *children.back();
        child.m_field = type.fieldAt(i);
        child.m_present = fields.isFieldSet(i);
        child.adopt(fields.value(i));
    }
    m_content = std::move(fields);
}

void QlumStructureNode::addMembers(Children& children)
{
    UaGenericUnionValue members;
    UaByteString body;
    UaStatusCode status = m_value.toExtensionObject().binaryBody(body);
    if (status.isNotBad())
        status = members.decode(body, definition(), m_whole->dictionary.get());
    if (status.isBad())
        return fail(status);
    for (int i = 0; i < members.definition().fieldCount(); ++i) {
        children.emplace_back(new QlumStructureNode(*this, Part::Member, i));
        QlumStructureNode& child = *children.back();
        child.m_field = members.definition().fieldAt(i);
        child.m_present = members.switchValue() == static_cast<OpcUa_UInt32>(i) + 1;
        child.adopt(child.m_present ? members.value() : UaVariant());
    }
    m_content = std::move(members);
}

void QlumStructureNode::addElements(Children& children)
{
    QlumElementList elements(m_value, m_value.type());
    const int shown = std::min(elements.count(), shownElements);
    for (int i = 0; i < shown; ++i) {
        children.emplace_back(new QlumStructureNode(*this, Part::Element, i));
        children.back()->m_field = m_field;
        children.back()->adopt(elements.at(i));
    }
    if (shown < elements.count())
        addNote(children, QStringLiteral("..."),
                tr("%1 more elements; Open shows them all.").arg(elements.count() - shown));
    m_content = std::move(elements);
}

void QlumStructureNode::addBits(Children& children)
{
    const UaNodeId type = m_value.type() == OpcUaType_ExtensionObject ? definition().dataTypeId()
                          : m_field.isNull()                          ? m_whole->dataType
                                                                      : m_field.dataTypeId();
    const UaOptionSetDefinition names = qlumOptionSetDefinition(type, m_whole->dictionary.get());
    UaGenericOptionSetValue bits;
    if (const UaStatusCode status = bits.decode(m_value, names); status.isBad())
        return fail(status);
    for (int i = 0; i < names.bitCount(); ++i) {
        const UaEnumValue bit = names.bitAt(i);
        children.emplace_back(new QlumStructureNode(*this, Part::Bit, static_cast<int>(bit.value)));
        children.back()->m_title = toQString(bit.name);
    }
    m_content = std::move(bits);
}

void QlumStructureNode::addNote(Children& children, const QString& name, const QString& note) const
{
    children.emplace_back(new QlumStructureNode(*this, Part::Note, 0));
    children.back()->m_title = name;
    children.back()->m_note = note;
}

// What there is, for those who know the type.
void QlumStructureNode::addBytes(Children& children)
{
    constexpr OpcUa_Int32 shownBytes = 2048;
    addNote(children, tr("Not taken apart"), m_reason);
    const UaExtensionObject object = m_value.toExtensionObject();
    addNote(children, tr("Type id"), toQString(object.typeId().toString()));
    if (object.encoding() == OpcUa_ExtensionObjectEncoding_Xml) {
        const UaByteString xml = object.xmlBody();
        addNote(children, tr("XML"),
                QString::fromUtf8(xml.view().data(), std::min(xml.length(), shownBytes)));
        return;
    }
    UaByteString body;
    if (!OpcUa_IsGood(object.binaryBody(body)))
        return;
    const std::size_t count = static_cast<std::size_t>(std::min(std::max(body.length(), 0), shownBytes));
    addNote(children, tr("%1 bytes").arg(std::max(body.length(), 0)),
            QLatin1String("0x") + toQString(UaByteString(body.bytes().first(count)).toHex()) +
                (body.length() > shownBytes ? QStringLiteral("...") : QString()));
}

// ---- putting together

// The child's value, as it stands, into what this node holds.
UaStatusCode QlumStructureNode::take(const QlumStructureNode& child)
{
    const auto place = static_cast<OpcUa_UInt32>(child.m_place);
    if (auto* fields = std::get_if<UaGenericStructureValue>(&m_content))
        return child.m_present ? fields->setField(child.m_place, child.m_value)
                               : fields->unsetField(child.m_place);
    if (auto* members = std::get_if<UaGenericUnionValue>(&m_content)) {
        if (child.m_present)
            return members->setValue(place + 1, child.m_value);
        return members->switchValue() == place + 1 ? members->setValue(0, UaVariant())
                                                   : UaStatusCode(OpcUa_Good);
    }
    if (auto* elements = std::get_if<QlumElementList>(&m_content))
        return elements->fill(child.m_place, 1, child.m_value) ? OpcUa_Good : OpcUa_BadTypeMismatch;
    return OpcUa_BadInvalidState;
}

// The value from what this node holds. The id of a structure's encoding stays what the server used.
UaStatusCode QlumStructureNode::putTogether()
{
    UaExtensionObject object;
    UaStatusCode status = OpcUa_BadInvalidState;
    if (const auto* fields = std::get_if<UaGenericStructureValue>(&m_content))
        status = fields->encode(object);
    else if (const auto* members = std::get_if<UaGenericUnionValue>(&m_content))
        status = members->encode(object);
    else if (const auto* bits = std::get_if<UaGenericOptionSetValue>(&m_content))
        return bits->encode(m_value);
    else if (auto* elements = std::get_if<QlumElementList>(&m_content)) {
        UaVariant array = elements->whole();
        const UaArray<OpcUa_Int32> dimensions = m_value.dimensions();
        if (m_value.isMatrix() && !array.isMatrix())
            status =
                array.setDimensions(std::span<const OpcUa_Int32>(dimensions.rawData(), dimensions.length()));
        else
            status = array.isNull() ? OpcUa_BadOutOfMemory : OpcUa_Good;
        if (status.isNotBad())
            m_value = array;
        return status;
    }
    UaByteString body;
    if (status.isNotBad())
        status = object.binaryBody(body);
    if (status.isBad())
        return status;
    m_value.setExtensionObject(UaExtensionObject(m_value.toExtensionObject().typeId(), body));
    return status;
}

UaStatusCode QlumStructureNode::collect()
{
    if (!m_edited)
        return OpcUa_Good;
    for (int row = 0; row < childCount(); ++row) {
        QlumStructureNode& below = *child(row);
        if (!below.m_edited)
            continue;
        UaStatusCode status = below.collect();
        if (status.isNotBad())
            status = take(below);
        if (status.isBad())
            return status;
    }
    const UaStatusCode status = putTogether();
    m_edited = status.isBad();
    return status;
}

// To the parent; those above hear that they are no longer what they were.
UaStatusCode QlumStructureNode::passOn()
{
    if (!parent())
        return OpcUa_Good;
    if (const UaStatusCode status = parent()->take(*this); status.isBad())
        return status;
    for (QlumStructureNode* node = parent(); node; node = node->parent())
        node->m_edited = true;
    return OpcUa_Good;
}

UaStatusCode QlumStructureNode::setValue(const UaVariant& value)
{
    if (!m_present || m_part == Part::Bit || m_part == Part::Note)
        return OpcUa_BadNotWritable;
    const UaVariant before = std::exchange(m_value, value);
    const UaStatusCode status = passOn();
    if (status.isBad()) {
        m_value = before;
        return status;
    }
    m_check = qlumCheckValue(value, context());
    auto* bits = std::get_if<UaGenericOptionSetValue>(&m_content);
    if (bits && kindOf(value) == Kind::Bits) {
        const UaOptionSetDefinition names = bits->definition();
        if (bits->decode(value, names).isNotBad())
            return status;
    }
    adopt(value);
    return status;
}

UaStatusCode QlumStructureNode::setPresent(bool present)
{
    if (!isOptional() || !parent() || present == isPresent())
        return isOptional() && parent() ? OpcUa_Good : OpcUa_BadNotSupported;
    if (m_part == Part::Bit) {
        auto* bits = std::get_if<UaGenericOptionSetValue>(&parent()->m_content);
        UaStatusCode status = bits ? bits->setBit(static_cast<OpcUa_UInt32>(m_place), present)
                                   : UaStatusCode(OpcUa_BadInvalidState);
        if (status.isNotBad())
            status = parent()->putTogether();
        return status.isBad() ? status : parent()->passOn();
    }
    static_cast<void>(collect()); // what was entered comes back with the value
    if (present && m_value.isNull())
        m_value = uaNullFieldValue(m_field, m_whole->dictionary.get());
    m_present = present;
    if (const UaStatusCode status = passOn(); status.isBad()) {
        m_present = !present;
        return status;
    }
    for (int row = 0; m_part == Part::Member && present && row < parent()->childCount(); ++row)
        if (QlumStructureNode* other = parent()->child(row); other != this && other->m_present) {
            static_cast<void>(other->collect());
            other->m_present = false;
            other->adopt(UaVariant(other->m_value));
        }
    adopt(UaVariant(m_value));
    return OpcUa_Good;
}

bool QlumStructureNode::isWaiting() const
{
    return m_waiting;
}
