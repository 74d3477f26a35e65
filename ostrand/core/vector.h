#pragma once
// The framework's growable array. Unlike std::vector, an index outside 0 .. count - 1 is never
// undefined behaviour: it ends the program with a report that names the element type.

#include "ostrand/core/fatal.h"

#include <string_view>
#include <utility>
#include <vector>

namespace ost {

/// The element type's name as the compiler spells it, for messages ("int", "ost::String").
template <typename T> constexpr std::string_view TypeName()
{
    constexpr std::string_view pretty = __PRETTY_FUNCTION__;
    constexpr std::string_view key = "T = ";
    constexpr auto start = pretty.find(key) + key.size();
    constexpr auto end = pretty.find_first_of(";]", start);
    return pretty.substr(start, end - start);
}

template <typename T> class Vector
{
public:
    Vector() = default;
    Vector(std::initializer_list<T> items) : m_items(items) {}

    int Count() const { return static_cast<int>(m_items.size()); }
    bool IsEmpty() const { return m_items.empty(); }

    T& operator[](int index)
    {
        CheckIndex(index);
        return m_items[static_cast<std::size_t>(index)];
    }
    const T& operator[](int index) const
    {
        CheckIndex(index);
        return m_items[static_cast<std::size_t>(index)];
    }

    void Add(T item) { m_items.push_back(std::move(item)); }
    void Insert(int index, T item)
    {
        if (index != Count())
            CheckIndex(index);
        m_items.insert(m_items.begin() + index, std::move(item));
    }
    void RemoveAt(int index)
    {
        CheckIndex(index);
        m_items.erase(m_items.begin() + index);
    }
    void Clear() { m_items.clear(); }
    void Reserve(int count) { m_items.reserve(static_cast<std::size_t>(count)); }
    void Resize(int count) { m_items.resize(static_cast<std::size_t>(count)); }

    auto begin() { return m_items.begin(); }
    auto end() { return m_items.end(); }
    auto begin() const { return m_items.begin(); }
    auto end() const { return m_items.end(); }

    static constexpr std::string_view ElementTypeName() { return TypeName<T>(); }

private:
    void CheckIndex(int index) const
    {
        if (index < 0 || index >= Count()) {
            const std::string_view name = ElementTypeName();
            FatalError("Vector<%.*s>[%d]\r\nmax_index = %d", static_cast<int>(name.size()),
                       name.data(), index, Count() - 1);
        }
    }

    std::vector<T> m_items;
};

} // namespace ost
