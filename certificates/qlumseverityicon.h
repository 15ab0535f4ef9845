#pragma once
#include <certificates/qlumcertificateerror.h>

#include <QIcon>
#include <QString>

/// The picture for how bad a finding is.
[[nodiscard]] inline QIcon qlumSeverityIcon(QlumCertificateError severity)
{
    switch (severity) {
    case QlumCertificateError::None:
        return QIcon(QStringLiteral(":/images/ok.png"));
    case QlumCertificateError::Warning:
        return QIcon(QStringLiteral(":/images/warning.png"));
    case QlumCertificateError::Error:
        break;
    }
    return QIcon(QStringLiteral(":/images/error.png"));
}
