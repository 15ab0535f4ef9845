// A server of another make than the demo server, where there is one: two makes disagree in ways that one of
// them does not show.
#pragma once

#include <tests/support/temporaryfolder.h>

#include <arpa/inet.h>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <netinet/in.h>
#include <string>
#include <sys/socket.h>
#include <unistd.h>

/// TAVELIN_SECOND_SERVER names the script that starts it: "SCRIPT PORT FOLDER" prints the process of a server
/// that listens on the loopback interface.
class SecondServer
{
public:
    ~SecondServer() { stop(); }

    [[nodiscard]] static bool isThere() { return !script().empty(); }

    /// False when it does not come up. LIMIT=5 in its environment bounds the items of a request and the
    /// references of an answer.
    [[nodiscard]] bool start(const std::string& environment)
    {
        m_port = freePort();
        const std::string command = environment + " '" + script() + "' " + std::to_string(m_port) + " '" +
                                    m_folder.file("server") + "'";
        FILE* const output = ::popen(command.c_str(), "r");
        if (!output)
            return false;
        const bool isStarted = std::fscanf(output, "%d", &m_process) == 1;
        return ::pclose(output) == 0 && isStarted && m_process > 1;
    }
    void stop()
    {
        if (m_process > 1)
            ::kill(m_process, SIGTERM);
        m_process = 0;
    }
    [[nodiscard]] std::string url() const
    {
        return m_process > 1 ? "opc.tcp://127.0.0.1:" + std::to_string(m_port) : std::string();
    }

private:
    [[nodiscard]] static std::string script()
    {
        const char* name = std::getenv("TAVELIN_SECOND_SERVER");
        return name ? name : "";
    }
    [[nodiscard]] static int freePort()
    {
        const int probe = ::socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t length = sizeof address;
        static_cast<void>(::bind(probe, reinterpret_cast<sockaddr*>(&address), length));
        static_cast<void>(::getsockname(probe, reinterpret_cast<sockaddr*>(&address), &length));
        static_cast<void>(::close(probe));
        return ntohs(address.sin_port);
    }

    TemporaryFolder m_folder;
    int m_port = 0;
    int m_process = 0;
};
