#include <opcua/opcua_channel.h>
#include <stack/core/securitypolicy.h>

#include <memory>
#include <optional>
#include <string_view>

namespace opcua {

namespace {

class NoProtection final : public ChunkProtection
{
public:
    size_t plainCapacity(size_t room) const override { return room; }
    size_t sealedSize(size_t plain) const override { return plain; }
    bool seal(Bytes&, size_t, size_t) override { return true; }
    std::optional<size_t> unseal(MutableByteView chunk, size_t) override { return chunk.size(); }
};

class SecurityPolicyNone final : public SecurityPolicy
{
public:
    std::string_view uri() const override { return OpcUa_SecurityPolicy_None; }
    SequenceRule sequenceRule() const override { return SequenceRule::Legacy; }
    AsymmetricHeader ownHeader() const override { return {uri(), {}, {}}; }
    // servers that send their certificate along even without security are common and harmless
    bool acceptsHeader(const AsymmetricHeader& header) const override { return header.policyUri == uri(); }
    ChunkProtection& outgoingOpen() override { return m_open; }
    ChunkProtection& incomingOpen() override { return m_open; }
    std::optional<Bytes> makeNonce() override { return Bytes{}; }
    bool acceptsNonce(ByteView) override { return true; }
    TokenProtection deriveKeys(ByteView, ByteView) override
    {
        return {std::make_unique<NoProtection>(), std::make_unique<NoProtection>()};
    }

private:
    NoProtection m_open;
};

} // namespace

std::unique_ptr<SecurityPolicy> makeSecurityPolicyNone()
{
    return std::make_unique<SecurityPolicyNone>();
}

} // namespace opcua
