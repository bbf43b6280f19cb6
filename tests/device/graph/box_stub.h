// The board's message boxes, answered by the test. BOX_LIBRARY is the full path of the stub.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace test {

using BoxHandler = int (*)(const wchar_t* text, const wchar_t* title, UINT style);

#ifdef BOX_LIBRARY
// Collects the boxes of this process from its creation on. It must be made before the first box,
// because the player finds the loaded library by its name.
class Boxes {
public:
    struct Box {
        std::wstring text, title;
        UINT style;
    };

    Boxes() {
        shown.clear();
        answer = IDOK;
        onBox = nullptr;
        const HMODULE library = LoadLibraryW(BOX_LIBRARY);
        const auto set = reinterpret_cast<void (*)(BoxHandler)>(
            reinterpret_cast<void*>(GetProcAddress(library, "setBoxHandler")));
        set([](const wchar_t* text, const wchar_t* title, UINT style) {
            shown.push_back({text, title, style});
            if (onBox != nullptr) {
                onBox();
            }
            return answer;
        });
    }

    static inline std::vector<Box> shown;
    static inline int answer = IDOK;
    static inline void (*onBox)() = nullptr;  // called while a box is open
};
#endif

}  // namespace test
