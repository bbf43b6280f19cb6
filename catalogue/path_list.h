// A list of full paths that grows without limit and keeps each in as many code units as it has.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

namespace catalogue {

class PathList {
public:
    // Appends folder + "\" + name. False, and nothing changed, when memory is short or the path
    // does not fit a buffer of 260 code units.
    bool append(const char16_t* folder, const char16_t* name);

    // Puts the paths in ascending order: ordinal, case-sensitive, equal paths as they came.
    void sort();

    void clear();

    [[nodiscard]] std::int32_t count() const { return static_cast<std::int32_t>(count_); }

    // The path at `index`, zero-terminated, null when there is none.
    [[nodiscard]] const char16_t* at(std::int32_t index) const;

private:
    bool reserve(std::size_t units);

    std::unique_ptr<char16_t[]> text_;       // the paths, one behind the other
    std::unique_ptr<std::size_t[]> starts_;  // where each begins, in list order
    std::size_t textUsed_ = 0, textCapacity_ = 0;
    std::size_t count_ = 0, countCapacity_ = 0;
};

}  // namespace catalogue
