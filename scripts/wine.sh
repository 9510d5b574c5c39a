# Sourced by the scripts that run Windows programs: sets WINE and WINESERVER to Wine's
# programs, found on PATH first and in Debian's own folder otherwise (empty when absent).
wine_program() {  # names...
    local name
    for name in "$@"; do command -v "$name" 2>/dev/null && return 0; done
    for name in "$@"; do [ -x "/usr/lib/wine/$name" ] && { echo "/usr/lib/wine/$name"; return 0; }; done
    return 1
}
WINE=$(wine_program wine64 wine || true)
WINESERVER=$(wine_program wineserver wineserver64 || true)
