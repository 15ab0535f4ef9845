// Basic types, memory and small helpers of the communication stack's C interface. Any thread may call them.
#ifndef OPCUA_PLATFORM_H
#define OPCUA_PLATFORM_H

#include <stddef.h>
#include <stdint.h>

#if defined(__GNUC__)
#    define OPCUA_EXPORT __attribute__((visibility("default")))
#    define OPCUA_PRINTF(fmt, args) __attribute__((format(printf, fmt, args)))
#else
#    define OPCUA_EXPORT
#    define OPCUA_PRINTF(fmt, args)
#endif

/// In front of a function whose answer must not get lost. A caller in C++ who has a reason to
/// drop it says so with a static_cast to void.
#if defined(__cplusplus)
#    define OPCUA_NODISCARD [[nodiscard]]
#elif defined(__GNUC__)
#    define OPCUA_NODISCARD __attribute__((warn_unused_result))
#else
#    define OPCUA_NODISCARD
#endif

#ifdef __cplusplus
extern "C" {
#endif

typedef uint8_t OpcUa_Boolean;
typedef int8_t OpcUa_SByte;
typedef unsigned char OpcUa_Byte;
typedef int16_t OpcUa_Int16;
typedef uint16_t OpcUa_UInt16;
typedef int32_t OpcUa_Int32;
typedef uint32_t OpcUa_UInt32;
typedef int64_t OpcUa_Int64;
typedef uint64_t OpcUa_UInt64;
typedef float OpcUa_Float;
typedef double OpcUa_Double;
typedef uint32_t OpcUa_StatusCode;

#define OpcUa_True ((OpcUa_Boolean)1)
#define OpcUa_False ((OpcUa_Boolean)0)

/// Severity of a status code, OPC 10000-4, 7.39: the two top bits.
#define OpcUa_IsGood(code) (((OpcUa_StatusCode)(code)&0xC0000000u) == 0u)
#define OpcUa_IsNotGood(code) (((OpcUa_StatusCode)(code)&0xC0000000u) != 0u)
#define OpcUa_IsUncertain(code) (((OpcUa_StatusCode)(code)&0xC0000000u) == 0x40000000u)
#define OpcUa_IsBad(code) (((OpcUa_StatusCode)(code)&0x80000000u) != 0u)
#define OpcUa_IsNotBad(code) (((OpcUa_StatusCode)(code)&0x80000000u) == 0u)

/// Memory of every structure that crosses this interface comes from and goes back to these two, so that the
/// decoder may hand out pieces of one block for each message. Alloc returns null when out of memory or when
/// size is 0; Free takes null. Thread-safe.
OPCUA_EXPORT void* OpcUa_Memory_Alloc(size_t size);
OPCUA_EXPORT void OpcUa_Memory_Free(void* memory);
/// Zeroed memory for count elements; null when the product overflows.
OPCUA_EXPORT void* OpcUa_Memory_AllocArray(size_t count, size_t elementSize);

/// Platform layer. Initialize is counted: each successful call needs one Clear. Good or BadOutOfMemory,
/// BadInternalError. Start-up and clean-up belong on one thread.
OPCUA_NODISCARD OPCUA_EXPORT OpcUa_StatusCode OpcUa_P_Initialize(void);
OPCUA_EXPORT void OpcUa_P_Clear(void);
/// "Version\\Source Timestamp\\Build Timestamp\\Vendor Name\\Vendor Info\\Compiler", separated by
/// backslashes; static storage.
OPCUA_EXPORT const char* OpcUa_P_GetVersion(void);
/// "name:value" pairs separated by backslashes; static storage.
OPCUA_EXPORT const char* OpcUa_P_GetConfigString(void);

/// snprintf of the stack: always terminates, returns the bytes written without the terminator; 0 for a null
/// or empty buffer, a null format, and one of 4 KiB or more. A conversion that is not known ("%|") is written
/// as it stands.
OPCUA_EXPORT int OpcUa_StringA_snprintf(char* buffer, size_t size, const char* format, ...);

/// An id for the calling thread, small enough for a log column, stable for the thread's life.
OPCUA_EXPORT OpcUa_UInt32 OpcUa_Thread_GetCurrentThreadId(void);

/// Monotonic milliseconds since a moment that stays the same while the system runs.
OPCUA_EXPORT OpcUa_UInt64 OpcUa_GetTickCount(void);

#ifdef __cplusplus
}
#endif
#endif
