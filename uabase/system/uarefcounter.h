#pragma once

#include <atomic>
#include <utility>

/// Base of objects that several owners share: born with one reference, deleted when the last one is released.
/// The counter is safe for all threads; the object itself is as safe as its class makes it.
class UaRefCounter
{
public:
    UaRefCounter(const UaRefCounter&) = delete;
    UaRefCounter& operator=(const UaRefCounter&) = delete;

    void addReference() const { m_references.fetch_add(1, std::memory_order_relaxed); }
    /// The references that are left; at 0 the object is gone.
    int releaseReference() const
    {
        const int left = m_references.fetch_sub(1, std::memory_order_acq_rel) - 1;
        if (left == 0)
            delete this;
        return left;
    }
    /// For tests and traces only: another thread may change it at once.
    [[nodiscard]] int referenceCount() const { return m_references.load(std::memory_order_relaxed); }

protected:
    UaRefCounter() = default;
    virtual ~UaRefCounter() = default;

private:
    mutable std::atomic<int> m_references{1};
};

/// Holds one reference to a UaRefCounter for its own life.
template <typename T>
class UaRefPtr
{
public:
    UaRefPtr() = default;
    /// Takes over the reference that the caller holds (that of a new object, say).
    static UaRefPtr adopt(T* object) { return UaRefPtr(object); }
    /// Adds a reference of its own.
    static UaRefPtr share(T* object)
    {
        if (object != nullptr)
            object->addReference();
        return UaRefPtr(object);
    }
    UaRefPtr(const UaRefPtr& other) : UaRefPtr(share(other.m_object)) {}
    UaRefPtr(UaRefPtr&& other) noexcept : m_object(std::exchange(other.m_object, nullptr)) {}
    UaRefPtr& operator=(UaRefPtr other) noexcept
    {
        std::swap(m_object, other.m_object);
        return *this;
    }
    ~UaRefPtr()
    {
        if (m_object != nullptr)
            m_object->releaseReference();
    }

    [[nodiscard]] T* get() const { return m_object; }
    T* operator->() const { return m_object; }
    T& operator*() const { return *m_object; }
    explicit operator bool() const { return m_object != nullptr; }

private:
    explicit UaRefPtr(T* object) : m_object(object) {}
    T* m_object = nullptr;
};
