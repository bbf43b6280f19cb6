// Does one thing of the player once, so that its instructions can be counted: costs probe FILE |
// list COUNT | paint | none. What is to be counted stands between enter and leave of `counted`.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "catalogue/folder_listing.h"
#include "platform/text.h"
#include "probe/media_info.h"
#include "ui/paint.h"

namespace {

int wanted = 0;  // entries

// A folder of recordings that costs nothing to read.
bool walk(const char16_t*, platform::EntryVisitor visitor, void* context) {
    char16_t name[] = u"20260314_000000_F.avi";
    for (int i = 0; i < wanted; ++i) {
        for (int digit = 14, rest = i; digit > 8; --digit, rest /= 10) {
            name[digit] = static_cast<char16_t>(u'0' + rest % 10);
        }
        visitor(context, name, platform::EntryKind::File);
    }
    return wanted > 0;
}

class Nothing final : public ui::Canvas {
public:
    bool covers(ui::Bitmap, const ui::Rect&) const override { return true; }
    void draw(ui::Bitmap, ui::Point) override {}
    void drawRegion(ui::Bitmap, const ui::Rect&) override {}
    void drawInto(ui::Bitmap, const ui::Rect&) override {}
    void drawTransparent(ui::Bitmap, ui::Point) override {}
    void drawTransparentInto(ui::Bitmap, const ui::Rect&) override {}
    void fill(const ui::Rect&, ui::Colour) override {}
    void text(const char16_t*, ui::Font, ui::Colour, const ui::Rect&, ui::TextPlace) override {}
    std::int32_t textWidth(const char16_t*, ui::Font) override { return 100; }
};

}  // namespace

extern "C" [[gnu::noinline]] std::int64_t counted(const char* what, const char16_t* path) {
    if (std::strcmp(what, "probe") == 0) {
        probe::MediaInfo info;
        return info.Open(path);
    }
    if (std::strcmp(what, "list") == 0) {
        catalogue::FolderListing listing;
        listing.OpenListing(u"\\SDMMCDisk\\Record", catalogue::Order::ByPath, walk);
        return listing.GetFileCount();
    }
    if (std::strcmp(what, "paint") == 0) {
        Nothing canvas;
        ui::PlayerView view;
        view.playing = true;
        view.displayedPosition = 30;
        view.duration = 40;
        view.fileName = u"20260314_081500_F.avi";
        ui::paintFullWidth(canvas, view, {0, 0, 800, 480});
    }
    return 0;
}

int main(int count, char** words) {
    if (count < 2) {
        std::fputs("usage: player_costs probe FILE | list COUNT | paint | none\n", stderr);
        return 2;
    }
    std::u16string path;
    if (count > 2) {
        path = platform::toUtf16(words[2]);
        wanted = std::atoi(words[2]);
    }
    std::printf("%lld\n", static_cast<long long>(counted(words[1], path.c_str())));
    return 0;
}
