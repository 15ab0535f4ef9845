// The thumbprint of a certificate as the user sees, compares and copies it.
#pragma once
#include <QString>

class UaPkiCertificate;

/// SHA-1 of the DER form in lower-case hexadecimal without separators, 40 digits; empty for a null
/// certificate. Also the name under which certificates of others are stored: it holds no character that a
/// path gives a meaning to.
[[nodiscard]] QString qlumThumbprint(const UaPkiCertificate& certificate);
