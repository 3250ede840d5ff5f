/* The least that a process can be. */
int main(void)
{
    return 0;
}
