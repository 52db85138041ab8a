/// remove_tree PATH - removes it as the program does.

#include "platform/foundation/FilePath.h"
#include "platform/foundation/TreeRemoval.h"

int main(int argc, char **argv)
{
    return argc == 2 && removeTree(FilePath::decode(argv[1])) ? 0 : 1;
}
