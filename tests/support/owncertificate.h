// An own certificate for tests that start the client: without one it would ask the user for it.
#pragma once
#include <certificates/qlumcertificates.h>
#include <certificates/qlumcertificatestore.h>
#include <certificates/qlumowncertificate.h>
#include <uabase/system/uaplatformlayer.h>

#include <QDir>
#include <QFile>
#include <QString>
#include <gtest/gtest.h>

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

/// Tests that connect as the program does: with its certificate and its folders of those that it trusts.
class WithOwnCertificate : public ::testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        ASSERT_EQ(UaPlatformLayer::init(), 0);
        for (const QString& folder : QlumCertificateStore::folders())
            QDir().mkpath(folder);
        ASSERT_EQ(provideOwnCertificate(), QString());
    }
    static void TearDownTestSuite()
    {
        QlumCertificates::cleanup();
        UaPlatformLayer::cleanup();
    }
};
