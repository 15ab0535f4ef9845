// A server in the test program: answers the service calls of views by what a test put into it.
#pragma once
#include <app/api/qlumservertypes.h>
#include <app/api/qlumsessionservices.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_statuscodes.h>
#include <tests/support/unscriptedservices.h>
#include <uabase/structures/uadatatypedictionary.h>
#include <uabase/structures/uaenumdefinition.h>
#include <uabase/structures/uaoptionsetdefinition.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>

#include <QString>
#include <QStringList>
#include <gtest/gtest.h>

#include <deque>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

struct ScriptedReference
{
    const char* name;
    UaNodeId id;
    OpcUa_NodeClass nodeClass = OpcUa_NodeClass_Object;
    UaNodeId typeDefinition = UaNodeId(58);
};

class ScriptedServices : public UnscriptedServices
{
public:
    /// One answer to Browse or BrowseNext; it holds a continuation point when there is another.
    struct Answer
    {
        std::vector<ScriptedReference> references;
        OpcUa_StatusCode status = 0;
    };

    std::map<UaNodeId, std::deque<Answer>> browses; ///< the first answers Browse, the others BrowseNext
    bool endless = false;                           ///< every answer has a continuation point
    bool inventive = false;   ///< endless, and every answer has a node that was not there before
    bool freshPoints = false; ///< no continuation point comes twice; else it is the same for all of a node
    std::deque<OpcUa_StatusCode> nextFailures; ///< of BrowseNext calls, before they are answered again
    std::map<std::pair<UaNodeId, OpcUa_UInt32>, UaVariant>
        attributes; ///< read; others are BadAttributeIdInvalid
    std::map<std::pair<UaNodeId, OpcUa_UInt32>, OpcUa_StatusCode> attributeStatus;
    std::map<UaNodeId, UaNodeId> icons; ///< node -> its property "Icon"
    std::vector<UaVariant> written;
    OpcUa_StatusCode callStatus = 0; ///< of read, write and translate
    QStringList writtenTo;           ///< attribute and index range
    OpcUa_StatusCode writeResult = 0;
    OpcUa_StatusCode rangeResult = 0; ///< of writes with an index range
    bool connected = true;
    QStringList journal;

    bool isConnected() const override { return connected; }

