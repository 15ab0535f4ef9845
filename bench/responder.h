// A server of canned answers, and a bare echo of the same sizes, in a process of their own: what is measured
// is the client alone.
#pragma once

#include <bench/bulkmessages.h>
#include <stack/security/policyprofile.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <sys/types.h>

namespace opcua::bench {

struct Identity
{
    Bytes certificate; ///< DER
    Bytes key;         ///< DER
};

/// A self-signed certificate with a key of 2048 bits.
[[nodiscard]] Identity makeIdentity(const char* name);
/// The operations with keys that a connect with security takes: two signatures and two decrypted blocks, and
/// the same number with public keys.
void keyOperations(const Identity& own, const Identity& peer);
/// What the certificate's owner signs to show that he is there.
[[nodiscard]] Bytes signatureOver(const Identity& signer, ByteView certificate, ByteView nonce);

inline constexpr size_t rawRequestSize = 111;
inline constexpr size_t rawAnswerSize = 84;
inline constexpr size_t rawLargestAnswer = 512 * 1024;
inline constexpr size_t rawBulkAnswer =
    26'000;                                ///< as large as the Read with more than one node, and a Publish
inline constexpr int bulkValues = 1000;    ///< of the Read with more than one node
inline constexpr int notifications = 1000; ///< of each Publish answer
inline constexpr int references = 1000;    ///< of each Browse answer

/// The answer to the body of a request; nothing: the canned one.
using Answerer = std::function<std::optional<Bytes>(const Bytes& body)>;

class Responder
{
public:
    /// Forks; the caller must have one thread only. clientNonce is what sessions are created with. answerer
    /// is asked in the other process, about all but the server's state.
    Responder(const Identity& server, const Identity& client, ByteView clientNonce, Answerer answerer = {});
    ~Responder();
    Responder(const Responder&) = delete;
    Responder& operator=(const Responder&) = delete;

    [[nodiscard]] std::uint16_t rawPort() const { return m_ports[0]; }
    [[nodiscard]] std::string url(bool secured) const
    {
        return "opc.tcp://127.0.0.1:" + std::to_string(m_ports[secured ? 2 : 1]);
    }

private:
    std::uint16_t m_ports[3]{};
    pid_t m_process = -1;
};

} // namespace opcua::bench
