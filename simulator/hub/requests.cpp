// The requests that the hub carries out.
#include <atomic>

#include "simulator/hub/panel.h"
#include "simulator/hub/requests.h"
#include "simulator/processes/peer.h"
#include "simulator/shared/filters_window.h"
#include "simulator/shared/named.h"
#include "simulator/tape/registered.h"
#include "simulator/tape/settled.h"
#include "simulator/tape/tape.h"

namespace hub {
namespace {

using headunit::parseNumber;

constexpr wchar_t kBoxClass[] = L"headunit.box";
constexpr UINT kSendPatience = 30000;  // milliseconds
constexpr char kMuteMessage[] = "BSP_WMUSER_MUTE_NOTIFICATION";

HWND hubWindow;
std::atomic<int> lastMute = -1;

// A window by its title, or one that only takes messages by its class.
HWND findReceiver(const std::wstring& name) {
    const HWND titled = FindWindowW(nullptr, name.c_str());
    return titled != nullptr ? titled : FindWindowExW(HWND_MESSAGE, nullptr, name.c_str(), nullptr);
}

// message post|send NAME WPARAM LPARAM [TITLE]
Answer message(const Words& words) {
    long long wParam = 0;
    long long lParam = 0;
    if (!parseNumber(words[3], wParam) || !parseNumber(words[4], lParam)) {
        return failed("WPARAM and LPARAM must be numbers");
    }
    const tape::Message* known = tape::findMessage(words[2]);
    const std::string title = words.size() > 5 ? words[5] : tape::kPlayer;
    const HWND window = findReceiver(wide(title));
    if (words[2] == kMuteMessage) {
        lastMute = wParam == 1 ? 1 : 0;
    }
    if (window == nullptr) {
        return failed("there is no window \"" + title + "\"; is the player running?");
    }
    const UINT number = RegisterWindowMessageA(words[2].c_str());
    const auto first = static_cast<WPARAM>(wParam);
    const auto second = static_cast<LPARAM>(lParam);
    tape::recordMessage(words[1].c_str(), known == nullptr ? "unit" : known->sender, title.c_str(),
                        words[2].c_str(), first, second);
    if (words[1] == "post") {
        return PostMessageW(window, number, first, second) ? Answer() : failed("the queue is full");
    }
    DWORD_PTR result = 0;
    SetLastError(0);
    if (SendMessageTimeoutW(window, number, first, second, SMTO_NORMAL, kSendPatience, &result) ==
        0) {
        return failed("the player did not answer within " + std::to_string(kSendPatience / 1000) +
                      " s");
    }
    return {true, static_cast<long long>(result)};
}

// speed KMH|off
Answer drive(const Words& words) {
    if (words[1] == "off") {
        loseSpeed();
    } else {
        setSpeed(static_cast<int>(numberOf(words[1])));
    }
    return {};
}

// box NUMBER
Answer box(const Words& words) {
    const auto number = static_cast<int>(numberOf(words[1]));
    const HWND window = FindWindowW(kBoxClass, nullptr);
    if (window == nullptr) {
        return failed("no message box is open");
    }
    if (GetDlgItem(window, number) == nullptr) {
        return failed("the open message box has no such button");
    }
    PostMessageW(window, WM_COMMAND, static_cast<WPARAM>(number), 0);
    return {};
}

// note TEXT: what the user has done, for the tape
Answer note(const Words& words) {
    tape::Line("command").text("text", wide(words[1]).c_str());
    return {};
}

// refused WHY: what a command that the panel ran says on its standard error
Answer refused(const Words& words) {
    return tellPanel(words[1]) ? Answer() : failed("the unit has no panel");
}

Answer closePlayer(const Words&) {
    const HWND player = FindWindowW(nullptr, kPlayerTitle);
    if (player == nullptr) {
        return failed("the player has no window");
    }
    PostMessageW(player, WM_CLOSE, 0, 0);
    return {};
}

Answer askExit(const Words&) {
    const HWND window = FindWindowW(L"Processmanager", L"Processmanager");
    if (window == nullptr) {
        return failed("the process manager is not running");
    }
    PostMessageW(window, RegisterWindowMessageW(peer::kRequestMessage), peer::kRequestShutdown, 0);
    return {};
}

Answer killProgram(const Words& words) {
    return killChild(wide(words[1])) ? Answer() : failed(words[1] + " is not running");
}

// settle MILLISECONDS: until the player has taken what is on its way to it (see settled.h), or
// that long when it is busy. Nothing to wait for without a player.
Answer settle(const Words& words) {
    static LONG questions = 0;
    const HWND window = FindWindowExW(HWND_MESSAGE, nullptr, tape::kSettledClass, nullptr);
    const auto number = static_cast<WPARAM>(InterlockedIncrement(&questions));
    const HANDLE event = CreateEventW(nullptr, TRUE, FALSE, tape::settledEvent(number).c_str());
    if (event == nullptr) {
        return failed("Windows has no event to wait for");
    }
    if (window != nullptr && PostMessageW(window, tape::kSettledQuestion, number, 0)) {
        WaitForSingleObject(event, static_cast<DWORD>(numberOf(words[1])));
    }
    CloseHandle(event);
    return {};
}

HANDLE takenEvent() {
    static const HANDLE event = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    return event;
}

// taken MILLISECONDS: until the panel has handled what was pressed on it, or that long.
Answer taken(const Words& words) {
    ResetEvent(takenEvent());
    PostMessageW(hubWindow, kTakenQuestion, 0, 0);
    WaitForSingleObject(takenEvent(), static_cast<DWORD>(numberOf(words[1])));
    return {};
}

// How loud the film is, in hundredths of a decibel; null when nothing sounds or the player is busy.
Answer loudness(const Words&) {
    constexpr UINT kPatience = 500;  // milliseconds
    const HWND window = FindWindowExW(HWND_MESSAGE, nullptr, headunit::kFiltersWindow, nullptr);
    DWORD_PTR result = 0;
    if (window != nullptr) {
        SendMessageTimeoutW(window, RegisterWindowMessageW(headunit::kGraphVolumeMessage), 0, 0,
                            SMTO_ABORTIFHUNG, kPatience, &result);
    }
    return {true, result == 0 ? Json() : Json(static_cast<long>(result) - headunit::kQuietest)};
}

struct Request {
    const char* name;
    std::size_t words;  // at least, the name included
    Answer (*execute)(const Words& words);
};
constexpr Request kRequests[] = {
    {"note", 2, &note},
    {"ping", 1, [](const Words&) { return Answer(); }},
    {"start", 4, &startProgram},
    {"message", 5, &message},
    {"speed", 2, &drive},
    {"box", 2, &box},
    {"listing", 2, &listing},
    {"connect", 2, &connect},
    {"fault", 3, &fault},
    {"state", 1,
     [](const Words&) {
         return Answer{true, state()};
     }},
    {"shutdown", 1, &askExit},
    {"kill", 2, &killProgram},
    {"running", 2,
     [](const Words& words) {
         return Answer{true, isRunning(wide(words[1]))};
     }},
    {"await", 3, &awaitWindow},
    {"cut", 1, &cutPowerNow},
    {"power", 1, &powerOn},
    {"close", 1, &closePlayer},
    {"settle", 2, &settle},
    {"taken", 2, &taken},
    {"refused", 2, &refused},
    {"loudness", 1, &loudness},
};

}  // namespace

void setHubWindow(HWND window) {
    hubWindow = window;
}

void inputTaken() {
    SetEvent(takenEvent());
}

int muted() {
    return lastMute;
}

long long numberOf(const std::string& word) {
    long long number = 0;
    parseNumber(word, number);
    return number;
}

Answer failed(const std::string& why) {
    return {false, why};
}

Answer execute(const Words& words) {
    const Request* const request =
        words.empty() ? nullptr : headunit::findNamed(kRequests, words[0]);
    if (request == nullptr) {
        return failed("unknown request " + (words.empty() ? "" : words[0]));
    }
    return words.size() < request->words ? failed("too few words") : request->execute(words);
}

}  // namespace hub
