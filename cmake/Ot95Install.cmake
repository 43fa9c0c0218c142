# What `cmake --install` lays down: libraries, public headers, and a package for find_package(ot95)
# and for pkg-config.
include(CMakePackageConfigHelpers)

install(TARGETS ot95Obs ot95Oin ot95Otms EXPORT ot95Targets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
foreach(folder obs/include oin/include include)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/${folder}/ot95 DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
endforeach()
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/ot95c DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT ot95Targets NAMESPACE ot95:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/ot95)
file(WRITE ${PROJECT_BINARY_DIR}/ot95Config.cmake
  "include(\"\${CMAKE_CURRENT_LIST_DIR}/ot95Targets.cmake\")\n")
if(OT95_ILP32)
  set(CMAKE_SIZEOF_VOID_P 4)  # the package is for programs of this width; CMake saw the machine's
endif()
write_basic_package_version_file(${PROJECT_BINARY_DIR}/ot95ConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/ot95Config.cmake ${PROJECT_BINARY_DIR}/ot95ConfigVersion.cmake
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/ot95)

# For everybody without CMake: `pkg-config --cflags --libs ot95`, from wherever it was put.
set(pc_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH PC_TO_PREFIX /${pc_dir} /)
configure_file(${PROJECT_SOURCE_DIR}/cmake/ot95.pc.in ${PROJECT_BINARY_DIR}/ot95.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/ot95.pc DESTINATION ${pc_dir})

install(FILES ${PROJECT_SOURCE_DIR}/docs/ottm.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
