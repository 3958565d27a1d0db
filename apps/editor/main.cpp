#include "EditorApp.h"

int main(int argc, char** argv)
{
    return EditorApp().run(argc, argv);
}
