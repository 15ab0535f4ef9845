// Structures of the standard as a tree of texts, with what is secret in them left out.
#pragma once
#include <app/api/qlumcallnote.h>
#include <opcua/opcua_encodeable.h>
#include <uabase/values/uastring.h>

#include <QString>

#include <vector>

/// One field, element or structure.
struct QlumFieldText
{
    QString name;                        ///< "[2]" of an element
    QString type;                        ///< "String", "Argument", "NodeId[3]"
    QString value;                       ///< one line; empty where there are children
    std::vector<QlumFieldText> children; ///< fields or elements
};

/// What bears on what is secret.
struct QlumFieldContext
{
    UaString purpose;                   ///< of the call
    const QlumCallNote* note = nullptr; ///< of the call
};

/// A structure with all that is in it. However large it is, the tree stays small: long arrays and deep
/// structures are cut, which it says. Any thread.
[[nodiscard]] QlumFieldText qlumFieldTexts(const OpcUa_EncodeableType& type, const void* object,
                                           const QlumFieldContext& context = {});
/// The leaves of a tree in one line: "NodeId: ns=2;i=5, AttributeId: 13".
[[nodiscard]] QString qlumFieldLine(const QlumFieldText& field, int maximumLength = 1000);
