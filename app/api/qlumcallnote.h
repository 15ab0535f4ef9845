#pragma once
#include <opcua/opcua_types.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/servicesettings.h>

#include <QString>

#include <memory>
#include <set>
#include <utility>
#include <vector>

/// What a tool can tell the journal about a call that changes something, besides its purpose. It costs no
/// call: what the tool does not know stays out.
struct QlumCallNote final : UaClientSdk::ServiceNote
{
    /// What was last shown of something that is written now.
    struct Shown
    {
        UaNodeId nodeId;          ///< of which node
        OpcUa_UInt32 attributeId; ///< OpcUa_Attributes_Value, mostly
        UaVariant value;          ///< null when nothing was shown
        QString name;             ///< of the node, for the user; may be empty
    };

    std::vector<Shown> shown;      ///< in the order of the items, as far as it is known
    std::set<int> secretArguments; ///< of each method that is called: passwords, keys and tokens
    bool isSecret = false;         ///< what is written, and what was there before, is a secret
};

/// Gives the settings of a write what was shown before.
inline void qlumTellShown(UaClientSdk::ServiceSettings& settings, std::vector<QlumCallNote::Shown> shown)
{
    auto note = std::make_shared<QlumCallNote>();
    note->shown = std::move(shown);
    settings.note = std::move(note);
}
