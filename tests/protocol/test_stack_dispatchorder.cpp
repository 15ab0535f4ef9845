// The order in which a connection's threads tell what they have found out.
#include <stack/transport/dispatchorder.h>

#include <gtest/gtest.h>

#include <future>
#include <memory>
#include <mutex>
#include <new>
#include <thread>
#include <utility>
#include <vector>

using namespace opcua;

namespace {

// What the outcome's calls refer to: notices whether it goes before those who drain may go on.
class Held
{
public:
    Held(CheckedMutex& mutex, const DispatchOrder& order) : m_mutex(mutex), m_order(order) {}
    ~Held()
    {
        const std::lock_guard lock(m_mutex);
        EXPECT_TRUE(m_order.isDispatchingLocked());
    }
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;

private:
    CheckedMutex& m_mutex;
    const DispatchOrder& m_order;
};

struct Outcome
{
    int number = 0;
    std::shared_ptr<Held> held;
    [[nodiscard]] bool empty() const { return number == 0; }
};

class DispatchOrderTest : public testing::Test
{
protected:
    // Begins to tell number, and returns when its ticket is drawn.
    std::thread dispatching(int number)
    {
        std::promise<void> locked;
        auto isLocked = locked.get_future();
        std::thread thread([this, number, locked = std::move(locked)]() mutable {
            std::unique_lock lock(m_mutex);
            locked.set_value();
            m_order.dispatch(lock, Outcome{number, std::make_shared<Held>(m_mutex, m_order)},
                             [this](const Outcome& outcome) { tell(outcome); });
            EXPECT_FALSE(lock.owns_lock());
        });
        isLocked.wait();
        const std::lock_guard lock(m_mutex); // which the thread gives away with its ticket drawn
        EXPECT_TRUE(m_order.isDispatchingLocked());
        return thread;
    }
    void tell(const Outcome& outcome)
    {
        if (outcome.number == 1)
            m_goOn.get_future().wait();
        const std::lock_guard lock(m_mutex); // free, or nobody would get further than this
        m_told.push_back(outcome.number);
    }
    std::vector<int> told()
    {
        const std::lock_guard lock(m_mutex);
        return m_told;
    }

    CheckedMutex m_mutex;
    DispatchOrder m_order{m_mutex};
    std::promise<void> m_goOn; // for the first outcome
    std::vector<int> m_told;
};

TEST_F(DispatchOrderTest, LaterOutcomesWaitForTheirTurnAndWhoeverDrainsForAll)
{
    std::vector<std::thread> threads;
    for (const int number : {1, 2, 3, 4})
        threads.push_back(dispatching(number));
    std::promise<void> locked;
    auto drained = std::async(std::launch::async, [&] {
        std::unique_lock lock(m_mutex);
        locked.set_value();
        m_order.drainLocked(lock);
        return m_told;
    });
    locked.get_future().wait();
    EXPECT_EQ(told(), std::vector<int>());
    m_goOn.set_value();
    EXPECT_EQ(drained.get(), (std::vector<int>{1, 2, 3, 4}));
    for (std::thread& thread : threads)
        thread.join();
}

TEST_F(DispatchOrderTest, OneThatCannotBeToldHoldsNobodyUp)
{
    std::unique_lock lock(m_mutex);
    m_order.dispatch(lock, Outcome{2, nullptr}, [](const Outcome&) { throw std::bad_alloc(); });
    ASSERT_FALSE(lock.owns_lock());
    lock.lock();
    EXPECT_FALSE(m_order.isDispatchingLocked());
    m_order.dispatch(lock, Outcome{3, nullptr}, [this](const Outcome& outcome) { tell(outcome); });
    EXPECT_EQ(told(), std::vector<int>{3});
}

TEST_F(DispatchOrderTest, NothingToTellWaitsForNobody)
{
    std::thread first = dispatching(1);
    std::unique_lock lock(m_mutex);
    m_order.dispatch(lock, Outcome{}, [](const Outcome&) { ADD_FAILURE() << "nothing is told"; });
    EXPECT_FALSE(lock.owns_lock());
    EXPECT_EQ(told(), std::vector<int>());
    m_goOn.set_value();
    first.join();
    EXPECT_EQ(told(), std::vector<int>{1});
}

} // namespace
