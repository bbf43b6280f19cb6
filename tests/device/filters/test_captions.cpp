// Subtitle files of the four types through parser and renderer: what is announced when, what stands
// on the picture, and which files cannot be rendered.
#include <gtest/gtest.h>

#include <cstring>

#include "tests/device/filters/player_window.h"

namespace test {
namespace {

constexpr long kCaptionEvent = 0x8FFF;
constexpr COLORREF kPicture = RGB(0xC0, 0x40, 0x80);

// Writes a file beside the recordings; removed at the end of the scope.
class TextFile {
public:
    TextFile(const wchar_t* name, const char* text, std::size_t size) : path_(clip(name)) {
        const HANDLE file = CreateFileW(path_.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                        FILE_ATTRIBUTE_NORMAL, nullptr);
        DWORD written = 0;
        WriteFile(file, text, static_cast<DWORD>(size), &written, nullptr);
        CloseHandle(file);
    }
    TextFile(const wchar_t* name, const char* text) : TextFile(name, text, std::strlen(text)) {}
    ~TextFile() { DeleteFileW(path_.c_str()); }
    TextFile(const TextFile&) = delete;
    const std::wstring& path() const { return path_; }

private:
    std::wstring path_;
};

struct Case {
    const char* name;
    const wchar_t* file;
    DWORD type;
    const char* text;
};

// The same two captions everywhere: "first" from 0.4 to 0.9 s, "둘째" from 1.2 to 2.0 s.
const Case kCases[] = {
    {"sami", L"captions.smi", 0,
     "<SAMI><HEAD><STYLE TYPE=\"text/css\"><!-- .KRCC {Name:Korean;} --></STYLE></HEAD><BODY>\n"
     "<SYNC Start=400><P Class=KRCC>first\n<SYNC Start=900><P Class=KRCC>&nbsp;\n"
     "<SYNC Start=1200><P Class=KRCC><b>둘째</b>\n<SYNC Start=1200><P Class=ENCC>second\n"
     "<SYNC Start=2000><P Class=KRCC>&nbsp;\n</BODY></SAMI>\n"},
    {"subrip", L"captions.srt", 1,
     "1\r\n00:00:00,400 --> 00:00:00,900\r\n<i>first</i>\r\n\r\n"
     "2\r\n00:00:01,200 --> 00:00:02,000\r\n둘째\r\n\r\n"},
    {"microdvd", L"captions.sub", 2, "{1}{1}10.000\n{4}{9}first\n{12}{20}{y:b}둘째\n"},
    {"subviewer", L"captions.sub", 2,
     "[INFORMATION]\n00:00:00.40,00:00:00.90\nfirst\n\n00:00:01.20,00:00:02.00\n둘째\n"},
    {"ssa", L"captions.ssa", 3,
     "[Script Info]\nScriptType: v4.00\n[Events]\n"
     "Format: Marked, Start, End, Style, Name, MarginL, MarginR, MarginV, Effect, Text\n"
     "Dialogue: Marked=0,0:00:00.40,0:00:00.90,*,,0,0,0,,first\n"
     "Dialogue: Marked=0,0:00:01.20,0:00:02.00,*,,0,0,0,,{\\b1}둘째\n"},
};

class Captions : public testing::TestWithParam<Case> {};

TEST_P(Captions, AreAnnouncedAtTheirTime) {
    PlayerWindow player;
    Graph graph(player);
    const TextFile file(GetParam().file, GetParam().text);
    ASSERT_EQ(graph.render(clip(L"wide.mp4")), S_OK);
    ASSERT_EQ(graph.addCaptions(file.path(), GetParam().type), S_OK);
    graph.setUp();
    ASSERT_TRUE(graph.run());
    double firstShown = -1;
    EXPECT_TRUE(player.wait(4000, [&] {
        if (firstShown < 0 && player.countEvents(kCaptionEvent) == 1) {
            firstShown = graph.position();
        }
        return player.countEvents(kCaptionEvent) == 2;
    }));
    // How much later depends on the machine.
    EXPECT_GE(firstShown, 0.3);
    EXPECT_GE(graph.position(), 1.1);
    std::vector<PlayerWindow::Event> captions;
    for (const PlayerWindow::Event& event : player.events) {
        if (event.code == kCaptionEvent) {
            captions.push_back(event);
        }
    }
    ASSERT_EQ(captions.size(), 2u);
    EXPECT_EQ(captions[0].first, 400);
    EXPECT_EQ(captions[0].second, 900);
    EXPECT_EQ(captions[1].first, 1200);
    EXPECT_EQ(captions[1].second, 2000);
    EXPECT_EQ(graph.tearDown(), 0u);
}

INSTANTIATE_TEST_SUITE_P(Types, Captions, testing::ValuesIn(kCases),
                         [](const auto& row) { return row.param.name; });

// Pixels of the picture's lower part that are white (letters) and that are black (their outline).
struct Letters {
    int white = 0, black = 0;
};
Letters countLetters() {
    Letters letters;
    const HDC screen = GetDC(nullptr);
    const HDC memory = CreateCompatibleDC(screen);
    const HBITMAP bitmap = CreateCompatibleBitmap(screen, 800, 120);
    const HGDIOBJ before = SelectObject(memory, bitmap);
    BitBlt(memory, 0, 0, 800, 120, screen, 0, 180, SRCCOPY);
    for (int y = 0; y < 120; ++y) {
        for (int x = 0; x < 800; ++x) {
            const COLORREF colour = GetPixel(memory, x, y);
            letters.white += colour == RGB(255, 255, 255);
            letters.black += alike(colour, 0, 8);
        }
    }
    SelectObject(memory, before);
    DeleteObject(bitmap);
    DeleteDC(memory);
    ReleaseDC(nullptr, screen);
    return letters;
}

TEST(CaptionPicture, StandsOverTheLowerPartWhileItsTimeLasts) {
    PlayerWindow player;
    Graph graph(player);
    // Korean in code page 949, "한글 자막", as most SAMI files are.
    const char text[] =
        "<SAMI><BODY><SYNC Start=600><P Class=KRCC>\xC7\xD1\xB1\xDB \xC0\xDA\xB8\xB7"
        "<SYNC Start=1500><P Class=KRCC>&nbsp;</BODY></SAMI>";
    const TextFile file(L"korean.smi", text);
    ASSERT_EQ(graph.render(clip(L"wide.mp4")), S_OK);
    ASSERT_EQ(graph.addCaptions(file.path(), 0), S_OK);
    graph.setUp({0, 0, 800, 300});
    ASSERT_TRUE(graph.run());
    ASSERT_TRUE(player.wait(2000, [] { return alike(screenPixel(400, 50), kPicture); }));
    EXPECT_EQ(countLetters().white, 0);
    ASSERT_TRUE(player.wait(3000, [&] { return player.countEvents(kCaptionEvent) == 1; }));
    player.wait(200);
    const Letters letters = countLetters();
    EXPECT_GT(letters.white, 200);
    EXPECT_GT(letters.black, 200);
    EXPECT_TRUE(player.wait(2500, [&] { return graph.position() > 1.7; }));
    EXPECT_EQ(countLetters().white, 0);
    EXPECT_EQ(countLetters().black, 0);
}

TEST(CaptionPicture, FollowsTheStyle) {
    PlayerWindow player;
    Graph graph(player);
    const TextFile file(L"style.srt", "1\n00:00:00,100 --> 00:00:03,900\nstyle\n\n");
    ASSERT_EQ(graph.render(clip(L"wide.mp4")), S_OK);
    ASSERT_EQ(graph.addCaptions(file.path(), 1), S_OK);
    graph.setUp({0, 0, 800, 300});
    const auto style =
        graph.vendorInterface<vendor::CaptionRendererStyle>(vendor::kCaptionRendererStyle);
    ASSERT_TRUE(style);
    ASSERT_TRUE(graph.run());
    ASSERT_TRUE(player.wait(2000, [] { return countLetters().white > 50; }));
    const vendor::CaptionStyle blue = {60, 700, RGB(0, 0, 255), RGB(0, 0, 0), 0, 20, 1};
    style->setStyle(L"arial", &blue, 1);
    EXPECT_TRUE(player.wait(1500, [] { return countLetters().white == 0; }));
    EXPECT_EQ(countLetters().black, 0) << "no outline";
    style->setStyle(nullptr, nullptr, 0);
    player.wait(300);
    EXPECT_TRUE(alike(screenPixel(400, 250), kPicture));
}

TEST(CaptionFiles, BrokenOnesCannotBeRendered) {
    PlayerWindow player;
    const char zeros[64] = {};
    const struct {
        DWORD type;
        const char* text;
        std::size_t size;
    } kBroken[] = {
        {0, "<SAMI><BODY></BODY></SAMI>", 26},
        {0, "<SYNC Start=", 12},
        {1, "1\n00:00:01 --> nonsense\ntext\n", 29},
        {1, "", 0},
        {2, "{12}{x}text\n", 12},
        {2, zeros, sizeof zeros},
        {3, "Dialogue: 0,0:00:01.00\n", 23},
        {3, "[Events]\nDialogue: a,b,c\n", 25},
    };
    for (const auto& broken : kBroken) {
        Graph graph(player);
        const TextFile file(L"broken.txt", broken.text, broken.size);
        ASSERT_EQ(graph.render(clip(L"wide.mp4")), S_OK);
        EXPECT_TRUE(FAILED(graph.addCaptions(file.path(), broken.type))) << broken.text;
        EXPECT_EQ(graph.tearDown(), 0u);
    }
}

}  // namespace
}  // namespace test
