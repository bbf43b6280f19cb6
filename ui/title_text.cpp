#include "ui/title_text.h"

#include <algorithm>
#include <string_view>

namespace ui {
namespace {

void setTitle(TitleText& title, std::u16string_view mark, std::u16string_view rest) {
    char16_t* const end = std::ranges::copy(rest, std::ranges::copy(mark, title).out).out;
    *end = u'\0';
}

}  // namespace

void fitTitle(Canvas& canvas, Font font, const char16_t* path, std::int32_t width,
              TitleText& title) {
    std::u16string_view rest = std::u16string_view(path).substr(0, platform::kPathCapacity - 1);
    setTitle(title, u"", rest);
    if (rest.starts_with(u'\\')) {
        rest.remove_prefix(1);
    }
    while (canvas.textWidth(title, font) > width && !rest.empty()) {
        const std::size_t component = rest.find(u'\\');
        rest.remove_prefix(component == std::u16string_view::npos ? rest.size() : component + 1);
        setTitle(title, u"\\...\\", rest);
    }
}

}  // namespace ui
