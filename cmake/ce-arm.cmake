# The player for Windows on 32-bit ARM, as near to Windows CE as Debian's tools come: clang knows
# ARM Windows from ARMv7 and Thumb-2 on, and lld the subsystems of the desktop. It is linked, and
# its import table looked at; there is nothing here to run it.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR arm)
set(triple thumbv7-windows-gnu)
set(CMAKE_C_COMPILER clang)
set(CMAKE_CXX_COMPILER clang++)
set(CMAKE_C_COMPILER_TARGET ${triple})
set(CMAKE_CXX_COMPILER_TARGET ${triple})
set(CMAKE_RC_COMPILER llvm-windres-14)
# There are no libraries to try a compiler with.
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)

# The headers of mingw-w64, the same for every processor, and the C++ headers of its compiler for 32
# bits.
set(mingw i686-w64-mingw32-g++-posix)
execute_process(COMMAND ${mingw} -print-file-name=include/c++
                OUTPUT_VARIABLE cxxHeaders OUTPUT_STRIP_TRAILING_WHITESPACE)
if(NOT IS_DIRECTORY "${cxxHeaders}")
  message(FATAL_ERROR "The C++ headers of mingw-w64 are missing (apt-get install g++-mingw-w64-i686-posix).")
endif()
string(JOIN " " CMAKE_CXX_FLAGS_INIT -nostdinc++ -isystem ${cxxHeaders}
       -isystem ${cxxHeaders}/i686-w64-mingw32 -isystem /usr/share/mingw-w64/include)
set(CMAKE_EXE_LINKER_FLAGS_INIT -fuse-ld=lld)
set(MOVIE_DLLTOOL llvm-dlltool-14)
set(MOVIE_DLLTOOL_OPTIONS -m arm)
set(MOVIE_COMPILER_HELPERS "")
