// The record of keys for protocol analysers: what it must hold, and that nobody gets one by accident.
#include <tests/protocol/channelfixture.h>
#include <tests/protocol/securepipe.h>
#include <tests/support/temporaryfolder.h>

#include <openssl/evp.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <sys/stat.h>

namespace opcua::test {
namespace {

constexpr const char* variable = "OPCUA_KEYLOGFILE";

Bytes fromHex(const std::string& text)
{
    Bytes bytes;
    for (size_t n = 0; n + 1 < text.size(); n += 2)
        bytes.push_back(static_cast<OpcUa_Byte>(std::stoi(text.substr(n, 2), nullptr, 16)));
    return bytes;
}

// AES in CBC mode by the library itself.
std::string decrypted(const Bytes& key, const Bytes& vector, ByteView cipher)
{
    std::string plain(cipher.size(), '\0');
    int written = 0;
    EVP_CIPHER_CTX* const context = EVP_CIPHER_CTX_new();
    EXPECT_EQ(EVP_DecryptInit_ex2(context, key.size() == 16 ? EVP_aes_128_cbc() : EVP_aes_256_cbc(),
                                  key.data(), vector.data(), nullptr),
              1);
    EVP_CIPHER_CTX_set_padding(context, 0);
    EXPECT_EQ(EVP_DecryptUpdate(context, reinterpret_cast<unsigned char*>(plain.data()), &written,
                                cipher.data(), static_cast<int>(cipher.size())),
              1);
    EVP_CIPHER_CTX_free(context);
    return plain;
}

class StackKeyLog : public testing::Test
{
protected:
    StackKeyLog() : path(folder.file("keys")) {}
    ~StackKeyLog() override
    {
        ::unsetenv(variable);
        OpcUa_Trace_SetHook(nullptr, nullptr);
        EXPECT_EQ(OpcUa_Trace_ChangeTraceLevel(OPCUA_TRACE_OUTPUT_LEVEL_NONE), OpcUa_Good);
    }

    // One call over a secured channel, whose chunks to the server land in sent and to the client in answered.
    void converse(const Suite& suite)
    {
        const Identity& client = identity(2048, "client");
        const Identity& server = identity(2048, "server");
        LoopbackPeer peer([&](PeerSocket& socket) {
            PeerServer recording(
                [this](ServerChannel& channel, OpcUa_UInt32 id, const Bytes& body) {
                    request.assign(body.begin(), body.end());
                    channel.respond(id, findServersResponse());
                },
                {}, policy(suite.uri, suite.mode, server, client));
            recording.record(sent);
            recording.serve(socket);
        });
        ASSERT_EQ(OpcUa_ProxyStub_Initialize(nullptr), OpcUa_Good);
        {
            const OpcUa_ByteString views[] = {viewOf(client.certificate), viewOf(client.key),
                                              viewOf(server.certificate)};
            Channel channel;
            channel.info.SecurityPolicyUri = suite.uri;
            channel.info.SecurityMode = suite.mode;
            channel.info.ClientCertificate = &views[0];
            channel.info.ClientPrivateKey = &views[1];
            channel.info.ServerCertificate = &views[2];
            EXPECT_EQ(channel.connect(peer.url()), OpcUa_Good);
            EXPECT_EQ(channel.call(), OpcUa_Good);
        }
        OpcUa_ProxyStub_Clear();
    }
    std::map<std::string, std::string> entries() const
    {
        std::map<std::string, std::string> found;
        std::ifstream in(path);
        for (std::string line; std::getline(in, line);)
            found[line.substr(0, line.find(": "))] = line.substr(line.find(": ") + 2);
        return found;
    }
    // What the sealed part of the first message to the server holds, in the clear.
    std::string firstMessage(const std::map<std::string, std::string>& keys)
    {
        FrameReader reader(65536);
        MutableByteView stream = sent;
        Frame frame;
        while (reader.next(stream, frame) == FrameReader::Outcome::Frame) {
            if (frame.type != MessageType::Message)
                continue;
            return decrypted(fromHex(keys.at("client_key_1_1")), fromHex(keys.at("client_iv_1_1")),
                             frame.bytes.subspan(symmetricHeaderSize));
        }
        return {};
    }

    TemporaryFolder folder;
    const std::string path;
    Bytes sent;
    std::string request;

private:
    static OpcUa_ByteString viewOf(const Bytes& bytes)
    {
        return {static_cast<OpcUa_Int32>(bytes.size()), const_cast<OpcUa_Byte*>(bytes.data())};
    }
};

constexpr Suite suites[] = {{OpcUa_SecurityPolicy_Basic256Sha256, signAndEncrypt, 2048, 2048},
                            {OpcUa_SecurityPolicy_Aes128Sha256RsaOaep, signAndEncrypt, 2048, 2048}};

TEST_F(StackKeyLog, OpensARecordedConversation)
{
    for (const Suite& suite : suites) {
        std::filesystem::remove(path);
        sent.clear();
        ::setenv(variable, path.c_str(), 1);
        converse(suite);
        const auto keys = entries();
        ASSERT_EQ(keys.size(), 6u);
        EXPECT_EQ(keys.at("client_siglen_1_1"), "32");
        EXPECT_EQ(keys.at("server_siglen_1_1"), "32");
        EXPECT_NE(keys.at("client_key_1_1"), keys.at("server_key_1_1"));
        EXPECT_NE(keys.at("client_iv_1_1"), keys.at("server_iv_1_1"));
        ASSERT_FALSE(request.empty());
        EXPECT_NE(firstMessage(keys).find(request), std::string::npos);
    }
}

TEST_F(StackKeyLog, IsOffUnlessAskedForAndKeptToItsOwner)
{
    Mailbox<std::string> trace;
    OpcUa_Trace_SetHook([](OpcUa_UInt32, const char* text,
                           void* context) { static_cast<Mailbox<std::string>*>(context)->put(text); },
                        &trace);
    EXPECT_EQ(OpcUa_Trace_ChangeTraceLevel(OPCUA_TRACE_OUTPUT_LEVEL_ALL), OpcUa_Good);
    converse(suites[0]);
    EXPECT_TRUE(folder.names().empty());

    std::ofstream(path) << "somebody's\n";
    std::filesystem::permissions(path, std::filesystem::perms(0644));
    ::setenv(variable, path.c_str(), 1);
    converse(suites[0]);
    struct stat status
    {
    };
    ASSERT_EQ(::stat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777u, 0600u);
    const auto keys = entries();
    EXPECT_EQ(keys.size(), 7u); // appended

    // the keys are in their file and nowhere else
    std::string all;
    for (const std::string& line : trace.values())
        all += line + '\n';
    EXPECT_NE(all.find("Keys of secured channels are written"), std::string::npos);
    for (const char* name : {"client_key_1_1", "server_key_1_1", "client_iv_1_1", "server_iv_1_1"})
        EXPECT_EQ(all.find(keys.at(name)), std::string::npos) << name;
}

// A link that somebody else laid, a pipe that nobody reads and the like: no keys, and no wait either.
TEST_F(StackKeyLog, TakesPlainFilesOnly)
{
    const std::string link = folder.file("link");
    std::filesystem::create_symlink(path, link);
    const std::string pipe = folder.file("pipe");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    for (const std::string& name : {link, pipe, folder.path(), folder.file("none/keys")}) {
        ::setenv(variable, name.c_str(), 1);
        converse(suites[0]);
    }
    EXPECT_FALSE(std::filesystem::exists(path));
    EXPECT_FALSE(std::filesystem::exists(folder.file("none")));
}

} // namespace
} // namespace opcua::test
