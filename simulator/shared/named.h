// Tables whose rows begin with a name. Portable.
#pragma once

#include <algorithm>
#include <iterator>
#include <string_view>

namespace headunit {

// The first row of that name; null when there is none.
template <class Table>
constexpr auto findNamed(const Table& table, std::string_view name)
    -> decltype(&*std::begin(table)) {
    const auto found = std::find_if(std::begin(table), std::end(table),
                                    [name](const auto& row) { return name == row.name; });
    return found == std::end(table) ? nullptr : &*found;
}

}  // namespace headunit
