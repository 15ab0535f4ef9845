"""What the session layer knows of each service at compile time: types, functions, names, arrays."""

from emit_services import SERVICES
from text import begin

_HEAD = """#pragma once

#include <opcua/opcua_clientapi.h>

/// One for each service: its structures and functions, and what the trace calls it. A service that takes one
/// array has Item, itemCount and items; one that answers with an array has Result, resultCount and results.
namespace UaClientSdk::Services {
"""


def _lower_first(name):
    return name[0].lower() + name[1:]


def _array(structure, wanted=None):
    """The one array of a request; of a response that called Results, else the only one. None without."""
    arrays = [field for field in structure.fields if field.is_array and field.name != "DiagnosticInfos"]
    named = [field for field in arrays if field.name == wanted]
    found = named or arrays
    return found[0] if len(found) == 1 else None


def _places(owner, field, type_alias, count, array):
    return [
        f"    using {type_alias} = OpcUa_{field.type_name};",
        f"    static constexpr auto {count} = &OpcUa_{owner}::NoOf{field.name};",
        f"    static constexpr auto {array} = &OpcUa_{owner}::{field.name};",
    ]


def _traits(schema, service):
    method = _lower_first(service)
    request, response = f"OpcUa_{service}Request", f"OpcUa_{service}Response"
    lines = [
        f"struct {service}",
        "{",
        f"    using Request = {request};",
        f"    using Response = {response};",
        f"    static constexpr const OpcUa_EncodeableType& requestType = {request}_EncodeableType;",
        f"    static constexpr const OpcUa_EncodeableType& responseType = {response}_EncodeableType;",
        f"    static constexpr auto call = OpcUa_ClientApi_{service};",
        f"    static constexpr auto begin = OpcUa_ClientApi_Begin{service};",
        f'    static constexpr const char* callName = "OpcUa_ClientApi_{service}";',
        f'    static constexpr const char* beginName = "OpcUa_ClientApi_Begin{service}";',
        f'    static constexpr const char* method = "{method}";',
        f'    static constexpr const char* beginMethod = "begin{service}";',
        f'    static constexpr const char* handler = "{method}Callback";',
        f'    static constexpr const char* completion = "{method}Complete";',
    ]
    items = _array(schema.structures[service + "Request"])
    if items:
        lines += _places(service + "Request", items, "Item", "itemCount", "items")
    results = _array(schema.structures[service + "Response"], "Results")
    if results:
        lines += _places(service + "Response", results, "Result", "resultCount", "results")
    return lines + ["};", ""]


def traits_header(schema):
    lines = []
    for service in SERVICES:
        lines += _traits(schema, service)
    return begin() + _HEAD + "\n" + "\n".join(lines) + "\n} // namespace UaClientSdk::Services\n"
