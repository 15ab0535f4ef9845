#include <bench/rawloops.h>

#include <bench/responder.h>
#include <stack/transport/uniquefd.h>

#include <array>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <thread>
#include <utility>

namespace opcua::bench {

namespace {

using Room = std::array<char, rawRequestSize>;

UniqueFd connectTo(std::uint16_t port)
{
    UniqueFd socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(port);
    const int on = 1;
    if (::connect(socket.get(), reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
        ::setsockopt(socket.get(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof on) != 0)
        std::abort();
    return socket;
}

void send(const UniqueFd& socket, const Room& room)
{
    if (::send(socket.get(), room.data(), rawRequestSize, MSG_NOSIGNAL) != rawRequestSize)
        std::abort();
}

void receive(const UniqueFd& socket, Room& room)
{
    if (::recv(socket.get(), room.data(), rawAnswerSize, MSG_WAITALL) != rawAnswerSize)
        std::abort();
}

} // namespace

void pingPong(std::uint16_t port, int rounds)
{
    const UniqueFd socket = connectTo(port);
    Room room{};
    for (int n = 0; n < rounds; ++n) {
        send(socket, room);
        receive(socket, room);
    }
}

void pingPongWithHandOff(std::uint16_t port, int rounds)
{
    const UniqueFd socket = connectTo(port);
    std::mutex mutex;
    std::condition_variable changed;
    bool answered = false;
    std::thread reader([&] {
        Room room{};
        for (int n = 0; n < rounds; ++n) {
            receive(socket, room);
            {
                const std::lock_guard lock(mutex);
                answered = true;
            }
            changed.notify_one();
        }
    });
    const Room room{};
    for (int n = 0; n < rounds; ++n) {
        send(socket, room);
        std::unique_lock lock(mutex);
        changed.wait(lock, [&] { return std::exchange(answered, false); });
    }
    reader.join();
}

} // namespace opcua::bench
