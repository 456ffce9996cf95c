# Finds Google Highway, which Debian ships with a pkg-config file only.
find_package(PkgConfig REQUIRED)
pkg_check_modules(PC_HWY QUIET IMPORTED_TARGET libhwy)
include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(hwy REQUIRED_VARS PC_HWY_FOUND VERSION_VAR PC_HWY_VERSION)
if(hwy_FOUND AND NOT TARGET hwy::hwy)
    add_library(hwy::hwy INTERFACE IMPORTED)
    target_link_libraries(hwy::hwy INTERFACE PkgConfig::PC_HWY)
endif()
