// A type dictionary, a zero byte, and a body for each structure that it defines. What can be decoded must
// survive being written and read again, as bytes and as text.
#include <uabase/structures/uagenericstructurevalue.h>
#include <uabase/structures/uagenericunionvalue.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/structures/uatypedefinitionstore.h>
#include <uabase/structures/uatypedictionary.h>
#include <uabase/text/uavaluetext.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <vector>

namespace {

void check(bool holds)
{
    if (!holds)
        std::abort();
}

template <typename Value>
void roundTrip(const UaByteString& body, const UaStructureDefinition& definition,
               UaTypeDefinitionStore& store)
{
    Value value;
    if (value.decode(body, definition, &store).isBad())
        return;
    UaExtensionObject object;
    if (value.encode(object).isBad())
        return; // hidden fields may say what no value follows from
    Value again;
    check(again.decode(object, definition, &store).isGood());
    UaExtensionObject second;
    check(again.encode(second).isGood() && object == second);
    UaString text;
    if (UaValueText::toJson(UaVariant(object), &store, text).isBad())
        return;
    UaVariant read;
    const bool isText = text.isValidUtf8();
    check(UaValueText::fromJson(text.view(), &store, read).isGood() || !isText);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::uint8_t* end = std::find(data, data + size, 0);
    const auto xml = static_cast<std::size_t>(end - data);
    const std::span<const std::uint8_t> bytes(data + std::min(xml + 1, size), size - std::min(xml + 1, size));
    UaTypeDictionary dictionary;
    UaString error;
    UaTypeDefinitionStore store;
    std::vector<UaTypeDictionary::Fault> faults;
    if (!dictionary.addDocument({data, xml}, error))
        return 0;
    dictionary.define(store, faults);
    for (const UaTypeDictionary::TypeName& name : dictionary.types()) {
        const UaStructureDefinition definition = store.structure(dictionary.dataTypeId(name));
        if (definition.isUnion())
            roundTrip<UaGenericUnionValue>(UaByteString(bytes), definition, store);
        else if (!definition.isNull())
            roundTrip<UaGenericStructureValue>(UaByteString(bytes), definition, store);
    }
    return 0;
}
