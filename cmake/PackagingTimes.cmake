# Run by cpack on the files that it is about to pack: gives them the time that PackagingTools.cmake has
# set, so that equal sources give equal packages.
if(DEFINED ENV{SOURCE_DATE_EPOCH})
  execute_process(
    COMMAND find "${CPACK_TEMPORARY_DIRECTORY}" -exec touch --no-dereference
            "--date=@$ENV{SOURCE_DATE_EPOCH}" {} + COMMAND_ERROR_IS_FATAL ANY)
endif()