    UaStatus browse(UaClientSdk::ServiceSettings&, const UaNodeId& node,
                    const UaClientSdk::BrowseContext& context, UaByteString& continuationPoint,
                    UaReferenceDescriptions& references) override
    {
        journal.append("browse " + toQString(node.toXmlString()));
        lastContext = context;
        m_position[node] = 0;
        return answer(node, continuationPoint, references);
    }
    UaStatus browseNext(UaClientSdk::ServiceSettings& settings, bool release, UaByteString& continuationPoint,
                        UaReferenceDescriptions& references) override
    {
        const UaByteString point = std::exchange(continuationPoint, UaByteString());
        references.clear();
        if (release) {
            journal.append("release");
            lastReleased = point;
            lastReleaseTimeout = settings.callTimeout;
            return UaStatus(releaseStatus);
        }
        journal.append("next");
        if (!nextFailures.empty()) {
            const UaStatus failure(nextFailures.front());
            nextFailures.pop_front();
            return failure;
        }
        const UaNodeId node = UaNodeId::fromString(point.view().substr(0, point.view().find('#')));
        ++m_position[node];
        return answer(node, continuationPoint, references);
    }
    UaStatus read(UaClientSdk::ServiceSettings&, double, OpcUa_TimestampsToReturn,
                  const UaReadValueIds& nodes, UaDataValues& values) override
    {
        journal.append("read " + toQString(UaNodeId(nodes[0].NodeId).toXmlString()));
        if (callStatus != 0)
            return UaStatus(callStatus);
        EXPECT_TRUE(values.create(nodes.length()));
        for (OpcUa_UInt32 i = 0; i < nodes.length(); ++i) {
            const std::pair key{UaNodeId(nodes[i].NodeId), nodes[i].AttributeId};
            const auto found = attributes.find(key);
            if (found == attributes.end())
                values[i].StatusCode = OpcUa_BadAttributeIdInvalid;
            else
                EXPECT_TRUE(OpcUa_IsGood(found->second.copyTo(&values[i].Value)));
            if (const auto status = attributeStatus.find(key); status != attributeStatus.end())
                values[i].StatusCode = status->second;
        }
        return {};
    }
    UaStatus write(UaClientSdk::ServiceSettings&, const UaWriteValues& nodes,
                   UaStatusCodeArray& results) override
    {
        if (callStatus != 0)
            return UaStatus(callStatus);
        journal.append("write " + toQString(UaNodeId(nodes[0].NodeId).toXmlString()));
        const UaString range(nodes[0].IndexRange);
        EXPECT_TRUE(results.create(1));
        results[0] = range.isEmpty() ? writeResult : rangeResult;
        if (!range.isEmpty() && rangeResult != 0)
            return {};
        written.emplace_back(nodes[0].Value.Value);
        writtenTo.append(QStringLiteral("%1 %2").arg(nodes[0].AttributeId).arg(toQString(range)).trimmed());
        return {};
    }
    UaStatus translateBrowsePathsToNodeIds(UaClientSdk::ServiceSettings&, const UaBrowsePaths& paths,
                                           UaBrowsePathResults& results) override
    {
        const UaNodeId start(paths[0].StartingNode);
        journal.append("translate " + toQString(start.toXmlString()));
        if (callStatus != 0)
            return UaStatus(callStatus);
        EXPECT_TRUE(results.create(1));
        const auto found = icons.find(start);
        if (found == icons.end()) {
            results[0].StatusCode = OpcUa_BadNoMatch;
            return {};
        }
        UaBrowsePathTargets targets(1);
        EXPECT_TRUE(OpcUa_IsGood(found->second.copyTo(&targets[0].TargetId.NodeId)));
        targets.detach(&results[0].NoOfTargets, &results[0].Targets);
        return {};
    }
    UaEnumDefinition enumDefinition(const UaNodeId& id) override
    {
        journal.append("enum " + toQString(id.toXmlString()));
        return UnscriptedServices::enumDefinition(id);
    }

    UaClientSdk::BrowseContext lastContext;
    UaByteString lastPoint; ///< that was given
    UaByteString lastReleased;
    OpcUa_UInt32 lastReleaseTimeout = 0;
    OpcUa_StatusCode releaseStatus = 0;

private:
    UaStatus answer(const UaNodeId& node, UaByteString& continuationPoint,
                    UaReferenceDescriptions& references)
    {
        const std::deque<Answer>& answers = browses[node];
        const std::size_t position = m_position[node];
        std::string point = node.toXmlString().toStdString();
        if (freshPoints)
            point += '#' + std::to_string(++m_points);
        continuationPoint = UaByteString();
        if (endless || inventive || position + 1 < answers.size())
            continuationPoint =
                UaByteString(std::span(reinterpret_cast<const OpcUa_Byte*>(point.data()), point.size()));
        lastPoint = continuationPoint;
        references.clear();
        if (inventive && position >= answers.size()) {
            EXPECT_TRUE(references.create(1));
            EXPECT_TRUE(OpcUa_IsGood(UaNodeId(++m_invented, 9).copyTo(&references[0].NodeId.NodeId)));
            return {};
        }
        if (position >= answers.size())
            return {};
        const Answer& now = answers[position];
        EXPECT_TRUE(references.create(static_cast<OpcUa_UInt32>(now.references.size())));
        for (OpcUa_UInt32 i = 0; i < references.length(); ++i) {
            const ScriptedReference& from = now.references[i];
            EXPECT_TRUE(OpcUa_IsGood(from.id.copyTo(&references[i].NodeId.NodeId)));
            EXPECT_TRUE(OpcUa_IsGood(
                UaLocalizedText(UaString("en"), UaString(from.name)).copyTo(&references[i].DisplayName)));
            references[i].NodeClass = from.nodeClass;
            EXPECT_TRUE(OpcUa_IsGood(from.typeDefinition.copyTo(&references[i].TypeDefinition.NodeId)));
        }
        return UaStatus(now.status);
    }

    std::map<UaNodeId, std::size_t> m_position;
    OpcUa_UInt32 m_invented = 0;
    int m_points = 0;
};
