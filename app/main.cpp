#include <app/startup/qlumstartup.h>

int main(int argc, char** argv)
{
    return QlumStartup::run(argc, argv);
}
