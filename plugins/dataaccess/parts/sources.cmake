# What is done with rows beside watching them; paths from plugins/dataaccess.
set(dataAccessWork
    parts/qlumchangelogmodel.h parts/qlumchangelogmodel.cpp
    parts/qlumchangelogpart.h parts/qlumchangelogpart.cpp
    parts/qlumcopyformats.h parts/qlumcopyformats.cpp
    parts/qlumcopypart.h parts/qlumcopypart.cpp
    parts/qlumdaparts.h parts/qlumdaparts.cpp
    parts/qlumdifferencemodel.h parts/qlumdifferencemodel.cpp
    parts/qlumlistpart.h parts/qlumlistpart.cpp
    parts/qlumnodecopier.h parts/qlumnodecopier.cpp
    parts/qlumnodelist.h parts/qlumnodelist.cpp
    parts/qlumpathreader.h parts/qlumpathreader.cpp
    parts/qlumsnapshot.h parts/qlumsnapshot.cpp
    parts/qlumsnapshotpart.h parts/qlumsnapshotpart.cpp
    parts/qlumstagedmodel.h parts/qlumstagedmodel.cpp
    parts/qlumstagedpage.h parts/qlumstagedpage.cpp
    parts/qlumstagedpart.h parts/qlumstagedpart.cpp parts/qlumstagedpart_project.cpp
    parts/qlumstagedpart_write.cpp
    parts/qlumstagedtext.h parts/qlumstagedtext.cpp
    parts/qlumstagedwrite.h parts/qlumstagedwrite.cpp
    parts/qlumworkcommand.h
    parts/qlumworksettings.h
    parts/qlumworktable.h parts/qlumworktable.cpp)
