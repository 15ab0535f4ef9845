#include <tests/soak/disconnectfaults.h>

#include <opcua/opcua_identifiers.h>

#include <chrono>
#include <cstddef>
#include <string>
#include <utility>

namespace soak {

namespace {

using namespace std::chrono_literals;
using faultproxy::Flow;
using faultproxy::Frame;
using faultproxy::Toward;

constexpr int startsAtMost = 3; // on a busy machine a start may take longer than it is given

void stop(Scene& scene, Toward direction)
{
    Flow flow;
    flow.stopped = true;
    scene.relay.setFlow(direction, flow);
}

void slow(Scene& scene, std::size_t burst, std::chrono::milliseconds pause)
{
    Flow flow;
    flow.burst = burst;
    flow.pause = pause;
    scene.relay.setFlow(Toward::Client, flow);
}

void delay(Scene& scene, std::chrono::milliseconds time)
{
    Flow flow;
    flow.delay = time;
    scene.relay.setFlow(Toward::Client, flow);
    scene.relay.setFlow(Toward::Server, flow);
}

// Sealed answers are known by their place: a first connect creates a session and activates it, a later one
// activates the one that is there.
void silentFromMessage(Scene& scene, std::size_t ordinal)
{
    scene.relay.silentFrom(
        [ordinal](const Frame& frame) { return frame.type == "MSG" && frame.ordinal == ordinal; });
}

void silentInClose(Scene& scene)
{
    if (!scene.secured)
        scene.relay.silentFrom([](const Frame& frame) {
            return frame.typeId == OpcUaId_CloseSessionResponse_Encoding_DefaultBinary;
        });
}

// A sealed answer to the close cannot be told from others, but it is the one that comes now.
void silentInSealedClose(Scene& scene)
{
    if (scene.secured)
        stop(scene, Toward::Client);
}

void hangUp(Scene& scene)
{
    if (scene.random() % 4 == 0)
        scene.relay.hangUp();
    else
        scene.relay.cutAfter(scene.random() % 2000);
}

void freezeServer(Scene& scene)
{
    scene.serverFrozen = true;
    scene.server.freeze();
}

void shutServerDown(Scene& scene)
{
    scene.serverEnds = true;
    scene.server.shutDown();
}

} // namespace

// ---- scene

Scene::Scene(std::uint16_t serverPort, OwnDemoServer& demoServer, std::mt19937_64& randomNumbers)
    : relay(serverPort), server(demoServer), random(randomNumbers)
{
}

bool Scene::startServer()
{
    for (int n = 0; n < startsAtMost; ++n) {
        server.kill();
        if (server.start())
            return true;
    }
    return false;
}

void Scene::restartServer()
{
    m_restart = std::async(
        std::launch::async, [this] { return startServer(); });
}

bool Scene::heal()
{
    if (std::exchange(serverFrozen, false))
        server.thaw();
    const bool up = m_restart.valid() ? m_restart.get() : !std::exchange(serverEnds, false) || startServer();
    relay.heal();
    return up;
}

// ---- kinds

using enum Kind::Strikes;

const std::array<Kind, 20> kinds{{
    {"hang-up", Links, false, hangUp, nullptr},
    {"reset", Links, false, [](Scene& scene) { scene.relay.reset(); }, nullptr},
    {"frozen both ways", Links, false, [](Scene& scene) { scene.relay.freeze(true); }, nullptr},
    {"server is not heard", Links, false, [](Scene& scene) { stop(scene, Toward::Client); }, nullptr},
    {"client is not heard", Links, false, [](Scene& scene) { stop(scene, Toward::Server); }, nullptr},
    {"server drips", Links, false, [](Scene& scene) { slow(scene, 1, 100ms); }, nullptr},
    {"2 kB a second", Links, false, [](Scene& scene) { slow(scene, 100, 50ms); }, nullptr},
    {"3 s each way", Links, false, [](Scene& scene) { delay(scene, 3s); }, nullptr},
    {"wrong bit", Traffic, false, [](Scene& scene) { scene.relay.damageNext(); }, nullptr},
    {"garbage", Traffic, false, [](Scene& scene) { scene.relay.garbageNext(); }, nullptr},
    {"accepts in silence", Connects, false, [](Scene& scene) { scene.relay.ignore(true); }, nullptr},
    {"connects refused", Door, false, [](Scene& scene) { scene.relay.shutDoor(true); }, nullptr},
    {"third try succeeds", Connects, false, [](Scene& scene) { scene.relay.refuseNext(2); }, nullptr},
    {"silent in open", Connects, false,
     [](Scene& scene) { scene.relay.silentFrom([](const Frame& frame) { return frame.type == "OPN"; }); },
     nullptr},
    {"silent in create", Connects, true, [](Scene& scene) { silentFromMessage(scene, 1); }, nullptr},
    {"silent in activate", Connects, false,
     [](Scene& scene) { silentFromMessage(scene, scene.firstConnect ? 2 : 1); }, nullptr},
    {"silent in close", Traffic, false, silentInClose, silentInSealedClose},
    {"server stopped", Links, false, freezeServer, nullptr},
    {"server killed", Links, false, [](Scene& scene) { scene.restartServer(); }, nullptr},
    {"server shut down", Links, false, shutServerDown, nullptr},
}};

} // namespace soak
