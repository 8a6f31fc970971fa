# A box is one library of the program: a folder, a target, an include root.
# Its headers are found only by the boxes that link it, so that an include
# against the direction of the data does not compile. Each header is also
# compiled alone (target all_verify_interface_header_sets).

set(CMAKE_VERIFY_INTERFACE_HEADER_SETS ON)

add_library(TarvaneFlags INTERFACE)
target_compile_options(TarvaneFlags INTERFACE
  -Wall -Wextra -Wpedantic -Werror -Wshadow -Wconversion -Wsign-conversion
  -Wnon-virtual-dtor -Woverloaded-virtual -Wold-style-cast -Wimplicit-fallthrough
  # Floating point as written: results may not depend on the optimiser's mood.
  -ffp-contract=off
  # GCC 12 sees uninitialised members in moved std::variant alternatives where there are none.
  $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
target_compile_definitions(TarvaneFlags INTERFACE QT_NO_KEYWORDS)
if(TARVANE_SANITIZE)
  target_compile_options(TarvaneFlags INTERFACE
    -fsanitize=${TARVANE_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  target_link_options(TarvaneFlags INTERFACE -fsanitize=${TARVANE_SANITIZE})
endif()

# tarvane_box(<name> ROOT <include root> HEADERS … SOURCES … [PUBLIC …] [PRIVATE …])
function(tarvane_box name)
  cmake_parse_arguments(PARSE_ARGV 1 box "" "ROOT" "HEADERS;SOURCES;PUBLIC;PRIVATE")
  add_library(${name} STATIC ${box_SOURCES})
  target_sources(${name} PUBLIC FILE_SET HEADERS BASE_DIRS ${box_ROOT} FILES ${box_HEADERS})
  target_link_libraries(${name} PUBLIC ${box_PUBLIC} PRIVATE TarvaneFlags ${box_PRIVATE})
endfunction()
