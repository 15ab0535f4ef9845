#pragma once

/// How much a finding says against a certificate; a higher one goes before a lower one.
enum class QlumCertificateError { None = 0, Warning = 1, Error = 2 };
