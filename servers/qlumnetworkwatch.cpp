#include <servers/qlumnetworkwatch.h>

#include <linux/if.h>
#include <linux/netlink.h>
#include <linux/rtnetlink.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <optional>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace {
constexpr std::size_t maximumDatagram = 32768;
constexpr int readsAtATime = 64; // what is left keeps the socket readable
// An interface is announced for many reasons, a search for radio networks among them.
constexpr unsigned int decidingFlags = IFF_UP | IFF_RUNNING | IFF_LOWER_UP;

int openSocket()
{
    const int socket = ::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC | SOCK_NONBLOCK, NETLINK_ROUTE);
    if (socket < 0)
        return -1;
    sockaddr_nl address{};
    address.nl_family = AF_NETLINK;
    address.nl_groups = RTMGRP_LINK | RTMGRP_IPV4_IFADDR | RTMGRP_IPV6_IFADDR;
    if (::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0)
        return socket;
    ::close(socket);
    return -1;
}

// The bytes may lie anywhere; too few of them are nothing.
template <typename T>
std::optional<T> startOf(std::span<const std::byte> bytes)
{
    if (bytes.size() < sizeof(T))
        return std::nullopt;
    T value;
    std::memcpy(&value, bytes.data(), sizeof(T));
    return value;
}
} // namespace

std::shared_ptr<QlumNetworkWatch> QlumNetworkWatch::shared()
{
    static std::weak_ptr<QlumNetworkWatch> held;
    std::shared_ptr<QlumNetworkWatch> watch = held.lock();
    if (!watch) {
        watch = std::make_shared<QlumNetworkWatch>(openSocket());
        held = watch;
    }
    return watch;
}

QlumNetworkWatch::QlumNetworkWatch(int socket, std::chrono::milliseconds pause)
    : m_log(tr("Network")), m_socket(socket)
{
    m_pause.setSingleShot(true);
    m_pause.setInterval(pause);
    connect(&m_pause, &QTimer::timeout, this, [this] {
        if (m_changedMeanwhile)
            tell();
    });
    if (m_socket < 0) {
        m_log.info(tr("Changes of the network cannot be noticed."));
        return;
    }
    m_notifier = std::make_unique<QSocketNotifier>(m_socket, QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, [this] { read(); });
}

QlumNetworkWatch::~QlumNetworkWatch()
{
    m_notifier.reset();
    if (m_socket >= 0)
        ::close(m_socket);
}

void QlumNetworkWatch::read()
{
    std::array<std::byte, maximumDatagram> buffer;
    for (int i = 0; i < readsAtATime; ++i) {
        sockaddr_nl sender{};
        socklen_t senderSize = sizeof(sender);
        const ssize_t length = ::recvfrom(m_socket, buffer.data(), buffer.size(), MSG_DONTWAIT | MSG_TRUNC,
                                          reinterpret_cast<sockaddr*>(&sender), &senderSize);
        if (length < 0) {
            if (errno == EINTR)
                continue;
            if (errno == ENOBUFS) // messages were dropped: nobody knows which
                noteChange();
            else if (errno != EAGAIN && errno != EWOULDBLOCK)
                stopReading();
            return;
        }
        if (sender.nl_pid != 0) // not the kernel
            continue;
        const auto size = static_cast<std::size_t>(length);
        if (size > buffer.size())
            noteChange();
        else
            takeMessages(std::span(buffer).first(size));
    }
}

// A socket that only fails would keep the event loop awake.
void QlumNetworkWatch::stopReading()
{
    m_log.info(tr("Changes of the network cannot be noticed any longer."));
    m_notifier->setEnabled(false);
}

void QlumNetworkWatch::takeMessages(std::span<const std::byte> datagram)
{
    bool changed = false;
    while (const auto header = startOf<nlmsghdr>(datagram)) {
        const std::size_t length = header->nlmsg_len;
        if (length < sizeof(nlmsghdr) || length > datagram.size())
            break;
        changed = isChange(*header, datagram.first(length).subspan(sizeof(nlmsghdr))) || changed;
        const std::size_t aligned = (length + NLMSG_ALIGNTO - 1) / NLMSG_ALIGNTO * NLMSG_ALIGNTO;
        datagram = datagram.subspan(std::min(aligned, datagram.size()));
    }
    if (changed)
        noteChange();
}

bool QlumNetworkWatch::isChange(const nlmsghdr& header, std::span<const std::byte> body)
{
    switch (header.nlmsg_type) {
    case RTM_NEWADDR:
    case RTM_DELADDR:
        return true;
    case RTM_NEWLINK:
        return isChangeOfLink(false, body);
    case RTM_DELLINK:
        return isChangeOfLink(true, body);
    default:
        return false;
    }
}

bool QlumNetworkWatch::isChangeOfLink(bool removed, std::span<const std::byte> body)
{
    const auto link = startOf<ifinfomsg>(body);
    if (!link || link->ifi_family != AF_UNSPEC) // other families tell of ports of a bridge
        return false;
    if (removed) {
        m_links.erase(link->ifi_index);
        return true;
    }
    const unsigned int flags = link->ifi_flags & decidingFlags;
    const auto [known, isNew] = m_links.try_emplace(link->ifi_index, flags);
    return isNew || std::exchange(known->second, flags) != flags;
}

void QlumNetworkWatch::noteChange()
{
    if (m_pause.isActive())
        m_changedMeanwhile = true;
    else
        tell();
}

void QlumNetworkWatch::tell()
{
    m_changedMeanwhile = false;
    m_pause.start();
    emit networkChanged();
}
