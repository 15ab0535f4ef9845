// The conversations with a server's configuration object.
#pragma once
#include <app/api/qlumsessionservices.h>
#include <opcua/opcua_types.h>
#include <plugins/gds/qlumpushdata.h>
#include <plugins/gds/qlumtrustlist.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uavariant.h>

#include <QString>
#include <QStringList>

#include <functional>
#include <map>
#include <vector>

/// Finds the configuration object of a server and calls its methods, each conversation in its order and
/// ended whatever comes: no file stays open. For one job; blocks. Everything but looking needs the role
/// Commission, and is not sent without it.
class QlumPushClient
{
public:
    /// What the caller adds: how each call is made, and whether the job was asked to end, which is looked at
    /// between the pieces of a file.
    struct Manner
    {
        OpcUa_UInt32 callTimeout = 10000; ///< ms
        std::function<bool()> isCancelled;
    };

    /// The services must live as long.
    QlumPushClient(QlumSessionServices& services, Manner manner);

    /// What the server tells of itself. By browse names, never by ids.
    [[nodiscard]] QlumPushServer find();

    // ---- trust lists
    /// The parts of the mask.
    UaStatus readTrustList(const QlumPushGroup& group, OpcUa_UInt32 mask, QlumTrustList& list);
    /// When the list was changed last, by whomever.
    UaStatus readLastUpdate(const QlumPushGroup& group, UaDateTime& time);
    /// Replaces the parts that the list names. BadEncodingLimitsExceeded, and nothing sent, when it is larger
    /// than the server allows.
    UaStatus writeTrustList(const QlumPushServer& server, const QlumPushGroup& group,
                            const QlumTrustList& list, bool& isApplyRequired);
    /// Acts at once.
    UaStatus addCertificate(const QlumPushGroup& group, const UaByteString& der, bool isTrusted);
    /// Acts at once.
    UaStatus removeCertificate(const QlumPushGroup& group, const UaByteString& der, bool isTrusted);
    /// Certificates that the server has turned away.
    UaStatus rejectedList(const QlumPushServer& server, std::vector<UaByteString>& certificates);

    // ---- the server's own certificates
    /// A request in DER form, for whoever is to sign it.
    UaStatus createSigningRequest(const QlumPushServer& server, const QlumSigningWish& wish,
                                  UaByteString& request);
    /// BadSecurityModeInsufficient, and nothing sent, for a private key on a session that may be listened to.
    UaStatus updateCertificate(const QlumPushServer& server, const QlumCertificateUpdate& update,
                               bool& isApplyRequired);
    /// Good also when the connection breaks instead of an answer, which is how servers apply.
    UaStatus applyChanges(const QlumPushServer& server);
    UaStatus cancelChanges(const QlumPushServer& server);
    /// As applyChanges().
    UaStatus resetToServerDefaults(const QlumPushServer& server);

    /// What was called so far, in its order; afterwards it is empty.
    [[nodiscard]] std::vector<QlumPushStep> takeSteps();

private:
    friend class QlumPushFile;

    struct Child
    {
        UaNodeId id;
        OpcUa_NodeClass nodeClass;
    };
    using Children = std::map<QString, Child>;

    /// One call of a method.
    struct Call
    {
        UaNodeId object;
        UaNodeId method;
        QString name;        ///< of the method
        QString what;        ///< what it was called for; may be empty
        const char* purpose; ///< QlumPurpose
        UaVariantArray inputs;
        int secret = -1; ///< argument that the journal must not hold
        bool isRecorded = true;
    };

    [[nodiscard]] UaStatus call(Call call, UaVariantArray& outputs);
    [[nodiscard]] UaStatus call(Call call);
    [[nodiscard]] UaStatus callLast(Call made);
    void addStep(const Call& call, const UaStatus& status);
    [[nodiscard]] QlumSessionServices::Settings settings(const char* purpose, const QString& words) const;
    [[nodiscard]] Call serverCall(const QlumPushServer& server, const char* method,
                                  const QString& what) const;
    [[nodiscard]] Call listCall(const QlumPushGroup& group, const char* method, const QString& what) const;

    // ---- finding
    UaStatus children(const UaNodeId& node, Children& found);
    [[nodiscard]] QlumPushGroup findGroup(const UaNodeId& id, const QString& name, QStringList& missing);
    void readFacts(QlumPushServer& server, const Children& properties);
    void readGroupFacts(QlumPushServer& server);
    [[nodiscard]] std::vector<UaVariant> readValues(const std::vector<UaNodeId>& ids, OpcUa_UInt32 attribute);
    [[nodiscard]] bool isCancelled() const { return m_manner.isCancelled && m_manner.isCancelled(); }

    QlumSessionServices& m_services;
    const Manner m_manner;
    std::vector<QlumPushStep> m_steps;
};
