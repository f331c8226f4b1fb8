#pragma once

extern "C" {
struct _acl;
typedef struct _acl* acl_t;

typedef enum { ACL_TYPE_EXTENDED = 0x00000100 } acl_type_t;

acl_t acl_get_fd_np(int fd, acl_type_t type);
int acl_set_fd_np(int fd, acl_t acl, acl_type_t type);
int acl_free(void* object);
}
