#include_next <sys/stat.h>

// Only the names differ.
#define st_atimespec st_atim
#define st_mtimespec st_mtim
#define st_ctimespec st_ctim
