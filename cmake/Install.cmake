# What `cmake --install` puts in place: the programs (their own install rules, component
# "tools") with their manual pages and documents, and for library users the public headers,
# libzuno (static; shared too on Linux), a CMake package and a pkg-config file.
include(CMakePackageConfigHelpers)

set(ZUNO_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/zuno)
if(WIN32)
    set(ZUNO_DOC_DIR doc)
else()
    set(ZUNO_DOC_DIR ${CMAKE_INSTALL_DOCDIR})
endif()

# Manual pages and user documents of every program (docs/<program>.1, docs/*.md).
# The performance notes are for the project's developers.
file(GLOB ZUNO_MANUAL_PAGES ${PROJECT_SOURCE_DIR}/docs/*.1)
file(GLOB ZUNO_USER_DOCS ${PROJECT_SOURCE_DIR}/docs/*.md)
list(FILTER ZUNO_USER_DOCS EXCLUDE REGEX "/performance\\.md$")
if(NOT WIN32)
    install(FILES ${ZUNO_MANUAL_PAGES} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tools)
endif()
install(FILES ${ZUNO_USER_DOCS} README.md LICENSE DESTINATION ${ZUNO_DOC_DIR} COMPONENT tools)

# The library. A build that compiles its own TinyXML (Windows) installs it beside the static
# framework; otherwise the package finds Debian's.
set(ZUNO_LIBRARY_TARGETS zuno)
if(ZUNO_BUILD_SHARED)
    list(APPEND ZUNO_LIBRARY_TARGETS zuno_shared)
endif()
if(TARGET tinyxml)
    list(APPEND ZUNO_LIBRARY_TARGETS tinyxml)
    set(ZUNO_FIND_TINYXML OFF)
else()
    set(ZUNO_FIND_TINYXML ON)
endif()
install(TARGETS ${ZUNO_LIBRARY_TARGETS} EXPORT zunoTargets
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library NAMELINK_COMPONENT development
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT library)
install(DIRECTORY include/zuno DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)

# find_package(zuno CONFIG) gives zuno::zuno (and zuno::zuno_shared where built).
install(EXPORT zunoTargets NAMESPACE zuno:: DESTINATION ${ZUNO_CMAKE_DIR} COMPONENT development)
configure_package_config_file(cmake/zunoConfig.cmake.in ${CMAKE_CURRENT_BINARY_DIR}/zunoConfig.cmake
    INSTALL_DESTINATION ${ZUNO_CMAKE_DIR})
# Before 1.0 a minor version may change the interface.
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/zunoConfigVersion.cmake
    COMPATIBILITY SameMinorVersion)
set(ZUNO_PACKAGE_FILES
    ${CMAKE_CURRENT_BINARY_DIR}/zunoConfig.cmake ${CMAKE_CURRENT_BINARY_DIR}/zunoConfigVersion.cmake)
if(ZUNO_FIND_TINYXML)
    list(APPEND ZUNO_PACKAGE_FILES cmake/FindTinyXML.cmake)
endif()
install(FILES ${ZUNO_PACKAGE_FILES} DESTINATION ${ZUNO_CMAKE_DIR} COMPONENT development)

# zuno.pc finds its prefix from its own place, so the installed tree may move. With a
# shared library the link dependencies are private to it; a static-only install lists them.
file(RELATIVE_PATH ZUNO_PC_PREFIX_FROM_PCDIR
    /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
set(ZUNO_PC_SYSTEM_LIBS -pthread)
if(NOT ZUNO_FIND_TINYXML)
    list(APPEND ZUNO_PC_SYSTEM_LIBS -ltinyxml)  # installed beside libzuno
endif()
if(WIN32)
    list(APPEND ZUNO_PC_SYSTEM_LIBS -lshell32 -lole32 -lsecur32)
endif()
list(JOIN ZUNO_PC_SYSTEM_LIBS " " ZUNO_PC_SYSTEM_LIBS)
set(ZUNO_PC_REQUIRES "")
set(ZUNO_PC_REQUIRES_PRIVATE "")
set(ZUNO_PC_LIBS "")
set(ZUNO_PC_LIBS_PRIVATE "")
if(ZUNO_FIND_TINYXML AND ZUNO_BUILD_SHARED)
    set(ZUNO_PC_REQUIRES_PRIVATE tinyxml)
elseif(ZUNO_FIND_TINYXML)
    set(ZUNO_PC_REQUIRES tinyxml)
endif()
if(ZUNO_BUILD_SHARED)
    set(ZUNO_PC_LIBS_PRIVATE ${ZUNO_PC_SYSTEM_LIBS})
else()
    set(ZUNO_PC_LIBS ${ZUNO_PC_SYSTEM_LIBS})
endif()
configure_file(cmake/zuno.pc.in ${CMAKE_CURRENT_BINARY_DIR}/zuno.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/zuno.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
