# Makes faults in the programs harder to exploit. To be included behind Warnings.cmake and before the
# targets.
include(CheckCXXCompilerFlag)

include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

foreach(flag -fstack-protector-strong -fstack-clash-protection -fcf-protection)
  string(MAKE_C_IDENTIFIER "RIVENFALL_HAS${flag}" supported)
  check_cxx_compiler_flag(${flag} ${supported})
  if(${supported})
    target_compile_options(rivenfall_options INTERFACE ${flag})
  endif()
endforeach()
target_link_options(rivenfall_options INTERFACE -Wl,-z,relro,-z,now)

# The checked functions need the optimiser, and they blind the sanitizers. Some compilers come with the
# macro set.
if(NOT RIVENFALL_SANITIZE)
  target_compile_options(
    rivenfall_options
    INTERFACE $<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2>)
endif()
