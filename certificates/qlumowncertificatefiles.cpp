// Replacing the pair of certificate and key on the disk.
//
// A rename replaces one file, not two. So both new files are written under names of their own first, the key
// before the certificate, and then renamed in this order. The new certificate under its own name without the
// new key beside it therefore means that the key has been replaced already, and the certificate has to
// follow.
#include <app/api/qlumtext.h>
#include <certificates/qlumowncertificate.h>
#include <uabase/system/uadir.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/uapkicpp/uapkierrors.h>
#include <uabase/uapkicpp/uapkirsakeypair.h>
#include <uabase/values/uastring.h>

#include <QByteArray>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QString>
#include <QStringList>

#include <cstdio>
#include <cstring>
#include <unistd.h>

namespace {
class Text
{
    Q_DECLARE_TR_FUNCTIONS(QlumOwnCertificate)
};

// The password in the encoding in which it is asked for when the key is read; leaves nothing in memory.
class KeyPassword
{
public:
    explicit KeyPassword(const QString& text)
    {
        QByteArray bytes = text.toLocal8Bit();
        m_text = bytes.isEmpty() ? UaString() : UaString(bytes.constData());
        ::explicit_bzero(bytes.data(), static_cast<std::size_t>(bytes.size()));
    }
    ~KeyPassword()
    {
        if (const OpcUa_String* text = m_text.get(); text->Data && text->Length > 0)
            ::explicit_bzero(text->Data, static_cast<std::size_t>(text->Length));
    }
    KeyPassword(const KeyPassword&) = delete;
    KeyPassword& operator=(const KeyPassword&) = delete;

    [[nodiscard]] const UaString& text() const { return m_text; }

private:
    UaString m_text;
};

bool renameOver(const QString& from, const QString& to)
{
    return std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0;
}

// A second name for the old key, so that it can come back. True also when there is no old key.
bool keep(const QString& file, const QString& copy)
{
    ::unlink(QFile::encodeName(copy).constData());
    return !QFile::exists(file) ||
           ::link(QFile::encodeName(file).constData(), QFile::encodeName(copy).constData()) == 0;
}

struct Names
{
    explicit Names(const QlumOwnCertificateFiles& files)
        : newCertificate(files.certificate + QStringLiteral(".new")),
          newKey(files.key + QStringLiteral(".new")), oldKey(files.key + QStringLiteral(".old"))
    {
    }
    // The certificate first: alone it would mean that the key was replaced.
    void removeNew() const
    {
        QFile::remove(newCertificate);
        if (!QFile::exists(newCertificate))
            QFile::remove(newKey);
    }

    QString newCertificate;
    QString newKey;
    QString oldKey;
};

// False also when a password would be needed to know.
bool fits(const QString& key, const UaPkiCertificate& certificate)
{
    const auto pair = UaPkiRsaKeyPair::fromPEMFile(toUaString(key));
    return UaPkiRsaKeyPair::checkKeyPair(certificate.publicKey(), pair.privateKey());
}

bool swap(const QlumOwnCertificateFiles& files, const Names& names)
{
    const bool hadKey = QFile::exists(files.key);
    if (!keep(files.key, names.oldKey) || !renameOver(names.newKey, files.key))
        return false;
    if (renameOver(names.newCertificate, files.certificate)) {
        QFile::remove(names.oldKey);
        return true;
    }
    // back to the state before; the new certificate goes first, see above
    QFile::remove(names.newCertificate);
    if (hadKey)
        (void)renameOver(names.oldKey, files.key);
    else
        QFile::remove(files.key);
    return false;
}

void makePrivateFolder(const QString& folder)
{
    QDir().mkpath(folder);
    QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

QString failure(const QString& file, const UaPkiErrors& object)
{
    QStringList reasons;
    for (const UaString& error : object.getErrors())
        reasons << toQString(error);
    const QString text = Text::tr("The certificate and its key could not be written to %1.")
                             .arg(QDir::toNativeSeparators(QFileInfo(file).path()));
    return reasons.isEmpty() ? text : text + QLatin1Char('\n') + reasons.join(QLatin1Char('\n'));
}
} // namespace

QString qlumStoreOwnCertificate(const UaPkiCertificate& certificate, const UaPkiRsaKeyPair& keyPair,
                                const QString& password, const QlumOwnCertificateFiles& files)
{
    const Names names(files);
    makePrivateFolder(QFileInfo(files.key).path());
    QDir().mkpath(QFileInfo(files.certificate).path());
    const KeyPassword secret(password);
    if (!keyPair.toPEMFile(toUaString(names.newKey), secret.text()))
        return failure(files.key, keyPair);
    if (!certificate.toDERFile(toUaString(names.newCertificate))) {
        names.removeNew();
        return failure(files.certificate, certificate);
    }
    if (swap(files, names))
        return {};
    names.removeNew();
    return failure(files.certificate, certificate);
}

void qlumRecoverOwnCertificate(const QlumOwnCertificateFiles& files)
{
    const Names names(files);
    const bool newCertificate = QFile::exists(names.newCertificate);
    const bool newKey = QFile::exists(names.newKey);
    if (newCertificate && !newKey && QFile::exists(files.key)) {
        if (!renameOver(names.newCertificate, files.certificate))
            return; // the next start tries again
    } else if (newCertificate || newKey) {
        names.removeNew();
    }
    if (!QFile::exists(names.oldKey))
        return;
    const auto certificate = UaPkiCertificate::fromDERFile(toUaString(files.certificate));
    if (fits(names.oldKey, certificate) && !fits(files.key, certificate))
        (void)renameOver(names.oldKey, files.key);
    else
        QFile::remove(names.oldKey);
}
