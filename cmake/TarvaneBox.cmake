# A box is one library of the program: a folder, a target, an include root.
# Includes name the box ("Records/ChannelColors.h"), and its headers are found only by the
# boxes that link it, so that an include against the direction of the data does not
# compile. Each header also compiles alone: as the first include of its own source (Scripts/lint
# sees to that), which Scripts/tidy reads without precompiled headers, or where it has none, as a
# source of the target headers-alone.

add_custom_target(headers-alone)

add_library(TarvaneFlags INTERFACE)
target_compile_options(TarvaneFlags INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion
  -Wnon-virtual-dtor -Woverloaded-virtual -Wold-style-cast -Wimplicit-fallthrough
  # A warning that another compiler or a higher optimisation finds first keeps no user from the program.
  $<$<NOT:$<CONFIG:Release>>:-Werror>
  # Floating point as written: results may not depend on the optimiser's mood.
  -ffp-contract=off
  # GCC 12 sees uninitialised members in moved std::variant alternatives where there are none.
  $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
# What users run doesn't say where it was built, and is the same wherever that is; and the C library
# checks what it is given to write into.
target_compile_options(TarvaneFlags INTERFACE "$<$<CONFIG:Release>:\
-ffile-prefix-map=${CMAKE_SOURCE_DIR}=.;-ffile-prefix-map=${CMAKE_BINARY_DIR}=build;\
-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>")
target_compile_definitions(TarvaneFlags INTERFACE QT_NO_KEYWORDS)
if(TARVANE_SANITIZE)
  target_compile_options(TarvaneFlags INTERFACE
    -fsanitize=${TARVANE_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  target_link_options(TarvaneFlags INTERFACE -fsanitize=${TARVANE_SANITIZE})
endif()

# tarvane_glob(<variable> <patterns…>): the files that match below the present folder. A pattern
# that matches none is a mistake.
function(tarvane_glob variable)
  set(found)
  foreach(pattern IN LISTS ARGN)
    file(GLOB_RECURSE files CONFIGURE_DEPENDS "${pattern}")
    if(NOT files)
      message(FATAL_ERROR "No file matches ${pattern} in ${CMAKE_CURRENT_SOURCE_DIR}.")
    endif()
    list(APPEND found ${files})
  endforeach()
  set(${variable} ${found} PARENT_SCOPE)
endfunction()

# tarvane_precompile(<target> <headers, as an include spells them…>)
# A header that comes by its own name and not by a path keeps the tree's place out of what is
# compiled, so that ccache finds it in another clone.
function(tarvane_precompile target)
  list(TRANSFORM ARGN REPLACE "^([^<].*)$" "\"\\1\"")
  target_precompile_headers(${target} PRIVATE ${ARGN})
  # What ccache asks for: the file in which the use of a precompiled header shows, and one that
  # is the same whenever it is made.
  target_compile_options(${target} PRIVATE
    $<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>
    "$<$<CXX_COMPILER_ID:Clang>:SHELL:-Xclang -fno-pch-timestamp>")
endfunction()

# tarvane_box(<name> FOLDERS <folders…> [PUBLIC <boxes and libraries…>] [PRIVATE <the same…>]
#             [EXCEPT <regex of paths in the folders that are no part of it>]
#             [ALONE <regex of sources that are in no batch>]
#             [INTERNAL <regex of headers that only the box itself includes>]
#             [SOURCES <made ones…>] [PRECOMPILE <headers…>])
# All sources in the folders and below them, TARVANE_BATCH_SIZE of them compiled as one. The include
# root has each folder under the name that is given here, and nothing else.
function(tarvane_box name)
  cmake_parse_arguments(PARSE_ARGV 1 box "" "ALONE;EXCEPT;INTERNAL"
    "FOLDERS;PUBLIC;PRIVATE;SOURCES;PRECOMPILE")
  set(root "${CMAKE_BINARY_DIR}/include/${name}")
  add_library(${name} STATIC ${box_SOURCES})
  if(CMAKE_AUTOMOC)
    set_target_properties(${name} PROPERTIES AUTOMOC_EXECUTABLE "${CMAKE_BINARY_DIR}/moc")  # of moc.in
  endif()
  foreach(folder IN LISTS box_FOLDERS)
    get_filename_component(parent "${root}/${folder}" DIRECTORY)
    file(MAKE_DIRECTORY "${parent}")
    file(CREATE_LINK "${CMAKE_CURRENT_SOURCE_DIR}/${folder}" "${root}/${folder}" SYMBOLIC)

    tarvane_glob(sources "${folder}/*.cpp")
    tarvane_glob(headers "${folder}/*.h")
    if(box_EXCEPT)
      list(FILTER sources EXCLUDE REGEX "${box_EXCEPT}")
      list(FILTER headers EXCLUDE REGEX "${box_EXCEPT}")
    endif()
    list(APPEND all_sources ${sources})
    list(APPEND all_headers ${headers})
  endforeach()
  if(TARVANE_BATCH_SIZE GREATER 1)
    set(alone)
    if(box_ALONE)
      set(alone ${all_sources})
      list(FILTER alone INCLUDE REGEX "${box_ALONE}")
      list(REMOVE_ITEM all_sources ${alone})
    endif()
    tarvane_batches(batches ${name} "${CMAKE_CURRENT_SOURCE_DIR}" ${TARVANE_BATCH_SIZE} ${all_sources})
    set(all_sources ${batches} ${alone})
  endif()
  target_sources(${name} PRIVATE ${all_sources} ${all_headers})
  target_link_libraries(${name} PUBLIC ${box_PUBLIC} PRIVATE TarvaneFlags ${box_PRIVATE})
  target_include_directories(${name} PUBLIC "${root}")
  if(box_PRECOMPILE)
    tarvane_precompile(${name} ${box_PRECOMPILE})
  endif()
  if(box_INTERNAL)
    list(FILTER all_headers EXCLUDE REGEX "${box_INTERNAL}")
  endif()
  tarvane_headers_alone(${name} ${all_headers})
endfunction()

# tarvane_headers_alone(<box> <its headers, below the present folder…>): a source for each that has
# none of its name, which includes it and nothing else, and one that includes all of them. They are
# compiled as a user of the box.
function(tarvane_headers_alone box)
  set(folder "${CMAKE_CURRENT_BINARY_DIR}/alone")
  set(sources "${folder}/${box}.cpp")
  set(all)
  foreach(header IN LISTS ARGN)
    file(RELATIVE_PATH spelling "${CMAKE_CURRENT_SOURCE_DIR}" "${header}")
    string(APPEND all "#include \"${spelling}\"\n")
    string(REGEX REPLACE "\\.h$" ".cpp" own "${header}")
    if(NOT EXISTS "${own}")
      set(source "${folder}/${spelling}.cpp")
      file(CONFIGURE OUTPUT "${source}" CONTENT "#include \"${spelling}\"\n")
      list(APPEND sources "${source}")
    endif()
  endforeach()
  file(CONFIGURE OUTPUT "${folder}/${box}.cpp" CONTENT "${all}")
  add_library(${box}HeadersAlone OBJECT EXCLUDE_FROM_ALL ${sources})
  set_target_properties(${box}HeadersAlone PROPERTIES AUTOMOC OFF POSITION_INDEPENDENT_CODE ON)
  target_link_libraries(${box}HeadersAlone PRIVATE TarvaneFlags)
  # What a user of the box sees of it, without waiting for its library.
  target_include_directories(${box}HeadersAlone SYSTEM PRIVATE
    $<TARGET_PROPERTY:${box},INTERFACE_INCLUDE_DIRECTORIES>)
  target_compile_definitions(${box}HeadersAlone PRIVATE
    $<TARGET_PROPERTY:${box},INTERFACE_COMPILE_DEFINITIONS>)
  add_dependencies(headers-alone ${box}HeadersAlone)
endfunction()
