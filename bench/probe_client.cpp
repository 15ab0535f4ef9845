// A process with one channel to the responder, which may browse and keep what it got: prints its peak memory
// with the idle channel and at the end.
#include <bench/processmemory.h>
#include <opcua/opcua.h>

#include <cstdio>
#include <cstdlib>
#include <vector>

int main(int argc, char** argv)
{
    OpcUa_Channel channel = nullptr;
    OpcUa_ChannelConnectInfo info{};
    info.Url = argc > 1 ? argv[1] : nullptr;
    info.SecurityMode = OpcUa_MessageSecurityMode_None;
    if (OpcUa_IsBad(OpcUa_ProxyStub_Initialize(nullptr)) || OpcUa_IsBad(OpcUa_Channel_Create(&channel)) ||
        OpcUa_IsBad(OpcUa_Channel_Connect(channel, &info, nullptr)))
        return 1;
    const std::size_t idle = opcua::bench::peakKilobytes();
    OpcUa_BrowseRequest request;
    OpcUa_BrowseRequest_Initialize(&request);
    std::vector<OpcUa_BrowseResponse> kept(argc > 2 ? std::strtoul(argv[2], nullptr, 10) : 0);
    for (OpcUa_BrowseResponse& response : kept)
        if (OpcUa_IsBad(OpcUa_ClientApi_Browse(channel, &request, &response)))
            return 1;
    std::printf("%zu %zu\n", idle, opcua::bench::peakKilobytes());
    OpcUa_Channel_Delete(&channel);
    OpcUa_ProxyStub_Clear();
    return 0;
}
