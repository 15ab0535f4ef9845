# Trace, folders, threads, platform layer and XML of the base library.
set(UABASE_INFRASTRUCTURE_SOURCES
    system/uadir.cpp
    system/uadirfile.cpp
    text/uaescape.cpp
    system/uamutex.cpp
    system/uaplatformlayer.cpp
    system/uasemaphore.cpp
    system/uathread.cpp
    system/uathreadpool.cpp
    system/uatrace.cpp
    system/uatracefile.cpp
    system/uatracehook.cpp
    system/uatracerecord.cpp
    text/uaxmldocument.cpp)
list(TRANSFORM UABASE_INFRASTRUCTURE_SOURCES PREPEND ${CMAKE_CURRENT_LIST_DIR}/)
