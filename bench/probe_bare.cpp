// A process that does nothing: what one takes without the stack.
#include <bench/processmemory.h>

#include <cstdio>

int main()
{
    std::printf("%zu\n", opcua::bench::peakKilobytes());
    return 0;
}
