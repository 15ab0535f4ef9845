// The attribute plugin with a scripted server behind it.
#pragma once
#include <plugins/attributes/qlumattributeplugin.h>
#include <plugins/attributes/qlumattributeview.h>
#include <tests/gui/attributes/attributefixture.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uavariant.h>

#include <QAction>
#include <QDockWidget>
#include <QTest>
#include <gtest/gtest.h>

#include <atomic>
#include <map>
#include <memory>
#include <string>
#include <thread>

/// Keeps what is asked besides the attributes of every node apart, and knows properties by their names.
class AttributeServices : public ScriptedServices
{
public:
    UaStatus read(UaClientSdk::ServiceSettings& settings, double maxAge, OpcUa_TimestampsToReturn timestamps,
                  const UaReadValueIds& nodes, UaDataValues& values) override
    {
        if (nodes[0].AttributeId <= OpcUa_Attributes_UserExecutable)
            return ScriptedServices::read(settings, maxAge, timestamps, nodes, values);
        EXPECT_TRUE(values.create(nodes.length()));
        for (OpcUa_UInt32 i = 0; i < nodes.length(); ++i) {
            const auto found = attributes.find({UaNodeId(nodes[i].NodeId), nodes[i].AttributeId});
            if (found == attributes.end())
                values[i].StatusCode = OpcUa_BadAttributeIdInvalid;
            else
                EXPECT_TRUE(OpcUa_IsGood(found->second.copyTo(&values[i].Value)));
        }
        return {};
    }
    UaStatus translateBrowsePathsToNodeIds(UaClientSdk::ServiceSettings&, const UaBrowsePaths& paths,
                                           UaBrowsePathResults& results) override
    {
        EXPECT_TRUE(results.create(paths.length()));
        for (OpcUa_UInt32 i = 0; i < paths.length(); ++i) {
            const UaQualifiedName name(paths[i].RelativePath.Elements[0].TargetName);
            const auto found = properties.find(name.name().toStdString());
            if (found == properties.end()) {
                results[i].StatusCode = OpcUa_BadNoMatch;
                continue;
            }
            UaBrowsePathTargets targets(1);
            EXPECT_TRUE(OpcUa_IsGood(found->second.copyTo(&targets[0].TargetId.NodeId)));
            targets.detach(&results[i].NoOfTargets, &results[i].Targets);
        }
        return {};
    }

    std::map<std::string, UaNodeId> properties; ///< of every node
};

/// Answers a read when it may go on, and takes its time even then.
class SlowServices : public AttributeServices
{
public:
    UaStatus read(UaClientSdk::ServiceSettings& settings, double maxAge, OpcUa_TimestampsToReturn timestamps,
                  const UaReadValueIds& nodes, UaDataValues& values) override
    {
        entered = true;
        while (!mayGoOn)
            std::this_thread::yield();
        for (int i = 0; i < 100; ++i) // each may cost a slice of a busy machine
            std::this_thread::yield();
        const UaStatus status = AttributeServices::read(settings, maxAge, timestamps, nodes, values);
        left = true;
        return status;
    }

    std::atomic<bool> entered{false};
    std::atomic<bool> mayGoOn{false};
    std::atomic<bool> left{false};
};

class AttributePlugin : public testing::Test
{
protected:
    AttributePlugin() : plugin([this](unsigned int) { return services; })
    {
        plugin.init(&application);
        for (OpcUa_UInt32 id : {1u, 2u})
            addVariable(node(id), "value " + std::to_string(id));
    }
    ~AttributePlugin() override { plugin.shutdown(); }

    static UaNodeId node(OpcUa_UInt32 id) { return UaNodeId(id, 2); }
    void addVariable(const UaNodeId& id, const std::string& value)
    {
        services->attributes[{id, OpcUa_Attributes_NodeId}] = UaVariant(id);
        services->attributes[{id, OpcUa_Attributes_NodeClass}] = UaVariant(OpcUa_Int32{2});
        services->attributes[{id, OpcUa_Attributes_Value}] = UaVariant(value.c_str());
    }
    void select(OpcUa_UInt32 id)
    {
        UaNodeId nodeId = node(id);
        plugin.selectionChanged(5, &nodeId, OpcUa_NodeClass_Variable, nullptr);
    }
    bool waitFor(OpcUa_UInt32 id)
    {
        return QTest::qWaitFor([this, id] { return plugin.model()->nodeId() == node(id); });
    }
    QAction* action(const char* name) { return plugin.findChild<QAction*>(name); }
    QlumAttributeView* view() { return plugin.dock()->findChild<QlumAttributeView*>("attributeView"); }

    AttributeApplication application;
    std::shared_ptr<AttributeServices> services = std::make_shared<AttributeServices>();
    QlumAttributePlugin plugin;
};
