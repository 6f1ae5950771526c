# Headers, static libraries, find_package(RVCore) and the pkg-config files. An installed tree may be moved: nothing
# in it names the folder it was installed into.
include(CMakePackageConfigHelpers)

get_property(rooms GLOBAL PROPERTY RVCORE_ROOMS)
set(core_rooms ${rooms})
list(FILTER core_rooms EXCLUDE REGEX "^(Headless|Qt)Backend$")

set(cmake_dir ${CMAKE_INSTALL_LIBDIR}/cmake/RVCore)
set(pkgconfig_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
set(header_dir ${CMAKE_INSTALL_INCLUDEDIR}/RVCore)

# 1. Libraries and headers. The Qt backend is an export set of its own, so that a program which does not ask for it
#    needs no Qt either.
foreach(room IN LISTS rooms)
    set(export RVCoreTargets)
    if(room STREQUAL "QtBackend")
        set(export RVCoreQtTargets)
    endif()
    install(TARGETS ${RVCORE_TARGET_PREFIX}${room} EXPORT ${export}
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
        FILE_SET HEADERS DESTINATION ${header_dir})
endforeach()

# 2. find_package(RVCore [COMPONENTS QtBackend])
install(EXPORT RVCoreTargets NAMESPACE RVCore:: DESTINATION ${cmake_dir})
if(RVCORE_QT)
    install(EXPORT RVCoreQtTargets NAMESPACE RVCore:: DESTINATION ${cmake_dir})
endif()
configure_package_config_file(${PROJECT_SOURCE_DIR}/CMake/RVCoreConfig.cmake.in ${PROJECT_BINARY_DIR}/RVCoreConfig.cmake
    INSTALL_DESTINATION ${cmake_dir}
    NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/RVCoreConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/RVCoreConfig.cmake ${PROJECT_BINARY_DIR}/RVCoreConfigVersion.cmake
    DESTINATION ${cmake_dir})

# 3. pkg-config. Archives are searched in the order in which they stand, so whoever uses a room stands before it:
#    rooms register from the bottom up.
list(REVERSE core_rooms)
set(PC_CORE_LIBS "")
foreach(room IN LISTS core_rooms)
    get_target_property(output ${RVCORE_TARGET_PREFIX}${room} OUTPUT_NAME)
    string(APPEND PC_CORE_LIBS " -l${output}")
endforeach()
# The prefix is found from where the .pc file lies.
file(RELATIVE_PATH PC_PREFIX /${pkgconfig_dir} /)
string(REGEX REPLACE "/$" "" PC_PREFIX ${PC_PREFIX})
set(pc_files RVCore RVCoreHeadless)
if(RVCORE_QT)
    list(APPEND pc_files RVCoreQt)
endif()
foreach(file IN LISTS pc_files)
    configure_file(${PROJECT_SOURCE_DIR}/CMake/${file}.pc.in ${PROJECT_BINARY_DIR}/${file}.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/${file}.pc DESTINATION ${pkgconfig_dir})
endforeach()
install(FILES ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR})
