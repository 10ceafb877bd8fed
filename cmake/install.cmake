# Consumers take an installed zor by find_package(zor CONFIG REQUIRED) or by pkg-config.
include(CMakePackageConfigHelpers)

install(TARGETS zor EXPORT zorTargets
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
        INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/zor DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
        FILES_MATCHING PATTERN "*.h" PATTERN "test_*.h" EXCLUDE)
install(EXPORT zorTargets NAMESPACE zor:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/zor)

configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/zorConfig.cmake.in
                              ${PROJECT_BINARY_DIR}/zorConfig.cmake
                              INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/zor)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/zorConfigVersion.cmake
                                 COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/zorConfig.cmake ${PROJECT_BINARY_DIR}/zorConfigVersion.cmake
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/zor)

configure_file(${PROJECT_SOURCE_DIR}/cmake/zor.pc.in ${PROJECT_BINARY_DIR}/zor.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/zor.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
