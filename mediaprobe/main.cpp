// mediaprobe: the player's media probe as a command.
#include <cstdio>
#include <cstdlib>
#include <string>

#include "mediaprobe/crew.h"
#include "mediaprobe/host.h"
#include "mediaprobe/options.h"
#include "mediaprobe/walk.h"

namespace mediaprobe {
namespace {

// The lines of some eighty files; with stdio's 4 KiB the writes are a twentieth of all time.
constexpr std::size_t kOutputBuffer = 65536;

int complain(const std::string& what) {
    std::fprintf(stderr, "mediaprobe: %s\n", what.c_str());
    return kWrong;
}

// https://no-color.org: set and not empty.
bool wantsColours(const Options& options, bool onTerminal) {
    // NOLINTNEXTLINE(concurrency-mt-unsafe): there is no other thread yet.
    const char* const without = std::getenv("NO_COLOR");
    const bool refused = without && *without != '\0';
    return options.colour == "always" || (options.colour == "auto" && onTerminal && !refused);
}

int run(std::vector<std::string> arguments) {
    Options options;
    if (const std::string wrong = parseOptions(std::move(arguments), options); !wrong.empty()) {
        return complain(wrong);
    }
    int exit = kAllGood;
    if (!options.told.empty()) {
        std::fputs(options.told.c_str(), stdout);
    } else {
        const bool outIsTerminal = isTerminal(stdout), errorIsTerminal = isTerminal(stderr);
        if (!outIsTerminal) {
            static char buffer[kOutputBuffer];
            static_cast<void>(std::setvbuf(stdout, buffer, _IOFBF, sizeof buffer));
        }
        const Manner manner{options.json,
                            options.explain,
                            {outIsTerminal, wantsColours(options, outIsTerminal)},
                            errorIsTerminal};
        // Where pages scroll by, a progress line would be in their way.
        Crew crew(manner, options.jobs == 0 ? coreCount() : options.jobs,
                  errorIsTerminal && !outIsTerminal);
        walkSources(options, crew);
        exit = crew.finish();
    }
    return std::fflush(stdout) == 0 ? exit : complain("the output cannot be written");
}

}  // namespace
}  // namespace mediaprobe

int main(int argc, char** argv) {
    mediaprobe::prepareConsole();
    return mediaprobe::run(mediaprobe::programArguments(argc, argv));
}
