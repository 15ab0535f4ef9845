// What is known of a server's configuration object, and what was done with it.
#pragma once
#include <opcua/opcua_types.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/secretbytes.h>

#include <QDateTime>
#include <QMap>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>
#include <vector>

/// The methods that an object has, or its variables, by their names.
using QlumPushMethods = QMap<QString, UaNodeId>;

/// A kind of certificate that a group may have.
struct QlumPushType
{
    UaNodeId id;  ///< of the type
    QString name; ///< for the user; the id where the server does not tell
};

/// A certificate group: one trust list, and a certificate of each of its types.
struct QlumPushGroup
{
    UaNodeId id;
    QString name;
    std::vector<QlumPushType> types;
    UaNodeId trustList;         ///< null: the group has none
    QlumPushMethods methods;    ///< of the trust list
    QlumPushMethods variables;  ///< of the trust list
    UaNodeId lastUpdateId;      ///< one of them
    UaNodeId typesId;           ///< variable with the types
    UaDateTime lastUpdate;      ///< of the trust list; null when the server does not tell
    bool isWritable = true;     ///< by what the server says of this user
    OpcUa_UInt32 mostBytes = 0; ///< in one call to the file; 0: not known

    [[nodiscard]] bool has(const char* method) const { return methods.contains(QLatin1String(method)); }
};

/// What a server tells of itself in its ServerConfiguration object.
struct QlumPushServer
{
    UaStatus status;         ///< why there is nothing, where there is nothing
    UaNodeId object;         ///< null: the server has no such object
    QlumPushMethods methods; ///< of the object
    std::vector<QlumPushGroup> groups;
    QStringList capabilities;
    QStringList keyFormats;                    ///< of private keys that it takes, in its order
    std::optional<OpcUa_UInt32> mostListBytes; ///< of a trust list; 0: no limit
    std::optional<bool> multicastDns;
    std::optional<bool> hasSecureElement;
    QStringList missing; ///< what each server with such an object must have, and this one has not
    OpcUa_MessageSecurityMode mode = OpcUa_MessageSecurityMode_Invalid; ///< of the session, as far as known

    [[nodiscard]] bool has(const char* method) const { return methods.contains(QLatin1String(method)); }
    /// Null when there is none.
    [[nodiscard]] const QlumPushGroup* group(const UaNodeId& id) const
    {
        for (const QlumPushGroup& group : groups)
            if (group.id == id)
                return &group;
        return nullptr;
    }
};

/// What a new certificate is to be like.
struct QlumSigningWish
{
    UaNodeId group;
    UaNodeId type;
    QString subject;       ///< "CN=...,O=..."; empty: the server keeps its own
    bool isNewKey = false; ///< made by the server
};

/// How the server comes by a new certificate, as the user has chosen it.
struct QlumPushOrder
{
    enum Key { KeptKey, ServersNewKey, OurNewKey };

    QlumSigningWish wish;
    Key key = ServersNewKey;
    QString keyFormat; ///< of a key that is made here
    int days = 0;      ///< for which our authority signs
};

/// A certificate for the server.
struct QlumCertificateUpdate
{
    UaNodeId group;
    UaNodeId type;
    UaByteString certificate;                            ///< DER
    std::vector<UaByteString> issuers;                   ///< DER, the nearest first
    QString keyFormat;                                   ///< empty: the server has the key
    std::shared_ptr<const UaClientSdk::SecretBytes> key; ///< in that format; wiped when the last holder goes
};

/// One call, for the record.
struct QlumPushStep
{
    QDateTime time;
    QString what; ///< "AddCertificate: Line 4 (trusted)"
    UaStatus status;
    QString words; ///< what the status means
};
