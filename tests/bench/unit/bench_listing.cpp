// Listing a folder of many recordings, against a bare walk over the same folder.
// Usage: bench_listing.exe FOLDER RUNS, where FOLDER is a path of the unit (\SDMMCDisk\Many).
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "catalogue/folder_listing.h"
#include "platform/wide.h"

namespace {

double now() {
    LARGE_INTEGER count{}, frequency{};
    QueryPerformanceCounter(&count);
    QueryPerformanceFrequency(&frequency);
    return static_cast<double>(count.QuadPart) * 1000 / static_cast<double>(frequency.QuadPart);
}

int bareWalk(const std::wstring& folder) {
    WIN32_FIND_DATAW found{};
    const HANDLE search = FindFirstFileW((folder + L"\\*.*").c_str(), &found);
    int entries = 0;
    if (search != INVALID_HANDLE_VALUE) {
        do {
            ++entries;
        } while (FindNextFileW(search, &found));
        FindClose(search);
    }
    return entries;
}

template <typename Work>
double timed(Work work) {
    const double begin = now();
    work();
    return now() - begin;
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
    if (count != 3) {
        std::printf("usage: bench_listing.exe FOLDER RUNS\n");
        return 2;
    }
    const std::wstring folder = arguments[1];
    const int runs = _wtoi(arguments[2]);
    std::vector<double> bare, plain, ordered, plainRatio, orderedRatio;
    catalogue::FolderListing listing;
    int entries = 0;
    for (int i = 0; i <= runs; ++i) {
        const double walk = timed([&] { entries = bareWalk(folder); });
        const double asFound = timed([&] {
            listing.OpenListing(platform::utf16(folder.c_str()), catalogue::Order::FileSystem);
        });
        const double byPath = timed([&] {
            listing.OpenListing(platform::utf16(folder.c_str()), catalogue::Order::ByPath);
        });
        if (i == 0) {
            continue;  // warm-up
        }
        bare.push_back(walk);
        plain.push_back(asFound);
        ordered.push_back(byPath);
        plainRatio.push_back(asFound / walk);
        orderedRatio.push_back(byPath / walk);
    }
    std::printf(
        "%d entries, %d recordings: bare walk %.1f ms, listing %.1f ms (ratio %.2f), "
        "ordered %.1f ms (ratio %.2f), medians of %d\n",
        entries, listing.GetFileCount(), median(bare), median(plain), median(plainRatio),
        median(ordered), median(orderedRatio), runs);
    return 0;
}
