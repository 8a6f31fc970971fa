# tarvane_batches(<variable> <name> <root> <size> <sources…>)
# Sources that each include <size> of those given: what these have in common, above all the templates
# that each of them instantiates, is compiled once a batch. A batch names its sources below the root,
# an include folder, so that ccache knows it again in another clone of the tree.
function(tarvane_batches variable name root size)
  set(sources ${ARGN})
  list(SORT sources)
  set(batches)
  set(number 0)
  while(sources)
    list(SUBLIST sources 0 ${size} batch)
    list(REMOVE_ITEM sources ${batch})
    set(includes)
    foreach(source IN LISTS batch)
      file(RELATIVE_PATH spelling "${root}" "${source}")
      string(APPEND includes "#include \"${spelling}\"\n")
    endforeach()
    math(EXPR number "${number} + 1")
    file(CONFIGURE OUTPUT "${CMAKE_CURRENT_BINARY_DIR}/${name}/Batch${number}.cpp"
      CONTENT "${includes}")
    list(APPEND batches "${CMAKE_CURRENT_BINARY_DIR}/${name}/Batch${number}.cpp")
  endwhile()
  set(${variable} ${batches} PARENT_SCOPE)
endfunction()
