// Answers of a responder that come out of a table of nodes: a tool's benchmark runs over a real channel
// against the world that its tests state.
#pragma once

#include <bench/responder.h>
#include <tests/support/nodetable.h>

namespace opcua::bench {

/// The table must outlive the responder's construction: its process has a copy of its own, which writes and
/// method calls change.
[[nodiscard]] Answerer answersOf(NodeTable& table);

} // namespace opcua::bench
