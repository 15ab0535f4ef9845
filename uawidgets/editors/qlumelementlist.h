#pragma once
#include <uabase/values/uavariant.h>

#include <vector>

/// The elements of an array or matrix while it is edited. The array itself stays as it came; the list knows
/// from which part of which array its elements are taken. So an edit costs by the number of edits before it
/// and not by the length of the array, and lists share what they have in common.
class QlumElementList
{
public:
    QlumElementList() = default;
    /// Takes the elements of an array or matrix; of a null value the list is empty, of that type.
    QlumElementList(const UaVariant& array, OpcUa_BuiltInType type);

    /// Of the elements.
    [[nodiscard]] OpcUa_BuiltInType type() const { return m_type; }
    /// Of the elements.
    [[nodiscard]] int count() const { return m_count; }
    /// Null when there is none.
    [[nodiscard]] UaVariant at(int index) const;
    /// Borrowed until the list changes; the element must be there.
    [[nodiscard]] const void* elementAt(int index) const;

    /// The value in place of so many elements. False, and nothing changed, when it is no scalar of the type
    /// (an array of Variant takes anything) or when the elements are not there.
    bool fill(int first, int count, const UaVariant& value);
    /// So many times the value, before the element. False as fill().
    bool insert(int before, int count, const UaVariant& value);
    /// The elements of the array in place of as many, beyond the end behind it. False when it has another
    /// type or begins behind the end.
    bool overwrite(int first, const UaVariant& array);
    /// False when they are not there.
    bool remove(int first, int count);
    /// Before another element, counted before the move. False when they are not there or would stay there.
    bool move(int first, int count, int before);
    /// By value, equal ones in the order in which they are; NaN last. False for types without an order.
    bool sort(int first, int count, bool descending);
    /// Whether elements of the type have an order.
    [[nodiscard]] static bool hasOrder(OpcUa_BuiltInType type);

    /// All elements as one array; what was not edited is what came, a matrix then. Null when out of
    /// memory.
    [[nodiscard]] UaVariant whole();
    /// Whether the elements are those that came.
    [[nodiscard]] bool isUnchanged() const { return m_unchanged; }
    /// Calls visit with each element that was given since, until it answers false or so many were seen.
    template <typename Visit>
    void visitGiven(int maximum, Visit&& visit) const
    {
        for (const Run& run : m_runs)
            for (int i = 0; run.given && i < (run.repeats ? 1 : run.count); ++i)
                if (maximum-- <= 0 || !visit(run.first + i, at(run.first + i)))
                    return;
    }

private:
    /// Elements that follow one another in an array, or its first one so many times.
    struct Run
    {
        int first; // in the list
        int count;
        UaVariant source;
        int offset;
        bool repeats;
        bool given;
    };

    [[nodiscard]] bool isThere(int first, int count) const;
    [[nodiscard]] const Run& runAt(int index) const;
    [[nodiscard]] bool makeRun(const UaVariant& value, int count, Run& run) const;
    [[nodiscard]] std::size_t splitAt(int index);
    std::vector<Run> cut(int first, int count);
    void paste(int before, std::vector<Run> runs);
    void renumber(std::size_t from);
    void bound();

    std::vector<Run> m_runs;
    OpcUa_BuiltInType m_type = OpcUaType_Null;
    int m_count = 0;
    UaVariant m_whole;
    bool m_isWhole = true; ///< m_whole has all elements
    bool m_unchanged = true;
};
