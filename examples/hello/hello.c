/* Greets, and tells with what arguments it was started. */

#include <stdio.h>

int main(int argc, char *argv[])
{
    printf("Hello from a program that was built a moment ago.\n");
    for (int i = 1; i < argc; ++i)
        printf("Argument %d: %s\n", i, argv[i]);

    /* Into a pipe, standard output would otherwise come behind standard error. */
    fflush(stdout);
    fprintf(stderr, "This line came by way of standard error.\n");
    return 0;
}
