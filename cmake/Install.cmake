# What an installed tree offers to find_package(Vidtips) and pkg-config.
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/Vidtips)
if(VIDTIPS_DECLARATIVE STREQUAL "system")
    install(TARGETS VidtipsDeclarative EXPORT VidtipsTargets COMPONENT dev)
endif()
install(EXPORT VidtipsTargets NAMESPACE Vidtips:: DESTINATION ${package_dir} COMPONENT dev)
set(VIDTIPS_CONTENT_DIR ${CMAKE_INSTALL_DATADIR}/vidtips/Content)
configure_package_config_file(cmake/VidtipsConfig.cmake.in ${PROJECT_BINARY_DIR}/VidtipsConfig.cmake
                              INSTALL_DESTINATION ${package_dir} PATH_VARS VIDTIPS_CONTENT_DIR)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/VidtipsConfigVersion.cmake
                                 COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/VidtipsConfig.cmake ${PROJECT_BINARY_DIR}/VidtipsConfigVersion.cmake
        DESTINATION ${package_dir} COMPONENT dev)

set(VIDTIPS_PC_REQUIRES "Qt5Core Qt5Gui Qt5Widgets Qt5Xml Qt5Qml Qt5Quick")
set(VIDTIPS_PC_LIBS "-lVidtips -lVidtipsDeclarative")
if(VIDTIPS_DECLARATIVE STREQUAL "system")
    set(VIDTIPS_PC_REQUIRES "Qt5Core Qt5Gui Qt5Widgets Qt5Xml Qt5Declarative")
    set(VIDTIPS_PC_LIBS "-lVidtips")
endif()
if(NOT BUILD_SHARED_LIBS)
    string(APPEND VIDTIPS_PC_REQUIRES " Qt5Network Qt5QmlModels Qt5QmlWorkerScript Qt5XmlPatterns zlib"
                                      " libavformat libavcodec libavutil libswscale")
    list(TRANSFORM CMAKE_DL_LIBS PREPEND " -l" OUTPUT_VARIABLE libraries)
    string(APPEND VIDTIPS_PC_LIBS ${libraries})
    set(VIDTIPS_PC_DEFINES " -DVIDTIPS_STATIC_DEFINE -DVIDTIPS_DECLARATIVE_STATIC_DEFINE")
elseif(NOT CMAKE_SKIP_INSTALL_RPATH)
    # Nothing else tells a host that is built by pkg-config where its library is.
    string(PREPEND VIDTIPS_PC_LIBS [[-Wl,-rpath,${libdir} ]])
endif()
# Relative to the file, so that the installed tree may be moved; a folder that is set as an absolute path stays there.
file(RELATIVE_PATH to_prefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
set(VIDTIPS_PC_PREFIX "\${pcfiledir}/${to_prefix}")
if(IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}")
    set(VIDTIPS_PC_PREFIX ${CMAKE_INSTALL_PREFIX})
endif()
foreach(dir LIBDIR INCLUDEDIR DATADIR)
    set(VIDTIPS_PC_${dir} "\${prefix}/${CMAKE_INSTALL_${dir}}")
    if(IS_ABSOLUTE "${CMAKE_INSTALL_${dir}}")
        set(VIDTIPS_PC_${dir} ${CMAKE_INSTALL_${dir}})
    endif()
endforeach()
configure_file(cmake/vidtips.pc.in ${PROJECT_BINARY_DIR}/vidtips.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/vidtips.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT dev)
