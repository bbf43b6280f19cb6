// The C++ runtime of movie.exe on Windows CE: the entry, memory, and the few functions by which the
// compiler and its headers ask for a desktop's runtime. It stands in for the compiler's own
// libraries, which call functions that coredll.dll does not export; with it the program needs
// coredll.dll and ole32.dll and nothing else. One thread, no exceptions, no unwinding.
//
// A toolchain with a start-up library for Windows CE brings all of this itself.
#include <windows.h>

#include <cstdarg>
#include <cstddef>
#include <new>

#include "platform/unit_api.h"

struct _iobuf;
extern "C" {
// The compiler has ideas of its own of what vfprintf takes.
int printTo(_iobuf* file, const char* format, std::va_list arguments) __MINGW_ASM_CALL(vfprintf);
int _vsnprintf(char* text, std::size_t capacity, const char* format, std::va_list arguments);
_iobuf* _getstdfilex(int number);
void* malloc(std::size_t bytes);
void free(void* block);

using Function = void (*)();
// Filled in by the linker: -1, the constructors of static objects, 0; the last one runs first.
extern Function __CTOR_LIST__[];
}

namespace {

constexpr UINT kBroken = ERROR_INTERNAL_ERROR;  // the program's exit value

// The program ends at once: with one thread and no exceptions nobody is there to go on, and the
// process manager starts it again.
[[noreturn]] void end(const wchar_t* why, UINT exitValue) {
    OutputDebugStringW(why);
    for (;;) {
        TerminateProcess(platform::currentProcess(), exitValue);
    }
}

// Destructors of static objects. Two hundred objects would be a design to look at.
constexpr std::size_t kMostExits = 64;
Function exits[kMostExits];
std::size_t exitCount = 0;

void runConstructors() {
    std::size_t count = 0;
    while (__CTOR_LIST__[count + 1] != nullptr) {
        ++count;
    }
    for (; count > 0; --count) {
        __CTOR_LIST__[count]();
    }
}

void runDestructors() {
    while (exitCount > 0) {
        exits[--exitCount]();
    }
}

}  // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE previous, LPWSTR commandLine, int show);

// The kernel of Windows CE calls a program's entry with what WinMain gets, the command line without
// the program's name.
extern "C" int WinMainCRTStartup(HINSTANCE instance, HINSTANCE previous, LPWSTR commandLine,
                                 int show) {
    runConstructors();
    const int result = wWinMain(instance, previous, commandLine, show);
    runDestructors();
    return result;
}

extern "C" int atexit(Function function) {
    if (exitCount == kMostExits) {
        return -1;
    }
    exits[exitCount++] = function;
    return 0;
}

extern "C" void __cxa_pure_virtual() {
    end(L"movie: a pure virtual function was called\r\n", kBroken);
}

// As C99 has it, but for the result when the text does not fit: -1. coredll's own leaves such a
// text without its end.
extern "C" int __mingw_vsnprintf(char* text, std::size_t capacity, const char* format,
                                 std::va_list arguments) {
    if (capacity == 0) {
        return -1;
    }
    const int length = _vsnprintf(text, capacity, format, arguments);
    text[capacity - 1] = '\0';
    return length;
}

extern "C" int __mingw_vfprintf(_iobuf* file, const char* format, std::va_list arguments) {
    return printTo(file, format, arguments);
}

extern "C" _iobuf* __acrt_iob_func(unsigned number) {
    return _getstdfilex(static_cast<int>(number));
}
// How the headers reach it: as if it were imported.
extern "C" {
_iobuf* (*__MINGW_IMP_SYMBOL(__acrt_iob_func))(unsigned) = &__acrt_iob_func;
}

// The player asks for memory in this form alone and looks at what it gets. The form that throws is
// missing here: code that would need it does not link.
const std::nothrow_t std::nothrow{};

void* operator new(std::size_t bytes, const std::nothrow_t&) noexcept {
    return malloc(bytes != 0 ? bytes : 1);
}

void* operator new[](std::size_t bytes, const std::nothrow_t&) noexcept {
    return operator new(bytes, std::nothrow);
}

void operator delete(void* block) noexcept {
    free(block);
}

void operator delete[](void* block) noexcept {
    free(block);
}

void operator delete(void* block, std::size_t) noexcept {
    free(block);
}

void operator delete[](void* block, std::size_t) noexcept {
    free(block);
}

// What a text calls instead of going beyond its end.
namespace std {
void __throw_out_of_range_fmt(const char*, ...) {
    end(L"movie: a place beyond the end of a text\r\n", kBroken);
}
}  // namespace std
