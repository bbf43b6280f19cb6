# The player for Windows CE on 32-bit x86. It is linked, and its import table looked at; there is
# nothing here to run it.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(CMAKE_C_COMPILER i686-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER i686-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER i686-w64-mingw32-windres)
set(CMAKE_EXE_LINKER_FLAGS_INIT -Wl,--subsystem,wince:6.0)
set(MOVIE_DLLTOOL i686-w64-mingw32-dlltool)
# The stack probe, and arithmetic on 64 bits.
set(MOVIE_COMPILER_HELPERS gcc)
