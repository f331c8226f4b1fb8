#pragma once

extern "C" {
struct _acl;
typedef struct _acl* acl_t;

struct _acl_entry;
typedef struct _acl_entry* acl_entry_t;

#define ACL_FIRST_ENTRY 0

typedef enum { ACL_TYPE_EXTENDED = 0x00000100 } acl_type_t;

acl_t acl_init(int count);
acl_t acl_get_fd_np(int fd, acl_type_t type);
int acl_set_fd_np(int fd, acl_t acl, acl_type_t type);
int acl_get_entry(acl_t acl, int entry_id, acl_entry_t* entry_p);
int acl_free(void* object);
}
