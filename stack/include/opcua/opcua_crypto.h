// Cryptography of the security policies for those above the stack, and the check of certificates.
#ifndef OPCUA_CRYPTO_H
#define OPCUA_CRYPTO_H

#include <opcua/opcua_channel.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Bytes of the nonces by which client and server prove to each other who they are when a session is made:
/// the client's has just so many, the server's at least. Those of a channel are as long as its policy says.
#define OPCUA_SESSION_NONCE_LENGTH 32
/// Bytes of one certificate, and certificates of a chain; more are refused wherever they come from.
#define OPCUA_MAXIMUM_CERTIFICATE_LENGTH 1048576
#define OPCUA_MAXIMUM_CERTIFICATE_CHAIN 10
/// Entries of one folder of a store; what lies behind them is not looked at.
#define OPCUA_MAXIMUM_STORE_FILES 20000

/// One security policy's algorithms. Holds no key, never changes; any thread may use it.
typedef struct OpcUa_CryptoProviderImpl* OpcUa_CryptoProvider;

/// Texts are static; the two URIs are empty with policy None. Lengths are 0 with it.
typedef struct OpcUa_CryptoProviderInfo
{
    const char* SecurityPolicyUri;
    const char* AsymmetricSignatureUri;        ///< as in SignatureData.Algorithm
    const char* AsymmetricEncryptionUri;       ///< as in the EncryptionAlgorithm of an identity token
    OpcUa_UInt32 MinAsymmetricKeyLength;       ///< bits
    OpcUa_UInt32 MaxAsymmetricKeyLength;       ///< bits
    OpcUa_UInt32 ChannelNonceLength;           ///< bytes
    OpcUa_UInt32 SymmetricSignatureKeyLength;  ///< bytes
    OpcUa_UInt32 SymmetricEncryptionKeyLength; ///< bytes
} OpcUa_CryptoProviderInfo;

/// Good; BadInvalidArgument; BadOutOfMemory; BadSecurityPolicyRejected for a policy that is not offered.
/// Null and "" mean None. The caller owns the handle, until OpcUa_CryptoProvider_Delete.
OPCUA_NODISCARD OPCUA_EXPORT OpcUa_StatusCode OpcUa_CryptoProvider_Create(const char* securityPolicyUri,
                                                                          OpcUa_CryptoProvider* provider);
/// Frees and nulls the handle.
OPCUA_EXPORT void OpcUa_CryptoProvider_Delete(OpcUa_CryptoProvider* provider);
/// Good; BadInvalidArgument.
OPCUA_NODISCARD OPCUA_EXPORT OpcUa_StatusCode OpcUa_CryptoProvider_GetInfo(OpcUa_CryptoProvider provider,
                                                                           OpcUa_CryptoProviderInfo* info);

/// Certificates are DER; of a chain the first is used. Private keys are DER, PKCS#8 or PKCS#1. Results are
/// allocated by the call and null on failure. Good; BadInvalidArgument; BadNotSupported with policy None;
/// BadCertificateInvalid when the certificate does not decode, BadNoValidCertificates when the private key
/// does not, BadCertificatePolicyCheckFailed when a key's length is not what the policy asks for,
/// BadSecurityChecksFailed when the operation itself fails: whatever was wrong with the cipher text or the
/// signature.

/// Texts longer than one RSA block are encrypted block by block.
OPCUA_NODISCARD OPCUA_EXPORT OpcUa_StatusCode
OpcUa_CryptoProvider_AsymmetricEncrypt(OpcUa_CryptoProvider provider, const OpcUa_ByteString* certificate,
                                       const OpcUa_ByteString* plainText, OpcUa_ByteString* cipherText);
OPCUA_NODISCARD OPCUA_EXPORT OpcUa_StatusCode
OpcUa_CryptoProvider_AsymmetricDecrypt(OpcUa_CryptoProvider provider, const OpcUa_ByteString* privateKey,
                                       const OpcUa_ByteString* cipherText, OpcUa_ByteString* plainText);
OPCUA_NODISCARD OPCUA_EXPORT OpcUa_StatusCode
OpcUa_CryptoProvider_AsymmetricSign(OpcUa_CryptoProvider provider, const OpcUa_ByteString* privateKey,
                                    const OpcUa_ByteString* data, OpcUa_ByteString* signature);
