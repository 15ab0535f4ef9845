// An HTTPS front of the demo server, as a program of its own for the length of a test.
#pragma once

#include <tests/support/demoserverinfo.h>
#include <tests/support/temporaryfolder.h>
#include <tests/support/testcertificates.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <memory>
#include <string>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

class HttpsFront
{
public:
    /// sourceFolder: the project's. The front's certificate is signed by itself, made for 127.0.0.1, and lies
    /// in trustedFolder(). url() stays empty when it could not be started.
    explicit HttpsFront(const std::string& sourceFolder)
    {
        namespace tc = testcertificates;
        EVP_PKEY* const pair = tc::key(2048, "https front");
        tc::Recipe recipe;
        recipe.name = "HTTPS front";
        recipe.pair = pair;
        recipe.names = "IP:127.0.0.1,DNS:localhost";
        const tc::Der certificate = tc::make(recipe);
        TemporaryFolder::write(m_folder.file("certificate.pem"), tc::pem("CERTIFICATE", certificate));
        TemporaryFolder::write(m_folder.file("key.pem"), tc::pem("PRIVATE KEY", pkcs8(pair)));
        std::filesystem::create_directory(trustedFolder());
        TemporaryFolder::write(trustedFolder() + '/' + tc::hashedName(certificate),
                               tc::pem("CERTIFICATE", certificate));
        start(sourceFolder + "/demoserver/httpsfront.mjs");
        m_url = waitForUrl();
    }
    ~HttpsFront()
    {
        if (m_process <= 0)
            return;
        ::kill(m_process, SIGTERM);
        ::waitpid(m_process, nullptr, 0);
    }
    HttpsFront(const HttpsFront&) = delete;
    HttpsFront& operator=(const HttpsFront&) = delete;

    [[nodiscard]] const std::string& url() const { return m_url; }
    [[nodiscard]] std::string trustedFolder() const { return m_folder.file("trusted"); }
    [[nodiscard]] std::string emptyFolder() const { return m_folder.file("nothing"); }
    [[nodiscard]] std::string log() const { return TemporaryFolder::read(m_folder.file("log")); }

private:
    static testcertificates::Der pkcs8(EVP_PKEY* pair)
    {
        const std::unique_ptr<PKCS8_PRIV_KEY_INFO, decltype(&PKCS8_PRIV_KEY_INFO_free)> info(
            EVP_PKEY2PKCS8(pair), PKCS8_PRIV_KEY_INFO_free);
        return testcertificates::encoded(info.get(), i2d_PKCS8_PRIV_KEY_INFO);
    }

    void start(const std::string& program)
    {
        const std::vector<std::string> words{"node",          program,
                                             "--upstream",    demoserver::endpointUrl(),
                                             "--certificate", m_folder.file("certificate.pem"),
                                             "--key",         m_folder.file("key.pem"),
                                             "--info",        m_folder.file("info.json")};
        std::vector<char*> arguments;
        for (const std::string& word : words)
            arguments.push_back(const_cast<char*>(word.c_str()));
        arguments.push_back(nullptr);
        const std::string logFile = m_folder.file("log");
        const pid_t parent = ::getpid();
        m_process = ::fork();
        if (m_process != 0)
            return;
        ::prctl(PR_SET_PDEATHSIG, SIGTERM); // an interrupted test leaves nothing behind
        if (::getppid() != parent || std::freopen(logFile.c_str(), "w", stdout) == nullptr)
            ::_exit(1);
        ::dup2(STDOUT_FILENO, STDERR_FILENO);
        ::execvp(arguments[0], arguments.data());
        ::_exit(1);
    }

    std::string waitForUrl()
    {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
        while (std::chrono::steady_clock::now() < end) {
            const std::string url = demoserver::endpointUrlIn(m_folder.file("info.json"));
            if (!url.empty())
                return url;
            if (::waitpid(m_process, nullptr, WNOHANG) == m_process) {
                m_process = 0;
                return {};
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
        return {};
    }

    TemporaryFolder m_folder;
    pid_t m_process = 0;
    std::string m_url;
};
