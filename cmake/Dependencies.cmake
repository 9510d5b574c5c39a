# TinyXML 1: Debian's library on Linux; on Windows, Debian's patched source compiled here
# (scripts/setup.sh fetches it and passes its folder as ZUNO_TINYXML_SOURCE_DIR). Either way
# the target is TinyXML::TinyXML.
if(WIN32)
    set(ZUNO_TINYXML_SOURCE_DIR "$ENV{HOME}/.cache/zuno/tinyxml" CACHE PATH "Debian's tinyxml source")
    if(NOT EXISTS "${ZUNO_TINYXML_SOURCE_DIR}/tinyxmlparser.cpp")
        message(FATAL_ERROR "tinyxml source not found in ${ZUNO_TINYXML_SOURCE_DIR}: run scripts/setup.sh")
    endif()
    add_library(tinyxml STATIC
        ${ZUNO_TINYXML_SOURCE_DIR}/tinyxml.cpp
        ${ZUNO_TINYXML_SOURCE_DIR}/tinystr.cpp
        ${ZUNO_TINYXML_SOURCE_DIR}/tinyxmlerror.cpp
        ${ZUNO_TINYXML_SOURCE_DIR}/tinyxmlparser.cpp)
    target_include_directories(tinyxml SYSTEM PUBLIC $<BUILD_INTERFACE:${ZUNO_TINYXML_SOURCE_DIR}>)
    target_compile_definitions(tinyxml PUBLIC TIXML_USE_STL)
    target_compile_options(tinyxml PRIVATE -w)
    add_library(TinyXML::TinyXML ALIAS tinyxml)
else()
    find_package(TinyXML REQUIRED MODULE)
endif()
