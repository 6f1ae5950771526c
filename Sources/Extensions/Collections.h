#pragma once

#include <concepts>
#include <iterator>
#include <memory>
#include <optional>
#include <ranges>
#include <type_traits>
#include <utility>

namespace RVCore {

namespace Collections {

template <class T>
concept Number = std::integral<T> && !std::same_as<T, bool> && !std::same_as<T, char> && !std::same_as<T, wchar_t> &&
                 !std::same_as<T, char8_t> && !std::same_as<T, char16_t> && !std::same_as<T, char32_t>;

// Whether elements of the collection can be pointed at for as long as the caller's collection lives.
template <class Collection>
concept Addressable =
    std::ranges::borrowed_range<Collection> && std::is_lvalue_reference_v<std::ranges::range_reference_t<Collection>>;

template <class Collection> auto absent()
{
    if constexpr (Addressable<Collection>)
        return static_cast<const std::remove_reference_t<std::ranges::range_reference_t<Collection>>*>(nullptr);
    else
        return std::optional<std::ranges::range_value_t<Collection>>();
}

template <class Collection, class Position> auto present(const Position& position)
{
    auto result = absent<Collection>();
    if constexpr (Addressable<Collection>)
        result = std::addressof(*position);
    else
        result.emplace(*position);
    return result;
}

} // namespace Collections

// The element at an index that may be none of the collection's: a pointer to the element, read-only, or null. A
// collection that has no elements to point at (a temporary, std::vector<bool>, a computed view) gives an optional
// copy instead. Either reads the same:
//     if (const auto title = safe(titles, row)) show(*title);
//
// Of a random-access collection, by position from 0, in constant time. Any integer type will do; negative numbers
// are no positions.
template <std::ranges::random_access_range Collection, Collections::Number Index>
    requires std::ranges::sized_range<Collection>
auto safe(Collection&& collection, Index index)
{
    if (index < 0 || std::cmp_greater_equal(index, std::ranges::size(collection)))
        return Collections::absent<Collection>();
    using Distance = std::ranges::range_difference_t<Collection>;
    return Collections::present<Collection>(std::ranges::begin(collection) + static_cast<Distance>(index));
}

// Of any collection, by iterator: an index is valid when it equals one of the collection's positions, so the end is
// not. Walks the positions. The iterator must be comparable with the collection's own, as the language demands: not
// one that an erased element has left invalid.
template <std::ranges::forward_range Collection, class Index>
    requires(!std::integral<Index> &&
             std::equality_comparable_with<const Index&, std::ranges::iterator_t<Collection>>)
auto safe(Collection&& collection, const Index& index)
{
    const auto end = std::ranges::end(collection);
    for (auto position = std::ranges::begin(collection); position != end; ++position) {
        if (position == index)
            return Collections::present<Collection>(position);
    }
    return Collections::absent<Collection>();
}

} // namespace RVCore
