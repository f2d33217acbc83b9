# Installs the two libraries, their headers and the package that find_package(VEXA_gps) reads: its targets are
# VEXA_gps::host, which every host links, and VEXA_gps::gps, for hosts that do not load the module at run time.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)
set(headers ${CMAKE_INSTALL_INCLUDEDIR}/vexa)
set(package ${CMAKE_INSTALL_LIBDIR}/cmake/VEXA_gps)

set_target_properties(VEXA_gps PROPERTIES INSTALL_RPATH "$ORIGIN")
install(TARGETS vexa_host VEXA_gps EXPORT VEXA_gps INCLUDES DESTINATION ${headers})
install(DIRECTORY framework host module DESTINATION ${headers} FILES_MATCHING PATTERN "*.h"
    PATTERN resourcescript EXCLUDE PATTERN posix EXCLUDE PATTERN win32 EXCLUDE)
install(EXPORT VEXA_gps NAMESPACE VEXA_gps:: FILE VEXA_gpsTargets.cmake DESTINATION ${package})

file(WRITE ${PROJECT_BINARY_DIR}/VEXA_gpsConfig.cmake "include(\${CMAKE_CURRENT_LIST_DIR}/VEXA_gpsTargets.cmake)\n")
write_basic_package_version_file(${PROJECT_BINARY_DIR}/VEXA_gpsConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/VEXA_gpsConfig.cmake ${PROJECT_BINARY_DIR}/VEXA_gpsConfigVersion.cmake
    DESTINATION ${package})
