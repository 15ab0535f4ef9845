#include <bench/rawloops.h>

#include <stack/transport/uniquefd.h>

#include <array>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <span>
#include <sys/socket.h>
#include <thread>
#include <utility>
#include <vector>

namespace opcua::bench {

namespace {

using Request = std::array<char, rawRequestSize>;

// The echo learns from it how much to answer.
Request requestFor(size_t answerSize)
{
    Request request{};
    const auto size = static_cast<std::uint32_t>(answerSize);
    std::memcpy(request.data(), &size, sizeof size);
    return request;
}

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

void send(const UniqueFd& socket, const Request& request)
{
    if (::send(socket.get(), request.data(), rawRequestSize, MSG_NOSIGNAL) != rawRequestSize)
        std::abort();
}

void receive(const UniqueFd& socket, std::span<char> room)
{
    if (::recv(socket.get(), room.data(), room.size(), MSG_WAITALL) != static_cast<ssize_t>(room.size()))
        std::abort();
}

} // namespace

void pingPong(std::uint16_t port, int rounds, size_t answerSize)
{
    const UniqueFd socket = connectTo(port);
    const Request request = requestFor(answerSize);
    std::vector<char> room(answerSize);
    for (int n = 0; n < rounds; ++n) {
        send(socket, request);
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
        std::array<char, rawAnswerSize> room{};
        for (int n = 0; n < rounds; ++n) {
            receive(socket, room);
            {
                const std::lock_guard lock(mutex);
                answered = true;
            }
            changed.notify_one();
        }
    });
    const Request request = requestFor(rawAnswerSize);
    for (int n = 0; n < rounds; ++n) {
        send(socket, request);
        std::unique_lock lock(mutex);
        changed.wait(lock, [&] { return std::exchange(answered, false); });
    }
    reader.join();
}

} // namespace opcua::bench
