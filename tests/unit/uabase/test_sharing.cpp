// What copies cost: scalars no memory at all, everything else a counter.
#include <uabase/structures/uagenericstructurevalue.h>
#include <uabase/structures/uanamespacezero.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uaguid.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uavariant.h>

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <new>
#include <thread>
#include <utility>
#include <vector>

namespace {

std::atomic<unsigned long> allocations{0};

void* counted(std::size_t size) noexcept
{
    ++allocations;
    return std::malloc(size ? size : 1);
}

// How often work allocates.
template <typename Work>
unsigned long allocationsOf(Work work)
{
    const unsigned long before = allocations;
    work();
    return allocations - before;
}

} // namespace

[[gnu::noinline]] void* operator new(std::size_t size)
{
    if (void* memory = counted(size); memory)
        return memory;
    std::abort();
}
[[gnu::noinline]] void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return counted(size);
}
[[gnu::noinline]] void operator delete(void* memory) noexcept
{
    std::free(memory);
}
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}
[[gnu::noinline]] void operator delete(void* memory, const std::nothrow_t&) noexcept
{
    std::free(memory);
}

TEST(Sharing, ScalarsNeedNoMemory)
{
    double sum = 0;
    EXPECT_EQ(allocationsOf([&] {
                  UaVariant number(1.5);
                  UaVariant copy = number;
                  copy.setInt64(7);
                  UaDataValue value(copy, OpcUa_Good, UaDateTime(5));
                  UaNodeId id(84);
                  UaNodeId guid(UaGuid(), 3);
                  id = guid;
                  UaVariant changed = number;
                  sum = changed.changeType(OpcUaType_Int32, false).isGood() ? value.value().toDouble() : 0;
              }),
              0u);
    EXPECT_EQ(sum, 7.0);
}

TEST(Sharing, CopiesShareUntilOneChanges)
{
    UaVariant array;
    const OpcUa_Int32 numbers[] = {1, 2, 3};
    EXPECT_TRUE(OpcUa_IsGood(array.setArray(OpcUaType_Int32, 3, numbers)));
    const UaVariant text("a text that is longer than any small buffer");
    UaGenericStructureValue structure(uaNamespaceZeroStructure(UaNodeId(862)));
    UaVariant copy;
    EXPECT_EQ(allocationsOf([&] {
                  copy = array;
                  const UaVariant other = text;
                  const UaDataValue value(text);
                  const UaGenericStructureValue second = structure;
                  const UaStructureDefinition definition = structure.definition();
              }),
              0u);
    EXPECT_EQ(copy.elements(), array.elements());
    ASSERT_EQ(copy.setAt(1, UaVariant(OpcUa_Int32{9})), OpcUa_Good);
    EXPECT_EQ(array.toString(), "{1|2|3}");
    EXPECT_EQ(copy.toString(), "{1|9|3}");
    const void* block = copy.elements();
    ASSERT_EQ(copy.setAt(2, UaVariant(OpcUa_Int32{8})), OpcUa_Good);
    EXPECT_EQ(copy.elements(), block) << "nobody else reads it, so it is changed in place";

    UaGenericStructureValue changed = structure;
    ASSERT_TRUE(changed.setField("SecondsTillShutdown", UaVariant(OpcUa_UInt32{5})).isGood());
    EXPECT_EQ(structure.value("SecondsTillShutdown").toUInt32(), 0u);
    EXPECT_EQ(changed.value("SecondsTillShutdown").toUInt32(), 5u);
}

TEST(Sharing, CopiesMayLiveInSeveralThreads)
{
    const UaVariant text("shared");
    const UaNodeId id("shared", 1);
    std::atomic<int> right{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([text, id, &right] {
            for (int k = 0; k < 1000; ++k) {
                UaVariant mine = text;
                UaNodeId own = id;
                own.setNamespaceIndex(2);
                right += mine.toString() == "shared" && own.identifierString() == "shared";
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(right, 4000);
}

TEST(Sharing, MovedFromValuesAreNull)
{
    UaVariant text("text");
    const UaVariant moved = std::move(text);
    EXPECT_TRUE(text.isNull()); // NOLINT(bugprone-use-after-move): the state is promised
    EXPECT_EQ(moved.toString(), "text");
    UaNodeId id("a", 1);
    UaNodeId target(3);
    target = std::move(id);
    EXPECT_TRUE(id.isNull()); // NOLINT(bugprone-use-after-move)
    EXPECT_EQ(target, UaNodeId("a", 1));
    target = *&target;
    EXPECT_EQ(target, UaNodeId("a", 1));
}
