#include "probing.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <cstring>

#include "platform/text.h"
#include "probe/record/diagnostics.h"
#include "probe/record/field_list.h"

namespace probe_test {
namespace {

std::string* caught = nullptr;

void catchLine(const char* line) {
    constexpr std::size_t kEnough = 1 << 16;  // a hostile file may cause millions of lines
    if (caught->size() < kEnough) {
        *caught += line;
    }
}

void appendValue(std::string& out, std::uint32_t value) {
    char text[40];
    std::snprintf(text, sizeof text, "%" PRIu32 " (0x%" PRIX32 ")", value, value);
    out += text;
}
void appendValue(std::string& out, std::int32_t value) {
    out += std::to_string(value);
}
void appendValue(std::string& out, std::u16string_view value) {
    out += '"' + platform::toUtf8(value) + '"';
}

}  // namespace

bool TestFile::size(std::uint64_t& bytes) {
    bytes = claimedSize ? claimedSize : bytes_.size();
    return !sizeFails;
}

bool TestFile::readAt(std::uint64_t offset, std::span<std::uint8_t> buffer, std::size_t& read) {
    read = 0;
    bytesAsked += buffer.size();
    constexpr std::size_t kSector = 512;
    cost += kSector;
    const bool isBad = offset < badTo && offset + buffer.size() > badFrom;
    if (++reads == failAtRead || isBad) {
        return false;
    }
    if (offset < bytes_.size()) {
        read = std::min(
            {buffer.size(), bytes_.size() - static_cast<std::size_t>(offset), longestRead});
        std::memcpy(buffer.data(), bytes_.data() + offset, read);
    }
    bytesRead += read;
    cost += read - std::min(read, kSector);
    return true;
}

Outcome probeFile(TestFile& file) {
    Outcome outcome;
    outcome.info = std::make_unique<probe::MediaInfo>();
    caught = &outcome.lines;
    const probe::DiagnosticSink before = probe::setDiagnosticSink(catchLine);
    outcome.claimed = outcome.info->Probe(file);
    probe::setDiagnosticSink(before);
    caught = nullptr;
    outcome.reads = file.reads;
    outcome.bytesRead = file.bytesRead;
    outcome.cost = file.cost;
    return outcome;
}

Outcome probeBytes(const Bytes& bytes) {
    TestFile file(bytes);
    return probeFile(file);
}

Outcome probeWithBad(const Bytes& bytes, std::uint64_t bad, std::uint64_t count) {
    TestFile file(bytes);
    file.badFrom = bad;
    file.badTo = bad + count;
    return probeFile(file);
}

std::string dump(const Outcome& outcome) {
    char head[64];
    std::snprintf(head, sizeof head, "claimed %d\nstatus 0x%08" PRIX32 "\n", outcome.claimed,
                  static_cast<std::uint32_t>(outcome.info->status));
    std::string out = head;
    probe::visitFields(*outcome.info, [&out](const char* name, auto value) {
        out += name;
        out += ' ';
        appendValue(out, value);
        out += '\n';
    });
    std::string line;
    for (const char c : outcome.lines) {
        line += c == '\r'   ? std::string("\\r")
                : c == '\n' ? std::string("\\n\n")
                            : std::string(1, c);
    }
    return out + "lines:\n" + line;
}

}  // namespace probe_test
