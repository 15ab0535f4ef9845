#include <uawidgets/editors/qlumelementlist.h>

#include <opcua/opcua_builtintypes.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <limits>
#include <span>
#include <string_view>
#include <utility>

namespace {
// Beyond, finding an element and moving runs would be felt; one array is made of them then.
constexpr std::size_t maximumRuns = 50000;

std::size_t sizeOf(OpcUa_BuiltInType type)
{
    return OpcUa_BuiltInType_Size(static_cast<OpcUa_Byte>(type));
}
} // namespace

QlumElementList::QlumElementList(const UaVariant& array, OpcUa_BuiltInType type)
    : m_type(array.isScalar() ? type : array.type()), m_whole(array)
{
    m_count = static_cast<int>(array.elementCount());
    if (m_count > 0)
        m_runs.push_back({0, m_count, array, 0, false, false});
}

// ---- reading

bool QlumElementList::isThere(int first, int count) const
{
    return first >= 0 && count >= 0 && count <= m_count - first;
}

const QlumElementList::Run& QlumElementList::runAt(int index) const
{
    const auto after = std::upper_bound(m_runs.begin(), m_runs.end(), index,
                                        [](int place, const Run& run) { return place < run.first; });
    return *std::prev(after);
}

const void* QlumElementList::elementAt(int index) const
{
    const Run& run = runAt(index);
    const int place = run.offset + (run.repeats ? 0 : index - run.first);
    return static_cast<const unsigned char*>(run.source.elements()) +
           static_cast<std::size_t>(place) * sizeOf(m_type);
}

UaVariant QlumElementList::at(int index) const
{
    if (!isThere(index, 1))
        return {};
    const Run& run = runAt(index);
    return run.source.at(static_cast<OpcUa_UInt32>(run.offset + (run.repeats ? 0 : index - run.first)));
}

// ---- runs

bool QlumElementList::makeRun(const UaVariant& value, int count, Run& run) const
{
    UaVariant source;
    if (!OpcUa_IsGood(source.setArray(m_type, std::span<const UaVariant>(&value, 1))))
        return false;
    run = {0, count, source, 0, true, true};
    return true;
}

// The place of the run that begins with the element; the end for the one behind the last.
std::size_t QlumElementList::splitAt(int index)
{
    if (index >= m_count)
        return m_runs.size();
    const auto place = static_cast<std::size_t>(&runAt(index) - m_runs.data());
    const int before = index - m_runs[place].first;
    if (before == 0)
        return place;
    Run rest = m_runs[place];
    m_runs[place].count = before;
    rest.first = index;
    rest.count -= before;
    rest.offset += rest.repeats ? 0 : before;
    m_runs.insert(m_runs.begin() + static_cast<std::ptrdiff_t>(place) + 1, std::move(rest));
    return place + 1;
}

std::vector<QlumElementList::Run> QlumElementList::cut(int first, int count)
{
    const auto begin = static_cast<std::ptrdiff_t>(splitAt(first));
    const auto end = static_cast<std::ptrdiff_t>(splitAt(first + count));
    std::vector<Run> taken(std::make_move_iterator(m_runs.begin() + begin),
                           std::make_move_iterator(m_runs.begin() + end));
    m_runs.erase(m_runs.begin() + begin, m_runs.begin() + end);
    renumber(static_cast<std::size_t>(begin));
    return taken;
}

void QlumElementList::paste(int before, std::vector<Run> runs)
{
    const std::size_t place = splitAt(before);
    m_runs.insert(m_runs.begin() + static_cast<std::ptrdiff_t>(place), std::make_move_iterator(runs.begin()),
                  std::make_move_iterator(runs.end()));
    renumber(place);
    m_isWhole = false;
    m_unchanged = false;
    bound();
}

void QlumElementList::renumber(std::size_t from)
{
    int first = from == 0 ? 0 : m_runs[from - 1].first + m_runs[from - 1].count;
    for (std::size_t i = from; i < m_runs.size(); ++i) {
        m_runs[i].first = first;
        first += m_runs[i].count;
    }
    m_count = first;
}

void QlumElementList::bound()
{
    if (m_runs.size() > maximumRuns)
        static_cast<void>(whole()); // what fails leaves the runs
}

// ---- editing

bool QlumElementList::fill(int first, int count, const UaVariant& value)
{
    Run run;
    if (count == 0 || !isThere(first, count) || !makeRun(value, count, run))
        return false;
    cut(first, count);
    paste(first, {run});
    return true;
}

bool QlumElementList::insert(int before, int count, const UaVariant& value)
{
    Run run;
    const bool fits = count > 0 && count <= std::numeric_limits<int>::max() - m_count;
    if (!fits || !isThere(before, 0) || !makeRun(value, count, run))
        return false;
    paste(before, {run});
    return true;
}

bool QlumElementList::overwrite(int first, const UaVariant& array)
{
    const int count = static_cast<int>(array.elementCount());
    if (count == 0 || array.type() != m_type || !isThere(first, 0) ||
        count > std::numeric_limits<int>::max() - first)
        return false;
    cut(first, std::min(count, m_count - first));
    paste(first, {{0, count, array, 0, false, true}});
    return true;
}

bool QlumElementList::remove(int first, int count)
{
    if (count == 0 || !isThere(first, count))
        return false;
    cut(first, count);
    paste(first, {});
    return true;
}

bool QlumElementList::move(int first, int count, int before)
{
    const bool stays = before >= first && before <= first + count;
    if (count == 0 || stays || !isThere(first, count) || !isThere(before, 0))
        return false;
    std::vector<Run> moved = cut(first, count);
    paste(before > first ? before - count : before, std::move(moved));
    return true;
}

// ---- the array

UaVariant QlumElementList::whole()
{
    if (m_isWhole)
        return m_whole;
    UaVariant array;
    void* block =
        m_count > 0 ? OpcUa_Memory_AllocArray(static_cast<std::size_t>(m_count), sizeOf(m_type)) : nullptr;
    if (m_count > 0 && !block)
        return {};
    const auto type = static_cast<OpcUa_Byte>(m_type);
    auto* place = static_cast<unsigned char*>(block);
    OpcUa_StatusCode status = OpcUa_Good;
    std::size_t copied = 0;
    for (const Run& run : m_runs) {
        const auto* source = static_cast<const unsigned char*>(run.source.elements()) +
                             static_cast<std::size_t>(run.offset) * sizeOf(m_type);
        const std::size_t portion = run.repeats ? 1 : static_cast<std::size_t>(run.count);
        for (std::size_t done = 0; done < static_cast<std::size_t>(run.count) && OpcUa_IsGood(status);
             done += portion) {
            status = OpcUa_BuiltInType_CopyArray(type, source, place + copied * sizeOf(m_type), portion);
            copied += OpcUa_IsGood(status) ? portion : 0;
        }
    }
    if (!OpcUa_IsGood(status)) {
        OpcUa_BuiltInType_ClearArray(type, block, copied);
        OpcUa_Memory_Free(block);
        return {};
    }
    if (!OpcUa_IsGood(array.attachArray(m_type, m_count, block)))
        return {};
    m_whole = array;
    m_isWhole = true;
    // what was given is still told by visitGiven, unless there is too much of it
    if (m_runs.size() > maximumRuns)
        m_runs = {{0, m_count, array, 0, false, false}};
    return array;
}
