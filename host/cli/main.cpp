#include "cli/commandTable.h"

int main(int argc, char* argv[])
{
    return orv::RunCommandLine(argc, argv);
}
