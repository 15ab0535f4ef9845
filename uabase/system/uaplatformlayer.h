// Start and end of the communication stack.
#pragma once

class UaPlatformLayer
{
public:
    /// Starts the stack and lets its trace flow into UaTrace. Returns the stack's status code, 0 when all is
    /// well; on a failure nothing stays started. Counted: each successful call needs one cleanup().
    [[nodiscard]] static int init();
    /// Ends the stack with the last of the calls; every channel should be closed by then. A call too many
    /// does nothing.
    static void cleanup();

    UaPlatformLayer() = delete;
};
