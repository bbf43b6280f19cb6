// What a verb's words may be. Each verb declares them once; reading, checking, its usage, its help
// and its completion come from that. Stands in front of CLI11, which only parser.cpp knows.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "simulator/shared/words.h"

namespace CLI {
class App;
}

namespace headunit {

// The reason why a word is refused; empty when it is taken.
using Check = std::function<std::string(const std::string& word)>;
// A whole number, decimal or 0x; both ends included.
Check between(long long least, long long most);
// One of the lower-case words of "a|b|KMH"; another one only when `other` takes it.
Check oneOf(const std::string& names, Check other = nullptr);
Check endingIn(std::string extension);
// The number of a word that a check has taken.
long long number(const std::string& word);

enum class Needed { Yes, No };

class Parser {
public:
    // `usage` begins with the verb's name.
    Parser(const std::string& verb, const std::string& help);
    ~Parser();
    Parser(const Parser&) = delete;
    Parser& operator=(const Parser&) = delete;

    // "--name": whether it was there.
    std::shared_ptr<bool> flag(const std::string& name, const std::string& help);
    // "--name META" or, without dashes, the next word. "A|b" as a word's name: "b" is offered by
    // completion. Empty when it was not there.
    std::shared_ptr<std::string> word(const std::string& name, const std::string& help,
                                      Needed needed = Needed::Yes, const Check& check = nullptr);
    std::shared_ptr<std::string> option(const std::string& name, const std::string& meta,
                                        const std::string& help, const Check& check = nullptr);
    // An option that may be given several times, or all words that are left.
    std::shared_ptr<Words> options(const std::string& name, const std::string& meta,
                                   const std::string& help, const Check& check = nullptr);
    std::shared_ptr<Words> words(const std::string& name, const std::string& help,
                                 const Check& check = nullptr);
    // The first of these optional words needs the other one.
    void together(const std::string& name, const std::string& other);
    // A verb within the verb; one of them must be given.
    Parser& sub(const std::string& name, const std::string& help);
    [[nodiscard]] bool given() const;

    // Throws Failure, the usage included.
    void parse(const Words& words);
    [[nodiscard]] std::string usage() const;
    [[nodiscard]] std::string help() const;
    // What may stand behind these words.
    [[nodiscard]] Words complete(const Words& words) const;

private:
    Parser(CLI::App& app, std::string name);

    std::string name_;
    std::shared_ptr<CLI::App> owned_;
    CLI::App* app_;
    std::vector<std::unique_ptr<Parser>> subs_;
};

}  // namespace headunit
