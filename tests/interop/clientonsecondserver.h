// The whole client on the second server.
#pragma once

#include <app/api/qlumsessionservices.h>
#include <app/api/qlumtoolservices.h>
#include <tests/interop/secondserver.h>
#include <tests/support/clientonserver.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>

#include <QTest>

#include <functional>
#include <memory>
#include <string>

class ClientOnSecondServer : public ClientOnServer
{
protected:
    void SetUp() override
    {
        if (!SecondServer::isThere())
            GTEST_SKIP() << "not run: TAVELIN_SECOND_SERVER names no script that starts a second server";
        ASSERT_TRUE(server.start(environment()));
        ClientOnServer::SetUp();
        if (HasFatalFailure())
            return;
        openProject(url());
        services = qlumApplicationServices()(serverId);
        ASSERT_NE(services, nullptr);
    }

    /// What the server is started with.
    [[nodiscard]] virtual std::string environment() const { return "LIMIT=5"; }
    [[nodiscard]] std::string url() const override { return server.url(); }
    static UaNodeId named(const char* name) { return UaNodeId(UaString(name), 1); }
    static UaNodeId numbered(OpcUa_UInt32 number) { return UaNodeId(number, 1); }
    bool waitFor(const std::function<bool()>& condition) { return QTest::qWaitFor(condition, limit); }

    SecondServer server;
    std::shared_ptr<QlumSessionServices> services;
};
