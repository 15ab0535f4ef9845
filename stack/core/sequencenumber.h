// Sequence numbers of chunks, OPC 10000-6, 6.7.2.4: one line of numbers for each direction of a channel.
#pragma once

#include <stack/core/protocol.h>

namespace opcua {

enum class SequenceRule {
    Legacy,   ///< plus one a chunk; above 4,294,966,271 it may go back to a number below 1,024
    FullRange ///< from 0 to the maximum and then 0 again
};

inline constexpr OpcUa_UInt32 legacyWrapAbove = 4'294'966'271u;
inline constexpr OpcUa_UInt32 legacyWrapBelow = 1024;

class SequenceSender
{
public:
    explicit SequenceSender(SequenceRule rule) : m_rule(rule), m_next(rule == SequenceRule::Legacy ? 1 : 0) {}

    [[nodiscard]] OpcUa_UInt32 next()
    {
        const OpcUa_UInt32 number = m_next;
        m_next = m_rule == SequenceRule::Legacy && number > legacyWrapAbove ? 1 : number + 1;
        return number;
    }

private:
    friend class EngineProbe; // for tests

    SequenceRule m_rule;
    OpcUa_UInt32 m_next;
};

class SequenceVerifier
{
public:
    explicit SequenceVerifier(SequenceRule rule) : m_rule(rule) {}

    /// False when number cannot follow the last one. The first may be any under the legacy rule, else 0.
    [[nodiscard]] bool accept(OpcUa_UInt32 number)
    {
        if (!follows(number))
            return false;
        m_last = number;
        m_started = true;
        return true;
    }

private:
    [[nodiscard]] bool follows(OpcUa_UInt32 number) const
    {
        if (!m_started)
            return m_rule == SequenceRule::Legacy || number == 0;
        if (number == m_last + 1)
            return true;
        return m_rule == SequenceRule::Legacy && m_last > legacyWrapAbove && number < legacyWrapBelow;
    }

    SequenceRule m_rule;
    bool m_started = false;
    OpcUa_UInt32 m_last = 0;
};

} // namespace opcua
