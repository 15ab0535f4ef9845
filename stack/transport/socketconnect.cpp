#include <stack/transport/socketconnect.h>

#include <cerrno>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

namespace opcua {

int beginConnect(const SocketAddress& address, UniqueFd& socket)
{
    socket = UniqueFd(::socket(address.family(), SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    if (!socket)
        return errno;
    const int on = 1;
    static_cast<void>(::setsockopt(socket.get(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof on));
    const auto* const peer = reinterpret_cast<const sockaddr*>(&address.storage);
    return ::connect(socket.get(), peer, address.length) == 0 ? 0 : errno;
}

int connectError(int socket)
{
    int error = 0;
    socklen_t length = sizeof error;
    return ::getsockopt(socket, SOL_SOCKET, SO_ERROR, &error, &length) == 0 ? error : errno;
}

} // namespace opcua
