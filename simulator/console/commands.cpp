// The requests that the hub carries out.
#include <cerrno>
#include <cstdlib>

#include "catalogue/folder_listing.h"
#include "platform/text.h"
#include "platform/wide.h"
#include "simulator/console/hub.h"
#include "simulator/processes/peer.h"
#include "simulator/tape/faults.h"
#include "simulator/tape/registered.h"
#include "simulator/tape/settled.h"
#include "simulator/tape/tape.h"

namespace hub {
namespace {

using Words = std::vector<std::string>;

constexpr wchar_t kPlayerTitle[] = L"Video";
constexpr wchar_t kBoxClass[] = L"headunit.box";
constexpr UINT kSendPatience = 30000;  // milliseconds
constexpr wchar_t kFaultKey[] = L"Software\\HeadUnit\\Faults";
constexpr DWORD kPeerPatience = 5000;  // milliseconds

HWND hubWindow;

std::string failed(const std::string& why) {
    return "error: " + why;
}

Words split(const std::string& request) {
    Words words(1);
    for (const char c : request) {
        if (c == '\t') {
            words.emplace_back();
        } else if (c != '\r') {
            words.back() += c;
        }
    }
    return words;
}

// Decimal or 0x; negative numbers too. False when it is not a number.
bool parseNumber(const std::string& text, long long& number) {
    char* end = nullptr;
    errno = 0;
    number = std::strtoll(text.c_str(), &end, 0);
    return errno == 0 && !text.empty() && *end == '\0';
}

// start NAME FOLDER COMMANDLINE [output]
std::string start(const Words& words) {
    const bool output = words.size() > 4 && words[4] == "output";
    const Program program = {wide(words[1]), wide(words[3]), wide(words[2]),
                             output ? Watch::EndsAndOutput : Watch::Ends};
    DWORD error = 0;
    const DWORD process = startChild(program, error);
    return process != 0 ? "ok\t" + std::to_string(process)
                        : failed("Wine could not start " + words[3] + " (Windows error " +
                                 std::to_string(error) + ")");
}

// A window by its title, or one that only takes messages by its class.
HWND findReceiver(const std::wstring& name) {
    const HWND titled = FindWindowW(nullptr, name.c_str());
    return titled != nullptr ? titled : FindWindowExW(HWND_MESSAGE, nullptr, name.c_str(), nullptr);
}

// message post|send NAME WPARAM LPARAM [TITLE]
std::string message(const Words& words) {
    long long wParam = 0;
    long long lParam = 0;
    if (!parseNumber(words[3], wParam) || !parseNumber(words[4], lParam)) {
        return failed("WPARAM and LPARAM must be numbers");
    }
    const tape::Message* known = tape::findMessage(words[2]);
    const std::string title = words.size() > 5 ? words[5] : tape::kPlayer;
    const HWND window = findReceiver(wide(title));
    if (window == nullptr) {
        return failed("there is no window \"" + title + "\"; is the player running?");
    }
    const UINT number = RegisterWindowMessageW(wide(words[2]).c_str());
    const auto first = static_cast<WPARAM>(wParam);
    const auto second = static_cast<LPARAM>(lParam);
    tape::recordMessage(words[1].c_str(), known == nullptr ? "unit" : known->sender, title.c_str(),
                        words[2].c_str(), first, second);
    if (words[1] == "post") {
        return PostMessageW(window, number, first, second) ? "ok" : failed("the queue is full");
    }
    DWORD_PTR result = 0;
    SetLastError(0);
    if (SendMessageTimeoutW(window, number, first, second, SMTO_NORMAL, kSendPatience, &result) ==
        0) {
        return failed("the player did not answer within " + std::to_string(kSendPatience / 1000) +
                      " s");
    }
    return "ok\t" + std::to_string(static_cast<long long>(result));
}

// speed KMH|off
std::string drive(const Words& words) {
    long long speed = 0;
    if (words[1] == "off") {
        loseSpeed();
    } else if (parseNumber(words[1], speed) && speed >= INT_MIN && speed <= INT_MAX) {
        setSpeed(static_cast<int>(speed));
    } else {
        return failed("the speed must be a number of km/h or off");
    }
    return "ok";
}

// box NUMBER
std::string box(const Words& words) {
    long long number = 0;
    const HWND window = FindWindowW(kBoxClass, nullptr);
    if (window == nullptr) {
        return failed("no message box is open");
    }
    if (!parseNumber(words[1], number) || GetDlgItem(window, static_cast<int>(number)) == nullptr) {
        return failed("the open message box has no such button");
    }
    PostMessageW(window, WM_COMMAND, static_cast<WPARAM>(number), 0);
    return "ok";
}

// The player's folders in the order that the unit gives them (see tape/faults.h).
bool walkInOrder(const char16_t* folder, platform::EntryVisitor visitor, void* context) {
    const std::wstring pattern = std::wstring(platform::wide(folder)) + L"\\*.*";
    std::vector<WIN32_FIND_DATAW> entries;
    WIN32_FIND_DATAW entry;
    const HANDLE find = FindFirstFileW(pattern.c_str(), &entry);
    if (find == INVALID_HANDLE_VALUE) {
        return false;
    }
    do {
        entries.push_back(entry);
    } while (FindNextFileW(find, &entry));
    FindClose(find);
    tape::orderEntries(entries);
    for (const WIN32_FIND_DATAW& found : entries) {
        const std::wstring name = found.cFileName;
        const bool isFolder = (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        const auto kind = isFolder ? platform::EntryKind::Folder : platform::EntryKind::File;
        if (name != L"." && name != L".." &&
            !visitor(context, platform::utf16(name.c_str()), kind)) {
            break;
        }
    }
    return true;
}

// listing FOLDER: the full paths of the recordings in it, in the order in which the player will
// list them without the dash camera.
std::string listing(const Words& words) {
    const std::wstring folder = wide(words[1]);
    catalogue::FolderListing list;
    list.OpenListing(platform::utf16(folder.c_str()), catalogue::Order::FileSystem, &walkInOrder);
    std::string answer = "ok";
    catalogue::PathBuffer path;
    for (std::int32_t i = 0; list.GetFilePath(i, path) == 1; ++i) {
        answer += "\n" + platform::toUtf8(path);
    }
    return answer;
}

// connect FOLDER: the dash camera's hand-over; without a folder it is taken back.
std::string connect(const Words& words) {
    HKEY key = nullptr;
    if (RegCreateKeyExW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\BLACKBOX", 0, nullptr, 0, KEY_ALL_ACCESS,
                        nullptr, &key, nullptr) != ERROR_SUCCESS) {
        return failed("the registry cannot be written");
    }
    const std::wstring folder = wide(words[1]);
    if (folder.empty()) {
        RegDeleteValueW(key, L"ConnectPath");
    } else {
        RegSetValueExW(key, L"ConnectPath", 0, REG_SZ,
                       reinterpret_cast<const BYTE*>(folder.c_str()),
                       static_cast<DWORD>((folder.size() + 1) * sizeof(wchar_t)));
    }
    RegCloseKey(key);
    return "ok";
}

// fault NAME NUMBER | fault NAME off
std::string fault(const Words& words) {
    const std::wstring name = wide(words[1]);
    long long number = 0;
    if (words[2] == "off") {
        RegDeleteKeyValueW(HKEY_CURRENT_USER, kFaultKey, name.c_str());
        return "ok";
    }
    if (!parseNumber(words[2], number)) {
        return failed("a fault's value is a number or off");
    }
    const auto value = static_cast<DWORD>(number);
    return RegSetKeyValueW(HKEY_CURRENT_USER, kFaultKey, name.c_str(), REG_DWORD, &value,
                           sizeof(value)) == ERROR_SUCCESS
               ? "ok"
               : failed("the registry cannot be written");
}

std::string processManager(WPARAM request) {
    const HWND window = FindWindowW(L"Processmanager", L"Processmanager");
    if (window == nullptr) {
        return failed("the process manager is not running");
    }
    PostMessageW(window, RegisterWindowMessageW(peer::kRequestMessage), request, 0);
    return "ok";
}

std::string state(const Words&) {
    return "ok\t" + stateJson();
}

// note TEXT: what the user has done, for the tape
std::string note(const Words& words) {
    tape::Line("command").text("text", wide(words[1]).c_str());
    return "ok";
}

std::string ping(const Words&) {
    return "ok";
}

std::string closePlayer(const Words&) {
    const HWND player = FindWindowW(nullptr, L"Video");
    if (player == nullptr) {
        return failed("the player has no window");
    }
    PostMessageW(player, WM_CLOSE, 0, 0);
    return "ok";
}

std::string askExit(const Words&) {
    return processManager(peer::kRequestShutdown);
}

std::string killProgram(const Words& words) {
    return killChild(wide(words[1])) ? "ok" : failed(words[1] + " is not running");
}

// await TITLE MILLISECONDS: until there is a window of that title.
std::string await(const Words& words) {
    long long patience = 0;
    if (!parseNumber(words[2], patience)) {
        return failed("the time must be a number of milliseconds");
    }
    const std::wstring title = wide(words[1]);
    const ULONGLONG end = GetTickCount64() + static_cast<ULONGLONG>(patience);
    while (FindWindowW(nullptr, title.c_str()) == nullptr) {
        if (GetTickCount64() >= end) {
            return failed("no window \"" + words[1] + "\" appeared");
        }
        Sleep(10);
    }
    return "ok";
}

// settle MILLISECONDS: until the player has taken what is on its way to it (see settled.h), or
// that long when it is busy. Nothing to wait for without a player.
std::string settle(const Words& words) {
    static LONG questions = 0;
    long long patience = 0;
    if (!parseNumber(words[1], patience)) {
        return failed("the time must be a number of milliseconds");
    }
    const HWND window = FindWindowExW(HWND_MESSAGE, nullptr, tape::kSettledClass, nullptr);
    const auto number = static_cast<WPARAM>(InterlockedIncrement(&questions));
    const HANDLE event = CreateEventW(nullptr, TRUE, FALSE, tape::settledEvent(number).c_str());
    if (event == nullptr) {
        return failed("Windows has no event to wait for");
    }
    if (window != nullptr && PostMessageW(window, tape::kSettledQuestion, number, 0)) {
        WaitForSingleObject(event, static_cast<DWORD>(patience));
    }
    CloseHandle(event);
    return "ok";
}

// cut: every process of the unit ends at once, as when its power is cut; this one goes on.
std::string cut(const Words&) {
    cutPower();
    return "ok";
}

// power: after a cut starts what ran before, but the player. The registry begins anew, as at every
// boot. Does nothing when the power is on.
std::string power(const Words&) {
    const std::vector<Program> programs = takeWithoutPower();
    if (programs.empty()) {
        return "ok";
    }
    RegDeleteTreeW(HKEY_CURRENT_USER, kFaultKey);
    RegDeleteTreeW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\BLACKBOX");
    RegDeleteTreeW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Microsoft\\DirectShow\\ThreadPriority");
    for (const Program& program : programs) {
        DWORD error = 0;
        if (startChild(program, error) == 0) {
            return failed("Wine could not start " + narrow(program.name) + " (Windows error " +
                          std::to_string(error) + ")");
        }
    }
    for (const Program& program : programs) {
        // A process of the unit is named after its window.
        const std::string shown =
            await({"await", narrow(program.name), std::to_string(kPeerPatience)});
        if (shown != "ok") {
            return shown;
        }
    }
    return "ok";
}

std::string running(const Words& words) {
    return isRunning(wide(words[1])) ? "ok\tyes" : "ok\tno";
}

std::string quit(const Words&) {
    PostMessageW(hubWindow, kQuitMessage, 0, 0);
    return "ok";
}

struct Command {
    const char* name;
    std::size_t words;  // at least, the name included
    std::string (*execute)(const Words& words);
};
constexpr Command kCommands[] = {
    {"note", 2, &note},       {"ping", 1, &ping},        {"start", 4, &start},
    {"message", 5, &message}, {"speed", 2, &drive},      {"box", 2, &box},
    {"listing", 2, &listing}, {"connect", 2, &connect},  {"fault", 3, &fault},
    {"state", 1, &state},     {"shutdown", 1, &askExit}, {"kill", 2, &killProgram},
    {"running", 2, &running}, {"await", 3, &await},      {"quit", 1, &quit},
    {"cut", 1, &cut},         {"power", 1, &power},      {"close", 1, &closePlayer},
    {"settle", 2, &settle},
};

}  // namespace

void setHubWindow(HWND window) {
    hubWindow = window;
}

std::string execute(const std::string& request) {
    const Words words = split(request);
    for (const Command& command : kCommands) {
        if (words[0] == command.name) {
            return words.size() < command.words ? failed("too few words") : command.execute(words);
        }
    }
    return failed("unknown request " + words[0]);
}

}  // namespace hub
