# Trace, folders, threads, platform layer and XML of the base library.
set(UABASE_INFRASTRUCTURE_SOURCES
    uadir.cpp
    uadirfile.cpp
    uaescape.cpp
    uamutex.cpp
    uaplatformlayer.cpp
    uasemaphore.cpp
    uathread.cpp
    uathreadpool.cpp
    uatrace.cpp
    uatracefile.cpp
    uatracehook.cpp
    uatracerecord.cpp
    uaxmldocument.cpp)
list(TRANSFORM UABASE_INFRASTRUCTURE_SOURCES PREPEND ${CMAKE_CURRENT_LIST_DIR}/)
