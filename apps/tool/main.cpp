#include "ToolApp.h"

int main(int argc, char** argv)
{
    ToolApp app;
    return app.run(argc, argv);
}
