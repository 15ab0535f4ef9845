// The attribute plugin with a scripted server behind it.
#pragma once
#include <plugins/attributes/qlumattributeplugin.h>
#include <plugins/attributes/qlumattributeview.h>
#include <tests/gui/attributes/attributefixture.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uavariant.h>

#include <QAction>
#include <QDockWidget>
#include <QTest>
#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <string>
#include <thread>

// Answers a read when it may go on, and takes its time even then.
class SlowServices : public ScriptedServices
{
public:
    UaStatus read(UaClientSdk::ServiceSettings& settings, double maxAge, OpcUa_TimestampsToReturn timestamps,
                  const UaReadValueIds& nodes, UaDataValues& values) override
    {
        entered = true;
        while (!mayGoOn)
            std::this_thread::yield();
        for (int i = 0; i < 10000; ++i)
            std::this_thread::yield();
        const UaStatus status = ScriptedServices::read(settings, maxAge, timestamps, nodes, values);
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
    std::shared_ptr<ScriptedServices> services = std::make_shared<ScriptedServices>();
    QlumAttributePlugin plugin;
};
