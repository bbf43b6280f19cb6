// mediaprobe: the player's media probe as a command.
#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "mediaprobe/explain.h"
#include "mediaprobe/host.h"
#include "mediaprobe/options.h"
#include "mediaprobe/report.h"
#include "probe/record/diagnostics.h"

namespace mediaprobe {
namespace {

constexpr char kUnreadableList[] = " cannot be read; a list of names is wanted, one a line";

enum Exit { kAllGood = 0, kCleanNo = 1, kWrong = 2 };

void toStandardError(const char* line) {
    std::fputs(line, stderr);
}

// One line on standard error, behind what was printed so far.
void say(const std::string& what) {
    std::fflush(stdout);
    std::fprintf(stderr, "mediaprobe: %s\n", what.c_str());
}

int complain(const std::string& what) {
    say(what);
    return kWrong;
}

void print(const std::string& text) {
    std::fwrite(text.data(), 1, text.size(), stdout);
}

int probeFile(const std::string& path, const Options& options) {
    WatchedInfo info(options.explain ? Account::Written : Account::None);
    const probe::Result open = info.Open(openedName(path).c_str());
    if (options.json) {
        print(jsonLine(path, open, info));
    } else if (open == probe::kOk) {
        print(page(path, info, info.claimedBy()));
    }
    if (options.explain) {
        print((open == probe::kOk ? "" : path + '\n') + info.account() + playersView(open, info));
    }
    if (open != probe::kOk) {
        return complain(path + " cannot be opened: " + openError(open));
    }
    return info.containerType != probe::kContainerNone && info.status == probe::kOk ? kAllGood
                                                                                    : kCleanNo;
}

// Every file below the folder; folders that wait are kept in a list, so depth costs no stack.
int probeFolder(const std::string& top, const Options& options) {
    int worst = kAllGood;
    bool empty = true;
    std::vector<std::string> waiting = {top};
    while (!waiting.empty()) {
        const std::string path = waiting.back();
        waiting.pop_back();
        Folder folder;
        if (!listFolder(path, folder)) {
            worst = std::max(worst, complain(path + " cannot be listed"));
            continue;
        }
        for (const std::string& file : folder.files) {
            empty = false;
            worst = std::max(worst, probeFile(file, options));
        }
        waiting.insert(waiting.end(), folder.folders.rbegin(), folder.folders.rend());
    }
    if (empty && worst == kAllGood) {
        say(top + " holds no file");
    }
    return worst;
}

int probePath(const std::string& path, const Options& options) {
    if (options.recursive && kindOf(path) == EntryKind::Folder) {
        return probeFolder(path, options);
    }
    const int exit = probeFile(path, options);
    if (exit == kWrong && kindOf(path) == EntryKind::Folder) {
        return complain(path + " is a folder; -r looks into folders");
    }
    return exit;
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

// Every file that the list names, one name a line; `listName` is what it is called itself.
int probeList(std::FILE* list, const std::string& listName, const Options& options) {
    int worst = kAllGood;
    bool empty = true;
    std::string line;
    for (int c = 0; c != EOF;) {
        c = std::fgetc(list);
        if (c != EOF && c != '\n') {
            line += static_cast<char>(c);
            continue;
        }
        const std::string name = c == '\n' ? nameOf(line) : line;
        line.clear();
        if (!name.empty()) {
            empty = false;
            worst = std::max(worst, probePath(name, options));
        }
    }
    if (std::ferror(list) != 0) {
        return complain(listName + kUnreadableList);
    }
    if (empty) {
        say(listName + " names no file");
    }
    return worst;
}

int probeSource(const Source& source, const Options& options) {
    if (source.kind == Source::Kind::Path) {
        return probePath(source.name, options);
    }
    if (source.kind == Source::Kind::StandardInput) {
        return probeList(stdin, "standard input", options);
    }
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> list(std::fopen(source.name.c_str(), "rb"),
                                                         std::fclose);
    return list ? probeList(list.get(), source.name, options)
                : complain(source.name + kUnreadableList);
}

int run(const std::vector<std::string>& arguments) {
    Options options;
    if (const std::string wrong = parseOptions(arguments, options); !wrong.empty()) {
        return complain(wrong);
    }
    if (options.help || options.version) {
        print(options.help ? kHelp : "mediaprobe 1.0.0\n");
        return kAllGood;
    }
    int worst = kAllGood;
    for (const Source& source : options.sources) {
        worst = std::max(worst, probeSource(source, options));
    }
    if (std::fflush(stdout) != 0) {
        return complain("the output cannot be written");
    }
    return worst;
}

}  // namespace
}  // namespace mediaprobe

int main(int argc, char** argv) {
    mediaprobe::prepareOutput();
    probe::setDiagnosticSink(mediaprobe::toStandardError);
    return mediaprobe::run(mediaprobe::programArguments(argc, argv));
}
