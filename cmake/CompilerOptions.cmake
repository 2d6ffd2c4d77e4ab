# Warnings, sanitizers and Qt's strict defines, as an interface target that our own targets link privately.
add_library(vidtips_options INTERFACE)
target_compile_options(vidtips_options INTERFACE -Wall -Wextra)
# QT_MESSAGELOGCONTEXT keeps file, line and function in diagnostics in release builds too.
target_compile_definitions(vidtips_options INTERFACE QT_MESSAGELOGCONTEXT QT_NO_FOREACH)

add_library(vidtips_strict INTERFACE)
target_link_libraries(vidtips_strict INTERFACE vidtips_options)
target_compile_definitions(vidtips_strict INTERFACE QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII
                           QT_NO_URL_CAST_FROM_STRING)

foreach(sanitizer IN LISTS VIDTIPS_SANITIZERS)
    add_compile_options(-fsanitize=${sanitizer} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${sanitizer})
    if(sanitizer STREQUAL "undefined")
        # Qt exports no type information for its private classes, which this check needs.
        add_compile_options(-fno-sanitize=vptr)
    endif()
endforeach()
