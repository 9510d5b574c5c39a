# CPack: Debian packages on Linux (the programs, the shared library, the development files),
# a .zip of the programs and their documents for Windows.
set(CPACK_PACKAGE_NAME zuno)
set(CPACK_PACKAGE_VENDOR "The zuno authors")
set(CPACK_PACKAGE_CONTACT "The zuno authors")
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_RESOURCE_FILE_README ${PROJECT_SOURCE_DIR}/README.md)
set(CPACK_STRIP_FILES ON)
set(CPACK_OUTPUT_FILE_PREFIX ${CMAKE_BINARY_DIR}/packages)

if(WIN32)
    set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Hands a prepared e-mail to the user's mail client")
    set(CPACK_GENERATOR ZIP)
    set(CPACK_PACKAGE_FILE_NAME mailer-${PROJECT_VERSION}-windows-x86_64)
    # The programs are self-contained executables: the zip holds them and their documents.
    set(CPACK_INSTALL_CMAKE_PROJECTS "${CMAKE_BINARY_DIR};zuno;tools;/")
else()
    set(CPACK_GENERATOR DEB)
    set(CPACK_DEB_COMPONENT_INSTALL ON)
    set(CPACK_COMPONENTS_ALL tools development)
    if(ZUNO_BUILD_SHARED)
        list(APPEND CPACK_COMPONENTS_ALL library)
    endif()
    set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
    set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
    # Run-time dependencies come from the binaries themselves.
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
    set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
    # Each package's summary is the first line of its component's description.

    set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME mailer)
    set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION mail)
    set(CPACK_COMPONENT_TOOLS_DESCRIPTION
        "hands a prepared e-mail to the user's mail client\nmailer reads a mailer file (subject, note, recipients, attachments), opens the\ncompose window of the user's own mail client and deletes the file. zuno-json\nchecks and pretty-prints JSON with the zuno framework.")

    set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME libzuno${PROJECT_VERSION_MAJOR})
    set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
    set(CPACK_DEBIAN_LIBRARY_PACKAGE_GENERATE_SHLIBS ON)
    set(CPACK_COMPONENT_LIBRARY_DESCRIPTION
        "zuno C++ application framework (shared library)\nStrings over several encodings, URIs, formatting, variants and JSON, and the\nhand-off of a mail to the user's mail client.")

    set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libzuno-dev)
    set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
    # The static library links TinyXML; the CMake package and zuno.pc find it.
    set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "libtinyxml-dev")
    set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
        "zuno C++ application framework (development files)\nHeaders, the static library, a CMake package (find_package(zuno CONFIG)) and\na pkg-config file.")
    if(ZUNO_BUILD_SHARED)
        set(CPACK_COMPONENT_DEVELOPMENT_DEPENDS library)
    endif()
endif()
include(CPack)
