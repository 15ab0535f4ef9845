// Implicit sharing: the one mechanism by which value classes copy cheaply.
#pragma once

#include <uabase/values/uaelement.h>

#include <atomic>
#include <new>
#include <utility>

/// Counted pointer to a value that is copied when it is changed while shared. Null until made or edited.
/// Copies may be used from several threads; one object may not.
template <typename T>
class UaSharedPtr
{
public:
    UaSharedPtr() noexcept = default;
    UaSharedPtr(const UaSharedPtr& other) noexcept : m_box(other.m_box)
    {
        if (m_box)
            m_box->references.fetch_add(1, std::memory_order_relaxed);
    }
    UaSharedPtr(UaSharedPtr&& other) noexcept : m_box(std::exchange(other.m_box, nullptr)) {}
    UaSharedPtr& operator=(UaSharedPtr other) noexcept
    {
        std::swap(m_box, other.m_box);
        return *this;
    }
    ~UaSharedPtr() { reset(); }

    /// Null when out of memory.
    template <typename... Arguments>
    [[nodiscard]] static UaSharedPtr make(Arguments&&... arguments)
    {
        UaSharedPtr pointer;
        pointer.m_box = new (std::nothrow) Box(std::forward<Arguments>(arguments)...);
        return pointer;
    }

    const T* get() const noexcept { return m_box ? &m_box->value : nullptr; }
    const T* operator->() const noexcept { return &m_box->value; }
    const T& operator*() const noexcept { return m_box->value; }
    explicit operator bool() const noexcept { return m_box != nullptr; }
    bool isShared() const noexcept { return m_box && m_box->references.load(std::memory_order_acquire) > 1; }

    /// The value for changing: made when null, copied when shared.
    T& edit()
    {
        if (!m_box)
            m_box = new Box();
        else if (isShared())
            *this = UaSharedPtr(new Box(m_box->value));
        return m_box->value;
    }
    /// The value for changing when nobody else holds it, else null.
    T* unique() noexcept { return m_box && !isShared() ? &m_box->value : nullptr; }

    void reset() noexcept
    {
        if (Box* box = std::exchange(m_box, nullptr); box)
            if (box->references.fetch_sub(1, std::memory_order_acq_rel) == 1)
                delete box;
    }

private:
    struct Box
    {
        template <typename... Arguments>
        explicit Box(Arguments&&... arguments) : value(std::forward<Arguments>(arguments)...)
        {
        }
        std::atomic<unsigned> references{1};
        T value;
    };
    explicit UaSharedPtr(Box* box) noexcept : m_box(box) {}
    Box* m_box = nullptr;
};

/// Whether a structure of the stack owns memory; one that does not is copied without allocation.
[[nodiscard]] bool uaHoldsMemory(const OpcUa_String& value) noexcept;
[[nodiscard]] bool uaHoldsMemory(const OpcUa_ByteString& value) noexcept;
[[nodiscard]] bool uaHoldsMemory(const OpcUa_NodeId& value) noexcept;
[[nodiscard]] bool uaHoldsBlocks(const OpcUa_Variant& value) noexcept; ///< one that is no plain number
[[nodiscard]] inline bool uaHoldsMemory(const OpcUa_Variant& value) noexcept
{
    const bool isNumber =
        value.ArrayType == OpcUa_VariantArrayType_Scalar && value.Datatype < OpcUaType_String;
    return !isNumber && uaHoldsBlocks(value);
}
[[nodiscard]] bool uaHoldsMemory(const OpcUa_ExtensionObject& value) noexcept;
[[nodiscard]] bool uaHoldsMemory(const OpcUa_DiagnosticInfo& value) noexcept;

/// Marks a value that owns no memory, so that none of it has to be looked for.
struct UaPlain
{
};

/// A structure C of the stack as a shared value: the structure itself lies inside, what it points to is
/// shared.
template <typename C>
class UaSharedValue
{
public:
    UaSharedValue() noexcept { UaElement<C>::initialize(&m_view, 1); }
    UaSharedValue(UaPlain, const C& value) noexcept : m_view(value) {}
    /// Deep copy of a foreign structure; the null value when out of memory.
    explicit UaSharedValue(const C& source) noexcept
    {
        C copy;
        static_cast<void>(UaElement<C>::copy(&source, &copy, 1)); // a failure leaves the null value
        UaElement<C>::initialize(&m_view, 1);
        attach(&copy);
    }
    UaSharedValue(const UaSharedValue&) noexcept = default;
    UaSharedValue& operator=(const UaSharedValue&) noexcept = default;
    UaSharedValue(UaSharedValue&& other) noexcept : m_view(other.m_view), m_owner(std::move(other.m_owner))
    {
        UaElement<C>::initialize(&other.m_view, 1);
    }
    UaSharedValue& operator=(UaSharedValue&& other) noexcept
    {
        if (this != &other) {
            m_view = other.m_view;
            m_owner = std::move(other.m_owner);
            UaElement<C>::initialize(&other.m_view, 1);
        }
        return *this;
    }
    ~UaSharedValue() = default;

    /// Valid until this object changes; never to be cleared.
    const C* get() const noexcept { return &m_view; }
    const C* operator->() const noexcept { return &m_view; }

    void clear() noexcept
    {
        m_owner.reset();
        UaElement<C>::initialize(&m_view, 1);
    }
    /// Takes over what value owns and leaves it initialised.
    void attach(C* value) noexcept
    {
        const C taken = *value;
        UaElement<C>::initialize(value, 1);
        m_owner.reset();
        m_view = taken;
        if (!uaHoldsMemory(taken))
            return;
        C handed = taken;
        m_owner = UaSharedPtr<Owned>::make(handed);
        if (m_owner)
            return;
        UaElement<C>::initialize(&m_view, 1);
        UaElement<C>::clear(&handed, 1);
    }
    /// Hands the value over (destination is raw memory) and becomes null; copies only when shared.
    /// BadOutOfMemory leaves the null value in destination.
    [[nodiscard]] OpcUa_StatusCode detach(C* destination) noexcept
    {
        OpcUa_StatusCode status = 0;
        if (Owned* owned = m_owner.unique(); owned) {
            *destination = owned->value;
            UaElement<C>::initialize(&owned->value, 1);
        } else {
            status = copyTo(destination);
        }
        clear();
        return status;
    }
    /// Deep copy; destination is raw memory, and holds the null value after BadOutOfMemory.
    [[nodiscard]] OpcUa_StatusCode copyTo(C* destination) const noexcept
    {
        return UaElement<C>::copy(&m_view, destination, 1);
    }

private:
    struct Owned
    {
        explicit Owned(const C& taken) noexcept : value(taken) {}
        Owned(const Owned&) = delete;
        Owned& operator=(const Owned&) = delete;
        ~Owned() { UaElement<C>::clear(&value, 1); }
        C value;
    };
    C m_view;
    UaSharedPtr<Owned> m_owner;
};
