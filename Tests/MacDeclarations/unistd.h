#include_next <unistd.h>

#ifdef __cplusplus
extern "C" {
#endif
char* mkdtemp(char* pattern);
#ifdef __cplusplus
}
#endif
