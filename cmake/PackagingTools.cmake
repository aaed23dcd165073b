# Read by cpack before it makes anything. Without these tools it would fail late, or make packages
# without dependencies and not say so.
foreach(needed file:file dpkg-shlibdeps:dpkg-dev dpkg-parsechangelog:dpkg-dev strip:binutils)
  string(REGEX MATCH "(.*):(.*)" needed ${needed})
  find_program(RIVENFALL_${CMAKE_MATCH_1} ${CMAKE_MATCH_1} PATHS ENV PATH NO_DEFAULT_PATH)
  if(NOT RIVENFALL_${CMAKE_MATCH_1})
    message(FATAL_ERROR "Packing needs ${CMAKE_MATCH_1}, of the Debian package ${CMAKE_MATCH_2}.")
  endif()
endforeach()

# The time of everything in the packages, which cpack gives it, is the changelog's, as in Debian's own
# builds.
if(NOT DEFINED ENV{SOURCE_DATE_EPOCH})
  execute_process(
    COMMAND dpkg-parsechangelog --file "${CPACK_RIVENFALL_CHANGELOG}" --show-field Timestamp
    OUTPUT_VARIABLE time
    OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  set(ENV{SOURCE_DATE_EPOCH} ${time})
endif()
