# Windows resources on both platforms, from one source. On Linux the module contains the file that windres makes, in an
# ELF note whose owner is "Win32".
if(NOT WIN32)
  enable_language(ASM)
  find_program(WINDRES x86_64-w64-mingw32-windres REQUIRED)
endif()

# The version, for files that include resources/version_info.h.
set(version_info ${PROJECT_BINARY_DIR}/generated/resources/version_info.h)
configure_file(${PROJECT_SOURCE_DIR}/src/resources/version_info.h.in ${version_info} @ONLY)

# embed_resources(TARGET FILE.rc [FILES...]) puts the resources into TARGET, or, if that is an interface library, into the
# targets that link it. Paths in FILE.rc start at src. FILE.rc must name its own encoding (#pragma code_page), since CMake
# passes no such flag to windres. FILES are the files that it reads besides its own folder and the version.
function(embed_resources target source)
  cmake_path(ABSOLUTE_PATH source)
  cmake_path(GET source PARENT_PATH folder)
  file(GLOB beside CONFIGURE_DEPENDS ${folder}/*.h ${folder}/*.bmp ${folder}/*.ico)
  set(folders ${PROJECT_SOURCE_DIR}/src ${PROJECT_BINARY_DIR}/generated)
  set(objects ${target}_resources)
  if(WIN32)
    add_library(${objects} OBJECT ${source})
    target_include_directories(${objects} PRIVATE ${folders})
    set_source_files_properties(${source} PROPERTIES OBJECT_DEPENDS "${beside};${version_info};${ARGN}")
  else()
    set(compiled ${CMAKE_CURRENT_BINARY_DIR}/${target}.res)
    list(TRANSFORM folders PREPEND -I OUTPUT_VARIABLE includes)
    add_custom_command(
      OUTPUT ${compiled}
      COMMAND ${WINDRES} ${includes} -O res ${source} ${compiled}
      DEPENDS ${source} ${beside} ${version_info} ${ARGN}
      VERBATIM)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/resources.S.in ${objects}.S @ONLY)
    add_library(${objects} OBJECT ${CMAKE_CURRENT_BINARY_DIR}/${objects}.S)
    set_source_files_properties(${CMAKE_CURRENT_BINARY_DIR}/${objects}.S PROPERTIES OBJECT_DEPENDS ${compiled})
  endif()

  get_target_property(type ${target} TYPE)
  if(type STREQUAL INTERFACE_LIBRARY)
    set(scope INTERFACE)
  else()
    set(scope PRIVATE)
  endif()
  target_sources(${target} ${scope} $<TARGET_OBJECTS:${objects}>)
endfunction()
