#pragma once
#include <app/api/qlumsessionservices.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>

#include <QString>

/// What became of a write.
struct QlumWriteOutcome
{
    UaStatus service;        ///< of the service call
    UaStatusCode result;     ///< what the server says of the value, when the service is good
    bool isWhole = false;    ///< the whole Value was written, since the server takes no single elements
    bool hasChanged = false; ///< nothing was written: the Value is not the one any more that was edited

    /// Whether the server has taken it.
    [[nodiscard]] bool isGood() const { return service.isGood() && result.isGood() && !hasChanged; }
};

/// The service calls for writing one node; each blocks. The session must outlive it.
class QlumAttributeWriter
{
public:
    /// The purpose is what is written, for the user.
    QlumAttributeWriter(QlumSessionServices& session, const UaNodeId& nodeId, const QString& purpose);

    /// Writes an attribute, or the part of it that an index range means; shown is what the user saw there.
    [[nodiscard]] QlumWriteOutcome write(int attributeId, const UaVariant& value, const UaVariant& shown,
                                         const UaString& indexRange = UaString());
    /// Reads an attribute as it is now. Bad with the reason, and value unchanged, when it cannot be read.
    [[nodiscard]] UaStatusCode read(int attributeId, UaVariant& value);

private:
    QlumSessionServices& m_session;
    const UaNodeId m_nodeId;
    const QString m_purpose;
};

/// Whether the server may take the whole Value although it does not take a part of it by its index range.
[[nodiscard]] bool qlumRefusesRanges(const QlumWriteOutcome& outcome);
/// The index range of one element of an array or matrix ("2", "0,1"), and the element as the server wants to
/// have it. An empty range when the value has no such element or it cannot be sent alone.
[[nodiscard]] UaString qlumElementRange(const UaVariant& array, int index, const UaVariant& element,
                                        UaVariant& sent);
