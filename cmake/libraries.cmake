# Header-only libraries of the tools (mediaprobe, headunit, the simulated unit): Debian's packages
# libcli11-dev and nlohmann-json3-dev. The player links none of them.
#
#   cli11   command lines     json   JSON, as nlohmann::json
#
# Both throw, and use run-time type information, in the default configuration: a file that includes
# them says so by `uses_exceptions(FILE...)`. They are looked up on the building machine and reached
# through links of their own, because /usr/include itself would give a cross compiler the wrong C
# library.
set(headerOnly ${PROJECT_BINARY_DIR}/header_only)

function(header_only_library target folder package)
  find_path(${target}_INCLUDE NAMES ${folder} PATHS /usr/include /usr/local/include
            NO_CMAKE_FIND_ROOT_PATH)
  if(NOT ${target}_INCLUDE)
    message(FATAL_ERROR "The tools need ${folder}/ (apt-get install ${package}); "
                        "-DMOVIE_BUILD_TOOLS=OFF builds everything but the tools.")
  endif()
  file(MAKE_DIRECTORY ${headerOnly})
  file(CREATE_LINK ${${target}_INCLUDE}/${folder} ${headerOnly}/${folder} SYMBOLIC)
  add_library(${target} INTERFACE)
  target_include_directories(${target} SYSTEM INTERFACE ${headerOnly})
endfunction()

function(uses_exceptions)
  set_source_files_properties(${ARGN} PROPERTIES COMPILE_OPTIONS "-fexceptions;-frtti"
                                                 SKIP_PRECOMPILE_HEADERS ON)
endfunction()

header_only_library(cli11 CLI libcli11-dev)
header_only_library(json nlohmann nlohmann-json3-dev)
