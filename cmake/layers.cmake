# Folders of the player as layers. Each library has an include scope of its own: a folder is seen only
# by those who link the library that stands for it. tests/layers holds the includes and the links to
# the drawing in docs/architecture.md.

# movie_layer(TARGET FOLDER): the headers of FOLDER are included as "FOLDER/name.h".
function(movie_layer target folder)
  set(scope ${PROJECT_BINARY_DIR}/scope/${target})
  cmake_path(GET folder PARENT_PATH parent)
  file(MAKE_DIRECTORY ${scope}/${parent})
  file(CREATE_LINK ${PROJECT_SOURCE_DIR}/${folder} ${scope}/${folder} SYMBOLIC)
  set_target_properties(${target} PROPERTIES movie_folder ${folder})
  set_property(GLOBAL APPEND PROPERTY movie_layers ${target})
endfunction()

# Writes one line "FOLDER FOLDER-IT-LINKS..." for each layer.
function(movie_write_layers file)
  get_property(targets GLOBAL PROPERTY movie_layers)
  set(lines "")
  foreach(target IN LISTS targets)
    get_target_property(folder ${target} movie_folder)
    get_target_property(type ${target} TYPE)
    if(type STREQUAL INTERFACE_LIBRARY)
      get_target_property(links ${target} INTERFACE_LINK_LIBRARIES)
    else()
      get_target_property(links ${target} LINK_LIBRARIES)
    endif()
    foreach(link IN LISTS links)
      if(TARGET ${link})
        get_target_property(linked ${link} movie_folder)
        if(linked)
          string(APPEND folder " ${linked}")
        endif()
      endif()
    endforeach()
    string(APPEND lines "${folder}\n")
  endforeach()
  file(WRITE ${file} "${lines}")
endfunction()
