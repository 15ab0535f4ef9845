#include <app/api/qlumsecret.h>
#include <servers/qlumconnectprompts.h>
#include <servers/qlumdiscoverysetting.h>
#include <servers/qlumidentitydialog.h>
#include <tests/support/freedmemory.h>
#include <uabase/uapkicpp/uapkirsakeypair.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/secretbytes.h>
#include <uaclientsdk/sessionsecurityinfo.h>
#include <uawidgets/qlumpassworddlg.h>
#include <uawidgets/qlumuserpassworddlg.h>

#include <QLineEdit>
#include <QString>
#include <QWidget>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <ranges>
#include <string_view>
#include <utility>

namespace {
constexpr std::string_view secretUtf8 = "correct horse battery";
constexpr std::u16string_view secretUtf16 = u"correct horse battery";

std::string_view bytesOf(std::u16string_view text)
{
    return {reinterpret_cast<const char*>(text.data()), text.size() * sizeof(char16_t)};
}

// on the heap, with nobody else who has it
QlumSecretText secret()
{
    return QString::fromLatin1(secretUtf8.data(), static_cast<int>(secretUtf8.size()));
}

// ---- in the user interface

TEST(Secrets, WatchFindsATextThatNobodyWiped)
{
    const FreedMemory freed(bytesOf(secretUtf16));
    auto plain = std::make_unique<QString>(secret().text());
    plain.reset();
    EXPECT_EQ(freed.findings(), 1) << "or the other tests see nothing either";
}

TEST(Secrets, PasswordOfASettingStaysReadableWhenItIsReplacedOrItsLastCopyGoes)
{
    const FreedMemory freed(bytesOf(secretUtf16));
    {
        QlumDiscoverySetting setting;
        setting.password = secret();
        const QlumDiscoverySetting copy = setting;
        setting.password.clear();
        EXPECT_EQ(copy.password, secret()) << "a copy was wiped with the other";
        setting = copy;
        setting.password = secret();
        setting = QlumDiscoverySetting();
        QlumCredentials entered{"joe", secret()};
        entered = QlumCredentials{"jane", entered.password};
    }
    EXPECT_EQ(freed.findings(), 0);
}

TEST(Secrets, DialogLeavesThePasswordReadableWhetherItIsTakenOrNot)
{
    const FreedMemory freed(bytesOf(secretUtf16));
    for (const bool isTaken : {true, false}) {
        auto named = std::make_unique<QlumUserPasswordDlg>("Plc", "joe");
        auto identity = std::make_unique<QlumIdentityDialog>("Plc", QlumUserChoice(), QString());
        auto key = std::make_unique<QlumPasswordDlg>();
        for (const QWidget* dialog :
             {static_cast<QWidget*>(named.get()), static_cast<QWidget*>(identity.get()),
              static_cast<QWidget*>(key.get())})
            dialog->findChild<QLineEdit*>("password")->setText(secret().text());
        if (isTaken) {
            const QlumSecretText fromNamed = named->password();
            const QlumUserChoice fromIdentity = identity->choice();
            const QlumSecretText fromKey = key->takePassword();
            named.reset();
            identity.reset();
            EXPECT_EQ(fromNamed, secret());
            EXPECT_EQ(fromIdentity.password, secret());
            EXPECT_EQ(fromKey, secret());
        }
    }
    EXPECT_EQ(freed.findings(), 0);
}

// ---- on their way to the stack

TEST(Secrets, PasswordStaysReadableOnItsWayIntoAnIdentity)
{
    const FreedMemory freed(secretUtf8);
    {
        UaClientSdk::SessionSecurityInfo security;
        const QlumSecretText password = secret();
        security.setUserPasswordUserIdentity("joe", qlumToSecretBytes(password));
        const auto clone = security.userIdentityToken()->clone();
        security.setAnonymousUserIdentity();
        const auto& named = dynamic_cast<const UaClientSdk::UaUserNameIdentityToken&>(*clone);
        EXPECT_TRUE(std::ranges::equal(named.password().bytes(), secretUtf8));
    }
    EXPECT_EQ(freed.findings(), 0);
}

TEST(Secrets, PrivateKeyStaysReadableWhenTheLastRecordWithItGoes)
{
    const UaPkiRsaKeyPair pair(2048);
    const UaByteArray der = pair.toDER();
    UaByteArray own = der; // made before, for the crypto library leaves a copy of its own each time
    UaByteArray users = der;
    const FreedMemory freed({reinterpret_cast<const char*>(der.rawData()), der.span().size()});
    {
        UaClientSdk::SessionSecurityInfo security;
        security.clientPrivateKey = std::make_shared<const UaClientSdk::SecretBytes>(std::move(own));
        security.setCertificateUserIdentity(UaByteString(), UaClientSdk::SecretBytes(std::move(users)));
        const UaClientSdk::SessionSecurityInfo copy = security;
        security = UaClientSdk::SessionSecurityInfo();
        EXPECT_TRUE(std::ranges::equal(copy.clientPrivateKey->bytes(), der.span()));
    }
    EXPECT_EQ(freed.findings(), 0);
}
} // namespace
