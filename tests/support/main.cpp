#include "tests/support/TestMain.h"

int main(int argc, char **argv)
{
    return testMain<QApplication>(argc, argv);
}
