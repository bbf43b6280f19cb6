# The libraries that Windows CE has for the player, as import libraries made from the lists of their
# exports in platform/ce: what is not on a list cannot be linked.
#
# `unit_libraries` is what player code links. In movie.exe (a target with the property
# MOVIE_UNIT_PROGRAM) these are the lists and nothing else; in a test program of the simulated unit
# it is the simulated coredll.dll, beside the desktop's own libraries that the test needs itself. A
# program that shares code with the player but stands outside of the unit has the property
# MOVIE_DESKTOP_PROGRAM.
add_library(unit_libraries INTERFACE)

# unit_import_library(NAME): the target unit_NAME from platform/ce/NAME.def.
function(unit_import_library name)
  set(list ${PROJECT_SOURCE_DIR}/platform/ce/${name}.def)
  set(library ${PROJECT_BINARY_DIR}/platform/libunit_${name}.a)
  set(plain ${PROJECT_BINARY_DIR}/platform/${name}.def)
  if(CMAKE_SYSTEM_PROCESSOR STREQUAL "i686")
    set(strip "")
    set(options -k)
  else()
    set(strip "s/@[0-9]*$//")
    set(options ${MOVIE_DLLTOOL_OPTIONS})
  endif()
  add_custom_command(
    OUTPUT ${library}
    COMMAND sed -e "${strip}" ${list} > ${plain}
    COMMAND ${MOVIE_DLLTOOL} ${options} -d ${plain} -l ${library}
    DEPENDS ${list}
    VERBATIM)
  add_custom_target(unit_${name}_made DEPENDS ${library})
  add_library(unit_${name} STATIC IMPORTED GLOBAL)
  set_target_properties(unit_${name} PROPERTIES IMPORTED_LOCATION ${library})
  add_dependencies(unit_${name} unit_${name}_made)
endfunction()

unit_import_library(coredll)
unit_import_library(ole32)
set(isUnitProgram $<BOOL:$<TARGET_PROPERTY:MOVIE_UNIT_PROGRAM>>)
target_link_libraries(unit_libraries INTERFACE $<${isUnitProgram}:unit_coredll>
                                               $<${isUnitProgram}:unit_ole32>
                                               $<${isUnitProgram}:${MOVIE_COMPILER_HELPERS}>)
if(MOVIE_BUILD_TOOLS)
  set(isDesktopProgram $<BOOL:$<TARGET_PROPERTY:MOVIE_DESKTOP_PROGRAM>>)
  target_link_libraries(unit_libraries
    INTERFACE $<$<NOT:$<OR:${isUnitProgram},${isDesktopProgram}>>:coredll>)
endif()

# Makes a program of the unit of `target`: the runtime of platform/runtime_ce.cpp and no other.
function(make_unit_program target)
  set_target_properties(${target} PROPERTIES MOVIE_UNIT_PROGRAM ON)
  target_sources(${target} PRIVATE ${PROJECT_SOURCE_DIR}/platform/runtime_ce.cpp)
  if(CMAKE_SYSTEM_PROCESSOR STREQUAL "arm")
    target_sources(${target} PRIVATE ${PROJECT_SOURCE_DIR}/platform/runtime_arm.cpp)
  endif()
  target_link_options(${target} PRIVATE -nostdlib)
endfunction()
