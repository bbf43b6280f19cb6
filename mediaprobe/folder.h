// The names of one folder's entries, sorted by their bytes. All lie in one block: a folder may hold
// a million of them.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace mediaprobe {

enum class EntryKind : std::uint8_t { File, Folder, Missing };

class Folder {
public:
    void clear() {
        block_.clear();
        entries_.clear();
    }
    void add(EntryKind kind, std::string_view name) {
        entries_.push_back({block_.size(), name.size(), kind});
        block_ += name;
    }
    // After the last entry was added; until the next clear().
    void finish() {
        files_.clear();
        folders_.clear();
        for (const Entry& entry : entries_) {
            (entry.kind == EntryKind::Folder ? folders_ : files_)
                .push_back(std::string_view(block_).substr(entry.at, entry.length));
        }
        std::sort(files_.begin(), files_.end());
        std::sort(folders_.begin(), folders_.end());
    }

    const std::vector<std::string_view>& files() const { return files_; }
    // Links to folders are not among them.
    const std::vector<std::string_view>& folders() const { return folders_; }

private:
    struct Entry {
        std::size_t at;
        std::size_t length;
        EntryKind kind;
    };
    std::string block_;
    std::vector<Entry> entries_;
    std::vector<std::string_view> files_, folders_;
};

}  // namespace mediaprobe
