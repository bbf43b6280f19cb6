#include "catalogue/path_list.h"

#include <algorithm>
#include <new>
#include <string_view>

#include "platform/folder.h"

namespace catalogue {
namespace {

// Makes room for `wanted` elements, doubling; false when memory is short.
template <typename Element>
bool grow(std::unique_ptr<Element[]>& elements, std::size_t used, std::size_t& capacity,
          std::size_t wanted) {
    if (wanted <= capacity) {
        return true;
    }
    const std::size_t larger = std::max(wanted, capacity * 2);
    std::unique_ptr<Element[]> moved(new (std::nothrow) Element[larger]);
    if (!moved) {
        return false;
    }
    std::copy_n(elements.get(), used, moved.get());
    elements = std::move(moved);
    capacity = larger;
    return true;
}

}  // namespace

bool PathList::reserve(std::size_t units) {
    constexpr std::size_t kFirstPaths = 64;
    return grow(text_, textUsed_, textCapacity_,
                std::max(textUsed_ + units, kFirstPaths * platform::kPathCapacity / 4)) &&
           grow(starts_, count_, countCapacity_, std::max(count_ + 1, kFirstPaths));
}

bool PathList::append(const char16_t* folder, const char16_t* name) {
    const std::u16string_view head(folder), tail(name);
    const std::size_t units = head.size() + 1 + tail.size() + 1;
    if (units > platform::kPathCapacity || !reserve(units)) {
        return false;
    }
    char16_t* out = text_.get() + textUsed_;
    starts_[count_++] = textUsed_;
    textUsed_ += units;
    out = std::copy(head.begin(), head.end(), out);
    *out++ = u'\\';
    out = std::copy(tail.begin(), tail.end(), out);
    *out = u'\0';
    return true;
}

void PathList::sort() {
    const char16_t* const text = text_.get();
    std::stable_sort(starts_.get(), starts_.get() + count_, [text](std::size_t a, std::size_t b) {
        return std::u16string_view(text + a) < std::u16string_view(text + b);
    });
}

void PathList::clear() {
    text_.reset();
    starts_.reset();
    textUsed_ = textCapacity_ = count_ = countCapacity_ = 0;
}

const char16_t* PathList::at(std::int32_t index) const {
    return index >= 0 && index < count() ? text_.get() + starts_[static_cast<std::size_t>(index)]
                                         : nullptr;
}

}  // namespace catalogue
