# How every target of the project is compiled, in one place.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

# Float arithmetic gives the same bits everywhere: no contraction, and never the x87.
add_compile_options(-ffp-contract=off)
# What a library exports isn't replaced from outside, so that its own calls can be direct ones.
add_compile_options(-fno-semantic-interposition)
if(OT95_ILP32)
  # The compiler's 32-bit packages don't bring the kernel's headers; the machine's own serve both.
  add_compile_options("SHELL:-idirafter /usr/include/${CMAKE_LIBRARY_ARCHITECTURE}")
  set(CMAKE_LIBRARY_ARCHITECTURE i386-linux-gnu)
  add_compile_options(-m32 -msse2 -mfpmath=sse)
  add_link_options(-m32)
endif()
if(OT95_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()
if(OT95_SANITIZE_THREADS)
  add_compile_options(-fsanitize=thread -fno-omit-frame-pointer)
  add_link_options(-fsanitize=thread)
endif()
if(OT95_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link -Wno-unknown-attributes)
endif()

# A symbol that is one for the whole process would keep its library loaded for ever.
include(CheckCXXCompilerFlag)
check_cxx_compiler_flag(-fno-gnu-unique OT95_HAS_GNU_UNIQUE)

add_library(ot95_warnings INTERFACE)
target_compile_options(ot95_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow
  $<$<BOOL:${OT95_WERROR}>:-Werror>)

# One of the three libraries: an object library for tests of internals, and the library of it that
# users link, as ot95::<ALIAS> or by its own name.
function(ot95_library name)
  cmake_parse_arguments(ARG "" "ALIAS" "SOURCES;INCLUDE;DEPENDS" ${ARGN})
  add_library(${name}_objects OBJECT ${ARG_SOURCES})
  target_include_directories(${name}_objects PUBLIC
    ${CMAKE_CURRENT_SOURCE_DIR}/${ARG_INCLUDE} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
  target_link_libraries(${name}_objects PRIVATE ot95_warnings)
  if(OT95_HAS_GNU_UNIQUE)
    target_compile_options(${name}_objects PRIVATE -fno-gnu-unique)
  endif()
  foreach(dependency IN LISTS ARG_DEPENDS)
    target_include_directories(${name}_objects PUBLIC
      $<TARGET_PROPERTY:${dependency},INTERFACE_INCLUDE_DIRECTORIES>)
  endforeach()
  add_library(${name} $<TARGET_OBJECTS:${name}_objects>)
  add_library(ot95::${name} ALIAS ${name})
  add_library(ot95::${ARG_ALIAS} ALIAS ${name})
  target_include_directories(${name} PUBLIC
    $<BUILD_INTERFACE:${CMAKE_CURRENT_SOURCE_DIR}/${ARG_INCLUDE}>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
  target_link_libraries(${name} PUBLIC ${ARG_DEPENDS})
  # Installed siblings find each other wherever they are put.
  set_target_properties(${name} PROPERTIES EXPORT_NAME ${ARG_ALIAS}
    VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR} INSTALL_RPATH "$ORIGIN")
  if(BUILD_SHARED_LIBS)
    ot95_shared(${name})
  endif()
endfunction()

# Names carry the version that brought them, see cmake/ot95.map.
function(ot95_shared name)
  set(map ${PROJECT_SOURCE_DIR}/cmake/ot95.map)
  target_link_options(${name} PRIVATE
    -Wl,-z,relro -Wl,-z,now -Wl,--version-script=${map})
  set_property(TARGET ${name} APPEND PROPERTY LINK_DEPENDS ${map})
  if(NOT OT95_FUZZ)  # there the sanitizers are in the programs alone
    target_link_options(${name} PRIVATE -Wl,--no-undefined)
  endif()
endfunction()
