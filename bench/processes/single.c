/* What `vx63 measure single --json` asks of the library, and no more. */
#include <libvx63.h>

int main(void)
{
    return 0;
}
