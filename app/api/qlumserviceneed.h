// Which role each service of a session needs.
#pragma once
#include <app/api/qlumserverrole.h>
#include <uaclientsdk/servicewatch.h>

#include <QString>

#include <mutex>
#include <optional>
#include <set>

/// What a tool says its calls are for when the methods that it calls do not tell by their ids, because a
/// server has them under ids of its own. A purpose begins with one of these, and a colon and words for the
/// user may follow: qlumServiceSettings(qlumPurpose(QlumPurpose::trustList, tr("Adding a certificate"))).
namespace QlumPurpose {
// need Commission
inline constexpr char serverConfiguration[] = "ServerConfiguration"; ///< certificates and keys of the server
inline constexpr char trustList[] = "TrustList";                     ///< whom the server trusts
inline constexpr char serverState[] = "ServerState";                 ///< shutting down, starting again
inline constexpr char fileWriting[] = "FileWriting"; ///< opening for writing, writing, making, removing
// Look is enough
inline constexpr char fileReading[] = "FileReading"; ///< opening for reading, reading, closing
inline constexpr char refreshing[] = "Refreshing";   ///< having conditions or values told again
} // namespace QlumPurpose

/// A purpose of one of those kinds, with words for the user.
[[nodiscard]] QString qlumPurpose(const char* kind, const QString& words);
/// What of a purpose is for the user; the kind where that is all there is.
[[nodiscard]] QString qlumPurposeWords(const QString& purpose);

/// The subscriptions that a server's own sessions have made: only they may be had done anything with by a
/// user who looks. Any thread.
class QlumOwnSubscriptions
{
public:
    void add(OpcUa_UInt32 id);
    [[nodiscard]] bool contains(OpcUa_UInt32 id) const;

private:
    mutable std::mutex m_mutex;
    std::set<OpcUa_UInt32> m_ids;
};

/// How the need of a service is found.
enum class QlumServiceRule {
    Look,          ///< always Look
    Commission,    ///< always Commission
    ByAttribute,   ///< Operate for values, Commission for other attributes
    ByMethod,      ///< by the methods' ids, then by the purpose
    BySubscription ///< Look for subscriptions of one's own
};

/// The rule for a service, by the type of its request; nothing for one that nobody has decided about.
[[nodiscard]] std::optional<QlumServiceRule> qlumServiceRule(const OpcUa_EncodeableType& requestType);
/// The need of a method of namespace 0 by its id, with the first of its arguments where that matters; nothing
/// for a method that the table does not name.
[[nodiscard]] std::optional<QlumServerRole> qlumMethodNeed(const OpcUa_CallMethodRequest& method);
/// The least role in which the call may be sent; Commission for what nobody has decided about. Any thread.
[[nodiscard]] QlumServerRole qlumNeedOf(const UaClientSdk::ServiceCall& call,
                                        const QlumOwnSubscriptions& own);
