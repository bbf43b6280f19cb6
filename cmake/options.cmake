# Compiler options shared by all code of the project.

# Every target links `movie_warnings`; the player's own code links `movie_code`, which also forbids
# exceptions and run-time type information, as on the device. (So the sanitizers cannot check what a
# table of virtual functions belongs to: `asan` leaves that check out.)
add_library(movie_warnings INTERFACE)
target_compile_options(movie_warnings INTERFACE
  -Wall -Wextra -Wconversion -Wshadow -Werror)

add_library(movie_code INTERFACE)
target_link_libraries(movie_code INTERFACE movie_warnings)
target_compile_options(movie_code INTERFACE -fno-exceptions -fno-rtti)

if(WIN32)
  target_compile_definitions(movie_code INTERFACE UNICODE _UNICODE)
  # Programs and libraries must start in a prefix that has none of the compiler's own libraries.
  add_link_options(-static)
endif()
