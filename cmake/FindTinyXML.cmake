# Finds TinyXML 1 (Debian's libtinyxml-dev) and defines the imported target TinyXML::TinyXML.
# Installed with the zuno package, so programs that link the static framework find it too.
find_path(TinyXML_INCLUDE_DIR tinyxml.h)
find_library(TinyXML_LIBRARY tinyxml)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(TinyXML REQUIRED_VARS TinyXML_LIBRARY TinyXML_INCLUDE_DIR)

if(TinyXML_FOUND AND NOT TARGET TinyXML::TinyXML)
    add_library(TinyXML::TinyXML UNKNOWN IMPORTED)
    set_target_properties(TinyXML::TinyXML PROPERTIES
        IMPORTED_LOCATION "${TinyXML_LIBRARY}"
        INTERFACE_INCLUDE_DIRECTORIES "${TinyXML_INCLUDE_DIR}"
        INTERFACE_SYSTEM_INCLUDE_DIRECTORIES "${TinyXML_INCLUDE_DIR}"
        # Debian builds the library with STL support; its headers must agree.
        INTERFACE_COMPILE_DEFINITIONS TIXML_USE_STL)
endif()
mark_as_advanced(TinyXML_INCLUDE_DIR TinyXML_LIBRARY)
