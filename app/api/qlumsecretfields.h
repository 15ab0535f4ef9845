// What of a service call nobody may read: passwords, private keys and tokens.
#pragma once
#include <app/api/qlumcallnote.h>
#include <opcua/opcua_types.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>

#include <QString>

#include <string_view>

/// Stands where a secret would.
[[nodiscard]] QString qlumBlanked();
/// Whether the name of a field, a node or an argument says that it holds a secret.
[[nodiscard]] bool qlumIsSecretName(std::string_view name);
/// Whether the input argument of that place is a secret: by the method, by what the tool says of it, or by
/// what the purpose says of methods that the table does not know.
[[nodiscard]] bool qlumIsSecretArgument(const OpcUa_CallMethodRequest& method, int argument,
                                        const UaString& purpose, const QlumCallNote* note);
/// Whether what is written to the node is a secret: by its id, or by what the tool says of it.
[[nodiscard]] bool qlumIsSecretNode(const OpcUa_NodeId& node, const QlumCallNote* note);
/// A value for lists and files: one line of bounded length. Bytes are told by their number, since they may be
/// keys, and so is a text that holds one.
[[nodiscard]] QString qlumBlankedText(const OpcUa_Variant& value);
