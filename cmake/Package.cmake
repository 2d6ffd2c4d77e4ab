# Debian packages by CPack, one for each component of the install rules: cpack --config build/package/CPackConfig.cmake.
# Tests/Support/packages builds and tries them.
set(VIDTIPS_PACKAGE_MAINTAINER "Vidtips developers <vidtips@localhost>" CACHE STRING
    "Who answers for the packages, as Debian has it: Name <address>")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME vidtips)
# Each package has a synopsis of its own.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_PACKAGE_VENDOR Corvale)
set(CPACK_PACKAGE_CONTACT ${VIDTIPS_PACKAGE_MAINTAINER})
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_STRIP_FILES TRUE)
set(CPACK_VERBATIM_VARIABLES TRUE)

set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_COMPONENTS_ALL runtime codecs dev tools)
if(VIDTIPS_BUILD_EXAMPLES)
    list(APPEND CPACK_COMPONENTS_ALL data examples)
endif()
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION TRUE)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS TRUE)
# A dependency on a library of ours is found in the build tree, where the library has no package yet.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS TRUE)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY >=)

set(version "${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}")
set(library libvidtips${PROJECT_VERSION_MAJOR})

# vidtips_package(component package section summary description…): how a component becomes a package.
# Its copyright and changelogs go with it.
function(vidtips_package component package section summary)
    string(TOUPPER ${component} COMPONENT)
    list(JOIN ARGN "\n" description)
    set(CPACK_DEBIAN_${COMPONENT}_PACKAGE_NAME ${package} PARENT_SCOPE)
    set(CPACK_DEBIAN_${COMPONENT}_PACKAGE_SECTION ${section} PARENT_SCOPE)
    set(CPACK_COMPONENT_${COMPONENT}_DESCRIPTION "${summary}\n${description}" PARENT_SCOPE)

    set(doc ${CMAKE_INSTALL_DATADIR}/doc/${package})
    install(FILES ${PROJECT_SOURCE_DIR}/cmake/debian/copyright DESTINATION ${doc} COMPONENT ${component}
            EXCLUDE_FROM_ALL)
    install(FILES ${PROJECT_BINARY_DIR}/debian/changelog.gz ${PROJECT_BINARY_DIR}/debian/changelog.Debian.gz
            DESTINATION ${doc} COMPONENT ${component} EXCLUDE_FROM_ALL)
    if(EXISTS ${PROJECT_SOURCE_DIR}/cmake/debian/${package}.lintian-overrides)
        install(FILES ${PROJECT_SOURCE_DIR}/cmake/debian/${package}.lintian-overrides
                DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides RENAME ${package} COMPONENT ${component}
                EXCLUDE_FROM_ALL)
    endif()
endfunction()

# Debian wants both changelogs compressed; without gzip there is nothing to make packages with either.
find_program(GZIP gzip)
if(NOT GZIP)
    return()
endif()
function(vidtips_compress input output)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${input})
    execute_process(COMMAND ${GZIP} -9nc ${input} OUTPUT_FILE ${output} COMMAND_ERROR_IS_FATAL ANY)
endfunction()
file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/debian)
file(READ CHANGELOG.md changes)
if(NOT changes MATCHES "## ${PROJECT_VERSION} [^0-9]*([0-9]+-[0-9]+-[0-9]+)")
    message(FATAL_ERROR "CHANGELOG.md has no dated section for version ${PROJECT_VERSION}")
endif()
execute_process(COMMAND date -u -R -d ${CMAKE_MATCH_1} OUTPUT_VARIABLE date OUTPUT_STRIP_TRAILING_WHITESPACE
                COMMAND_ERROR_IS_FATAL ANY)
file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/debian/changelog.Debian @ONLY CONTENT
"vidtips (@version@) stable; urgency=medium

  * Version @PROJECT_VERSION@. What it brings stands in changelog.gz.

 -- @VIDTIPS_PACKAGE_MAINTAINER@  @date@
