# What is done with rows beside watching them; paths from plugins/dataaccess.
set(dataAccessWork
    work/qlumcopyformats.h work/qlumcopyformats.cpp
    work/qlumdaparts.h work/qlumdaparts.cpp
    work/qlumnodeaddress.h work/qlumnodeaddress.cpp
    work/qlumnodelist.h work/qlumnodelist.cpp
    work/qlumpathreader.h work/qlumpathreader.cpp
    work/qlumsnapshot.h work/qlumsnapshot.cpp
    work/qlumstagedmodel.h work/qlumstagedmodel.cpp
    work/qlumstagedtext.h work/qlumstagedtext.cpp
    work/qlumstagedwrite.h work/qlumstagedwrite.cpp)
