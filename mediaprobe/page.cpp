// The page for people.
#include <cinttypes>
#include <numeric>

#include "mediaprobe/codecs.h"
#include "mediaprobe/format_text.h"
#include "mediaprobe/names.h"
#include "mediaprobe/report.h"
#include "platform/text.h"
#include "probe/read/four_cc.h"

namespace mediaprobe {
namespace {

// Behind what the record holds by a rule of the player's own and would mislead others.
constexpr char kMark[] = "*";
constexpr char kFootnote[] = "  * by the player's rule; see THE PLAYER'S RULES in mediaprobe(1)\n";

constexpr char kBold[] = "\x1b[1m", kDim[] = "\x1b[2m", kRed[] = "\x1b[31m", kPlain[] = "\x1b[0m";

class Page {
public:
    Page(std::string& out, const Finding& finding, Style style)
        : out_(out), finding_(finding), record_(finding.record), style_(style) {}

    void write() {
        out_ += paint(kBold) + shown(finding_.path) + paint(kPlain) + '\n';
        writeFile();
        if (record_.videoFourCC != 0 || record_.videoWidth != 0) {
            writeVideo();
        }
        if (record_.audioFormatTag != 0) {
            writeAudio();
        }
        if (record_.imageWidth != 0 || record_.imageHeight != 0) {
            writePicture();
        }
        writeTags();
        writeFaults();
        if (marked_) {
            out_ += kFootnote;
        }
    }

private:
    std::string paint(const char* colour) const { return style_.colours ? colour : ""; }
    std::string shown(const std::string& text) const {
        return style_.escapes ? escaped(text) : text;
    }
    const char* mark() {
        marked_ = true;
        return kMark;
    }

    void line(const char* label, const std::string& text, const char* colour = "") {
        out_ += "  " + paint(kDim) + formatted("%-8s", label) + paint(kPlain) + ' ' +
                paint(colour) + text + paint(*colour != '\0' ? kPlain : "") + '\n';
    }

    void writeFile() {
        const char* const container = containerName(record_.containerType);
        std::string text = container ? container : "not recognised";
        if (!container && finding_.claimedBy) {
            text = formatted("%s (claimed by %s)",
                             finding_.seen.damage.empty() ? "not read" : "damaged",
                             finding_.claimedBy);
        }
        const std::uint64_t bytes = finding_.seen.fileBytes;
        text += ", " + grouped(bytes) + (bytes == 1 ? " byte" : " bytes");
        if (record_.durationSeconds != 0) {
            text += ", " + playTime(record_.durationSeconds);
            // A Windows Media file's play time counts the preroll.
            text += record_.containerType == probe::kContainerAsf ? mark() : "";
        }
        line("File", text);
    }

    // A top-down height is negative in a file and large in the record.
    std::string size(std::uint32_t width, std::uint32_t height) {
        const std::string text = formatted("%" PRIu32 " x %" PRIu32, width, height);
        return height > INT32_MAX ? text + mark() : text;
    }

    // PNG gives the bits of a channel, GIF those of the screen's colours, the others those of a
    // pixel.
    void writePicture() {
        const bool isOdd = record_.containerType == probe::kContainerPng ||
                           record_.containerType == probe::kContainerGif;
        const std::string text = size(record_.imageWidth, record_.imageHeight) +
                                 formatted(", %" PRIu32 " bits", record_.imageBitsPerPixel);
        line("Picture", isOdd ? text + mark() : text);
    }

    void writeVideo() {
        const Codec codec = videoCodec(record_, finding_.seen);
        std::string text = codec.name.empty() ? "no codec" : codec.name;
        if (!codec.recordAs.empty()) {
            text += ", for the player " + codec.recordAs + mark();
        } else if (const std::string letters = codeText(record_.videoFourCC);
                   record_.videoFourCC != probe::kUnknownVideo && letters != text) {
            text += " (" + letters + ')';
        }
        if (record_.videoWidth != 0 || record_.videoHeight != 0) {
            text += ", " + size(record_.videoWidth, record_.videoHeight);
        }
        if (record_.frameTimeMicroseconds != 0) {
            text += formatted(", %.3f frames/s", 1000000.0 / record_.frameTimeMicroseconds);
        }
        if (record_.videoBitRate != 0) {
            text += ", " + grouped(record_.videoBitRate) + " bit/s";
        }
        line("Video", text + pixelAspect());
    }

    std::string pixelAspect() {
        const std::uint32_t x = record_.pixelAspectX, y = record_.pixelAspectY;
        if (y == 0) {
            // AVI gives one term of the two, the vertical one, and gives it as the first.
            return x == 0 ? "" : formatted(", pixel aspect ?:%" PRIu32, x) + mark();
        }
        const std::uint32_t divisor = std::gcd(x, y);
        const std::string text = formatted(", pixel aspect %" PRIu32 ":%" PRIu32, x, y);
        return divisor > 1 ? text + mark() : text;
    }

    void writeAudio() {
        const Codec codec = audioCodec(record_, finding_.seen);
        std::string text = audioText(record_.audioFormatTag);
        if (!codec.recordAs.empty()) {
            text = codec.name + ", for the player " + text + mark();
        }
        text += ", " + grouped(record_.audioSampleRate) + " Hz";
        text += formatted(", %" PRIu32 " channel%s", record_.audioChannels,
                          record_.audioChannels == 1 ? "" : "s");
        if (record_.audioBitRate != 0) {
            text += ", " + grouped(record_.audioBitRate) + " bit/s";
        }
        line("Audio", text);
    }

    void writeTags() {
        const struct {
            const char* label;
            std::uint32_t present;
            const char16_t* text;
        } tags[] = {
            {"Title", record_.hasTitle, record_.title},
            {"Artist", record_.hasArtist, record_.artist},
            {"Album", record_.hasAlbum, record_.album},
            {"Track", record_.hasTrack, record_.track},
            {"Genre", record_.hasGenre, record_.genre},
            {"Composer", record_.hasComposer, record_.composer},
            {"Year", record_.hasYear, record_.year},
        };
        for (const auto& tag : tags) {
            if (tag.present != 0 && tag.text[0] != u'\0') {
                line(tag.label, shown(platform::toUtf8(tag.text)));
            }
        }
        if (record_.genreIndex >= 0) {
            line("Genre", formatted("number %" PRId32, record_.genreIndex));
        }
    }

    void writeFaults() {
        if (!finding_.seen.damage.empty()) {
            line("Damage", finding_.seen.damage, kRed);
        }
        if (!finding_.seen.note.empty()) {
            line("Note", finding_.seen.note);
        }
        if (record_.status != probe::kOk) {
            const char* const words = record_.status == probe::kNotParsed     ? "not parsed"
                                      : record_.status == probe::kOutOfMemory ? "out of memory"
                                                                              : "failed";
            line("Status", formatted("0x%08" PRIX32 " (%s)",
                                     static_cast<std::uint32_t>(record_.status), words));
        }
    }

    std::string& out_;
    const Finding& finding_;
    const probe::MediaRecord& record_;
    const Style style_;
    bool marked_ = false;
};

}  // namespace

void appendPage(std::string& out, const Finding& finding, Style style) {
    Page(out, finding, style).write();
}

}  // namespace mediaprobe
