// The machine by which the settings file is read and rewritten: one character after the other.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace settings {

// Room for a section, key or value, the terminator included. What is longer is cut.
constexpr std::size_t kNameCapacity = 128;

// A text of at most Capacity - 1 characters; what comes beyond is dropped.
template <std::size_t Capacity>
class BoundedText {
public:
    void clear() { length_ = 0; }
    void append(char16_t character) {
        if (length_ < Capacity - 1) {
            text_[length_++] = character;
        }
    }
    void append(std::u16string_view text) {
        for (const char16_t character : text) {
            append(character);
        }
    }
    [[nodiscard]] std::u16string_view view() const { return {text_.data(), length_}; }

private:
    std::array<char16_t, Capacity> text_{};
    std::size_t length_ = 0;
};

// The machine that reader and writer share. It is fed one character after the other and tells
// when the value has been read, or when the wanted section has ended without the key.
class KeyFinder {
public:
    enum class Progress { Going, ValueStarts, ValueEnds, SectionEnds };

    KeyFinder(std::u16string_view section, std::u16string_view key)
        : section_(section), key_(key) {}

    Progress feed(char16_t character) {
        switch (state_) {
            case State::LineStart:
                atLineStart(character);
                break;
            case State::Comment:
                state_ = character == u'\n' ? State::LineStart : State::Comment;
                break;
            case State::SectionName:
                inSectionName(character);
                break;
            case State::Skipping:
                state_ = character == u'\n' ? State::SectionLineStart : State::Skipping;
                break;
            case State::SectionLineStart:
                return atSectionLineStart(character);
            case State::KeyName:
                return inKeyName(character);
            case State::Value:
                if (character == u'\n') {
                    return Progress::ValueEnds;
                }
                buffer_.append(character);
                break;
        }
        return Progress::Going;
    }

    [[nodiscard]] bool sectionFound() const { return sectionFound_; }
    [[nodiscard]] std::u16string_view value() const { return buffer_.view(); }

private:
    enum class State {
        LineStart,
        Comment,
        SectionName,
        Skipping,          // in the wanted section, up to the end of the line
        SectionLineStart,  // in the wanted section
        KeyName,
        Value,
    };

    void atLineStart(char16_t character) {
        if (character == u';') {
            state_ = State::Comment;
        } else if (character == u'[') {
            state_ = State::SectionName;
            buffer_.clear();
        }
        // Any other character is dropped and the line has still to start: a "[" further on in a
        // line opens a section name. Required.
    }

    void inSectionName(char16_t character) {
        if (character != u']') {
            buffer_.append(character);
            return;
        }
        const bool wanted = buffer_.view() == section_;
        sectionFound_ = sectionFound_ || wanted;
        state_ = wanted ? State::Skipping : State::Comment;
    }

    Progress atSectionLineStart(char16_t character) {
        if (character == u'[') {
            return Progress::SectionEnds;
        }
        if (character == u';') {
            state_ = State::Skipping;
            return Progress::Going;
        }
        state_ = State::KeyName;  // a newline too: a blank line spoils the next key. Required.
        buffer_.clear();
        buffer_.append(character);
        return Progress::Going;
    }

    Progress inKeyName(char16_t character) {
        if (character != u'=') {
            buffer_.append(character);
            return Progress::Going;
        }
        if (buffer_.view() != key_) {
            state_ = State::Skipping;
            return Progress::Going;
        }
        state_ = State::Value;
        buffer_.clear();
        return Progress::ValueStarts;
    }

    std::u16string_view section_;
    std::u16string_view key_;
    State state_ = State::LineStart;
    BoundedText<kNameCapacity> buffer_;
    bool sectionFound_ = false;
};

}  // namespace settings
