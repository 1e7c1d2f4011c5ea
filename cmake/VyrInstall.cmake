# Installs the package description by which other projects find the toolkit.
include(CMakePackageConfigHelpers)

set(VYR_CONFIG_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Vyr)
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/VyrConfig.cmake.in ${PROJECT_BINARY_DIR}/VyrConfig.cmake
                              INSTALL_DESTINATION ${VYR_CONFIG_DESTINATION})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/VyrConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(EXPORT VyrTargets NAMESPACE Vyr:: DESTINATION ${VYR_CONFIG_DESTINATION})
install(FILES ${PROJECT_BINARY_DIR}/VyrConfig.cmake ${PROJECT_BINARY_DIR}/VyrConfigVersion.cmake
        DESTINATION ${VYR_CONFIG_DESTINATION})
