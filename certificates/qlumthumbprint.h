// Digests by which certificates and keys are known.
#pragma once
#include <QString>

class UaPkiCertificate;

/// The thumbprint as the user sees, compares and copies it: SHA-1 of the DER form in lower-case hexadecimal
/// without separators, 40 digits; empty for a null certificate. Also the name under which certificates of
/// others are stored: it holds no character that a path gives a meaning to.
[[nodiscard]] QString qlumThumbprint(const UaPkiCertificate& certificate);

/// The key identifier of certificates whose generator hashed an empty key, as extensions are written out:
/// SHA-1 of nothing.
[[nodiscard]] QString qlumEmptyKeyIdentifier();
