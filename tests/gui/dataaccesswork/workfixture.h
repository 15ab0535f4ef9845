// A job that a test runs itself, and a server with namespaces.
#pragma once
#include <app/api/qlumjob.h>
#include <tests/support/stubapplication.h>
#include <tests/support/tableservices.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>

/// For functions that want one.
class TestJob final : public QlumJob
{
public:
    void run() override {}
};

/// Namespace 2 is the plant's.
class PlantServices : public TableServices
{
public:
    UaStringArray namespaceTable() const override
    {
        UaStringArray uris(3);
        static_cast<void>(UaString("http://opcfoundation.org/UA/").copyTo(&uris[0]));
        static_cast<void>(UaString("urn:client:own").copyTo(&uris[1]));
        static_cast<void>(UaString("urn:plant;1/north").copyTo(&uris[2]));
        return uris;
    }
    static UaNodeId node(OpcUa_UInt32 id) { return UaNodeId(id, 2); }
};
