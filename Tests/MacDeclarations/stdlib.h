// macOS declares this one in unistd.h only.
#define mkdtemp corvane_declared_elsewhere_mkdtemp
#include_next <stdlib.h>
#undef mkdtemp