")
vidtips_compress(${PROJECT_SOURCE_DIR}/CHANGELOG.md ${PROJECT_BINARY_DIR}/debian/changelog.gz)
vidtips_compress(${PROJECT_BINARY_DIR}/debian/changelog.Debian ${PROJECT_BINARY_DIR}/debian/changelog.Debian.gz)

vidtips_package(runtime ${library} libs "rich, animated tooltips for the commands of an application"
    "Vidtips shows a small window beside a command that says what the command"
    "does: title, shortcut and summary, a short clip, numbered steps and a way to"
    "more help. Applications bring content in packages of their own."
    "."
    "This package has the shared libraries: Vidtips and the QML 1 module that it"
    "shows content with.")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_RECOMMENDS "${library}-codecs (= ${version}), vidtips-data, libqt5svg5")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/cmake/debian/triggers)

vidtips_package(codecs ${library}-codecs libs "rich, animated tooltips for applications (clips)"
    "Vidtips shows a small window beside a command that says what the command"
    "does, with a short clip."
    "."
    "This package has the module that decodes clips, with FFmpeg. The library loads"
    "it when it shows the first clip. Without it, tips have everything but clips.")
# The two know each other's insides.
set(CPACK_DEBIAN_CODECS_PACKAGE_DEPENDS "${library} (= ${version})")

vidtips_package(dev libvidtips-dev libdevel "rich, animated tooltips for applications (development files)"
    "Vidtips shows a small window beside a command that says what the command"
    "does, with a short clip."
    "."
    "This package has what programs that use Vidtips are built with: headers, and"
    "settings for CMake and pkg-config.")
set(CPACK_DEBIAN_DEV_PACKAGE_DEPENDS "${library} (= ${version}), qtbase5-dev (>= 5.15), qtdeclarative5-dev (>= 5.15)")
if(VIDTIPS_BUILD_EXAMPLES)
    string(APPEND CPACK_DEBIAN_DEV_PACKAGE_DEPENDS ", vidtips-data (= ${version})")
endif()

vidtips_package(tools vidtips-tools devel "rich, animated tooltips for applications (tools for content)"
    "Vidtips shows a small window beside a command that says what the command"
    "does, with a short clip."
    "."
    "This package has what content is written with: the command-line tool, and"
    "descriptions of the QML types for editors. The tool also shows such tooltips"
    "in programs that were not made for them.")
# The build's own library has no package yet that its users' dependencies could be read from.
set(CPACK_DEBIAN_TOOLS_PACKAGE_DEPENDS "${library} (>= ${version}), ${library}-codecs (>= ${version})")

set(CPACK_DEBIAN_TOOLS_PACKAGE_SUGGESTS "bash-completion, ffmpeg, x11-utils, vidtips-example (= ${version})")

vidtips_package(data vidtips-data graphics "rich, animated tooltips for applications (user interface)"
    "Vidtips shows a small window beside a command that says what the command"
    "does, with a short clip."
    "."
    "This package has the content package Shared: a user interface for tips that"
    "applications use as it is or start their own from.")
set(CPACK_DEBIAN_DATA_PACKAGE_ARCHITECTURE all)

vidtips_package(examples vidtips-example graphics "rich, animated tooltips for applications (drafting example)"
    "Vidtips shows a small window beside a command that says what the command"
    "does, with a short clip."
    "."
    "This package has a small drafting application, whose commands have such"
    "tooltips in English and German, and tooltips for LibreCAD.")
# The tooltips for LibreCAD have the user interface of the one, and are shown by the other.
set(CPACK_DEBIAN_EXAMPLES_PACKAGE_DEPENDS "${library} (>= ${version}), vidtips-data (>= ${version})")
set(CPACK_DEBIAN_EXAMPLES_PACKAGE_SUGGESTS "librecad, vidtips-tools (= ${version})")

include(CPack)
