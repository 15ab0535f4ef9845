// The large answers that the benchmarks decode, encode and send.
#pragma once

#include <opcua/opcua.h>
#include <stack/core/protocol.h>

namespace opcua::bench {

/// A message's object, freed with its owner.
template <typename Message, const OpcUa_EncodeableType& Type>
class Owned
{
public:
    Owned() { OpcUa_EncodeableObject_Initialize(&Type, &m_message); }
    ~Owned() { OpcUa_EncodeableObject_Clear(&Type, &m_message); }
    Owned(const Owned&) = delete;
    Owned& operator=(const Owned&) = delete;
    Message* operator->() { return &m_message; }
    Message& operator*() { return m_message; }

private:
    Message m_message;
};

using ReadResponse = Owned<OpcUa_ReadResponse, OpcUa_ReadResponse_EncodeableType>;
using BrowseResponse = Owned<OpcUa_BrowseResponse, OpcUa_BrowseResponse_EncodeableType>;
using PublishResponse = Owned<OpcUa_PublishResponse, OpcUa_PublishResponse_EncodeableType>;

inline constexpr OpcUa_DateTime someTime = 132000000000000000;

/// A Double with both timestamps.
void fill(OpcUa_DataValue& value, int index);
void fill(OpcUa_ReadResponse& response, int values);
/// One result with references to variables of namespace 1.
void fill(OpcUa_BrowseResponse& response, int references);
/// One data change notification; handles count from 1.
void fill(OpcUa_PublishResponse& response, int notifications);

} // namespace opcua::bench
