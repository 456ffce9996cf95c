# Installs the library, its headers, and what find_package and pkg-config need to find them.
include(CMakePackageConfigHelpers)

install(TARGETS KYCollisionBase
        EXPORT KYCollisionBaseTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY include/KYCollisionBase
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
        FILES_MATCHING PATTERN "*.h"
        PATTERN "widgets" EXCLUDE)
install(EXPORT KYCollisionBaseTargets
        NAMESPACE KYCollisionBase::
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/KYCollisionBase)

# The controls are a component of the package: who does not ask for it needs no Qt.
if(KYCB_BUILD_UI)
    install(TARGETS KYCollisionUi
            EXPORT KYCollisionBaseUiTargets
            LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
            INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
    foreach(folder platform ui)
        install(DIRECTORY include/KYCollisionBase/${folder}/widgets
                DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/KYCollisionBase/${folder}
                FILES_MATCHING PATTERN "*.h")
    endforeach()
    install(EXPORT KYCollisionBaseUiTargets
            NAMESPACE KYCollisionBase::
            DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/KYCollisionBase)
endif()

configure_package_config_file(
    cmake/KYCollisionBaseConfig.cmake.in
    "${CMAKE_CURRENT_BINARY_DIR}/KYCollisionBaseConfig.cmake"
    INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/KYCollisionBase)
write_basic_package_version_file(
    "${CMAKE_CURRENT_BINARY_DIR}/KYCollisionBaseConfigVersion.cmake"
    COMPATIBILITY SameMinorVersion)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/KYCollisionBaseConfig.cmake"
              "${CMAKE_CURRENT_BINARY_DIR}/KYCollisionBaseConfigVersion.cmake"
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/KYCollisionBase)

# Relative to the file itself, so that the installed tree can be moved.
file(RELATIVE_PATH KYCB_PC_TO_PREFIX "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
configure_file(cmake/KYCollisionBase.pc.in "${CMAKE_CURRENT_BINARY_DIR}/KYCollisionBase.pc" @ONLY)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/KYCollisionBase.pc"
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
