# What is done with rows beside watching them; paths from plugins/dataaccess.
set(dataAccessWork
    work/qlumchangelogmodel.h work/qlumchangelogmodel.cpp
    work/qlumchangelogpart.h work/qlumchangelogpart.cpp
    work/qlumcopyformats.h work/qlumcopyformats.cpp
    work/qlumcopypart.h work/qlumcopypart.cpp
    work/qlumdaparts.h work/qlumdaparts.cpp
    work/qlumdifferencemodel.h work/qlumdifferencemodel.cpp
    work/qlumlistpart.h work/qlumlistpart.cpp
    work/qlumnodelist.h work/qlumnodelist.cpp
    work/qlumpathreader.h work/qlumpathreader.cpp
    work/qlumsnapshot.h work/qlumsnapshot.cpp
    work/qlumsnapshotpart.h work/qlumsnapshotpart.cpp
    work/qlumstagedmodel.h work/qlumstagedmodel.cpp
    work/qlumstagedpage.h work/qlumstagedpage.cpp
    work/qlumstagedpart.h work/qlumstagedpart.cpp
    work/qlumstagedtext.h work/qlumstagedtext.cpp
    work/qlumstagedwrite.h work/qlumstagedwrite.cpp
    work/qlumworkcommand.h
    work/qlumworksettings.h
    work/qlumworktable.h work/qlumworktable.cpp)
