# Functions that turn module descriptions into generated bindings and script plugins.
include_guard(GLOBAL)
set(VYR_BINDING_DIR ${PROJECT_SOURCE_DIR}/binding)
set(VYR_MANIFEST_DIRECTORY ${VYR_GENERATED_DIRECTORY}/manifests)

# What every generated file depends on besides its own description.
file(GLOB VYR_BINDING_GENERATOR CONFIGURE_DEPENDS ${VYR_BINDING_DIR}/hook.lua ${VYR_BINDING_DIR}/generator/*.lua
     ${VYR_BINDING_DIR}/shared/*.pkg)

# Wrappers call the runtime and the interpreter, but link neither: the host's copies serve them.
add_library(vyr_binding_support INTERFACE)
target_include_directories(vyr_binding_support INTERFACE ${VYR_BINDING_DIR}/support)
target_include_directories(vyr_binding_support SYSTEM INTERFACE ${LUA_INCLUDE_DIRS} ${TOLUA_INCLUDE_DIR})
if(VYROSG_EXPLICIT_COLLECTORS)
  target_compile_definitions(vyr_binding_support INTERFACE VYROSG_EXPLICIT_COLLECTORS)
endif()

# Generates and compiles one module: binding/<plugin>/<Module>.pkg becomes build/generated/generated_<plugin>_<Module>.cpp.
#   vyr_add_binding(<Module> [PLUGIN <plugin>] [LIBRARIES <target>...] [DIRECTORY <folder of the description>] [UNLISTED])
# UNLISTED modules have no manifest in the repository. The target is binding_<plugin>_<Module>; LIBRARIES are those whose headers the description includes.
function(vyr_add_binding module)
  cmake_parse_arguments(ARG "UNLISTED" "PLUGIN;DIRECTORY" "LIBRARIES" ${ARGN})
  if(NOT ARG_PLUGIN)
    set(ARG_PLUGIN vyrOSG)
  endif()
  if(NOT ARG_DIRECTORY)
    set(ARG_DIRECTORY ${VYR_BINDING_DIR}/${ARG_PLUGIN})
  endif()
  set(description ${ARG_DIRECTORY}/${module}.pkg)
  cmake_path(RELATIVE_PATH description BASE_DIRECTORY ${PROJECT_SOURCE_DIR} OUTPUT_VARIABLE shown)
  set(package ${ARG_PLUGIN}_${module})
  set(generated ${VYR_GENERATED_DIRECTORY}/generated_${package}.cpp)
  set(manifest ${VYR_MANIFEST_DIRECTORY}/${ARG_PLUGIN}/${module}.txt)
  file(MAKE_DIRECTORY ${VYR_MANIFEST_DIRECTORY}/${ARG_PLUGIN})

  # Relative $pfile lines are read from the description's own folder.
  add_custom_command(
    OUTPUT ${generated} ${manifest}
    COMMAND ${CMAKE_COMMAND} -E rm -f ${generated} ${manifest}
    COMMAND ${TOLUA_EXECUTABLE} -L ${VYR_BINDING_DIR}/hook.lua -E generator=${VYR_BINDING_DIR} -E source=${shown} -E
            manifest=${manifest} -n ${package} -o ${generated} ${module}.pkg
    # The generator's own failures end with exit code 0 and no file.
    COMMAND ${CMAKE_COMMAND} -DOUTPUT=${generated} -DSOURCE=${shown} -P ${PROJECT_SOURCE_DIR}/cmake/VyrCheckGenerated.cmake
    WORKING_DIRECTORY ${ARG_DIRECTORY}
    DEPENDS ${description} ${VYR_BINDING_GENERATOR} ${PROJECT_SOURCE_DIR}/cmake/VyrCheckGenerated.cmake
    COMMENT "Generating the binding ${package}"
    VERBATIM)

  set(target binding_${package})
  add_library(${target} OBJECT ${generated})
  target_link_libraries(${target} PRIVATE vyr_binding_support vyr_options)
  vyr_count_lines(${target})
  foreach(library Vyr::vyrLua ${ARG_LIBRARIES})
    vyr_use_headers(${target} ${library})
  endforeach()
  set_property(GLOBAL APPEND PROPERTY VYR_MODULES_${ARG_PLUGIN} ${module})

  # The interface as text, kept in the repository, so that a change of it is a readable difference.
  set(committed ${VYR_BINDING_DIR}/manifests/${ARG_PLUGIN}/${module}.txt)
  if(ARG_UNLISTED)
    return()
  endif()
  if(NOT TARGET manifests)
    add_custom_target(manifests COMMENT "Updating binding/manifests")
  endif()
  add_custom_target(
    manifest_${package}
    COMMAND ${CMAKE_COMMAND} -E copy_if_different ${manifest} ${committed}
    DEPENDS ${manifest})
  add_dependencies(manifests manifest_${package})
  if(VYR_BUILD_TESTS)
    add_test(NAME Manifest.${package} COMMAND ${CMAKE_COMMAND} -E compare_files ${manifest} ${committed})
    set_tests_properties(Manifest.${package} PROPERTIES LABELS binding)
  endif()
endfunction()

# Gives a target another one's headers and definitions without its link line.
function(vyr_use_headers target library)
  target_include_directories(${target} PRIVATE $<TARGET_PROPERTY:${library},INTERFACE_INCLUDE_DIRECTORIES>)
  target_include_directories(${target} SYSTEM PRIVATE $<TARGET_PROPERTY:${library},INTERFACE_SYSTEM_INCLUDE_DIRECTORIES>)
endfunction()

# Adds the modules that binding/<plugin>/modules.txt lists, and the header <plugin>_modules.h with their opening order.
#   vyr_add_bindings(<plugin> LIBRARIES <target>...)
# A listed module without a description is left out, with a line that says so.
function(vyr_add_bindings plugin)
  cmake_parse_arguments(ARG "" "" "LIBRARIES" ${ARGN})
  set(list ${VYR_BINDING_DIR}/${plugin}/modules.txt)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${list})
  file(STRINGS ${list} modules REGEX "^[A-Za-z]")
  # A description that appears or goes changes what is built.
  file(GLOB descriptions CONFIGURE_DEPENDS ${VYR_BINDING_DIR}/${plugin}/*.pkg)
  set(VYR_MODULE_DECLARATIONS "")
  set(VYR_MODULE_ENTRIES "")
  set(VYR_MODULE_COUNT 0)
  foreach(module ${modules})
    if(${VYR_BINDING_DIR}/${plugin}/${module}.pkg IN_LIST descriptions)
      vyr_add_binding(${module} PLUGIN ${plugin} LIBRARIES ${ARG_LIBRARIES})
      string(APPEND VYR_MODULE_DECLARATIONS "int tolua_${plugin}_${module}_open(lua_State* state);\n")
      math(EXPR VYR_MODULE_COUNT "${VYR_MODULE_COUNT} + 1")
      string(APPEND VYR_MODULE_ENTRIES "    {\"${module}\", &tolua_${plugin}_${module}_open},\n")
    else()
      message(STATUS "Binding ${plugin}: no description of ${module} yet; the module is left out")
    endif()
  endforeach()
  set(VYR_PLUGIN ${plugin})
  configure_file(${PROJECT_SOURCE_DIR}/cmake/VyrModules.h.in ${VYR_GENERATED_DIRECTORY}/${plugin}_modules.h @ONLY)
endfunction()

# Gives a target the shape of a script plugin: what it links, exports and where it looks for its libraries.
#   vyr_shape_script_plugin(<target> <plugin> LIBRARIES <target>... [EXPORTS <symbol pattern>...])
# Exported are initPlugin, the open functions of the modules and the patterns of EXPORTS.
function(vyr_shape_script_plugin target plugin)
  cmake_parse_arguments(ARG "" "" "LIBRARIES;EXPORTS" ${ARGN})
  target_link_libraries(${target} PRIVATE vyr_binding_support vyr_options)
  target_include_directories(${target} PRIVATE ${VYR_GENERATED_DIRECTORY})
  vyr_count_lines(${target})
  # vyrLua serves the runtime's symbols; its own link line would bring in an interpreter.
  vyr_use_headers(${target} Vyr::vyrLua)
  target_link_libraries(${target} PRIVATE $<TARGET_FILE:Vyr::vyrLua> ${ARG_LIBRARIES})
  add_dependencies(${target} Vyr::vyrLua)

  set(VYR_EXPORTED "")
  foreach(symbol initPlugin ${ARG_EXPORTS} "_Z*tolua_${plugin}_*_openP9lua_State" "_Z*luaopen_${plugin}_*P9lua_State")
    string(APPEND VYR_EXPORTED "    ${symbol};\n")
  endforeach()
  set(script ${CMAKE_CURRENT_BINARY_DIR}/${target}.map)
  file(CONFIGURE OUTPUT ${script} CONTENT "{\n  global:\n@VYR_EXPORTED@  local:\n    *;\n};\n" @ONLY)
  target_link_options(${target} PRIVATE "LINKER:--version-script=${script}" LINKER:--as-needed)
  set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${script})
  set_target_properties(
    ${target}
    PROPERTIES BUILD_RPATH "$ORIGIN/../.."
               BUILD_RPATH_USE_ORIGIN ON
               INSTALL_RPATH "$ORIGIN/../.."
               SKIP_BUILD_RPATH OFF
               BUILD_WITH_INSTALL_RPATH ON)
endfunction()

# Links a script plugin lib<plugin>_luaplugin.so from its own sources and the objects of its modules.
#   vyr_add_script_plugin(<plugin> SOURCES <file>... LIBRARIES <target>... [EXPORTS <symbol pattern>...])
function(vyr_add_script_plugin plugin)
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBRARIES;EXPORTS" ${ARGN})
  set(target ${plugin}_luaplugin)
  get_property(modules GLOBAL PROPERTY VYR_MODULES_${plugin})
  set(objects "")
  foreach(module ${modules})
    list(APPEND objects $<TARGET_OBJECTS:binding_${plugin}_${module}>)
  endforeach()
  add_library(${target} SHARED ${ARG_SOURCES} ${objects})
  vyr_shape_script_plugin(${target} ${plugin} LIBRARIES ${ARG_LIBRARIES} EXPORTS ${ARG_EXPORTS})
  set_target_properties(${target} PROPERTIES LIBRARY_OUTPUT_DIRECTORY ${VYR_PLUGIN_OUTPUT_DIRECTORY})
  install(TARGETS ${target} LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/vyr/plugins)
endfunction()
