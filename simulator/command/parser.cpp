#include "simulator/command/parser.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <algorithm>
#include <sstream>

#include "simulator/command/unit.h"

namespace headunit {
namespace {

Words split(const std::string& text, char at) {
    Words parts;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, at);) {
        parts.push_back(part);
    }
    return parts;
}

// The words of "a|b|KMH" that are meant as they stand.
Words literals(const std::string& names) {
    Words out;
    for (const std::string& name : split(names, '|')) {
        if (!name.empty() &&
            name.find_first_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ") == std::string::npos) {
            out.push_back(name);
        }
    }
    return out;
}

std::string listed(const Words& words) {
    std::string out;
    for (std::size_t i = 0; i < words.size(); ++i) {
        out += (i == 0 ? "" : (i + 1 == words.size() ? " or " : ", ")) + words[i];
    }
    return out;
}

CLI::Option* checked(CLI::Option* option, const std::string& name, const Check& check) {
    if (check) {
        option->check([check](const std::string& word) { return check(word); }, "");
    }
    return option->type_name(name);
}

std::string usageOf(const CLI::Option& option) {
    const std::string meta = option.get_type_name();
    const std::string several = option.get_items_expected_max() > 1 ? "..." : "";
    if (option.get_positional()) {
        const std::string text = meta + several;
        return option.get_required() ? text : "[" + text + "]";
    }
    return "[" + option.get_name() + (meta.empty() ? "" : " " + meta) + "]" + several;
}

// What CLI11 says, in words of the usage: choices have no name of their own there, and verbs within
// a verb are no subcommands.
std::string plainly(std::string why) {
    struct Phrase {
        const char* from;
        const char* to;
    };
    constexpr Phrase kPhrases[] = {{"WORD is required", "a word is missing"},
                                   {"A subcommand is required", "a word is missing"},
                                   {"WORD: must ", "the word must "},
                                   {"The following argument was not expected: ", "too much: "},
                                   {"The following arguments were not expected: ", "too much: "},
                                   {": must ", " must "}};
    for (const Phrase& phrase : kPhrases) {
        if (const auto at = why.find(phrase.from); at != std::string::npos) {
            why.replace(at, std::char_traits<char>::length(phrase.from), phrase.to);
        }
    }
    std::ranges::replace(why, '\n', ' ');
    return why;
}

bool isHelp(const CLI::Option* option) {
    return option->get_name() == "--help";
}

}  // namespace

Check between(long long least, long long most) {
    return [least, most](const std::string& word) {
        long long value = 0;
        return parseNumber(word, value) && value >= least && value <= most
                   ? std::string()
                   : "must be a number from " + std::to_string(least) + " to " +
                         std::to_string(most);
    };
}

Check oneOf(const std::string& names, Check other) {
    return [known = literals(names), other](const std::string& word) {
        if (std::ranges::find(known, word) != known.end()) {
            return std::string();
        }
        const std::string why = other ? other(word) : "must be";
        return why.empty() ? why : why + (other ? ", or " : " ") + listed(known);
    };
}

Check endingIn(std::string extension) {
    return [extension](const std::string& word) {
        return word.ends_with(extension) ? std::string() : "must end in " + extension;
    };
}

long long number(const std::string& word) {
    long long value = 0;
    parseNumber(word, value);
    return value;
}

Parser::Parser(const std::string& verb, const std::string& help)
    : name_(verb),
      owned_(std::make_shared<CLI::App>(help, "headunit " + verb)),
      app_(owned_.get()) {
    app_->set_help_flag("--help", "Print this help message and exit");
}

Parser::Parser(CLI::App& app, std::string name) : name_(std::move(name)), app_(&app) {
}

Parser::~Parser() = default;

std::shared_ptr<bool> Parser::flag(const std::string& name, const std::string& help) {
    auto value = std::make_shared<bool>(false);
    app_->add_flag(name, *value, help);
    return value;
}

std::shared_ptr<std::string> Parser::word(const std::string& name, const std::string& help,
                                          Needed needed, const Check& check) {
    auto value = std::make_shared<std::string>();
    // CLI11 wants a plain name for what it says; the usage has the whole one.
    const std::string plain = name.substr(0, name.find('|'));
    checked(app_->add_option(literals(plain).empty() ? plain : "WORD", *value, help), name, check)
        ->required(needed == Needed::Yes);
    return value;
}

