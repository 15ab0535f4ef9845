# What is done with rows beside watching them; paths from plugins/dataaccess.
set(dataAccessWork
    work/qlumdaparts.h work/qlumdaparts.cpp)
