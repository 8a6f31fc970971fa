# What was compiled once is not compiled again, also in another clone of the tree: paths below the
# tree go into ccache's hash as relative ones, and so do the folders in which compilers run.
# Debug information then names the clone that compiled first.

find_program(TARVANE_CCACHE ccache)
if(TARVANE_CCACHE AND NOT DEFINED CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER
    ${CMAKE_COMMAND} -E env
    CCACHE_BASEDIR=${CMAKE_SOURCE_DIR}
    CCACHE_NOHASHDIR=1
    # What a source includes is known from its last compilation; no preprocessor runs first.
    CCACHE_DEPEND=1
    # What ccache asks for to keep files that begin with a precompiled header.
    CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
    ${CMAKE_SOURCE_DIR}/Scripts/cached-compiler ${TARVANE_CCACHE})
endif()