std::shared_ptr<std::string> Parser::option(const std::string& name, const std::string& meta,
                                            const std::string& help, const Check& check) {
    auto value = std::make_shared<std::string>();
    checked(app_->add_option(name, *value, help), meta, check);
    return value;
}

std::shared_ptr<Words> Parser::options(const std::string& name, const std::string& meta,
                                       const std::string& help, const Check& check) {
    auto value = std::make_shared<Words>();
    checked(app_->add_option(name, *value, help), meta, check)->allow_extra_args(false);
    return value;
}

std::shared_ptr<Words> Parser::words(const std::string& name, const std::string& help,
                                     const Check& check) {
    auto value = std::make_shared<Words>();
    checked(app_->add_option(name, *value, help), name, check)->required();
    return value;
}

Parser& Parser::sub(const std::string& name, const std::string& help) {
    app_->require_subcommand(1);
    CLI::App* const app = app_->add_subcommand(name, help);
    subs_.push_back(std::unique_ptr<Parser>(new Parser(*app, name_ + " " + name)));
    return *subs_.back();
}

void Parser::together(const std::string& name, const std::string& other) {
    app_->get_option(name)->needs(app_->get_option(other));
}

bool Parser::given() const {
    return app_->parsed();
}

void Parser::parse(const Words& words) {
    try {
        app_->parse(Words(words.rbegin(), words.rend()));
    } catch (const CLI::ParseError& error) {
        // Of a verb within the verb its own usage is enough.
        const auto inner = std::ranges::find_if(subs_, &Parser::given);
        throw Failure(plainly(error.what()) + "; usage: headunit " +
                      (inner == subs_.end() ? usage() : (*inner)->usage()));
    }
}

std::string Parser::usage() const {
    std::string text;
    for (const auto& inner : subs_) {
        text += (text.empty() ? "" : " | ") + inner->usage();
    }
    if (!subs_.empty()) {
        return text;
    }
    text = name_;
    for (const bool positional : {false, true}) {
        for (const CLI::Option* option : std::as_const(*app_).get_options()) {
            if (!isHelp(option) && option->get_positional() == positional) {
                text += " " + usageOf(*option);
            }
        }
    }
    return text;
}

std::string Parser::help() const {
    std::string text = "usage: headunit " + usage() + "\n" + app_->get_description() + "\n";
    const auto row = [&text](const std::string& name, const std::string& about) {
        text +=
            "  " + name + std::string(name.size() < 22 ? 22 - name.size() : 1, ' ') + about + "\n";
    };
    const auto rows = [&row](const CLI::App& app) {
        for (const CLI::Option* option : app.get_options()) {
            const std::string meta = option->get_type_name();
            if (!isHelp(option)) {
                row(option->get_positional()
                        ? meta
                        : option->get_name() + (meta.empty() ? "" : " " + meta),
                    option->get_description());
            }
        }
    };
    rows(*app_);
    for (const auto& inner : subs_) {
        row(inner->usage().substr(name_.size() + 1), inner->app_->get_description());
        rows(*inner->app_);
    }
    return text;
}

Words Parser::complete(const Words& words) const {
    Words out;
    if (!subs_.empty() && !words.empty()) {
        for (const auto& inner : subs_) {
            if (inner->name_ == name_ + " " + words[0]) {
                return inner->complete({words.begin() + 1, words.end()});
            }
        }
    }
    for (const auto& inner : subs_) {
        out.push_back(inner->name_.substr(name_.size() + 1));
    }
    std::size_t bare = static_cast<std::size_t>(
        std::ranges::count_if(words, [](const auto& word) { return !word.starts_with("-"); }));
    for (const CLI::Option* option : std::as_const(*app_).get_options()) {
        if (isHelp(option)) {
            continue;
        }
        if (!option->get_positional()) {
            out.push_back(option->get_name());
        } else if (bare == 0 || bare-- == 0) {
            const Words known = literals(option->get_type_name());
            out.insert(out.end(), known.begin(), known.end());
            bare = words.size();  // only the next one
        }
    }
    return out;
}

}  // namespace headunit
