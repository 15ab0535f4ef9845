#pragma once
#include <app/api/qlumsessionservices.h>
#include <opcua/opcua_types.h>
#include <uabase/structures/uatypedefinitionstore.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumvaluecontext.h>
#include <uawidgets/editors/qlumvaluefacts.h>

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <span>
#include <vector>

class QWidget;
class QlumJob;

/// Has the user choose a node of the server, for QlumValueContext::browseNode; empty when nobody offers that.
/// GUI thread.
[[nodiscard]] std::function<UaNodeId(QWidget* parent, const UaNodeId& start)>
qlumNodeChoice(unsigned int serverId);

/// Makes the contexts of values out of what a server says of them, in a job: the contexts ask nothing of the
/// server any more. What is known of its types costs no call; the first question about a type may cost a few.
/// The contexts of one reader share their definitions, so none of them may be edited while it goes on.
class QlumContextReader
{
public:
    /// Whether the caller was given up meanwhile.
    using IsCancelled = std::function<bool()>;
    /// Called once, by whoever asks the reader, when types have to be waited for.
    using Waiting = std::function<void()>;

    /// The settings are those of its calls. With isCancelled, types of the server's own that are just being
    /// read are waited for, until it says true: for those who are not told when they have come.
    QlumContextReader(std::shared_ptr<QlumSessionServices> session,
                      const QlumSessionServices::Settings& settings, IsCancelled isCancelled = {});
    /// Of a job that shows what it finds once: it waits for types. The job has to outlive the reader.
    QlumContextReader(std::shared_ptr<QlumSessionServices> session, const QlumJob& job, Waiting waiting = {});

    /// Of variables, in their order; two calls, however many they are. A node that cannot be read gets a
    /// context of which nothing is known. values, unless null, gets the Value of each, read with the rest.
    [[nodiscard]] UaStatus read(std::span<const UaNodeId> variables, std::vector<QlumValueContext>& contexts,
                                UaDataValues* values = nullptr);
    /// Of a value of which the caller has read this himself.
    [[nodiscard]] QlumValueContext of(const QlumValueFacts& facts);
    /// Makes known what a value holds, whatever it was declared as: its structures can be shown.
    void learn(const UaVariant& value);

private:
    [[nodiscard]] UaStatus findProperties(std::span<const UaNodeId> variables,
                                          std::vector<QlumValueFacts>& facts,
                                          std::vector<UaNodeId>& properties,
                                          std::vector<UaVariant*>& targets);
    void learn(const UaVariant& value, int depth);
    void waitForTypes();
    void collect(const UaNodeId& dataTypeOrEncodingId);
    void offerSubtypes(const UaNodeId& dataType);
    [[nodiscard]] OpcUa_BuiltInType builtInType(const UaNodeId& dataType);

    const std::shared_ptr<QlumSessionServices> m_session;
    QlumSessionServices::Settings m_settings;
    IsCancelled m_isCancelled; ///< null when nothing is waited for
    Waiting m_waiting;         ///< null when nobody wants to know
    const std::shared_ptr<UaTypeDefinitionStore> m_definitions;
    const std::shared_ptr<std::map<UaNodeId, std::vector<UaNodeId>>> m_subtypes;
    std::set<UaNodeId> m_collected;
};
