// Nothing thrown leaves the C interface.
#pragma once

#include <opcua/opcua_statuscodes.h>

#include <new>
#include <system_error>

namespace opcua {

template <typename Action>
OpcUa_StatusCode guarded(Action action) noexcept
{
    try {
        return action();
    } catch (const std::bad_alloc&) {
        return OpcUa_BadOutOfMemory;
    } catch (const std::system_error&) {
        return OpcUa_BadResourceUnavailable;
    } catch (...) {
        return OpcUa_BadInternalError;
    }
}

} // namespace opcua
