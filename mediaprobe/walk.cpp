#include "mediaprobe/walk.h"

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "mediaprobe/host.h"

namespace mediaprobe {
namespace {

constexpr char kUnreadableList[] = " cannot be read; a list of names is wanted, one a line";

// Every file below the folder; folders that wait are kept in a list, so depth costs no stack.
void walkFolder(const std::string& top, Crew& crew) {
    bool empty = true, whole = true;
    std::vector<std::string> waiting = {top};
    Folder folder;
    while (!waiting.empty()) {
        std::string path = std::move(waiting.back());
        waiting.pop_back();
        if (!listFolder(path, folder)) {
            crew.say(path + " cannot be listed", kWrong);
            whole = false;
            continue;
        }
        path += endsWithSeparator(path) ? "" : "/";
        const std::size_t prefix = path.size();
        for (const std::string_view name : folder.files()) {
            empty = false;
            path.resize(prefix);
            crew.probe(path.append(name));
        }
        path.resize(prefix);
        for (std::size_t i = folder.folders().size(); i-- > 0;) {
            waiting.push_back(path + std::string(folder.folders()[i]));
        }
    }
    if (empty && whole) {
        crew.say(top + " holds no file", kAllGood);
    }
}

void walkPath(const std::string& path, const Options& options, Crew& crew) {
    if (options.recursive && kindOf(path) == EntryKind::Folder) {
        walkFolder(path, crew);
    } else {
        crew.probe(path);
    }
}

// A line that ended with CR LF is the name in front of both, unless there is only one with the CR:
// Linux allows it in names.
std::string nameOf(const std::string& line) {
    if (!line.ends_with('\r')) {
        return line;
    }
    const std::string name = line.substr(0, line.size() - 1);
    return kindOf(name) == EntryKind::Missing && kindOf(line) != EntryKind::Missing ? line : name;
}

// One list of names; `listName` is what it is called itself.
class NameList {
public:
    NameList(std::string listName, const Options& options, Crew& crew)
        : listName_(std::move(listName)), options_(options), crew_(crew) {}

    void walk(std::FILE* list) {
        std::vector<char> block(kBlock);
        long got = 0;
        while (!wrong_ && (got = readSome(list, block)) > 0) {
            for (long i = 0; i < got && !wrong_; ++i) {
                take(block[static_cast<std::size_t>(i)]);
            }
        }
        if (got < 0) {
            crew_.say(listName_ + kUnreadableList, kWrong);
            return;
        }
        // The last name may lack its end; without one, a CR is the name's own.
        if (!wrong_ && !name_.empty()) {
            hand(name_);
        }
        if (!wrong_ && empty_) {
            crew_.say(listName_ + " names no file", kAllGood);
        }
    }

private:
    static constexpr std::size_t kBlock = 65536;

    void take(char c) {
        if (c == (options_.nulTerminated ? '\0' : '\n')) {
            const std::string name = options_.nulTerminated ? name_ : nameOf(name_);
            name_.clear();
            ++line_;
            if (!name.empty()) {
                hand(name);
            }
        } else if (c == '\0') {
            wrong_ = true;
            crew_.say(listName_ + ": line " + std::to_string(line_) +
                          " holds a NUL; -0 takes names that end with one",
                      kWrong);
        } else {
            name_ += c;
        }
    }

    void hand(const std::string& name) {
        empty_ = false;
        walkPath(name, options_, crew_);
    }

    const std::string listName_;
    const Options& options_;
    Crew& crew_;
    std::string name_;
    std::size_t line_ = 1;
    bool empty_ = true;
    bool wrong_ = false;
};

void walkSource(const Source& source, const Options& options, Crew& crew) {
    if (source.kind == Source::Kind::Path) {
        walkPath(source.name, options, crew);
        return;
    }
    if (source.kind == Source::Kind::StandardInput) {
        NameList("standard input", options, crew).walk(stdin);
        return;
    }
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> list(std::fopen(source.name.c_str(), "rb"),
                                                         std::fclose);
    if (list) {
        NameList(source.name, options, crew).walk(list.get());
    } else {
        crew.say(source.name + kUnreadableList, kWrong);
    }
}

}  // namespace

void walkSources(const Options& options, Crew& crew) {
    for (const Source& source : options.sources) {
        walkSource(source, options, crew);
    }
}

}  // namespace mediaprobe
