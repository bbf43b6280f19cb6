// What names tell: whether they are recordings, which volume they lie on, which camera made them.
#include <gtest/gtest.h>

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/camera.h"
#include "catalogue/volumes.h"
#include "platform/text.h"

namespace {

using catalogue::PathBuffer;

TEST(Recordings, AreToldByTheirLastThreeCharacters) {
    struct Case {
        const char16_t* name;
        bool accepted;
    };
    const Case cases[] = {
        {u"a.avi", true},     {u"a.AVI", true},    {u"CLIP.Avi", false}, {u"clip.mpeg", true},
        {u"clip.rmvb", true}, {u"clip.rm", false}, {u"clip.RM", false},  {u"avi", true},
        {u"xavi", true},      {u"vi", false},      {u"", false},         {u"clip.flv", false},
        {u"clip.mp3", false}, {u"a.mov", true},    {u"a.K3G", true},     {u"a.3gp", true},
        {u"a.jpeg", true},    {u"a.avi ", false},  {u"a.wmv", true},     {u"a.OGM", true},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(catalogue::isRecording(c.name), c.accepted) << platform::toUtf8(c.name);
    }
}

template <std::size_t count>
std::vector<std::u16string> entriesOf(const std::array<const char16_t*, count>& table) {
    return {table.begin(), table.end()};
}

TEST(Recordings, TablesAreAsTheUnitHasThem) {
    using Texts = std::vector<std::u16string>;
    EXPECT_EQ(entriesOf(catalogue::VideoExtensions),
              (Texts{u"avi", u"mpg", u"peg", u"asf", u"mkv", u"ogm", u"mp4", u"wmv", u"3gp",
                     u"k3g", u"rm",  u"mvb", u"mov", u"AVI", u"MPG", u"PEG", u"ASF", u"MKV",
                     u"OGM", u"MP4", u"WMV", u"3GP", u"K3G", u"RM",  u"MVB", u"MOV"}));
    EXPECT_EQ(entriesOf(catalogue::AudioExtensions),
              (Texts{u"mp3", u"wav", u"wma", u"mid", u"ogg", u"m4a", u"acc", u"awb", u"MP3", u"WAV",
                     u"WMA", u"MID", u"OGG", u"M4A", u"ACC", u"AWB"}));
    EXPECT_EQ(entriesOf(catalogue::ImageExtensions),
              (Texts{u"bmp", u"jpg", u"peg", u"gif", u"png", u"ico", u"BMP", u"JPG", u"PEG", u"GIF",
                     u"PNG", u"ICO"}));
    EXPECT_EQ(entriesOf(catalogue::StorageVolumeNames),
              (Texts{u"SDMMCDisk", u"SDMMCDisk2", u"USB", u"USB2", u"USB3", u"USB4"}));
    EXPECT_EQ(catalogue::kFirstUsbVolume, 2);
    for (std::int32_t slot = 0; slot < 6; ++slot) {
        EXPECT_EQ(catalogue::volumeName(slot),
                  catalogue::StorageVolumeNames[static_cast<std::size_t>(slot)]);
    }
    EXPECT_EQ(catalogue::volumeName(6), nullptr);
    EXPECT_EQ(catalogue::volumeName(-1), nullptr);
}

// Every entry of three letters admits names; those of two never match.
TEST(Recordings, AreTakenByEveryEntryOfThreeLetters) {
    for (const char16_t* extension : catalogue::VideoExtensions) {
        const std::u16string name = std::u16string(u"clip.") + extension;
        const bool canMatch = std::u16string_view(extension).size() == 3;
        EXPECT_EQ(catalogue::isRecording(name.c_str()), canMatch) << platform::toUtf8(name);
    }
}

TEST(Volumes, FirstComponentDecides) {
    using catalogue::liesOnVolume;
    EXPECT_TRUE(liesOnVolume(u"\\USB\\a", u"USB"));
    EXPECT_TRUE(liesOnVolume(u"\\USB", u"USB"));
    EXPECT_TRUE(liesOnVolume(u"USB\\a", u"USB"));
    EXPECT_FALSE(liesOnVolume(u"\\USB2\\a", u"USB"));
    EXPECT_FALSE(liesOnVolume(u"", u"USB"));
    EXPECT_FALSE(liesOnVolume(u"\\usb\\a", u"USB"));
}

TEST(Camera, IsToldByTheNamesEnd) {
    EXPECT_EQ(catalogue::kFrontCamera, 0);
    EXPECT_EQ(catalogue::kRearCamera, 1);
    EXPECT_EQ(catalogue::kUnknownCamera, -1);
    struct Case {
        const char16_t* path;
        catalogue::Camera camera;
        const char16_t* sibling;
    };
    const Case cases[] = {
        {u"\\USB\\20261121_081500_F.avi", catalogue::kFrontCamera, u"\\USB\\20261121_081500_R.avi"},
        {u"\\USB\\20261121_081500_R.mp4", catalogue::kRearCamera, u"\\USB\\20261121_081500_F.mp4"},
        {u"\\USB\\x_f.avi", catalogue::kFrontCamera, u"\\USB\\x_r.avi"},
        {u"\\USB\\x_r.AVI", catalogue::kRearCamera, u"\\USB\\x_f.AVI"},
        {u"_F.avi", catalogue::kFrontCamera, u"_R.avi"},
        {&u"_F.avi"[1], catalogue::kUnknownCamera, u""},  // what stands before it does not count
        {u"\\USB\\x_F.2.avi", catalogue::kUnknownCamera, u""},
        {u"\\USB\\xR.avi", catalogue::kUnknownCamera, u""},
        {u"\\USB\\x_Q.avi", catalogue::kUnknownCamera, u""},
        {u"\\USB\\x_F", catalogue::kUnknownCamera, u""},
        {u".avi", catalogue::kUnknownCamera, u""},
        {u"", catalogue::kUnknownCamera, u""},
    };
    for (const Case& c : cases) {
        PathBuffer sibling = {u'x'};
        EXPECT_EQ(catalogue::cameraOf(c.path), c.camera) << platform::toUtf8(c.path);
        EXPECT_EQ(catalogue::siblingRecording(c.path, sibling), *c.sibling != 0 ? 1 : 0);
        EXPECT_EQ(std::u16string_view(sibling), c.sibling);
    }
    // What stands in front of a path is no part of it.
    constexpr char16_t kBehind[] = u"Fplain.avi";
    EXPECT_EQ(catalogue::cameraOf(kBehind + 1), catalogue::kUnknownCamera);
}

}  // namespace
