// The C functions of the value types: a check of the pointers in front of the core's overloads.
#pragma once

#include <opcua/opcua_statuscodes.h>
#include <stack/encoding/elements.h>
#include <stack/encoding/lifecycle.h>

namespace opcua {

template <typename T>
void initializeChecked(T* value)
{
    if (value != nullptr)
        initialize(*value);
}

template <typename T>
void clearChecked(T* value)
{
    if (value != nullptr)
        clear(*value);
}

template <typename T>
[[nodiscard]] OpcUa_StatusCode copyChecked(const T* source, T* destination)
{
    return source != nullptr && destination != nullptr ? copy(*source, *destination)
                                                       : OpcUa_BadInvalidArgument;
}

/// A null pointer stands before all values.
template <typename T>
[[nodiscard]] int compareChecked(const T* left, const T* right)
{
    return left != nullptr && right != nullptr ? compare(*left, *right)
                                               : order(left != nullptr, right != nullptr);
}

} // namespace opcua
