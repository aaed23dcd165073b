# The warnings and sanitizers that every target of the project is built with.
add_library(rivenfall_options INTERFACE)
target_compile_features(rivenfall_options INTERFACE cxx_std_20)
target_compile_options(rivenfall_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion)
target_compile_definitions(
  rivenfall_options INTERFACE QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS
                              QT_NO_FOREACH QT_NO_CONTEXTLESS_CONNECT)

option(RIVENFALL_SANITIZE "Build with AddressSanitizer and UndefinedBehaviorSanitizer" OFF)
if(RIVENFALL_SANITIZE)
  target_compile_options(rivenfall_options INTERFACE -fsanitize=address,undefined
                                                     -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(rivenfall_options INTERFACE -fsanitize=address,undefined)
endif()

if(RIVENFALL_FUZZ)
  target_compile_options(
    rivenfall_options INTERFACE -fsanitize=fuzzer-no-link,address,undefined
                                -fno-sanitize-recover=all -fno-omit-frame-pointer -O1)
  target_link_options(rivenfall_options INTERFACE -fsanitize=address,undefined)
endif()

option(RIVENFALL_WERROR "Treat warnings as errors" OFF)
if(RIVENFALL_WERROR)
  target_compile_options(rivenfall_options INTERFACE -Werror)
endif()
