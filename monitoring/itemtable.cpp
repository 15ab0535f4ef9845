#include <monitoring/itemtable_p.h>

#include <utility>

namespace monitoring {

Item* ItemTable::add(ItemId& id)
{
    auto place = static_cast<OpcUa_UInt32>(m_list.size());
    if (!m_free.empty()) {
        place = m_free.back();
        m_free.pop_back();
    } else if (place == placeMask) {
        return nullptr;
    } else {
        m_list.add();
    }
    Item& item = m_list[place];
    item.phase = Phase::Waiting;
    id = idOf(place, item);
    return &item;
}

void ItemTable::remove(ItemId id)
{
    Item* const item = find(id);
    if (item == nullptr)
        return;
    constexpr unsigned int lastGeneration = (1u << (32u - placeBits)) - 1u;
    const auto next = static_cast<unsigned short>((item->generation + 1u) & lastGeneration);
    *item = Item();
    item->generation = next;
    m_free.push_back((id & placeMask) - 1u);
}

} // namespace monitoring
