# What `cmake --install` lays down: libraries, public headers, and packages for find_package(ot95)
# and for pkg-config. None of it holds a path: it works from wherever it is put.
include(CMakePackageConfigHelpers)

install(TARGETS ot95Obs ot95Oin ot95Otms EXPORT ot95Targets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
foreach(folder obs/include oin/include include)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/${folder}/ot95 DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
endforeach()
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/ot95c DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/ot95)
install(EXPORT ot95Targets NAMESPACE ot95:: DESTINATION ${package_dir})
if(OT95_ILP32)
  set(CMAKE_SIZEOF_VOID_P 4)  # the package is for programs of this width; CMake saw the machine's
endif()
write_basic_package_version_file(${PROJECT_BINARY_DIR}/ot95ConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_SOURCE_DIR}/cmake/ot95Config.cmake
  ${PROJECT_BINARY_DIR}/ot95ConfigVersion.cmake DESTINATION ${package_dir})

# For everybody without CMake: `pkg-config --cflags --libs ot95`, one file a library.
set(pc_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH PC_TO_PREFIX /${pc_dir} /)
function(ot95_pkgconfig PC_NAME PC_LIBRARY PC_TEXT PC_REQUIRES)
  set(PC_PRIVATE "")
  if(NOT BUILD_SHARED_LIBS)
    set(PC_PRIVATE " -lstdc++")  # which a linker for C doesn't bring along
  endif()
  configure_file(${PROJECT_SOURCE_DIR}/cmake/ot95.pc.in ${PROJECT_BINARY_DIR}/${PC_NAME}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${PC_NAME}.pc DESTINATION ${pc_dir})
endfunction()
ot95_pkgconfig(ot95 ot95Otms "${PROJECT_DESCRIPTION}" "ot95-oin ot95-obs")
ot95_pkgconfig(ot95-oin ot95Oin "${PROJECT_DESCRIPTION}, internationalisation" ot95-obs)
ot95_pkgconfig(ot95-obs ot95Obs "${PROJECT_DESCRIPTION}, base services" "")
