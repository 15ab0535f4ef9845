// A demo server that belongs to one test, which may freeze it, kill it and start it again at the same port.
#pragma once

#include <tests/support/temporaryfolder.h>

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

class OwnDemoServer
{
public:
    ~OwnDemoServer() { kill(); }

    /// False when it does not come up within its own limit. Every certificate folder makes another server
    /// certificate; options are further ones of its program.
    [[nodiscard]] bool start(const std::string& certificates = "pki", const std::string& options = "")
    {
        const std::string command = std::string("node '") + TAVELIN_DEMOSERVER "/ctl.mjs' start --info '" +
                                    info() + "' --log '" + m_folder.file("log") + "' --pki '" +
                                    m_folder.file(certificates) + "' --port " + std::to_string(m_port) + ' ' +
                                    options + " >/dev/null";
        if (std::system(command.c_str()) != 0)
            return false;
        const std::string text = TemporaryFolder::read(info());
        m_process = numberOf(text, "\"pid\":");
        m_port = numberOf(text, "\"port\":");
        return m_process > 1 && m_port > 0;
    }

    [[nodiscard]] std::string url() const
    {
        return "opc.tcp://127.0.0.1:" + std::to_string(m_port) + "/Tavelin/Demo";
    }

    /// Folder of its certificates and keys, as start() was told.
    [[nodiscard]] std::string certificates(const std::string& name = "pki") const
    {
        return m_folder.file(name);
    }

    /// At once, without a word to anybody.
    void kill()
    {
        if (m_process > 1) {
            ::kill(m_process, SIGCONT);
            ::kill(m_process, SIGKILL);
        }
        m_process = 0;
    }
    /// Asks it to end, as an administrator would; start() brings up the next one.
    void shutDown() const
    {
        if (m_process > 1)
            ::kill(m_process, SIGTERM);
    }
    void freeze() const { ::kill(m_process, SIGSTOP); }
    void thaw() const { ::kill(m_process, SIGCONT); }

private:
    [[nodiscard]] std::string info() const { return m_folder.file("info.json"); }
    static int numberOf(const std::string& text, const std::string& key)
    {
        const auto at = text.find(key);
        return at == std::string::npos ? 0 : std::atoi(text.c_str() + at + key.size());
    }

    TemporaryFolder m_folder;
    int m_port = 0; ///< chosen by the system at the first start
    int m_process = 0;
};
