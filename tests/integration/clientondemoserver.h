// The whole client on the demo server.
#pragma once

#include <tests/support/clientonserver.h>
#include <tests/support/demoserverinfo.h>

#include <string>

class ClientOnDemoServer : public ClientOnServer
{
protected:
    [[nodiscard]] std::string url() const override { return demoserver::endpointUrl(); }
    void openDemoProject() { openProject(url()); }
    void openDemoProject(const std::string& other) { openProject(other); }
};
