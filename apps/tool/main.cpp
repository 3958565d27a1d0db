#include "jLog.h"

int main()
{
    jLog::error("%s: not implemented yet", "material-tool");
    return 1;
}
