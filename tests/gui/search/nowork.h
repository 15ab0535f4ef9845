// A job for code that runs in one, on the thread of the test.
#pragma once
#include <app/api/qlumjob.h>

struct NoWork : QlumJob
{
    void run() override {}
};