OPCUA_NODISCARD OPCUA_EXPORT OpcUa_StatusCode
OpcUa_CryptoProvider_AsymmetricVerify(OpcUa_CryptoProvider provider, const OpcUa_ByteString* certificate,
                                      const OpcUa_ByteString* data, const OpcUa_ByteString* signature);
/// Bits of the certificate's RSA key; 0 when it is of another kind. Good; BadInvalidArgument;
/// BadCertificateInvalid.
OPCUA_NODISCARD OPCUA_EXPORT OpcUa_StatusCode
OpcUa_CryptoProvider_GetPublicKeyLength(const OpcUa_ByteString* certificate, OpcUa_UInt32* bits);
/// length fresh random bytes, up to 1,024; more is BadInvalidArgument. BadSecurityChecksFailed when the
/// system gives none.
OPCUA_NODISCARD OPCUA_EXPORT OpcUa_StatusCode OpcUa_CryptoProvider_GenerateNonce(OpcUa_UInt32 length,
                                                                                 OpcUa_ByteString* nonce);

/// Bytes of the first certificate in a chain (DER, one behind the other); 0 when it begins with none, or with
/// one that is cut short. What is in the certificate is not looked at. chain may be null when length is 0.
OPCUA_EXPORT size_t OpcUa_Certificate_GetFirstLength(const OpcUa_Byte* chain, size_t length);

/// How a folder names the certificates in it.
typedef enum OpcUa_CertificateNaming {
    OpcUa_CertificateNaming_Endings = 0, ///< "*.der", "*.cer" and "*.crt", in any case
    OpcUa_CertificateNaming_Dotted = 1   ///< any name with a dot: the folders for TLS
} OpcUa_CertificateNaming;

/// Whether a file of that name (without its folder) is one of certificates; never when it is not UTF-8.
OPCUA_EXPORT OpcUa_Boolean OpcUa_CertificateFile_IsName(const char* name, OpcUa_CertificateNaming naming);

/// One certificate of a file, DER; valid during the call.
typedef void (*OpcUa_CertificateFile_PfnTake)(const OpcUa_ByteString* certificate, void* context);

/// Takes a file of certificates apart, in its order, as the checks do that read the folders of a store: DER
/// one behind the other, or blocks of PEM. take runs on the calling thread and must not throw. What is in a
/// certificate is not looked at. Good; BadDecodingError, and nothing taken, when the file holds none or when
/// anything in it is cut short, damaged or left over; BadInvalidArgument; BadOutOfMemory.
OPCUA_NODISCARD OPCUA_EXPORT OpcUa_StatusCode OpcUa_CertificateFile_Read(const OpcUa_Byte* content,
                                                                         size_t length,
                                                                         OpcUa_CertificateFile_PfnTake take,
                                                                         void* context);

/// One finding of a check; validation is valid during the call. Good goes on in spite of it, anything else
/// makes the finding's status the result. A certificate that is malformed or wrongly signed stays refused
/// whatever the answer.
typedef OpcUa_StatusCode (*OpcUa_Certificate_PfnVerify)(const OpcUa_CertificateValidation* validation,
                                                        void* context);

/// Judges a certificate, or a chain of them with the peer's own first, by the folders of pki. It is trusted
/// when it or one of its issuers lies in the trusted folder. Every finding is told, in the order in which
/// they decide; the result is the first one that was not overridden, or Good. securityPolicyUri may be null:
/// then keys and digests are not judged. callback may be null; it runs on the calling thread. Reads the
/// folders each time. Any thread. Beside the findings: BadInvalidArgument, BadOutOfMemory.
OPCUA_NODISCARD OPCUA_EXPORT OpcUa_StatusCode
OpcUa_Certificate_Verify(const OpcUa_ByteString* certificateChain, const OpcUa_PkiConfiguration* pki,
                         const char* securityPolicyUri, OpcUa_Certificate_PfnVerify callback, void* context);

/// The same for the certificate of a TLS server, as a channel judges it: by the two folders of trusted ones,
/// named as OpcUa_CertificateNaming_Dotted says, and by host, the name or address in the server's URL.
OPCUA_NODISCARD OPCUA_EXPORT OpcUa_StatusCode OpcUa_Certificate_VerifyTls(
    const OpcUa_ByteString* certificateChain, const char* host, const OpcUa_PkiConfiguration* pki,
    OpcUa_Certificate_PfnVerify callback, void* context);

#ifdef __cplusplus
}
#endif
#endif
