// An own certificate for tests that start the client: without one it would ask the user for it.
#pragma once
#include <certificates/qlumcertificatestore.h>
#include <certificates/qlumowncertificate.h>

#include <QDir>
#include <QFile>
#include <QString>

/// Puts a certificate and key into the store below HOME, unless there is one. Empty on success.
inline QString provideOwnCertificate()
{
    if (QFile::exists(QlumCertificateStore::ownCertificateFile()))
        return {};
    QDir().mkpath(QlumCertificateStore::ownCertificates());
    QDir().mkpath(QlumCertificateStore::ownPrivateKeys());
    return QlumOwnCertificate::initial(QStringLiteral("Tavelin@") + qlumHostName(),
                                       QStringLiteral("Korvanda"))
        .create();
}
