# Writes OUTPUT, which defines the time stamp of the sources: SOURCE_DATE_EPOCH where the builder sets it, else
# the date of the last commit, else nothing.
if(DEFINED ENV{SOURCE_DATE_EPOCH})
    string(TIMESTAMP date "%Y-%m-%dT%H:%M:%SZ" UTC)
else()
    execute_process(COMMAND git log -1 --format=%cI
        OUTPUT_VARIABLE date OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
endif()
file(WRITE ${OUTPUT} "#include <stack/capi/sourcetimestamp.h>

const char opcua::sourceTimestamp[] = \"${date}\";
")
