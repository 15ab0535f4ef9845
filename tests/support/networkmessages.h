// What the kernel says of interfaces and addresses, as bytes.
#pragma once
#include <linux/netlink.h>
#include <linux/rtnetlink.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

namespace networkmessages {

using Bytes = std::vector<std::byte>;

inline void setLength(Bytes& message, std::uint32_t length)
{
    std::memcpy(message.data(), &length, sizeof(length)); // it comes first
}

inline Bytes message(std::uint16_t type, const Bytes& body)
{
    nlmsghdr header{};
    header.nlmsg_len = static_cast<std::uint32_t>(sizeof(header) + body.size());
    header.nlmsg_type = type;
    Bytes bytes(sizeof(header));
    std::memcpy(bytes.data(), &header, sizeof(header));
    bytes.insert(bytes.end(), body.begin(), body.end());
    return bytes;
}

inline Bytes linkMessage(std::uint16_t type, int index, unsigned int flags, unsigned char family = 0)
{
    ifinfomsg link{};
    link.ifi_family = family;
    link.ifi_index = index;
    link.ifi_flags = flags;
    Bytes body(sizeof(link));
    std::memcpy(body.data(), &link, sizeof(link));
    return message(type, body);
}

inline Bytes addressMessage(std::uint16_t type)
{
    return message(type, Bytes(sizeof(ifaddrmsg)));
}

} // namespace networkmessages
