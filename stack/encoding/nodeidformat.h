// How node ids begin on the wire, OPC 10000-6, 5.2.2.9 and 5.2.2.10.
#pragma once

#include <opcua/opcua_platform.h>

#include <cstddef>

namespace opcua {

namespace NodeIdFormat {
inline constexpr OpcUa_Byte twoByteId = 0;
inline constexpr OpcUa_Byte fourByteId = 1;
inline constexpr OpcUa_Byte numericId = 2;
inline constexpr OpcUa_Byte stringId = 3;
inline constexpr OpcUa_Byte guidId = 4;
inline constexpr OpcUa_Byte byteStringId = 5;
inline constexpr OpcUa_Byte serverIndexFlag = 0x40; ///< of expanded node ids, beside the format
inline constexpr OpcUa_Byte namespaceUriFlag = 0x80;
} // namespace NodeIdFormat

/// Bytes of the longest numeric node id.
inline constexpr size_t longestNumericNodeId = 7;

} // namespace opcua
