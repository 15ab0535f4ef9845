// When the sources that were built changed last. The build writes the definition.
#pragma once

namespace opcua {

/// ISO 8601; empty when the build did not know it.
extern const char sourceTimestamp[];

} // namespace opcua
