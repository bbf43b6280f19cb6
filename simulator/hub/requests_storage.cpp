// Requests about the unit's folders and its registry.
#include "catalogue/folder_listing.h"
#include "platform/text.h"
#include "platform/wide.h"
#include "simulator/hub/requests.h"
#include "simulator/tape/faults.h"

namespace hub {
namespace {

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

}  // namespace

// listing FOLDER: the full paths of the recordings in it, in the order in which the player will
// list them without the dash camera.
Answer listing(const Words& words) {
    const std::wstring folder = wide(words[1]);
    catalogue::FolderListing list;
    list.OpenListing(platform::utf16(folder.c_str()), catalogue::Order::FileSystem, &walkInOrder);
    Json paths = Json::array();
    catalogue::PathBuffer path;
    for (std::int32_t i = 0; list.GetFilePath(i, path) == 1; ++i) {
        paths.push_back(platform::toUtf8(path));
    }
    return {true, paths};
}

// connect FOLDER: the dash camera's hand-over; without a folder it is taken back.
Answer connect(const Words& words) {
    const std::wstring folder = wide(words[1]);
    if (folder.empty()) {
        RegDeleteKeyValueW(HKEY_LOCAL_MACHINE, kHandOverKey, L"ConnectPath");
        return {};
    }
    const auto bytes = static_cast<DWORD>((folder.size() + 1) * sizeof(wchar_t));
    return RegSetKeyValueW(HKEY_LOCAL_MACHINE, kHandOverKey, L"ConnectPath", REG_SZ, folder.c_str(),
                           bytes) == ERROR_SUCCESS
               ? Answer()
               : failed("the registry cannot be written");
}

// fault NAME NUMBER | fault NAME off
Answer fault(const Words& words) {
    const std::wstring name = wide(words[1]);
    if (words[2] == "off") {
        RegDeleteKeyValueW(HKEY_CURRENT_USER, kFaultKey, name.c_str());
        return {};
    }
    const auto value = static_cast<DWORD>(numberOf(words[2]));
    return RegSetKeyValueW(HKEY_CURRENT_USER, kFaultKey, name.c_str(), REG_DWORD, &value,
                           sizeof(value)) == ERROR_SUCCESS
               ? Answer()
               : failed("the registry cannot be written");
}

}  // namespace hub
