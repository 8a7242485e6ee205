/* Gives back what the C library of Linux keeps of freed memory, whenever a program under Wine asks how
 * much memory it has: Wine reads that from /proc then. What a program frees there itself lies in heaps
 * of Windows; Wine's own side and the graphics driver use the C library of Linux, whose heap shrinks
 * from its upper end alone and by itself gives back nothing from between what is in use. wine-run.sh
 * builds and preloads it. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <malloc.h>
#include <stdio.h>
#include <string.h>

typedef FILE* (*fopen_fn)(const char*, const char*);

FILE* fopen(const char* path, const char* mode)
{
    const fopen_fn next = (fopen_fn)dlsym(RTLD_NEXT, "fopen");
    if (strncmp(path, "/proc/", 6) == 0 && strstr(path, "/status"))
        malloc_trim(0);
    return next(path, mode);
}
