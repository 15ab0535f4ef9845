// What counts as a certificate in the files of a store: the one answer for all who read them.
#pragma once

#include <stack/core/protocol.h>

#include <string_view>
#include <vector>

namespace opcua {

/// How a folder names the certificates in it.
enum class CertificateNaming {
    Endings, ///< "*.der", "*.cer" and "*.crt", in any case
    Dotted   ///< any name with a dot, which those of hashed directories ("%08x.%d") have
};

/// Never for a name that is not UTF-8.
[[nodiscard]] bool isCertificateName(std::string_view name, CertificateNaming naming);

/// The certificates of a file, each as DER: one behind the other, or as blocks of PEM among which other
/// things may stand. They are not decoded. Empty when the file holds none, and when anything in it is cut
/// short, damaged or left over: such a file counts for nothing rather than for its first part.
[[nodiscard]] std::vector<Bytes> certificatesOfFile(ByteView content);

} // namespace opcua
