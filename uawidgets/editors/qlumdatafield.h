// Parts of values by names that a user reads.
#pragma once
#include <app/api/qlumsessionservices.h>
#include <opcua/opcua_types.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumvaluecontext.h>

#include <QString>
#include <QStringList>

#include <memory>
#include <utility>

class QlumJob;

/// The part of a value that a path names: "Motor.Speed" of structures, "[3]" of arrays, joined as in
/// "Motors[3].Speed". Null when there is none, or nobody knows the structure. The context is the whole's, and
/// becomes the part's.
[[nodiscard]] UaVariant qlumFieldOf(const UaVariant& whole, const QString& path, QlumValueContext& context);
/// Puts another part there; the context is the whole's. BadNoMatch when there is none, BadTypeMismatch when
/// it does not fit.
[[nodiscard]] UaStatus qlumSetFieldOf(UaVariant& whole, const QString& path, const UaVariant& part,
                                      const QlumValueContext& context);
/// The paths one level below a value: the fields of a structure, the elements of an array, so many at most.
[[nodiscard]] QStringList qlumFieldsOf(const UaVariant& whole, const QlumValueContext& context, int maximum);

// ---- at servers

/// A server sends one element of an array as an array of one; this is the element. Other values as they are.
[[nodiscard]] UaVariant qlumElementOf(const UaVariant& value, const QString& indexRange);
/// The reverse, for a range that means one element; false when it cannot be.
[[nodiscard]] bool qlumWrapElement(const QString& indexRange, OpcUa_BuiltInType type, UaVariant& value);

/// Reads and writes what a row is about, in a job: an attribute, elements of it, or a field, which servers
/// know with the whole of its value only.
class QlumPartAccess
{
public:
    /// Where it is.
    struct Place
    {
        UaNodeId nodeId;              ///< of the variable
        OpcUa_UInt32 attributeId = 0; ///< usually the value
        QString indexRange;           ///< empty for all elements
        QString fieldPath;            ///< empty for the value as it is sent
        QString name;                 ///< for the user
    };

    /// What the job calls it with must outlive this; the session may be null.
    QlumPartAccess(QlumJob& job, std::shared_ptr<QlumSessionServices> session, const Place& place)
        : m_job(job), m_session(std::move(session)), m_place(place)
    {
    }

    /// What is there now. Bad when the call or the value is.
    UaStatus read(UaVariant& value);
    /// Whether the server has answered the latest read, if only that it may not be read.
    [[nodiscard]] bool isAnswered() const { return m_isAnswered; }
    /// The status of the call, or of the node. Of a field, the rest of the value is written as it was just
    /// before.
    UaStatus write(const UaVariant& value, const UaVariant& shown);
    /// Whether the latest write reached the server with a call.
    [[nodiscard]] bool isSent() const { return m_isSent; }
    /// Whether the status is one of the call, not of the node.
    [[nodiscard]] bool hasCallFailed() const { return m_hasCallFailed; }

private:
    UaStatus readWhole(UaVariant& value);
    UaStatus readContext();
    [[nodiscard]] bool copyRange(OpcUa_String& range) const;

    QlumJob& m_job;
    const std::shared_ptr<QlumSessionServices> m_session;
    const Place& m_place;
    std::shared_ptr<QlumValueContext> m_context; ///< of the node, for fields
    bool m_isAnswered = false;
    bool m_isSent = false;
    bool m_hasCallFailed = false;
};
