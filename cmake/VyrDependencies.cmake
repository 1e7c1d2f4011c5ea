# Finds every library that the project calls and gives each an imported target.
find_package(PkgConfig REQUIRED)
find_package(Threads REQUIRED)
find_package(OpenGL REQUIRED COMPONENTS OpenGL EGL GLX)

pkg_check_modules(APR REQUIRED IMPORTED_TARGET apr-1)
pkg_check_modules(BULLET REQUIRED IMPORTED_TARGET bullet-float64)
pkg_check_modules(LUA REQUIRED IMPORTED_TARGET lua5.1-c++)
pkg_check_modules(OSG REQUIRED IMPORTED_TARGET openscenegraph)
pkg_check_modules(SQLITE REQUIRED IMPORTED_TARGET sqlite3)
find_package(nlohmann_json 3.11 REQUIRED)

find_program(TOLUA_EXECUTABLE NAMES tolua++5.1 REQUIRED)
find_library(TOLUA_LIBRARY NAMES tolua++5.1 REQUIRED)
find_path(TOLUA_INCLUDE_DIR NAMES tolua++.h REQUIRED)
add_library(Tolua::Tolua STATIC IMPORTED)
set_target_properties(Tolua::Tolua PROPERTIES IMPORTED_LOCATION ${TOLUA_LIBRARY})
target_include_directories(Tolua::Tolua SYSTEM INTERFACE ${TOLUA_INCLUDE_DIR})

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE_PROGRAM})
  set(CMAKE_C_COMPILER_LAUNCHER ${CCACHE_PROGRAM})
endif()
